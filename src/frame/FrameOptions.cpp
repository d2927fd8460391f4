#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelConverter.h>

#include <array>

#include "core/MatrixFlags.h"
#include "core/Patterns.h"

namespace ZrConvertersLib {

namespace {

constexpr std::array<std::string_view, kPatterns> kNames = {"GRBG", "GBRG", "RGGB", "BGGR", "RGBG", "BGRG",
                                                            "GRGB", "GBGR", "WGWR", "WBWG", "WRWG", "WGWB"};

constexpr unsigned kInterpolate =
    PixelConverter::FLAG_BAYER_INTERPOLATE | PixelConverter::FLAG_BICOLOR_INTERPOLATE;

/// Flags normally select a pattern of one family; of several the highest counts.
MosaicPattern AnyPatternOf(unsigned flags) noexcept {
  for (const Family family : {Family::Scf1, Family::BiColor}) {
    const MosaicPattern pattern = PatternOf(family, flags);
    if ((flags & PatternFlag(pattern)) != 0) return pattern;
  }
  return PatternOf(Family::Bayer, flags);
}

PackingOrder PackingOf(unsigned flags) noexcept {
  if ((flags & PixelConverter::FLAG_PACKED_CSI2) != 0) return PackingOrder::Csi2;
  if ((flags & PixelConverter::FLAG_PACKED_GIGE_VISION) != 0) return PackingOrder::GigEVision;
  return PackingOrder::Type;
}

}  // namespace

std::string_view PatternName(MosaicPattern pattern) noexcept {
  const auto index = static_cast<std::size_t>(pattern);
  return index < kNames.size() ? kNames[index] : std::string_view();
}

void FrameOptions::SetFlags(unsigned flags) noexcept {
  pattern = AnyPatternOf(flags);
  demosaic = (flags & kInterpolate) != 0 ? Demosaic::Interpolate : Demosaic::Fast;
  matrix = MatrixOf(flags);
  packing = PackingOf(flags);
}

unsigned FrameOptions::GetFlags() const noexcept {
  unsigned flags = PatternFlag(pattern) | MatrixFlag(matrix);
  if (demosaic == Demosaic::Interpolate) flags |= kInterpolate;
  if (packing == PackingOrder::GigEVision) flags |= PixelConverter::FLAG_PACKED_GIGE_VISION;
  if (packing == PackingOrder::Csi2) flags |= PixelConverter::FLAG_PACKED_CSI2;
  return flags;
}

}  // namespace ZrConvertersLib
