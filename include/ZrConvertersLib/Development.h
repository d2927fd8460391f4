#pragma once

#include <ZrConvertersLib/ToneSettings.h>

#include <array>
#include <cstdint>
#include <span>

/// @file
/// Levels, gains, colour matrix and tone curve at the full depth of a source.

namespace ZrConvertersLib {

/// The last step of a development: from linear light to what is shown. Both sides run from 0 to 1.
enum class ToneCurve : std::uint8_t {
  Linear,  ///< output = input
  Gamma,   ///< output = input ^ (1 / gamma)
  Srgb,    ///< the encoding of IEC 61966-2-1: linear up to 0.0031308, then 1.055 x ^ (1 / 2.4) - 0.055
  Points   ///< straight lines between the caller's points
};

/// A point of a curve, both sides from 0 to 1.
struct CurvePoint {
  double input = 0.0;
  double output = 0.0;
};

/// What is done to red, green and blue between the source's samples and the destination, in this order, with
/// all the depth that the source has:
///
///     light  = (sample - black) / (white - black) * gain        for each channel
///     colour = matrix * light                                    rows are red, green, blue
///     output = curve(colour cut to 0..1)
///
/// The result is reduced to the destination's depth by cutting. Nothing else is cut on the way. Grey sources
/// count as three equal channels, grey destinations take green. The defaults ask for nothing, and then frames
/// are converted as without a development.
struct Development {
  ToneSettings::Channels black = {0.0, 0.0, 0.0};  ///< counts of the source's samples, below white
  double white = 0.0;                              ///< in the same counts; 0: the source's largest sample
  ToneSettings::Channels gain;                     ///< white balance times exposure, 0 or more
  std::array<double, 9> matrix = {1, 0, 0, 0, 1, 0, 0, 0, 1};  ///< row by row, any finite values
  ToneCurve curve = ToneCurve::Linear;
  double gamma = 2.2;  ///< of ToneCurve::Gamma, above 0
  /// Of ToneCurve::Points: one at least, inputs ascending; before the first and after the last the curve is
  /// level. Read when a converter is configured and not kept.
  std::span<const CurvePoint> points;
};

}  // namespace ZrConvertersLib
