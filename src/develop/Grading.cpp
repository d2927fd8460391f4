#include "develop/Grading.h"

#include <ZrConvertersLib/FrameErrors.h>

#include <algorithm>
#include <bit>
#include <cmath>

#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

using Channels = ToneSettings::Channels;

constexpr double kScale = 65535.0;
constexpr double kCentre = 32768.0;
constexpr double kReducedFull = 255.0 * 256.0;
constexpr std::array<double, 9> kIdentity = {1, 0, 0, 0, 1, 0, 0, 0, 1};

std::array<double, 3> ListOf(const Channels& channels) {
  return {channels.red, channels.green, channels.blue};
}

/// 2^bits - 1.
double LargestSample(const FormatRow& source) {
  return std::ldexp(1.0, source.depth) - 1.0;
}

double Srgb(double x) {
  return x <= 0.0031308 ? 12.92 * x : 1.055 * std::pow(x, 1.0 / 2.4) - 0.055;
}

/// On straight lines between the points, level outside.
double Between(std::span<const CurvePoint> points, double x) {
  const auto after = std::upper_bound(points.begin(), points.end(), x,
                                      [](double at, const CurvePoint& point) { return at < point.input; });
  if (after == points.begin()) return points.front().output;
  if (after == points.end()) return points.back().output;
  const CurvePoint &a = after[-1], &b = after[0];
  return a.output + (x - a.input) / (b.input - a.input) * (b.output - a.output);
}

double CurveOf(const Development& development, double x) {
  switch (development.curve) {
    case ToneCurve::Gamma:
      return std::pow(x, 1.0 / development.gamma);
    case ToneCurve::Srgb:
      return Srgb(x);
    case ToneCurve::Points:
      return Between(development.points, x);
    case ToneCurve::Linear:
      break;
  }
  return x;
}

bool IsSteepAtZero(const Development& development) {
  return development.curve == ToneCurve::Srgb ||
         (development.curve == ToneCurve::Gamma && development.gamma > 1.0);
}

/// How a curve is cut into pieces, see simd::CurveTable.
struct Pieces {
  float least, shift;
  std::uint32_t down, count;
};

/// 32 from each power of two to the next, from 2^-16 on: a straight piece then differs from a power with an
/// exponent from 0 to 1 by 2 in 65535 at most.
constexpr Pieces kGrowing{1.0F / 65536.0F, 0.0F, 18, 32 * 32};

/// Of 4 in 65535 for smooth curves, of 1 where the caller's lines may meet at any angle.
constexpr Pieces kSmooth{0.0F, 65536.0F, 9, 1U << 14}, kCornered{0.0F, 65536.0F, 7, 1U << 16};

Pieces PiecesOf(const Development& development) {
  if (development.curve == ToneCurve::Points) return kCornered;
  return IsSteepAtZero(development) ? kGrowing : kSmooth;
}

bool AreCurvePoints(std::span<const CurvePoint> points) {
  const auto inRange = [](const CurvePoint& point) {
    return point.input >= 0.0 && point.input <= 1.0 && point.output >= 0.0 && point.output <= 1.0;
  };
  const auto doesNotRise = [](const CurvePoint& a, const CurvePoint& b) { return a.input >= b.input; };
  return !points.empty() && std::all_of(points.begin(), points.end(), inRange) &&
         std::adjacent_find(points.begin(), points.end(), doesNotRise) == points.end();
}

bool HasCurve(const Development& development) {
  switch (development.curve) {
    case ToneCurve::Linear:
    case ToneCurve::Srgb:
      return true;
    case ToneCurve::Gamma:
      return std::isfinite(development.gamma) && development.gamma > 0.0;
    case ToneCurve::Points:
      return AreCurvePoints(development.points);
  }
  return false;
}

}  // namespace

ChannelScale ScaleOf(const FormatRow& source, bool reduced) {
  if (source.depth < 8) return {kReducedFull / LargestSample(source), kReducedFull};
  const double count = std::ldexp(1.0, 16 - source.depth);
  return {count, reduced ? kReducedFull : count * LargestSample(source)};
}

bool AsksForSomething(const Development& development) {
  const auto black = ListOf(development.black), gain = ListOf(development.gain);
  return black != std::array{0.0, 0.0, 0.0} || development.white != 0.0 ||
         gain != std::array{1.0, 1.0, 1.0} || development.matrix != kIdentity ||
         (development.curve != ToneCurve::Linear &&
          (development.curve != ToneCurve::Gamma || development.gamma != 1.0));
}

ZrUtilsLib::Result CheckDevelopment(const Development& development, const FormatRow& source) {
  const double white = development.white != 0.0 ? development.white : LargestSample(source);
  const auto black = ListOf(development.black), gain = ListOf(development.gain);
  const bool levels = std::isfinite(white) && std::all_of(black.begin(), black.end(), [&](double level) {
                        return std::isfinite(level) && level >= 0.0 && level < white;
                      });
  const bool gains =
      std::all_of(gain.begin(), gain.end(), [](double g) { return std::isfinite(g) && g >= 0.0; });
  const bool matrix = std::all_of(development.matrix.begin(), development.matrix.end(),
                                  [](double factor) { return std::isfinite(factor); });
  return levels && gains && matrix && HasCurve(development) ? ZrUtilsLib::Result() : FrameError::InvalidTone;
}

Grading::Grading(const Development& development, const ChannelScale& scale, bool grey, bool greenOnly) {
  mKind = greenOnly ? unsigned{simd::kGradeGreenOnly} : 0U;
  SetFactors(development, scale, grey);
  if (grey && KeepsGrey()) mKind |= simd::kGradeGreenOnly;
  if (development.curve != ToneCurve::Linear) SetCurve(development);
}

void Grading::SetFactors(const Development& development, const ChannelScale& scale, bool grey) {
  const auto black = ListOf(development.black), gain = ListOf(development.gain);
  const double white = development.white != 0.0 ? development.white * scale.count : scale.full;
  for (std::size_t from = 0; from < 3; ++from) {
    const double level = black[from] * scale.count;
    for (std::size_t to = 0; to < 3; ++to) {
      const double factor = development.matrix[3 * to + from] * gain[from] * kScale / (white - level);
      mArgs.factors[to][from] = static_cast<float>(factor);
      mArgs.offset[to] -= static_cast<float>(factor * level);
      if (to != from && factor != 0.0) mKind |= simd::kGradeMixes;
    }
  }
  if (!grey || !Mixes()) return;
  // Equal channels need no more than one factor for each result.
  for (std::size_t to = 0; to < 3; ++to) {
    float(&row)[3] = mArgs.factors[to];
    row[to] = row[0] + row[1] + row[2];
  }
  mKind &= ~unsigned{simd::kGradeMixes};
}

/// Whether equal channels stay equal.
bool Grading::KeepsGrey() const {
  const auto sameAsGreen = [&](int i) {
    return mArgs.factors[i][i] == mArgs.factors[1][1] && mArgs.offset[i] == mArgs.offset[1];
  };
  return !Mixes() && sameAsGreen(0) && sameAsGreen(2);
}

void Grading::SetCurve(const Development& development) {
  const Pieces pieces = PiecesOf(development);
  mTable.least = pieces.least;
  mTable.shift = pieces.shift;
  mTable.down = pieces.down;
  mTable.firstBits = std::bit_cast<std::uint32_t>(pieces.least + pieces.shift) >> pieces.down;
  mPieces.reset(new float[std::size_t{2} * pieces.count]);
  const auto begin = [&](std::uint32_t piece) {
    return double{std::bit_cast<float>((mTable.firstBits + piece) << pieces.down)} - double{pieces.shift};
  };
  for (std::uint32_t i = 0; i < pieces.count; ++i) {
    const double x0 = begin(i), x1 = begin(i + 1);
    const double y0 = kScale * CurveOf(development, x0 / kScale);
    const double slope = (kScale * CurveOf(development, x1 / kScale) - y0) / (x1 - x0);
    mPieces[std::size_t{2} * i] = static_cast<float>(y0 - slope * x0 - kCentre);
    mPieces[std::size_t{2} * i + 1] = static_cast<float>(slope);
  }
  // What is below the first piece counts as 0.
  if (pieces.least > 0.0F) {
    mPieces[0] = static_cast<float>(-kCentre);
    mPieces[1] = 0.0F;
  }
  mTable.pieces = mPieces.get();
  mKind |= simd::kGradeCurve;
}

void Grading::Apply(PlaneBuffers& buffers, std::int64_t lines, std::int64_t pairs) const {
  const auto grade = simd::CurrentLevel().grade->grade[mKind];
  simd::GradeArgs args = mArgs;
  args.words = static_cast<std::size_t>(pairs);
  args.curve = &mTable;
  for (std::int64_t i = 0; i < 2 * lines; ++i) {
    for (int plane = 0; plane < 3; ++plane) args.planes[plane] = buffers.Half(i / 2, plane, i % 2);
    grade(args);
  }
}

}  // namespace ZrConvertersLib
