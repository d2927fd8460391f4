#pragma once

#include <ZrConvertersLib/PixelConverterContext.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "converters/MosaicLines.h"
#include "simd/Scf1Kernel.h"

/// @file
/// SCF1 mosaics: tiles of 4x4 sites. White and coloured sites alternate as on a chessboard; the two coloured
/// sites of each 2x2 cell have the same colour. All arithmetic is on the 16-bit scale. Samples are converted
/// to rows of words, the kernels of simd/Scf1Kernels.cpp turn these into rows of red, green and blue words,
/// and the reader of planar words converts those to any destination: some columns at a time, in the
/// first-level cache. Samples and colours are rows of bytes where these give the same result.

namespace ZrConvertersLib {

/// The kernels that an SCF1 converter uses.
struct SCF1Recipe {
  simd::PixelWriter writer;
  LineRecipe samples;  ///< to words

  /// Whether the destination has channels of bytes.
  bool ToBytes() const;
  /// Whether samples are bytes.
  bool FromBytes() const { return samples.reader == simd::SourceReader::Mono8; }
  /// How the kernels find samples where they lie, and in rows.
  simd::Scf1Samples Kind() const;
  simd::Scf1Samples KindOfRows() const {
    return FromBytes() ? simd::Scf1Samples::Bytes : simd::Scf1Samples::Words;
  }
  /// The recipe of rows of samples: of bytes if samples are bytes, else of words.
  LineRecipe Samples() const;
};

/// Lines that follow one another, of which the first is a context's.
struct SCF1Lines {
  SourceLines lines;  ///< from line 0 of the image
  std::uint32_t width;
  std::uint32_t count;
  std::ptrdiff_t destinationStep;
};

/// Converts lines by the method that the context's flags select. Converts nothing if the image has less than
/// 4 lines or columns.
void ConvertSCF1(const PixelConverterContext& context, const SCF1Recipe& recipe, const SCF1Lines& lines);

/// Where the cells of a tile stand: green ones in two opposite corners, red and blue in the others.
struct SCF1Tile {
  bool greenFirst;  ///< the upper left cell is green
  bool redAbove;    ///< red stands in the upper cells
};

/// For the pattern that the flags select.
SCF1Tile SCF1TileOf(std::uint32_t flags);

/// Columns that are converted at a time: as many as most lines have, since memory is read and written fastest
/// in whole lines.
inline constexpr std::uint32_t kSCF1Columns = 4096;

/// Columns whose samples are read at a time, into the first-level cache.
inline constexpr std::uint32_t kSCF1SampleColumns = 1024;

/// The last part may have a few more columns, so that it is never very narrow.
inline constexpr std::uint32_t kSCF1MoreColumns = 64;

/// The columns from `first` to `end`, or `most` of them.
MosaicColumns SCF1Part(std::uint32_t first, std::uint32_t end, std::uint32_t most);

/// A row of so many bytes and of those of its neighbours.
template <std::size_t bytes>
class SCF1RowOf {
 public:
  std::uint8_t* First() { return mBytes + simd::kScf1Beyond; }

  /// Element `to` becomes a copy of element `from`.
  template <class Element>
  void Copy(std::ptrdiff_t to, std::ptrdiff_t from) {
    constexpr auto kSize = static_cast<std::ptrdiff_t>(sizeof(Element));
    std::memcpy(First() + to * kSize, First() + from * kSize, sizeof(Element));
  }

 private:
  alignas(64) std::uint8_t mBytes[bytes + 2 * simd::kScf1Beyond];
};

/// A word for each column.
using SCF1Row = SCF1RowOf<2 * (kSCF1Columns + kSCF1MoreColumns)>;
using SCF1SampleRow = SCF1RowOf<2 * (kSCF1SampleColumns + kSCF1MoreColumns)>;

/// A word for each cell, or for each column of half as many.
using SCF1CellRow = SCF1RowOf<kSCF1Columns + 2 * kSCF1MoreColumns>;

/// Converts samples to rows.
class SCF1Samples {
 public:
  /// By `recipe`, to rows of words or of bytes.
  SCF1Samples(const PixelConverterContext& context, const LineRecipe& recipe);

  const std::uint8_t* At(const std::uint8_t* line, std::size_t column) const {
    return line + mPlan.SourceBytes(column);
  }
  std::uint32_t Shift() const { return mPlan.Kernel().args.shift; }
  std::ptrdiff_t Prefetch() const { return mPlan.Kernel().args.ahead.toSecond; }

  /// Of `count` lines exactly the bytes of the columns, the first of which begins a group of samples. `row`
  /// is the place of the first column in the first of as many rows, `pitch` bytes apart.
  void Read(const SourceLines& lines, std::size_t count, const MosaicColumns& columns, std::uint8_t* row,
            std::ptrdiff_t pitch) const;

 private:
  LinePlan mPlan;
};

/// Red, green and blue of a line.
struct SCF1Planes {
  SCF1Row row[3];

  /// The places of the first words, red or blue before green and the other after it.
  void List(std::uint8_t* (&places)[3], bool redFirst);
};

/// Writes pixels from rows of colours in words or in bytes.
class SCF1Pixels {
 public:
  SCF1Pixels(const PixelConverterContext& context, const SCF1Recipe& recipe, bool fromBytes);

  /// Whether the destination takes nothing but green.
  bool GreenOnly() const { return mGreenOnly; }

  /// The columns of `count` lines. The rows of each line stand `rowsApart` bytes after those of the line
  /// before; `destination` is where the first line begins.
  void Write(SCF1Planes& planes, std::ptrdiff_t rowsApart, const MosaicColumns& columns, std::uint32_t count,
             std::uint8_t* destination, std::ptrdiff_t destinationStep) const;

  /// The same of lines that are all alike: pixels are made once and copied where that is faster.
  void WriteAlike(SCF1Planes& planes, const MosaicColumns& columns, std::uint32_t count,
                  std::uint8_t* destination, std::ptrdiff_t destinationStep) const;

 private:
  std::ptrdiff_t PlaneDistance() const { return mPlan.Kernel().args.planeDistance; }
  LineBlock Line(SCF1Planes& planes, const MosaicColumns& columns, std::uint8_t* destination) const;
  void WriteCopies(SCF1Planes& planes, const MosaicColumns& columns, std::uint32_t count,
                   std::uint8_t* destination, std::ptrdiff_t destinationStep) const;
  void Copy(std::uint8_t* to, const std::uint8_t* from, std::size_t bytes) const;

  bool mGreenOnly;
  LinePlan mPlan;
  PreparedKernel mToRow;  ///< writes pixels to a row, through the caches
  bool mCopies;           ///< lines that are alike
};

}  // namespace ZrConvertersLib
