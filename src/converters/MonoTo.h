#pragma once

#include "converters/KernelConverter.h"
#include "core/OutputWriters.h"

/// Converters of unpacked monochrome lines.

namespace ZrConvertersLib {

/// Samples of type T, brought to the 16-bit scale by a left shift. Bits above the sample's depth are shifted
/// along and cut off beyond bit 15.
template <class T, class Out>
class MonoTo : public KernelConverter<MonoTo<T, Out>> {
 public:
  explicit MonoTo(const FormatRow& source)
      : KernelConverter<MonoTo>(source.id, Out::kTypeId, source.bytes, Out::kByteSize, 1, 1, true),
        mShift(16u - source.depth) {}

  LineRecipe Recipe(std::uint32_t) const {
    constexpr auto reader = sizeof(T) == 1 ? simd::SourceReader::Mono8 : simd::SourceReader::Mono16;
    return {.reader = reader, .group = {1, sizeof(T)}, .destination = Out::kIndex, .shift = mShift};
  }

  std::size_t Pixels(std::uint32_t width) const { return width; }

 private:
  std::uint32_t mShift;
};

/// Two's complement bytes, turned into offset binary.
template <class Out>
class Mono8sTo : public KernelConverter<Mono8sTo<Out>> {
 public:
  explicit Mono8sTo(const FormatRow& source)
      : KernelConverter<Mono8sTo>(source.id, Out::kTypeId, source.bytes, Out::kByteSize, 1, 1, true) {}

  LineRecipe Recipe(std::uint32_t) const {
    return {.reader = simd::SourceReader::Mono8, .group = {1, 1}, .destination = Out::kIndex, .flip = 0x80};
  }

  std::size_t Pixels(std::uint32_t width) const { return width; }
};

/// 32-bit words, of which the upper half is taken.
template <class Out>
class Mono32To : public KernelConverter<Mono32To<Out>> {
 public:
  explicit Mono32To(const FormatRow& source)
      : KernelConverter<Mono32To>(source.id, Out::kTypeId, source.bytes, Out::kByteSize, 1, 1, true) {}

  LineRecipe Recipe(std::uint32_t) const {
    return {.reader = simd::SourceReader::Mono32, .group = {1, 4}, .destination = Out::kIndex};
  }

  std::size_t Pixels(std::uint32_t width) const { return width; }
};

}  // namespace ZrConvertersLib
