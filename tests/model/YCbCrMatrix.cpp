#include "YCbCrMatrix.h"

#include <algorithm>

#include "FullDepth.h"

namespace Model {
namespace {

/// In 1/1024.
struct Matrix {
  int lumaOffset, luma, redOfCr, greenOfCb, greenOfCr, blueOfCb;
};

constexpr Matrix k601{16, 1192, 1634, -401, -832, 2067};
constexpr Matrix k709{16, 1192, 1836, -218, -546, 2163};
constexpr Matrix kJpeg{0, 1024, 1435, -352, -731, 1815};

const Matrix& Choose(unsigned flags) {
  if (flags & kJpegMatrix) return kJpeg;
  return flags & k709Matrix ? k709 : k601;
}

/// Rounds to nearest, halves upward, and clips.
std::uint32_t Channel(int sum) {
  return static_cast<std::uint32_t>(std::clamp((sum + 512) >> 10, 0, 255)) << 8;
}

}  // namespace

Value YCbCrToRgb(YCbCr pixel, unsigned flags) {
  const Matrix& m = Choose(flags);
  const int u = static_cast<int>(pixel.cb) - 128;
  const int v = static_cast<int>(pixel.cr) - 128;
  const int c = (static_cast<int>(pixel.y) - m.lumaOffset) * m.luma;
  return {Channel(c + m.redOfCr * v), Channel(c + m.greenOfCb * u + m.greenOfCr * v),
          Channel(c + m.blueOfCb * u)};
}

Value YCbCrToRgbAtFullDepth(std::uint32_t y, std::uint32_t cb, std::uint32_t cr, unsigned flags) {
  const Matrix& m = Choose(flags);
  const auto part = [](std::uint32_t sample, int offset) { return std::int64_t{sample} - offset * 256; };
  const std::int64_t u = part(cb, 128), v = part(cr, 128), c = part(y, m.lumaOffset) * m.luma;
  const auto channel = [](std::int64_t sum) {
    return static_cast<std::uint32_t>(std::clamp<std::int64_t>(sum >> 10, 0, 255 << 8));
  };
  return {channel(c + m.redOfCr * v), channel(c + m.greenOfCb * u + m.greenOfCr * v),
          channel(c + m.blueOfCb * u)};
}

}  // namespace Model
