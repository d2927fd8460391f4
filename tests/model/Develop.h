#pragma once

#include <array>
#include <functional>
#include <utility>
#include <vector>

#include "Readers.h"

namespace Model {

/// Red, green and blue; in real numbers.
using Real = long double;
using RealColour = std::array<Real, 3>;

/// From 0..1 to 0..1.
using Curve = std::function<Real(Real)>;

/// light ^ (1 / gamma).
Curve GammaCurve(Real gamma);

/// IEC 61966-2-1.
Curve SrgbCurve();

/// Straight lines between points in ascending order, and the outer points' values beyond them.
Curve PointsCurve(std::vector<std::pair<Real, Real>> points);

/// The steps from a sensor's samples to a picture, in the order of their use; these defaults change nothing
/// but that the source's largest sample becomes 65535.
struct Development {
  unsigned depth = 16;  ///< bits of a sample; 8 for YCbCr, whose matrix ends at 255
  RealColour black{};   ///< in counts of samples of that depth
  Real white = 0;       ///< likewise; 0 is the largest sample
  RealColour gain{1, 1, 1};
  std::array<RealColour, 3> matrix{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};  ///< a row for each result
  Curve curve{};                                                        ///< empty: straight
};

/// The colour in 0..65535. It is limited before the curve and after it, not between the steps before.
RealColour Develop(const Value& colour, const Development& development);

/// By how much a stored sample of `bits` may differ from the exact one, both cut to that depth: 1 of 255, 16
/// of 65535, and what follows for depths between.
unsigned ToleranceOf(unsigned bits);

}  // namespace Model
