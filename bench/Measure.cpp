#include "Measure.h"

#include <ZrConvertersLib/CpuLevel.h>
#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <ZrConvertersLib/ToneSettings.h>

#include <algorithm>
#include <cstring>

#include "Floor.h"

namespace Bench {
namespace {

using ZrConvertersLib::FormatFamily;
using ZrConvertersLib::FormatInfo;
using ZrConvertersLib::PixelConverter;
using ZrConvertersLib::RGBFilter;

constexpr std::size_t kMiB = std::size_t{1} << 20;

/// Bytes that a call may touch of a frame: blocks of two lines and groups of pixels may reach past it.
std::size_t Reach(const FormatInfo& format, Size size) {
  return FrameBytes(format, size) + std::size_t{64} * (size.width + 64);
}

std::size_t MostBytes(const std::vector<Measurement>& measurements, bool source) {
  std::size_t most = 0;
  for (const Measurement& m : measurements)
    most =
        std::max({most, Reach(source ? *m.what.source : *m.what.destination, m.place.size), m.bytes / 2 + 1});
  return most;
}

/// Each of the two rings takes half of what frames from memory must take: four times the last cache, but not
/// more than 1 GiB.
std::size_t RingBytes(const std::vector<Measurement>& measurements, bool source) {
  const bool fromMemory = std::any_of(measurements.begin(), measurements.end(),
                                      [](const Measurement& m) { return m.place.fromMemory; });
  const std::size_t far = std::min(4 * LastCacheBytes(), 1024 * kMiB) / 2;
  return std::max(MostBytes(measurements, source), fromMemory ? far : 0);
}

/// Three different tables, none of them the identity, of either kind.
class Tone : public RGBFilter {
 public:
  explicit Tone(Tables tables) {
    if (tables == Tables::Gains)
      SetMultipliers(1.2, 0.9, 1.4, 3, -2, 7);
    else
      SetTone({.gamma = 2.2, .balance = {1.2, 0.9, 1.4}, .gain = {}});
  }
};

const RGBFilter* FilterOf(const Case& what, Tables tables) {
  static const Tone gains(Tables::Gains), gammas(Tables::Gammas);
  if (!what.filtered) return nullptr;
  return tables == Tables::Gains ? &gains : &gammas;
}

std::uint32_t InterpolationFlag(const Case& what) {
  if (what.demosaic != Demosaic::Interpolate) return 0;
  return what.source->family == FormatFamily::BiColor ? PixelConverter::FLAG_BICOLOR_INTERPOLATE
                                                      : PixelConverter::FLAG_BAYER_INTERPOLATE;
}

std::uint32_t OrderFlag(const Case& what) {
  if (what.order == BitOrder::Named) return 0;
  return what.order == BitOrder::Csi2 ? PixelConverter::FLAG_PACKED_CSI2
                                      : PixelConverter::FLAG_PACKED_GIGE_VISION;
}

/// Frames of an odd height (1x1) end with a line of their own.
std::uint32_t FlagsOf(const Case& what, Size size) {
  std::uint32_t flags = PixelConverter::FLAG_BAYER_RGGB | InterpolationFlag(what) | OrderFlag(what);
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
    return measurements[a].place.size.Pixels() < measurements[b].place.size.Pixels();
  });
  return order;
}

/// What of a measurement is looked at.
double FigureOf(const Measurement& m) {
  return m.TellsFixedCost() ? m.FixedSeconds() : m.Ratio();
}

/// Of each place a twentieth with the highest figures and as many with the lowest.
std::vector<std::size_t> Doubtful(const std::vector<Measurement>& measurements) {
  std::vector<std::size_t> doubtful;
  std::vector<bool> seen(measurements.size());
  for (std::size_t i = 0; i < measurements.size(); ++i) {
    if (seen[i]) continue;
    std::vector<std::size_t> same;
    for (std::size_t j = i; j < measurements.size(); ++j) {
      const bool alike = measurements[j].place == measurements[i].place &&
                         measurements[j].what.GetKind() == measurements[i].what.GetKind() &&
                         measurements[j].what.filtered == measurements[i].what.filtered;
      if (alike) same.push_back(j);
      seen[j] = seen[j] || alike;
    }
    std::sort(same.begin(), same.end(), [&](std::size_t a, std::size_t b) {
      return FigureOf(measurements[a]) > FigureOf(measurements[b]);
    });
    const std::size_t count = (same.size() + 19) / 20;
    for (std::size_t n = 0; n < count; ++n) {
      doubtful.push_back(same[n]);
      if (same.size() - 1 - n >= count) doubtful.push_back(same[same.size() - 1 - n]);
    }
  }
  return doubtful;
}

/// Keeps the fastest.
template <class F>
void Measure(double& seconds, F&& call, const Burst& burst) {
  seconds = std::min(seconds, FastestOf(call, burst));
}

/// A floor that is far above the other one is measured only once.
bool IsHopeless(double floor, double other) {
  return floor > 1.5 * other && floor < Measurement::kUnmeasured;
}

void MeasureFloors(Measurement& m, Frames& frames, const Burst& burst) {
  const FloorFunctions& functions = FloorOf(ZrConvertersLib::GetCpuLevel());
  const auto run = [&](FloorFunction floor) {
    return [&, floor] {
      const FramePair pair = frames.Next(m);
      floor(FloorFrameOf(m.what, m.place.size, pair.source, pair.destination));
    };
  };
  if (!IsHopeless(m.ordinaryFloor, m.streamingFloor))
    Measure(m.ordinaryFloor, run(functions.ordinary), burst);
  const bool canStream = functions.streaming != nullptr && CanStream(m.what, m.place.size);
  if (canStream && !IsHopeless(m.streamingFloor, m.ordinaryFloor))
    Measure(m.streamingFloor, run(functions.streaming), burst);
}

}  // namespace

std::string Place::Name() const {
  return size.Name() + (fromMemory ? " from memory" : "");
}

bool Place::operator==(const Place& other) const {
  return size.width == other.size.width && size.height == other.size.height && fromMemory == other.fromMemory;
}

double Measurement::FloorSeconds() const {
  return std::min(ordinaryFloor, streamingFloor);
}

bool Measurement::TellsFixedCost() const {
  constexpr std::uint64_t kFew = 4096;
  return place.size.Pixels() <= kFew && place.size.height % 16 == 0 && !place.fromMemory;
}

Frames::Frames(const std::vector<Measurement>& measurements)
    : source(RingBytes(measurements, true), 0), destination(RingBytes(measurements, false), 2112) {
  source.FillWithNoise();
}

FramePair Frames::Next(bool fromMemory, std::size_t sourceBytes, std::size_t destinationBytes) {
  if (!fromMemory) return {source.First(), destination.First()};
  return {source.Take(sourceBytes), destination.Take(destinationBytes)};
}

FramePair Frames::Next(const Measurement& m) {
  return Next(m.place.fromMemory, Reach(*m.what.source, m.place.size),
              Reach(*m.what.destination, m.place.size));
}

Burst BurstFor(const Measurement& m) {
  if (m.bytes < kMiB / 4) return {200e-6, 4};
  if (m.bytes < 8 * kMiB) return {600e-6, 3};
  return m.place.fromMemory ? Burst{0, 0} : Burst{0, 2};
}

std::vector<Measurement> Plan(const std::vector<Case>& cases, const std::vector<Place>& places) {
  std::vector<Measurement> plan;
  for (const Place& place : places)
    for (const Case& what : cases)
      plan.push_back(
          {what, place, FrameBytes(*what.source, place.size) + FrameBytes(*what.destination, place.size)});
  return plan;
}

void ConvertFrame(const Case& what, Size size, FramePair pair, Frames& frames) {
  const auto [width, height] = size;
  what.converter->Convert(pair.source, width, height, pair.destination, width, height, width, height,
                          FlagsOf(what, size), 0, &frames.pipelineBuffer, &frames.pipelineBufferSize, 0,
                          false, FilterOf(what, frames.tables));
}

void MeasureRound(Measurement& m, Frames& frames) {
  const Burst burst = BurstFor(m);
  const auto convert = [&](Size size) {
    return [&, size] { ConvertFrame(m.what, size, frames.Next(m), frames); };
  };
  // A volatile pointer keeps the compiler from knowing the function, so that every call is made.
  static void* (*volatile copy)(void*, const void*, std::size_t) = std::memcpy;
  const std::size_t half = m.bytes / 2;
  const auto copyHalf = [&] {
    const FramePair pair = frames.Next(m.place.fromMemory, half, half);
    copy(pair.destination, pair.source, half);
  };
  const Size size = m.place.size;
  Measure(m.seconds, convert(size), burst);
  MeasureFloors(m, frames, burst);
  Measure(m.copySeconds, copyHalf, burst);
  if (m.TellsFixedCost()) Measure(m.quarterSeconds, convert({size.width, size.height / 4}), burst);
  ++m.rounds;
}

void MeasureFor(Budget budget, std::vector<Measurement>& measurements, Frames& frames,
                const std::function<void(const std::string&)>& progress) {
  constexpr double kShareOfAll = 0.75;
  const double begin = Now();
  const auto passed = [&] { return Now() - begin; };
  const auto say = [&](const std::string& what) {
    progress(what + ", " + std::to_string(static_cast<int>(passed())) + " s");
  };
  const std::vector<std::size_t> order = OrderOf(measurements);
  for (unsigned round = 1; round == 1 || passed() < kShareOfAll * budget.seconds; ++round) {
    for (const std::size_t i : order) {
      if ((round > 1 || budget.strict) && passed() > budget.seconds) return;
      MeasureRound(measurements[i], frames);
    }
    say("round " + std::to_string(round));
  }
  while (passed() < budget.seconds)
    for (const std::size_t i : Doubtful(measurements)) MeasureRound(measurements[i], frames);
  say("highest and lowest ratios again");
}

}  // namespace Bench
