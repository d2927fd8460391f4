#include <ZrConvertersLib/Measure.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "core/FormatTable.h"
#include "develop/PlaneStrips.h"
#include "develop/SampleLines.h"
#include "frame/FramePlan.h"
#include "frame/Rect.h"

namespace ZrConvertersLib {

namespace {

using ZrUtilsLib::Result;

/// Bits of a histogram's largest index.
constexpr unsigned kMostDepth = 16;

/// How samples lie in memory: bytes, or words that have their lowest bit at bit `shift`.
struct SampleForm {
  bool words;
  unsigned depth, shift;
};

/// Counts samples in several tables in turn: an addition to the same count as the one before would have to
/// wait for it, and neighbouring samples are often equal. Each sample costs a store of its own, which bounds
/// the speed to one sample a cycle.
class Counter {
 public:
  /// Samples that are counted at a time; also the most tables.
  static constexpr std::int64_t kBatch = 8;

  explicit Counter(const SampleForm& form)
      : mForm(form),
        mSize(std::size_t{1} << form.depth),
        // Few enough to stay in the first-level cache, if the depth allows that.
        mTables(form.depth <= 10   ? 8
                : form.depth <= 12 ? 4
                                   : 2),
        mCounts(mTables * Stride()) {}

  /// Samples of a line. Those at even and at odd places are counted apart.
  void Add(const std::uint8_t* samples, std::int64_t count) {
    if (mForm.words)
      AddLine<std::uint16_t>(samples, count);
    else
      AddLine<std::uint8_t>(samples, count);
    // Far below what 32 bits hold, so that a line cannot overflow them.
    mAdded += static_cast<std::uint64_t>(count);
  }

  bool IsFull() const { return mAdded >= std::uint64_t{1} << 31; }

  /// Adds up the counts of samples at even and at odd places and begins anew.
  void MoveInto(ChannelStatistics& even, ChannelStatistics& odd) {
    for (std::size_t table = 0; table < mTables; ++table) {
      const std::uint32_t* const counts = mCounts.data() + table * Stride();
      std::uint64_t* const sums = (table % 2 == 0 ? even : odd).histogram.data();
      for (std::size_t i = 0; i < mSize; ++i) sums[i] += counts[i];
    }
    std::fill(mCounts.begin(), mCounts.end(), 0);
    mAdded = 0;
  }

 private:
  /// Counts from a table to the next: a cache line more than a table has, since processors take loads and
  /// stores at a distance of 4096 bytes for the same at first.
  std::size_t Stride() const { return mSize + 16; }

  template <class Sample>
  void AddLine(const std::uint8_t* samples, std::int64_t count) {
    std::array<std::uint32_t*, kBatch> tables;
    for (std::size_t i = 0; i < kBatch; ++i) tables[i] = mCounts.data() + i % mTables * Stride();
    const auto mask = sizeof(Sample) == 1 ? 0xFF : mSize - 1;
    const std::uint8_t* const end = samples + RoundDown(count, kBatch) * std::int64_t{sizeof(Sample)};
    for (; samples != end; samples += kBatch * sizeof(Sample)) {
      constexpr std::size_t kPerLoad = sizeof(std::uint64_t) / sizeof(Sample);
      std::uint64_t loaded[sizeof(Sample)];
      std::memcpy(loaded, samples, sizeof loaded);
      for (std::uint64_t& part : loaded) part >>= sizeof(Sample) == 1 ? 0 : mForm.shift;
      for (std::size_t i = 0; i < kBatch; ++i)
        ++tables[i][(loaded[i / kPerLoad] >> (i % kPerLoad * 8 * sizeof(Sample))) & mask];
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(count % kBatch); ++i) {
      Sample sample;
      std::memcpy(&sample, samples + i * sizeof sample, sizeof sample);
      ++tables[i][sizeof(Sample) == 1 ? sample : std::size_t{sample} >> mForm.shift & mask];
    }
  }

  SampleForm mForm;
  std::size_t mSize, mTables;
  std::uint64_t mAdded = 0;
  std::vector<std::uint32_t> mCounts;
};

/// Minimum, maximum and mean follow from the histogram.
void Summarise(ChannelStatistics& channel) {
  const auto& histogram = channel.histogram;
  std::uint64_t count = 0, sum = 0;
  for (std::size_t i = 0; i < histogram.size(); ++i) {
    count += histogram[i];
    sum += histogram[i] * i;
  }
  const auto occurs = [](std::uint64_t n) { return n != 0; };
  const auto first = std::find_if(histogram.begin(), histogram.end(), occurs);
  const auto last = std::find_if(histogram.rbegin(), histogram.rend(), occurs);
  channel.count = count;
  channel.minimum = count != 0 ? static_cast<std::uint32_t>(first - histogram.begin()) : 0;
  channel.maximum = count != 0 ? static_cast<std::uint32_t>(histogram.rend() - last - 1) : 0;
  channel.mean = count != 0 ? static_cast<double>(sum) / static_cast<double>(count) : 0.0;
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

/// Lines of samples of the 16-bit scale, or the frame's own if its format is not packed.
class PlainLines {
 public:
  explicit PlainLines(const Job& job)
      : mSource{static_cast<const std::uint8_t*>(job.source.data),
                static_cast<std::ptrdiff_t>(job.source.stride)},
        mInPlace(job.row->packing == Packing::Plain),
        mSampleBytes(job.row->container / 8),
        mSamples(*job.row, OptionsOf(job).GetFlags()),
        mFirst(RoundDown(job.region.x0, SampleLines::kStep)),
        mEnd(std::min<std::int64_t>(RoundUp(job.region.x1, SampleLines::kStep), job.source.width)),
        mBegin(job.region.x0),
        mWords(mInPlace ? 0 : static_cast<std::size_t>(2 * (mEnd - mFirst + 2 * SampleLines::kSlack))),
        mForm{!mInPlace || mSampleBytes == 2, job.row->depth, mInPlace ? 0U : kMostDepth - job.row->depth} {}

  const SampleForm& Form() const { return mForm; }

  /// The region's first sample in a line.
  const std::uint8_t* Line(std::int64_t y) {
    if (mInPlace) return mSource.data + y * mSource.stride + mBegin * mSampleBytes;
    mSamples.Read(mSource, y, 1, mFirst, mEnd, mWords.data(), 0);
    return mWords.data() + 2 * (mBegin - mFirst);
  }

 private:
  SourceLines mSource;
  bool mInPlace;
  std::int64_t mSampleBytes;
  SampleLines mSamples;
  std::int64_t mFirst, mEnd, mBegin;
  std::vector<std::uint8_t> mWords;
  SampleForm mForm;
};

/// Samples as they lie in the frame. A mosaic's lines of either colour are counted one after the other, so
/// that fewer counts are in use at a time.
void MeasureSamples(const Job& job, FrameStatistics& statistics) {
  PlainLines lines(job);
  Counter counter(lines.Form());
  const bool mosaic = statistics.channels != 1;
  for (std::int64_t parity = 0; parity < (mosaic ? 2 : 1); ++parity) {
    const auto channelAt = [&](std::int64_t column) -> ChannelStatistics& {
      return statistics.channel[mosaic ? ColourAt(job.options.pattern, job.region.x0 + column, parity) : 0];
    };
    for (std::int64_t y = job.region.y0; y < job.region.y1; y += job.options.lineStep) {
      if (mosaic && y % 2 != parity) continue;
      counter.Add(lines.Line(y), job.region.Width());
      if (counter.IsFull()) counter.MoveInto(channelAt(0), channelAt(1));
    }
    counter.MoveInto(channelAt(0), channelAt(1));
  }
}

/// Red, green and blue, or grey, as conversions make them.
Result MeasureConverted(const Job& job, FrameStatistics& statistics) {
  const bool words = job.row->depth != 8, grey = statistics.channels == 1;
  const long colours = words ? PixelTypeIds::RGB16_Planar : PixelTypeIds::RGB8_Planar;
  const long greys = words ? PixelTypeIds::Mono16 : PixelTypeIds::Mono8;
  FramePlan plan;
  Result result = MakeFramePlan(job.row->id, grey ? greys : colours, job.source.width, job.source.height,
                                OptionsOf(job), plan);
  if (!result.IsSuccess()) return result;
  PlaneStrips strips(plan, job.row->family == Family::YCbCr && words);
  const SourceLines source{static_cast<const std::uint8_t*>(job.source.data),
                           static_cast<std::ptrdiff_t>(job.source.stride)};
  const SampleForm form{words, statistics.depth, kMostDepth - statistics.depth};
  std::vector<Counter> counters(statistics.channels, Counter(form));
  const std::int64_t step = job.options.lineStep, most = step == 1 ? strips.Lines() : 1;
  for (std::int64_t y = job.region.y0; y < job.region.y1; y += most * step) {
    const std::int64_t count = std::min(most, job.region.y1 - y);
    result = strips.Make(source, y, count);
    if (!result.IsSuccess()) return result;
    for (unsigned i = 0; i < statistics.channels; ++i) {
      ChannelStatistics& channel = statistics.channel[i];
      for (std::int64_t line = 0; line < count; ++line)
        counters[i].Add(strips.Pixels(i, line), job.region.Width());
      if (counters[i].IsFull() || y + most * step >= job.region.y1) counters[i].MoveInto(channel, channel);
    }
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
  if (HasPlainSamples(*job.row)) {
    MeasureSamples(job, statistics);
  } else {
    const Result result = MeasureConverted(job, statistics);
    if (!result.IsSuccess()) return result;
  }
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
