#pragma once

#include <ZrConvertersLib/ComplexConverter.h>
#include <ZrConvertersLib/PixelConverter.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "core/BandFlags.h"
#include "core/LineDriver.h"

/// @file
/// The intermediate image of a chain: which lines it has, and the memory they take.

namespace ZrConvertersLib {

/// Converters write whole groups of up to this many pixels, also where the last one reaches past the width.
inline constexpr std::uint32_t kLongestGroup = 8;

inline constexpr std::uint32_t kLargestCapacity = std::numeric_limits<std::uint32_t>::max();

/// Base of chains that need no intermediate image, and so no pipeline buffer, for calls that convert whole
/// groups of pixels of lines inside the frame.
struct OnePassChain {};

/// The converter that reads a chain's source.
const PixelConverter& FirstStage(const ComplexConverter& chain) noexcept;

/// The lines of the intermediate image.
struct Band {
  std::uint32_t above;  ///< lines before the first one that the second stage converts
  std::uint32_t lines;  ///< lines that the first stage converts
};

inline Band BandOf(std::uint32_t flags, std::uint32_t height) {
  const std::uint32_t above = HasLinesAbove(flags) ? kBorderLines : 0;
  const std::uint32_t below = HasLinesBelow(flags) ? kBorderLines : 0;
  // FIRST and MIDDLE together make the first stage convert two more lines than the second stage may read. The
  // bytes that a call reads depend on this, so it stays.
  const bool firstOfMiddle = (flags & kBandEnds) == PixelConverter::FLAG_BAND_FIRST && above != 0;
  return {above, above + height + below + (firstOfMiddle ? kBorderLines : 0)};
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
