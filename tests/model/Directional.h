#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "Readers.h"

namespace Model {

/// The colours of a mosaic of at least 2x2 whose green follows the direction in which it changes less, and
/// whose red and blue follow its differences to green. `samples` are on the 16-bit scale, line by line;
/// `flags` choose the pattern.
std::vector<Value> DemosaicDirectionally(std::span<const std::uint32_t> samples, std::uint32_t width,
                                         std::uint32_t height, unsigned flags);

}  // namespace Model
