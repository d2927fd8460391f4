#include "converters/MosaicPlan.h"

#include <ZrConvertersLib/PixelConverter.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "core/OutputWriters.h"
#include "core/PointerOffset.h"

namespace ZrConvertersLib {

using simd::SourceReader;
using ZrUtilsLib::Result;
using ZrUtilsLib::ResultCode;

namespace {

/// Columns whose samples are kept as bytes at a time; even, and a whole number of any packing's groups.
constexpr std::uint32_t kColumns = 4096;

/// Bytes before and after such columns: neighbours and rest of groups, and what whole vectors read.
constexpr std::size_t kBeside = 128;

/// Columns that are a whole number of blocks at any level.
constexpr std::uint32_t kWholeBlock = 64;

/// Bytes from one such line to the next.
constexpr std::size_t PitchOf(std::uint32_t columns) {
  return (columns + 2 * kBeside + 63) / 64 * 64;
}

/// Lines of samples that are kept at a time: six, or more of short lines, which few calls then handle. All of
/// them and what is made of them are to stay in the first-level cache.
constexpr std::size_t kScratch = 6 * PitchOf(kColumns), kScratchOfShortLines = std::size_t{16} << 10;

static_assert(kScratchOfShortLines <= kScratch);

constexpr std::size_t LinesKept(std::size_t pitch) {
  return std::max<std::size_t>(6, kScratchOfShortLines / pitch);
}

LineRecipe FastRecipe(const MosaicRecipe& recipe) {
  if (recipe.shift)
    return {.reader = SourceReader::BayerFast16,
            .group = {1, 2},
            .destination = recipe.destination,
            .shift = *recipe.shift};
  return {.reader = SourceReader::BayerFast8, .group = {1, 1}, .destination = recipe.destination};
}

LineRecipe BilinearRecipe(const MosaicRecipe& recipe) {
  return {.reader = SourceReader::BayerBilinear, .group = {1, 1}, .destination = recipe.destination};
}

/// Samples of the depth that the bilinear kernel takes for byte channels.
LineRecipe ComplementRecipe(const MosaicRecipe& recipe) {
  LineRecipe complement = {.reader = SourceReader::BayerComplement8,
                           .group = {1, 1},
                           .destination = OutputMono8::kIndex,
                           .throughCaches = true};
  if (recipe.shift) {
    complement.reader = SourceReader::BayerComplement16;
    complement.group = {1, 2};
    complement.shift = *recipe.shift;
  } else if (recipe.samples) {
    ReadSamplesDirectly(complement, *recipe.samples);
  }
  return complement;
}

/// A colour on the 16-bit scale, as three words.
LineRecipe SingleRecipe(const MosaicRecipe& recipe) {
  return {.reader = SourceReader::RGB16,
          .group = {1, 6},
          .destination = recipe.destination,
          .throughCaches = true};
}

/// The tile at line 0, column 0; of several flags, BGGR wins, then RGGB, then GBRG.
MosaicTile FirstTile(std::uint32_t flags) {
  if ((flags & PixelConverter::FLAG_BAYER_BGGR) != 0) return {true, true};
  if ((flags & PixelConverter::FLAG_BAYER_RGGB) != 0) return {false, false};
  if ((flags & PixelConverter::FLAG_BAYER_GBRG) != 0) return {true, false};
  return {false, true};
}

/// The line to read for a neighbour in `line`: outside the image it is mirrored about the edge line, unless
/// the caller has real lines there. A pair always has two lines, also in an image of one.
std::ptrdiff_t NeighbourLine(const PixelConverterContext& context, std::ptrdiff_t line) {
  constexpr std::uint32_t kEnds = PixelConverter::FLAG_BAND_FIRST | PixelConverter::FLAG_BAND_LAST;
  const bool middle = (context.mFlags & PixelConverter::FLAG_BAND_MIDDLE) != 0;
  const std::uint32_t ends = context.mFlags & kEnds;
  const std::ptrdiff_t height = std::max<std::ptrdiff_t>(context.mSourceHeight, 2);
  if (line < 0 && !middle && ends != PixelConverter::FLAG_BAND_LAST) return -line;
  if (line >= height && !middle && ends != PixelConverter::FLAG_BAND_FIRST) return 2 * (height - 1) - line;
  return line;
}

/// Counted from the first line of the image; the line before a single one is line -1.
std::ptrdiff_t FirstLine(const PixelConverterContext& context) {
  return static_cast<std::int32_t>(context.mLine);
}

/// The lines of the image as the driver's walk finds them.
SourceLines LinesOf(const PixelConverterContext& context) {
  const std::ptrdiff_t step = context.mSourceStride;
  return {OffsetBy(context.mSource, -step * FirstLine(context)), step};
}

MosaicTile TileOf(const PixelConverterContext& context) {
  MosaicTile tile = FirstTile(context.mFlags);
  tile.redBelow ^= context.mLine % 2 != 0;
  return tile;
}

/// The two destination lines of the context's pair, `columnBytes` from their start: the upper one first, or
/// the lower.
std::array<std::uint8_t*, 2> Destinations(const PixelConverterContext& context, std::size_t columnBytes,
                                          bool lowerFirst) {
  std::uint8_t* const top = OffsetBy(context.mDestination, static_cast<std::ptrdiff_t>(columnBytes));
  std::uint8_t* const bottom = OffsetBy(top, context.mDestinationStride);
  return {lowerFirst ? bottom : top, lowerFirst ? top : bottom};
}

}  // namespace

MosaicPlan::MosaicPlan(const PixelConverterContext& context, const MosaicRecipe& recipe)
    : mFast(context, FastRecipe(recipe)),
      mBilinear(context, BilinearRecipe(recipe)),
      mSingle(context, SingleRecipe(recipe)),
      mDirect(!recipe.samples || recipe.shift) {
  if (kDestinations[recipe.destination].depth == 8) mComplement.emplace(context, ComplementRecipe(recipe));
  if (!recipe.samples) return;
  mSamples.emplace(context, *recipe.samples);
  LineRecipe fused = FastRecipe(recipe);
  if (!mDirect && ReadSamplesDirectly(fused, *recipe.samples)) mFused.emplace(context, fused);
}

/// The plan that reads so many columns straight from the source, or null.
LinePlan* MosaicPlan::Direct(std::uint32_t columns) {
  if (mDirect) return &mFast;
  return mFused && columns % mFused->GroupOfSource().pixels == 0 ? &*mFused : nullptr;
}

void MosaicPlan::Fast(const PixelConverterContext& context, const Pairs& pairs) {
  if (pairs.width < 2) return;
  const std::uint32_t even = pairs.width - pairs.width % 2;
  if (LinePlan* const direct = Direct(even)) {
    FastDirect(context, pairs, *direct);
  } else {
    for (std::uint32_t x = 0; x < even; x += kColumns)
      FastReduced(context, pairs, {x, std::min(x + kColumns, even)});
  }
  if (pairs.width == even) return;
  PixelConverterContext pair = context;
  for (std::uint32_t i = 0; i < pairs.count; ++i) {
    LastColumn(pair, pairs);
    pair.mLine += 2;
    pair.mDestination = OffsetBy(pair.mDestination, pairs.destinationStep);
  }
}

/// Straight from the source.
void MosaicPlan::FastDirect(const PixelConverterContext& context, const Pairs& pairs, LinePlan& plan) {
  const MosaicTile tile = TileOf(context);
  const std::ptrdiff_t top = FirstLine(context);
  const auto destinations = Destinations(context, 0, false);
  plan.Args().redAtEvenColumn = !tile.redRight;
  plan.Run({{pairs.lines.At(top + (tile.redBelow ? 1 : 0)), pairs.lines.At(top + (tile.redBelow ? 0 : 1))},
            {destinations[0], destinations[1]},
            pairs.width - pairs.width % 2,
            pairs.count,
            2 * pairs.lines.step,
            pairs.destinationStep});
}

/// From as many lines of bytes at a time as the scratch holds.
void MosaicPlan::FastReduced(const PixelConverterContext& context, const Pairs& pairs,
                             const Columns& columns) {
  alignas(64) std::uint8_t scratch[kScratch];
  const auto pitch = static_cast<std::ptrdiff_t>(PitchOf(columns.Count()));
  const auto most = static_cast<std::uint32_t>(LinesKept(PitchOf(columns.Count())) / 2);
  const MosaicTile tile = TileOf(context);
  mFast.Args().redAtEvenColumn = !tile.redRight;
  for (std::uint32_t i = 0; i < pairs.count; i += most) {
    const std::uint32_t count = std::min(most, pairs.count - i);
    Samples(pairs.lines.From(FirstLine(context) + 2 * std::ptrdiff_t{i}), std::size_t{2} * count, columns,
            scratch, static_cast<std::size_t>(pitch));
    const auto destinations = Destinations(context, mFast.DestinationBytes(columns.first), false);
    const std::ptrdiff_t step = i * pairs.destinationStep;
    mFast.Run({{scratch + (tile.redBelow ? pitch : 0), scratch + (tile.redBelow ? 0 : pitch)},
               {OffsetBy(destinations[0], step), OffsetBy(destinations[1], step)},
               columns.Count(),
               count,
               2 * pitch,
               pairs.destinationStep});
  }
}

/// Of `count` lines the bytes of some columns, of which the first must begin a group of samples.
void MosaicPlan::Samples(const SourceLines& lines, std::size_t count, const Columns& columns,
                         std::uint8_t* bytes, std::size_t pitch) const {
  if (mSamples) return Run(*mSamples, lines, count, columns, bytes, pitch);
  for (std::size_t i = 0; i < count; ++i)
    std::memcpy(bytes + i * pitch, lines.At(static_cast<std::ptrdiff_t>(i)) + columns.first, columns.Count());
}

void MosaicPlan::Run(const LinePlan& plan, const SourceLines& lines, std::size_t count,
                     const Columns& columns, std::uint8_t* bytes, std::size_t pitch) {
  const std::size_t group = plan.GroupOfSource().pixels;
  const std::size_t samples = (columns.Count() + group - 1) / group * group;
  plan.Run({{lines.first + plan.SourceBytes(columns.first)},
            {bytes},
            samples,
            count,
            lines.step,
            static_cast<std::ptrdiff_t>(pitch)});
}

/// The last column of an odd width takes the colour of the tile that starts one column to the left of it. A
/// tile that starts with blue loses the scale of its green there, and only there: so it always was, and users
/// rely on equal pictures.
void MosaicPlan::LastColumn(const PixelConverterContext& context, const Pairs& pairs) {
  MosaicTile tile = TileOf(context);
  tile.redRight = !tile.redRight;
  // The tile stands in the last two columns; groups of samples begin up to three columns before it.
  const std::uint32_t start = (pairs.width - 2) / 4 * 4, at = pairs.width - 2 - start;
  std::uint8_t scratch[2][kBeside];
  Samples(pairs.lines.From(FirstLine(context)), 2, {start, pairs.width}, scratch[0], kBeside);
  const std::uint8_t* const line[2] = {scratch[0] + at, scratch[1] + at};
  const std::uint8_t *const withRed = line[tile.redBelow], *const withBlue = line[!tile.redBelow];
  const unsigned red = withRed[tile.redRight], blue = withBlue[!tile.redRight];
  const unsigned greens = unsigned{withRed[!tile.redRight]} + withBlue[tile.redRight];
  const bool startsWithBlue = tile.redBelow && tile.redRight;
  const std::array colour = {static_cast<std::uint16_t>(red << 8),
                             static_cast<std::uint16_t>(startsWithBlue ? greens >> 7 : greens << 7),
                             static_cast<std::uint16_t>(blue << 8)};
  std::uint8_t bytes[sizeof colour];
  std::memcpy(bytes, colour.data(), sizeof colour);
  for (std::uint8_t* const pixel : Destinations(context, mSingle.DestinationBytes(pairs.width - 1), false))
    mSingle.Run({{bytes}, {pixel}, 1});
}

void MosaicPlan::Interpolate(const PixelConverterContext& context, const Pairs& pairs) {
  if (pairs.width < 2) return;
  const std::uint32_t even = pairs.width - pairs.width % 2;
  // The last columns of an odd width, counted from an odd one; the even ones then come after them. Two would
  // do, but a whole block is faster.
  if (pairs.width != even) {
    const std::uint32_t last = pairs.width > kWholeBlock ? kWholeBlock : 2;
    InterpolateColumns(context, pairs, {pairs.width - last, pairs.width});
  }
  for (std::uint32_t x = 0; x < even; x += kColumns)
    InterpolateColumns(context, pairs, {x, std::min(x + kColumns, even)});
}

namespace {

/// The lines about pairs that follow one another inside the image, as rows: row 0 is the line above the first
/// pair, the last row the one below the last pair. Memory holds so many of them as a ring, each made once.
class NeighbourRows {
 public:
  NeighbourRows(const PixelConverterContext& context, std::uint32_t pairs, std::size_t fit)
      : mContext(context), mFit(fit / 2 * 2) {
    const std::ptrdiff_t left = std::max<std::ptrdiff_t>(context.mSourceHeight, 2) - FirstLine(context);
    mPairs = left < 2 ? 0 : static_cast<std::uint32_t>(std::min<std::ptrdiff_t>(pairs, left / 2));
  }

  /// How many pairs have both of their lines in the image.
  std::uint32_t Pairs() const { return mPairs; }

  /// The place in memory of a row.
  std::size_t PlaceOf(std::size_t row) const { return row % mFit; }

  /// How many pairs from this one on have all of their rows in order in memory; one in any case.
  std::uint32_t InOrder(std::uint32_t pair) const {
    const auto fit = static_cast<std::uint32_t>((mFit - 2 - PlaceOf(2 * std::size_t{pair})) / 2);
    return std::clamp<std::uint32_t>(fit, 1, mPairs - pair);
  }

  /// The line of the image that stands in a row.
  std::ptrdiff_t LineOf(std::size_t row) const {
    const std::ptrdiff_t line = FirstLine(mContext) - 1 + static_cast<std::ptrdiff_t>(row);
    return row == 0 || row == 2 * std::size_t{mPairs} + 1 ? NeighbourLine(mContext, line) : line;
  }

  /// How many rows from this one up to `end` follow one another both in memory and in the image.
  std::size_t Following(std::size_t row, std::size_t end) const {
    const std::size_t most = std::min(end - row, mFit - PlaceOf(row));
    std::size_t count = 1;
    while (count < most && LineOf(row + count) == LineOf(row) + static_cast<std::ptrdiff_t>(count)) ++count;
    return count;
  }

 private:
  const PixelConverterContext& mContext;
  std::size_t mFit;
  std::uint32_t mPairs;
};

}  // namespace

void MosaicPlan::InterpolateColumns(const PixelConverterContext& context, const Pairs& pairs,
                                    const Columns& columns) {
  alignas(64) std::uint8_t scratch[kScratch];
  const MosaicTile tile = TileOf(context);
  const bool fromOdd = columns.first % 2 != 0;
  mBilinear.Args().redBelow = tile.redBelow;
  mBilinear.Args().redAtEvenColumn = tile.redRight == fromOdd;
  const Interpolation all{context, pairs, columns, scratch + kBeside, PitchOf(columns.Count())};
  for (std::uint32_t pair = InterpolateInside(all); pair < pairs.count; ++pair) InterpolateBeyond(all, pair);
}

/// The pairs that have both of their lines in the image; returns how many these are.
std::uint32_t MosaicPlan::InterpolateInside(const Interpolation& all) const {
  const NeighbourRows rows(all.context, all.pairs.count, LinesKept(all.pitch));
  const auto place = [&](std::size_t row) { return all.rows + rows.PlaceOf(row) * all.pitch; };
  std::uint32_t pair = 0;
  for (std::size_t row = 0; pair < rows.Pairs();) {
    const std::uint32_t count = rows.InOrder(pair);
    const std::size_t above = 2 * std::size_t{pair}, end = above + 2 * count + 2;
    for (std::size_t following = 0; row < end; row += following) {
      following = rows.Following(row, end);
      Reduce(all, rows.LineOf(row), following, place(row));
    }
    InterpolatePairs(all, pair, count, [&](std::size_t line, std::size_t neighbour) {
      return place(above + line + neighbour);
    });
    pair += count;
  }
  return pair;
}

/// A pair that reaches past the image has neighbours of its own for each line, as the one below the upper
/// line is mirrored while the lower line itself is not.
void MosaicPlan::InterpolateBeyond(const Interpolation& all, std::uint32_t pair) const {
  const auto place = [&](std::size_t line, std::size_t neighbour) {
    return all.rows + (3 * line + neighbour) * all.pitch;
  };
  for (std::size_t line = 0; line < 2; ++line) {
    const std::ptrdiff_t own =
        FirstLine(all.context) + 2 * std::ptrdiff_t{pair} + static_cast<std::ptrdiff_t>(line);
    Reduce(all, NeighbourLine(all.context, own - 1), 1, place(line, 0));
    Reduce(all, own, 1, place(line, 1));
    Reduce(all, NeighbourLine(all.context, own + 1), 1, place(line, 2));
  }
  InterpolatePairs(all, pair, 1, place);
}

/// `row` tells where the line above (0), the line itself and the line below (2) stand for the upper (0) and
/// the lower line of the first pair; those of the next pairs are two rows on.
template <class Row>
void MosaicPlan::InterpolatePairs(const Interpolation& all, std::uint32_t pair, std::uint32_t count,
                                  const Row& row) const {
  const bool redBelow = mBilinear.Args().redBelow;
  const std::size_t red = redBelow ? 1 : 0, blue = 1 - red;
  const auto destinations =
      Destinations(all.context, mBilinear.DestinationBytes(all.columns.first), redBelow);
  const std::ptrdiff_t down = pair * all.pairs.destinationStep;
  mBilinear.Run({{row(red, 0), row(red, 1), row(red, 2), row(blue, 0), row(blue, 1), row(blue, 2)},
                 {OffsetBy(destinations[0], down), OffsetBy(destinations[1], down)},
                 all.columns.Count(),
                 count,
                 static_cast<std::ptrdiff_t>(2 * all.pitch),
                 all.pairs.destinationStep});
}

/// Of `count` lines from `line` on the bytes of the columns and of those beside them, mirrored about the edge
/// columns. `row` is the place of the first column of the first line.
void MosaicPlan::Reduce(const Interpolation& all, std::ptrdiff_t line, std::size_t count,
                        std::uint8_t* row) const {
  const Columns& columns = all.columns;
  const SourceLines lines = all.pairs.lines.From(line);
  // Groups of samples may begin up to three columns before the neighbour.
  const std::uint32_t from = columns.first == 0 ? 0 : (columns.first - 1) / 4 * 4;
  const std::uint32_t end = std::min(columns.end + 1, all.pairs.width);
  std::uint8_t* const first = row - (columns.first - from);
  if (mComplement)
    Run(*mComplement, lines, count, {from, end}, first, all.pitch);
  else
    Samples(lines, count, {from, end}, first, all.pitch);
  for (std::size_t i = 0; i < count; ++i, row += all.pitch) {
    if (columns.first == 0) row[-1] = row[1];
    if (columns.end == all.pairs.width) row[columns.Count()] = row[std::ptrdiff_t{columns.Count()} - 2];
  }
}

void MosaicPlan::Finish() const {
  mFast.Finish();
}

Result ConvertPairFast(const PixelConverterContext& context, const MosaicRecipe& recipe,
                       std::uint32_t width) {
  MosaicPlan plan(context, recipe);
  plan.Fast(context, {LinesOf(context), width, 1, 0});
  plan.Finish();
  return {};
}

Result ConvertPairInterpolating(const PixelConverterContext& context, const MosaicRecipe& recipe,
                                std::uint32_t width) {
  MosaicPlan plan(context, recipe);
  plan.Interpolate(context, {LinesOf(context), width, 1, 0});
  plan.Finish();
  return {};
}

Result ConvertLastLineFast(const PixelConverterContext& context, const MosaicRecipe& recipe,
                           std::uint32_t width) {
  if (context.mSourceHeight < 2) return ResultCode::NotSupported;
  PixelConverterContext back = context;
  back.mLine -= 1;
  back.mSource = OffsetBy(back.mSource, -std::ptrdiff_t{back.mSourceStride});
  back.mDestination = OffsetBy(back.mDestination, -std::ptrdiff_t{back.mDestinationStride});
  return ConvertPairFast(back, recipe, width);
}

void ConvertMosaic(const LineDriver& driver, const MosaicRecipe& recipe, const SourceLines& lines) {
  const PixelConverterContext& first = driver.Context();
  MosaicPlan plan(first, recipe);
  const MosaicPlan::Pairs pairs{lines, driver.Width(), driver.Blocks(), driver.BlockSteps().destination};
  if ((first.mFlags & PixelConverter::FLAG_BAYER_INTERPOLATE) != 0)
    plan.Interpolate(first, pairs);
  else
    plan.Fast(first, pairs);
  if (driver.Singles() != 0 && first.mSourceHeight >= 2) {
    // The one line left over comes out of the fast method together with the line before it.
    PixelConverterContext last = first;
    last.mLine = driver.Height() - 2;
    last.mDestination = OffsetBy(
        first.mDestination, pairs.count * pairs.destinationStep - std::ptrdiff_t{first.mDestinationStride});
    plan.Fast(last, {lines, driver.Width(), 1, 0});
  }
  plan.Finish();
}

}  // namespace ZrConvertersLib
