#pragma once

#include <ZrConvertersLib/ComplexConverter.h>

#include "converters/LineRecipe.h"
#include "core/ChainFrame.h"
#include "core/LineDriver.h"

namespace ZrConvertersLib {

/// A chain of the library's own stages, an unpacker and a converter of bytes. What the two would give through
/// an intermediate image comes out of one pass, in which unpacked samples never leave the first-level cache.
/// Where the intermediate image would show (a line's last group overwriting the beginning of the next, lines
/// read past the frame) the chain runs in two stages.
template <class First, class Second>
class FusedChain : public ComplexConverter, public OnePassChain {
 public:
  FusedChain(First* first, Second* second)
      : ComplexConverter(first, second), mUnpacker(first), mReader(second) {}

  using ComplexConverter::Convert;

  ZrUtilsLib::Result Convert(const unsigned char* source, std::uint32_t sourceWidth,
                             std::uint32_t sourceHeight, unsigned char* destination,
                             std::uint32_t destinationWidth, std::uint32_t destinationHeight,
                             std::uint32_t width, std::uint32_t height, std::uint32_t flags,
                             std::uint32_t destinationPadding, unsigned char** pipelineBuffer,
                             std::uint32_t* pipelineBufferSize, std::uint32_t sourcePadding,
                             bool flipVertical, const RGBFilter* filter) const override {
    // As the second stage is called: the intermediate image has no padding and is the right way up.
    const FrameCall call{
        source, sourceWidth, sourceHeight, destination,        destinationWidth, destinationHeight,
        width,  height,      flags,        destinationPadding, nullptr,          nullptr,
        0,      false,       filter};
    const std::uint32_t samples = sourceWidth * mUnpacker->GetWidthMultiplier();
    const std::uint32_t stride = mUnpacker->GetSourceByteSize(samples) + sourcePadding;
    const Band band = BandOf(flags, sourceHeight);
    const BandLayout layout = LayoutOf(*mUnpacker, band, samples, sourceHeight, flipVertical);
    const SampleRecipe unpacked = mUnpacker->Samples(flags);
    const bool groupsOverlap = flipVertical && samples % simd::FactsOf(unpacked.reader).group.pixels != 0;
    if (groupsOverlap || !StaysInFrame(call) || stride > kLargestStep || layout.capacity > kLargestCapacity)
      return ComplexConverter::Convert(
          source, sourceWidth, sourceHeight, destination, destinationWidth, destinationHeight, width, height,
          flags, destinationPadding, pipelineBuffer, pipelineBufferSize, sourcePadding, flipVertical, filter);
    if (pipelineBuffer != nullptr && pipelineBufferSize != nullptr)
      Reserve(*pipelineBuffer, *pipelineBufferSize, static_cast<std::uint32_t>(layout.capacity));

    // A flip turns the band round: the line the reader finds first is then the last but those above it.
    const std::ptrdiff_t step = stride;
    const std::ptrdiff_t last = std::ptrdiff_t{band.lines} - 1 - 2 * std::ptrdiff_t{band.above};
    const SourceLines lines =
        flipVertical ? SourceLines{OffsetBy(source, last * step), -step} : SourceLines{source, step};
    mReader->ConvertSamples(call, lines, unpacked);
    return {};
  }

 private:
  static constexpr std::uint32_t kLargestStep = std::numeric_limits<std::int32_t>::max();

  /// Whether the reader stays within the lines and columns that the unpacker was given.
  bool StaysInFrame(const FrameCall& call) const {
    const std::uint32_t rest = call.height % mReader->GetLinesPerConvert();
    const bool finishesSingly = (call.flags & FLAG_BAND_LAST) != 0 && call.height >= 2;
    return call.width <= call.sourceWidth && call.height <= call.sourceHeight &&
           (rest == 0 || finishesSingly);
  }

  const First* mUnpacker;
  const Second* mReader;
};

}  // namespace ZrConvertersLib
