#include "converters/MosaicPlan.h"

#include <ZrConvertersLib/PixelConverter.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "core/OutputWriters.h"
#include "core/PointerOffset.h"

namespace ZrConvertersLib {

using simd::Reading;
using ZrUtilsLib::Result;
using ZrUtilsLib::ResultCode;

namespace {

/// Columns whose samples are kept as bytes at a time; even, and a whole number of any packing's groups.
constexpr std::uint32_t kColumns = 4096;

/// Bytes before and after the columns of such a line: neighbours and rest of groups, and what whole vectors
/// read.
constexpr std::size_t kBeside = 128;

using SampleLine = std::uint8_t[kColumns + 2 * kBeside];

LineRecipe FastRecipe(const MosaicRecipe& recipe) {
  return {.reading = Reading::BayerFast, .group = {1, 1}, .destination = recipe.destination};
}

LineRecipe BilinearRecipe(const MosaicRecipe& recipe) {
  return {.reading = Reading::BayerBilinear, .group = {1, 1}, .destination = recipe.destination};
}

/// A colour on the 16-bit scale, as three words.
LineRecipe SingleRecipe(const MosaicRecipe& recipe) {
  return {
      .reading = Reading::RGB16, .group = {1, 6}, .destination = recipe.destination, .throughCaches = true};
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

}  // namespace

MosaicPlan::MosaicPlan(const PixelConverterContext& context, const MosaicRecipe& recipe)
    : mFast(context, FastRecipe(recipe)),
      mBilinear(context, BilinearRecipe(recipe)),
      mSingle(context, SingleRecipe(recipe)) {
  if (recipe.samples) mSamples.emplace(context, *recipe.samples);
}

MosaicTile MosaicPlan::TileOf(const PixelConverterContext& context) const {
  MosaicTile tile = FirstTile(context.mFlags);
  tile.redBelow ^= context.mLine % 2 != 0;
  return tile;
}

void MosaicPlan::Fast(const PixelConverterContext& context, const SourceLines& lines, std::uint32_t width,
                      std::uint32_t blocks, const LineDriver::Steps& steps) {
  if (width < 2) return;
  if (!mSamples && width % 2 == 0) return FastEven(context, lines, width, blocks, steps);
  PixelConverterContext pair = context;
  for (std::uint32_t i = 0; i < blocks; ++i) {
    FastPair(pair, lines, width);
    pair.mLine += 2;
    pair.mDestination = OffsetBy(pair.mDestination, steps.destination);
  }
}

/// All pairs of lines at once, straight from the source.
void MosaicPlan::FastEven(const PixelConverterContext& context, const SourceLines& lines, std::uint32_t width,
                          std::uint32_t blocks, const LineDriver::Steps& steps) {
  const MosaicTile tile = TileOf(context);
  const std::ptrdiff_t top = FirstLine(context);
  mFast.Job().redAtEvenColumn = !tile.redRight;
  mFast.Run({{lines.At(top + (tile.redBelow ? 1 : 0)), lines.At(top + (tile.redBelow ? 0 : 1))},
             {context.mDestination, OffsetBy(context.mDestination, context.mDestinationStride)},
             width,
             blocks,
             2 * lines.step,
             steps.destination});
}

void MosaicPlan::FastPair(const PixelConverterContext& context, const SourceLines& lines,
                          std::uint32_t width) {
  SampleLine scratch[2];
  const MosaicTile tile = TileOf(context);
  const std::uint8_t* const line[2] = {lines.At(FirstLine(context)), lines.At(FirstLine(context) + 1)};
  mFast.Job().redAtEvenColumn = !tile.redRight;
  const std::uint32_t even = width - width % 2;
  for (std::uint32_t x = 0; x < even; x += kColumns) {
    const Columns columns{x, std::min(x + kColumns, even)};
    const std::uint8_t* const top = Samples(line[0], columns, scratch[0]);
    const std::uint8_t* const bottom = Samples(line[1], columns, scratch[1]);
    std::uint8_t* const destination = context.mDestination + mFast.DestinationBytes(x);
    mFast.Run({{tile.redBelow ? bottom : top, tile.redBelow ? top : bottom},
               {destination, OffsetBy(destination, context.mDestinationStride)},
               columns.end - x});
  }
  if (width % 2 != 0) LastColumn(context, lines, width);
}

/// The bytes of some columns, from the first one on; `first` must begin a group of samples.
const std::uint8_t* MosaicPlan::Samples(const std::uint8_t* line, const Columns& columns,
                                        std::uint8_t* scratch) const {
  if (!mSamples) return line + columns.first;
  const std::size_t group = mSamples->GroupOfSource().pixels;
  const std::size_t count = columns.end - columns.first;
  mSamples->Run(
      {{line + mSamples->SourceBytes(columns.first)}, {scratch}, (count + group - 1) / group * group});
  return scratch;
}

/// The last column of an odd width takes the colour of the tile that starts one column to the left of it. A
/// tile that starts with blue loses the scale of its green there, and only there: so it always was, and users
/// rely on equal pictures.
void MosaicPlan::LastColumn(const PixelConverterContext& context, const SourceLines& lines,
                            std::uint32_t width) {
  MosaicTile tile = TileOf(context);
  tile.redRight = !tile.redRight;
  // The tile stands in the last two columns; groups of samples begin up to three columns before it.
  const std::uint32_t start = (width - 2) / 4 * 4, at = width - 2 - start;
  std::uint8_t scratch[2][kBeside];
  const std::uint8_t* const line[2] = {
      Samples(lines.At(FirstLine(context)), {start, width}, scratch[0]) + at,
      Samples(lines.At(FirstLine(context) + 1), {start, width}, scratch[1]) + at};
  const std::uint8_t *const withRed = line[tile.redBelow], *const withBlue = line[!tile.redBelow];
  const unsigned red = withRed[tile.redRight], blue = withBlue[!tile.redRight];
  const unsigned greens = unsigned{withRed[!tile.redRight]} + withBlue[tile.redRight];
  const bool startsWithBlue = tile.redBelow && tile.redRight;
  const std::array colour = {static_cast<std::uint16_t>(red << 8),
                             static_cast<std::uint16_t>(startsWithBlue ? greens >> 7 : greens << 7),
                             static_cast<std::uint16_t>(blue << 8)};
  std::uint8_t bytes[sizeof colour];
  std::memcpy(bytes, colour.data(), sizeof colour);
  std::uint8_t* const pixel = context.mDestination + mSingle.DestinationBytes(width - 1);
  mSingle.Run({{bytes}, {pixel}, 1});
  mSingle.Run({{bytes}, {OffsetBy(pixel, context.mDestinationStride)}, 1});
}

/// The last few lines of some columns as bytes. Four lines that follow one another have a place each, so a
/// walk reduces every line once.
class MosaicPlan::ReducedLines {
 public:
  ReducedLines(const MosaicPlan& plan, const SourceLines& lines, const Columns& columns, std::uint32_t width)
      : mPlan(plan), mLines(lines), mColumns(columns), mWidth(width) {}

  const std::uint8_t* Get(std::ptrdiff_t line) {
    const std::size_t place = static_cast<std::size_t>(line) % 4;
    std::uint8_t* const reduced = mReduced[place] + kBeside;
    if (!mFilled[place] || mLine[place] != line) {
      mPlan.Reduce(mLines.At(line), mColumns, mWidth, reduced);
      mLine[place] = line;
      mFilled[place] = true;
    }
    return reduced;
  }

 private:
  const MosaicPlan& mPlan;
  const SourceLines& mLines;
  const Columns& mColumns;
  std::uint32_t mWidth;
  bool mFilled[4] = {};
  std::ptrdiff_t mLine[4] = {};
  alignas(64) SampleLine mReduced[4];
};

void MosaicPlan::Interpolate(const PixelConverterContext& context, const SourceLines& lines,
                             std::uint32_t width, std::uint32_t blocks, const LineDriver::Steps& steps) {
  if (width < 2) return;
  const std::uint32_t even = width - width % 2;
  if (width % 2 != 0) InterpolateColumns(context, lines, width, {width - 2, width}, blocks, steps);
  for (std::uint32_t x = 0; x < even; x += kColumns)
    InterpolateColumns(context, lines, width, {x, std::min(x + kColumns, even)}, blocks, steps);
}

void MosaicPlan::InterpolateColumns(PixelConverterContext context, const SourceLines& lines,
                                    std::uint32_t width, const Columns& columns, std::uint32_t blocks,
                                    const LineDriver::Steps& steps) {
  ReducedLines reduced(*this, lines, columns, width);
  for (std::uint32_t i = 0; i < blocks; ++i) {
    InterpolatePair(context, reduced, columns);
    context.mLine += 2;
    context.mDestination = OffsetBy(context.mDestination, steps.destination);
  }
}

void MosaicPlan::InterpolatePair(const PixelConverterContext& context, ReducedLines& lines,
                                 const Columns& columns) {
  const MosaicTile tile = TileOf(context);
  const bool fromOdd = columns.first % 2 != 0;
  mBilinear.Job().redBelow = tile.redBelow;
  mBilinear.Job().redAtEvenColumn = tile.redRight == fromOdd;
  std::uint8_t* const top = context.mDestination + mBilinear.DestinationBytes(columns.first);
  std::uint8_t* const bottom = OffsetBy(top, context.mDestinationStride);
  Strip strip{{}, {tile.redBelow ? bottom : top, tile.redBelow ? top : bottom}, columns.end - columns.first};
  for (std::size_t i = 0; i < 2; ++i) {  // the line with red, then the one with blue
    const std::ptrdiff_t here = FirstLine(context) + ((i == 0) == tile.redBelow ? 1 : 0);
    strip.source[3 * i] = lines.Get(NeighbourLine(context, here - 1));
    strip.source[3 * i + 1] = lines.Get(here);
    strip.source[3 * i + 2] = lines.Get(NeighbourLine(context, here + 1));
  }
  mBilinear.Run(strip);
}

/// The bytes of some columns and of those beside them, mirrored about the edge columns. reduced[0] is the
/// first.
void MosaicPlan::Reduce(const std::uint8_t* line, const Columns& columns, std::uint32_t width,
                        std::uint8_t* reduced) const {
  // Groups of samples may begin up to three columns before the neighbour.
  const std::uint32_t from = columns.first == 0 ? 0 : (columns.first - 1) / 4 * 4;
  const std::uint32_t end = std::min(columns.end + 1, width);
  std::uint8_t* const start = reduced - (columns.first - from);
  const std::uint8_t* const bytes = Samples(line, {from, end}, start);
  if (bytes != start) std::memcpy(start, bytes, end - from);
  if (columns.first == 0) reduced[-1] = reduced[1];
  if (columns.end == width) reduced[columns.end - columns.first] = reduced[columns.end - columns.first - 2];
}

void MosaicPlan::Finish() const {
  mFast.Finish();
}

Result ConvertPairFast(const PixelConverterContext& context, const MosaicRecipe& recipe,
                       std::uint32_t width) {
  MosaicPlan plan(context, recipe);
  plan.Fast(context, LinesOf(context), width, 1, {});
  plan.Finish();
  return {};
}

Result ConvertPairInterpolating(const PixelConverterContext& context, const MosaicRecipe& recipe,
                                std::uint32_t width) {
  MosaicPlan plan(context, recipe);
  plan.Interpolate(context, LinesOf(context), width, 1, {});
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
  const LineDriver::Steps steps = driver.BlockSteps();
  if ((first.mFlags & PixelConverter::FLAG_BAYER_INTERPOLATE) != 0)
    plan.Interpolate(first, lines, driver.Width(), driver.Blocks(), steps);
  else
    plan.Fast(first, lines, driver.Width(), driver.Blocks(), steps);
  if (driver.Singles() != 0 && first.mSourceHeight >= 2) {
    // The one line left over comes out of the fast method together with the line before it.
    PixelConverterContext last = first;
    last.mLine = driver.Height() - 2;
    last.mDestination = OffsetBy(first.mDestination, std::ptrdiff_t{driver.Blocks()} * steps.destination -
                                                         std::ptrdiff_t{first.mDestinationStride});
    plan.Fast(last, lines, driver.Width(), 1, {});
  }
  plan.Finish();
}

}  // namespace ZrConvertersLib
