#pragma once

#include <ZrConvertersLib/FrameConverter.h>
#include <ZrUtilsLib/Result.h>

#include <cstdint>

#include "core/FormatTable.h"
#include "frame/Rect.h"

namespace ZrConvertersLib {

class PixelConverter;

/// How pixels of one line are put in reverse order.
enum class Mirror : std::uint8_t {
  Pixels,      ///< pixel by pixel
  LumaAtEven,  ///< pairs Y0 Cb Y1 Cr: pair by pair, and the two lumas of a pair
  LumaAtOdd,   ///< pairs Cb Y0 Cr Y1: likewise
};

/// What is settled when a converter is configured.
struct FramePlan {
  const PixelConverter* converter = nullptr;
  const FormatRow* source = nullptr;
  const FormatRow* destination = nullptr;
  std::int64_t width = 0;   ///< of the source frame
  std::int64_t height = 0;  ///< of the source frame
  Rect region;              ///< the part of the source that becomes the picture
  unsigned flags = 0;       ///< pattern, demosaic and matrix
  const RGBFilter* filter = nullptr;
  bool flipVertical = false;
  bool flipHorizontal = false;

  bool chain = false;        ///< the converter works through an intermediate buffer
  bool mosaic = false;       ///< lines are converted in pairs, 2 x 2 sites make a colour
  bool interpolate = false;  ///< a mosaic's pixels depend on their neighbours
  Mirror mirror = Mirror::Pixels;
  std::int64_t unit = 1;        ///< pixels: a raw call that begins and ends on multiples overruns nothing
  std::int64_t pixelBytes = 0;  ///< destination bytes per pixel, of one plane

  FrameLayout sourceLayout;       ///< without padding
  FrameLayout destinationLayout;  ///< without padding

  std::int64_t RegionWidth() const noexcept { return region.Width(); }
  std::int64_t RegionHeight() const noexcept { return region.Height(); }

  /// Whether some pixel of some band can only be made in a buffer of the converter's own.
  bool NeedsScratch() const noexcept;

  /// Source bytes of `pixels` pixels, as the raw call counts them: partial bytes are left out, except that of
  /// lines with less than 8 bits a pixel.
  std::int64_t RawSourceBytes(std::int64_t pixels) const noexcept;
};

/// Settles everything about a conversion, or says why there is none; the plan is then left as it was.
ZrUtilsLib::Result MakeFramePlan(long source, long destination, std::uint32_t width, std::uint32_t height,
                                 const FrameOptions& options, FramePlan& plan);

}  // namespace ZrConvertersLib
