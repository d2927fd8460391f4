#include "Statistics.h"

#include <cmath>

namespace Bench {
namespace {

Selector Frames640(bool filtered, const std::function<bool(Kind)>& isKind) {
  return [=](const Measurement& m) {
    return m.size.width == 640 && m.what.filtered == filtered && isKind(m.what.GetKind());
  };
}

Selector Frames4096(bool filtered) {
  return [=](const Measurement& m) { return m.size.width == 4096 && m.what.filtered == filtered; };
}

std::function<bool(Kind)> Is(Kind wanted) {
  return [=](Kind kind) { return kind == wanted; };
}

bool Any(Kind) {
  return true;
}

}  // namespace

Summary Summarise(const std::vector<Measurement>& measurements, const Selector& selected) {
  Summary summary;
  double logarithms = 0;
  for (const Measurement& m : measurements) {
    if (m.rounds == 0 || !selected(m)) continue;
    ++summary.count;
    logarithms += std::log(m.Ratio());
    if (m.Ratio() <= summary.worst) continue;
    summary.worst = m.Ratio();
    summary.worstName = m.what.Name();
  }
  if (summary.count > 0) summary.geometricMean = std::exp(logarithms / static_cast<double>(summary.count));
  return summary;
}

std::vector<Aim> Aims(double allowance) {
  std::vector<Aim> aims{
      {"640x480: every pair that only moves and shifts bits", 1.3, false, Frames640(false, Is(Kind::Moves))},
      {"640x480: every fast demosaic", 1.5, false, Frames640(false, Is(Kind::Fast))},
      {"640x480: every interpolating demosaic", 2.5, false, Frames640(false, Is(Kind::Interpolate))},
      {"640x480: every YCbCr pair", 2.0, false, Frames640(false, Is(Kind::Matrix))},
      {"640x480: geometric mean", 1.2, true, Frames640(false, Any)},
      {"640x480: every pair with a filter", 2.0, false, Frames640(true, Any)},
      {"4096x3000: every pair", 1.0, false, Frames4096(false)},
      {"4096x3000: geometric mean", 0.75, true, Frames4096(false)},
      {"4096x3000: every pair with a filter", 1.0, false, Frames4096(true)},
  };
  for (Aim& aim : aims) aim.limit *= allowance;
  return aims;
}

}  // namespace Bench
