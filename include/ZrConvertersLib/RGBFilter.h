#pragma once

#include <ZrConvertersLib/Export.h>
#include <ZrConvertersLib/ToneSettings.h>
#include <ZrUtilsLib/Result.h>

/// @file
/// Tone tables for 8-bit colour.

namespace ZrConvertersLib {

/// One table of 256 bytes for each of red, green and blue. A conversion to RGB8, BGR8, RGBa8, BGRa8, RGB565p
/// or RGB8_Planar replaces each channel's 8-bit value by the entry of its table, after all other steps; other
/// destinations ignore the filter.
///
/// Speed: where a processor looks up 16 entries at a time (AVX2 without AVX-512), tables that are straight
/// lines between limits, as SetMultipliers makes them, take half of the time of other tables, such as gammas.
///
/// Thread-safety: any number of conversions may read one filter; changing it while a conversion uses it is a
/// data race.
class ZR_EXPORT RGBFilter {
 public:
  /// Identity tables. Throws std::bad_alloc without memory for them.
  RGBFilter();
  virtual ~RGBFilter();

  RGBFilter(const RGBFilter&) = delete;
  RGBFilter& operator=(const RGBFilter&) = delete;

  /// Every table maps each value to itself.
  void SetIdentity();

  /// Fills each table with Get8(i, gain, offset) for i = 0 to 255. Accepts every gain and offset and always
  /// returns success.
  ZrUtilsLib::Result SetMultipliers(double redGain, double greenGain, double blueGain, int redOffset,
                                    int greenOffset, int blueOffset);

  /// Fills the tables from gamma, black level, white balance, gain and offset. Returns
  /// FrameError::InvalidTone and leaves the tables as they are when a setting is out of its range.
  ZrUtilsLib::Result SetTone(const ToneSettings& settings);

  /// value x gain + offset, rounded to nearest (halves up) and clamped to 0..255; 0 for NaN.
  static int Get8(int value, double gain, int offset);

  /// Whether all three tables map every value to itself. Cheap enough to ask once per line.
  bool IsIdentity() const noexcept;

  /// @name The tables, 256 bytes each, owned by the filter
  /// @{
  const unsigned char* GetRed() const noexcept { return mRed; }
  const unsigned char* GetGreen() const noexcept { return mGreen; }
  const unsigned char* GetBlue() const noexcept { return mBlue; }
  /// @}

 private:
  unsigned char* mRed;
  unsigned char* mGreen;
  unsigned char* mBlue;
};

/// The filter that conversions use when the caller passes none: identity tables.
ZR_EXPORT extern const RGBFilter sRGBFilter;

}  // namespace ZrConvertersLib
