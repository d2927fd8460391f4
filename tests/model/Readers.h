#pragma once

#include <cstddef>
#include <cstdint>

#include "Formats.h"
#include "Memory.h"

namespace Model {

/// One pixel on the 16-bit scale: full scale of every depth reaches bit 15. Bits above 15 may be set by
/// samples that are wider than their format; writers cut them off.
struct Value {
  std::uint32_t red, green, blue;
};

/// Flags that choose the colour matrix; without them it is ITU-R BT.601.
constexpr unsigned kJpegMatrix = 0x10000;
constexpr unsigned k709Matrix = 0x40000;

/// Bytes from the first to the last pixel of a line, as line strides are counted.
std::uint32_t LineBytes(const Source& source, std::uint32_t width);

/// Pixels that one line of `width` pixels produces: whole groups, so more or fewer than the width.
std::uint32_t OwedPixels(const Source& source, std::uint32_t width);

/// Sample k of the line, cut to its upper 8 bits.
std::uint32_t EightBitSample(const Source& source, Memory& memory, std::ptrdiff_t line, std::uint32_t k);

/// Pixel x of the line that starts at `line`. Not for mosaics.
Value ReadPixel(const Source& source, Memory& memory, std::ptrdiff_t line, std::uint32_t x, unsigned flags);

}  // namespace Model
