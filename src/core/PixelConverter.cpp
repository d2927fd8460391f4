#include <ZrConvertersLib/PixelConverter.h>

#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/RGBFilter.h>

#include <cstddef>

#include "core/PointerOffset.h"

namespace ZrConvertersLib {

using ZrUtilsLib::Result;
using ZrUtilsLib::ResultCode;

static_assert(sizeof(PixelConverter) == 40);
static_assert(sizeof(PixelConverterContext) == 56);

namespace {

constexpr std::uint32_t kBayerOrders = PixelConverter::FLAG_BAYER_GRBG | PixelConverter::FLAG_BAYER_GBRG |
                                       PixelConverter::FLAG_BAYER_RGGB | PixelConverter::FLAG_BAYER_BGGR;

/// A step between lines is a 32-bit figure that counts as signed.
std::ptrdiff_t Step(std::uint32_t bytes) {
  return static_cast<std::int32_t>(bytes);
}

void Advance(PixelConverterContext& context, std::ptrdiff_t sourceStep, std::ptrdiff_t destinationStep) {
  context.mSource = OffsetBy(context.mSource, sourceStep);
  context.mDestination = OffsetBy(context.mDestination, destinationStep);
}

/// From the start of the destination to its last whole block, where a flipped conversion begins. Without a
/// whole block that is one block before the start.
std::ptrdiff_t LastBlockOffset(std::uint32_t height, std::uint32_t lines, std::uint32_t stride) {
  const std::uint32_t blocks = height / lines;
  if (blocks == 0) return -Step(lines * stride);
  return static_cast<std::ptrdiff_t>((blocks - 1) * lines * stride);
}

/// Lines covered by whole blocks: rounded down, so that the rest can follow singly, or up.
std::uint32_t BlockLines(std::uint32_t height, std::uint32_t lines, bool roundDown) {
  while (height % lines != 0) height = roundDown ? height - 1 : height + 1;
  return height;
}

}  // namespace

PixelConverter::PixelConverter(const long& sourceType, const long& destinationType,
                               std::uint32_t sourceByteSize, std::uint32_t destinationByteSize,
                               std::uint32_t pipeliningSize, std::uint32_t linesPerConvert, bool autoRegister)
    : mSourceType(sourceType),
      mDestinationType(destinationType),
      mSourceByteSize(sourceByteSize),
      mDestinationByteSize(destinationByteSize),
      mPipeliningSize(pipeliningSize),
      mLinesPerConvert(linesPerConvert) {
  if (autoRegister && !PixelTypeFactory::HasConverter(sourceType, destinationType)) {
    PixelTypeFactory::RegisterPixelConverter(*this);
  }
}

PixelConverter::~PixelConverter() = default;

const long& PixelConverter::GetSourceType() const {
  return mSourceType;
}

const long& PixelConverter::GetDestinationType() const {
  return mDestinationType;
}

std::uint32_t PixelConverter::GetSourceByteSize() const {
  return mSourceByteSize;
}

std::uint32_t PixelConverter::GetSourceByteSize(std::uint32_t width) const {
  return mSourceByteSize * width;
}

std::uint32_t PixelConverter::GetDestinationByteSize() const {
  return mDestinationByteSize;
}

std::uint32_t PixelConverter::GetDestinationByteSize(std::uint32_t width) const {
  return mDestinationByteSize * width;
}

std::uint32_t PixelConverter::GetPipeliningSize() const {
  return mPipeliningSize;
}

std::uint32_t PixelConverter::GetLinesPerConvert() const {
  return mLinesPerConvert;
}

std::uint32_t PixelConverter::GetWidthMultiplier() const {
  return 1;
}

Result PixelConverter::ConvertLastLine(const PixelConverterContext&, std::uint32_t) const {
  return ResultCode::NotSupported;
}

Result PixelConverter::Convert(const PixelConverterContext&, unsigned char*) const {
  return ResultCode::NotSupported;
}

Result PixelConverter::ConvertLine(const PixelConverterContext&, std::uint32_t) const {
  return ResultCode::NotSupported;
}

Result PixelConverter::Convert(const unsigned char* source, std::uint32_t sourceWidth,
                               std::uint32_t sourceHeight, unsigned char* destination,
                               std::uint32_t destinationWidth, std::uint32_t destinationHeight,
                               std::uint32_t width, std::uint32_t height, std::uint32_t flags,
                               std::uint32_t destinationPadding, unsigned char**, std::uint32_t*,
                               std::uint32_t sourcePadding, bool flipVertical,
                               const RGBFilter* filter) const {
  const std::uint32_t multiplier = GetWidthMultiplier();
  width *= multiplier;

  PixelConverterContext context;
  context.mFilter = filter != nullptr ? filter : &sRGBFilter;
  context.mFlags = (flags & kBayerOrders) != 0 ? flags : flags | FLAG_BAYER_GRBG;
  context.mSourceStride = GetSourceByteSize(sourceWidth * multiplier) + sourcePadding;
  context.mSourceHeight = sourceHeight;
  context.mDestinationStride = GetDestinationByteSize(destinationWidth * multiplier) + destinationPadding;
  context.mDestinationHeight = destinationHeight;
  context.mSource = source;
  context.mDestination = destination;

  const std::uint32_t lines = GetLinesPerConvert();
  const std::ptrdiff_t direction = flipVertical ? -1 : 1;
  if (flipVertical) {
    context.mDestination = OffsetBy(destination, LastBlockOffset(height, lines, context.mDestinationStride));
  }

  const bool finishSingly = (flags & FLAG_BAND_LAST) != 0;
  const std::uint32_t blockLines = BlockLines(height, lines, finishSingly);
  for (context.mLine = 0; context.mLine < blockLines; context.mLine += lines) {
    ConvertLine(context, width);
    Advance(context, Step(lines * context.mSourceStride),
            direction * Step(lines * context.mDestinationStride));
  }
  if (finishSingly) {
    for (context.mLine = blockLines; context.mLine < height; ++context.mLine) {
      ConvertLastLine(context, width);
      Advance(context, Step(context.mSourceStride), direction * Step(context.mDestinationStride));
    }
  }
  context.mFilter = nullptr;
  return ResultCode::Success;
}

}  // namespace ZrConvertersLib
