#include "Develop.h"

#include <algorithm>
#include <cmath>

namespace Model {
namespace {

/// In parts of full scale.
RealColour Levelled(const Value& colour, const Development& d) {
  const Real perCount = std::ldexp(Real{1}, 16 - static_cast<int>(d.depth));
  const Real white = d.white != 0 ? d.white : std::ldexp(Real{1}, static_cast<int>(d.depth)) - 1;
  const RealColour counts = {colour.red / perCount, colour.green / perCount, colour.blue / perCount};
  RealColour light{};
  for (std::size_t i = 0; i < 3; ++i) light[i] = (counts[i] - d.black[i]) / (white - d.black[i]) * d.gain[i];
  return light;
}

Real Limited(Real part) {
  return std::clamp(part, Real{0}, Real{1});
}

}  // namespace

Curve GammaCurve(Real gamma) {
  return [gamma](Real light) { return std::pow(light, 1 / gamma); };
}

Curve SrgbCurve() {
  return [](Real light) {
    return light <= 0.0031308L ? 12.92L * light : 1.055L * std::pow(light, 1 / 2.4L) - 0.055L;
  };
}

Curve PointsCurve(std::vector<std::pair<Real, Real>> points) {
  return [points = std::move(points)](Real light) {
    const auto right =
        std::ranges::find_if(points, [light](const auto& point) { return point.first >= light; });
    if (right == points.begin()) return right->second;
    if (right == points.end()) return points.back().second;
    const auto left = right - 1;
    return std::lerp(left->second, right->second, (light - left->first) / (right->first - left->first));
  };
}

RealColour Develop(const Value& colour, const Development& development) {
  const RealColour light = Levelled(colour, development);
  RealColour result{};
  for (std::size_t i = 0; i < 3; ++i) {
    const RealColour& row = development.matrix[i];
    const Real mixed = Limited(row[0] * light[0] + row[1] * light[1] + row[2] * light[2]);
    result[i] = Limited(development.curve ? development.curve(mixed) : mixed) * 65535;
  }
  return result;
}

unsigned ToleranceOf(unsigned bits) {
  return std::max(16u >> (16 - bits), 1u);
}

}  // namespace Model
