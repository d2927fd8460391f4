#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <string_view>

#include "core/FormatTable.h"
#include "core/PackingFlags.h"

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
      return sample / 2 * 24 + (bit < low ? 8 + sample % 2 * 4 + bit : sample % 2 * 16 + bit - low);
  }
  return 0;
}

/// Samples of a dense format whose low bits CSI-2 puts together, the fewest that fill whole bytes.
constexpr unsigned Csi2Samples(const FormatRow& row) {
  return row.depth == 12 ? 2 : 4;
}

/// The same under the packing flag that acts on the row.
constexpr unsigned FlaggedBitPosition(const FormatRow& row, unsigned sample, unsigned bit) {
  const unsigned low = row.depth - 8u;
  if (row.packing == Packing::Pair)
    return sample / 2 * 24 + (bit < low ? 8 + sample % 2 * 4 + bit : sample % 2 * 16 + bit - low);
  const unsigned samples = Csi2Samples(row);
  const unsigned first = sample / samples * samples * row.depth;
  return first + (bit < low ? samples * 8 + sample % samples * low + bit : sample % samples * 8 + bit - low);
}

namespace FormatWords {

/// A text that is put together when compiling.
class Phrase {
 public:
  constexpr Phrase() = default;
  constexpr Phrase(std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts) Append(part);
  }

  constexpr void Append(std::string_view part) {
    for (const char letter : part) mLetters.at(mSize++) = letter;
  }

  constexpr operator std::string_view() const { return {mLetters.data(), mSize}; }

 private:
  std::array<char, 192> mLetters{};
  std::size_t mSize = 0;
};

constexpr Phrase Number(unsigned number) {
  constexpr std::string_view kDigits = "0123456789";
  Phrase text;
  if (number >= 10) text = Number(number / 10);
  text.Append(kDigits.substr(number % 10, 1));
  return text;
}

/// Name of a sample in its group, with the number of its pixel where there are several.
constexpr Phrase NameOf(const FormatRow& row, unsigned sample) {
  const SampleUnit unit = UnitOf(row.order);
  if (row.packing == Packing::Planar) return {"P"};
  const std::string_view name = SampleNames(row.order)[sample % unit.samples];
  if (row.group.pixels == unit.pixels) return {name};
  return Phrase({name, Number(sample / unit.samples)});
}

/// "11..4", or "0" for a single bit
constexpr Phrase BitRange(unsigned high, unsigned low) {
  return high == low ? Number(high) : Phrase({Number(high), "..", Number(low)});
}

/// "R G B", the samples of a unit; empty when that is a single one.
constexpr Phrase Components(const FormatRow& row) {
  const SampleUnit unit = UnitOf(row.order);
  Phrase text;
  for (unsigned i = 0; unit.samples > 1 && i < unit.samples; ++i) {
    if (i != 0) text.Append(" ");
    text.Append(SampleNames(row.order)[i]);
  }
  return text;
}

constexpr Phrase Count(unsigned count, std::string_view thing) {
  return Phrase({Number(count), " ", thing, count == 1 ? "" : "s"});
}

/// "a byte" or "bits 9..0 of a 16-bit little-endian word"
constexpr Phrase Container(const FormatRow& row) {
  if (row.container == 8) return {"a byte"};
  const Phrase word = Phrase({"a ", Number(row.container), "-bit little-endian word"});
  return row.depth == row.container ? word : Phrase({"bits ", BitRange(row.depth - 1u, 0), " of ", word});
}

constexpr Phrase PlainWords(const FormatRow& row) {
  const Phrase components = Components(row);
  if (std::string_view(components).empty()) return Phrase({"each pixel ", Container(row)});
  if (row.packing == Packing::Planar)
    return Phrase({"planes ", components, ", each sample ", Container(row)});
  const SampleUnit unit = UnitOf(row.order);
  if (unit.pixels == 1) return Phrase({components, ", each ", Container(row)});
  return Phrase({components, " for ", Count(unit.pixels, "pixel"), ", each ", Container(row)});
}

constexpr Phrase GroupWords(const FormatRow& row) {
  const Phrase components = Components(row);
  return Phrase({components, std::string_view(components).empty() ? "" : ", ",
                 Count(row.group.pixels, "pixel"), " in ", Count(row.group.bytes, "byte")});
}

/// @param first, second  the lowest bits that they have in the middle byte
constexpr Phrase PairWords(const FormatRow& row, unsigned first, unsigned second) {
  const unsigned low = row.depth - 8u;
  return Phrase({GroupWords(row), ": high 8 bits of the first; low ", Number(low),
                 " bits of the first in bits ", BitRange(first + low - 1, first),
                 " and of the second in bits ", BitRange(second + low - 1, second),
                 "; high 8 bits of the second"});
}

constexpr Phrase Csi2Words(const FormatRow& row) {
  const unsigned low = row.depth - 8u;
  const unsigned lowBytes = Csi2Samples(row) * low / 8;
  return Phrase({GroupWords(row), ": high 8 bits of each sample, then the low ", Number(low),
                 " bits of all in ", Count(lowBytes, "byte"), ", the first sample's lowest"});
}

constexpr Phrase WordWords(const FormatRow& row) {
  Phrase text = Phrase({Number(row.container), "-bit little-endian word per pixel"});
  for (unsigned i = 0; i < SamplesInGroup(row); ++i) {
    const unsigned high = BitPosition(row, i, SampleDepth(row, i) - 1);
    text.Append(
        Phrase({i == 0 ? ": " : ", ", NameOf(row, i), " in bits ", BitRange(high, BitPosition(row, i, 0))}));
  }
  return text;
}

/// Every bit of every sample has a place of its own inside the group.
template <typename Position>
constexpr bool BitsAreDisjoint(const FormatRow& row, Position positionOf) {
  std::array<bool, 256 * 8> taken{};
  for (unsigned sample = 0; sample < SamplesInGroup(row); ++sample) {
    for (unsigned bit = 0; bit < SampleDepth(row, sample); ++bit) {
      const unsigned position = positionOf(row, sample, bit);
      if (position >= row.group.bytes * 8u || taken[position]) return false;
      taken[position] = true;
    }
  }
  return true;
}

constexpr bool BitsOfRowAreDisjoint(const FormatRow& row) {
  return BitsAreDisjoint(row, BitPosition) &&
         (PackingFlagOf(row) == 0 || BitsAreDisjoint(row, FlaggedBitPosition));
}
static_assert(std::all_of(kFormats.begin(), kFormats.end(), BitsOfRowAreDisjoint));
static_assert(std::all_of(kUntypedFormats.begin(), kUntypedFormats.end(), BitsOfRowAreDisjoint));

}  // namespace FormatWords

/// The bit layout in one phrase, such as "4 pixels in 5 bytes, 10-bit samples without gaps, lowest bits
/// first".
constexpr FormatWords::Phrase LayoutInWords(const FormatRow& row) {
  using namespace FormatWords;
  switch (row.packing) {
    case Packing::Plain:
    case Packing::Planar:
      return Phrase({PlainWords(row), (row.traits & kSigned) != 0 ? ", two's complement" : ""});
    case Packing::Dense:
      return Phrase(
          {GroupWords(row), ", ", Number(row.depth), "-bit samples without gaps, lowest bits first"});
    case Packing::Pair:
      return PairWords(row, 4, 0);
    case Packing::Word:
      return WordWords(row);
    case Packing::V1Packed:
      return Phrase(
          {GroupWords(row), ", low ", Number(row.depth - 8u), " bits of several samples in one byte"});
  }
  return {};
}

/// The same under the packing flag that acts on the row.
constexpr FormatWords::Phrase FlaggedLayoutInWords(const FormatRow& row) {
  return row.packing == Packing::Pair ? FormatWords::PairWords(row, 0, 4) : FormatWords::Csi2Words(row);
}

}  // namespace ZrConvertersLib
