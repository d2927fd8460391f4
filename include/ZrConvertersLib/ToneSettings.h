#pragma once

namespace ZrConvertersLib {

/// How RGBFilter::SetTone maps an 8-bit channel value i (0 to 255):
///
///     light  = max(0, i - black) * 255 / (255 - black) * balance * gain
///     output = 255 * (light / 255) ^ (1 / gamma) + offset,   rounded half up and cut to 0..255
///
/// The defaults are the identity. A raw linear sensor frame looks right with the sensor's black level, the
/// white balance of the light and a gamma of about 2.2.
struct ToneSettings {
  /// One number for each channel.
  struct Channels {
    double red = 1.0;
    double green = 1.0;
    double blue = 1.0;
  };

  double gamma = 1.0;                 ///< above 0; 1 is linear, more brightens the shadows
  double black = 0.0;                 ///< 0 to 254, on the 8-bit scale whatever the source's depth
  Channels balance;                   ///< white balance gains, 0 or more
  Channels gain;                      ///< gains, 0 or more
  Channels offset = {0.0, 0.0, 0.0};  ///< added after gamma, any finite value
};

}  // namespace ZrConvertersLib
