#include <ZrConvertersLib/YCbCr.h>

#include <algorithm>

#include "core/YCbCrMatrix.h"

namespace ZrConvertersLib {

namespace {

/// Rounds a sum in 10-bit fixed point to nearest, clips it to 8 bits and brings it to the 16-bit scale.
std::int32_t Finish(std::int64_t sum) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>((sum + 512) >> 10, 0, 255) << 8);
}

// 64 bits, so that samples wider than 8 bits come out clipped instead of overflowing.
void Apply(const YCbCrMatrix& matrix, YUVPixelContext& pixel) {
  const std::int64_t u = std::int64_t{pixel.cb} - 128;
  const std::int64_t v = std::int64_t{pixel.cr} - 128;
  const std::int64_t c = (std::int64_t{pixel.y} - matrix.yOffset) * matrix.y;
  pixel.r = Finish(c + matrix.redV * v);
  pixel.g = Finish(c + matrix.greenU * u + matrix.greenV * v);
  pixel.b = Finish(c + matrix.blueU * u);
}

}  // namespace

void YCbCrToPixel601(YUVPixelContext& pixel) {
  Apply(kMatrix601, pixel);
}

void YCbCrToPixel709(YUVPixelContext& pixel) {
  Apply(kMatrix709, pixel);
}

void YCbCrToPixelJPG(YUVPixelContext& pixel) {
  Apply(kMatrixJPG, pixel);
}

}  // namespace ZrConvertersLib
