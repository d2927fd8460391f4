#pragma once

#include <cstddef>
#include <cstdint>

/// What the kernels of SCF1 mosaics take. Like LineKernel.h seen by baseline code and kernel files alike, so
/// plain data only.
///
/// They work on rows of 16-bit words on the 16-bit scale, or of bytes where eight bits are enough. A cell is
/// two sites of two lines: white and a colour above, the colour and white below. Rows are read and written by
/// one or two whole vectors at a time, up to 128 bytes past what is asked for.

namespace ZrConvertersLib::simd {

/// Bytes of the widest vector.
inline constexpr std::size_t kScf1Vector = 64;

/// Bytes that a kernel may read or write past the end of a row, and read before its beginning.
inline constexpr std::size_t kScf1Beyond = 2 * kScf1Vector;

/// How the samples of a line lie in memory.
enum class Scf1Samples : std::uint8_t { Words, Bytes, Packed10, Packed12 };
inline constexpr std::size_t kScf1Samples = 4;

/// One colour for each tile of 2x2 cells. Lines and planes are read and written without going beyond the
/// pixels, of which there are kScf1Vector or more.
struct Scf1Tiles {
  const std::uint8_t* line[4];
  std::uint8_t*
      plane[3];        ///< of the colour that stands beside green in the upper cells, green, the third colour
  std::size_t pixels;  ///< four for each tile
  bool greenFirst;     ///< the upper left cell is a green one
  bool greenOnly;      ///< only the plane of green is written
  std::uint32_t shift;  ///< of words: left to the 16-bit scale
  std::ptrdiff_t
      prefetch;  ///< distance from the bytes being read to those asked of memory; 0 in small frames
};

/// The mean of the two coloured sites of each cell, and that of its two white ones, as 32-bit elements.
struct Scf1Cells {
  const std::uint8_t* line[2];
  std::uint8_t* colour;
  std::uint8_t* white;
  std::size_t cells;
};

/// Two lines taken apart, for samples of up to 14 bits: words on the 16-bit scale for each cell.
struct Scf1Apart {
  const std::uint8_t* line[2];
  std::uint8_t* white[2];  ///< sites of the upper and of the lower line
  std::uint8_t*
      missing[2];  ///< 65535 less the mean of the two coloured sites, and less that of the white ones
  std::size_t
      columns;  ///< kScf1Vector or more, a multiple of 2, of packed samples of 4; nothing else is used
  std::uint32_t shift;  ///< as in Scf1Tiles
  std::ptrdiff_t prefetch;
};

/// The pixels of a row of cells. Each row has elements before its first and after its last one. Of lines
/// taken apart, `line` has the white sites: `colour` and `white` are what the means miss to 65535.
struct Scf1CellRow {
  const std::uint8_t* line[4];    ///< the two lines of the cells between the one above and the one below
  const std::uint8_t* colour[3];  ///< of the cells above, of these and of those below
  const std::uint8_t* white[3];
  std::uint8_t* plane[2][3];  ///< of the upper and of the lower line, in the order of Scf1Tiles
  std::size_t cells;
  bool greenFirst;  ///< the first cell is a green one
  bool greenOnly;   ///< only the planes of green are written
};

using Scf1TilesFunction = void (*)(const Scf1Tiles&);
using Scf1ApartFunction = void (*)(const Scf1Apart&);
using Scf1CellRowFunction = void (*)(const Scf1CellRow&);

struct Scf1Kernels {
  Scf1TilesFunction tiles[kScf1Samples]
                         [2];  ///< to words and to bytes; null where samples have to be unpacked
  void (*cells)(const Scf1Cells&);
  Scf1CellRowFunction cellRow;
  Scf1ApartFunction apart[kScf1Samples];  ///< null where samples have to be unpacked
  Scf1CellRowFunction apartToBytes;
  Scf1CellRowFunction apartToWords;  ///< of samples of up to 12 bits
};

}  // namespace ZrConvertersLib::simd
