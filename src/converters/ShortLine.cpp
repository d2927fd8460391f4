#include <algorithm>
#include <cstring>

#include "converters/PreparedKernel.h"

namespace ZrConvertersLib {

namespace {

/// Source bytes of a pixel at most, and bytes beyond the line that a reader may touch.
constexpr std::size_t kLargestPixel = 8, kSlack = 64;

std::size_t BytesOf(const simd::ReaderGroup& group, std::size_t pixels) {
  return (pixels * group.bytes + group.pixels - 1) / group.pixels;
}

/// Pixel by pixel where planes overlap, so that they come out as if each pixel had been stored in turn.
void CopyOut(const PreparedKernel& kernel, const std::uint8_t* from, std::ptrdiff_t fromPlane,
             std::uint8_t* destination, std::size_t pixels) {
  const std::size_t step = kernel.BlockPlanesOverlap(pixels) ? 1 : pixels;
  for (std::size_t x = 0; x < pixels; x += step) {
    for (std::ptrdiff_t plane = 0; plane < kernel.planes; ++plane) {
      std::memcpy(destination + plane * kernel.args.planeDistance + kernel.DestinationBytes(x),
                  from + plane * fromPlane + kernel.DestinationBytes(x), kernel.DestinationBytes(step));
    }
  }
}

}  // namespace

/// The kernel works on copies that are as long as a block.
void RunShortLine(const PreparedKernel& kernel, const LineBlock& line) {
  constexpr std::size_t kSource = kLargestBlock * kLargestPixel + 2 * kSlack;
  constexpr std::ptrdiff_t kPlane = 2 * kLargestBlock;
  alignas(64) std::uint8_t sources[8][kSource];
  alignas(64) std::uint8_t made[2][3 * kPlane];
  const simd::ReaderLines& lines = kernel.reader.lines;
  const std::size_t group = kernel.reader.group.pixels;
  LineBlock copy{{}, {}, std::max(kernel.block, (line.pixels + group - 1) / group * group)};
  for (std::size_t i = 0; i < lines.sources; ++i) {
    std::memset(sources[i], 0, kSource);
    std::memcpy(sources[i] + kSlack - lines.margin, line.source[i] - lines.margin,
                BytesOf(kernel.reader.group, line.pixels) + 2 * lines.margin);
    copy.source[i] = sources[i] + kSlack;
  }
  for (std::size_t i = 0; i < lines.destinations; ++i) copy.destination[i] = made[i];
  simd::KernelArgs args = kernel.args;
  args.planeDistance = kPlane;
  kernel.function(copy, args);
  for (std::size_t i = 0; i < lines.destinations; ++i)
    CopyOut(kernel, made[i], kPlane, line.destination[i], line.pixels);
}

}  // namespace ZrConvertersLib
