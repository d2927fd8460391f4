#include "converters/FastDemosaic.h"

#include <algorithm>
#include <cstring>

#include "core/PointerOffset.h"

namespace ZrConvertersLib {

using simd::SourceReader;

namespace {

/// The reader of the source itself where there is one: of words always, of packed samples when whole groups
/// fill the columns. Otherwise that of bytes.
LineRecipe TilesRecipe(const MosaicRecipe& recipe, std::uint32_t columns) {
  if (recipe.shift)
    return {.reader = SourceReader::BayerFast16, .writer = recipe.writer, .shift = *recipe.shift};
  const LineRecipe bytes{
      .reader = SourceReader::BayerFast8, .writer = recipe.writer, .fromCaches = recipe.samples.has_value()};
  LineRecipe fused{.reader = bytes.reader, .writer = bytes.writer};
  const bool isFused = recipe.samples && ReadSamplesDirectly(fused, *recipe.samples) &&
                       columns % simd::FactsOf(fused.reader).group.pixels == 0;
  return isFused ? fused : bytes;
}

/// A colour on the 16-bit scale, as three words.
LineRecipe PixelRecipe(const MosaicRecipe& recipe) {
  return {.reader = SourceReader::RGB16, .writer = recipe.writer, .throughCaches = true};
}

}  // namespace

FastDemosaic::FastDemosaic(const PixelConverterContext& context, const MosaicRecipe& recipe,
                           std::uint32_t width)
    : FastDemosaic(context, recipe, width, TilesRecipe(recipe, width - width % 2)) {}

FastDemosaic::FastDemosaic(const PixelConverterContext& context, const MosaicRecipe& recipe,
                           std::uint32_t width, const LineRecipe& tiles)
    : mTiles(context, tiles) {
  if (tiles.fromCaches) mSamples.emplace(context, ToBytes(*recipe.samples));
  if (width % 2 != 0) mLastColumn.emplace(context, recipe);
}

void FastDemosaic::Run(const PixelConverterContext& context, const MosaicPairs& pairs) {
  mTiles.Args().redAtEvenColumn = !TileOf(context).redRight;
  if (!mSamples) {
    RunDirect(context, pairs);
  } else {
    const std::uint32_t even = pairs.EvenWidth();
    for (std::uint32_t x = 0; x < even; x += std::min(kMosaicColumns, even - x))
      RunFromBytes(context, pairs, {x, x + std::min(kMosaicColumns, even - x)});
  }
  if (!mLastColumn) return;
  PixelConverterContext pair = context;
  for (std::uint32_t i = 0; i < pairs.count; ++i) {
    mLastColumn->Run(pair, pairs);
    pair.mLine += 2;
    pair.mDestination = OffsetBy(pair.mDestination, pairs.destinationStep);
  }
}

/// Straight from the source.
void FastDemosaic::RunDirect(const PixelConverterContext& context, const MosaicPairs& pairs) const {
  const std::ptrdiff_t upper = LineNumber(context), below = TileOf(context).redBelow ? 1 : 0;
  const auto destinations = PairDestinations(context, 0);
  mTiles.Run({{pairs.lines.At(upper + below), pairs.lines.At(upper + 1 - below)},
              {destinations[0], destinations[1]},
              pairs.EvenWidth(),
              pairs.count,
              2 * pairs.lines.step,
              pairs.destinationStep});
}

/// From as many rows of bytes at a time as there is memory for.
void FastDemosaic::RunFromBytes(const PixelConverterContext& context, const MosaicPairs& pairs,
                                const MosaicColumns& columns) const {
  alignas(64) std::uint8_t rows[kMosaicRows];
  const std::size_t pitch = RowPitch(columns.Count());
  const auto most = static_cast<std::uint32_t>(RowsKept(pitch) / 2);
  const std::size_t below = TileOf(context).redBelow ? 1 : 0;
  const auto destinations = PairDestinations(context, mTiles.DestinationBytes(columns.first));
  for (std::uint32_t i = 0; i < pairs.count; i += std::min(most, pairs.count - i)) {
    const std::uint32_t count = std::min(most, pairs.count - i);
    mSamples->Read(pairs.lines.From(LineNumber(context) + 2 * std::ptrdiff_t{i}), std::size_t{2} * count,
                   columns, rows, pitch);
    const std::ptrdiff_t down = i * pairs.destinationStep;
    mTiles.Run({{rows + below * pitch, rows + (1 - below) * pitch},
                {OffsetBy(destinations[0], down), OffsetBy(destinations[1], down)},
                columns.Count(),
                count,
                static_cast<std::ptrdiff_t>(2 * pitch),
                pairs.destinationStep});
  }
}

FastDemosaic::LastColumn::LastColumn(const PixelConverterContext& context, const MosaicRecipe& recipe)
    : samples(context, SamplesToBytes(recipe)), pixel(context, PixelRecipe(recipe)) {}

/// The last column takes the colour of the tile that starts one column to the left of it. If that tile starts
/// with blue, green is not the mean of its two greens but their sum shifted down by 7. It is a peculiarity of
/// the defined output; correcting it would change the bytes that callers get.
void FastDemosaic::LastColumn::Run(const PixelConverterContext& pair, const MosaicPairs& pairs) const {
  MosaicTile tile = TileOf(pair);
  tile.redRight = !tile.redRight;
  // The tile stands in the last two columns; groups of samples begin up to three columns before it.
  const std::uint32_t start = (pairs.width - 2) / 4 * 4, at = pairs.width - 2 - start;
  std::uint8_t bytes[2][kBesideColumns];
  samples.Read(pairs.lines.From(LineNumber(pair)), 2, {start, pairs.width}, bytes[0], kBesideColumns);
  const std::uint8_t* const line[2] = {bytes[0] + at, bytes[1] + at};
  const std::uint8_t *const withRed = line[tile.redBelow], *const withBlue = line[!tile.redBelow];
  const unsigned red = withRed[tile.redRight], blue = withBlue[!tile.redRight];
  const unsigned greens = unsigned{withRed[!tile.redRight]} + withBlue[tile.redRight];
  const bool startsWithBlue = tile.redBelow && tile.redRight;
  const std::array colour = {static_cast<std::uint16_t>(red << 8),
                             static_cast<std::uint16_t>(startsWithBlue ? greens >> 7 : greens << 7),
                             static_cast<std::uint16_t>(blue << 8)};
  std::uint8_t words[sizeof colour];
  std::memcpy(words, colour.data(), sizeof colour);
  for (std::uint8_t* const destination : PairDestinations(pair, pixel.DestinationBytes(pairs.width - 1)))
    pixel.Run({{words}, {destination}, 1});
}

}  // namespace ZrConvertersLib
