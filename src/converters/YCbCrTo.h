#pragma once

#include <ZrConvertersLib/PixelConverter.h>

#include "converters/LineConverter.h"
#include "core/MatrixFlags.h"
#include "core/YCbCrMatrix.h"

/// Converters of YCbCr lines. Mono destinations get the green of the converted colour.

namespace ZrConvertersLib {

/// The matrix that the flags of a conversion choose.
constexpr const YCbCrMatrix& FixedPointMatrix(std::uint32_t flags) {
  switch (MatrixOf(flags)) {
    case ColourMatrix::Jpeg:
      return kMatrixJPG;
    case ColourMatrix::Bt709:
      return kMatrix709;
    case ColourMatrix::Bt601:
      break;
  }
  return kMatrix601;
}

/// Samples of type T. Those in words are shifted down to 8 bits first.
template <class T, class Out, simd::SourceReader reader>
class YCbCrLayoutTo : public LineConverter<YCbCrLayoutTo<T, Out, reader>> {
 public:
  explicit YCbCrLayoutTo(const FormatRow& source)
      : LineConverter<YCbCrLayoutTo>(source, Out{}, kGroup.pixels == 4 ? 4 : source.bytes),
        mShift(source.depth - 8u) {}

  using PixelConverter::GetSourceByteSize;
  std::uint32_t GetSourceByteSize(std::uint32_t width) const override {
    if (kGroup.pixels == 4) return width * 3 * 2 / 4;
    return PixelConverter::GetSourceByteSize(width);
  }

  LineRecipe Recipe(std::uint32_t flags) const {
    LineRecipe recipe{
        .reader = reader, .writer = Out::kWriter, .shift = mShift, .matrix = &FixedPointMatrix(flags)};
    if (sizeof(T) > 1 && kGroup.pixels == 1) ReadSamples(recipe, {simd::SourceReader::Mono16, 8 - mShift});
    return recipe;
  }

  /// Pixels that are converted. With two pixels per group an odd last one is left out. With four per group,
  /// one pixel after the last whole group is left out, but two or three are converted as another whole group.
  std::size_t Pixels(std::uint32_t width) const {
    if (kGroup.pixels == 2) return width - width % 2;
    return width % kGroup.pixels == 0 ? width : WholeGroups(width - 1, reader);
  }

 private:
  static constexpr simd::ReaderGroup kGroup = simd::FactsOf(reader).group;  ///< pixels that share chroma

  std::uint32_t mShift;
};

/// By sample type: the reader of bytes or that of words.
template <class T>
constexpr simd::SourceReader ByWidth(simd::SourceReader bytes, simd::SourceReader words) {
  return sizeof(T) == 1 ? bytes : words;
}

template <class T, class Out>
using YCbCrTo = YCbCrLayoutTo<T, Out, simd::SourceReader::YCbCr>;
template <class T, class Out>
using YCbCr_CbYCrTo = YCbCrLayoutTo<T, Out, simd::SourceReader::CbYCr>;
template <class T, class Out>
using YCbCr422To =
    YCbCrLayoutTo<T, Out, ByWidth<T>(simd::SourceReader::YCbYCr8, simd::SourceReader::YCbYCr16)>;
template <class T, class Out>
using YCbCr422_CbYCrYTo =
    YCbCrLayoutTo<T, Out, ByWidth<T>(simd::SourceReader::CbYCrY8, simd::SourceReader::CbYCrY16)>;
template <class T, class Out>
using YCbCr411To = YCbCrLayoutTo<T, Out, simd::SourceReader::YYCbYYCr>;
template <class T, class Out>
using YCbCr411_CbYYCrYYTo = YCbCrLayoutTo<T, Out, simd::SourceReader::CbYYCrYY>;

template <class Out>
using YCbCrBytesTo = YCbCrTo<unsigned char, Out>;
template <class Out>
using YCbCr_CbYCrBytesTo = YCbCr_CbYCrTo<unsigned char, Out>;
template <class Out>
using YCbCr_CbYCrWordsTo = YCbCr_CbYCrTo<unsigned short, Out>;
template <class Out>
using YCbCr422BytesTo = YCbCr422To<unsigned char, Out>;
template <class Out>
using YCbCr422WordsTo = YCbCr422To<unsigned short, Out>;
template <class Out>
using YCbCr422_CbYCrYBytesTo = YCbCr422_CbYCrYTo<unsigned char, Out>;
template <class Out>
using YCbCr422_CbYCrYWordsTo = YCbCr422_CbYCrYTo<unsigned short, Out>;
template <class Out>
using YCbCr411BytesTo = YCbCr411To<unsigned char, Out>;
template <class Out>
using YCbCr411_CbYYCrYYBytesTo = YCbCr411_CbYYCrYYTo<unsigned char, Out>;

}  // namespace ZrConvertersLib
