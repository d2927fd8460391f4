#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelConverter.h>

namespace ZrConvertersLib {

namespace {

unsigned PatternFlag(MosaicPattern pattern) noexcept {
  switch (pattern) {
    case MosaicPattern::GBRG:
      return PixelConverter::FLAG_BAYER_GBRG;
    case MosaicPattern::RGGB:
      return PixelConverter::FLAG_BAYER_RGGB;
    case MosaicPattern::BGGR:
      return PixelConverter::FLAG_BAYER_BGGR;
    case MosaicPattern::GRBG:
      break;
  }
  return PixelConverter::FLAG_BAYER_GRBG;
}

MosaicPattern PatternOf(unsigned flags) noexcept {
  if ((flags & PixelConverter::FLAG_BAYER_BGGR) != 0) return MosaicPattern::BGGR;
  if ((flags & PixelConverter::FLAG_BAYER_RGGB) != 0) return MosaicPattern::RGGB;
  if ((flags & PixelConverter::FLAG_BAYER_GBRG) != 0) return MosaicPattern::GBRG;
  return MosaicPattern::GRBG;
}

ColourMatrix MatrixOf(unsigned flags) noexcept {
  if ((flags & PixelConverter::FLAG_YCBCR_JPG) != 0) return ColourMatrix::Jpeg;
  if ((flags & PixelConverter::FLAG_YCBCR_709) != 0) return ColourMatrix::Bt709;
  return ColourMatrix::Bt601;
}

}  // namespace

void FrameOptions::SetFlags(unsigned flags) noexcept {
  const bool interpolates = (flags & PixelConverter::FLAG_BAYER_INTERPOLATE) != 0;
  pattern = PatternOf(flags);
  demosaic = interpolates ? Demosaic::Interpolate : Demosaic::Fast;
  matrix = MatrixOf(flags);
}

unsigned FrameOptions::GetFlags() const noexcept {
  unsigned flags = PatternFlag(pattern);
  if (demosaic == Demosaic::Interpolate) flags |= PixelConverter::FLAG_BAYER_INTERPOLATE;
  if (matrix == ColourMatrix::Bt709) flags |= PixelConverter::FLAG_YCBCR_709;
  if (matrix == ColourMatrix::Jpeg) flags |= PixelConverter::FLAG_YCBCR_JPG;
  return flags;
}

}  // namespace ZrConvertersLib
