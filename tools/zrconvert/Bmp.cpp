// Windows bitmap through the library's saver, which writes rows as they lie: rows whose length is no multiple
// of 4 bytes, and 8-bit rows without a palette, would be files that viewers cannot read.
#include <ZrConvertersLib/BMPSaver.h>

#include <filesystem>

#include "Containers.h"
#include "Error.h"

namespace zrconvert {
namespace {

constexpr std::uintmax_t cHeaderSize = 54;

std::vector<std::uint8_t> RowsOf32Bits(const Picture& picture) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(std::size_t{picture.width} * picture.height * 4);
  const unsigned channels = picture.layout->channels;
  for (unsigned line = 0; line < picture.height; ++line) {
    const std::vector<std::uint16_t> samples = ReadRow(picture, line);
    const auto byte = [&](std::size_t i) {
      return static_cast<std::uint8_t>(Rescale(samples[i], picture.layout->depth, 8));
    };
    for (std::size_t i = 0; i < samples.size(); i += channels) {
      const std::size_t step = channels == 1 ? 0 : 1;
      bytes.insert(bytes.end(), {byte(i + 2 * step), byte(i + step), byte(i), 0xFF});
    }
  }
  return bytes;
}

// The saver counts the bits of an image in 32 bits and does not notice a write that falls short.
void Save(const std::string& path, const void* bytes, const Picture& picture, unsigned short bits) {
  const std::uint64_t size = std::uint64_t{picture.width} * picture.height * bits;
  if (size >> 32 != 0) throw Failure("the picture is too large for a .bmp file");
  const auto width = static_cast<int>(picture.width);
  const auto height = static_cast<int>(picture.height);
  const ZrUtilsLib::Result result = ZrConvertersLib::BMPSaver().SaveBMP(path, bytes, width, height, bits);
  if (!result.IsSuccess()) throw Failure(WithSystemReason("cannot open '" + path + "'"));
  if (std::filesystem::file_size(path) != cHeaderSize + size / 8) {
    throw Failure("cannot write '" + path + "': not every byte arrived (is the disk full?)");
  }
}

}  // namespace

void WriteBmp(const std::string& path, const Picture& picture) {
  if (picture.layout->name == "BGRa8") {
    Save(path, picture.bytes.data(), picture, 32);
  } else if (picture.layout->name == "BGR8" && picture.width % 4 == 0) {
    Save(path, picture.bytes.data(), picture, 24);
  } else {
    Save(path, RowsOf32Bits(picture).data(), picture, 32);
  }
}

}  // namespace zrconvert
