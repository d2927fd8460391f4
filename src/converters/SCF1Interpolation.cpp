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

}  // namespace

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
  /// The two lines of a row of cells, and the cells' values.
  struct CellRow {
    SCF1Row line[2], colour, white;
  };

  CellRow& At(std::ptrdiff_t row) { return mRows[static_cast<std::size_t>(row + 3) % 3]; }
  void Make(std::ptrdiff_t row);
  void ReadPair(std::ptrdiff_t upper, std::ptrdiff_t lower, CellRow& to) const;
  void MakeCells(CellRow& row) const;
  void Complete(SCF1Row& cells) const;
  void Interpolate(std::ptrdiff_t row);
  void Write(std::ptrdiff_t line, std::uint32_t count);

  const SCF1Interpolation& mDemosaic;
  const SCF1Lines& mLines;
  MosaicColumns mColumns, mRead;
  SCF1Tile mTile;
  CellRow mRows[3];
  SCF1Planes mPlanes[2];
};

void SCF1Interpolation::Run(const SCF1Lines& lines) const {
  for (MosaicColumns columns{0, 0}; columns.end < lines.width;) {
    columns = SCF1ColumnsFrom(columns.end, lines.width);
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
  CellRow& to = At(row);
  const std::ptrdiff_t values = RowOfValues(mDemosaic.mContext, row);
  ReadPair(2 * values, 2 * values + 1, to);
  MakeCells(to);
  if (values == row) return;
  ReadPair(NeighbourLine(mDemosaic.mContext, 2 * row), NeighbourLine(mDemosaic.mContext, 2 * row + 1), to);
}

/// Two lines with the neighbours of their columns, mirrored about the edge columns.
void SCF1Interpolation::Work::ReadPair(std::ptrdiff_t upper, std::ptrdiff_t lower, CellRow& to) const {
  const SourceLines& image = mLines.lines;
  const std::ptrdiff_t before = std::ptrdiff_t{mColumns.first} - std::ptrdiff_t{mRead.first};
  mDemosaic.mSamples.Read({image.At(upper), (lower - upper) * image.step}, 2, mRead,
                          to.line[0].First() - 2 * before);
  const std::ptrdiff_t end = std::ptrdiff_t{mLines.width} - std::ptrdiff_t{mColumns.first};
  for (SCF1Row& line : to.line) {
    if (mRead.first == mColumns.first) line.Copy<std::uint16_t>(-1, 1);
    if (mRead.end == mLines.width) line.Copy<std::uint16_t>(end, end - 2);
  }
}

/// Up to the cell after the last column, and from that before the first one: a whole vector more, as stores
/// then stay aligned.
void SCF1Interpolation::Work::MakeCells(CellRow& row) const {
  constexpr std::size_t kBefore = simd::kScf1Beyond;
  const simd::Scf1Cells args{{row.line[0].First() - kBefore, row.line[1].First() - kBefore},
                             row.colour.First() - kBefore,
                             row.white.First() - kBefore,
                             kBefore / sizeof(std::uint32_t) + mColumns.Count() / 2 + 2};
  simd::CurrentLevel().scf1->cells(args);
  Complete(row.colour);
  Complete(row.white);
}

/// A cell that the right edge cuts becomes a copy of the cell two to its left; then the cells are mirrored.
void SCF1Interpolation::Work::Complete(SCF1Row& cells) const {
  if (mRead.end == mLines.width) {
    const auto end = static_cast<std::ptrdiff_t>((mLines.width - mColumns.first + 1) / 2);
    if (mLines.width % 2 != 0) cells.Copy<std::uint32_t>(end - 1, end - 3);
    cells.Copy<std::uint32_t>(end, end - 2);
  }
  if (mRead.first == mColumns.first) cells.Copy<std::uint32_t>(-1, 1);
}

/// Both lines of a row of cells.
void SCF1Interpolation::Work::Interpolate(std::ptrdiff_t row) {
  CellRow &above = At(row - 1), &own = At(row), &below = At(row + 1);
  const bool isLower = row % 2 != 0;
  simd::Scf1CellRow args{
      {above.line[1].First(), own.line[0].First(), own.line[1].First(), below.line[0].First()},
      {above.colour.First(), own.colour.First(), below.colour.First()},
      {above.white.First(), own.white.First(), below.white.First()},
      {},
      (std::size_t{mColumns.Count()} + 1) / 2,
      mTile.greenFirst != isLower,
      mDemosaic.mPixels.GreenOnly()};
  for (std::size_t i = 0; i < 2; ++i) mPlanes[i].List(args.plane[i], mTile.redAbove != isLower);
  simd::CurrentLevel().scf1->cellRow(args);
}

/// One or two lines of a row of cells, `line` being the first of them.
void SCF1Interpolation::Work::Write(std::ptrdiff_t line, std::uint32_t count) {
  const PixelConverterContext& context = mDemosaic.mContext;
  const std::ptrdiff_t down = (line - std::ptrdiff_t{context.mLine}) * mLines.destinationStep;
  mDemosaic.mPixels.Write(mPlanes[line % 2], sizeof(SCF1Planes), mColumns, count,
                          OffsetBy(context.mDestination, down), mLines.destinationStep);
}

}  // namespace ZrConvertersLib
