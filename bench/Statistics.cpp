#include "Statistics.h"

#include <cmath>

namespace Bench {

Summary Summarise(const std::vector<Measurement>& measurements, const Selector& selected) {
  Summary summary;
  double logarithms = 0, copyLogarithms = 0;
  for (const Measurement& m : measurements) {
    if (m.rounds == 0 || !selected(m)) continue;
    ++summary.count;
    logarithms += std::log(m.Ratio());
    copyLogarithms += std::log(m.CopyRatio());
    if (m.Ratio() <= summary.worst) continue;
    summary.worst = m.Ratio();
    summary.worstName = m.what.Name();
  }
  if (summary.count == 0) return summary;
  const auto count = static_cast<double>(summary.count);
  summary.geometricMean = std::exp(logarithms / count);
  summary.copyMean = std::exp(copyLogarithms / count);
  return summary;
}

}  // namespace Bench
