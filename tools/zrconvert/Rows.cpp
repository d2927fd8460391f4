#include "Rows.h"

#include <bit>
#include <cstring>

namespace zrconvert {
namespace {

static_assert(std::endian::native == std::endian::little, "words are loaded as they lie");

std::uint16_t Load(const std::uint8_t* byte) {
  return *byte;
}

std::uint16_t LoadWord(const std::uint8_t* bytes) {
  std::uint16_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// Every n-th sample in memory to every m-th place of the row.
template <unsigned SampleBytes>
void CopyChannel(const std::uint8_t* from, std::size_t fromStep, std::uint16_t* to, std::size_t toStep,
                 std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t* sample = from + i * fromStep * SampleBytes;
    to[i * toStep] = SampleBytes == 1 ? Load(sample) : LoadWord(sample);
  }
}

void CopySamples(const Picture& picture, std::size_t first, std::size_t fromStep, std::uint16_t* to,
                 std::size_t toStep, std::size_t count) {
  if (picture.layout->storage == Storage::Bytes) {
    CopyChannel<1>(&picture.bytes[first], fromStep, to, toStep, count);
  } else {
    CopyChannel<2>(&picture.bytes[2 * first], fromStep, to, toStep, count);
  }
}

// Index of the line's first sample of a channel among all samples of the picture.
std::size_t FirstOf(const Picture& picture, std::size_t line, unsigned channel) {
  const PictureLayout& layout = *picture.layout;
  if (layout.planar) return (channel * std::size_t{picture.height} + line) * picture.width;
  const unsigned place = layout.blueFirst && channel < 3 ? 2 - channel : channel;
  return line * picture.width * layout.channels + place;
}

// Red in bits 15..11, green in 10..5, blue in 4..0.
void Expand565(const Picture& picture, std::size_t line, std::span<std::uint16_t> samples) {
  const std::uint8_t* words = &picture.bytes[line * picture.width * 2];
  for (std::size_t x = 0; x < picture.width; ++x) {
    const std::uint16_t word = LoadWord(words + 2 * x);
    samples[3 * x] = Rescale(static_cast<std::uint16_t>(word >> 11), 5, 8);
    samples[3 * x + 1] = Rescale(static_cast<std::uint16_t>(word >> 5 & 0x3F), 6, 8);
    samples[3 * x + 2] = Rescale(static_cast<std::uint16_t>(word & 0x1F), 5, 8);
  }
}

}  // namespace

void ReadRow(const Picture& picture, unsigned line, unsigned channels, std::span<std::uint16_t> samples) {
  const PictureLayout& layout = *picture.layout;
  if (layout.storage == Storage::Packed565) return Expand565(picture, line, samples);
  if (!layout.planar && !layout.blueFirst && layout.channels == channels) {
    return CopySamples(picture, FirstOf(picture, line, 0), 1, samples.data(), 1, samples.size());
  }
  const std::size_t fromStep = layout.planar ? 1 : layout.channels;
  const std::size_t toStep = channels;
  for (unsigned channel = 0; channel < channels; ++channel) {
    const unsigned own = layout.channels == 1 ? 0 : channel;
    CopySamples(picture, FirstOf(picture, line, own), fromStep, &samples[channel], toStep, picture.width);
  }
}

void StoreSamples(std::span<const std::uint16_t> samples, unsigned from, unsigned to, std::uint8_t* bytes) {
  if (to <= 8) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
      bytes[i] = static_cast<std::uint8_t>(Rescale(samples[i], from, to));
    }
    return;
  }
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const std::uint16_t value = Rescale(samples[i], from, to);
    bytes[2 * i] = static_cast<std::uint8_t>(value >> 8);
    bytes[2 * i + 1] = static_cast<std::uint8_t>(value);
  }
}

}  // namespace zrconvert
