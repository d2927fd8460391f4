#pragma once

#include <ZrConvertersLib/Export.h>

#include <cstdint>

/// @file
/// The YCbCr colour matrices.

namespace ZrConvertersLib {

/// One pixel of the colour functions below. They read y, cb and cr, which lie in 0..255, and write r, g and
/// b: 8-bit values shifted left by 8 (0, 256, ..., 65280).
struct YUVPixelContext {
  std::int32_t y = 0;
  std::int32_t cb = 0;  ///< blue difference, 128 without colour
  std::int32_t cr = 0;  ///< red difference, 128 without colour
  std::int32_t r = 0;
  std::int32_t g = 0;
  std::int32_t b = 0;
};

/// BT.601, video range (luma 16..235 becomes 0..255).
ZR_EXPORT void YCbCrToPixel601(YUVPixelContext& pixel);

/// BT.709, video range.
ZR_EXPORT void YCbCrToPixel709(YUVPixelContext& pixel);

/// The matrix of JPEG files: BT.601, full range.
ZR_EXPORT void YCbCrToPixelJPG(YUVPixelContext& pixel);

}  // namespace ZrConvertersLib
