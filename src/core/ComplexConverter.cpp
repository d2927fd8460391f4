#include <ZrConvertersLib/ComplexConverter.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "core/ChainFrame.h"
#include "core/PointerOffset.h"

namespace ZrConvertersLib {

using ZrUtilsLib::Result;
using ZrUtilsLib::ResultCode;

static_assert(sizeof(void*) != 8 || sizeof(ComplexConverter) == 72);

namespace {

/// The larger of two counts that divide one another, otherwise their product.
std::uint32_t Combine(std::uint32_t a, std::uint32_t b) {
  const auto [low, high] = std::minmax(a, b);
  return low == 0 || high % low == 0 ? high : a * b;
}

/// `source` moved back by the lines above the band.
const unsigned char* BandSource(const PixelConverter& first, const FrameCall& frame, const Band& band) {
  const std::uint32_t stride =
      first.GetSourceByteSize(frame.sourceWidth * first.GetWidthMultiplier()) + frame.sourcePadding;
  return OffsetBy(frame.source, -static_cast<std::ptrdiff_t>(std::size_t{band.above} * stride));
}

/// Converts through `intermediate`, which holds the band's lines.
Result RunStages(const PixelConverter& first, const PixelConverter& second, const FrameCall& frame,
                 const Band& band, unsigned char* intermediate) {
  const std::uint32_t width = frame.sourceWidth;
  const Result result = first.Convert(BandSource(first, frame, band), width, band.lines, intermediate, width,
                                      band.lines, width, band.lines, frame.flags, 0, nullptr, nullptr,
                                      frame.sourcePadding, frame.flipVertical, nullptr);
  if (!result.IsSuccess()) return result;
  const std::size_t above = std::size_t{band.above} * second.GetSourceByteSize(width);
  return second.Convert(intermediate + above, width, frame.sourceHeight, frame.destination,
                        frame.destinationWidth, frame.destinationHeight, frame.width, frame.height,
                        frame.flags, frame.destinationPadding, nullptr, nullptr, 0, false, frame.filter);
}

}  // namespace

const PixelConverter& FirstStage(const ComplexConverter& chain) noexcept {
  return *chain.mFirst;
}

ComplexConverter::ComplexConverter(PixelConverter* first, PixelConverter* second)
    : PixelConverter(first->GetSourceType(), second->GetDestinationType(), first->GetSourceByteSize(),
                     second->GetDestinationByteSize(),
                     Combine(first->GetPipeliningSize(), second->GetPipeliningSize()),
                     Combine(first->GetLinesPerConvert(), second->GetLinesPerConvert()), true),
      mFirst(first),
      mSecond(second) {}

ComplexConverter::~ComplexConverter() {
  delete[] mBuffer;
  mBuffer = nullptr;
  mBufferSize = 0;
  mFirst = nullptr;
  mSecond = nullptr;
}

std::uint32_t ComplexConverter::GetSourceByteSize(std::uint32_t width) const {
  return mFirst->GetSourceByteSize(width);
}

std::uint32_t ComplexConverter::GetDestinationByteSize(std::uint32_t width) const {
  return mSecond->GetDestinationByteSize(width);
}

Result ComplexConverter::Convert(const unsigned char* source, std::uint32_t sourceWidth,
                                 std::uint32_t sourceHeight, unsigned char* destination,
                                 std::uint32_t destinationWidth, std::uint32_t destinationHeight,
                                 std::uint32_t width, std::uint32_t height, std::uint32_t flags,
                                 std::uint32_t destinationPadding, unsigned char** pipelineBuffer,
                                 std::uint32_t* pipelineBufferSize, std::uint32_t sourcePadding,
                                 bool flipVertical, const RGBFilter* filter) const {
  const Band band = BandOf(flags, sourceHeight);
  const BandLayout layout =
      LayoutOf(*mFirst, band, sourceWidth * mFirst->GetWidthMultiplier(), sourceHeight, flipVertical);
  if (layout.capacity > kLargestCapacity) return ResultCode::NotSupported;

  const bool own = pipelineBuffer == nullptr || pipelineBufferSize == nullptr;
  unsigned char*& buffer = own ? mBuffer : *pipelineBuffer;
  Reserve(buffer, own ? mBufferSize : *pipelineBufferSize, static_cast<std::uint32_t>(layout.capacity));

  // A second stage that converts pairs of lines may read past the band. With zeros there the result does not
  // depend on what the buffer held before.
  const std::size_t end = layout.front + layout.lines;
  std::memset(buffer + end, 0, layout.capacity - end);

  const FrameCall frame{
      source,        sourceWidth,  sourceHeight, destination,        destinationWidth, destinationHeight,
      width,         height,       flags,        destinationPadding, pipelineBuffer,   pipelineBufferSize,
      sourcePadding, flipVertical, filter};
  return RunStages(*mFirst, *mSecond, frame, band, buffer + layout.front);
}

}  // namespace ZrConvertersLib
