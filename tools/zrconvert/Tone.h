// From the tone options of the command line to what the library develops.
#pragma once

#include <ZrConvertersLib/Development.h>
#include <ZrConvertersLib/Measure.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <ZrConvertersLib/ToneSettings.h>

#include <array>
#include <optional>

#include "Arguments.h"

namespace zrconvert {

// What was given of each; levels are in counts of the source's samples.
struct ToneOptions {
  bool automatic = false;
  std::optional<double> black;
  std::optional<double> white;
  std::optional<ZrConvertersLib::ToneSettings::Channels> balance;
  std::optional<ZrConvertersLib::ToneSettings::Channels> gain;
  std::optional<std::array<double, 9>> matrix;
  std::optional<double> gamma;
  std::optional<Curve> curve;
  std::optional<ZrConvertersLib::ToneSettings::Channels> offset;

  // Whether something acts at full depth.
  bool Develops() const { return automatic || black || white || balance || gain || matrix || gamma || curve; }
};

// Levels and, for colour, the white balance that a frame asks for, where nothing is given.
void ChooseTone(ToneOptions& tone, const ZrConvertersLib::FrameStatistics& statistics);

// Without the points of a curve, which stay in the options.
ZrConvertersLib::Development DevelopmentOf(const ToneOptions& tone);

// The offset, which acts on 8-bit colour at the end.
void SetOffset(ZrConvertersLib::RGBFilter& filter, const ZrConvertersLib::ToneSettings::Channels& offset);

}  // namespace zrconvert
