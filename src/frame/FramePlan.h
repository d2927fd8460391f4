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

/// Which pixels of a mosaic determine the colour of a pixel.
struct Neighbourhood {
  std::int64_t tileWidth = 1;   ///< columns after which the pattern repeats; a frame has as many at least
  std::int64_t tileHeight = 1;  ///< lines likewise
  std::int64_t reachX = 0;      ///< columns beside a pixel's tile that it depends on
  std::int64_t reachY = 0;      ///< lines above and below likewise
};

/// What Configure decides about a conversion.
struct FramePlan {
  const PixelConverter* converter = nullptr;
  const PixelConverter* reader = nullptr;  ///< the converter, or the first stage of a chain
  const FormatRow* source = nullptr;
  const FormatRow* destination = nullptr;
  std::int64_t width = 0;   ///< of the source frame
  std::int64_t height = 0;  ///< of the source frame
  Rect region;              ///< the part of the source that becomes the picture
  unsigned flags = 0;       ///< pattern, demosaic and matrix
  const RGBFilter* filter = nullptr;
  bool flipVertical = false;
  bool flipHorizontal = false;

  bool chain = false;        ///< the converter has two stages
  bool onePass = false;      ///< a chain that needs no intermediate image
  bool mosaic = false;       ///< pixels of a tile make a colour
  bool linePairs = false;    ///< a mosaic's lines are converted in pairs
  bool directional = false;  ///< goes through DirectionalDemosaic instead of raw calls
  Neighbourhood near;
  Mirror mirror = Mirror::Pixels;
  std::int64_t unit = 1;        ///< pixels: a raw call that begins and ends on multiples overruns nothing
  std::int64_t pixelBytes = 0;  ///< destination bytes per pixel, of one plane

  FrameLayout sourceLayout;       ///< without padding
  FrameLayout destinationLayout;  ///< without padding

  std::int64_t RegionWidth() const noexcept { return region.Width(); }
  std::int64_t RegionHeight() const noexcept { return region.Height(); }

  /// Whether a mosaic's pixels depend on other lines than those of their tile.
  bool LooksAtLines() const noexcept { return near.reachY != 0; }

  /// Source bytes of `pixels` pixels of a line (of one plane), as the converter itself counts them.
  std::int64_t SourceBytes(std::int64_t pixels) const noexcept;
};

/// Fills the plan of a conversion, or returns why it is refused; the plan is then unchanged.
ZrUtilsLib::Result MakeFramePlan(long source, long destination, std::uint32_t width, std::uint32_t height,
                                 const FrameOptions& options, FramePlan& plan);

}  // namespace ZrConvertersLib
