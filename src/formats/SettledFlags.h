#pragma once

#include <ZrConvertersLib/PixelConverter.h>

#include "core/FormatTable.h"
#include "formats/Patterns.h"

/// @file
/// Which conversion flags say something of a format, so that codes can be told apart by them.

namespace ZrConvertersLib {

/// The packing flag that acts on the format, or 0.
constexpr unsigned PackingFlagOf(const FormatRow& row) {
  if (row.packing == Packing::Pair) return PixelConverter::FLAG_PACKED_GIGE_VISION;
  const bool single = row.order == ChannelOrder::Mono || row.order == ChannelOrder::Bayer;
  const bool pairs = row.order == ChannelOrder::YCbYCr || row.order == ChannelOrder::CbYCrY;
  const bool csi2 =
      row.packing == Packing::Dense && ((single && row.depth >= 10) || (pairs && row.depth == 10));
  return csi2 ? PixelConverter::FLAG_PACKED_CSI2 : 0;
}

constexpr unsigned MatrixFlags(unsigned flags) {
  constexpr unsigned kJpeg = PixelConverter::FLAG_YCBCR_JPG;
  return (flags & kJpeg) != 0 ? kJpeg : flags & PixelConverter::FLAG_YCBCR_709;
}

/// The bits of the flags that matter to the format.
constexpr unsigned SettledFlags(const FormatRow& row, unsigned flags) {
  const unsigned packing = flags & PackingFlagOf(row);
  switch (row.family) {
    case Family::YCbCr:
      return packing | MatrixFlags(flags);
    case Family::Bayer:
    case Family::BiColor:
    case Family::Scf1:
      return packing | PatternFlag(PatternOf(row.family, flags));
    case Family::Rgb:
    case Family::Mono:
      break;
  }
  return packing;
}

}  // namespace ZrConvertersLib
