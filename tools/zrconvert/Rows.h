// The lines of a picture as files want them.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "ByteSink.h"
#include "Picture.h"

namespace zrconvert {

// Samples of one line, of layout->depth bits each and interleaved in the order red, green, blue, alpha: the
// first `channels` of these, width x channels in all. A grey picture gives its grey for each of them.
void ReadRow(const Picture& picture, unsigned line, unsigned channels, std::span<std::uint16_t> samples);

// Brings samples from one depth to another and stores them in one byte each, or for more than 8 bits in two,
// the high one first.
void StoreSamples(std::span<const std::uint16_t> samples, unsigned from, unsigned to, std::uint8_t* bytes);

// Fills a buffer of many lines before it is written: `store` puts one line's samples, as ReadRow gives them,
// into `lineBytes` bytes.
template <typename Store>
void WriteRows(ByteSink& sink, const Picture& picture, unsigned channels, std::size_t lineBytes,
               Store store) {
  constexpr std::size_t cBufferSize = 1U << 18;
  std::vector<std::uint16_t> samples(std::size_t{picture.width} * channels);
  std::vector<std::uint8_t> buffer;
  for (unsigned line = 0; line < picture.height; ++line) {
    ReadRow(picture, line, channels, samples);
    buffer.resize(buffer.size() + lineBytes);
    store(samples, buffer.data() + buffer.size() - lineBytes);
    if (buffer.size() < cBufferSize && line + 1 < picture.height) continue;
    sink.Write(buffer);
    buffer.clear();
  }
}

}  // namespace zrconvert
