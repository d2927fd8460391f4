#pragma once

#include "converters/LineConverter.h"

/// Converters of interleaved red, green and blue. Alpha is ignored. Mono destinations get the green sample.

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
template <class Out>
using RGB10V1PackedTo = InterleavedTo<Out, simd::SourceReader::RGB10V1Packed>;

/// Fields of 5, 6 and 5 bits in a word, which the reader brings to the 16-bit scale itself.
template <class Out>
using RGB565pTo = InterleavedTo<Out, simd::SourceReader::RGB565p>;
template <class Out>
using BGR565pTo = InterleavedTo<Out, simd::SourceReader::BGR565p>;

/// Two pixels in nine bytes. An odd line ends with the five bytes of its last pixel.
template <class Out>
class RGB12V1PackedTo : public LineConverter<RGB12V1PackedTo<Out>> {
 public:
  explicit RGB12V1PackedTo(const FormatRow& source) : LineConverter<RGB12V1PackedTo>(source, Out{}) {}

  using PixelConverter::GetSourceByteSize;
  std::uint32_t GetSourceByteSize(std::uint32_t width) const override { return (9 * width + 1) / 2; }

  LineRecipe Recipe(std::uint32_t) const {
    return {.reader = simd::SourceReader::RGB12V1Packed, .writer = Out::kWriter};
  }
  std::size_t Pixels(std::uint32_t width) const { return width; }
};

/// Three planes one after the other, each stride x height of the source image.
template <class T, class Out>
class RGBPlanarTo : public LineConverter<RGBPlanarTo<T, Out>> {
 public:
  explicit RGBPlanarTo(const FormatRow& source)
      : LineConverter<RGBPlanarTo>(source, Out{}, sizeof(T)), mShift(16u - source.depth) {}

  LineRecipe Recipe(std::uint32_t) const {
    constexpr auto reader = sizeof(T) == 1 ? simd::SourceReader::RGBPlanar8 : simd::SourceReader::RGBPlanar16;
    return {.reader = reader, .writer = Out::kWriter, .shift = mShift};
  }
  std::size_t Pixels(std::uint32_t width) const { return width; }

 private:
  std::uint32_t mShift;
};

template <class Out>
using RGBPlanarBytesTo = RGBPlanarTo<unsigned char, Out>;
template <class Out>
using RGBPlanarWordsTo = RGBPlanarTo<unsigned short, Out>;

}  // namespace ZrConvertersLib
