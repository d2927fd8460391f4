#pragma once

#include <cstdint>

#include "Readers.h"

namespace Model {

/// The tile's first line; of several flags the highest counts, none means WGWR.
constexpr unsigned kWgwr = 0x10000000, kWbwg = 0x20000000, kWrwg = 0x40000000, kWgwb = 0x80000000;

/// The colour of pixel x of a line, in an image of at least 4x4. Flags choose the method as in a mosaic.
Value Scf1Pixel(const SourceLine& line, std::uint32_t x);

}  // namespace Model
