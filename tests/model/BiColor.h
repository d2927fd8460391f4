#pragma once

#include <cstdint>

#include "Readers.h"

namespace Model {

/// What the two samples of an even and of an odd pixel are; of several flags the highest counts, none means
/// RGBG.
constexpr unsigned kRgbg = 0x1000, kBgrg = 0x2000, kGrgb = 0x4000, kGbgr = 0x8000;
constexpr unsigned kInterpolateBiColor = 0x200;

/// The colour of pixel x of a line that has at least two.
Value BiColorPixel(const SourceLine& line, std::uint32_t x);

}  // namespace Model
