#include "SizeGuess.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

// Sizes of sensors and screens that cameras are set to most.
constexpr std::array cSizes{
    Size{320, 240},   Size{640, 480},   Size{720, 540},   Size{752, 480},   Size{768, 512},
    Size{800, 600},   Size{960, 540},   Size{1024, 768},  Size{1024, 1024}, Size{1280, 720},
    Size{1280, 960},  Size{1280, 1024}, Size{1440, 1080}, Size{1600, 1200}, Size{1624, 1240},
    Size{1920, 1080}, Size{1920, 1200}, Size{1936, 1216}, Size{2048, 1088}, Size{2048, 1536},
    Size{2048, 2048}, Size{2432, 2048}, Size{2448, 2048}, Size{2592, 1944}, Size{2592, 2048},
    Size{3072, 2048}, Size{3088, 2064}, Size{3840, 2160}, Size{3840, 2748}, Size{4000, 3000},
    Size{4024, 3036}, Size{4096, 2160}, Size{4096, 3000}, Size{4112, 3008}, Size{4608, 3456},
    Size{5120, 5120}, Size{5472, 3648}, Size{5496, 3672}, Size{6576, 4384}};

// Ratios of width to height that are tried when the format is known but the size is not.
constexpr std::array cRatios{Size{1, 1},  Size{4, 3}, Size{5, 4},   Size{3, 2},
                             Size{16, 9}, Size{8, 5}, Size{16, 10}, Size{17, 9}};

constexpr std::uint64_t cMostFrames = 10000;

// No guess unless the file is a whole number of such frames.
void Try(std::uint64_t bytes, const zr::FormatInfo& format, Size size, std::vector<SizeGuess>& guesses) {
  zr::FrameLayout layout;
  if (!zr::DescribeFrame(format.id, size.width, size.height, 0, layout).IsSuccess()) return;
  if (layout.frameBytes == 0 || bytes % layout.frameBytes != 0) return;
  const std::uint64_t frames = bytes / layout.frameBytes;
  if (frames > 0 && frames <= cMostFrames) guesses.push_back({size, frames});
}

// Sizes of exactly one frame of the format, of the ratios that sensors have.
std::vector<Size> SizesOfRatios(std::uint64_t bytes, const zr::FormatInfo& format) {
  std::vector<Size> sizes;
  const double pixels = double(bytes) * 8 / std::max(1U, format.bitsPerPixel);
  for (const Size& ratio : cRatios) {
    const double unit = std::round(std::sqrt(pixels / (double(ratio.width) * ratio.height)));
    if (unit < 1 || unit > 65535) continue;
    const auto count = static_cast<std::uint32_t>(unit);
    sizes.push_back({ratio.width * count, ratio.height * count});
  }
  return sizes;
}

std::vector<Size> SizesToTry(std::uint64_t bytes, const zr::FormatInfo& format) {
  std::vector<Size> sizes(cSizes.begin(), cSizes.end());
  const std::vector<Size> more = SizesOfRatios(bytes, format);
  sizes.insert(sizes.end(), more.begin(), more.end());
  return sizes;
}

}  // namespace

std::vector<SizeGuess> GuessSizes(std::uint64_t bytes, const zr::FormatInfo& format,
                                  const std::optional<Size>& only) {
  std::vector<SizeGuess> guesses;
  const std::vector<Size> sizes = only ? std::vector{*only} : SizesToTry(bytes, format);
  for (const Size& size : sizes) Try(bytes, format, size, guesses);
  return guesses;
}

}  // namespace zrconvert
