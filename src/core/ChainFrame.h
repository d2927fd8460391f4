#pragma once

#include <ZrConvertersLib/PixelConverter.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "core/LineDriver.h"

/// @file
/// The intermediate image of a chain: which lines it has, and the memory they take.

namespace ZrConvertersLib {

/// Lines on each side of a band that a second stage may look at.
inline constexpr std::uint32_t kBorderLines = 2;

/// Converters write whole groups of up to this many pixels, also where the last one reaches past the width.
inline constexpr std::uint32_t kLongestGroup = 8;

inline constexpr std::uint32_t kLargestCapacity = std::numeric_limits<std::uint32_t>::max();

/// The lines of the intermediate image.
struct Band {
  std::uint32_t above;  ///< lines before the first one that the second stage converts
  std::uint32_t lines;  ///< lines that the first stage converts
};

inline Band BandOf(std::uint32_t flags, std::uint32_t height) {
  constexpr std::uint32_t kEnds = PixelConverter::FLAG_BAND_FIRST | PixelConverter::FLAG_BAND_LAST;
  const bool middle = (flags & PixelConverter::FLAG_BAND_MIDDLE) != 0;
  const std::uint32_t ends = flags & kEnds;
  Band band{0, height};
  if (middle) {
    band = {kBorderLines, height + 2 * kBorderLines};
  } else if (ends == PixelConverter::FLAG_BAND_LAST) {
    band = {kBorderLines, height + kBorderLines};
  }
  if (ends == PixelConverter::FLAG_BAND_FIRST) band.lines = height + (middle ? 6 : 2);
  return band;
}

/// The intermediate buffer.
struct BandLayout {
  std::size_t front;     ///< bytes before the first line: what a flipped first stage writes there
  std::size_t lines;     ///< bytes of the band's lines
  std::size_t capacity;  ///< bytes in all; more than 32 bits when the intermediate image is too large
};

/// `samples` is the width that the first stage works with, `height` that of the frame without its border.
inline BandLayout LayoutOf(const PixelConverter& first, const Band& band, std::uint32_t samples,
                           std::uint32_t height, bool flipVertical) {
  const std::size_t stride = first.GetDestinationByteSize(samples);
  const std::size_t block = first.GetLinesPerConvert();
  const std::size_t rest = band.lines % block;
  // Blocks that do not fill the band reach past it; flipped ones, and single lines after them, go on below
  // its start.
  const std::size_t frontLines = flipVertical && rest != 0 ? 2 * block : 0;
  const std::size_t lines = frontLines + band.lines + (rest != 0 ? block - rest : 0);
  if (stride != 0 && lines > kLargestCapacity / stride) return {0, 0, std::size_t{kLargestCapacity} + 1};

  const std::size_t lastGroup = first.GetDestinationByteSize((0 - samples) % kLongestGroup);
  const std::size_t promised = first.GetDestinationByteSize((height + 2 * kBorderLines) * samples);
  return {frontLines * stride, band.lines * stride, std::max(lines * stride + lastGroup, promised)};
}

/// Makes the buffer at least as large as asked for. Without memory it is left empty.
inline void Reserve(unsigned char*& buffer, std::uint32_t& size, std::uint32_t wanted) {
  if (buffer != nullptr && size >= wanted) return;
  delete[] buffer;
  buffer = nullptr;
  size = 0;
  buffer = new unsigned char[wanted];
  size = wanted;
}

}  // namespace ZrConvertersLib
