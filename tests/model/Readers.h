#pragma once

#include <cstddef>
#include <cstdint>

#include "Formats.h"
#include "Memory.h"

namespace Model {

/// One pixel on the 16-bit scale: full scale of every depth reaches bit 15, and no bit is set above it.
struct Value {
  std::uint32_t red, green, blue;
};

/// Flags that choose the colour matrix; without them it is ITU-R BT.601.
constexpr unsigned kJpegMatrix = 0x10000;
constexpr unsigned k709Matrix = 0x40000;

/// Flags that change how the samples of some formats are packed.
constexpr unsigned kGigEVisionPacking = 0x00100000;
constexpr unsigned kCsi2Packing = 0x00200000;

/// A line of a source image, and what must be known of the image to read a pixel of it.
struct SourceLine {
  const Source* source;
  Memory* memory;
  std::ptrdiff_t start;   ///< offset of the line
  std::ptrdiff_t stride;  ///< from a line to the next
  std::uint32_t line;     ///< its number, counted from the first line that is converted
  std::uint32_t height;   ///< lines of the image
  std::uint32_t width;
  unsigned flags;
};

/// Bytes from the first to the last pixel of a line, as line strides are counted.
std::uint32_t LineBytes(const Source& source, std::uint32_t width);

/// Pixels that the line produces: whole groups, so more or fewer than the width; none where a pattern of
/// colours does not fit.
std::uint32_t OwedPixels(const SourceLine& line);

/// Sample k of the line that starts at `start`, cut to its upper 8 bits. Not for packed samples.
std::uint32_t EightBitSample(const Source& source, Memory& memory, std::ptrdiff_t start, std::uint32_t k);

/// Sample k of the line on the 16-bit scale.
std::uint32_t NormalisedSample(const SourceLine& line, std::uint32_t k);

/// Pixel x of the line. Not for mosaics.
Value ReadPixel(const SourceLine& line, std::uint32_t x);

}  // namespace Model
