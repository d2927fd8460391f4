#pragma once

#include <cstddef>
#include <cstdint>

#include "core/YCbCrMatrix.h"

/// The one header that both the baseline code and the kernel files see. Plain data and nothing of
/// external linkage: an inline function compiled with wide instructions here could be the copy that the
/// linker keeps for everybody.

namespace ZrConvertersLib::simd {

/// How the pixels of a source line are read; one body each, whatever the destination.
enum class SourceReader : std::uint8_t {
  Mono8,
  Mono16,
  Mono32,
  Mono10p,
  Mono12p,
  Mono14p,
  MonoPacked,
  Mono1p,
  Mono2p,
  Mono4p,
  BayerFast8,
  BayerFast16,
  BayerFast10p,
  BayerFast12p,
  BayerFast14p,
  BayerFastPacked,
  BayerBilinear,
  BayerComplement8,  ///< the complemented bytes that BayerBilinear reads for byte channels; only as Mono8
  BayerComplement16,
  BayerComplement10p,
  BayerComplement12p,
  BayerComplement14p,
  BayerComplementPacked,
  RGB8,
  BGR8,
  RGBa8,
  BGRa8,
  RGB16,
  BGR16,
  RGBa16,
  BGRa16,
  YCbCr,
  CbYCr,
  YCbYCr8,
  YCbYCr16,
  YCbYCr10p,
  YCbYCr12p,
  CbYCrY8,
  CbYCrY16,
  CbYCrY10p,
  CbYCrY12p,
  YYCbYYCr,
  CbYYCrYY,
  Count
};

/// How pixels are written. The first sixteen stand in the order of the destination table; the last six are
/// the 8-bit colour writers with the caller's filter tables, the plain ones being for identity filters.
enum class PixelWriter : std::uint8_t {
  Mono8,
  Mono10,
  Mono12,
  Mono14,
  Mono16,
  RGB8,
  BGR8,
  RGBa8,
  BGRa8,
  RGB16,
  BGR16,
  RGB565p,
  Planar8,
  Planar10,
  Planar12,
  Planar16,
  FilteredRGB8,
  FilteredBGR8,
  FilteredRGBa8,
  FilteredBGRa8,
  FilteredRGB565p,
  FilteredPlanar8,
  Count
};

inline constexpr std::size_t kSourceReaders = static_cast<std::size_t>(SourceReader::Count);
inline constexpr std::size_t kPixelWriters = static_cast<std::size_t>(PixelWriter::Count);

/// What one kernel call converts: `width` pixels of each of some lines, or of pairs of lines for mosaics.
struct KernelArgs {
  const std::uint8_t* source[6];  ///< first sample of each source line the reader needs
  std::uint8_t* destination[2];   ///< first byte of each destination line (second for mosaics only)
  std::size_t width;              ///< pixels, a whole number of groups, at least the level's block
  std::size_t lines;              ///< lines, or pairs of them, to convert
  std::ptrdiff_t sourceStep;      ///< bytes from a source line to the same one of the next line or pair
  std::ptrdiff_t destinationStep;
  std::ptrdiff_t planeDistance;  ///< bytes from a plane to the next (planar writers)
  std::ptrdiff_t
      prefetch;          ///< distance from the bytes being read to those asked of memory; 0 in small frames
  std::uint32_t shift;   ///< of words: left to the 16-bit scale; of mosaics and YCbCr: right to 8 bits
  std::uint8_t flip;     ///< Mono8: XORed to each sample (0x80 turns signed into offset binary)
  bool redAtEvenColumn;  ///< mosaics: column parity of red in the line that has red
  bool redBelow;         ///< mosaics: the line with red is the lower one of the pair
  const YCbCrMatrix* matrix;      ///< YCbCr
  const std::uint8_t* tables[3];  ///< filtered writers: 256 entries each for red, green, blue
};

using LineFunction = void (*)(const KernelArgs&);

/// A pointer loaded by itself, as it was stored. A load of several that were stored one by one has to wait
/// until all of the processor's store buffer is written, streaming stores included, and then nothing is
/// computed meanwhile. Of internal linkage, and part of whatever calls it.
template <class Byte>
[[gnu::always_inline]] static inline Byte* LoadedSingly(Byte* pointer) {
  asm("" : "+r"(pointer));
  return pointer;
}

/// The kernels of one family at one level: row = reader, counted from `first`; column = writer.
struct FamilyKernels {
  SourceReader first;
  std::uint8_t readers;
  const LineFunction (*rows)[kPixelWriters];
};

/// Copies whole cache lines past the caches, with non-temporal stores; both sides begin with one.
using StreamFunction = void (*)(std::uint8_t* destination, const std::uint8_t* source, std::size_t size);

/// Copies pixels in reverse order.
using MirrorFunction = void (*)(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
                                std::size_t pixelBytes);

}  // namespace ZrConvertersLib::simd
