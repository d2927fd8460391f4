#pragma once

#include <ZrConvertersLib/PixelConverter.h>

#include <cstdint>

/// @file
/// The meaning of the FLAG_BAND_* bits: on which sides of a call's lines the frame goes on.

namespace ZrConvertersLib {

/// Lines on each such side that a demosaic may look at.
inline constexpr std::uint32_t kBorderLines = 2;

inline constexpr std::uint32_t kBandEnds = PixelConverter::FLAG_BAND_FIRST | PixelConverter::FLAG_BAND_LAST;

constexpr bool HasLinesAbove(std::uint32_t flags) {
  return (flags & PixelConverter::FLAG_BAND_MIDDLE) != 0 ||
         (flags & kBandEnds) == PixelConverter::FLAG_BAND_LAST;
}

constexpr bool HasLinesBelow(std::uint32_t flags) {
  return (flags & PixelConverter::FLAG_BAND_MIDDLE) != 0 ||
         (flags & kBandEnds) == PixelConverter::FLAG_BAND_FIRST;
}

/// The bits for a band with such lines. Without any it is a whole frame that may have an odd last line.
constexpr std::uint32_t BandFlagsOf(bool above, bool below) {
  if (above && below) return PixelConverter::FLAG_BAND_MIDDLE;
  if (above) return PixelConverter::FLAG_BAND_LAST;
  return below ? PixelConverter::FLAG_BAND_FIRST : kBandEnds;
}

}  // namespace ZrConvertersLib
