// How much the bytes of a file look like a picture when they are read in a certain way.
#pragma once

#include <cstdint>
#include <vector>

#include "Frame.h"

namespace page {

// The mean difference of neighbouring pixels, divided by how much the pixels differ at all: well below 1 for
// pictures of things, about 1 for noise. A few lines are looked at, of those that the bytes hold. Negative
// where nothing can be said.
double Roughness(const Geometry& geometry, const std::vector<std::uint8_t>& bytes);

// Which of a Bayer mosaic's diagonals is green, told as a pattern: the two sites that differ less. Red and
// blue cannot be told apart. The bytes hold the whole frame.
ZrConvertersLib::MosaicPattern PatternByGreens(const Geometry& geometry,
                                               const std::vector<std::uint8_t>& bytes);

}  // namespace page
