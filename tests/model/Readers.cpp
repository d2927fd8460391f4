#include "Readers.h"

#include <array>

#include "BiColor.h"
#include "Scf1.h"
#include "YCbCrMatrix.h"

namespace Model {
namespace {

std::ptrdiff_t Offset(std::uint32_t count, std::uint32_t bytes) {
  return static_cast<std::ptrdiff_t>(count) * static_cast<std::ptrdiff_t>(bytes);
}

/// Where the samples of a group lie, in bits from the group's first byte up: the upper eight bits of sample k
/// at high + k * highStep, the `lowBits` others at low + k * lowStep.
struct BitLayout {
  std::uint32_t samples = 1, bytes = 1;
  int high = 0, highStep = 0, low = 0, lowStep = 0;
  unsigned lowBits = 0, lowShift = 0;  ///< lowShift is where the low bits go on the 16-bit scale
};

/// Samples that fill whole bytes.
constexpr std::uint32_t SamplesInWholeBytes(unsigned bits) {
  return bits == 12 ? 2 : 4;
}

BitLayout LsbFirst(unsigned bits) {
  const std::uint32_t samples = SamplesInWholeBytes(bits);
  const int step = static_cast<int>(bits);
  return {samples, samples * bits / 8, step - 8, step, 0, step, bits - 8, 16 - bits};
}

BitLayout Csi2(unsigned bits) {
  const std::uint32_t samples = SamplesInWholeBytes(bits);
  const int lowStep = static_cast<int>(bits) - 8;
  return {samples, samples * bits / 8, 0, 8, static_cast<int>(8 * samples), lowStep, bits - 8, 16 - bits};
}

BitLayout GigEVision(unsigned bits) {
  return {2, 3, 0, 16, 8, 4, bits - 8, 16 - bits};
}

/// The first sample's low bits are the upper nibble. A shift of 6 reaches into the upper byte; that is what
/// this packing gives.
BitLayout PairPacked(unsigned nibbleShift) {
  return {2, 3, 0, 16, 12, -4, 4, nibbleShift};
}

Packing PackingOf(const Source& source, unsigned flags) {
  if (source.csi2 && flags & kCsi2Packing) return Packing::Csi2;
  const bool gigEVision = source.packing == Packing::PairPacked && flags & kGigEVisionPacking;
  return gigEVision ? Packing::GigEVision : source.packing;
}

/// Not for samples that have bytes of their own; they count as groups of one.
BitLayout LayoutOf(const Source& source, unsigned flags) {
  switch (PackingOf(source, flags)) {
    case Packing::LsbFirst:
      return LsbFirst(source.bits);
    case Packing::PairPacked:
      return PairPacked(source.nibbleShift);
    case Packing::GigEVision:
      return GigEVision(source.bits);
    case Packing::Csi2:
      return Csi2(source.bits);
    case Packing::Word10p32:
      return {3, 4, 2, 10, 0, 10, 2, 6};
    case Packing::V1Packed:
      return {3, 4, 8, 8, 0, 2, 2, 6};
    default:
      return {};
  }
}

/// Up to eight bits, which lie in one byte or in two. Bytes that hold none of them are not read.
std::uint32_t ReadBits(Memory& memory, std::ptrdiff_t group, int at, unsigned count) {
  const unsigned shift = static_cast<unsigned>(at) % 8;
  std::uint32_t bits = memory.Read(group + at / 8);
  if (shift + count > 8) bits |= static_cast<std::uint32_t>(memory.Read(group + at / 8 + 1)) << 8;
  return bits >> shift & ((1u << count) - 1);
}

std::uint32_t PackedValue(const BitLayout& layout, const SourceLine& line, std::uint32_t k) {
  const std::ptrdiff_t group = line.start + Offset(k / layout.samples, layout.bytes);
  const int i = static_cast<int>(k % layout.samples);
  const std::uint32_t high = ReadBits(*line.memory, group, layout.high + i * layout.highStep, 8);
  const std::uint32_t low = ReadBits(*line.memory, group, layout.low + i * layout.lowStep, layout.lowBits);
  return high << 8 | low << layout.lowShift;
}

/// Repeats the upper bits below, so that the brightest sample is white.
std::uint32_t Word565Value(const SourceLine& line, std::uint32_t k) {
  constexpr std::array<unsigned, 3> kShifts = {0, 5, 11}, kBits = {5, 6, 5};
  const unsigned bits = kBits[k % 3];
  const std::uint32_t word = line.memory->Read16(line.start + Offset(k / 3, 2));
  const std::uint32_t sample = word >> kShifts[k % 3] & ((1u << bits) - 1);
  return (sample << (8 - bits) | sample >> (2 * bits - 8)) << 8;
}

/// Evenly spaced greys, except that the brightest is full white.
std::uint32_t SubByteValue(const SourceLine& line, std::uint32_t k) {
  const unsigned bits = line.source->bits;
  const std::uint32_t perByte = 8 / bits, brightest = (1u << bits) - 1;
  const std::uint32_t byte = line.memory->Read(line.start + k / perByte);
  const std::uint32_t sample = byte >> (k % perByte * bits) & brightest;
  return (sample == brightest ? 255 : sample * (256u >> bits)) << 8;
}

/// The sample as it is stored in a container of its own.
std::uint32_t StoredSample(const Source& source, Memory& memory, std::ptrdiff_t start, std::uint32_t k) {
  if (source.packing == Packing::Byte) return memory.Read(start + k);
  return memory.Read16(start + Offset(k, 2));
}

unsigned BitsInMemory(const Source& source) {
  switch (source.packing) {
    case Packing::LsbFirst:
    case Packing::SubByte:
      return source.bits;
    case Packing::PairPacked:
    case Packing::GigEVision:
      return 12;
    case Packing::Word16:
      return 16;
    case Packing::Word32:
      return 32;
    default:
      return 8;
  }
}

/// Counted along a line; a line of a planar image is one channel's.
std::uint32_t SamplesPerPixel(const Source& source) {
  if (source.meaning == Meaning::Colour && !source.planar) return source.colour.samples;
  if (source.meaning == Meaning::YCbCr) return source.chroma.samples / source.chroma.pixels;
  return source.meaning == Meaning::BiColor ? 2 : 1;
}

/// Channel i of pixel x of a planar image.
std::uint32_t PlaneSample(SourceLine line, std::uint32_t i, std::uint32_t x) {
  const auto plane = static_cast<std::int32_t>(static_cast<std::uint32_t>(line.stride) * line.height);
  line.start += Offset(i, 1) * plane;
  return NormalisedSample(line, x);
}

/// All samples of the pixel are read, alpha too, so that the whole pixel counts as read; alpha is not used.
Value ReadColour(const SourceLine& line, std::uint32_t x) {
  std::array<std::uint32_t, 4> samples{};
  const ColourOrder& order = line.source->colour;
  for (std::uint32_t i = 0; i < order.samples; ++i) {
    samples[i] =
        line.source->planar ? PlaneSample(line, i, x) : NormalisedSample(line, x * order.samples + i);
  }
  return {samples[order.red], samples[order.green], samples[order.blue]};
}

Value ReadYCbCr(const SourceLine& line, std::uint32_t x) {
  const ChromaGroup& group = line.source->chroma;
  std::array<std::uint32_t, 6> samples{};
  for (std::uint32_t i = 0; i < group.samples; ++i) {
    const std::uint32_t k = x / group.pixels * group.samples + i;
    samples[i] = EightBitSample(*line.source, *line.memory, line.start, k);
  }
  const std::uint32_t y = samples[group.luma[x % group.pixels]];
  return YCbCrToRgb({y, samples[group.cb], samples[group.cr]}, line.flags);
}

Value ReadGrey(const SourceLine& line, std::uint32_t x) {
  const std::uint32_t grey = NormalisedSample(line, x);
  return {grey, grey, grey};
}

std::uint32_t RoundUp(std::uint32_t count, std::uint32_t step) {
  return (count + step - 1) / step * step;
}

/// Unpackers of grey samples write whole groups.
std::uint32_t OwedGreyPixels(const SourceLine& line) {
  const Source& source = *line.source;
  const bool subByte = source.packing == Packing::SubByte;
  return RoundUp(line.width, subByte ? 8 / source.bits : LayoutOf(source, line.flags).samples);
}

/// Whole groups of four: a last pixel beyond a multiple of four is dropped, two or three become a whole
/// group.
std::uint32_t OwedPixelsOf411(std::uint32_t width) {
  const std::uint32_t limit = width % 4 == 0 ? width : width - 1;
  return RoundUp(limit, 4);
}

}  // namespace

std::uint32_t LineBytes(const Source& source, std::uint32_t width) {
  if (source.packing == Packing::Word565) return width * 2;
  if (source.packing == Packing::Word10p32 || source.packing == Packing::V1Packed) return width * 4;
  if (source.chroma.pixels == 4) return width * 6 / 4;
  const std::uint64_t bits = std::uint64_t{width} * SamplesPerPixel(source) * BitsInMemory(source);
  const bool roundsDown = source.meaning == Meaning::Grey && source.packing != Packing::SubByte;
  return static_cast<std::uint32_t>((bits + (roundsDown ? 0 : 7)) / 8);
}

std::uint32_t OwedPixels(const SourceLine& line) {
  switch (line.source->meaning) {
    case Meaning::Grey:
      return OwedGreyPixels(line);
    case Meaning::BiColor:
      return line.width < 2 ? 0 : line.width;
    case Meaning::Scf1:
      return line.width < 4 || line.height < 4 ? 0 : line.width;
    default:
      break;
  }
  if (line.source->chroma.pixels == 4) return OwedPixelsOf411(line.width);
  return line.source->chroma.pixels == 2 ? line.width / 2 * 2 : line.width;
}

std::uint32_t EightBitSample(const Source& source, Memory& memory, std::ptrdiff_t start, std::uint32_t k) {
  return StoredSample(source, memory, start, k) >> (source.bits - 8) & 0xFF;
}

std::uint32_t NormalisedSample(const SourceLine& line, std::uint32_t k) {
  const Source& source = *line.source;
  switch (source.packing) {
    case Packing::SignedByte:
      return ((line.memory->Read(line.start + k) + 128u) & 0xFF) << 8;
    case Packing::Word32:
      return line.memory->Read32(line.start + Offset(k, 4)) >> 16;
    case Packing::SubByte:
      return SubByteValue(line, k);
    case Packing::Word565:
      return Word565Value(line, k);
    case Packing::Byte:
    case Packing::Word16:
      return StoredSample(source, *line.memory, line.start, k) << (16 - source.bits) & 0xFFFF;
    default:
      return PackedValue(LayoutOf(source, line.flags), line, k);
  }
}

Value ReadPixel(const SourceLine& line, std::uint32_t x) {
  switch (line.source->meaning) {
    case Meaning::Colour:
      return ReadColour(line, x);
    case Meaning::YCbCr:
      return ReadYCbCr(line, x);
    case Meaning::BiColor:
      return BiColorPixel(line, x);
    case Meaning::Scf1:
      return Scf1Pixel(line, x);
    default:
      return ReadGrey(line, x);
  }
}

}  // namespace Model
