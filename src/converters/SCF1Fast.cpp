#include "converters/SCF1Fast.h"

#include <algorithm>

#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

constexpr std::uint32_t kTile = 4;

}  // namespace

void SCF1Fast::Run(const SCF1Lines& lines) const {
  for (MosaicColumns columns{0, 0}; columns.end < lines.width;) {
    columns = SCF1ColumnsFrom(columns.end, lines.width);
    RunColumns(lines, columns);
  }
}

void SCF1Fast::RunColumns(const SCF1Lines& lines, const MosaicColumns& columns) const {
  SCF1Planes planes;
  const std::uint32_t last = mContext.mSourceHeight / kTile - 1;
  for (std::uint32_t done = 0, count = 0; done < lines.count; done += count) {
    const std::uint32_t line = mContext.mLine + done, tile = std::min(line / kTile, last);
    count = lines.count - done;
    if (tile != last) count = std::min(count, (tile + 1) * kTile - line);
    MakeTiles(lines.lines.From(std::ptrdiff_t{tile} * kTile), columns, planes);
    mPixels.Write(planes, 0, columns, count, OffsetBy(mContext.mDestination, done * lines.destinationStep),
                  lines.destinationStep);
  }
}

/// The colours of a row of tiles, `lines` being its own.
void SCF1Fast::MakeTiles(const SourceLines& lines, const MosaicColumns& columns, SCF1Planes& planes) const {
  SCF1Row rows[kTile];
  const std::uint32_t whole = columns.Count() / kTile * kTile;
  mSamples.Read(lines, kTile, {columns.first, columns.first + whole}, rows[0].First());
  const SCF1Tile tile = SCF1TileOf(mContext.mFlags);
  simd::Scf1Tiles args{};
  for (std::uint32_t i = 0; i < kTile; ++i) args.line[i] = rows[i].First();
  planes.List(args.plane, tile.redAbove);
  args.pixels = whole;
  args.greenFirst = tile.greenFirst;
  simd::CurrentLevel().scf1->tiles(args);
  for (SCF1Row& row : planes.row)
    for (std::uint32_t x = whole; x < columns.Count(); ++x) row.Copy<std::uint16_t>(x, whole - 1);
}

}  // namespace ZrConvertersLib
