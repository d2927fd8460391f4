#pragma once

#include "converters/LineConverter.h"
#include "converters/Packings.h"

/// Converters of packed monochrome lines, which other families use as unpackers, too. Whole groups are
/// written, so a line may get pixels past its width.

namespace ZrConvertersLib {

/// Base of the converters of a packed reader: line sizes count whole bytes of the group, rounded down. By a
/// flag of the call the other reader of the source's packings takes its place.
template <class Derived, class Out, simd::SourceReader reader>
class PackedLineConverter : public LineConverter<Derived> {
 public:
  PackedLineConverter(const FormatRow& source, long destination, bool autoRegister)
      : LineConverter<Derived>(source.id, destination, source.bytes, Out::kByteSize, 1, 1, autoRegister),
        mOther(OtherPackingOf(source)) {}

  using PixelConverter::GetSourceByteSize;
  std::uint32_t GetSourceByteSize(std::uint32_t width) const override {
    constexpr simd::ReaderGroup group = simd::FactsOf(reader).group;
    return width * group.bytes / group.pixels;
  }

  LineRecipe Recipe(std::uint32_t flags) const {
    const SampleRecipe samples = this->Self().Samples(flags);
    return {.reader = samples.reader, .writer = Out::kWriter, .shift = samples.shift};
  }
  std::size_t Pixels(std::uint32_t width) const { return WholeGroups(width, reader); }

 protected:
  simd::SourceReader Reader(std::uint32_t flags) const {
    return (flags & mOther.flag) != 0 ? mOther.reader : reader;
  }

 private:
  OtherPacking mOther;
};

/// Densely packed samples, least significant bits first.
template <class Out, simd::SourceReader reader>
class DensePackedTo : public PackedLineConverter<DensePackedTo<Out, reader>, Out, reader> {
 public:
  explicit DensePackedTo(const FormatRow& source) : DensePackedTo(source, Out::kTypeId, true) {}

  /// @param widthMultiplier samples per image pixel: more than 1 where a stream of several channels is
  /// unpacked
  DensePackedTo(const FormatRow& source, long destination, bool autoRegister,
                std::uint32_t widthMultiplier = 1)
      : PackedLineConverter<DensePackedTo, Out, reader>(source, destination, autoRegister),
        mWidthMultiplier(widthMultiplier) {}

  std::uint32_t GetWidthMultiplier() const override { return mWidthMultiplier; }

  SampleRecipe Samples(std::uint32_t flags) const { return {this->Reader(flags), 0}; }

 private:
  std::uint32_t mWidthMultiplier;
};

template <class Out>
using Mono10pTo = DensePackedTo<Out, simd::SourceReader::Mono10p>;
template <class Out>
using Mono12pTo = DensePackedTo<Out, simd::SourceReader::Mono12p>;
template <class Out>
using Mono14pTo = DensePackedTo<Out, simd::SourceReader::Mono14p>;

/// Pairs of samples in three bytes. The nibbles of the middle byte are shifted by 6 for Mono10Packed and by 4
/// for every other source, so that the upper two bits of a 10-bit nibble meet the byte above.
template <class Out>
class MonoPackedTo : public PackedLineConverter<MonoPackedTo<Out>, Out, simd::SourceReader::MonoPacked> {
 public:
  explicit MonoPackedTo(const FormatRow& source) : MonoPackedTo(source, Out::kTypeId, true) {}

  MonoPackedTo(const FormatRow& source, long destination, bool autoRegister)
      : PackedLineConverter<MonoPackedTo, Out, simd::SourceReader::MonoPacked>(source, destination,
                                                                               autoRegister),
        mShift(source.id == PixelTypeIds::Mono10Packed ? 6 : 4) {}

  SampleRecipe Samples(std::uint32_t flags) const { return {this->Reader(flags), mShift}; }

 private:
  std::uint32_t mShift;
};

/// Samples of 1, 2 or 4 bits. With any other number of bits every line is refused.
template <class Out>
class MonoPTo : public LineConverter<MonoPTo<Out>> {
 public:
  explicit MonoPTo(const FormatRow& source)
      : LineConverter<MonoPTo>(source, Out{}), mBitsPerPixel(source.container) {}

  using PixelConverter::GetSourceByteSize;
  std::uint32_t GetSourceByteSize(std::uint32_t width) const override {
    return (width * mBitsPerPixel + 7) / 8;
  }

  ZrUtilsLib::Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    if (Reader() == simd::SourceReader::None) return ZrUtilsLib::ResultCode::NotSupported;
    return LineConverter<MonoPTo>::ConvertLine(context, width);
  }

  LineRecipe Recipe(std::uint32_t) const { return {.reader = Reader(), .writer = Out::kWriter}; }
  std::size_t Pixels(std::uint32_t width) const {
    return Reader() == simd::SourceReader::None ? 0 : WholeGroups(width, Reader());
  }

 private:
  simd::SourceReader Reader() const {
    switch (mBitsPerPixel) {
      case 1:
        return simd::SourceReader::Mono1p;
      case 2:
        return simd::SourceReader::Mono2p;
      case 4:
        return simd::SourceReader::Mono4p;
      default:
        return simd::SourceReader::None;
    }
  }

  std::uint32_t mBitsPerPixel;
};

}  // namespace ZrConvertersLib
