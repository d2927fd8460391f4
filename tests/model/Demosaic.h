#pragma once

#include <cstddef>
#include <cstdint>

#include "Formats.h"
#include "Memory.h"
#include "Readers.h"

namespace Model {

constexpr unsigned kGrbg = 0x10, kGbrg = 0x20, kRggb = 0x40, kBggr = 0x80;
constexpr unsigned kInterpolate = 0x100;

/// A mosaic as the demosaic of one pair of lines sees it.
struct Mosaic {
  const Source* source;
  Memory* memory;
  std::ptrdiff_t top;  ///< offset of line `line`, the first of the pair
  std::ptrdiff_t stride;
  std::uint32_t line;    ///< only its parity and its distance from the first and last line matter
  std::uint32_t height;  ///< lines of the image
  std::uint32_t width;
  unsigned flags;
};

/// The one colour of the 2x2 tile at even column x of the pair.
Value FastTile(const Mosaic& mosaic, std::uint32_t x);

/// The colour of an odd width's last column, from the tile one column to the left.
Value LastColumn(const Mosaic& mosaic);

/// Bilinear colour of column x in line 0 or 1 of the pair.
Value Interpolated(const Mosaic& mosaic, std::uint32_t lineOfPair, std::uint32_t x);

}  // namespace Model
