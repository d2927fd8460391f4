#include <ZrConvertersLib/PixelConverter.h>

#include <ZrConvertersLib/PixelTypeFactory.h>

#include "core/LineDriver.h"

namespace ZrConvertersLib {

using ZrUtilsLib::Result;
using ZrUtilsLib::ResultCode;

static_assert(sizeof(void*) != 8 || sizeof(PixelConverter) == 40);
static_assert(sizeof(void*) != 8 || sizeof(PixelConverterContext) == 56);

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
                               std::uint32_t destinationPadding, unsigned char** pipelineBuffer,
                               std::uint32_t* pipelineBufferSize, std::uint32_t sourcePadding,
                               bool flipVertical, const RGBFilter* filter) const {
  const FrameCall call{
      source,        sourceWidth,  sourceHeight, destination,        destinationWidth, destinationHeight,
      width,         height,       flags,        destinationPadding, pipelineBuffer,   pipelineBufferSize,
      sourcePadding, flipVertical, filter};
  LineDriver driver(*this, call);
  driver.Walk(
      [this](const PixelConverterContext& context, std::uint32_t pixels) { ConvertLine(context, pixels); },
      [this](const PixelConverterContext& context, std::uint32_t pixels) {
        ConvertLastLine(context, pixels);
      });
  return ResultCode::Success;
}

}  // namespace ZrConvertersLib
