#pragma once

#include <ZrConvertersLib/PixelConverter.h>

#include "core/FormatTable.h"
#include "core/LineDriver.h"
#include "core/OutputWriters.h"

namespace ZrConvertersLib {

/// Base of the library's own converters, which prepare a frame once instead of each of its lines. Derived
/// offers ConvertFrame(const FrameCall&); what it writes is what PixelConverter's walk over ConvertLine and
/// ConvertLastLine would write.
template <class Derived>
class WholeFrameConverter : public PixelConverter {
 public:
  using PixelConverter::Convert;
  using PixelConverter::PixelConverter;

  /// The converter of a format to the destination of a writer, registered for that pair.
  template <long destination>
  WholeFrameConverter(const FormatRow& source, OutputWriter<destination>, std::uint32_t sourceBytes)
      : PixelConverter(source.id, destination, sourceBytes, OutputWriter<destination>::kByteSize, 1, 1,
                       true) {}
  template <long destination>
  WholeFrameConverter(const FormatRow& source, OutputWriter<destination> writer)
      : WholeFrameConverter(source, writer, source.bytes) {}

  ZrUtilsLib::Result Convert(const unsigned char* source, std::uint32_t sourceWidth,
                             std::uint32_t sourceHeight, unsigned char* destination,
                             std::uint32_t destinationWidth, std::uint32_t destinationHeight,
                             std::uint32_t width, std::uint32_t height, std::uint32_t flags,
                             std::uint32_t destinationPadding, unsigned char** pipelineBuffer,
                             std::uint32_t* pipelineBufferSize, std::uint32_t sourcePadding,
                             bool flipVertical, const RGBFilter* filter) const override {
    Self().ConvertFrame({source, sourceWidth, sourceHeight, destination, destinationWidth, destinationHeight,
                         width, height, flags, destinationPadding, pipelineBuffer, pipelineBufferSize,
                         sourcePadding, flipVertical, filter});
    return {};
  }

 protected:
  const Derived& Self() const { return static_cast<const Derived&>(*this); }
};

}  // namespace ZrConvertersLib
