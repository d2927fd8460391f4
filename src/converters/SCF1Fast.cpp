#include "converters/SCF1Fast.h"

#include <algorithm>

#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

constexpr std::uint32_t kTile = 4;

simd::Scf1TilesFunction TilesKernel(simd::Scf1Samples samples, bool toBytes) {
  return simd::CurrentLevel().scf1->tiles[static_cast<std::size_t>(samples)][toBytes ? 1 : 0];
}

}  // namespace

SCF1Fast::SCF1Fast(const PixelConverterContext& context, const SCF1Recipe& recipe)
    : mContext(context),
      mTile(SCF1TileOf(context.mFlags)),
      mToBytes(recipe.ToBytes()),
      mKernel(TilesKernel(recipe.Kind(), mToBytes)),
      mRowsKernel(TilesKernel(recipe.KindOfRows(), mToBytes)),
      mSamples(context, recipe.Samples()),
      mPixels(context, recipe, mToBytes) {}

void SCF1Fast::Run(const SCF1Lines& lines) const {
  SCF1Planes planes;
  const std::uint32_t last = mContext.mSourceHeight / kTile - 1;
  for (std::uint32_t done = 0, count = 0; done < lines.count; done += count) {
    const std::uint32_t line = mContext.mLine + done, tile = std::min(line / kTile, last);
    count = lines.count - done;
    if (tile != last) count = std::min(count, (tile + 1) * kTile - line);
    RunTiles({lines.lines.From(std::ptrdiff_t{tile} * kTile), lines.width, count, lines.destinationStep},
             OffsetBy(mContext.mDestination, done * lines.destinationStep), planes);
  }
}

/// A row of tiles, to `lines.count` lines from `destination` on. `planes` is room for their colours.
void SCF1Fast::RunTiles(const SCF1Lines& lines, std::uint8_t* destination, SCF1Planes& planes) const {
  for (MosaicColumns columns{0, 0}; columns.end < lines.width;) {
    columns = SCF1Part(columns.end, lines.width, kSCF1Columns);
    MakeTiles(lines.lines, columns, planes);
    mPixels.WriteAlike(planes, columns, lines.count, destination, lines.destinationStep);
  }
}

/// The colours of a row of tiles, `lines` being its own.
void SCF1Fast::MakeTiles(const SourceLines& lines, const MosaicColumns& columns, SCF1Planes& planes) const {
  const std::uint32_t whole = columns.Count() / kTile * kTile;
  simd::Scf1Tiles args{};
  planes.List(args.plane, mTile.redAbove);
  args.greenFirst = mTile.greenFirst;
  args.greenOnly = mPixels.GreenOnly();
  if (mKernel != nullptr && whole >= simd::kScf1Vector) {
    for (std::uint32_t i = 0; i < kTile; ++i)
      args.line[i] = mSamples.At(lines.At(std::ptrdiff_t{i}), columns.first);
    args.pixels = whole;
    args.shift = mSamples.Shift();
    args.prefetch = mSamples.Prefetch();
    mKernel(args);
  } else {
    MakeTilesOfRows(lines, {columns.first, columns.first + whole}, args);
  }
  for (SCF1Row& row : planes.row) {
    for (std::uint32_t x = whole; x < columns.Count(); ++x)
      mToBytes ? row.Copy<std::uint8_t>(x, whole - 1) : row.Copy<std::uint16_t>(x, whole - 1);
  }
}

/// Reads the samples to rows, some columns at a time. `args` has the planes from the first column on.
void SCF1Fast::MakeTilesOfRows(const SourceLines& lines, const MosaicColumns& columns,
                               simd::Scf1Tiles& args) const {
  SCF1SampleRow rows[kTile];
  for (std::uint32_t i = 0; i < kTile; ++i) args.line[i] = rows[i].First();
  for (MosaicColumns part{columns.first, columns.first}; part.end < columns.end;) {
    part = SCF1Part(part.end, columns.end, kSCF1SampleColumns);
    mSamples.Read(lines, kTile, part, rows[0].First(), sizeof rows[0]);
    args.pixels = std::max<std::size_t>(part.Count(), simd::kScf1Vector);
    mRowsKernel(args);
    for (std::uint8_t*& plane : args.plane) plane += std::size_t{part.Count()} * (mToBytes ? 1 : 2);
  }
}

}  // namespace ZrConvertersLib
