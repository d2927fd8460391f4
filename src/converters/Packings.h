#pragma once

#include "core/PackingFlags.h"
#include "simd/SourceReaders.h"

namespace ZrConvertersLib {

/// A second bit order in which cameras pack the samples of a type, and the flag that selects it.
struct OtherPacking {
  std::uint32_t flag;  ///< 0: the type has no other packing
  simd::SourceReader reader;
};

constexpr OtherPacking OtherPackingOf(const FormatRow& row) {
  using enum simd::SourceReader;
  const std::uint32_t flag = PackingFlagOf(row);
  if (flag == PixelConverter::FLAG_PACKED_GIGE_VISION)
    return {flag, row.depth == 10 ? Mono10Gige : Mono12Gige};
  if (flag == 0) return {0, None};
  return {flag, row.depth == 10 ? Mono10pCsi2 : row.depth == 12 ? Mono12pCsi2 : Mono14pCsi2};
}

}  // namespace ZrConvertersLib
