#include "converters/SCF1Mosaic.h"

#include <ZrConvertersLib/PixelConverter.h>

#include <algorithm>

#include "converters/SCF1Fast.h"
#include "converters/SCF1Interpolation.h"
#include "core/BandFlags.h"
#include "core/FormatTable.h"
#include "core/Patterns.h"

namespace ZrConvertersLib {

using simd::SourceReader;

namespace {

/// Lines from one that is being read to the one that memory is asked for.
constexpr std::ptrdiff_t kPrefetchedLines = 8;

constexpr std::uint32_t kTileSide = 4;

bool IsGrey(simd::PixelWriter writer) {
  return !kDestinations[static_cast<std::size_t>(writer)].colour;
}

LineRecipe PixelsRecipe(simd::PixelWriter writer, bool fromBytes) {
  const SourceReader grey = fromBytes ? SourceReader::Mono8 : SourceReader::Mono16;
  const SourceReader planar = fromBytes ? SourceReader::RGBPlanar8 : SourceReader::RGBPlanar16;
  return {.reader = IsGrey(writer) ? grey : planar, .writer = writer, .fromCaches = true};
}

/// How many of the lines belong to the image.
std::uint32_t LinesInImage(const PixelConverterContext& context, std::uint32_t count) {
  if (HasLinesBelow(context.mFlags)) return count;
  return std::min(count, context.mSourceHeight - std::min(context.mSourceHeight, context.mLine));
}

}  // namespace

void ConvertSCF1(const PixelConverterContext& context, const SCF1Recipe& recipe, const SCF1Lines& lines) {
  if (lines.width < kTileSide || context.mSourceHeight < kTileSide) return;
  SCF1Lines inImage = lines;
  inImage.count = LinesInImage(context, lines.count);
  if ((context.mFlags & PixelConverter::FLAG_BAYER_INTERPOLATE) != 0)
    SCF1Interpolation(context, recipe).Run(inImage);
  else
    SCF1Fast(context, recipe).Run(inImage);
}

SCF1Tile SCF1TileOf(std::uint32_t flags) {
  switch (PatternOf(Family::Scf1, flags)) {
    case MosaicPattern::WGWB:
      return {true, false};
    case MosaicPattern::WRWG:
      return {false, true};
    case MosaicPattern::WBWG:
      return {false, false};
    default:
      return {true, true};
  }
}

MosaicColumns SCF1Part(std::uint32_t first, std::uint32_t end, std::uint32_t most) {
  return {first, end - first < most + kSCF1MoreColumns ? end : first + most};
}

bool SCF1Recipe::ToBytes() const {
  return kDestinations[static_cast<std::size_t>(writer)].depth == 8;
}

LineRecipe SCF1Recipe::Samples(bool keepBytes) const {
  LineRecipe recipe = samples;
  if (keepBytes && FromBytes()) recipe.writer = simd::PixelWriter::Mono8;
  return recipe;
}

SCF1Samples::SCF1Samples(const PixelConverterContext& context, const LineRecipe& recipe)
    : mPlan(context, recipe) {
  // Lines are read piece by piece, several at a time, so what follows in memory is not what is read next.
  if (mPlan.Args().prefetch != 0) mPlan.Args().prefetch = kPrefetchedLines * context.mSourceStride;
}

void SCF1Samples::Read(const SourceLines& lines, std::size_t count, const MosaicColumns& columns,
                       std::uint8_t* row, std::ptrdiff_t pitch) const {
  mPlan.Run(
      {{lines.first + mPlan.SourceBytes(columns.first)}, {row}, columns.Count(), count, lines.step, pitch});
}

void SCF1Planes::List(std::uint8_t* (&places)[3], bool redFirst) {
  places[redFirst ? 0 : 2] = row[0].First();
  places[1] = row[1].First();
  places[redFirst ? 2 : 0] = row[2].First();
}

SCF1Pixels::SCF1Pixels(const PixelConverterContext& context, const SCF1Recipe& recipe, bool fromBytes)
    : mGreenOnly(IsGrey(recipe.writer)), mPlan(context, PixelsRecipe(recipe.writer, fromBytes)) {}

void SCF1Pixels::Write(SCF1Planes& planes, std::ptrdiff_t rowsApart, const MosaicColumns& columns,
                       std::uint32_t count, std::uint8_t* destination, std::ptrdiff_t destinationStep) const {
  LineBlock block{{planes.row[0].First(), planes.row[1].First(), planes.row[2].First()},
                  {},
                  columns.Count(),
                  count,
                  rowsApart,
                  destinationStep};
  block.destination[0] = destination + mPlan.DestinationBytes(columns.first);
  if (mGreenOnly) block.source[0] = block.source[1];
  mPlan.Run(block);
}

}  // namespace ZrConvertersLib
