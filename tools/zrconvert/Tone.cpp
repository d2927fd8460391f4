#include "Tone.h"

#include <algorithm>

#include "Error.h"

namespace zrconvert {

namespace zr = ZrConvertersLib;

namespace {

// The darkest and the lightest thousandth of the samples may be noise, dust and reflections.
constexpr double cLeast = 0.001;

zr::ToneSettings::Channels Product(const zr::ToneSettings::Channels& a, const zr::ToneSettings::Channels& b) {
  return {a.red * b.red, a.green * b.green, a.blue * b.blue};
}

}  // namespace

void ChooseTone(ToneOptions& tone, const zr::FrameStatistics& statistics) {
  const zr::Levels levels = zr::LevelsOf(statistics, cLeast, 1.0 - cLeast);
  if (!tone.black) tone.black = tone.white ? std::min(levels.black, *tone.white - 1.0) : levels.black;
  if (!tone.white) tone.white = std::max(levels.white, *tone.black + 1.0);
  if (!tone.balance) tone.balance = zr::GreyWorldGains(statistics, *tone.black);
}

zr::Development DevelopmentOf(const ToneOptions& tone) {
  zr::Development development;
  const double black = tone.black.value_or(0.0);
  development.black = {black, black, black};
  development.white = tone.white.value_or(0.0);
  development.gain = Product(tone.balance.value_or(zr::ToneSettings::Channels{}),
                             tone.gain.value_or(zr::ToneSettings::Channels{}));
  if (tone.matrix) development.matrix = *tone.matrix;
  if (tone.curve) development.curve = tone.curve->kind;
  if (tone.gamma) {
    development.curve = zr::ToneCurve::Gamma;
    development.gamma = *tone.gamma;
  }
  return development;
}

void SetOffset(zr::RGBFilter& filter, const zr::ToneSettings::Channels& offset) {
  zr::ToneSettings settings;
  settings.offset = offset;
  if (!filter.SetTone(settings).IsSuccess()) throw UsageError("--offset is out of range");
}

}  // namespace zrconvert
