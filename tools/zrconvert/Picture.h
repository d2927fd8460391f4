// A converted frame, in one of the sixteen destination formats, and its rows as plain samples.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace zrconvert {

enum class Storage : std::uint8_t { Bytes, Words, Packed565 };

// How a destination format lies in memory.
struct PictureLayout {
  std::string_view name;
  unsigned channels;  // 1 grey, 3 colour, 4 with alpha
  unsigned depth;     // bits of a sample as ReadRow gives it
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

// The samples of one line, interleaved in the order red, green, blue, alpha, each of layout->depth bits.
std::vector<std::uint16_t> ReadRow(const Picture& picture, unsigned line);

// Brings a sample from one depth to another; full scale stays full scale.
std::uint16_t Rescale(std::uint16_t sample, unsigned from, unsigned to);

}  // namespace zrconvert
