#pragma once

#include "converters/Mosaic.h"
#include "converters/WholeFrameConverter.h"

namespace ZrConvertersLib {

/// Converts a Bayer mosaic of samples of type T, two lines at a time. All arithmetic is on 8-bit samples,
/// whatever the depth of source and destination.
template <class T, class Out>
class BayerTo : public WholeFrameConverter<BayerTo<T, Out>> {
 public:
  explicit BayerTo(const FormatRow& source)
      : WholeFrameConverter<BayerTo>(source, Out{}), mShift(source.depth - 8u) {}

  std::uint32_t GetLinesPerConvert() const override { return 2; }

  ZrUtilsLib::Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    const bool interpolate = (context.mFlags & PixelConverter::FLAG_BAYER_INTERPOLATE) != 0;
    return interpolate ? ConvertInterpolate(context, width) : ConvertFast(context, width);
  }

  ZrUtilsLib::Result ConvertLastLine(const PixelConverterContext& context,
                                     std::uint32_t width) const override {
    return ConvertLastLineFast(context, Recipe(), width);
  }

  void ConvertFrame(const FrameCall& call) const {
    const LineDriver driver(*this, call);
    ConvertMosaic(driver, Recipe(), driver.Source());
  }

  /// One colour per tile of 2x2 sites.
  virtual ZrUtilsLib::Result ConvertFast(const PixelConverterContext& context, std::uint32_t width) const {
    ConvertPairFast(context, Recipe(), width);
    return {};
  }

  /// Colours interpolated from 3x3 sites.
  virtual ZrUtilsLib::Result ConvertInterpolate(const PixelConverterContext& context,
                                                std::uint32_t width) const {
    ConvertPairInterpolating(context, Recipe(), width);
    return {};
  }

  /// As the second stage of a chain: reads `samples` of `lines` where they are instead of an unpacked mosaic.
  void ConvertSamples(const FrameCall& call, const SourceLines& lines, const SampleRecipe& samples) const {
    ConvertMosaic(LineDriver(*this, call), {Out::kWriter, samples, {}}, lines);
  }

 private:
  MosaicRecipe Recipe() const {
    if (sizeof(T) == 1) return {Out::kWriter, {}, {}};
    return {Out::kWriter, SampleRecipe{simd::SourceReader::Mono16, 8 - mShift}, mShift};
  }

  std::uint32_t mShift;
};

template <class Out>
using BayerBytesTo = BayerTo<unsigned char, Out>;
template <class Out>
using BayerWordsTo = BayerTo<unsigned short, Out>;

}  // namespace ZrConvertersLib
