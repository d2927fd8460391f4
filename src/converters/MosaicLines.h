#pragma once

#include <ZrConvertersLib/PixelConverterContext.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "converters/LinePlan.h"
#include "core/LineDriver.h"

/// @file
/// What both demosaic methods share: where the lines of a Bayer mosaic are, which colours stand in them, and
/// their samples as bytes.

namespace ZrConvertersLib {

/// The kernels that a Bayer converter uses.
struct MosaicRecipe {
  simd::PixelWriter writer;
  std::optional<SampleRecipe> samples;  ///< unless they are bytes
  std::optional<std::uint32_t>
      shift;  ///< samples in words, which the fast method reads itself: right shift to 8 bits
};

/// Where red stands in a tile of 2x2 sites; blue is opposite, green on the other two.
struct MosaicTile {
  bool redBelow, redRight;
};

/// The tile at the first line of the context's pair, column 0.
MosaicTile TileOf(const PixelConverterContext& context);

/// The number of the context's line, counted from the first one of the image. The line before that is -1.
std::ptrdiff_t LineNumber(const PixelConverterContext& context);

/// The lines of the image as the driver's walk finds them.
SourceLines ImageLines(const PixelConverterContext& context);

/// The line to read for a neighbour in `line`: outside the image it is mirrored about the edge line, unless
/// the caller has real lines there. A pair always has two lines, also in an image of one.
std::ptrdiff_t NeighbourLine(const PixelConverterContext& context, std::ptrdiff_t line);

/// The two destination lines of the context's pair, `columnBytes` from their start.
std::array<std::uint8_t*, 2> PairDestinations(const PixelConverterContext& context, std::size_t columnBytes);

/// Pairs of lines that follow one another, of which the first is a context's.
struct MosaicPairs {
  SourceLines lines;  ///< from line 0 of the image
  std::uint32_t width;
  std::uint32_t count;
  std::ptrdiff_t destinationStep;

  std::uint32_t EvenWidth() const { return width - width % 2; }
};

struct MosaicColumns {
  std::uint32_t first, end;

  std::uint32_t Count() const { return end - first; }
};

/// Columns whose samples are reduced to bytes at a time: even, and a whole number of groups of any packing.
inline constexpr std::uint32_t kMosaicColumns = 4096;

/// Bytes before and after such columns: neighbours and rest of groups, and what whole vectors read.
inline constexpr std::size_t kBesideColumns = 128;

/// Bytes from one row of so many columns to the next.
constexpr std::size_t RowPitch(std::uint32_t columns) {
  return (columns + 2 * kBesideColumns + 63) / 64 * 64;
}

/// Memory for rows of bytes: six of the longest, which stay in the first-level cache together with the pixels
/// made from them, or more of shorter ones, so that few kernel calls convert many lines.
inline constexpr std::size_t kMosaicRows = 6 * RowPitch(kMosaicColumns);

/// How many rows of a pitch are kept at a time.
constexpr std::size_t RowsKept(std::size_t pitch) {
  constexpr std::size_t kOfShortRows = std::size_t{16} << 10;
  static_assert(kOfShortRows <= kMosaicRows);
  return kOfShortRows / pitch > 6 ? kOfShortRows / pitch : 6;
}

/// Reads samples of a mosaic as bytes.
class MosaicSamples {
 public:
  /// By `recipe`, which writes Mono8; without one samples are bytes and are copied.
  MosaicSamples(const PixelConverterContext& context, const std::optional<LineRecipe>& recipe) {
    if (recipe) mPlan.emplace(context, *recipe);
  }

  /// Reduces `count` lines to rows of bytes. The first column must begin a group of samples; the last group
  /// is read whole.
  void Read(const SourceLines& lines, std::size_t count, const MosaicColumns& columns, std::uint8_t* bytes,
            std::size_t pitch) const;

 private:
  std::optional<LinePlan> mPlan;
};

/// What ToBytes asks for the samples of a mosaic, if they are not bytes already.
inline std::optional<LineRecipe> SamplesToBytes(const MosaicRecipe& recipe) {
  if (!recipe.samples) return std::nullopt;
  return ToBytes(*recipe.samples);
}

}  // namespace ZrConvertersLib
