// Windows bitmap, rows from top to bottom. 24 bits a pixel where the rows are multiples of 4 bytes then, as
// viewers expect; 32 bits otherwise.
#include <array>

#include "Containers.h"
#include "Rows.h"

namespace zrconvert {
namespace {

constexpr std::uint32_t cHeaderSize = 54;

using Header = std::array<std::uint8_t, cHeaderSize>;

void Put(Header& header, std::size_t at, std::uint32_t value, unsigned bytes) {
  for (unsigned i = 0; i < bytes; ++i) header[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

// BITMAPFILEHEADER, then BITMAPINFOHEADER, whose height is negative for rows from top to bottom.
Header HeaderOf(const Picture& picture, unsigned bits) {
  const std::uint32_t imageBytes = picture.width * (bits / 8) * picture.height;
  Header header{'B', 'M'};
  Put(header, 2, cHeaderSize + imageBytes, 4);
  Put(header, 10, cHeaderSize, 4);
  Put(header, 14, 40, 4);
  Put(header, 18, picture.width, 4);
  Put(header, 22, 0U - picture.height, 4);
  Put(header, 26, 1, 2);
  Put(header, 28, bits, 2);
  Put(header, 34, imageBytes, 4);
  return header;
}

void StoreRow(std::span<const std::uint16_t> samples, std::uint8_t* bytes) {
  for (std::size_t i = 0; i < samples.size(); i += 3, bytes += 4) {
    bytes[0] = static_cast<std::uint8_t>(samples[i + 2]);
    bytes[1] = static_cast<std::uint8_t>(samples[i + 1]);
    bytes[2] = static_cast<std::uint8_t>(samples[i]);
    bytes[3] = 0xFF;
  }
}

// 0 where the picture's bytes are not those of the file.
unsigned BitsAsItLies(const Picture& picture) {
  if (picture.layout->name == "BGRa8") return 32;
  return picture.layout->name == "BGR8" && picture.width % 4 == 0 ? 24 : 0;
}

}  // namespace

void WriteBmp(ByteSink& sink, const Picture& picture, const EncoderOptions&) {
  const unsigned bits = BitsAsItLies(picture);
  sink.Write(HeaderOf(picture, bits ? bits : 32));
  if (bits) return sink.Write(picture.bytes);
  WriteRows(sink, picture, 3, std::size_t{picture.width} * 4, StoreRow);
}

}  // namespace zrconvert
