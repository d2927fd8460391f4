#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Memory.h"
#include "Readers.h"

namespace Model {

/// A frame in memory: line 0 begins at offset 0, `stride` bytes are from a line to the next. Flags choose
/// patterns, methods, matrix and packing as in a conversion.
struct Frame {
  long source;
  Memory* memory;
  std::ptrdiff_t stride;
  std::uint32_t width, height;
  unsigned flags;
};

/// The pixels with all the depth that the source has, line by line: nothing goes by way of 8 bits, YCbCr of
/// 10 and 12 bits neither. Not for mosaics. 4:2:2 and 4:1:1 need widths of whole groups.
std::vector<Value> ReadPicture(const Frame& frame);

/// The samples of a grey source or a mosaic on the 16-bit scale, line by line.
std::vector<std::uint32_t> ReadSamples(const Frame& frame);

/// Red, green and blue, from samples on the 16-bit scale: exact, limited to 255 of the 8-bit scale and cut to
/// the 16-bit scale.
Value YCbCrToRgbAtFullDepth(std::uint32_t y, std::uint32_t cb, std::uint32_t cr, unsigned flags);

}  // namespace Model
