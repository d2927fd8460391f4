#include "Statistics.h"

#include <algorithm>
#include <numeric>

#include "Demosaic.h"

namespace Model {

Statistics Measure(std::span<const std::uint32_t> samples, unsigned depth, std::size_t bins) {
  Statistics result;
  result.histogram.resize(bins);
  if (samples.empty()) return result;
  result.count = samples.size();
  const auto [minimum, maximum] = std::ranges::minmax(samples);
  result.minimum = minimum;
  result.maximum = maximum;
  const auto sum = std::accumulate(samples.begin(), samples.end(), std::uint64_t{0});
  result.mean = static_cast<long double>(sum) / static_cast<long double>(result.count);
  for (const std::uint32_t sample : samples)
    ++result.histogram[static_cast<std::size_t>(std::uint64_t{sample} * bins >> depth)];
  return result;
}

std::vector<std::uint32_t> SamplesOfSites(std::span<const std::uint32_t> samples, std::uint32_t width,
                                          const MeasuredPart& part, unsigned flags, unsigned channel) {
  const auto tile = FirstTile(flags);
  std::vector<std::uint32_t> ofChannel;
  for (const std::uint32_t y : part.lines)
    for (std::uint32_t x = part.left; x < part.right; ++x)
      if (tile[y % 2 * 2 + x % 2] == static_cast<Site>(channel))
        ofChannel.push_back(samples[std::size_t{y} * width + x]);
  return ofChannel;
}

}  // namespace Model
