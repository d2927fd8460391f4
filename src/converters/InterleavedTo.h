#pragma once

#include "converters/LineConverter.h"

/// Converters of interleaved red, green and blue. Alpha is read past. Mono destinations get the green sample.

namespace ZrConvertersLib {

/// One byte or word a channel, brought to the 16-bit scale by a left shift.
template <class Out, simd::SourceReader reader>
class InterleavedTo : public LineConverter<InterleavedTo<Out, reader>> {
 public:
  explicit InterleavedTo(const FormatRow& source)
      : LineConverter<InterleavedTo>(source, Out{}), mShift(16u - source.depth) {}

  LineRecipe Recipe(std::uint32_t) const {
    return {.reader = reader, .writer = Out::kWriter, .shift = mShift};
  }
  std::size_t Pixels(std::uint32_t width) const { return width; }

 private:
  std::uint32_t mShift;
};

template <class Out>
using RGB8To = InterleavedTo<Out, simd::SourceReader::RGB8>;
template <class Out>
using BGR8To = InterleavedTo<Out, simd::SourceReader::BGR8>;
template <class Out>
using RGBa8To = InterleavedTo<Out, simd::SourceReader::RGBa8>;
template <class Out>
using BGRa8To = InterleavedTo<Out, simd::SourceReader::BGRa8>;
template <class Out>
using RGB16To = InterleavedTo<Out, simd::SourceReader::RGB16>;
template <class Out>
using BGR16To = InterleavedTo<Out, simd::SourceReader::BGR16>;
template <class Out>
using RGBa16To = InterleavedTo<Out, simd::SourceReader::RGBa16>;
template <class Out>
using BGRa16To = InterleavedTo<Out, simd::SourceReader::BGRa16>;

template <class Out>
using RGB10p32To = InterleavedTo<Out, simd::SourceReader::RGB10p32>;

}  // namespace ZrConvertersLib
