#pragma once

#include <array>
#include <optional>
#include <ostream>
#include <span>
#include <string_view>
#include <vector>

/// @file
/// The model's own account of the formats: what a sample, a pixel and a group are, by plain type numbers.

namespace Model {

/// How samples lie in memory.
enum class Packing {
  Byte,
  SignedByte,
  Word16,
  Word32,
  LsbFirst,    ///< 10, 12 or 14 bits each, least significant bits first, no gaps
  PairPacked,  ///< two samples in three bytes; the middle byte holds the low bits of both
  GigEVision,  ///< the same, but the first sample's low bits are the lower ones of the middle byte
  Csi2,        ///< two or four samples' upper bytes, then their low bits together
  Word10p32,   ///< three samples of 10 bits in a word of 32, the first in the lowest bits
  V1Packed,    ///< a byte of three samples' low two bits, then their upper bytes
  Word565,     ///< three samples of 5, 6 and 5 bits in a word of 16, the first in the lowest bits
  SubByte,     ///< 1, 2 or 4 bits each, from the least significant bits up
};

/// What the samples of a line mean.
enum class Meaning { Grey, Colour, YCbCr, Mosaic, BiColor, Scf1 };

/// Sample positions within a pixel of `samples` samples.
struct ColourOrder {
  unsigned samples, red, green, blue;
};

/// Sample positions within a group of `pixels` pixels that share one Cb and one Cr.
struct ChromaGroup {
  unsigned pixels, samples, cb, cr;
  std::array<unsigned, 4> luma;
};

struct Source {
  long id;
  std::string_view name;
  Meaning meaning;
  Packing packing;
  unsigned bits;             ///< significant bits of a sample
  ColourOrder colour{};      ///< of Meaning::Colour
  ChromaGroup chroma{};      ///< of Meaning::YCbCr
  unsigned multiplier = 1;   ///< samples counted per pixel of the caller's widths
  unsigned nibbleShift = 4;  ///< of Packing::PairPacked: where the low bits of a sample go
  bool planar = false;       ///< of Meaning::Colour: each channel in a plane of its own
  bool csi2 = false;         ///< a flag says that the samples are packed as CSI-2 has them
};

/// Tests that have a source as parameter show its name.
inline std::ostream& operator<<(std::ostream& out, const Source& source) {
  return out << source.name;
}

enum class Shape { Grey, ThreeChannels, FourChannels, Word565, Planes };

struct Destination {
  long id;
  std::string_view name;
  Shape shape;
  unsigned bits;  ///< of a stored channel
  bool blueFirst;
  unsigned bytes;  ///< per pixel; for planes, per sample of one plane
};

/// One converter without intermediate: a way to read and a way to write.
struct Stage {
  Source source;
  Destination destination;
};

/// One stage, or two through an intermediate image.
using Pair = std::vector<Stage>;

/// What the library can convert from `source` to `destination`; nothing when it cannot.
std::optional<Pair> FindPair(long source, long destination);

/// The source with its samples as they lie in memory and with their meaning, also where a conversion takes
/// two stages.
std::optional<Source> FindSource(long id);

/// Every source that has pairs, and the destinations of one.
std::vector<Source> AllSources();
std::vector<long> DestinationsOf(long source);

}  // namespace Model
