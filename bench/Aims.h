#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Measure.h"

namespace Bench {

/// What the library is meant to reach at one place, and what it does.
struct Aim {
  std::string text;
  std::string place;
  double limit;  ///< ratio to the floor, or nanoseconds
  double reached;
  std::size_t above = 0;  ///< measurements above the limit
  std::size_t count = 0;  ///< measurements that the aim is about
  std::string worstName;

  bool IsMet() const { return reached <= limit; }
};

/// The aims for ratios to the floor that exist for this level (x86-64-v3, x86-64-v4), of all places that were
/// measured, and those for the fixed cost of a call of 64x64 pixels.
std::vector<Aim> AimsOf(std::string_view level, const std::vector<Measurement>& measurements);

}  // namespace Bench
