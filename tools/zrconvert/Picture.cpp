#include "Picture.h"

#include <algorithm>
#include <array>

namespace zrconvert {
namespace {

using enum Storage;

constexpr std::array cLayouts{
    PictureLayout{"Mono8", 1, 8, Bytes, false, false},
    PictureLayout{"Mono10", 1, 10, Words, false, false},
    PictureLayout{"Mono12", 1, 12, Words, false, false},
    PictureLayout{"Mono14", 1, 14, Words, false, false},
    PictureLayout{"Mono16", 1, 16, Words, false, false},
    PictureLayout{"RGB8", 3, 8, Bytes, false, false},
    PictureLayout{"BGR8", 3, 8, Bytes, true, false},
    PictureLayout{"RGBa8", 4, 8, Bytes, false, false},
    PictureLayout{"BGRa8", 4, 8, Bytes, true, false},
    PictureLayout{"RGB16", 3, 16, Words, false, false},
    PictureLayout{"BGR16", 3, 16, Words, true, false},
    PictureLayout{"RGB565p", 3, 8, Packed565, false, false},
    PictureLayout{"RGB8_Planar", 3, 8, Bytes, false, true},
    PictureLayout{"RGB10_Planar", 3, 10, Words, false, true},
    PictureLayout{"RGB12_Planar", 3, 12, Words, false, true},
    PictureLayout{"RGB16_Planar", 3, 16, Words, false, true},
};

std::uint16_t WordAt(std::span<const std::uint8_t> bytes, std::size_t index) {
  return static_cast<std::uint16_t>(bytes[2 * index] | bytes[2 * index + 1] << 8);
}

std::uint16_t SampleAt(const Picture& picture, std::size_t index) {
  return picture.layout->storage == Bytes ? picture.bytes[index] : WordAt(picture.bytes, index);
}

// Index of a sample among all samples of the picture.
std::size_t IndexOf(const Picture& picture, std::size_t line, std::size_t x, unsigned channel) {
  const PictureLayout& layout = *picture.layout;
  if (layout.planar) return (channel * std::size_t{picture.height} + line) * picture.width + x;
  const unsigned place = layout.blueFirst && channel < 3 ? 2 - channel : channel;
  return (line * picture.width + x) * layout.channels + place;
}

// Red in bits 15..11, green in 10..5, blue in 4..0.
void Expand565(std::uint16_t word, std::uint16_t* samples) {
  samples[0] = Rescale(static_cast<std::uint16_t>(word >> 11), 5, 8);
  samples[1] = Rescale(static_cast<std::uint16_t>(word >> 5 & 0x3F), 6, 8);
  samples[2] = Rescale(static_cast<std::uint16_t>(word & 0x1F), 5, 8);
}

void ReadPixel(const Picture& picture, unsigned line, unsigned x, std::uint16_t* samples) {
  if (picture.layout->storage == Packed565) {
    Expand565(WordAt(picture.bytes, std::size_t{line} * picture.width + x), samples);
    return;
  }
  for (unsigned channel = 0; channel < picture.layout->channels; ++channel) {
    samples[channel] = SampleAt(picture, IndexOf(picture, line, x, channel));
  }
}

}  // namespace

const PictureLayout* FindPictureLayout(std::string_view name) {
  const auto found = std::ranges::find(cLayouts, name, &PictureLayout::name);
  return found == cLayouts.end() ? nullptr : &*found;
}

std::vector<std::uint16_t> ReadRow(const Picture& picture, unsigned line) {
  const unsigned channels = picture.layout->channels;
  std::vector<std::uint16_t> samples(std::size_t{picture.width} * channels);
  for (unsigned x = 0; x < picture.width; ++x)
    ReadPixel(picture, line, x, &samples[std::size_t{x} * channels]);
  return samples;
}

std::uint16_t Rescale(std::uint16_t sample, unsigned from, unsigned to) {
  if (to <= from) return static_cast<std::uint16_t>(sample >> (from - to));
  // The sample's bits are repeated below, so that all ones stay all ones.
  std::uint32_t value = 0;
  int shift = static_cast<int>(to) - static_cast<int>(from);
  for (; shift > 0; shift -= static_cast<int>(from)) value |= std::uint32_t{sample} << shift;
  return static_cast<std::uint16_t>(value | std::uint32_t{sample} >> -shift);
}

}  // namespace zrconvert
