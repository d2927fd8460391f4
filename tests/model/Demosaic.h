#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "Readers.h"

namespace Model {

constexpr unsigned kGrbg = 0x10, kGbrg = 0x20, kRggb = 0x40, kBggr = 0x80;
constexpr unsigned kInterpolate = 0x100;

enum class Site : unsigned { Red, Green, Blue };

/// The colours of a mosaic's first tile, row by row. With several pattern flags the highest counts.
std::array<Site, 4> FirstTile(unsigned flags);

/// The line before the first, or the one after the last, is one of the caller's frame.
bool LinesAboveAreReal(unsigned flags);
bool LinesBelowAreReal(unsigned flags);

/// -1 is 1, and `count` is `count` - 2.
std::ptrdiff_t Mirrored(std::ptrdiff_t index, std::ptrdiff_t count);

// A mosaic is given by the first line of a pair. Of the line's number only the parity and the distance from
// the first and last line matter.

/// The one colour of the 2x2 tile at even column x of the pair.
Value FastTile(const SourceLine& mosaic, std::uint32_t x);

/// The colour of an odd width's last column, from the tile one column to the left.
Value LastColumn(const SourceLine& mosaic);

/// Bilinear colour of column x in line 0 or 1 of the pair.
Value Interpolated(const SourceLine& mosaic, std::uint32_t lineOfPair, std::uint32_t x);

}  // namespace Model
