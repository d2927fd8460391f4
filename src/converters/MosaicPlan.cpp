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

/// Columns that are interpolated at a time, from reduced lines that stay in the first-level cache; even.
constexpr std::uint32_t kColumns = 1024;

/// Bytes before and after the columns of a reduced line: the neighbours, and what whole vectors read beyond.
constexpr std::size_t kBeside = 128;

LineRecipe FastRecipe(const MosaicRecipe& recipe) {
  return {.reading = recipe.sampleBytes == 1 ? Reading::BayerFast8 : Reading::BayerFast16,
          .group = {1, recipe.sampleBytes},
          .destination = recipe.destination,
          .shift = recipe.shift};
}

LineRecipe BilinearRecipe(const MosaicRecipe& recipe) {
  return {.reading = Reading::BayerBilinear, .group = {1, 1}, .destination = recipe.destination};
}

/// Samples cut to 8 bits: what the mono reading hands to the 8-bit mono writer.
LineRecipe ReducingRecipe(const MosaicRecipe& recipe) {
  return {.reading = recipe.sampleBytes == 1 ? Reading::Mono8 : Reading::Mono16,
          .group = {1, recipe.sampleBytes},
          .destination = OutputMono8::kIndex,
          .shift = 8 - recipe.shift,
          .throughCaches = true};
}

/// A colour on the 16-bit scale, as three words.
LineRecipe SingleRecipe(const MosaicRecipe& recipe) {
  return {
      .reading = Reading::RGB16, .group = {1, 6}, .destination = recipe.destination, .throughCaches = true};
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

const std::uint8_t* LineAt(const PixelConverterContext& context, std::ptrdiff_t line) {
  return OffsetBy(context.mSource,
                  (line - std::ptrdiff_t{context.mLine}) * std::ptrdiff_t{context.mSourceStride});
}

}  // namespace

MosaicTile FirstTile(std::uint32_t flags) {
  if ((flags & PixelConverter::FLAG_BAYER_BGGR) != 0) return {true, true};
  if ((flags & PixelConverter::FLAG_BAYER_RGGB) != 0) return {false, false};
  if ((flags & PixelConverter::FLAG_BAYER_GBRG) != 0) return {true, false};
  return {false, true};
}

/// Source lines above, at and below the line with red, then the one with blue.
struct MosaicPlan::Neighbourhood {
  std::array<const std::uint8_t*, 6> line;

  Neighbourhood(const PixelConverterContext& context, bool redBelow) {
    const std::ptrdiff_t first = context.mLine;
    for (std::ptrdiff_t i = 0; i < 2; ++i) {
      const std::ptrdiff_t here = first + (redBelow ? 1 - i : i);
      const auto at = line.begin() + 3 * i;
      at[0] = LineAt(context, NeighbourLine(context, here - 1));
      at[1] = LineAt(context, here);
      at[2] = LineAt(context, NeighbourLine(context, here + 1));
    }
  }
};

MosaicPlan::MosaicPlan(const PixelConverterContext& context, const MosaicRecipe& recipe)
    : mRecipe(recipe),
      mFast(context, FastRecipe(recipe)),
      mBilinear(context, BilinearRecipe(recipe)),
      mReduce(context, ReducingRecipe(recipe)),
      mSingle(context, SingleRecipe(recipe)) {}

MosaicTile MosaicPlan::TileOf(const PixelConverterContext& context) const {
  MosaicTile tile = FirstTile(context.mFlags);
  tile.redBelow ^= context.mLine % 2 != 0;
  return tile;
}

Result MosaicPlan::Fast(const PixelConverterContext& context, std::uint32_t width) {
  if (width < 2) return {};
  const MosaicTile tile = TileOf(context);
  const std::uint8_t* const top = context.mSource;
  const std::uint8_t* const bottom = top + context.mSourceStride;
  mFast.Job().redAtEvenColumn = !tile.redRight;
  mFast.Run({{tile.redBelow ? bottom : top, tile.redBelow ? top : bottom},
             {context.mDestination, context.mDestination + context.mDestinationStride},
             width - width % 2});
  if (width % 2 != 0) LastColumn(context, width);
  return {};
}

unsigned MosaicPlan::Sample(const std::uint8_t* line, std::uint32_t x) const {
  if (mRecipe.sampleBytes == 1) return line[x];
  std::uint16_t sample;
  std::memcpy(&sample, line + std::size_t{2} * x, sizeof sample);
  return (unsigned{sample} >> mRecipe.shift) & 0xFFu;
}

/// The last column of an odd width takes the colour of the tile that starts one column to the left of it. A
/// tile that starts with blue loses the scale of its green there, and only there: so it always was, and users
/// rely on equal pictures.
void MosaicPlan::LastColumn(const PixelConverterContext& context, std::uint32_t width) {
  MosaicTile tile = TileOf(context);
  tile.redRight = !tile.redRight;
  const std::uint8_t* const line[2] = {context.mSource, context.mSource + context.mSourceStride};
  const std::uint32_t redColumn = width - 2 + (tile.redRight ? 1 : 0),
                      otherColumn = 2 * width - 3 - redColumn;
  const unsigned red = Sample(line[tile.redBelow], redColumn),
                 blue = Sample(line[!tile.redBelow], otherColumn);
  const unsigned greens = Sample(line[tile.redBelow], otherColumn) + Sample(line[!tile.redBelow], redColumn);
  const bool startsWithBlue = tile.redBelow && tile.redRight;
  const std::array colour = {static_cast<std::uint16_t>(red << 8),
                             static_cast<std::uint16_t>(startsWithBlue ? greens >> 7 : greens << 7),
                             static_cast<std::uint16_t>(blue << 8)};
  std::uint8_t bytes[sizeof colour];
  std::memcpy(bytes, colour.data(), sizeof colour);
  std::uint8_t* const pixel = context.mDestination + mSingle.DestinationBytes(width - 1);
  mSingle.Run({{bytes}, {pixel}, 1});
  mSingle.Run({{bytes}, {pixel + context.mDestinationStride}, 1});
}

Result MosaicPlan::Interpolate(const PixelConverterContext& context, std::uint32_t width) {
  if (width < 2) return {};
  const MosaicTile tile = TileOf(context);
  const Neighbourhood lines(context, tile.redBelow);
  mBilinear.Job().redBelow = tile.redBelow;
  if (width % 2 != 0) {
    // The last two columns, counted from an odd one.
    mBilinear.Job().redAtEvenColumn = tile.redRight;
    InterpolateColumns(context, lines, width - 2, width, width);
  }
  mBilinear.Job().redAtEvenColumn = !tile.redRight;
  const std::uint32_t even = width - width % 2;
  for (std::uint32_t x = 0; x < even; x += kColumns)
    InterpolateColumns(context, lines, x, std::min(x + kColumns, even), width);
  return {};
}

void MosaicPlan::InterpolateColumns(const PixelConverterContext& context, const Neighbourhood& lines,
                                    std::uint32_t first, std::uint32_t end, std::uint32_t width) {
  alignas(64) std::uint8_t reduced[6][kColumns + 2 * kBeside];
  const bool redBelow = mBilinear.Job().redBelow;
  std::uint8_t* const top = context.mDestination + mBilinear.DestinationBytes(first);
  std::uint8_t* const bottom = top + context.mDestinationStride;
  Strip strip{{}, {redBelow ? bottom : top, redBelow ? top : bottom}, end - first};
  for (std::size_t i = 0; i < lines.line.size(); ++i) {
    const auto same = std::find(lines.line.begin(), lines.line.begin() + i, lines.line[i]);
    const auto place = static_cast<std::size_t>(same - lines.line.begin());
    if (place == i) Reduce(lines.line[i], first, end, width, reduced[i] + kBeside);
    strip.source[i] = reduced[place] + kBeside;
  }
  mBilinear.Run(strip);
}

/// Columns first to end - 1 and their neighbours, mirrored about the edge columns, in 8 bits. reduced[0] is
/// column `first`.
void MosaicPlan::Reduce(const std::uint8_t* line, std::uint32_t first, std::uint32_t end, std::uint32_t width,
                        std::uint8_t* reduced) const {
  const std::uint32_t from = first == 0 ? 0 : first - 1, to = std::min(end + 1, width);
  std::uint8_t* const start = first == 0 ? reduced : reduced - 1;
  if (mRecipe.sampleBytes == 1)
    std::memcpy(start, line + from, to - from);
  else
    mReduce.Run({{line + std::size_t{2} * from}, {start}, to - from});
  if (first == 0) reduced[-1] = reduced[1];
  if (end == width) reduced[end - first] = reduced[end - first - 2];
}

Result MosaicPlan::LastLine(const PixelConverterContext& context, std::uint32_t width) {
  if (context.mSourceHeight < 2) return ResultCode::NotSupported;
  PixelConverterContext back = context;
  back.mLine -= 1;
  back.mSource = OffsetBy(back.mSource, -std::ptrdiff_t{back.mSourceStride});
  back.mDestination = OffsetBy(back.mDestination, -std::ptrdiff_t{back.mDestinationStride});
  return Fast(back, width);
}

void MosaicPlan::Finish() const {
  mFast.Finish();
}

void ConvertMosaic(LineDriver& driver, const MosaicRecipe& recipe) {
  MosaicPlan plan(driver.Context(), recipe);
  const bool interpolate = (driver.Context().mFlags & PixelConverter::FLAG_BAYER_INTERPOLATE) != 0;
  driver.Walk(
      [&](const PixelConverterContext& context, std::uint32_t width) {
        interpolate ? plan.Interpolate(context, width) : plan.Fast(context, width);
      },
      [&](const PixelConverterContext& context, std::uint32_t width) { plan.LastLine(context, width); });
  plan.Finish();
}

}  // namespace ZrConvertersLib
