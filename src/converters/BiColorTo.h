#pragma once

#include "converters/BiColorLines.h"
#include "converters/WholeFrameConverter.h"

namespace ZrConvertersLib {

/// Converts lines of two samples a pixel, green and one of red and blue in turn, on the 16-bit scale.
template <class Out, simd::SourceReader fast, simd::SourceReader split>
class BiColorTo : public WholeFrameConverter<BiColorTo<Out, fast, split>> {
 public:
  explicit BiColorTo(const FormatRow& source)
      : WholeFrameConverter<BiColorTo>(source, Out{}), mShift(16u - source.depth) {}

  using PixelConverter::GetSourceByteSize;
  std::uint32_t GetSourceByteSize(std::uint32_t width) const override {
    constexpr std::uint32_t bytes = simd::FactsOf(fast).group.bytes;  // of two pixels
    return bytes % 2 == 0 ? width * (bytes / 2) : (width * bytes + 1) / 2;
  }

  ZrUtilsLib::Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    const bool interpolate = (context.mFlags & PixelConverter::FLAG_BICOLOR_INTERPOLATE) != 0;
    return interpolate ? ConvertInterpolate(context, width) : ConvertFast(context, width);
  }

  void ConvertFrame(const FrameCall& call) const { ConvertBiColorLines(LineDriver(*this, call), Recipe()); }

  /// One colour for two pixels.
  virtual ZrUtilsLib::Result ConvertFast(const PixelConverterContext& context, std::uint32_t width) const {
    ConvertBiColorLine(context, Recipe(), width, false);
    return {};
  }

  /// The missing colour from the pixels to either side.
  virtual ZrUtilsLib::Result ConvertInterpolate(const PixelConverterContext& context,
                                                std::uint32_t width) const {
    ConvertBiColorLine(context, Recipe(), width, true);
    return {};
  }

 private:
  BiColorRecipe Recipe() const { return {Out::kWriter, fast, split, mShift}; }

  std::uint32_t mShift;
};

template <class Out>
using BiColorBytesTo = BiColorTo<Out, simd::SourceReader::BiColorFast8, simd::SourceReader::BiColorSplit8>;
template <class Out>
using BiColorWordsTo = BiColorTo<Out, simd::SourceReader::BiColorFast16, simd::SourceReader::BiColorSplit16>;
template <class Out>
using BiColor10pTo = BiColorTo<Out, simd::SourceReader::BiColorFast10p, simd::SourceReader::BiColorSplit10p>;
template <class Out>
using BiColor12pTo = BiColorTo<Out, simd::SourceReader::BiColorFast12p, simd::SourceReader::BiColorSplit12p>;

}  // namespace ZrConvertersLib
