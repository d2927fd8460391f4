#pragma once

#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelConverter.h>

#include "core/FormatTable.h"

/// @file
/// The patterns of three families of mosaics as one list: four of each, numbered as their flags are.

namespace ZrConvertersLib {

inline constexpr unsigned kPatterns = 12;
inline constexpr unsigned kPatternsOfFamily = 4;

/// The flag of PixelConverter::Convert; 0 for a value that is no pattern.
constexpr unsigned PatternFlag(MosaicPattern pattern) {
  constexpr unsigned kFirst[] = {PixelConverter::FLAG_BAYER_GRBG, PixelConverter::FLAG_BICOLOR_RGBG,
                                 PixelConverter::FLAG_SCF_WGWR};
  const auto index = static_cast<unsigned>(pattern);
  return index < kPatterns ? kFirst[index / kPatternsOfFamily] << index % kPatternsOfFamily : 0;
}
static_assert(PatternFlag(MosaicPattern::BGGR) == PixelConverter::FLAG_BAYER_BGGR);
static_assert(PatternFlag(MosaicPattern::BGRG) == PixelConverter::FLAG_BICOLOR_BGRG);
static_assert(PatternFlag(MosaicPattern::GBGR) == PixelConverter::FLAG_BICOLOR_GBGR);
static_assert(PatternFlag(MosaicPattern::WRWG) == PixelConverter::FLAG_SCF_WRWG);
static_assert(PatternFlag(MosaicPattern::WGWB) == PixelConverter::FLAG_SCF_WGWB);

/// The place of a family's first pattern in the list; 0 for families that are no mosaics.
constexpr unsigned FirstPattern(Family family) {
  if (family == Family::BiColor) return kPatternsOfFamily;
  return family == Family::Scf1 ? 2 * kPatternsOfFamily : 0;
}

/// The family's pattern that conversion flags select: of several the highest, without any the first.
constexpr MosaicPattern PatternOf(Family family, unsigned flags) {
  unsigned found = FirstPattern(family);
  for (unsigned i = found; i < FirstPattern(family) + kPatternsOfFamily; ++i) {
    if ((flags & PatternFlag(static_cast<MosaicPattern>(i))) != 0) found = i;
  }
  return static_cast<MosaicPattern>(found);
}

/// Whether the pattern is valid for a source of that family. Sources that are not mosaics ignore it.
constexpr bool IsPatternOf(Family family, MosaicPattern pattern) {
  if (pattern == MosaicPattern::GRBG) return true;
  const auto index = static_cast<unsigned>(pattern);
  const bool mosaic = family == Family::Bayer || family == Family::BiColor || family == Family::Scf1;
  return mosaic ? index - FirstPattern(family) < kPatternsOfFamily : index < kPatterns;
}

}  // namespace ZrConvertersLib
