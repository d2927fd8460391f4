#include "converters/BiColorLines.h"

#include <ZrConvertersLib/PixelConverter.h>

#include <algorithm>
#include <cstring>

#include "core/Patterns.h"
#include "core/PointerOffset.h"

namespace ZrConvertersLib {

namespace {

/// Of the samples of pixels 0 and 1.
struct BiColorOrder {
  bool greenFirst, redAtEvenColumn;
};

BiColorOrder OrderOf(std::uint32_t flags) {
  switch (PatternOf(Family::BiColor, flags)) {
    case MosaicPattern::GBGR:
      return {true, false};
    case MosaicPattern::GRGB:
      return {true, true};
    case MosaicPattern::BGRG:
      return {false, false};
    default:
      return {false, true};
  }
}

/// Source lines and where their pixels go.
struct BiColorImage {
  SourceLines lines;
  std::uint8_t* destination;
  std::ptrdiff_t destinationStep;
  std::uint32_t width, height;

  std::uint8_t* Destination(std::uint32_t line) const {
    return OffsetBy(destination, line * destinationStep);
  }
};

/// One colour for pixels 2k and 2k + 1; the last pixel of an odd width shares one with its left neighbour.
class FastBiColor {
 public:
  FastBiColor(const PixelConverterContext& context, const BiColorRecipe& recipe)
      : mContext(context),
        mRecipe({.reader = recipe.fast, .writer = recipe.writer, .shift = recipe.shift}),
        mOrder(OrderOf(context.mFlags)) {}

  void Run(const BiColorImage& image) const {
    // The pair of the last pixel first: the pixel before that belongs to another pair.
    if (image.width % 2 != 0) RunLastPairs(image);
    LinePlan pairs(mContext, mRecipe);
    pairs.Args().greenFirst = mOrder.greenFirst;
    pairs.Args().redAtEvenColumn = mOrder.redAtEvenColumn;
    pairs.Run({{image.lines.first},
               {image.destination},
               image.width - image.width % 2,
               image.height,
               image.lines.step,
               image.destinationStep});
  }

 private:
  void RunLastPairs(const BiColorImage& image) const {
    LinePlan lastPair(mContext, mRecipe);
    lastPair.Args().greenFirst = mOrder.greenFirst;
    lastPair.Args().redAtEvenColumn = !mOrder.redAtEvenColumn;
    for (std::uint32_t line = 0; line < image.height; ++line)
      RunLastPair(lastPair, image.lines.At(line), image.Destination(line), image.width);
  }

  /// The last two pixels, of which the first may begin within a byte, moved to the beginning of one.
  static void RunLastPair(const LinePlan& plan, const std::uint8_t* source, std::uint8_t* destination,
                          std::uint32_t width) {
    const std::size_t bits = std::size_t{plan.Kernel().reader.group.bytes} * 4;  // of one pixel
    const std::size_t begin = (width - 2) * bits, end = (width * bits + 7) / 8;
    std::uint64_t pixels = 0;
    std::memcpy(&pixels, source + begin / 8, end - begin / 8);
    pixels >>= begin % 8;
    std::uint8_t bytes[sizeof pixels];
    std::memcpy(bytes, &pixels, sizeof pixels);
    plan.Run({{bytes}, {destination + plan.DestinationBytes(width - 2)}, 2});
  }

  const PixelConverterContext& mContext;
  LineRecipe mRecipe;
  BiColorOrder mOrder;
};

/// Rows hold samples of 8 bits in bytes, deeper ones in words.
bool InBytes(const BiColorRecipe& recipe) {
  return recipe.split == simd::SourceReader::BiColorSplit8;
}

LineRecipe SplitRecipe(const BiColorRecipe& recipe) {
  return {.reader = recipe.split,
          .writer = InBytes(recipe) ? simd::PixelWriter::Mono8 : simd::PixelWriter::Mono16,
          .shift = recipe.shift,
          .throughCaches = true};
}

/// The missing colour of a pixel is the mean of its neighbours'. A line is first split into a row of red and
/// blue samples, with one more to either side, and a row of green samples.
class BilinearBiColor {
 public:
  BilinearBiColor(const PixelConverterContext& context, const BiColorRecipe& recipe)
      : mSplit(context, SplitRecipe(recipe)),
        mPixels(context, {.reader = InBytes(recipe) ? simd::SourceReader::BiColorBilinear8
                                                    : simd::SourceReader::BiColorBilinear16,
                          .writer = recipe.writer,
                          .fromCaches = true}),
        mRedAtEvenColumn(OrderOf(context.mFlags).redAtEvenColumn) {
    mSplit.Args().greenFirst = OrderOf(context.mFlags).greenFirst;
  }

  void Run(const BiColorImage& image) {
    const std::uint32_t together = LinesTogether(image.width);
    for (std::uint32_t line = 0; line < image.height; line += together)
      RunLines({{image.lines.At(line), image.lines.step},
                image.Destination(line),
                image.destinationStep,
                image.width,
                std::min(together, image.height - line)});
  }

 private:
  /// Pixels that are split at a time, and space beside them for neighbours.
  static constexpr std::uint32_t kPixels = 4096, kBeside = 32;

  /// Bytes of rows: those of the longest pieces of a line, or of more short lines, so that few kernel calls
  /// convert many lines.
  static constexpr std::size_t kRowBytes = std::size_t{18} << 10;
  static_assert(2 * sizeof(std::uint16_t) * (kPixels + 2 * kBeside) <= kRowBytes);

  /// Bytes of a sample in a row, and of the row of one colour.
  std::size_t SampleBytes() const { return mSplit.DestinationBytes(1); }
  std::size_t RowBytes(std::uint32_t pixels) const {
    return (SampleBytes() * (pixels + std::size_t{2} * kBeside) + 63) / 64 * 64;
  }

  /// Lines in pieces are converted one by one: memory is best read in one stream.
  std::uint32_t LinesTogether(std::uint32_t width) const {
    return width > kPixels ? 1 : static_cast<std::uint32_t>(kRowBytes / (2 * RowBytes(width)));
  }

  /// The last pixels of an odd width are converted first, from an odd pixel on.
  void RunLines(const BiColorImage& lines) {
    const std::uint32_t width = lines.width, even = width - width % 2;
    if (even != width) RunPixels(lines, width - std::min<std::uint32_t>(kLargestBlock, even), width);
    for (std::uint32_t x = 0; x < even; x += std::min(kPixels, even - x))
      RunPixels(lines, x, x + std::min(kPixels, even - x));
  }

  void RunPixels(const BiColorImage& lines, std::uint32_t begin, std::uint32_t end) {
    alignas(64) std::uint8_t rows[kRowBytes];
    const std::size_t row = RowBytes(std::min(lines.width, kPixels)), size = SampleBytes();
    std::uint8_t *const colour = rows + kBeside * size, *const green = colour + row;
    const auto step = static_cast<std::ptrdiff_t>(2 * row);
    const std::uint32_t from = begin == 0 ? 0 : (begin - 1) / 2 * 2, to = std::min(end + 1, lines.width);
    const std::size_t before = (begin - from) * size;
    mSplit.Run({{lines.lines.first + mSplit.SourceBytes(from)},
                {colour - before, green - before},
                to - from,
                lines.height,
                lines.lines.step,
                step});
    for (std::uint32_t line = 0; line < lines.height; ++line)
      MirrorEnds(colour + line * 2 * row, begin == 0, end == lines.width ? (end - begin) * size : 0);
    mPixels.Args().redAtEvenColumn = mRedAtEvenColumn == (begin % 2 == 0);
    mPixels.Run({{colour, green},
                 {lines.destination + mPixels.DestinationBytes(begin)},
                 end - begin,
                 lines.height,
                 step,
                 lines.destinationStep});
  }

  /// The neighbour before the first pixel, and the one behind the last pixel, which ends at byte `end`.
  void MirrorEnds(std::uint8_t* colour, bool first, std::size_t end) const {
    const std::size_t size = SampleBytes();
    if (first) std::memcpy(colour - size, colour + size, size);
    if (end != 0) std::memcpy(colour + end, colour + end - 2 * size, size);
  }

  LinePlan mSplit, mPixels;
  bool mRedAtEvenColumn;
};

void Convert(const PixelConverterContext& context, const BiColorRecipe& recipe, const BiColorImage& image,
             bool interpolate) {
  if (image.width < 2) return;
  if (interpolate)
    BilinearBiColor(context, recipe).Run(image);
  else
    FastBiColor(context, recipe).Run(image);
}

}  // namespace

void ConvertBiColorLine(const PixelConverterContext& context, const BiColorRecipe& recipe,
                        std::uint32_t width, bool interpolate) {
  Convert(context, recipe, {{context.mSource, 0}, context.mDestination, 0, width, 1}, interpolate);
}

void ConvertBiColorLines(const LineDriver& driver, const BiColorRecipe& recipe) {
  const PixelConverterContext& context = driver.Context();
  Convert(context, recipe,
          {driver.Source(), context.mDestination, driver.BlockSteps().destination, driver.Width(),
           driver.Height()},
          (context.mFlags & PixelConverter::FLAG_BICOLOR_INTERPOLATE) != 0);
}

}  // namespace ZrConvertersLib
