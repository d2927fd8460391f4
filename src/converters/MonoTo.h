#pragma once

#include "converters/LineConverter.h"

/// Converters of unpacked monochrome lines.

namespace ZrConvertersLib {

/// Samples of type T, brought to the 16-bit scale by a left shift. Bits above the sample's depth are shifted
/// along and cut off beyond bit 15.
template <class T, class Out>
class MonoTo : public LineConverter<MonoTo<T, Out>> {
 public:
  explicit MonoTo(const FormatRow& source)
      : LineConverter<MonoTo>(source, Out{}), mShift(16u - source.depth) {}

  LineRecipe Recipe(std::uint32_t) const {
    constexpr auto reader = sizeof(T) == 1 ? simd::SourceReader::Mono8 : simd::SourceReader::Mono16;
    return {.reader = reader, .writer = Out::kWriter, .shift = mShift};
  }
  std::size_t Pixels(std::uint32_t width) const { return width; }

 private:
  std::uint32_t mShift;
};

template <class Out>
using MonoBytesTo = MonoTo<unsigned char, Out>;
template <class Out>
using MonoWordsTo = MonoTo<unsigned short, Out>;

/// Two's complement bytes, turned into offset binary.
template <class Out>
class Mono8sTo : public LineConverter<Mono8sTo<Out>> {
 public:
  explicit Mono8sTo(const FormatRow& source) : LineConverter<Mono8sTo>(source, Out{}) {}

  LineRecipe Recipe(std::uint32_t) const {
    return {.reader = simd::SourceReader::Mono8, .writer = Out::kWriter, .flip = 0x80};
  }
  std::size_t Pixels(std::uint32_t width) const { return width; }
};

/// 32-bit words, of which the upper half is taken.
template <class Out>
class Mono32To : public LineConverter<Mono32To<Out>> {
 public:
  explicit Mono32To(const FormatRow& source) : LineConverter<Mono32To>(source, Out{}) {}

  LineRecipe Recipe(std::uint32_t) const {
    return {.reader = simd::SourceReader::Mono32, .writer = Out::kWriter};
  }
  std::size_t Pixels(std::uint32_t width) const { return width; }
};

}  // namespace ZrConvertersLib
