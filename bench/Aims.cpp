#include "Aims.h"

#include <algorithm>
#include <array>

#include "Statistics.h"

namespace Bench {
namespace {

constexpr std::size_t kPlaces = 3;

/// Where the aims hold.
constexpr std::array<Place, kPlaces> kAimPlaces = {
    {{{640, 480}, false}, {{1920, 1080}, false}, {{4096, 3000}, true}}};

/// One aim for ratios to the floor, with a limit for each place.
struct Row {
  const char* text;
  bool isMean;  ///< about the geometric mean, otherwise about the worst
  bool (*selected)(const Measurement& m);
  std::array<double, kPlaces> v4, v3;
};

bool IsPlain(const Measurement& m) {
  return m.what.order == BitOrder::Named && !m.what.filtered;
}

bool IsFast(const Measurement& m) {
  return IsPlain(m) && m.what.demosaic != Demosaic::Interpolate;
}

bool IsMove(const Measurement& m) {
  return IsPlain(m) && m.what.GetKind() == Kind::Moves;
}

bool IsInterpolated(const Measurement& m) {
  return IsPlain(m) && m.what.demosaic == Demosaic::Interpolate;
}

bool IsFiltered(const Measurement& m) {
  return m.what.filtered && m.what.order == BitOrder::Named && m.what.demosaic != Demosaic::Interpolate;
}

constexpr Row kRows[] = {
    {"All pairs, fast demosaic: mean", true, IsFast, {1.20, 1.08, 1.05}, {1.40, 1.15, 1.08}},
    {"Pairs that only move or shift samples: worst", false, IsMove, {1.15, 1.15, 1.08}, {1.3, 1.2, 1.12}},
    {"All pairs, fast demosaic: worst", false, IsFast, {2.5, 1.4, 1.25}, {3.5, 1.8, 1.4}},
    {"Interpolating demosaic: mean", true, IsInterpolated, {1.5, 1.25, 1.2}, {3.0, 1.8, 1.4}},
    {"Filter with three tables: mean", true, IsFiltered, {1.8, 1.4, 1.1}, {4.0, 2.5, 1.5}},
};

Aim AimOf(const Row& row, std::size_t place, double limit, const std::vector<Measurement>& measurements) {
  const auto selected = [&](const Measurement& m) { return m.place == kAimPlaces[place] && row.selected(m); };
  const Summary all = Summarise(measurements, selected);
  const Summary above =
      Summarise(measurements, [&](const Measurement& m) { return selected(m) && m.Ratio() > limit; });
  return {row.text,     kAimPlaces[place].Name(),
          limit,        row.isMean ? all.geometricMean : all.worst,
          above.count,  all.count,
          all.worstName};
}

bool IsDirect(const Measurement& m) {
  return !m.what.IsChain() && m.what.demosaic != Demosaic::Interpolate;
}

/// About what a call costs beside its pixels.
struct FixedCostRow {
  const char* text;
  bool isDirect, isFiltered;
  double nanoseconds;
};

constexpr FixedCostRow kFixedCostRows[] = {
    {"Nanoseconds beside the pixels, direct: most", true, false, 60},
    {"Nanoseconds beside the pixels, chains and interpolation: most", false, false, 150},
    {"Nanoseconds beside the pixels, direct, three tables: most", true, true, 60},
    {"Nanoseconds beside the pixels, chains and interpolation, three tables: most", false, true, 150},
};

/// The slowest call for 64x64, without the time of its pixels.
Aim AimOf(const FixedCostRow& row, const std::vector<Measurement>& measurements) {
  const double limit = row.nanoseconds;
  Aim aim{row.text, "64x64", limit, 0, 0, 0, ""};
  for (const Measurement& m : measurements) {
    const bool isOf =
        m.rounds > 0 && m.TellsFixedCost() && m.place.size.width == 64 && m.what.order == BitOrder::Named;
    if (!isOf || IsDirect(m) != row.isDirect || m.what.filtered != row.isFiltered) continue;
    const double nanoseconds = m.FixedSeconds() * 1e9;
    ++aim.count;
    if (nanoseconds > limit) ++aim.above;
    if (nanoseconds > aim.reached) aim.worstName = m.what.Name();
    aim.reached = std::max(aim.reached, nanoseconds);
  }
  return aim;
}

}  // namespace

std::vector<Aim> AimsOf(std::string_view level, const std::vector<Measurement>& measurements) {
  std::vector<Aim> aims;
  const bool isV3 = level == "x86-64-v3";
  if (isV3 || level == "x86-64-v4")
    for (const Row& row : kRows)
      for (std::size_t place = 0; place < kPlaces; ++place)
        aims.push_back(AimOf(row, place, isV3 ? row.v3[place] : row.v4[place], measurements));
  for (const FixedCostRow& row : kFixedCostRows) aims.push_back(AimOf(row, measurements));
  std::erase_if(aims, [](const Aim& aim) { return aim.count == 0; });
  return aims;
}

}  // namespace Bench
