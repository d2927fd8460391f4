#pragma once

#include <ZrConvertersLib/PixelConverter.h>

#include "converters/MosaicPlan.h"
#include "core/LineDriver.h"
#include "core/OutputWriters.h"

namespace ZrConvertersLib {

/// Converts a Bayer mosaic of samples of type T, two lines at a time. All arithmetic is on 8-bit samples,
/// whatever the depth of source and destination.
template <class T, class Out>
class BayerTo : public PixelConverter {
 public:
  explicit BayerTo(const FormatRow& source)
      : PixelConverter(source.id, Out::kTypeId, source.bytes, Out::kByteSize, 1, 1, true),
        mShift(source.depth - 8u) {}

  using PixelConverter::Convert;

  std::uint32_t GetLinesPerConvert() const override { return 2; }

  ZrUtilsLib::Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    const bool interpolate = (context.mFlags & FLAG_BAYER_INTERPOLATE) != 0;
    return interpolate ? ConvertInterpolate(context, width) : ConvertFast(context, width);
  }

  ZrUtilsLib::Result ConvertLastLine(const PixelConverterContext& context,
                                     std::uint32_t width) const override {
    return ConvertLastLineFast(context, Recipe(), width);
  }

  /// As inherited, but prepared once for all lines.
  ZrUtilsLib::Result Convert(const unsigned char* source, std::uint32_t sourceWidth,
                             std::uint32_t sourceHeight, unsigned char* destination,
                             std::uint32_t destinationWidth, std::uint32_t destinationHeight,
                             std::uint32_t width, std::uint32_t height, std::uint32_t flags,
                             std::uint32_t destinationPadding, unsigned char**, std::uint32_t*,
                             std::uint32_t sourcePadding, bool flipVertical,
                             const RGBFilter* filter) const override {
    const LineDriver driver(
        *this, {source, sourceWidth, sourceHeight, destination, destinationWidth, destinationHeight, width,
                height, flags, destinationPadding, sourcePadding, flipVertical, filter});
    ConvertMosaic(driver, Recipe(), driver.Source());
    return {};
  }

  /// One colour per tile of 2x2 sites.
  virtual ZrUtilsLib::Result ConvertFast(const PixelConverterContext& context, std::uint32_t width) const {
    return ConvertPairFast(context, Recipe(), width);
  }

  /// Colours interpolated from 3x3 sites.
  virtual ZrUtilsLib::Result ConvertInterpolate(const PixelConverterContext& context,
                                                std::uint32_t width) const {
    return ConvertPairInterpolating(context, Recipe(), width);
  }

  /// As the second stage of a chain: reads `samples` of `lines` where they are instead of an unpacked mosaic.
  void ConvertSamples(const FrameCall& call, const SourceLines& lines, const SampleRecipe& samples) const {
    ConvertMosaic(LineDriver(*this, call), {Out::kIndex, samples, {}}, lines);
  }

 private:
  MosaicRecipe Recipe() const {
    if (sizeof(T) == 1) return {Out::kIndex, {}, {}};
    return {Out::kIndex, SampleRecipe{simd::SourceReader::Mono16, {1, sizeof(T)}, 8 - mShift}, mShift};
  }

  std::uint32_t mShift;
};

}  // namespace ZrConvertersLib
