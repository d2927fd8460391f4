#include "converters/SCF1Fast.h"

#include <algorithm>

#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

constexpr std::uint32_t kTile = 4;

}  // namespace

SCF1Fast::SCF1Fast(const PixelConverterContext& context, const SCF1Recipe& recipe)
    : mContext(context),
      mFromBytes(recipe.FromBytes() && recipe.ToBytes()),
      mToBytes(recipe.ToBytes()),
      mSamples(context, recipe.Samples(recipe.ToBytes())),
      mPixels(context, recipe, recipe.ToBytes()) {}

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
  const SCF1Tile tile = SCF1TileOf(mContext.mFlags);
  simd::Scf1Tiles args{};
  planes.List(args.plane, tile.redAbove);
  args.pixels = whole;
  args.greenFirst = tile.greenFirst;
  const simd::Scf1Kernels& kernels = *simd::CurrentLevel().scf1;
  if (mFromBytes && whole >= simd::kScf1Vector) {
    for (std::uint32_t i = 0; i < kTile; ++i) args.line[i] = lines.At(std::ptrdiff_t{i}) + columns.first;
    args.prefetch = mSamples.Prefetch();
  } else {
    mSamples.Read(lines, kTile, {columns.first, columns.first + whole}, rows[0].First());
    for (std::uint32_t i = 0; i < kTile; ++i) args.line[i] = rows[i].First();
    args.pixels = std::max<std::size_t>(whole, simd::kScf1Vector);
  }
  (mFromBytes ? kernels.byteTiles : mToBytes ? kernels.tilesToBytes : kernels.tiles)(args);
  for (SCF1Row& row : planes.row) {
    for (std::uint32_t x = whole; x < columns.Count(); ++x)
      mToBytes ? row.Copy<std::uint8_t>(x, whole - 1) : row.Copy<std::uint16_t>(x, whole - 1);
  }
}

}  // namespace ZrConvertersLib
