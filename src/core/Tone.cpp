#include <ZrConvertersLib/FrameErrors.h>
#include <ZrConvertersLib/RGBFilter.h>

#include <algorithm>
#include <cmath>

namespace ZrConvertersLib {

namespace {

constexpr double kFull = 255.0;

/// The largest light value: far above white, but finite, so that multiplying it by a gain of 0 gives 0.
constexpr double kDazzling = 1e9;

bool AreGains(const ToneSettings::Channels& gains) noexcept {
  const auto isGain = [](double gain) { return std::isfinite(gain) && gain >= 0.0; };
  return isGain(gains.red) && isGain(gains.green) && isGain(gains.blue);
}

bool AreOffsets(const ToneSettings::Channels& offsets) noexcept {
  return std::isfinite(offsets.red) && std::isfinite(offsets.green) && std::isfinite(offsets.blue);
}

bool HasMeaning(const ToneSettings& settings) noexcept {
  return std::isfinite(settings.gamma) && settings.gamma > 0.0 && settings.black >= 0.0 &&
         settings.black <= kFull - 1.0 && AreGains(settings.balance) && AreGains(settings.gain) &&
         AreOffsets(settings.offset);
}

/// Linear settings must give what SetMultipliers gives, so the power and the black level are left out
/// exactly.
unsigned char ToneOf(int value, const ToneSettings& settings, double balance, double gain,
                     double offset) noexcept {
  double light = value;
  if (settings.black > 0.0) light = std::max(0.0, light - settings.black) * kFull / (kFull - settings.black);
  light = std::min(light * balance, kDazzling) * gain;
  if (settings.gamma != 1.0) light = kFull * std::pow(light / kFull, 1.0 / settings.gamma);
  // May be infinite by now, but the offset is finite: the sum is a number.
  return static_cast<unsigned char>(std::clamp(light + offset + 0.5, 0.0, kFull));
}

}  // namespace

ZrUtilsLib::Result RGBFilter::SetTone(const ToneSettings& settings) {
  if (!HasMeaning(settings)) return FrameError::InvalidTone;
  const auto& [gamma, black, balance, gain, offset] = settings;
  for (int i = 0; i <= 255; ++i) {
    mRed[i] = ToneOf(i, settings, balance.red, gain.red, offset.red);
    mGreen[i] = ToneOf(i, settings, balance.green, gain.green, offset.green);
    mBlue[i] = ToneOf(i, settings, balance.blue, gain.blue, offset.blue);
  }
  return {};
}

}  // namespace ZrConvertersLib
