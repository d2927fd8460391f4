#pragma once

#include <ZrConvertersLib/PixelConverter.h>

#include "core/FormatTable.h"

namespace ZrConvertersLib {

/// The packing flag of a conversion that acts on the format, or 0.
constexpr unsigned PackingFlagOf(const FormatRow& row) {
  if (row.packing == Packing::Pair) return PixelConverter::FLAG_PACKED_GIGE_VISION;
  const bool single = row.order == ChannelOrder::Mono || row.order == ChannelOrder::Bayer;
  const bool pairs = row.order == ChannelOrder::YCbYCr || row.order == ChannelOrder::CbYCrY;
  const bool csi2 =
      row.packing == Packing::Dense && ((single && row.depth >= 10) || (pairs && row.depth == 10));
  return csi2 ? PixelConverter::FLAG_PACKED_CSI2 : 0;
}

}  // namespace ZrConvertersLib
