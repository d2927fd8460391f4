#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Measure.h"

namespace Bench {

using Selector = std::function<bool(const Measurement&)>;

/// Of the ratios to memcpy.
struct Summary {
  std::size_t count = 0;
  double geometricMean = 0;
  double worst = 0;
  std::string worstName;
};

Summary Summarise(const std::vector<Measurement>& measurements, const Selector& selected);

/// What the library is meant to reach: no selected ratio, or no geometric mean of them, above a limit.
struct Aim {
  std::string text;
  double limit;
  bool isMean;
  Selector selected;
};

/// The aims for frames of 640x480 and of 4096x3000, each limit times `allowance`.
std::vector<Aim> Aims(double allowance);

}  // namespace Bench
