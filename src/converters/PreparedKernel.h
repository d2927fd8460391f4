#pragma once

#include <ZrConvertersLib/PixelConverterContext.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "converters/LineRecipe.h"
#include "core/PointerOffset.h"

namespace ZrConvertersLib {

/// The most pixels that a level's block has.
inline constexpr std::size_t kLargestBlock = 64;

using simd::LineBlock;

/// Two source lines that are read once those being converted are done, from where on and how many bytes.
struct UpcomingLines {
  const std::uint8_t* first[2];
  std::size_t bytes;
};

/// The kernel for a recipe, this machine and the caller's filter, with all of its arguments except the lines.
struct PreparedKernel {
  simd::KernelFunction function;
  simd::StreamFunction stream;  ///< null when the frame is written through the caches
  std::size_t block;            ///< fewest pixels of a call
  simd::ReaderFacts reader;
  std::uint8_t pixelBytes, planes;  ///< of the destination
  simd::KernelArgs args;
  /// Prefetched while the rows of streamed lines are converted, which takes little from memory.
  UpcomingLines upcoming{};
  std::array<simd::StraightTable, 3> straight;  ///< set where args refers to it; the args of copies do, too

  PreparedKernel(const PixelConverterContext& context, const LineRecipe& recipe);

  /// A kernel for pixels of the destination at the given place of the list of destinations.
  PreparedKernel(simd::KernelFunction kernel, const simd::ReaderFacts& facts, std::size_t destination);

  /// The tables of a filter, for a filtered writer. `frameBytes` of source and destination are to be
  /// converted.
  void SetTables(const RGBFilter& filter, std::size_t frameBytes);

  /// Converts lines of at least a block.
  void Run(const LineBlock& lines) const { function(lines, args); }

  /// Bytes of a whole number of groups.
  std::size_t SourceBytes(std::size_t pixels) const {
    return (pixels >> std::countr_zero(reader.group.pixels)) * reader.group.bytes;
  }
  /// Pixels beyond the last whole group.
  std::size_t PartOfGroup(std::size_t pixels) const { return pixels & (reader.group.pixels - 1U); }

  std::size_t DestinationBytes(std::size_t pixels) const { return pixels * pixelBytes; }

  /// Whether planes of so many pixels lie beside one another. Where they overlap, lines are to be stored in
  /// turn.
  bool PlanesApart(std::size_t pixels) const;

  /// Whether a short line's pixels reach into the next plane, as the last group of an image of one line may.
  /// In a line longer than a block such pixels are written last anyway.
  bool BlockPlanesOverlap(std::size_t pixels) const {
    return pixels <= kLargestBlock && !PlanesApart(pixels);
  }
};

/// The fence that orders non-temporal stores before the later stores of this thread.
void OrderStreamedStores();

/// Converts one line, or pair of lines, shorter than a block, or with planes that overlap. Reads just the
/// bytes that hold the pixels, also of a last group that is not whole.
void RunShortLine(const PreparedKernel& kernel, const LineBlock& line);

/// Converts one line, or pair of lines, past the caches.
void RunStreamedLine(const PreparedKernel& kernel, const LineBlock& line);

}  // namespace ZrConvertersLib
