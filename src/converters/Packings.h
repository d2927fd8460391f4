#pragma once

#include <ZrConvertersLib/PixelConverter.h>

#include "core/FormatTable.h"
#include "simd/SourceReaders.h"

namespace ZrConvertersLib {

/// The other way in which cameras pack the samples of a type, and the flag that asks for it.
struct OtherPacking {
  std::uint32_t flag = 0;  ///< none: the type has no other packing
  simd::SourceReader reader = simd::SourceReader::None;
};

constexpr OtherPacking OtherPackingOf(const FormatRow& row) {
  using simd::SourceReader;
  const bool oneSample = row.family == Family::Mono || row.family == Family::Bayer;
  if (row.packing == Packing::Pair)
    return {PixelConverter::FLAG_PACKED_GIGE_VISION,
            row.depth == 10 ? SourceReader::Mono10Gige : SourceReader::Mono12Gige};
  if (row.packing != Packing::Dense) return {};
  const bool fourTwoTwo = row.order == ChannelOrder::YCbYCr || row.order == ChannelOrder::CbYCrY;
  if (row.depth == 10 && (oneSample || fourTwoTwo))
    return {PixelConverter::FLAG_PACKED_CSI2, SourceReader::Mono10pCsi2};
  if (row.depth == 12 && oneSample) return {PixelConverter::FLAG_PACKED_CSI2, SourceReader::Mono12pCsi2};
  if (row.depth == 14 && oneSample) return {PixelConverter::FLAG_PACKED_CSI2, SourceReader::Mono14pCsi2};
  return {};
}

}  // namespace ZrConvertersLib
