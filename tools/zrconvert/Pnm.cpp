// Portable grey map and pixel map in their binary forms P5 and P6: text header, then samples of one byte, or
// two with the high byte first when the greatest value is above 255.
#include "Containers.h"
#include "File.h"

namespace zrconvert {
namespace {

std::string Header(const Picture& picture) {
  const std::string magic = picture.layout->channels == 1 ? "P5" : "P6";
  const unsigned greatest = (1U << picture.layout->depth) - 1;
  return magic + "\n" + std::to_string(picture.width) + " " + std::to_string(picture.height) + "\n" +
         std::to_string(greatest) + "\n";
}

// The alpha channel has no place in a pixel map.
std::vector<unsigned char> Line(const Picture& picture, unsigned line) {
  std::vector<unsigned char> bytes;
  const std::vector<std::uint16_t> samples = ReadRow(picture, line);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (picture.layout->channels == 4 && i % 4 == 3) continue;
    if (picture.layout->depth > 8) bytes.push_back(static_cast<unsigned char>(samples[i] >> 8));
    bytes.push_back(static_cast<unsigned char>(samples[i]));
  }
  return bytes;
}

}  // namespace

void WritePnm(const std::string& path, const Picture& picture) {
  File file(path, "ab");
  file.Write(Header(picture));
  for (unsigned line = 0; line < picture.height; ++line) file.Write(Line(picture, line));
  file.Close();
}

}  // namespace zrconvert
