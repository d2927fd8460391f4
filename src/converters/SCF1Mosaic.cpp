#include "converters/SCF1Mosaic.h"

#include <ZrConvertersLib/PixelConverter.h>

#include <algorithm>
#include <cstring>

#include "converters/SCF1Fast.h"
#include "converters/SCF1Interpolation.h"
#include "core/BandFlags.h"
#include "core/CacheLimits.h"
#include "core/FormatTable.h"
#include "core/Patterns.h"

namespace ZrConvertersLib {

using simd::SourceReader;

namespace {

/// Lines from one that is being read to the one that memory is asked for.
constexpr std::ptrdiff_t kPrefetchedLines = 8;

constexpr std::uint32_t kTileSide = 4;

constexpr std::size_t kMostPlanes = 3;

/// Bytes from a plane of a row of pixels to the next, not counting what each has to begin within a cache
/// line. Planes have elements of up to two bytes. Three of them hold a row of the longest pixels, too.
constexpr std::size_t kPlanePitch = 2 * (kSCF1Columns + kSCF1MoreColumns) + 2 * kCacheLine;

constexpr std::size_t InCacheLine(std::uintptr_t place) {
  return place % kCacheLine;
}

bool IsGrey(simd::PixelWriter writer) {
  return !kDestinations[static_cast<std::size_t>(writer)].colour;
}

LineRecipe PixelsRecipe(simd::PixelWriter writer, bool fromBytes) {
  const SourceReader grey = fromBytes ? SourceReader::Mono8 : SourceReader::Mono16;
  const SourceReader planar = fromBytes ? SourceReader::RGBPlanar8 : SourceReader::RGBPlanar16;
  return {.reader = IsGrey(writer) ? grey : planar, .writer = writer, .fromCaches = true};
}

/// Whether making pixels takes longer than copying them: through tables and to planes of words, and past the
/// caches, where it would keep the processor from reading ahead.
bool CopyingPays(const PreparedKernel& kernel) {
  return kernel.stream != nullptr || kernel.args.tables[0] != nullptr ||
         (kernel.planes > 1 && kernel.pixelBytes > 1);
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

simd::Scf1Samples SCF1Recipe::Kind() const {
  switch (samples.reader) {
    case SourceReader::Mono8:
      return simd::Scf1Samples::Bytes;
    case SourceReader::Mono10p:
      return simd::Scf1Samples::Packed10;
    case SourceReader::Mono12p:
      return simd::Scf1Samples::Packed12;
    default:
      return simd::Scf1Samples::Words;
  }
}

LineRecipe SCF1Recipe::Samples() const {
  LineRecipe recipe = samples;
  if (FromBytes()) recipe.writer = simd::PixelWriter::Mono8;
  return recipe;
}

SCF1Samples::SCF1Samples(const PixelConverterContext& context, const LineRecipe& recipe)
    : mPlan(context, recipe) {
  // Lines are read piece by piece, several at a time, so what follows in memory is not what is read next.
  if (mPlan.Args().ahead.toSecond != 0)
    mPlan.Args().ahead.toSecond = kPrefetchedLines * context.mSourceStride;
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
    : mGreenOnly(IsGrey(recipe.writer)),
      mPlan(context, PixelsRecipe(recipe.writer, fromBytes)),
      mToRow(mPlan.Kernel()),
      mCopies(CopyingPays(mToRow)) {
  mToRow.args.planeDistance =
      static_cast<std::ptrdiff_t>(kPlanePitch + InCacheLine(static_cast<std::uintptr_t>(PlaneDistance())));
}

void SCF1Pixels::Write(SCF1Planes& planes, std::ptrdiff_t rowsApart, const MosaicColumns& columns,
                       std::uint32_t count, std::uint8_t* destination, std::ptrdiff_t destinationStep) const {
  LineBlock block = Line(planes, columns, destination + mPlan.DestinationBytes(columns.first));
  block.lines = count;
  block.sourceStep = rowsApart;
  block.destinationStep = destinationStep;
  mPlan.Run(block);
}

LineBlock SCF1Pixels::Line(SCF1Planes& planes, const MosaicColumns& columns,
                           std::uint8_t* destination) const {
  return {{planes.row[mGreenOnly ? 1 : 0].First(), planes.row[1].First(), planes.row[2].First()},
          {destination},
          columns.Count()};
}

void SCF1Pixels::WriteAlike(SCF1Planes& planes, const MosaicColumns& columns, std::uint32_t count,
                            std::uint8_t* destination, std::ptrdiff_t destinationStep) const {
  if (!mCopies || count == 1 || columns.Count() < mToRow.block || !mPlan.PlanesApart(columns.Count()))
    Write(planes, 0, columns, count, destination, destinationStep);
  else
    WriteCopies(planes, columns, count, destination, destinationStep);
}

/// A function of its own, so that only frames that need its row have one on the stack.
void SCF1Pixels::WriteCopies(SCF1Planes& planes, const MosaicColumns& columns, std::uint32_t count,
                             std::uint8_t* destination, std::ptrdiff_t destinationStep) const {
  // The row has the first line's offset in a cache line.
  alignas(kCacheLine) std::uint8_t bytes[kMostPlanes * (kPlanePitch + kCacheLine)];
  std::uint8_t* const first = destination + mPlan.DestinationBytes(columns.first);
  std::uint8_t* const row = bytes + InCacheLine(reinterpret_cast<std::uintptr_t>(first));
  mToRow.Run(Line(planes, columns, row));
  for (std::uint32_t line = 0; line < count; ++line)
    for (std::ptrdiff_t plane = 0; plane < mToRow.planes; ++plane)
      Copy(OffsetBy(first, line * destinationStep + plane * PlaneDistance()),
           row + plane * mToRow.args.planeDistance, mPlan.DestinationBytes(columns.Count()));
}

/// Past the caches if the frame is written so.
void SCF1Pixels::Copy(std::uint8_t* to, const std::uint8_t* from, std::size_t bytes) const {
  const simd::StreamFunction stream = mPlan.Kernel().stream;
  const std::size_t before = InCacheLine(-reinterpret_cast<std::uintptr_t>(to));
  if (stream == nullptr || bytes < before + kCacheLine) {
    std::memcpy(to, from, bytes);
    return;
  }
  const std::size_t whole = (bytes - before) / kCacheLine * kCacheLine, after = bytes - before - whole;
  std::memcpy(to, from, before);
  stream(to + before, from + before, whole);
  std::memcpy(to + before + whole, from + before + whole, after);
}

}  // namespace ZrConvertersLib
