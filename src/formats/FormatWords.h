#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "core/FormatTable.h"

/// @file
/// The bit layout of a format, as positions and in words, derived from its row.

namespace ZrConvertersLib {

/// Names of the samples of a unit, in memory order; unused entries are empty.
constexpr std::array<std::string_view, 6> SampleNames(ChannelOrder order) {
  switch (order) {
    case ChannelOrder::Mono:
    case ChannelOrder::Bayer:
    case ChannelOrder::Scf1:
      return {"P"};
    case ChannelOrder::BiColor:
      return {"P", "Q"};
    case ChannelOrder::Rgb:
      return {"R", "G", "B"};
    case ChannelOrder::Bgr:
      return {"B", "G", "R"};
    case ChannelOrder::RgbA:
      return {"R", "G", "B", "a"};
    case ChannelOrder::BgrA:
      return {"B", "G", "R", "a"};
    case ChannelOrder::YCbCr:
      return {"Y", "Cb", "Cr"};
    case ChannelOrder::CbYCr:
      return {"Cb", "Y", "Cr"};
    case ChannelOrder::YCbYCr:
      return {"Y0", "Cb", "Y1", "Cr"};
    case ChannelOrder::CbYCrY:
      return {"Cb", "Y0", "Cr", "Y1"};
    case ChannelOrder::YYCbYYCr:
      return {"Y0", "Y1", "Cb", "Y2", "Y3", "Cr"};
    case ChannelOrder::CbYYCrYY:
      return {"Cb", "Y0", "Y1", "Cr", "Y2", "Y3"};
  }
  return {};
}

/// Samples of a group; of one plane when planar.
constexpr unsigned SamplesInGroup(const FormatRow& row) {
  if (row.packing == Packing::Planar) return row.group.pixels;
  const SampleUnit unit = UnitOf(row.order);
  return row.group.pixels * unsigned{unit.samples} / unit.pixels;
}

/// Significant bits of the group's sample of that index.
constexpr unsigned SampleDepth(const FormatRow& row, unsigned sample) {
  const bool green565 = row.packing == Packing::Word && row.container == 16 && sample == 1;
  return row.depth + (green565 ? 1u : 0u);
}

/// Where bit `bit` of sample `sample` lies in the group, counted from the lowest bit of byte 0.
constexpr unsigned BitPosition(const FormatRow& row, unsigned sample, unsigned bit) {
  const unsigned low = row.depth > 8 ? row.depth - 8u : 0u;  // bits of a sample that one byte does not hold
  switch (row.packing) {
    case Packing::Plain:
    case Packing::Dense:
    case Packing::Planar:
      return sample * row.container + bit;
    case Packing::Pair: {
      const unsigned triple = sample / 2 * 24;
      if (bit >= low) return triple + sample % 2 * 16 + bit - low;
      return triple + 8 + (sample % 2 == 0 ? 4 : 0) + bit;
    }
    case Packing::Word:
      if (row.container == 32) return sample * row.depth + bit;
      return std::array{11u, 5u, 0u}[sample] + bit;
    case Packing::V1Packed:
      if (row.container == 32) return bit < low ? sample * low + bit : 8 + sample * 8 + bit - low;
      return sample / 2 * 24 + (bit < low ? sample % 2 * 4 + bit : 8 + sample % 2 * 8 + bit - low);
  }
  return 0;
}

namespace FormatWords {

inline std::string Join(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text.append(part);
  return text;
}

inline std::string Number(unsigned number) {
  return std::to_string(number);
}

/// Name of a sample in its group, with the number of its pixel where there are several.
inline std::string NameOf(const FormatRow& row, unsigned sample) {
  const SampleUnit unit = UnitOf(row.order);
  if (row.packing == Packing::Planar) return "P";
  const std::string_view name = SampleNames(row.order)[sample % unit.samples];
  if (row.group.pixels == unit.pixels) return std::string(name);
  return Join({name, Number(sample / unit.samples)});
}

/// "11..4", or "0" for a single bit
inline std::string BitRange(unsigned high, unsigned low) {
  return high == low ? Number(high) : Join({Number(high), "..", Number(low)});
}

/// "R G B", the samples of a unit; empty when that is a single one.
inline std::string Components(const FormatRow& row) {
  const SampleUnit unit = UnitOf(row.order);
  std::string text;
  for (unsigned i = 0; unit.samples > 1 && i < unit.samples; ++i) {
    if (i != 0) text.append(" ");
    text.append(SampleNames(row.order)[i]);
  }
  return text;
}

inline std::string Count(unsigned count, std::string_view thing) {
  return Join({Number(count), " ", thing, count == 1 ? "" : "s"});
}

/// "a byte" or "bits 9..0 of a 16-bit little-endian word"
inline std::string Container(const FormatRow& row) {
  if (row.container == 8) return "a byte";
  const std::string word = Join({"a ", Number(row.container), "-bit little-endian word"});
  return row.depth == row.container ? word : Join({"bits ", BitRange(row.depth - 1u, 0), " of ", word});
}

inline std::string PlainWords(const FormatRow& row) {
  const std::string components = Components(row);
  if (components.empty()) return Join({"each pixel ", Container(row)});
  if (row.packing == Packing::Planar) return Join({"planes ", components, ", each sample ", Container(row)});
  const SampleUnit unit = UnitOf(row.order);
  if (unit.pixels == 1) return Join({components, ", each ", Container(row)});
  return Join({components, " for ", Count(unit.pixels, "pixel"), ", each ", Container(row)});
}

inline std::string GroupWords(const FormatRow& row) {
  const std::string components = Components(row);
  return Join({components, components.empty() ? "" : ", ", Count(row.group.pixels, "pixel"), " in ",
               Count(row.group.bytes, "byte")});
}

inline std::string PairWords(const FormatRow& row) {
  const unsigned low = row.depth - 8u;
  return Join({GroupWords(row), ": high 8 bits of the first; low ", Number(low),
               " bits of the first in bits ", BitRange(3 + low, 4), " and of the second in bits ",
               BitRange(low - 1, 0), "; high 8 bits of the second"});
}

inline std::string WordWords(const FormatRow& row) {
  std::string text = Join({Number(row.container), "-bit little-endian word per pixel"});
  for (unsigned i = 0; i < SamplesInGroup(row); ++i) {
    const unsigned high = BitPosition(row, i, SampleDepth(row, i) - 1);
    text.append(
        Join({i == 0 ? ": " : ", ", NameOf(row, i), " in bits ", BitRange(high, BitPosition(row, i, 0))}));
  }
  return text;
}

/// Every bit of every sample has a place of its own inside the group.
constexpr bool BitsAreDisjoint(const FormatRow& row) {
  std::array<bool, 256 * 8> taken{};
  for (unsigned sample = 0; sample < SamplesInGroup(row); ++sample) {
    for (unsigned bit = 0; bit < SampleDepth(row, sample); ++bit) {
      const unsigned position = BitPosition(row, sample, bit);
      if (position >= row.group.bytes * 8u || taken[position]) return false;
      taken[position] = true;
    }
  }
  return true;
}
static_assert(std::all_of(kFormats.begin(), kFormats.end(), BitsAreDisjoint));
static_assert(std::all_of(kUntypedFormats.begin(), kUntypedFormats.end(), BitsAreDisjoint));

}  // namespace FormatWords

/// The bit layout in one phrase, such as "4 pixels in 5 bytes, 10-bit samples without gaps, lowest bits
/// first".
inline std::string LayoutInWords(const FormatRow& row) {
  using namespace FormatWords;
  switch (row.packing) {
    case Packing::Plain:
    case Packing::Planar:
      return Join({PlainWords(row), (row.traits & kSigned) != 0 ? ", two's complement" : ""});
    case Packing::Dense:
      return Join({GroupWords(row), ", ", Number(row.depth), "-bit samples without gaps, lowest bits first"});
    case Packing::Pair:
      return PairWords(row);
    case Packing::Word:
      return WordWords(row);
    case Packing::V1Packed:
      return Join(
          {GroupWords(row), ", low ", Number(row.depth - 8u), " bits of several samples in one byte"});
  }
  return {};
}

/// A bit of a group: that of a sample, or an unused one.
struct GroupBit {
  int sample = -1;
  unsigned bit = 0;
};

/// What each bit of a group holds, from the lowest bit of byte 0 up.
inline std::vector<GroupBit> BitsOfGroup(const FormatRow& row) {
  std::vector<GroupBit> bits(row.group.bytes * 8u);
  for (unsigned sample = 0; sample < SamplesInGroup(row); ++sample) {
    for (unsigned bit = 0; bit < SampleDepth(row, sample); ++bit) {
      bits[BitPosition(row, sample, bit)] = {static_cast<int>(sample), bit};
    }
  }
  return bits;
}

/// What each byte of a group holds, from its highest bit down, such as "P1 5..0 | P0 9..8"; "-" for unused
/// bits.
inline std::vector<std::string> LayoutByBytes(const FormatRow& row) {
  using namespace FormatWords;
  const std::vector<GroupBit> bits = BitsOfGroup(row);
  std::vector<std::string> bytes(row.group.bytes);
  for (std::size_t byte = 0; byte < bytes.size(); ++byte) {
    for (std::size_t end = byte * 8 + 8; end > byte * 8;) {
      const GroupBit& high = bits[end - 1];
      std::size_t begin = end - 1;
      while (begin > byte * 8 && bits[begin - 1].sample == high.sample) --begin;
      if (!bytes[byte].empty()) bytes[byte].append(" | ");
      bytes[byte].append(high.sample < 0 ? "-"
                                         : Join({NameOf(row, static_cast<unsigned>(high.sample)), " ",
                                                 BitRange(high.bit, bits[begin].bit)}));
      end = begin;
    }
  }
  return bytes;
}

}  // namespace ZrConvertersLib
