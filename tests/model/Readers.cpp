#include "Readers.h"

#include <array>

#include "YCbCrMatrix.h"

namespace Model {
namespace {

std::uint32_t BytesPerSample(Packing packing) {
  switch (packing) {
    case Packing::Word16:
      return 2;
    case Packing::Word32:
      return 4;
    default:
      return 1;
  }
}

/// Samples in the smallest whole number of bytes.
std::uint32_t SamplesPerGroup(const Source& source) {
  switch (source.packing) {
    case Packing::LsbFirst:
      return source.bits == 12 ? 2 : 4;
    case Packing::PairPacked:
      return 2;
    case Packing::SubByte:
      return 8 / source.bits;
    default:
      return 1;
  }
}

std::uint32_t SamplesPerPixel(const Source& source) {
  if (source.meaning == Meaning::Colour) return source.colour.samples;
  if (source.meaning == Meaning::YCbCr) return source.chroma.samples / source.chroma.pixels;
  return 1;
}

std::ptrdiff_t Offset(std::uint32_t count, std::uint32_t bytes) {
  return static_cast<std::ptrdiff_t>(count) * static_cast<std::ptrdiff_t>(bytes);
}

/// Samples follow one another bit by bit, so a group is one little-endian number.
std::uint32_t LsbFirstSample(unsigned bits, Memory& memory, std::ptrdiff_t line, std::uint32_t k) {
  const std::uint32_t samples = bits == 12 ? 2 : 4;
  const std::uint32_t bytes = samples * bits / 8;
  std::uint64_t group = 0;
  for (std::uint32_t i = 0; i < bytes; ++i)
    group |= std::uint64_t{memory.Read(line + Offset(k / samples, bytes) + i)} << (8 * i);
  return static_cast<std::uint32_t>(group >> (k % samples * bits)) & ((1u << bits) - 1);
}

/// Already on the 16-bit scale: the upper byte, with the low bits OR-ed in at nibbleShift. A shift of 6
/// reaches into the upper byte; that is what this packing gives.
std::uint32_t PairPackedValue(unsigned nibbleShift, Memory& memory, std::ptrdiff_t line, std::uint32_t k) {
  const std::ptrdiff_t group = line + Offset(k / 2, 3);
  const std::uint32_t first = memory.Read(group), low = memory.Read(group + 1),
                      second = memory.Read(group + 2);
  return k % 2 == 0 ? first << 8 | (low >> 4) << nibbleShift : second << 8 | (low & 0x0F) << nibbleShift;
}

/// Evenly spaced greys, except that the brightest is full white.
std::uint32_t SubByteValue(unsigned bits, Memory& memory, std::ptrdiff_t line, std::uint32_t k) {
  const std::uint32_t perByte = 8 / bits, brightest = (1u << bits) - 1;
  const std::uint32_t byte = memory.Read(line + k / perByte);
  const std::uint32_t sample = byte >> (k % perByte * bits) & brightest;
  return (sample == brightest ? 255 : sample * (256u >> bits)) << 8;
}

/// The sample as it is stored in a container of its own.
std::uint32_t StoredSample(const Source& source, Memory& memory, std::ptrdiff_t line, std::uint32_t k) {
  if (source.packing == Packing::Byte) return memory.Read(line + k);
  if (source.packing == Packing::Word16) return memory.Read16(line + Offset(k, 2));
  return LsbFirstSample(source.bits, memory, line, k);
}

std::uint32_t NormalisedSample(const Source& source, Memory& memory, std::ptrdiff_t line, std::uint32_t k) {
  switch (source.packing) {
    case Packing::SignedByte:
      return ((memory.Read(line + k) + 128u) & 0xFF) << 8;
    case Packing::Word32:
      return memory.Read32(line + Offset(k, 4)) >> 16;
    case Packing::PairPacked:
      return PairPackedValue(source.nibbleShift, memory, line, k);
    case Packing::SubByte:
      return SubByteValue(source.bits, memory, line, k);
    default:
      return StoredSample(source, memory, line, k) << (16 - source.bits);
  }
}

/// All samples of the pixel are read, alpha too, so that the whole pixel counts as read; alpha is not used.
Value ReadColour(const Source& source, Memory& memory, std::ptrdiff_t line, std::uint32_t x) {
  std::array<std::uint32_t, 4> samples{};
  const ColourOrder& order = source.colour;
  for (std::uint32_t i = 0; i < order.samples; ++i)
    samples[i] = NormalisedSample(source, memory, line, x * order.samples + i);
  return {samples[order.red], samples[order.green], samples[order.blue]};
}

Value ReadYCbCr(const Source& source, Memory& memory, std::ptrdiff_t line, std::uint32_t x, unsigned flags) {
  const ChromaGroup& group = source.chroma;
  std::array<std::uint32_t, 6> samples{};
  for (std::uint32_t i = 0; i < group.samples; ++i)
    samples[i] = EightBitSample(source, memory, line, x / group.pixels * group.samples + i);
  const std::uint32_t y = samples[group.luma[x % group.pixels]];
  return YCbCrToRgb({y, samples[group.cb], samples[group.cr]}, flags);
}

std::uint32_t RoundUp(std::uint32_t count, std::uint32_t step) {
  return (count + step - 1) / step * step;
}

/// Whole groups of four: a last pixel beyond a multiple of four is dropped, two or three become a whole
/// group.
std::uint32_t OwedPixelsOf411(std::uint32_t width) {
  const std::uint32_t limit = width % 4 == 0 ? width : width - 1;
  return RoundUp(limit, 4);
}

}  // namespace

std::uint32_t LineBytes(const Source& source, std::uint32_t width) {
  switch (source.packing) {
    case Packing::LsbFirst:
      return width * source.bits / 8;
    case Packing::PairPacked:
      return width * 3 / 2;
    case Packing::SubByte:
      return RoundUp(width * source.bits, 8) / 8;
    default:
      break;
  }
  if (source.chroma.pixels == 4) return width * 6 / 4;
  return width * SamplesPerPixel(source) * BytesPerSample(source.packing);
}

std::uint32_t OwedPixels(const Source& source, std::uint32_t width) {
  if (source.chroma.pixels == 2) return width / 2 * 2;
  if (source.chroma.pixels == 4) return OwedPixelsOf411(width);
  return RoundUp(width, SamplesPerGroup(source));
}

std::uint32_t EightBitSample(const Source& source, Memory& memory, std::ptrdiff_t line, std::uint32_t k) {
  return StoredSample(source, memory, line, k) >> (source.bits - 8) & 0xFF;
}

Value ReadPixel(const Source& source, Memory& memory, std::ptrdiff_t line, std::uint32_t x, unsigned flags) {
  if (source.meaning == Meaning::Colour) return ReadColour(source, memory, line, x);
  if (source.meaning == Meaning::YCbCr) return ReadYCbCr(source, memory, line, x, flags);
  const std::uint32_t grey = NormalisedSample(source, memory, line, x);
  return {grey, grey, grey};
}

}  // namespace Model
