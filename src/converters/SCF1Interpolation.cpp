#include "converters/SCF1Interpolation.h"

#include <algorithm>

#include "core/BandFlags.h"
#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

/// Columns on either side that are read, too: those of a cell, and as many as fill a group of any packing.
constexpr std::uint32_t kBeside = 4;

/// The row of cells that supplies the values of `row`: outside the image the mirrored row, and for a row that
/// the lower edge cuts the row two above it.
std::ptrdiff_t RowOfValues(const PixelConverterContext& context, std::ptrdiff_t row) {
  const auto height = std::ptrdiff_t{context.mSourceHeight}, rows = (height + 1) / 2;
  if (row < 0 && !HasLinesAbove(context.mFlags)) row = -row;
  if (HasLinesBelow(context.mFlags)) return row;
  if (row >= rows) row = 2 * (rows - 1) - row;
  return 2 * row + 1 < height ? row : row - 2;
}

/// Whether lines are taken apart: those of samples of up to 12 bits.
bool AreApart(const SCF1Recipe& recipe) {
  return recipe.FromBytes() || recipe.samples.shift >= 16 - 12;
}

simd::Scf1CellRowFunction CellRowKernel(bool apart, bool toBytes) {
  const simd::Scf1Kernels& kernels = *simd::CurrentLevel().scf1;
  return !apart ? kernels.cellRow : toBytes ? kernels.apartToBytes : kernels.apartToWords;
}

simd::Scf1ApartFunction ApartKernel(simd::Scf1Samples samples) {
  return simd::CurrentLevel().scf1->apart[static_cast<std::size_t>(samples)];
}

/// Whether lines of so many columns can be taken apart without being copied to rows.
bool FitsKernel(std::uint32_t columns) {
  constexpr std::uint32_t kGroup = 4;
  return columns >= simd::kScf1Vector && columns % kGroup == 0;
}

}  // namespace

SCF1Interpolation::SCF1Interpolation(const PixelConverterContext& context, const SCF1Recipe& recipe)
    : mContext(context),
      mApart(AreApart(recipe)),
      mToBytes(mApart && recipe.ToBytes()),
      mTakeApart(ApartKernel(recipe.Kind())),
      mTakeRowsApart(ApartKernel(recipe.KindOfRows())),
      mCellRow(CellRowKernel(mApart, mToBytes)),
      mSamples(context, recipe.Samples()),
      mPixels(context, recipe, mToBytes) {}

class SCF1Interpolation::Work {
 public:
  Work(const SCF1Interpolation& demosaic, const SCF1Lines& lines, const MosaicColumns& columns)
      : mDemosaic(demosaic),
        mLines(lines),
        mColumns(columns),
        mRead{columns.first - std::min(columns.first, kBeside), std::min(columns.end + kBeside, lines.width)},
        mTile(SCF1TileOf(demosaic.mContext.mFlags)) {}

  void Run();

 private:
  /// Of each cell of a row: means, or what they miss to 65535 if lines are taken apart.
  struct CellValues {
    SCF1CellRow colour, white;
  };

  /// The two lines of a row of cells, and the cells' values.
  struct CellRow {
    SCF1CellRow line[2];
    CellValues values;
  };

  bool AtFirstColumn() const { return mRead.first == mColumns.first; }
  bool AtLastColumn() const { return mRead.end == mLines.width; }
  std::ptrdiff_t ColumnsToEdge() const {
    return std::ptrdiff_t{mLines.width} - std::ptrdiff_t{mColumns.first};
  }
  CellRow& At(std::ptrdiff_t row) { return mRows[static_cast<std::size_t>(row + 3) % 3]; }
  void Make(std::ptrdiff_t row);
  void MakeCells(std::ptrdiff_t upper, std::ptrdiff_t lower, CellRow& row, CellValues& values);
  SourceLines Pair(std::ptrdiff_t upper, std::ptrdiff_t lower) const;
  void MakeMeans(std::ptrdiff_t upper, std::ptrdiff_t lower, CellRow& row, CellValues& values) const;
  void TakeApart(std::ptrdiff_t upper, std::ptrdiff_t lower, CellRow& row, CellValues& values) const;
  void TakePartApart(const SourceLines& pair, const MosaicColumns& part, bool direct, CellRow& row,
                     CellValues& values) const;
  template <class Element>
  void Complete(CellValues& values) const;
  void Interpolate(std::ptrdiff_t row);
  void Write(std::ptrdiff_t line, std::uint32_t count);

  const SCF1Interpolation& mDemosaic;
  const SCF1Lines& mLines;
  MosaicColumns mColumns, mRead;
  SCF1Tile mTile;
  CellRow mRows[3];
  CellValues mUnused;
  SCF1Planes mPlanes[2];
};

void SCF1Interpolation::Run(const SCF1Lines& lines) const {
  const std::uint32_t most = mApart ? kSCF1Columns : kSCF1Columns / 2;
  for (MosaicColumns columns{0, 0}; columns.end < lines.width;) {
    columns = SCF1Part(columns.end, lines.width, most);
    Work(*this, lines, columns).Run();
  }
}

void SCF1Interpolation::Work::Run() {
  if (mLines.count == 0) return;
  const auto first = std::ptrdiff_t{mDemosaic.mContext.mLine}, end = first + std::ptrdiff_t{mLines.count};
  Make(first / 2 - 1);
  Make(first / 2);
  for (std::ptrdiff_t line = first, next = 0; line < end; line = next) {
    next = std::min(end, line / 2 * 2 + 2);
    Make(line / 2 + 1);
    Interpolate(line / 2);
    Write(line, static_cast<std::uint32_t>(next - line));
  }
}

/// Lines and cells of a row; of one that reaches past the image the lines and the cells that stand for them.
void SCF1Interpolation::Work::Make(std::ptrdiff_t row) {
  const PixelConverterContext& context = mDemosaic.mContext;
  const std::ptrdiff_t values = RowOfValues(context, row);
  CellRow& to = At(row);
  MakeCells(2 * values, 2 * values + 1, to, to.values);
  if (values != row)
    MakeCells(NeighbourLine(context, 2 * row), NeighbourLine(context, 2 * row + 1), to, mUnused);
}

/// The two lines go to `row`, the values of the cells that they make to `values`.
void SCF1Interpolation::Work::MakeCells(std::ptrdiff_t upper, std::ptrdiff_t lower, CellRow& row,
                                        CellValues& values) {
  if (mDemosaic.mApart)
    TakeApart(upper, lower, row, values);
  else
    MakeMeans(upper, lower, row, values);
}

SourceLines SCF1Interpolation::Work::Pair(std::ptrdiff_t upper, std::ptrdiff_t lower) const {
  return {mLines.lines.At(upper), (lower - upper) * mLines.lines.step};
}

/// Lines are mirrored about the edge columns. Cells are made up to that after the last column and from that
/// before the first one: a whole vector more, as stores then stay aligned.
void SCF1Interpolation::Work::MakeMeans(std::ptrdiff_t upper, std::ptrdiff_t lower, CellRow& row,
                                        CellValues& values) const {
  mDemosaic.mSamples.Read(Pair(upper, lower), 2, mRead,
                          row.line[0].First() - sizeof(std::uint16_t) * (mColumns.first - mRead.first),
                          sizeof row.line[0]);
  for (SCF1CellRow& line : row.line) {
    if (AtFirstColumn()) line.Copy<std::uint16_t>(-1, 1);
    if (AtLastColumn()) line.Copy<std::uint16_t>(ColumnsToEdge(), ColumnsToEdge() - 2);
  }
  constexpr std::size_t kBefore = simd::kScf1Vector;
  const simd::Scf1Cells args{{row.line[0].First() - kBefore, row.line[1].First() - kBefore},
                             values.colour.First() - kBefore,
                             values.white.First() - kBefore,
                             kBefore / sizeof(std::uint32_t) + mColumns.Count() / 2 + 2};
  simd::CurrentLevel().scf1->cells(args);
  Complete<std::uint32_t>(values);
}

/// As MakeMeans. What mirroring takes from the lines is white: in the lower one before the first column,
/// after the last one in that where the column is white.
void SCF1Interpolation::Work::TakeApart(std::ptrdiff_t upper, std::ptrdiff_t lower, CellRow& row,
                                        CellValues& values) const {
  const SourceLines pair = Pair(upper, lower);
  const bool direct = mDemosaic.mTakeApart != nullptr && FitsKernel(mRead.Count());
  for (MosaicColumns part{mRead.first, mRead.first}; part.end < mRead.end;) {
    part = direct ? mRead : SCF1Part(part.end, mRead.end, kSCF1SampleColumns);
    TakePartApart(pair, part, direct, row, values);
  }
  const std::ptrdiff_t end = ColumnsToEdge() / 2;
  if (AtFirstColumn()) row.line[1].Copy<std::uint16_t>(-1, 0);
  if (AtLastColumn()) row.line[ColumnsToEdge() % 2].Copy<std::uint16_t>(end, end - 1);
  Complete<std::uint16_t>(values);
}

void SCF1Interpolation::Work::TakePartApart(const SourceLines& pair, const MosaicColumns& part, bool direct,
                                            CellRow& row, CellValues& values) const {
  const SCF1Samples& samples = mDemosaic.mSamples;
  SCF1SampleRow rows[2];
  const std::ptrdiff_t at = std::ptrdiff_t{part.first} - std::ptrdiff_t{mColumns.first};  // a word for two
  simd::Scf1Apart args{{rows[0].First(), rows[1].First()},
                       {row.line[0].First() + at, row.line[1].First() + at},
                       {values.colour.First() + at, values.white.First() + at},
                       std::max<std::size_t>((part.Count() + 1) / 2 * 2, simd::kScf1Vector),
                       0,
                       0};
  if (direct) {
    for (std::ptrdiff_t i = 0; i < 2; ++i) args.line[i] = samples.At(pair.At(i), part.first);
    args.shift = samples.Shift();
    args.prefetch = samples.Prefetch();
  } else {
    samples.Read(pair, 2, part, rows[0].First(), sizeof rows[0]);
  }
  (direct ? mDemosaic.mTakeApart : mDemosaic.mTakeRowsApart)(args);
}

/// A cell that the right edge cuts becomes a copy of the cell two to its left; then the cells are mirrored.
template <class Element>
void SCF1Interpolation::Work::Complete(CellValues& values) const {
  for (SCF1CellRow* cells : {&values.colour, &values.white}) {
    if (AtLastColumn()) {
      const std::ptrdiff_t end = (ColumnsToEdge() + 1) / 2;
      if (ColumnsToEdge() % 2 != 0) cells->Copy<Element>(end - 1, end - 3);
      cells->Copy<Element>(end, end - 2);
    }
    if (AtFirstColumn()) cells->Copy<Element>(-1, 1);
  }
}

/// Both lines of a row of cells.
void SCF1Interpolation::Work::Interpolate(std::ptrdiff_t row) {
  CellRow &above = At(row - 1), &own = At(row), &below = At(row + 1);
  const bool isLower = row % 2 != 0;
  simd::Scf1CellRow args{
      {above.line[1].First(), own.line[0].First(), own.line[1].First(), below.line[0].First()},
      {above.values.colour.First(), own.values.colour.First(), below.values.colour.First()},
      {above.values.white.First(), own.values.white.First(), below.values.white.First()},
      {},
      (std::size_t{mColumns.Count()} + 1) / 2,
      mTile.greenFirst != isLower,
      mDemosaic.mPixels.GreenOnly()};
  for (std::size_t i = 0; i < 2; ++i) mPlanes[i].List(args.plane[i], mTile.redAbove != isLower);
  mDemosaic.mCellRow(args);
}

/// One or two lines of a row of cells, `line` being the first of them.
void SCF1Interpolation::Work::Write(std::ptrdiff_t line, std::uint32_t count) {
  const PixelConverterContext& context = mDemosaic.mContext;
  const std::ptrdiff_t down = (line - std::ptrdiff_t{context.mLine}) * mLines.destinationStep;
  mDemosaic.mPixels.Write(mPlanes[line % 2], sizeof(SCF1Planes), mColumns, count,
                          OffsetBy(context.mDestination, down), mLines.destinationStep);
}

}  // namespace ZrConvertersLib
