#include "converters/FusedChain.h"

#include <limits>

namespace ZrConvertersLib {

namespace {

constexpr std::uint32_t kLargestStep = std::numeric_limits<std::int32_t>::max();

/// Whether the second stage stays within the lines and columns that the unpacker was given.
bool StaysInFrame(const FrameCall& call, std::uint32_t linesPerConvert) {
  const std::uint32_t rest = call.height % linesPerConvert;
  const bool finishesSingly = (call.flags & PixelConverter::FLAG_BAND_LAST) != 0 && call.height >= 2;
  return call.width <= call.sourceWidth && call.height <= call.sourceHeight && (rest == 0 || finishesSingly);
}

}  // namespace

ZrUtilsLib::Result OnePassConverter::Convert(const unsigned char* source, std::uint32_t sourceWidth,
                                             std::uint32_t sourceHeight, unsigned char* destination,
                                             std::uint32_t destinationWidth, std::uint32_t destinationHeight,
                                             std::uint32_t width, std::uint32_t height, std::uint32_t flags,
                                             std::uint32_t destinationPadding, unsigned char** pipelineBuffer,
                                             std::uint32_t* pipelineBufferSize, std::uint32_t sourcePadding,
                                             bool flipVertical, const RGBFilter* filter) const {
  // As the second stage is called: the intermediate image has no padding and is the right way up.
  const FrameCall call{
      source, sourceWidth, sourceHeight, destination,        destinationWidth, destinationHeight,
      width,  height,      flags,        destinationPadding, nullptr,          nullptr,
      0,      false,       filter};
  const PixelConverter& unpacker = FirstStage(*this);
  const std::uint32_t samples = sourceWidth * unpacker.GetWidthMultiplier();
  const std::uint32_t stride = unpacker.GetSourceByteSize(samples) + sourcePadding;
  const Band band = BandOf(flags, sourceHeight);
  const BandLayout layout = LayoutOf(unpacker, band, samples, sourceHeight, flipVertical);
  const SampleRecipe unpacked = Samples(flags);
  const bool groupsOverlap = flipVertical && samples % simd::FactsOf(unpacked.reader).group.pixels != 0;
  if (groupsOverlap || !StaysInFrame(call, GetLinesPerConvert()) || stride > kLargestStep ||
      layout.capacity > kLargestCapacity)
    return ComplexConverter::Convert(source, sourceWidth, sourceHeight, destination, destinationWidth,
                                     destinationHeight, width, height, flags, destinationPadding,
                                     pipelineBuffer, pipelineBufferSize, sourcePadding, flipVertical, filter);
  if (pipelineBuffer != nullptr && pipelineBufferSize != nullptr)
    Reserve(*pipelineBuffer, *pipelineBufferSize, static_cast<std::uint32_t>(layout.capacity));

  // A flip turns the band round: the line the reader finds first is then the last but those above it.
  const std::ptrdiff_t step = stride;
  const std::ptrdiff_t last = std::ptrdiff_t{band.lines} - 1 - 2 * std::ptrdiff_t{band.above};
  const SourceLines lines =
      flipVertical ? SourceLines{OffsetBy(source, last * step), -step} : SourceLines{source, step};
  ConvertSamples(call, lines, unpacked);
  return {};
}

}  // namespace ZrConvertersLib
