#pragma once

#include <ZrConvertersLib/Export.h>
#include <ZrConvertersLib/PixelConverterContext.h>
#include <ZrUtilsLib/Result.h>

#include <cstdint>

/// @file
/// The converter interface.

namespace ZrConvertersLib {

class RGBFilter;

/// Converts images from one pixel type to another. Get one from PixelTypeFactory, or derive from it and
/// override ConvertLine (and GetLinesPerConvert and ConvertLastLine when lines are converted in blocks).
///
/// Thread-safety: immutable after construction; one converter may serve any number of threads at once, except
/// a ComplexConverter that uses its own intermediate buffer.
///
/// This is the raw interface: it validates nothing. Buffers must be as large as the strides say, source and
/// destination must not overlap, and some formats read or write past the width (whole groups of packed
/// pixels) or past the height (whole blocks of lines), see Convert.
///
/// Depth: Bayer mosaics and YCbCr are computed on the upper 8 bits of each sample, whatever the depth of the
/// destination; all other sources, BiColor and SCF1 mosaics included, on up to 16 bits.
class ZR_EXPORT PixelConverter {
 public:
  /// @name Colours of the first two rows of a Bayer mosaic, read row by row
  /// Without any of these bits the pattern is GRBG. Of several, BGGR wins, then RGGB, then GBRG.
  /// @{
  static constexpr std::uint32_t FLAG_BAYER_GRBG = 0x10;
  static constexpr std::uint32_t FLAG_BAYER_GBRG = 0x20;
  static constexpr std::uint32_t FLAG_BAYER_RGGB = 0x40;
  static constexpr std::uint32_t FLAG_BAYER_BGGR = 0x80;
  /// @}
  /// Interpolate the colours of Bayer and SCF1 mosaics instead of taking one colour per tile.
  static constexpr std::uint32_t FLAG_BAYER_INTERPOLATE = 0x100;

  /// @name BiColor mosaics: interpolation, and the pattern (without any of its bits RGBG)
  /// @{
  static constexpr std::uint32_t FLAG_BICOLOR_INTERPOLATE = 0x200;
  static constexpr std::uint32_t FLAG_BICOLOR_RGBG = 0x1000;
  static constexpr std::uint32_t FLAG_BICOLOR_BGRG = 0x2000;
  static constexpr std::uint32_t FLAG_BICOLOR_GRGB = 0x4000;
  static constexpr std::uint32_t FLAG_BICOLOR_GBGR = 0x8000;
  /// @}

  /// @name Matrix of YCbCr sources
  /// Without either bit the matrix is BT.601 in video range. FLAG_YCBCR_JPG wins over FLAG_YCBCR_709.
  /// @{
  static constexpr std::uint32_t FLAG_YCBCR_JPG = 0x10000;  ///< full range, as JPEG files have it
  static constexpr std::uint32_t FLAG_YCBCR_709 = 0x40000;  ///< BT.709 in video range
  /// @}

  /// @name Bit order of packed samples
  /// Some cameras order the bits of a packed type in another way. Without these flags they lie as
  /// docs/formats.md draws them. A flag has no effect on types that it does not name, and none on the size of
  /// a line.
  /// @{

  /// Mono12Packed and Bayer12Packed: the low bits of the first sample in bits 3..0 of the middle byte, of the
  /// second in 7..4. Mono10Packed and Bayer10Packed: in bits 1..0 and 5..4. GigE Vision cameras use this
  /// order.
  static constexpr std::uint32_t FLAG_PACKED_GIGE_VISION = 0x00100000;

  /// Mono10p, 12p and 14p, Bayer10p, 12p and 14p, YCbCr422_10p and YCbCr422_10p_CbYCrY: the upper eight bits
  /// of each sample of a group first, then the low bits of all of them. This is the order of MIPI CSI-2; V4L2
  /// marks it by a P at the end of the name.
  static constexpr std::uint32_t FLAG_PACKED_CSI2 = 0x00200000;
  /// @}

  /// @name Which band of a larger frame the call converts
  /// A frame may be converted in bands of lines. These bits say on which sides of the band the frame goes on,
  /// so that a demosaic may read the lines there: below the first band, above the last one, on both sides of
  /// a middle one. The source buffer must then hold two more lines on each of those sides.
  ///
  /// FLAG_BAND_LAST also converts only the whole blocks of lines with ConvertLine and the remaining lines one
  /// by one with ConvertLastLine. Pass FLAG_BAND_FIRST | FLAG_BAND_LAST for a whole frame of odd height.
  /// @{
  static constexpr std::uint32_t FLAG_BAND_FIRST = 0x01000000;
  static constexpr std::uint32_t FLAG_BAND_MIDDLE = 0x02000000;
  static constexpr std::uint32_t FLAG_BAND_LAST = 0x04000000;
  /// @}

  /// @name Pattern of sparse colour filter mosaics (SCF1); without any of these bits WGWR
  /// @{
  static constexpr std::uint32_t FLAG_SCF_WGWR = 0x10000000;
  static constexpr std::uint32_t FLAG_SCF_WBWG = 0x20000000;
  static constexpr std::uint32_t FLAG_SCF_WRWG = 0x40000000;
  static constexpr std::uint32_t FLAG_SCF_WGWB = 0x80000000;
  /// @}

  /// @param sourceType, destinationType  type IDs
  /// @param sourceByteSize, destinationByteSize  bytes per pixel, of one plane when planar
  /// @param pipeliningSize  lines of context that the converter reads
  /// @param linesPerConvert  lines that one call of ConvertLine converts, at least 1
  /// @param autoRegister  registers the converter for its pair, unless the pair has one already; the
  /// converter
  ///        must then live as long as the registry is used
  PixelConverter(const long& sourceType, const long& destinationType, std::uint32_t sourceByteSize,
                 std::uint32_t destinationByteSize, std::uint32_t pipeliningSize,
                 std::uint32_t linesPerConvert, bool autoRegister);
  virtual ~PixelConverter();

  PixelConverter(const PixelConverter&) = delete;
  PixelConverter& operator=(const PixelConverter&) = delete;

  virtual const long& GetSourceType() const;
  virtual const long& GetDestinationType() const;

  virtual std::uint32_t GetSourceByteSize() const;
  /// Bytes of a source line of `width` samples: pixels times GetWidthMultiplier().
  virtual std::uint32_t GetSourceByteSize(std::uint32_t width) const;

  virtual std::uint32_t GetDestinationByteSize() const;
  /// Bytes of a destination line of `width` samples; of one plane when planar.
  virtual std::uint32_t GetDestinationByteSize(std::uint32_t width) const;

  virtual std::uint32_t GetPipeliningSize() const;
  virtual std::uint32_t GetLinesPerConvert() const;

  /// Samples per pixel by which Convert multiplies its widths; 1 unless the source is a stream of packed
  /// samples.
  virtual std::uint32_t GetWidthMultiplier() const;

  /// Converts the single line at `context`: called for each line after the last whole block when
  /// FLAG_BAND_LAST is set. Returns NotSupported (26) unless overridden; Convert ignores the result.
  virtual ZrUtilsLib::Result ConvertLastLine(const PixelConverterContext& context, std::uint32_t width) const;

  /// Not used: returns NotSupported (26) in every converter of the library.
  virtual ZrUtilsLib::Result Convert(const PixelConverterContext& context, unsigned char* destination) const;

  /// Converts the GetLinesPerConvert() lines that begin at `context`, each `width` samples wide. Returns
  /// NotSupported (26) unless overridden; Convert ignores the result.
  virtual ZrUtilsLib::Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const;

  /// Converts `height` lines of `width` pixels from `source` to `destination`. Always returns success.
  /// Exceptions of an overridden ConvertLine or ConvertLastLine reach the caller.
  ///
  /// A line begins GetSourceByteSize(sourceWidth x m) + `sourcePadding` bytes after the one before it, where
  /// m is GetWidthMultiplier(); the destination likewise. Planes follow one another at a distance of stride x
  /// `destinationHeight` bytes. Paddings are in bytes; no pointer or stride needs an alignment.
  ///
  /// `width` must not exceed `destinationWidth` when the destination is planar. Planes of a line would
  /// overlap or lines run into the next, and the bytes there differ between CPU levels.
  ///
  /// The library's own converters take up to 144 KiB of stack, most of it when SCF1 mosaics are interpolated,
  /// and allocate nothing but the intermediate buffer of a ComplexConverter.
  ///
  /// With L lines per block (GetLinesPerConvert) and a height that is no multiple of L, the last block reads
  /// and writes up to L - 1 lines past `height`, unless FLAG_BAND_LAST is set. `flipVertical` writes the
  /// blocks from the bottom up and keeps the order of lines within a block; the lines of an incomplete last
  /// block that exceed the height then lie before `destination`.
  ///
  /// @param flags FLAG_* bits.
  /// @param pipelineBuffer, pipelineBufferSize  intermediate buffer of a ComplexConverter (see there); may be
  /// null.
  /// @param filter tone tables for 8-bit colour destinations; null for none. Must not change during the call.
  virtual ZrUtilsLib::Result Convert(const unsigned char* source, std::uint32_t sourceWidth,
                                     std::uint32_t sourceHeight, unsigned char* destination,
                                     std::uint32_t destinationWidth, std::uint32_t destinationHeight,
                                     std::uint32_t width, std::uint32_t height, std::uint32_t flags,
                                     std::uint32_t destinationPadding, unsigned char** pipelineBuffer,
                                     std::uint32_t* pipelineBufferSize, std::uint32_t sourcePadding,
                                     bool flipVertical, const RGBFilter* filter) const;

 private:
  long mSourceType;
  long mDestinationType;
  std::uint32_t mSourceByteSize;
  std::uint32_t mDestinationByteSize;
  std::uint32_t mPipeliningSize;
  std::uint32_t mLinesPerConvert;
};

}  // namespace ZrConvertersLib
