#include "converters/MosaicLines.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "core/BandFlags.h"
#include "core/Patterns.h"
#include "core/PointerOffset.h"

namespace ZrConvertersLib {

namespace {

/// The tile at line 0, column 0.
MosaicTile FirstTile(std::uint32_t flags) {
  switch (PatternOf(Family::Bayer, flags)) {
    case MosaicPattern::BGGR:
      return {true, true};
    case MosaicPattern::RGGB:
      return {false, false};
    case MosaicPattern::GBRG:
      return {true, false};
    default:
      return {false, true};
  }
}

}  // namespace

MosaicTile TileOf(const PixelConverterContext& context) {
  MosaicTile tile = FirstTile(context.mFlags);
  tile.redBelow ^= context.mLine % 2 != 0;
  return tile;
}

std::ptrdiff_t LineNumber(const PixelConverterContext& context) {
  constexpr std::uint32_t kBeforeFirst = std::numeric_limits<std::uint32_t>::max();
  return context.mLine == kBeforeFirst ? -1 : std::ptrdiff_t{context.mLine};
}

SourceLines ImageLines(const PixelConverterContext& context) {
  const std::ptrdiff_t step = context.mSourceStride;
  return {OffsetBy(context.mSource, -step * LineNumber(context)), step};
}

std::ptrdiff_t NeighbourLine(const PixelConverterContext& context, std::ptrdiff_t line) {
  const std::ptrdiff_t height = std::max<std::ptrdiff_t>(context.mSourceHeight, 2);
  if (line < 0 && !HasLinesAbove(context.mFlags)) return -line;
  if (line >= height && !HasLinesBelow(context.mFlags)) return 2 * (height - 1) - line;
  return line;
}

std::array<std::uint8_t*, 2> PairDestinations(const PixelConverterContext& context, std::size_t columnBytes) {
  std::uint8_t* const upper = OffsetBy(context.mDestination, static_cast<std::ptrdiff_t>(columnBytes));
  return {upper, OffsetBy(upper, context.mDestinationStride)};
}

void MosaicSamples::Read(const SourceLines& lines, std::size_t count, const MosaicColumns& columns,
                         std::uint8_t* bytes, std::size_t pitch) const {
  if (mPlan) {
    const std::size_t group = mPlan->Kernel().reader.group.pixels;
    const std::size_t samples = (columns.Count() + group - 1) / group * group;
    mPlan->Run({{lines.first + mPlan->SourceBytes(columns.first)},
                {bytes},
                samples,
                count,
                lines.step,
                static_cast<std::ptrdiff_t>(pitch)});
    return;
  }
  for (std::size_t i = 0; i < count; ++i)
    std::memcpy(bytes + i * pitch, lines.At(static_cast<std::ptrdiff_t>(i)) + columns.first, columns.Count());
}

}  // namespace ZrConvertersLib
