#include <algorithm>

#include "converters/PreparedKernel.h"
#include "converters/StreamBuffer.h"

namespace ZrConvertersLib {

namespace {

/// Bytes that are converted into the first-level cache at a time: few enough for the processor's write
/// buffers to empty during the next piece, and at least two blocks of the longest pixels.
constexpr std::size_t kBytesAtATime = 1536;

/// Calls upcoming lines into the second cache, a part for each of `pieces` pieces that are converted.
class PartByPart {
 public:
  PartByPart(const UpcomingLines& lines, std::size_t pieces)
      : mLines(lines), mPart((lines.bytes / pieces / kCacheLine + 1) * kCacheLine) {}

  void PrefetchNext() {
    const std::size_t end = std::min(mDone + mPart, mLines.bytes);
    for (; mDone < end; mDone += kCacheLine)
      for (const std::uint8_t* line : mLines.first)
        __builtin_prefetch(OffsetBy(line, static_cast<std::ptrdiff_t>(mDone)), 0, 2);
  }

 private:
  const UpcomingLines& mLines;
  std::size_t mPart, mDone = 0;
};

}  // namespace

void RunStreamedLine(const PreparedKernel& kernel, const LineBlock& line) {
  const simd::ReaderLines& lines = kernel.reader.lines;
  StreamBuffer buffer({lines.destinations, kernel.planes, kernel.args.planeDistance}, line.destination,
                      kernel.stream);
  const std::size_t longest = kBytesAtATime /
                              (std::size_t{kernel.pixelBytes} * kernel.planes * lines.destinations) /
                              kLargestBlock * kLargestBlock;
  simd::KernelArgs args = kernel.args;
  args.planeDistance = buffer.PlaneDistance();
  LineBlock piece{};
  // Pieces begin with whole groups, and in mosaics with whole tiles.
  const std::size_t unit = std::max<std::size_t>(kernel.reader.group.pixels, 2);
  piece.pixels =
      buffer.PieceToCacheLine(kernel.DestinationBytes(unit), kernel.DestinationBytes(kLargestBlock),
                              kernel.DestinationBytes(longest)) /
      kernel.pixelBytes;
  PartByPart upcoming(kernel.upcoming, line.pixels / longest + 1);
  for (std::size_t x = 0; x < line.pixels; x += piece.pixels, piece.pixels = longest) {
    const std::size_t left = line.pixels - x;
    // The rest after a piece must not be shorter than a block.
    if (left <= longest)
      piece.pixels = left;
    else if (left < piece.pixels + kLargestBlock)
      piece.pixels = longest - kLargestBlock;
    buffer.Reserve(kernel.DestinationBytes(piece.pixels));
    for (std::size_t i = 0; i < lines.sources; ++i)
      piece.source[i] = simd::LoadedSingly(line.source[i]) + kernel.SourceBytes(x);
    for (std::size_t i = 0; i < lines.destinations; ++i)
      piece.destination[i] = simd::LoadedSingly(buffer.Next(i));
    upcoming.PrefetchNext();
    kernel.function(piece, args);
    buffer.Advance(kernel.DestinationBytes(piece.pixels));
  }
  buffer.Finish();
}

}  // namespace ZrConvertersLib
