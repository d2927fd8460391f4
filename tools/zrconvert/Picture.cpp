#include "Picture.h"

#include <ZrConvertersLib/Format.h>

#include <algorithm>

namespace zrconvert {
namespace {

using enum Storage;
namespace zr = ZrConvertersLib;

unsigned ChannelsOf(zr::ChannelOrder order) {
  if (order == zr::ChannelOrder::Mono) return 1;
  return order == zr::ChannelOrder::RgbA || order == zr::ChannelOrder::BgrA ? 4 : 3;
}

PictureLayout LayoutOf(const zr::FormatInfo& format) {
  const bool blueFirst = format.order == zr::ChannelOrder::Bgr || format.order == zr::ChannelOrder::BgrA;
  const bool packed = format.packing == zr::Packing::Word;
  return {.name = format.name,
          .channels = ChannelsOf(format.order),
          .depth = packed ? 8 : format.depth,
          .storage = packed                   ? Packed565
                     : format.sampleBits == 8 ? Bytes
                                              : Words,
          .blueFirst = blueFirst,
          .planar = format.packing == zr::Packing::Planar};
}

// Mosaics and YCbCr, which some packed sources are unpacked to, are no pictures that a file can show.
std::vector<PictureLayout> AllLayouts() {
  std::vector<PictureLayout> layouts;
  for (const zr::FormatInfo& format : zr::Formats()) {
    const bool shows = format.family == zr::FormatFamily::Mono || format.family == zr::FormatFamily::Rgb;
    if (format.isDestination && shows) layouts.push_back(LayoutOf(format));
  }
  return layouts;
}

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
  static const std::vector<PictureLayout> layouts = AllLayouts();
  const auto found = std::ranges::find(layouts, name, &PictureLayout::name);
  return found == layouts.end() ? nullptr : &*found;
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
