// A converted frame, in one of the sixteen destination formats, and how it lies in memory.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace zrconvert {

enum class Storage : std::uint8_t { Bytes, Words, Packed565 };

// How a destination format lies in memory.
struct PictureLayout {
  std::string_view name;
  unsigned channels;  // 1 grey, 3 colour, 4 with alpha
  unsigned depth;     // bits of a sample; 565 counts as 8, to which its samples are spread
  Storage storage;
  bool blueFirst;
  bool planar;
};

// Null unless the name is that of a destination format.
const PictureLayout* FindPictureLayout(std::string_view name);

// Lines are packed tightly; a planar picture holds its three planes one after another.
struct Picture {
  const PictureLayout* layout;  // null for the formats that only raw files hold
  unsigned width;
  unsigned height;
  std::span<const std::uint8_t> bytes;
};

// Brings a sample from one depth to another that is at most twice as large; full scale stays full scale: the
// sample's highest bits are repeated below it.
constexpr std::uint16_t Rescale(std::uint16_t sample, unsigned from, unsigned to) {
  if (to <= from) return static_cast<std::uint16_t>(sample >> (from - to));
  return static_cast<std::uint16_t>(sample << (to - from) | sample >> (2 * from - to));
}

}  // namespace zrconvert
