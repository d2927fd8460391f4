#pragma once

#include "converters/KernelConverter.h"
#include "core/OutputWriters.h"

/// Converters of interleaved red, green and blue. Alpha is read past. Mono destinations get the green sample.

namespace ZrConvertersLib {

/// One byte a channel.
template <class Out, simd::SourceReader reader, std::uint8_t channels>
class InterleavedBytesTo : public KernelConverter<InterleavedBytesTo<Out, reader, channels>> {
 public:
  explicit InterleavedBytesTo(const FormatRow& source)
      : KernelConverter<InterleavedBytesTo>(source.id, Out::kTypeId, source.bytes, Out::kByteSize, 1, 1,
                                            true) {}

  LineRecipe Recipe(std::uint32_t) const {
    return {.reader = reader, .group = {1, channels}, .destination = Out::kIndex};
  }
  std::size_t Pixels(std::uint32_t width) const { return width; }
};

/// One word a channel, brought to the 16-bit scale by a left shift.
template <class Out, simd::SourceReader reader, std::uint8_t channels>
class InterleavedWordsTo : public KernelConverter<InterleavedWordsTo<Out, reader, channels>> {
 public:
  explicit InterleavedWordsTo(const FormatRow& source)
      : KernelConverter<InterleavedWordsTo>(source.id, Out::kTypeId, source.bytes, Out::kByteSize, 1, 1,
                                            true),
        mShift(16u - source.depth) {}

  LineRecipe Recipe(std::uint32_t) const {
    return {.reader = reader, .group = {1, 2 * channels}, .destination = Out::kIndex, .shift = mShift};
  }
  std::size_t Pixels(std::uint32_t width) const { return width; }

 private:
  std::uint32_t mShift;
};

template <class Out>
using RGB8To = InterleavedBytesTo<Out, simd::SourceReader::RGB8, 3>;
template <class Out>
using BGR8To = InterleavedBytesTo<Out, simd::SourceReader::BGR8, 3>;
template <class Out>
using RGBa8To = InterleavedBytesTo<Out, simd::SourceReader::RGBa8, 4>;
template <class Out>
using BGRa8To = InterleavedBytesTo<Out, simd::SourceReader::BGRa8, 4>;
template <class Out>
using RGB16To = InterleavedWordsTo<Out, simd::SourceReader::RGB16, 3>;
template <class Out>
using BGR16To = InterleavedWordsTo<Out, simd::SourceReader::BGR16, 3>;
template <class Out>
using RGBa16To = InterleavedWordsTo<Out, simd::SourceReader::RGBa16, 4>;
template <class Out>
using BGRa16To = InterleavedWordsTo<Out, simd::SourceReader::BGRa16, 4>;

}  // namespace ZrConvertersLib
