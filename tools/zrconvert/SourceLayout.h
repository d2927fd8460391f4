// How the samples of each format lie in memory: what the chart's encoder needs beside the library's own
// facts.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace zrconvert {

enum class Packing : std::uint8_t {
  Bytes,        // a sample in each byte
  Words,        // a sample in the low bits of each little-endian 16-bit word
  DoubleWords,  // a sample in each little-endian 32-bit word
  Bits,         // a stream of bits without gaps, the lowest bit first
  Pairs,        // high bytes of two samples with both their low bits in the byte between
  Pixel565,     // a pixel in one little-endian 16-bit word, the first sample in its low bits; 5, 6 and 5 bits
  Pixel32,      // a pixel in one little-endian 32-bit word, likewise
  Planes,       // one image after another per component, samples in bytes or words
};

enum class Component : std::uint8_t {
  Grey,
  Site,
  Red,
  Green,
  Blue,
  Alpha,
  Luma,
  BlueDifference,
  RedDifference
};

// One sample of a group: which component it holds and of which pixel of the group; chroma samples that the
// whole group shares have cWholeGroup.
struct Slot {
  static constexpr unsigned cWholeGroup = ~0U;
  Component component;
  unsigned pixel;
};

struct SourceLayout {
  std::string_view name;
  Packing packing;
  // The samples of one group in memory order: L grey, S site of a mosaic, R G B a, Y Cb Cr; a digit counts
  // the pixels of a group that has several.
  std::string_view order;
};

// Null when the tool knows no layout under this name.
const SourceLayout* FindLayout(std::string_view name);

std::vector<Slot> GroupOf(const SourceLayout& layout);
unsigned PixelsPerGroup(const SourceLayout& layout);

}  // namespace zrconvert
