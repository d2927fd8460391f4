#include "Scf1.h"

#include <algorithm>
#include <array>

#include "Demosaic.h"

namespace Model {
namespace {

/// Cells of 2x2 sites are [W c; c W], and the colours c of four cells are a mosaic of their own.
unsigned CellPattern(unsigned flags) {
  if (flags & kWgwb) return kGbrg;
  if (flags & kWrwg) return kRggb;
  if (flags & kWbwg) return kBggr;
  return kGrbg;
}

/// Sums or means over the two colour sites and over the two white sites of a cell.
struct Cell {
  std::uint32_t colour, white;
};

/// One 32-bit floating-point division and one product, each rounded to nearest; then cut and limited.
std::uint32_t Scaled(const Cell& mean, std::uint32_t white) {
  const float q = static_cast<float>(mean.colour) / static_cast<float>(std::max(mean.white, 1u));
  const float product = q * static_cast<float>(white);
  return product >= 65535.0f ? 65535 : static_cast<std::uint32_t>(product);
}

/// Coordinates are counted from the first converted line and from the first column; negative lines are real
/// ones above.
class Tiles {
 public:
  explicit Tiles(const SourceLine& line)
      : mLine(line), mColours(FirstTile(CellPattern(line.flags))), mWidth(line.width), mHeight(line.height) {}

  /// One colour for the sixteen pixels of a tile; beyond the last whole tile that tile's.
  Value Fast(std::ptrdiff_t x) const {
    const std::ptrdiff_t left = std::min(x / 4, mWidth / 4 - 1) * 2;
    const std::ptrdiff_t top = std::min(mLine.line / 4, mLine.height / 4 - 1) * std::ptrdiff_t{2};
    std::array<std::uint32_t, 3> sums{};
    for (std::ptrdiff_t cell = 0; cell < 4; ++cell)
      sums[ColourOf(left + cell % 2, top + cell / 2)] += Sums(left + cell % 2, top + cell / 2).colour;
    return {sums[0] >> 1, sums[1] >> 2, sums[2] >> 1};
  }

  /// White has the detail, the cells have the colour.
  Value Interpolated(std::ptrdiff_t x) const {
    const std::uint32_t white = White(x);
    const auto channel = [&](unsigned colour) { return Scaled(Mean(colour, x / 2, mLine.line / 2), white); };
    return {channel(0), channel(1), channel(2)};
  }

 private:
  /// A conversion may read all of a line that it needs a sample of.
  std::uint32_t At(std::ptrdiff_t x, std::ptrdiff_t y) const {
    SourceLine line = mLine;
    line.start += (y - std::ptrdiff_t{mLine.line}) * mLine.stride;
    line.memory->Read(line.start);
    line.memory->Read(line.start + LineBytes(*line.source, line.width) - 1);
    return NormalisedSample(line, static_cast<std::uint32_t>(x));
  }

  unsigned ColourOf(std::ptrdiff_t column, std::ptrdiff_t row) const {
    return static_cast<unsigned>(mColours[static_cast<std::size_t>((row & 1) * 2 + (column & 1))]);
  }

  Cell Sums(std::ptrdiff_t column, std::ptrdiff_t row) const {
    const std::ptrdiff_t x = 2 * column, y = 2 * row;
    return {At(x + 1, y) + At(x, y + 1), At(x, y) + At(x + 1, y + 1)};
  }

  /// Lines, or rows of cells, outside the image are mirrored about its edges unless they are real.
  std::ptrdiff_t InImage(std::ptrdiff_t row, std::ptrdiff_t rows) const {
    const bool real = row < 0 ? LinesAboveAreReal(mLine.flags) : LinesBelowAreReal(mLine.flags);
    return real ? row : Mirrored(row, rows);
  }

  /// The means of a cell. One that the right or bottom edge cuts is a copy of the cell two before it.
  Cell CellAt(std::ptrdiff_t column, std::ptrdiff_t row) const {
    column = Mirrored(column, (mWidth + 1) / 2);
    row = InImage(row, (mHeight + 1) / 2);
    if (2 * column + 1 == mWidth) column -= 2;
    if (2 * row + 1 == mHeight) row -= 2;
    const Cell sums = Sums(column, row);
    return {sums.colour >> 1, sums.white >> 1};
  }

  /// The cell itself if it has that colour, else the mean of its two or four neighbours that have.
  Cell Mean(unsigned colour, std::ptrdiff_t column, std::ptrdiff_t row) const {
    if (ColourOf(column, row) == colour) return CellAt(column, row);
    Cell sums{};
    std::uint32_t count = 0;
    for (std::ptrdiff_t i = 0; i < 9; ++i) {
      const std::ptrdiff_t besideColumn = column + i % 3 - 1, besideRow = row + i / 3 - 1;
      if (ColourOf(besideColumn, besideRow) != colour) continue;
      const Cell beside = CellAt(besideColumn, besideRow);
      sums = {sums.colour + beside.colour, sums.white + beside.white};
      ++count;
    }
    return {sums.colour / count, sums.white / count};
  }

  /// Its own sample at a white site, else the mean of the four beside, above and below.
  std::uint32_t White(std::ptrdiff_t x) const {
    const std::ptrdiff_t y = mLine.line;
    if ((x + y) % 2 == 0) return At(x, y);
    const std::uint32_t beside = At(Mirrored(x - 1, mWidth), y) + At(Mirrored(x + 1, mWidth), y);
    return (beside + At(x, InImage(y - 1, mHeight)) + At(x, InImage(y + 1, mHeight))) >> 2;
  }

  const SourceLine& mLine;
  std::array<Site, 4> mColours;
  std::ptrdiff_t mWidth, mHeight;
};

}  // namespace

Value Scf1Pixel(const SourceLine& line, std::uint32_t x) {
  const Tiles tiles(line);
  return line.flags & kInterpolate ? tiles.Interpolated(x) : tiles.Fast(x);
}

}  // namespace Model
