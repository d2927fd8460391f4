#pragma once

#include <cstdint>
#include <vector>

#include "Cases.h"
#include "model/Converter.h"
#include "model/Memory.h"

namespace Matrix {

/// What a conversion may read, what it finds in its destination, and what it must leave there.
///
/// Both windows hold exactly the bytes from the first to the last one that the conversion owes, which may
/// begin before or after the image's first byte.
struct Expectation {
  std::vector<std::uint8_t> source, before, after;
  std::ptrdiff_t sourceBegin = 0, destinationBegin = 0;  ///< of the windows, from the images' first bytes
  std::ptrdiff_t destinationStride = 0;
  std::uint32_t intermediateSize = 0;  ///< bytes that a chain's buffer has at least; 0 without a chain
  std::vector<bool> undefined;  ///< bytes that depend on what an intermediate image held before; often empty
};

Expectation Expect(const Model::Pair& pair, const Case& conversion);

}  // namespace Matrix
