#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Measure.h"

namespace Bench {

using Selector = std::function<bool(const Measurement&)>;

/// Of the ratios to the floor.
struct Summary {
  std::size_t count = 0;
  double geometricMean = 0;
  double copyMean = 0;  ///< geometric mean of the ratios to memcpy
  double worst = 0;
  std::string worstName;
};

Summary Summarise(const std::vector<Measurement>& measurements, const Selector& selected);

}  // namespace Bench
