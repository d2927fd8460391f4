#include "converters/BilinearDemosaic.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "core/FormatTable.h"
#include "core/PointerOffset.h"

namespace ZrConvertersLib {

using simd::SourceReader;

namespace {

/// Columns that are a whole number of blocks at any level.
constexpr std::uint32_t kWholeBlock = 64;

/// Columns that are interpolated at a time, and bytes before and after them: neighbours and the rest of
/// groups.
constexpr std::uint32_t kColumns = 4096, kBeside = 64;

/// Bytes of the samples of even, or of odd, columns, which are words.
constexpr std::size_t HalfRow(std::uint32_t columns) {
  return (std::size_t{columns} + 2 * kBeside + 63) / 64 * 64;
}

/// Rows for two pairs of lines of the longest, which fit the first-level cache. A pair that reaches past the
/// image takes six.
constexpr std::size_t kRowBytes = 6 * 2 * HalfRow(kColumns);

/// Pairs of rows that are kept: two, or more of shorter ones, so that few kernel calls convert many lines.
constexpr std::uint32_t RowPairsKept(std::size_t pitch) {
  constexpr std::size_t kOfShortRows = std::size_t{16} << 10;
  static_assert(kOfShortRows <= kRowBytes);
  return static_cast<std::uint32_t>(std::max<std::size_t>(kOfShortRows / (2 * pitch), 2));
}

LineRecipe LinesRecipe(const MosaicRecipe& recipe) {
  return {.reader = SourceReader::BayerBilinear, .writer = recipe.writer, .fromCaches = true};
}

LineRecipe SplitRecipe(const MosaicRecipe& recipe) {
  LineRecipe split{
      .reader = SourceReader::BayerSplit8, .writer = simd::PixelWriter::Mono8, .throughCaches = true};
  if (recipe.shift) {
    split.reader = SourceReader::BayerSplit16;
    split.shift = *recipe.shift;
  } else if (recipe.samples) {
    ReadSamplesDirectly(split, *recipe.samples);
  }
  return split;
}

}  // namespace

/// A row has the samples of even columns of the image, then those of odd ones. That of column c of the image
/// begins at byte c / 2 * 2 of its half, counted from where column 0 would be.
struct BilinearDemosaic::Work {
  const PixelConverterContext& context;
  const MosaicPairs& pairs;
  const MosaicColumns& columns;
  std::uint8_t* rows;  ///< the first row
  std::size_t half;    ///< bytes from the samples of even columns to those of odd ones

  std::size_t Pitch() const { return 2 * half; }
  std::uint8_t* Row(std::size_t i) const { return rows + i * Pitch(); }

  /// The place of a column, which may be up to kBeside beside these.
  template <class Byte>
  Byte* Place(Byte* row, std::uint32_t column) const {
    return row + (kBeside + column / 2 * 2 - columns.first / 2 * 2) + column % 2 * half;
  }
};

BilinearDemosaic::BilinearDemosaic(const PixelConverterContext& context, const MosaicRecipe& recipe)
    : mLines(context, LinesRecipe(recipe)), mSplit(context, SplitRecipe(recipe)) {}

void BilinearDemosaic::Run(const PixelConverterContext& context, const MosaicPairs& pairs) {
  if (pairs.width < 2) return;
  const std::uint32_t even = pairs.EvenWidth();
  // The last columns of an odd width are converted first, from an odd column on. Two columns would
  // be enough, but a whole block is faster.
  if (pairs.width != even) {
    const std::uint32_t last = pairs.width > kWholeBlock ? kWholeBlock : 2;
    RunColumns(context, pairs, {pairs.width - last, pairs.width});
  }
  for (std::uint32_t x = 0; x < even; x += std::min(kColumns, even - x))
    RunColumns(context, pairs, {x, x + std::min(kColumns, even - x)});
}

void BilinearDemosaic::RunColumns(const PixelConverterContext& context, const MosaicPairs& pairs,
                                  const MosaicColumns& columns) {
  alignas(64) std::uint8_t rows[kRowBytes];
  const Work work{context, pairs, columns, rows, HalfRow(columns.Count())};
  for (std::uint32_t pair = RunInside(work); pair < pairs.count; ++pair) RunBeyond(work, pair);
}

/// Converts the pairs that have both lines in the image, and returns their number. A pair of rows has the
/// lower line of a pair of lines and the upper one of the next: pair i takes row pairs i and i + 1, the last
/// of which is followed by the first.
std::uint32_t BilinearDemosaic::RunInside(const Work& work) {
  const std::ptrdiff_t first = LineNumber(work.context);
  const std::ptrdiff_t left = std::max<std::ptrdiff_t>(work.context.mSourceHeight, 2) - first;
  const auto inside =
      static_cast<std::uint32_t>(std::clamp<std::ptrdiff_t>(left / 2, 0, std::ptrdiff_t{work.pairs.count}));
  const std::uint32_t kept = RowPairsKept(work.Pitch());
  if (inside != 0) ReadLines(work, first - 1, first + 1, work.Row(0));
  for (std::uint32_t pair = 0, count = 0; pair < inside; pair += count) {
    const std::uint32_t at = pair % kept, next = (at + 1) % kept;
    count = std::min(next == 0 ? 1 : kept - next, inside - pair);
    const std::ptrdiff_t lower = first + 2 * std::ptrdiff_t{pair} + 1;
    ReadLines(work, lower, lower + 2 * std::ptrdiff_t{count}, work.Row(2 * next));
    RunPairs(work, {pair, count}, {work.Row(2 * at), work.Row(2 * at + 1), work.Row(2 * next)},
             {work.Row(2 * at + 1), work.Row(2 * next), work.Row(2 * next + 1)});
  }
  return inside;
}

/// In a pair that reaches past the image each line has three rows of its own, because a line outside the
/// image is mirrored where it is a neighbour, but not where it is itself a line of the pair.
void BilinearDemosaic::RunBeyond(const Work& work, std::uint32_t pair) {
  for (std::uint32_t line = 0; line < 2; ++line) {
    const std::ptrdiff_t own = LineNumber(work.context) + 2 * std::ptrdiff_t{pair} + line;
    ReadRows(work, NeighbourLine(work.context, own - 1), 1, work.Row(3 * line));
    ReadRows(work, own, 1, work.Row(3 * line + 1));
    ReadRows(work, NeighbourLine(work.context, own + 1), 1, work.Row(3 * line + 2));
  }
  RunPairs(work, {pair, 1}, {work.Row(0), work.Row(1), work.Row(2)}, {work.Row(3), work.Row(4), work.Row(5)});
}

/// All upper lines are converted before the lower ones, unless planes overlap, where the order matters.
void BilinearDemosaic::RunPairs(const Work& work, const Pairs& pairs, const ThreeRows& upper,
                                const ThreeRows& lower) {
  const std::size_t pixels = pairs.count * static_cast<std::size_t>(std::abs(work.pairs.destinationStep)) /
                             mLines.DestinationBytes(1);
  const std::uint32_t together = mLines.PlanesApart(pixels) ? pairs.count : 1;
  for (std::uint32_t i = 0; i < pairs.count; i += together) {
    const Pairs now{pairs.first + i, together};
    const std::size_t down = 2 * i * work.Pitch();
    RunLines(work, 0, now, {upper.above + down, upper.here + down, upper.below + down});
    RunLines(work, 1, now, {lower.above + down, lower.here + down, lower.below + down});
  }
}

/// The upper or the lower lines of pairs; the rows are those of the first one.
void BilinearDemosaic::RunLines(const Work& work, std::uint32_t lower, const Pairs& pairs,
                                const ThreeRows& rows) {
  const MosaicTile tile = TileOf(work.context);
  const std::uint32_t first = work.columns.first;
  mLines.Args().redInLine = tile.redBelow == (lower == 1);
  mLines.Args().redAtEvenColumn = tile.redRight == (first % 2 != 0);
  std::uint8_t* const destination = PairDestinations(work.context, mLines.DestinationBytes(first))[lower];
  mLines.Run(
      {{work.Place(rows.above, first), work.Place(rows.above, first + 1), work.Place(rows.here, first),
        work.Place(rows.here, first + 1), work.Place(rows.below, first), work.Place(rows.below, first + 1)},
       {OffsetBy(destination, pairs.first * work.pairs.destinationStep)},
       work.columns.Count(),
       pairs.count,
       static_cast<std::ptrdiff_t>(2 * work.Pitch()),
       work.pairs.destinationStep});
}

/// Lines [first, end), those outside the image mirrored; lines that follow one another are read in one go.
void BilinearDemosaic::ReadLines(const Work& work, std::ptrdiff_t first, std::ptrdiff_t end,
                                 std::uint8_t* row) const {
  while (first < end) {
    const std::ptrdiff_t line = NeighbourLine(work.context, first);
    std::ptrdiff_t count = 1;
    while (line == first && first + count < end &&
           NeighbourLine(work.context, first + count) == first + count)
      ++count;
    ReadRows(work, line, static_cast<std::size_t>(count), row);
    first += count;
    row += static_cast<std::size_t>(count) * work.Pitch();
  }
}

/// Reads the columns of `count` lines from `line` on with their neighbours on either side, which are mirrored
/// about the edge columns, to as many rows.
void BilinearDemosaic::ReadRows(const Work& work, std::ptrdiff_t line, std::size_t count,
                                std::uint8_t* row) const {
  const MosaicColumns& columns = work.columns;
  const std::uint32_t width = work.pairs.width;
  // Groups of samples may begin up to three columns before the neighbour.
  const std::uint32_t from = columns.first == 0 ? 0 : (columns.first - 1) / 4 * 4;
  const std::uint32_t end = std::min(columns.end + 2, width);
  const std::size_t group = mSplit.Kernel().reader.group.pixels, samples = (end - from + group - 1) / group;
  mSplit.Run({{work.pairs.lines.At(line) + mSplit.SourceBytes(from)},
              {work.Place(row, from), work.Place(row, from + 1)},
              samples * group,
              count,
              work.pairs.lines.step,
              static_cast<std::ptrdiff_t>(work.Pitch())});
  for (std::size_t i = 0; i < count; ++i, row += work.Pitch()) {
    if (columns.first == 0) std::memcpy(work.Place(row, 1) - 2, work.Place(row, 1), 2);
    // Of an odd number of samples less than a block only the lower byte of the last word is stored.
    if (end == width && width % 2 != 0) work.Place(row, width - 1)[1] = 0;
    if (columns.end == width) std::memcpy(work.Place(row, width), work.Place(row, width - 2), 2);
  }
}

}  // namespace ZrConvertersLib
