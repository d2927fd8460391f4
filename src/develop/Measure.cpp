#include <ZrConvertersLib/Measure.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "core/FormatTable.h"
#include "develop/SampleLines.h"
#include "frame/Rect.h"

namespace ZrConvertersLib {

namespace {

using ZrUtilsLib::Result;

/// Bits of a histogram's largest index.
constexpr unsigned kMostDepth = 16;

/// Histograms of lines: two of each channel, since adding to the same count again has to wait for the first.
class Counter {
 public:
  Counter(unsigned depth, unsigned channels)
      : mShift(kMostDepth - depth), mSize(std::size_t{1} << depth), mCounts(channels * 2 * mSize) {}

  /// Words of the 16-bit scale, `step` words apart.
  void Add(unsigned channel, const std::uint8_t* words, std::int64_t count, std::int64_t step) {
    std::uint32_t* const even = mCounts.data() + std::size_t{2} * channel * mSize;
    std::uint32_t* const odd = even + mSize;
    const std::uint8_t* const end = words + 2 * step * (count / 2 * 2);
    for (; words != end; words += 4 * step) {
      ++even[At(words)];
      ++odd[At(words + 2 * step)];
    }
    if (count % 2 != 0) ++even[At(words)];
    // Far below what 32 bits hold, so that a line cannot overflow them.
    mAdded += static_cast<std::uint64_t>(count);
  }

  bool IsFull() const { return mAdded >= std::uint64_t{1} << 31; }

  void MoveInto(FrameStatistics& statistics) {
    for (unsigned channel = 0; channel < statistics.channels; ++channel) {
      std::uint32_t* const even = mCounts.data() + std::size_t{2} * channel * mSize;
      for (std::size_t i = 0; i < mSize; ++i)
        statistics.channel[channel].histogram[i] += std::uint64_t{even[i]} + even[i + mSize];
    }
    std::fill(mCounts.begin(), mCounts.end(), 0);
    mAdded = 0;
  }

 private:
  std::size_t At(const std::uint8_t* word) const {
    std::uint16_t value;
    std::memcpy(&value, word, sizeof value);
    return value >> mShift;
  }

  unsigned mShift;
  std::size_t mSize;
  std::uint64_t mAdded = 0;
  std::vector<std::uint32_t> mCounts;
};

/// Minimum, maximum and mean follow from the histogram.
void Summarise(ChannelStatistics& channel) {
  channel.count = 0;
  channel.minimum = channel.maximum = 0;
  double sum = 0.0;
  for (std::size_t i = 0; i < channel.histogram.size(); ++i) {
    const std::uint64_t n = channel.histogram[i];
    if (n == 0) continue;
    if (channel.count == 0) channel.minimum = static_cast<std::uint32_t>(i);
    channel.maximum = static_cast<std::uint32_t>(i);
    channel.count += n;
    sum += static_cast<double>(n) * static_cast<double>(i);
  }
  channel.mean = channel.count != 0 ? sum / static_cast<double>(channel.count) : 0.0;
}

/// What is measured, checked.
struct Job {
  const FormatRow* row;
  SourceView source;
  MeasureOptions options;
  Rect region;
};

FrameOptions OptionsOf(const Job& job) {
  FrameOptions options;
  options.pattern = job.options.pattern;
  options.matrix = job.options.matrix;
  options.packing = job.options.packing;
  options.region = job.options.region;
  options.fullDepth = true;
  return options;
}

/// Red 0, green 1, blue 2 at the site of a Bayer mosaic.
unsigned ColourAt(MosaicPattern pattern, std::int64_t x, std::int64_t y) {
  const bool greenFirst = pattern == MosaicPattern::GRBG || pattern == MosaicPattern::GBRG;
  const bool redFirst = pattern == MosaicPattern::GRBG || pattern == MosaicPattern::RGGB;
  const bool oddLine = y % 2 != 0;
  if ((x % 2 != 0) == (greenFirst == oddLine)) return 1;
  return redFirst != oddLine ? 0 : 2;
}

/// Samples as they lie in the frame.
void MeasureSamples(const Job& job, Counter& counter, FrameStatistics& statistics) {
  const SourceLines source{static_cast<const std::uint8_t*>(job.source.data),
                           static_cast<std::ptrdiff_t>(job.source.stride)};
  const SampleLines samples(*job.row, OptionsOf(job).GetFlags());
  const std::int64_t first = RoundDown(job.region.x0, SampleLines::kStep);
  const std::int64_t end =
      std::min<std::int64_t>(RoundUp(job.region.x1, SampleLines::kStep), job.source.width);
  std::vector<std::uint8_t> words(static_cast<std::size_t>(2 * (end - first + 2 * SampleLines::kSlack)));
  const std::uint8_t* const begin = words.data() + 2 * (job.region.x0 - first);
  for (std::int64_t y = job.region.y0; y < job.region.y1; y += job.options.lineStep) {
    samples.Read(source, y, 1, first, end, words.data(), 0);
    const std::int64_t sites = statistics.channels == 1 ? 1 : 2;
    for (std::int64_t site = 0; site < sites; ++site) {
      const unsigned channel = sites == 1 ? 0 : ColourAt(job.options.pattern, job.region.x0 + site, y);
      counter.Add(channel, begin + 2 * site, (job.region.Width() - site + sites - 1) / sites, sites);
    }
    if (counter.IsFull()) counter.MoveInto(statistics);
  }
}

/// Red, green and blue, or grey, as conversions make them.
Result MeasureConverted(const Job& job, Counter& counter, FrameStatistics& statistics) {
  FrameOptions options = OptionsOf(job);
  const long planes = statistics.channels == 1 ? PixelTypeIds::Mono16 : PixelTypeIds::RGB16_Planar;
  FrameConverter converter;
  // A line at a time, each a region of its own.
  std::vector<std::uint8_t> words(static_cast<std::size_t>(6 * job.region.Width()));
  for (std::int64_t y = job.region.y0; y < job.region.y1; y += job.options.lineStep) {
    options.region = {static_cast<std::uint32_t>(job.region.x0), static_cast<std::uint32_t>(y),
                      static_cast<std::uint32_t>(job.region.Width()), 1};
    Result result = converter.Configure(job.row->id, planes, job.source.width, job.source.height, options);
    const auto width = static_cast<std::uint32_t>(job.region.Width());
    if (result.IsSuccess()) result = converter.Convert(job.source, DestinationView::Of(words, width, 1));
    if (!result.IsSuccess()) return result;
    for (unsigned channel = 0; channel < statistics.channels; ++channel)
      counter.Add(channel, words.data() + 2 * channel * job.region.Width(), job.region.Width(), 1);
    if (counter.IsFull()) counter.MoveInto(statistics);
  }
  return {};
}

/// Formats whose samples SampleLines reads.
bool HasPlainSamples(const FormatRow& row) {
  const bool oneSample = row.family == Family::Mono || row.family == Family::Bayer;
  return oneSample && row.depth >= 8 && row.depth <= kMostDepth && (row.traits & kSigned) == 0;
}

/// Checks by configuring and asking for no lines.
Result Check(const Job& job) {
  FrameConverter converter;
  Result result = converter.Configure(job.row->id, PixelTypeIds::Mono8, job.source.width, job.source.height,
                                      OptionsOf(job));
  if (!result.IsSuccess()) return result;
  if (job.source.data == nullptr) return FrameError::NullSource;
  FrameLayout layout;
  result = DescribeFrame(job.row->id, job.source.width, job.source.height, job.source.stride, layout);
  if (!result.IsSuccess()) return result;
  return job.source.size < layout.leastBytes ? Result(FrameError::SourceTooSmall) : Result();
}

Rect RegionOf(const Region& region, const SourceView& source) {
  const std::int64_t width = region.width != 0 ? region.width : source.width - region.x;
  const std::int64_t height = region.height != 0 ? region.height : source.height - region.y;
  return {region.x, region.y, region.x + width, region.y + height};
}

Result Measure(Job& job, FrameStatistics& statistics) {
  const Result checked = Check(job);
  if (!checked.IsSuccess()) return checked;
  FrameLayout layout;
  DescribeFrame(job.row->id, job.source.width, job.source.height, job.source.stride, layout);
  job.source.stride = static_cast<std::size_t>(layout.stride);
  job.region = RegionOf(job.options.region, job.source);
  statistics.depth = std::min<unsigned>(job.row->depth, kMostDepth);
  statistics.channels = job.row->family == Family::Mono ? 1 : 3;
  for (unsigned i = 0; i < statistics.channels; ++i)
    statistics.channel[i].histogram.assign(std::size_t{1} << statistics.depth, 0);
  Counter counter(statistics.depth, statistics.channels);
  if (HasPlainSamples(*job.row)) {
    MeasureSamples(job, counter, statistics);
  } else {
    const Result result = MeasureConverted(job, counter, statistics);
    if (!result.IsSuccess()) return result;
  }
  counter.MoveInto(statistics);
  for (ChannelStatistics& channel : statistics.channel) Summarise(channel);
  return {};
}

/// The first sample up to which more than `wanted` samples lie.
double SampleAt(const ChannelStatistics& channel, double wanted) {
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < channel.histogram.size(); ++i) {
    sum += channel.histogram[i];
    if (static_cast<double>(sum) > wanted) return static_cast<double>(i);
  }
  return channel.maximum;
}

}  // namespace

Result MeasureFrame(long format, const SourceView& source, const MeasureOptions& options,
                    FrameStatistics& statistics) {
  Job job{FindFormat(format), source, options, {}};
  if (job.row == nullptr) return FrameError::UnknownFormat;
  if (options.lineStep == 0) return FrameError::LinesOutside;
  try {
    return Measure(job, statistics);
  } catch (const std::bad_alloc&) {
    return FrameError::OutOfMemory;
  }
}

Levels LevelsOf(const FrameStatistics& statistics, double blackShare, double whiteShare) noexcept {
  Levels levels{std::ldexp(1.0, static_cast<int>(statistics.depth)) - 1.0, 0.0};
  for (const ChannelStatistics& channel : statistics.All()) {
    const auto count = static_cast<double>(channel.count);
    levels.black = std::min(levels.black, SampleAt(channel, blackShare * count));
    levels.white = std::max(levels.white, SampleAt(channel, whiteShare * count));
  }
  levels.white = std::max(levels.white, levels.black + 1.0);
  return levels;
}

ToneSettings::Channels GreyWorldGains(const FrameStatistics& statistics, double black) noexcept {
  if (statistics.channels != 3) return {};
  std::array<double, 3> light{};
  for (std::size_t i = 0; i < 3; ++i) light[i] = statistics.channel[i].mean - black;
  const double most = *std::max_element(light.begin(), light.end());
  if (*std::min_element(light.begin(), light.end()) <= 0.0) return {};
  return {most / light[0], most / light[1], most / light[2]};
}

double SaturatedShare(const FrameStatistics& statistics) noexcept {
  std::uint64_t all = 0, saturated = 0;
  for (const ChannelStatistics& channel : statistics.All()) {
    all += channel.count;
    if (!channel.histogram.empty()) saturated += channel.histogram.back();
  }
  return all != 0 ? static_cast<double>(saturated) / static_cast<double>(all) : 0.0;
}

}  // namespace ZrConvertersLib
