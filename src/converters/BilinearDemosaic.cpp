#include "converters/BilinearDemosaic.h"

#include <algorithm>
#include <cstring>

#include "core/FormatTable.h"
#include "core/PointerOffset.h"

namespace ZrConvertersLib {

using simd::SourceReader;

namespace {

/// Columns that are a whole number of blocks at any level.
constexpr std::uint32_t kWholeBlock = 64;

LineRecipe PairsRecipe(const MosaicRecipe& recipe) {
  return {.reader = SourceReader::BayerBilinear, .writer = recipe.writer, .fromCaches = true};
}

/// What the bilinear kernel reads: bytes, complemented for destinations of byte channels.
std::optional<LineRecipe> RowsRecipe(const MosaicRecipe& recipe) {
  if (kDestinations[static_cast<std::size_t>(recipe.writer)].depth != 8) return SamplesToBytes(recipe);
  LineRecipe complement{
      .reader = SourceReader::BayerComplement8, .writer = simd::PixelWriter::Mono8, .throughCaches = true};
  if (recipe.shift) {
    complement.reader = SourceReader::BayerComplement16;
    complement.shift = *recipe.shift;
  } else if (recipe.samples) {
    ReadSamplesDirectly(complement, *recipe.samples);
  }
  return complement;
}

}  // namespace

struct BilinearDemosaic::Work {
  const PixelConverterContext& context;
  const MosaicPairs& pairs;
  const MosaicColumns& columns;
  std::uint8_t* rows;  ///< the first of the columns in the first row
  std::size_t pitch;   ///< bytes from a row to the next
};

BilinearDemosaic::BilinearDemosaic(const PixelConverterContext& context, const MosaicRecipe& recipe)
    : mPairs(context, PairsRecipe(recipe)), mSamples(context, RowsRecipe(recipe)) {}

void BilinearDemosaic::Run(const PixelConverterContext& context, const MosaicPairs& pairs) {
  if (pairs.width < 2) return;
  const std::uint32_t even = pairs.EvenWidth();
  // The last columns of an odd width are converted first, from an odd column on. Two columns would
  // be enough, but a whole block is faster.
  if (pairs.width != even) {
    const std::uint32_t last = pairs.width > kWholeBlock ? kWholeBlock : 2;
    RunColumns(context, pairs, {pairs.width - last, pairs.width});
  }
  for (std::uint32_t x = 0; x < even; x += std::min(kMosaicColumns, even - x))
    RunColumns(context, pairs, {x, x + std::min(kMosaicColumns, even - x)});
}

void BilinearDemosaic::RunColumns(const PixelConverterContext& context, const MosaicPairs& pairs,
                                  const MosaicColumns& columns) {
  alignas(64) std::uint8_t rows[kMosaicRows];
  const MosaicTile tile = TileOf(context);
  const bool fromOdd = columns.first % 2 != 0;
  mPairs.Args().redBelow = tile.redBelow;
  mPairs.Args().redAtEvenColumn = tile.redRight == fromOdd;
  const Work work{context, pairs, columns, rows + kBesideColumns, RowPitch(columns.Count())};
  for (std::uint32_t pair = RunInside(work); pair < pairs.count; ++pair) RunBeyond(work, pair);
}

/// Converts the pairs that have both lines in the image, and returns their number. The rows begin with the
/// line above the first pair; the last two rows are the first two for the next pairs.
std::uint32_t BilinearDemosaic::RunInside(const Work& work) const {
  const std::ptrdiff_t first = LineNumber(work.context);
  const std::ptrdiff_t left = std::max<std::ptrdiff_t>(work.context.mSourceHeight, 2) - first;
  const auto inside =
      static_cast<std::uint32_t>(std::clamp<std::ptrdiff_t>(left / 2, 0, std::ptrdiff_t{work.pairs.count}));
  const auto most = static_cast<std::uint32_t>(RowsKept(work.pitch) / 2 - 1);
  constexpr std::size_t kShared = 2;
  for (std::uint32_t pair = 0, count = 0; pair < inside; pair += count) {
    std::uint8_t* const begin = work.rows - kBesideColumns;
    if (pair != 0) std::memcpy(begin, begin + std::size_t{2} * count * work.pitch, kShared * work.pitch);
    const std::size_t kept = pair != 0 ? kShared : 0;
    count = std::min(most, inside - pair);
    const std::ptrdiff_t above = first + 2 * std::ptrdiff_t{pair} - 1;
    ReadLines(work, above + static_cast<std::ptrdiff_t>(kept), above + 2 * std::ptrdiff_t{count} + 2,
              work.rows + kept * work.pitch);
    RunPairs(work, pair, count, 1);
  }
  return inside;
}

/// In a pair that reaches past the image each line has three rows of its own, because a line outside the
/// image is mirrored where it is a neighbour, but not where it is itself a line of the pair.
void BilinearDemosaic::RunBeyond(const Work& work, std::uint32_t pair) const {
  for (std::ptrdiff_t line = 0; line < 2; ++line) {
    const std::ptrdiff_t own = LineNumber(work.context) + 2 * std::ptrdiff_t{pair} + line;
    std::uint8_t* const rows = work.rows + static_cast<std::size_t>(3 * line) * work.pitch;
    ReadRows(work, NeighbourLine(work.context, own - 1), 1, rows);
    ReadRows(work, own, 1, rows + work.pitch);
    ReadRows(work, NeighbourLine(work.context, own + 1), 1, rows + 2 * work.pitch);
  }
  RunPairs(work, pair, 1, 3);
}

/// The upper line of the first pair is row 1, between its neighbours in rows 0 and 2. The rows of the lower
/// line follow `rowsApart` rows later.
void BilinearDemosaic::RunPairs(const Work& work, std::uint32_t pair, std::uint32_t count,
                                std::size_t rowsApart) const {
  const bool redBelow = mPairs.Kernel().args.redBelow;
  const std::uint8_t *const upper = work.rows, *const lower = work.rows + rowsApart * work.pitch;
  const std::uint8_t *const red = redBelow ? lower : upper, *const blue = redBelow ? upper : lower;
  const auto destinations = PairDestinations(work.context, mPairs.DestinationBytes(work.columns.first));
  const std::ptrdiff_t down = pair * work.pairs.destinationStep;
  mPairs.Run(
      {{red, red + work.pitch, red + 2 * work.pitch, blue, blue + work.pitch, blue + 2 * work.pitch},
       {OffsetBy(destinations[redBelow ? 1 : 0], down), OffsetBy(destinations[redBelow ? 0 : 1], down)},
       work.columns.Count(),
       count,
       static_cast<std::ptrdiff_t>(2 * work.pitch),
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
    row += static_cast<std::size_t>(count) * work.pitch;
  }
}

/// Reduces the columns of `count` lines from `line` on to bytes, with their neighbours on either side, which
/// are mirrored about the edge columns. `row` receives the first column of the first line.
void BilinearDemosaic::ReadRows(const Work& work, std::ptrdiff_t line, std::size_t count,
                                std::uint8_t* row) const {
  const MosaicColumns& columns = work.columns;
  // Groups of samples may begin up to three columns before the neighbour.
  const std::uint32_t from = columns.first == 0 ? 0 : (columns.first - 1) / 4 * 4;
  const std::uint32_t end = std::min(columns.end + 1, work.pairs.width);
  mSamples.Read(work.pairs.lines.From(line), count, {from, end}, row - (columns.first - from), work.pitch);
  for (std::size_t i = 0; i < count; ++i, row += work.pitch) {
    if (columns.first == 0) row[-1] = row[1];
    if (columns.end == work.pairs.width) row[columns.Count()] = row[std::ptrdiff_t{columns.Count()} - 2];
  }
}

}  // namespace ZrConvertersLib
