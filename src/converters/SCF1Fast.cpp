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
  const std::uint32_t last = mContext.mSourceHeight / kTile - 1;
  for (std::uint32_t done = 0, count = 0; done < lines.count; done += count) {
    const std::uint32_t line = mContext.mLine + done, tile = std::min(line / kTile, last);
    count = lines.count - done;
    if (tile != last) count = std::min(count, (tile + 1) * kTile - line);
    RunTiles({lines.lines.From(std::ptrdiff_t{tile} * kTile), lines.width, count, lines.destinationStep},
             OffsetBy(mContext.mDestination, done * lines.destinationStep));
  }
}

/// A row of tiles, to `lines.count` lines from `destination` on.
void SCF1Fast::RunTiles(const SCF1Lines& lines, std::uint8_t* destination) const {
  SCF1Planes planes;
  for (MosaicColumns columns{0, 0}; columns.end < lines.width;) {
    columns = SCF1Part(columns.end, lines.width, kSCF1Columns);
    MakeTiles(lines.lines, columns, planes);
    mPixels.WriteAlike(planes, columns, lines.count, destination, lines.destinationStep);
  }
}

/// The colours of a row of tiles, `lines` being its own.
void SCF1Fast::MakeTiles(const SourceLines& lines, const MosaicColumns& columns, SCF1Planes& planes) const {
  const std::uint32_t whole = columns.Count() / kTile * kTile;
  for (MosaicColumns part{0, 0}; part.end < whole;) {
    part = mSamples.AreRows() && whole >= simd::kScf1Vector ? MosaicColumns{0, whole}
                                                            : SCF1Part(part.end, whole, kSCF1SampleColumns);
    MakePart(lines, columns.first, part, planes);
  }
  for (SCF1Row& row : planes.row) {
    for (std::uint32_t x = whole; x < columns.Count(); ++x)
      mToBytes ? row.Copy<std::uint8_t>(x, whole - 1) : row.Copy<std::uint16_t>(x, whole - 1);
  }
}

/// The tiles of some of the columns that begin at column `first` of the image.
void SCF1Fast::MakePart(const SourceLines& lines, std::uint32_t first, const MosaicColumns& part,
                        SCF1Planes& planes) const {
  SCF1SampleRow rows[kTile];
  const SCF1Tile tile = SCF1TileOf(mContext.mFlags);
  simd::Scf1Tiles args{};
  planes.List(args.plane, tile.redAbove);
  for (std::uint8_t*& plane : args.plane) plane += std::size_t{part.first} * (mToBytes ? 1 : 2);
  args.pixels = std::max<std::size_t>(part.Count(), simd::kScf1Vector);
  args.greenFirst = tile.greenFirst;
  const simd::Scf1Kernels& kernels = *simd::CurrentLevel().scf1;
  if (mSamples.AreRows() && part.Count() >= simd::kScf1Vector) {
    for (std::uint32_t i = 0; i < kTile; ++i)
      args.line[i] = mSamples.At(lines.At(std::ptrdiff_t{i}), first + part.first);
    args.shift = mSamples.Shift();
    args.prefetch = mSamples.Prefetch();
  } else {
    mSamples.Read(lines, kTile, {first + part.first, first + part.end}, rows[0].First(), sizeof rows[0]);
    for (std::uint32_t i = 0; i < kTile; ++i) args.line[i] = rows[i].First();
  }
  (mFromBytes ? kernels.byteTiles : mToBytes ? kernels.tilesToBytes : kernels.tiles)(args);
}

}  // namespace ZrConvertersLib
