// The raw call checks nothing and copies nothing. The caller must know how large the formats' buffers have to
// be.
#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/PixelTypes.h>

#include <cstdint>
#include <cstdio>
#include <vector>

using namespace ZrConvertersLib;

int main() {
  constexpr std::uint32_t kWidth = 640;
  constexpr std::uint32_t kHeight = 480;

  // Two 12-bit pixels in three bytes; a whole number of groups per line, so that nothing is written past it.
  std::vector<std::uint8_t> frame(kWidth * 3 / 2 * kHeight, 0x80);
  std::vector<std::uint8_t> picture(kWidth * 3 * kHeight);

  // Call HasConverter first: for a pair without a converter GetConverter returns another pair's.
  if (!PixelTypeFactory::HasConverter(PixelTypeIds::Mono12p, PixelTypeIds::RGB8)) return 1;
  const PixelConverter* converter = PixelTypeFactory::GetConverter(PixelTypeIds::Mono12p, PixelTypeIds::RGB8);

  converter->Convert(frame.data(), kWidth, kHeight, picture.data(), kWidth, kHeight, kWidth, kHeight,
                     0 /* flags */, 0 /* destination padding */, nullptr, nullptr /* intermediate buffer */,
                     0 /* source padding */, false /* flip */, nullptr /* filter */);

  // Every sample is 0x080 (even columns) or 0x808 (odd ones).
  std::printf("first pixels: %d and %d\n", picture[0], picture[3]);
  return picture[0] == 0x08 && picture[3] == 0x80 ? 0 : 1;
}
