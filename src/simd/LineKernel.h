#pragma once

#include <cstddef>
#include <cstdint>

#include "core/Destinations.h"
#include "core/YCbCrMatrix.h"
#include "simd/SourceReaders.h"
#include "simd/StraightTable.h"

/// The header that baseline code and kernel files share. It has plain data and nothing of external linkage:
/// of an inline function the linker might keep the copy with wide instructions, also for baseline code.

namespace ZrConvertersLib::simd {

/// How pixels are written: a plain writer for each destination, in the order of their list, then a filtered
/// one for each destination that the filter applies to. Identity filters use the plain writers.
enum class PixelWriter : std::uint8_t {
#define ZR_NAME(name, ...) name,
#define ZR_FILTERED_NAME(name) Filtered##name,
  ZR_DESTINATIONS(ZR_NAME) ZR_FILTERED_DESTINATIONS(ZR_FILTERED_NAME)
#undef ZR_NAME
#undef ZR_FILTERED_NAME
      Count
};

inline constexpr std::size_t kPixelWriters = static_cast<std::size_t>(PixelWriter::Count);

/// Distances from the bytes being read to those prefetched into the first cache and into the second one. 0
/// names bytes that are on their way: a branch instead would cost kernels registers that they do not have.
struct ReadAhead {
  std::ptrdiff_t toFirst, toSecond;
};

/// The lines of one kernel call, or the pairs of lines of mosaics.
struct LineBlock {
  const std::uint8_t* source[8];  ///< first sample of each source line the reader needs
  std::uint8_t* destination[2];   ///< first byte of each destination line (second for mosaics only)
  std::size_t pixels;             ///< of each line; for kernels whole groups, and at least the level's block
  std::size_t lines = 1;          ///< lines, or pairs of them
  std::ptrdiff_t sourceStep = 0;  ///< bytes from a source line to the same one of the next line or pair
  std::ptrdiff_t destinationStep = 0;

  /// One of its lines, or pairs of them.
  LineBlock Line(std::size_t line) const;
};

/// How a kernel converts lines: what stays the same for a whole frame.
struct KernelArgs {
  std::ptrdiff_t planeDistance;  ///< bytes from a plane to the next (planar writers)
  ReadAhead ahead;
  std::uint32_t shift;        ///< of words: left to the 16-bit scale; of mosaics and YCbCr: right to 8 bits
  std::uint8_t flip;          ///< Mono8: XORed to each sample (0x80 turns signed into offset binary)
  bool redAtEvenColumn;       ///< mosaics and two-colour lines: red stands in even columns (of its line)
  bool greenFirst;            ///< two-colour lines: green is the first of a pixel's two samples
  bool redInLine;             ///< interpolated mosaics: red stands in the line, otherwise blue
  const YCbCrMatrix* matrix;  ///< YCbCr
  const std::uint8_t* tables[3];  ///< filtered writers: 256 entries each for red, green, blue
  const StraightTable* straight;  ///< the same three as straight tables, or null where one is not straight
};

using KernelFunction = void (*)(const LineBlock&, const KernelArgs&);

/// Loads one pointer in a load of its own, as it was stored. A single load of several pointers that were
/// stored one by one would stall until the processor has written its store buffer, non-temporal stores
/// included.
template <class Byte>
[[gnu::always_inline]] static inline Byte* LoadedSingly(Byte* pointer) {
  asm("" : "+r"(pointer));
  return pointer;
}

/// One reader with every writer.
struct KernelRow {
  SourceReader reader;
  KernelFunction with[kPixelWriters];
};

/// The kernels of one family at one level: rows of consecutive readers.
struct FamilyKernels {
  const KernelRow* rows;
  std::size_t count;
};

/// Copies whole cache lines past the caches, with non-temporal stores; the destination begins with one.
using StreamFunction = void (*)(std::uint8_t* destination, const std::uint8_t* source, std::size_t size);

/// Copies pixels in reverse order.
using MirrorFunction = void (*)(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                                std::size_t pixelBytes);

}  // namespace ZrConvertersLib::simd
