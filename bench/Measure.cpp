#include "Measure.h"

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/RGBFilter.h>

#include <algorithm>
#include <cstring>

namespace Bench {
namespace {

using ZrConvertersLib::PixelConverter;
using ZrConvertersLib::RGBFilter;

/// Blocks of two lines and groups of pixels may reach past a frame.
std::size_t Slack(const Measurement& m) {
  return std::size_t{64} * (m.size.width + 64);
}

std::size_t MostBytes(const std::vector<Measurement>& measurements, bool source) {
  std::size_t most = 0;
  for (const Measurement& m : measurements) {
    const auto& format = source ? *m.what.source : *m.what.destination;
    most = std::max({most, FrameBytes(format, m.size) + Slack(m), m.bytes / 2 + 1});
  }
  return most;
}

/// Three different tables, none of them the identity.
class Tone : public RGBFilter {
 public:
  Tone() { SetMultipliers(1.2, 0.9, 1.4, 3, -2, 7); }
};

const RGBFilter* FilterOf(const Case& what) {
  static const Tone tone;
  return what.filtered ? &tone : nullptr;
}

/// Frames of an odd height (1x1) end with a line of their own.
std::uint32_t FlagsOf(const Case& what, Size size) {
  std::uint32_t flags = PixelConverter::FLAG_BAYER_RGGB;
  if (what.demosaic == Demosaic::Interpolate) flags |= PixelConverter::FLAG_BAYER_INTERPOLATE;
  if (size.height % 2 != 0) flags |= PixelConverter::FLAG_BAND_FIRST | PixelConverter::FLAG_BAND_LAST;
  return flags;
}

/// Small frames first. Neighbours are alike: with strides of a prime, a round that is cut short has seen some
/// of everything.
std::vector<std::size_t> OrderOf(const std::vector<Measurement>& measurements) {
  constexpr std::size_t kStride = 7919;
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < measurements.size(); ++i) order.push_back(i * kStride % measurements.size());
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return measurements[a].size.Pixels() < measurements[b].size.Pixels();
  });
  return order;
}

}  // namespace

Frames::Frames(const std::vector<Measurement>& measurements)
    : source(MostBytes(measurements, true), 0), destination(MostBytes(measurements, false), 2112) {
  source.FillWithNoise();
}

Burst BurstFor(const Measurement& m) {
  if (m.bytes < (std::size_t{1} << 18)) return {200e-6, 4};
  return m.bytes < (std::size_t{1} << 23) ? Burst{600e-6, 3} : Burst{0, 1};
}

std::vector<Measurement> Plan(const std::vector<Case>& cases, const std::vector<Size>& sizes) {
  std::vector<Measurement> plan;
  for (const Size& size : sizes)
    for (const Case& what : cases)
      plan.push_back({what, size, FrameBytes(*what.source, size) + FrameBytes(*what.destination, size)});
  return plan;
}

void ConvertFrame(const Case& what, Size size, Frames& frames) {
  const auto [width, height] = size;
  what.converter->Convert(frames.source.Data(), width, height, frames.destination.Data(), width, height,
                          width, height, FlagsOf(what, size), 0, &frames.pipelineBuffer,
                          &frames.pipelineBufferSize, 0, false, FilterOf(what));
}

void MeasureRound(Measurement& m, Frames& frames) {
  const auto convert = [&] { ConvertFrame(m.what, m.size, frames); };
  // A volatile pointer keeps the compiler from knowing the function, so that every call is made.
  static void* (*volatile copy)(void*, const void*, std::size_t) = std::memcpy;
  const auto copyHalf = [&] { copy(frames.destination.Data(), frames.source.Data(), m.bytes / 2); };
  m.seconds = std::min(m.seconds, FastestOf(convert, BurstFor(m)));
  m.copySeconds = std::min(m.copySeconds, FastestOf(copyHalf, BurstFor(m)));
  ++m.rounds;
}

void MeasureFor(Budget budget, std::vector<Measurement>& measurements, Frames& frames,
                const std::function<void(const std::string&)>& progress) {
  const std::vector<std::size_t> order = OrderOf(measurements);
  const double begin = Now();
  for (unsigned round = 1;; ++round) {
    for (const std::size_t i : order) {
      if ((round > 1 || budget.strict) && Now() - begin > budget.seconds) return;
      MeasureRound(measurements[i], frames);
    }
    progress("round " + std::to_string(round) + ", " + std::to_string(static_cast<int>(Now() - begin)) +
             " s");
  }
}

}  // namespace Bench
