#pragma once

#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelConverter.h>

/// @file
/// The matrix of YCbCr sources in the flags of a conversion.

namespace ZrConvertersLib {

/// BT.601 without a flag; of both flags that of JPEG wins.
constexpr ColourMatrix MatrixOf(unsigned flags) {
  if ((flags & PixelConverter::FLAG_YCBCR_JPG) != 0) return ColourMatrix::Jpeg;
  if ((flags & PixelConverter::FLAG_YCBCR_709) != 0) return ColourMatrix::Bt709;
  return ColourMatrix::Bt601;
}

constexpr unsigned MatrixFlag(ColourMatrix matrix) {
  switch (matrix) {
    case ColourMatrix::Bt709:
      return PixelConverter::FLAG_YCBCR_709;
    case ColourMatrix::Jpeg:
      return PixelConverter::FLAG_YCBCR_JPG;
    case ColourMatrix::Bt601:
      break;
  }
  return 0;
}

}  // namespace ZrConvertersLib
