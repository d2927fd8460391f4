#pragma once

#include "converters/KernelConverter.h"
#include "core/OutputWriters.h"

/// Converters of packed monochrome lines, which other families use as unpackers, too. Whole groups are
/// written, so a line may get pixels past its width.

namespace ZrConvertersLib {

/// Densely packed samples, least significant bits first, in groups like those of the format `like`.
template <class Out, long like, simd::SourceReader reader>
class DensePackedTo : public KernelConverter<DensePackedTo<Out, like, reader>> {
 public:
  explicit DensePackedTo(const FormatRow& source) : DensePackedTo(source, Out::kTypeId, true) {}

  /// @param widthMultiplier samples per image pixel: more than 1 where a stream of several channels is
  /// unpacked
  DensePackedTo(const FormatRow& source, long destination, bool autoRegister,
                std::uint32_t widthMultiplier = 1)
      : KernelConverter<DensePackedTo>(source.id, destination, source.bytes, Out::kByteSize, 1, 1,
                                       autoRegister),
        mWidthMultiplier(widthMultiplier) {}

  using PixelConverter::GetSourceByteSize;
  std::uint32_t GetSourceByteSize(std::uint32_t width) const override {
    return width * kGroup.bytes / kGroup.pixels;
  }
  std::uint32_t GetWidthMultiplier() const override { return mWidthMultiplier; }

  LineRecipe Recipe(std::uint32_t) const {
    return {.reader = reader, .group = kGroup, .destination = Out::kIndex};
  }
  SampleRecipe Samples() const { return {reader, kGroup, 0}; }
  std::size_t Pixels(std::uint32_t width) const { return WholeGroups(width, kGroup.pixels); }

 private:
  static constexpr Group kGroup = FindFormat(like)->group;

  std::uint32_t mWidthMultiplier;
};

template <class Out>
using Mono10pTo = DensePackedTo<Out, PixelTypeIds::Mono10p, simd::SourceReader::Mono10p>;
template <class Out>
using Mono12pTo = DensePackedTo<Out, PixelTypeIds::Mono12p, simd::SourceReader::Mono12p>;
template <class Out>
using Mono14pTo = DensePackedTo<Out, PixelTypeIds::Mono14p, simd::SourceReader::Mono14p>;

/// Pairs of samples in three bytes. The nibbles of the middle byte are shifted by 6 for Mono10Packed and by 4
/// for every other source, so that the upper two bits of a 10-bit nibble meet the byte above: kept as it
/// always was.
template <class Out>
class MonoPackedTo : public KernelConverter<MonoPackedTo<Out>> {
 public:
  explicit MonoPackedTo(const FormatRow& source) : MonoPackedTo(source, Out::kTypeId, true) {}

  MonoPackedTo(const FormatRow& source, long destination, bool autoRegister)
      : KernelConverter<MonoPackedTo>(source.id, destination, source.bytes, Out::kByteSize, 1, 1,
                                      autoRegister),
        mShift(source.id == PixelTypeIds::Mono10Packed ? 6 : 4) {}

  using PixelConverter::GetSourceByteSize;
  std::uint32_t GetSourceByteSize(std::uint32_t width) const override {
    return width * kGroup.bytes / kGroup.pixels;
  }

  LineRecipe Recipe(std::uint32_t) const {
    return {.reader = simd::SourceReader::MonoPacked,
            .group = kGroup,
            .destination = Out::kIndex,
            .shift = mShift};
  }
  SampleRecipe Samples() const { return {simd::SourceReader::MonoPacked, kGroup, mShift}; }
  std::size_t Pixels(std::uint32_t width) const { return WholeGroups(width, kGroup.pixels); }

 private:
  static constexpr Group kGroup = FormatOf(PixelTypeIds::Mono12Packed).group;

  std::uint32_t mShift;
};

/// Samples of 1, 2 or 4 bits. With any other number of bits every line is refused.
template <class Out>
class MonoPTo : public KernelConverter<MonoPTo<Out>> {
 public:
  explicit MonoPTo(const FormatRow& source)
      : KernelConverter<MonoPTo>(source.id, Out::kTypeId, source.bytes, Out::kByteSize, 1, 1, true),
        mBitsPerPixel(source.container) {}

  using KernelConverter<MonoPTo>::Convert;
  using PixelConverter::GetSourceByteSize;
  std::uint32_t GetSourceByteSize(std::uint32_t width) const override {
    return (width * mBitsPerPixel + 7) / 8;
  }

  ZrUtilsLib::Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    if (mBitsPerPixel != 1 && mBitsPerPixel != 2 && mBitsPerPixel != 4)
      return ZrUtilsLib::ResultCode::NotSupported;
    return KernelConverter<MonoPTo>::ConvertLine(context, width);
  }

  LineRecipe Recipe(std::uint32_t) const {
    const auto reader = mBitsPerPixel == 1   ? simd::SourceReader::Mono1p
                        : mBitsPerPixel == 2 ? simd::SourceReader::Mono2p
                                             : simd::SourceReader::Mono4p;
    return {.reader = reader,
            .group = {static_cast<std::uint8_t>(8 / mBitsPerPixel), 1},
            .destination = Out::kIndex};
  }
  std::size_t Pixels(std::uint32_t width) const {
    return mBitsPerPixel == 0 ? 0 : WholeGroups(width, 8 / mBitsPerPixel);
  }

 private:
  std::uint32_t mBitsPerPixel;
};

}  // namespace ZrConvertersLib
