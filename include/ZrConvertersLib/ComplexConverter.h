#pragma once

#include <ZrConvertersLib/Export.h>
#include <ZrConvertersLib/PixelConverter.h>

#include <cstdint>

/// @file
/// Two converters in a row.

namespace ZrConvertersLib {

/// Converts through an intermediate pixel type: the first stage fills a buffer that the second one reads.
/// Registers itself for (first's source type, second's destination type) unless that pair has a converter.
///
/// Thread-safety: a call that passes no buffer of its own uses the converter's; such calls on one
/// ComplexConverter must not overlap. Calls that each pass their own may.
class ZR_EXPORT ComplexConverter : public PixelConverter {
 public:
  /// The stages are not owned and must outlive this converter.
  ComplexConverter(PixelConverter* first, PixelConverter* second);
  ~ComplexConverter() override;

  using PixelConverter::Convert;
  using PixelConverter::GetDestinationByteSize;
  using PixelConverter::GetSourceByteSize;

  std::uint32_t GetSourceByteSize(std::uint32_t width) const override;
  std::uint32_t GetDestinationByteSize(std::uint32_t width) const override;

  /// As PixelConverter::Convert, with these differences.
  ///
  /// `*pipelineBuffer` is the intermediate buffer and `*pipelineBufferSize` its capacity in bytes; begin with
  /// null and 0. A buffer that is too small is freed with delete[] and replaced by a larger one from new[].
  /// Keep both values for the next call, and delete[] the buffer in the end. When either pointer is null, the
  /// converter uses its own buffer.
  ///
  /// With FLAG_BAND_* bits the first stage also converts the lines around the band that the second stage may
  /// read.
  ///
  /// Returns the result of the first stage that fails, or NotSupported (26), with nothing written, when the
  /// intermediate image is too large for a 32-bit capacity. Throws std::bad_alloc when there is no memory for
  /// the buffer; the buffer is then null and its capacity 0.
  ZrUtilsLib::Result Convert(const unsigned char* source, std::uint32_t sourceWidth,
                             std::uint32_t sourceHeight, unsigned char* destination,
                             std::uint32_t destinationWidth, std::uint32_t destinationHeight,
                             std::uint32_t width, std::uint32_t height, std::uint32_t flags,
                             std::uint32_t destinationPadding, unsigned char** pipelineBuffer,
                             std::uint32_t* pipelineBufferSize, std::uint32_t sourcePadding,
                             bool flipVertical, const RGBFilter* filter) const override;

 private:
  friend const PixelConverter& FirstStage(const ComplexConverter& chain) noexcept;

  mutable unsigned char* mBuffer = nullptr;
  mutable std::uint32_t mBufferSize = 0;
  PixelConverter* mFirst;
  PixelConverter* mSecond;
};

}  // namespace ZrConvertersLib
