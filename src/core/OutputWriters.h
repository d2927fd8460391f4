#pragma once

#include <cstddef>
#include <cstdint>

#include "core/FormatTable.h"

/// @file
/// The sixteen output writers as tags: what a converter is instantiated with. They say which row of the
/// destination table is meant; the pixels themselves are written by the kernels.

namespace ZrConvertersLib {

template <long kId>
struct OutputWriter {
  static constexpr const DestinationRow& kRow = *FindDestination(kId);
  /// Place in kDestinations.
  static constexpr std::size_t kIndex = static_cast<std::size_t>(FindDestination(kId) - kDestinations.data());
  static constexpr long kTypeId = kId;
  /// Bytes per pixel, in each plane.
  static constexpr std::uint32_t kByteSize = kRow.bytes;
};

struct OutputMono8 : OutputWriter<PixelTypeIds::Mono8> {};
struct OutputMono10 : OutputWriter<PixelTypeIds::Mono10> {};
struct OutputMono12 : OutputWriter<PixelTypeIds::Mono12> {};
struct OutputMono14 : OutputWriter<PixelTypeIds::Mono14> {};
struct OutputMono16 : OutputWriter<PixelTypeIds::Mono16> {};
struct OutputRGB8 : OutputWriter<PixelTypeIds::RGB8> {};
struct OutputBGR8 : OutputWriter<PixelTypeIds::BGR8> {};
struct OutputRGBa8 : OutputWriter<PixelTypeIds::RGBa8> {};
struct OutputBGRa8 : OutputWriter<PixelTypeIds::BGRa8> {};
struct OutputRGB16 : OutputWriter<PixelTypeIds::RGB16> {};
struct OutputBGR16 : OutputWriter<PixelTypeIds::BGR16> {};
struct OutputRGB565p : OutputWriter<PixelTypeIds::RGB565p> {};
struct OutputPlanar8 : OutputWriter<PixelTypeIds::RGB8_Planar> {};
struct OutputPlanar10 : OutputWriter<PixelTypeIds::RGB10_Planar> {};
struct OutputPlanar12 : OutputWriter<PixelTypeIds::RGB12_Planar> {};
struct OutputPlanar16 : OutputWriter<PixelTypeIds::RGB16_Planar> {};

}  // namespace ZrConvertersLib
