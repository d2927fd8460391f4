#pragma once

#include <cstddef>
#include <cstdint>

#include "core/FormatTable.h"
#include "simd/LineKernel.h"

/// @file
/// The sixteen output writers as tags, with which converters are instantiated. Each tag stands for a row of
/// the destination table; the kernels write the pixels.

namespace ZrConvertersLib {

template <long kId>
struct OutputWriter {
  static constexpr const DestinationRow& kRow = *FindDestination(kId);
  /// The kernels' writer, which stands at the same place in its enumeration as the row in kDestinations.
  static constexpr auto kWriter = static_cast<simd::PixelWriter>(FindDestination(kId) - kDestinations.data());
  static constexpr long kTypeId = kId;
  /// Bytes per pixel, in each plane.
  static constexpr std::uint32_t kByteSize = kRow.bytes;
};

#define ZR_OUTPUT(name, type, ...) \
  struct Output##name : OutputWriter<PixelTypeIds::type> {};
ZR_DESTINATIONS(ZR_OUTPUT)
#undef ZR_OUTPUT

}  // namespace ZrConvertersLib
