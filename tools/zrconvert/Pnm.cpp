// Portable grey map and pixel map in their binary forms P5 and P6: text header, then samples of one byte, or
// two with the high byte first when the greatest value is above 255.
#include "Containers.h"
#include "Rows.h"

namespace zrconvert {
namespace {

std::string Header(const Picture& picture) {
  const std::string magic = picture.layout->channels == 1 ? "P5" : "P6";
  const unsigned greatest = (1U << picture.layout->depth) - 1;
  return magic + "\n" + std::to_string(picture.width) + " " + std::to_string(picture.height) + "\n" +
         std::to_string(greatest) + "\n";
}

bool LiesAsInFile(const PictureLayout& layout) {
  return layout.storage == Storage::Bytes && layout.channels != 4 && !layout.planar && !layout.blueFirst;
}

}  // namespace

// The alpha channel has no place in a pixel map.
void WritePnm(ByteSink& sink, const Picture& picture, const EncoderOptions&) {
  sink.Write(Header(picture));
  if (LiesAsInFile(*picture.layout)) return sink.Write(picture.bytes);
  const unsigned depth = picture.layout->depth;
  const unsigned channels = picture.layout->channels == 1 ? 1 : 3;
  const std::size_t lineBytes = std::size_t{picture.width} * channels * (depth > 8 ? 2 : 1);
  WriteRows(sink, picture, channels, lineBytes,
            [depth](std::span<const std::uint16_t> samples, std::uint8_t* bytes) {
              StoreSamples(samples, depth, depth, bytes);
            });
}

}  // namespace zrconvert
