#include "converters/BilinearDemosaic.h"

#include <algorithm>
#include <cstring>

#include "core/CacheLimits.h"
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

/// Bytes of a line from which on kernels that read a pair of lines prefetch less than half of the next pair.
constexpr std::size_t kLongLine = 3072;

/// Bytes of the samples of even, or of odd, columns, which are words, and of what they begin behind a cache
/// line.
constexpr std::size_t HalfRow(std::uint32_t columns) {
  return (std::size_t{columns} + 2 * kBeside + 2 * kCacheLine - 1) / kCacheLine * kCacheLine;
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

/// `inOrder`: with ordinary stores only, which replace one another in the order of the program.
LineRecipe LinesRecipe(simd::PixelWriter writer, bool inOrder) {
  return {
      .reader = SourceReader::BayerBilinear, .writer = writer, .throughCaches = inOrder, .fromCaches = true};
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
  std::size_t offset;  ///< bytes that the rows begin behind a cache line

  std::size_t Pitch() const { return 2 * half; }
  std::uint8_t* Row(std::size_t i) const { return rows + i * Pitch(); }

  /// The place of a column, which may be up to kBeside beside these.
  template <class Byte>
  Byte* Place(Byte* row, std::uint32_t column) const {
    return row + (offset + kBeside + column / 2 * 2 - columns.first / 2 * 2) + column % 2 * half;
  }

  /// Of the first pair.
  std::array<std::uint8_t*, 2> Destinations(const LinePlan& plan) const {
    return PairDestinations(context, plan.DestinationBytes(columns.first));
  }

  /// Converts pairs whose first one has these rows. They begin an odd number of lines below a pair of the
  /// context, or an even one.
  void Run(LinePlan& plan, const Pairs& now, bool odd, const FourRows& from,
           const std::array<std::uint8_t*, 2>& destinations) const;
};

void BilinearDemosaic::Work::Run(LinePlan& plan, const Pairs& now, bool odd, const FourRows& from,
                                 const std::array<std::uint8_t*, 2>& destinations) const {
  const MosaicTile tile = TileOf(context);
  const std::uint32_t first = columns.first;
  const std::ptrdiff_t down = now.first * pairs.destinationStep;
  plan.Args().redInLine = tile.redBelow == odd;
  plan.Args().redAtEvenColumn = tile.redRight == (first % 2 != 0);
  LineBlock block{{},
                  {OffsetBy(destinations[0], down), OffsetBy(destinations[1], down)},
                  columns.Count(),
                  now.count,
                  static_cast<std::ptrdiff_t>(2 * Pitch()),
                  pairs.destinationStep};
  for (std::size_t i = 0; i < from.size(); ++i) {
    block.source[2 * i] = Place(from[i], first);
    block.source[2 * i + 1] = Place(from[i], first + 1);
  }
  plan.Run(block);
}

BilinearDemosaic::BilinearDemosaic(const PixelConverterContext& context, const MosaicRecipe& recipe)
    : mWriter(recipe.writer),
      mLines(context, LinesRecipe(recipe.writer, false)),
      mSplit(context, SplitRecipe(recipe)) {}

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
  const Work work{context, pairs, columns, rows, HalfRow(columns.Count()), RowOffset(context, columns)};
  for (std::uint32_t pair = RunInside(work); pair < pairs.count; ++pair) RunBeyond(work, pair);
}

/// So many bytes that kernels read rows at the addresses of whole vectors in the blocks that they store to
/// such addresses. Pieces of streamed lines begin with a cache line of the destination; otherwise blocks are
/// counted from the first pixel stored to the address of a vector.
std::size_t BilinearDemosaic::RowOffset(const PixelConverterContext& context,
                                        const MosaicColumns& columns) const {
  const PreparedKernel& kernel = mLines.Kernel();
  const auto destination =
      reinterpret_cast<std::uintptr_t>(PairDestinations(context, mLines.DestinationBytes(columns.first))[0]);
  const bool streamed = kernel.stream != nullptr;
  const std::size_t vector = streamed ? kCacheLine : kernel.block;
  for (std::size_t x = 0; x < kCacheLine; x += 2) {
    const std::size_t bytes = mLines.DestinationBytes(x);
    if ((streamed ? destination - bytes : destination + bytes) % vector == 0)
      return streamed ? x : (kCacheLine - x) % kCacheLine;
  }
  return 0;
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
    mLines.SetUpcoming(Upcoming(work, lower + 2 * std::ptrdiff_t{count}));
    work.Run(mLines, {pair, count}, false,
             {work.Row(2 * at), work.Row(2 * at + 1), work.Row(2 * next), work.Row(2 * next + 1)},
             work.Destinations(mLines));
  }
  return inside;
}

/// What reading a pair of lines leaves to prefetch of the next pair, which begins at `line`: nothing of short
/// lines. The address may be past the image.
UpcomingLines BilinearDemosaic::Upcoming(const Work& work, std::ptrdiff_t line) const {
  const std::size_t bytes = mSplit.SourceBytes(work.columns.Count());
  if (mSplit.Kernel().args.ahead.toSecond == 0 || bytes < kLongLine) return {};
  const auto from = static_cast<std::ptrdiff_t>(mSplit.SourceBytes(work.columns.first));
  return {{OffsetBy(work.pairs.lines.At(line), from), OffsetBy(work.pairs.lines.At(line + 1), from)}, bytes};
}

/// In a pair that reaches past the image each line has three rows of its own, because a line outside the
/// image is mirrored where it is a neighbour, but not where it is itself a line of the pair. Each is
/// converted as the lower line of a pair, which overwrites what the upper one gives.
void BilinearDemosaic::RunBeyond(const Work& work, std::uint32_t pair) {
  LinePlan inOrder(work.context, LinesRecipe(mWriter, true));
  for (std::uint32_t line = 0; line < 2; ++line) {
    const std::ptrdiff_t own = LineNumber(work.context) + 2 * std::ptrdiff_t{pair} + line;
    ReadRows(work, NeighbourLine(work.context, own - 1), 1, work.Row(1));
    ReadRows(work, own, 1, work.Row(2));
    ReadRows(work, NeighbourLine(work.context, own + 1), 1, work.Row(3));
    const auto destination = work.Destinations(inOrder)[line];
    work.Run(inOrder, {pair, 1}, line == 0, {work.Row(0), work.Row(1), work.Row(2), work.Row(3)},
             {destination, destination});
  }
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
