#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelConverter.h>

#include <algorithm>
#include <array>

#include "core/MatrixFlags.h"
#include "core/Patterns.h"
#include "formats/FormatWords.h"

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

unsigned FlagOf(PackingOrder order) noexcept {
  if (order == PackingOrder::GigEVision) return PixelConverter::FLAG_PACKED_GIGE_VISION;
  return order == PackingOrder::Csi2 ? PixelConverter::FLAG_PACKED_CSI2 : 0;
}

constexpr std::size_t kFlaggedFormats = static_cast<std::size_t>(std::count_if(
    kFormats.begin(), kFormats.end(), [](const FormatRow& row) { return PackingFlagOf(row) != 0; }));

struct FlaggedLayout {
  long format = 0;
  FormatWords::Phrase words;
};

constexpr auto kFlaggedLayouts = [] {
  std::array<FlaggedLayout, kFlaggedFormats> layouts;
  std::size_t n = 0;
  for (const FormatRow& row : kFormats) {
    if (PackingFlagOf(row) != 0) layouts[n++] = {row.id, FlaggedLayoutInWords(row)};
  }
  return layouts;
}();

}  // namespace

std::string_view PackingLayout(long format, PackingOrder order) noexcept {
  const FormatRow* row = FindFormat(format);
  if (row == nullptr) return {};
  if (order == PackingOrder::Type) return FindFormatInfo(format)->layout;
  if ((PackingFlagOf(*row) & FlagOf(order)) == 0) return {};
  const auto found = std::find_if(kFlaggedLayouts.begin(), kFlaggedLayouts.end(),
                                  [format](const FlaggedLayout& one) { return one.format == format; });
  return found->words;
}

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
  if (demosaic != Demosaic::Fast) flags |= kInterpolate;
  return flags | FlagOf(packing);
}

}  // namespace ZrConvertersLib
