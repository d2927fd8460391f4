#pragma once

#include <cstdint>

#include "Readers.h"

namespace Model {

/// 8-bit samples.
struct YCbCr {
  std::uint32_t y, cb, cr;
};

/// Red, green and blue of the matrix that `flags` choose, clipped to 8 bits, on the 16-bit scale.
Value YCbCrToRgb(YCbCr pixel, unsigned flags);

}  // namespace Model
