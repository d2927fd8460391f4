#pragma once

#include <ZrConvertersLib/PixelConverter.h>

#include "converters/KernelConverter.h"
#include "core/OutputWriters.h"
#include "core/YCbCrMatrix.h"

/// Converters of YCbCr lines. Mono destinations get the green of the converted colour.

namespace ZrConvertersLib {

/// The matrix that conversion flags choose.
constexpr const YCbCrMatrix& MatrixOf(std::uint32_t flags) {
  if ((flags & PixelConverter::FLAG_YCBCR_JPG) != 0) return kMatrixJPG;
  if ((flags & PixelConverter::FLAG_YCBCR_709) != 0) return kMatrix709;
  return kMatrix601;
}

/// How many pixels share chroma.
enum class Sharing : std::uint8_t { None = 1, Two = 2, Four = 4 };

/// Pixels that a line of `width` writes. With chroma shared by two an odd last pixel is left out; by four,
/// one pixel more than whole groups is left out, two or three make another whole group.
constexpr std::size_t PixelsOf(Sharing sharing, std::uint32_t width) {
  if (sharing == Sharing::Two) return width - width % 2;
  if (sharing == Sharing::Four && width % 4 != 0) return WholeGroups(width - 1, 4);
  return width;
}

/// Samples of type T. Those in words are shifted down to 8 bits first.
template <class T, class Out, simd::SourceReader reader, Sharing sharing>
class YCbCrLayoutTo : public KernelConverter<YCbCrLayoutTo<T, Out, reader, sharing>> {
 public:
  explicit YCbCrLayoutTo(const FormatRow& source)
      : KernelConverter<YCbCrLayoutTo>(source.id, Out::kTypeId, sharing == Sharing::Four ? 4 : source.bytes,
                                       Out::kByteSize, 1, 1, true),
        mShift(source.depth - 8u) {}

  using PixelConverter::GetSourceByteSize;
  std::uint32_t GetSourceByteSize(std::uint32_t width) const override {
    if (sharing == Sharing::Four) return width * 3 * 2 / 4;
    return PixelConverter::GetSourceByteSize(width);
  }

  LineRecipe Recipe(std::uint32_t flags) const {
    constexpr std::uint8_t bytes = (static_cast<std::uint8_t>(sharing) + 2) * kReadBytes;
    LineRecipe recipe{.reader = reader,
                      .group = {static_cast<std::uint8_t>(sharing), bytes},
                      .destination = Out::kIndex,
                      .shift = mShift,
                      .matrix = &MatrixOf(flags)};
    if (sizeof(T) > kReadBytes) recipe.samples = {simd::SourceReader::Mono16, {1, sizeof(T)}, 8 - mShift};
    return recipe;
  }
  std::size_t Pixels(std::uint32_t width) const { return PixelsOf(sharing, width); }

 private:
  /// Of the samples that the kernel reads: 4:4:4 has one for bytes only.
  static constexpr std::size_t kReadBytes = sharing == Sharing::None ? 1 : sizeof(T);

  std::uint32_t mShift;
};

template <class T, class Out>
using YCbCrTo = YCbCrLayoutTo<T, Out, simd::SourceReader::YCbCr, Sharing::None>;
template <class T, class Out>
using YCbCr_CbYCrTo = YCbCrLayoutTo<T, Out, simd::SourceReader::CbYCr, Sharing::None>;
template <class T, class Out>
using YCbCr422To =
    YCbCrLayoutTo<T, Out, sizeof(T) == 1 ? simd::SourceReader::YCbYCr8 : simd::SourceReader::YCbYCr16,
                  Sharing::Two>;
template <class T, class Out>
using YCbCr422_CbYCrYTo =
    YCbCrLayoutTo<T, Out, sizeof(T) == 1 ? simd::SourceReader::CbYCrY8 : simd::SourceReader::CbYCrY16,
                  Sharing::Two>;
template <class T, class Out>
using YCbCr411To = YCbCrLayoutTo<T, Out, simd::SourceReader::YYCbYYCr, Sharing::Four>;
template <class T, class Out>
using YCbCr411_CbYYCrYYTo = YCbCrLayoutTo<T, Out, simd::SourceReader::CbYYCrYY, Sharing::Four>;

}  // namespace ZrConvertersLib
