#pragma once

#include <cstdint>

namespace ZrConvertersLib {

/// A YCbCr matrix in 10-bit fixed point. With u = cb - 128, v = cr - 128 and c = (y - yOffset) * y:
/// red = (c + redV * v + 512) >> 10, green = (c + greenU * u + greenV * v + 512) >> 10,
/// blue = (c + blueU * u + 512) >> 10, each then clamped to 0..255.
struct YCbCrMatrix {
  std::int16_t yOffset;
  std::int16_t y;
  std::int16_t redV;
  std::int16_t greenU;
  std::int16_t greenV;
  std::int16_t blueU;
};

inline constexpr YCbCrMatrix kMatrix601{16, 1192, 1634, -401, -832, 2067};
inline constexpr YCbCrMatrix kMatrix709{16, 1192, 1836, -218, -546, 2163};
inline constexpr YCbCrMatrix kMatrixJPG{0, 1024, 1435, -352, -731, 1815};

}  // namespace ZrConvertersLib
