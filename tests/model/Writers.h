#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "Formats.h"
#include "Memory.h"
#include "Readers.h"

namespace Model {

/// Tables of 256 bytes for red, green and blue.
using FilterTables = std::array<std::array<std::uint8_t, 256>, 3>;

const FilterTables& IdentityTables();

/// Where a destination line lies.
struct LinePlace {
  std::ptrdiff_t start;          ///< of the line, in plane 0
  std::ptrdiff_t planeDistance;  ///< from a plane to the next
};

/// Writes pixel x of a line. 8-bit colour channels pass through the filter, nothing else does.
void WritePixel(const Destination& destination, Memory& memory, LinePlace line, std::uint32_t x,
                const Value& value, const FilterTables& filter);

}  // namespace Model
