#pragma once

#include <ZrConvertersLib/Development.h>
#include <ZrConvertersLib/Export.h>
#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FrameErrors.h>
#include <ZrUtilsLib/Result.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

/// @file
/// The checked interface: whole frames in, whole pictures out, or a named refusal.
///
/// PixelConverter::Convert trusts its caller; a FrameConverter checks every argument. A call either converts
/// every pixel of the picture, reading no byte outside the source view and writing none outside the picture,
/// or it writes nothing and returns a code of FrameErrors.h. Pixels that the raw call defines have the same
/// bytes here, and most of a frame is converted by the raw call straight into the caller's buffer.
///
/// @code
///   using namespace ZrConvertersLib;
///   FrameConverter converter;
///   if (auto r = converter.Configure(PixelTypeIds::Mono12p, PixelTypeIds::RGB8, 1920, 1080); !r.IsSuccess())
///     return fail(ResultText(r));
///   std::vector<std::uint8_t> picture(converter.DestinationLayout().frameBytes);
///   auto r = converter.Convert(SourceView::Of(frame, 1920, 1080), DestinationView::Of(picture, 1920, 1080));
/// @endcode

namespace ZrConvertersLib {

class RGBFilter;

/// The colours at the top left of a mosaic, in the terms of its family. GRBG is the default; for BiColor and
/// SCF1 it stands for their first pattern.
enum class MosaicPattern : std::uint8_t {
  GRBG,  ///< Bayer: the colours of the first 2 x 2 sites, row by row
  GBRG,
  RGGB,
  BGGR,
  RGBG,  ///< BiColor: the two samples of an even pixel, then those of an odd one
  BGRG,
  GRGB,
  GBGR,
  WGWR,  ///< SCF1: white, and the colours of the first line's first two cells
  WBWG,
  WRWG,
  WGWB
};

/// The pattern's name, "RGGB" for instance; empty for a value that is no pattern. Static storage.
ZR_EXPORT std::string_view PatternName(MosaicPattern pattern) noexcept;

/// How a mosaic becomes colour.
enum class Demosaic : std::uint8_t {
  Fast,         ///< one colour for each tile: 2 x 2 pixels of Bayer, 2 x 1 of BiColor, 4 x 4 of SCF1
  Interpolate,  ///< every pixel from its neighbours
  /// Along the direction that changes less, at full depth. Of Bayer sources only: the others are
  /// interpolated.
  Directional
};

/// How luma and chroma become colour.
enum class ColourMatrix : std::uint8_t {
  Bt601,  ///< BT.601, video range
  Bt709,  ///< BT.709, video range
  Jpeg    ///< BT.601 coefficients, full range (JFIF)
};

/// The order of the bits in packed samples of a source.
enum class PackingOrder : std::uint8_t {
  Type,        ///< as the type's layout says
  GigEVision,  ///< PixelConverter::FLAG_PACKED_GIGE_VISION
  Csi2         ///< PixelConverter::FLAG_PACKED_CSI2; a line must be a whole number of groups
};

/// The bit layout in words of a format whose samples lie in that order: for Type what FormatInfo::layout
/// says; empty where the format has no such order. Static storage.
ZR_EXPORT std::string_view PackingLayout(long format, PackingOrder order) noexcept;

/// A rectangle of the source frame, in pixels. Width or height 0: up to the frame's edge.
struct Region {
  std::uint32_t x = 0;
  std::uint32_t y = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

/// What is to be done with a frame. The defaults convert it as it is.
struct FrameOptions {
  MosaicPattern pattern = MosaicPattern::GRBG;  ///< Bayer, BiColor, SCF1: pattern of the whole source frame
  Demosaic demosaic = Demosaic::Fast;           ///< the same
  ColourMatrix matrix = ColourMatrix::Bt601;    ///< YCbCr sources
  PackingOrder packing = PackingOrder::Type;    ///< packed sources that have such an order
  const RGBFilter* filter =
      nullptr;                  ///< for 8-bit colour; null: none. Must outlive every Convert that uses it
  bool flipVertical = false;    ///< the picture's last line comes first
  bool flipHorizontal = false;  ///< the picture's last column comes first
  Region region;  ///< the part of the source to convert: exactly that rectangle of the whole frame's picture
  const Development* development =
      nullptr;  ///< levels, gains, matrix and curve at full depth; null: none. Read by Configure only
  bool fullDepth = false;  ///< YCbCr sources of 10 and 12 bits keep their depth; else they are cut to 8 bits

  /// Sets pattern, demosaic, matrix and packing as PixelConverter::Convert reads them from its flags (no
  /// pattern bit: GRBG; of several, the highest; no matrix bit: BT.601; both packing bits: CSI-2). Takes the
  /// flags of a FormatCode or V4l2Format as well.
  ZR_EXPORT void SetFlags(unsigned flags) noexcept;

  /// The flags of PixelConverter::Convert for pattern, demosaic, matrix and packing. The raw call has no
  /// directional demosaic; its flags are those of the interpolating one.
  ZR_EXPORT unsigned GetFlags() const noexcept;
};

/// A source frame in memory. Not owned; must stay as it is while a conversion runs.
struct SourceView {
  const void* data = nullptr;  ///< first byte of the first line
  std::size_t size = 0;        ///< bytes that may be read from there
  std::size_t stride = 0;      ///< bytes from one line to the next; 0: lines without a gap
  std::uint32_t width = 0;     ///< pixels per line
  std::uint32_t height = 0;    ///< lines

  /// A view of any contiguous range of plain elements (vector, array, span).
  template <typename Range>
  static SourceView Of(const Range& range, std::uint32_t width, std::uint32_t height,
                       std::size_t stride = 0) noexcept {
    const auto bytes = std::as_bytes(std::span(range));
    return {bytes.data(), bytes.size(), stride, width, height};
  }
};

/// A place for a destination picture in memory. Not owned. Planes follow one another at stride x height
/// bytes, so a planar picture's size is that of its three planes.
struct DestinationView {
  void* data = nullptr;      ///< first byte of the first line
  std::size_t size = 0;      ///< bytes that may be written from there
  std::size_t stride = 0;    ///< bytes from one line to the next; 0: lines without a gap
  std::uint32_t width = 0;   ///< pixels per line
  std::uint32_t height = 0;  ///< lines

  /// A view of any contiguous range of plain, writable elements.
  template <typename Range>
  static DestinationView Of(Range&& range, std::uint32_t width, std::uint32_t height,
                            std::size_t stride = 0) noexcept {
    const auto bytes = std::as_writable_bytes(std::span(range));
    return {bytes.data(), bytes.size(), stride, width, height};
  }
};

/// Converts frames of one kind into pictures of one kind.
///
/// Configure it once and call it for every frame: Configure allocates all memory that is ever needed, Convert
/// none. One thread may use an object at a time; different objects may work in parallel, also on bands of the
/// same frame. Objects can be moved but not copied; a moved-from object is not configured.
class ZR_EXPORT FrameConverter {
 public:
  FrameConverter() noexcept;
  ~FrameConverter();
  FrameConverter(FrameConverter&&) noexcept;
  FrameConverter& operator=(FrameConverter&&) noexcept;
  FrameConverter(const FrameConverter&) = delete;
  FrameConverter& operator=(const FrameConverter&) = delete;

  /// Prepares the conversion of frames of `source` with `width` x `height` pixels into pictures of
  /// `destination`.
  ///
  /// The picture has the size of the region. A region, a band or a flipped picture has the very pixels that
  /// the conversion of the whole frame gives, mosaics included. The last two lines of a Bayer frame of odd
  /// height are always made by the fast demosaic. A conversion between mosaics (Bayer12p to Bayer16 for
  /// instance) keeps the samples; a region or flip may change the pattern, see DestinationPattern().
  ///
  /// @return success or UnknownFormat, NoConverter, ZeroSize, WidthNotAllowed, FrameTooSmall,
  ///         FrameTooLarge, InvalidPattern, InvalidDemosaic, InvalidMatrix, InvalidPacking, RegionOutside,
  ///         RegionNotAllowed, InvalidTone, OutOfMemory; without success the object stays as it was
  ZrUtilsLib::Result Configure(long source, long destination, std::uint32_t width, std::uint32_t height,
                               const FrameOptions& options = {});

  /// Whether Configure has succeeded.
  bool IsConfigured() const noexcept;

  /// Converts a frame.
  /// @return success or NotConfigured, NullSource, NullDestination, SourceSizeDiffers,
  /// DestinationSizeDiffers,
  ///         StrideTooSmall, FrameTooLarge, SourceTooSmall, DestinationTooSmall, BuffersOverlap
  ZrUtilsLib::Result Convert(const SourceView& source, const DestinationView& destination);

  /// Converts lines [first, first + count) of the picture and writes no others. The views are those of the
  /// whole frame and the whole picture. Any split into bands gives the same bytes as Convert, in any order,
  /// also when several objects convert different bands of the same picture at once.
  /// @return as Convert, or LinesOutside
  ZrUtilsLib::Result ConvertLines(std::uint32_t first, std::uint32_t count, const SourceView& source,
                                  const DestinationView& destination);

  /// Sizes of the source frame without padding; all zero before Configure.
  FrameLayout SourceLayout() const noexcept;

  /// Sizes of the destination picture without padding; all zero before Configure.
  FrameLayout DestinationLayout() const noexcept;

  /// Pixels per line of the picture, 0 before Configure.
  std::uint32_t Width() const noexcept;

  /// Lines of the picture, 0 before Configure.
  std::uint32_t Height() const noexcept;

  /// Pattern of the picture when it is itself a mosaic (Bayer12p converted to Bayer16 for instance).
  MosaicPattern DestinationPattern() const noexcept;

 private:
  struct State;
  std::unique_ptr<State> mState;
};

/// Converts one frame: Configure and Convert in one call, which allocates and frees memory.
ZR_EXPORT ZrUtilsLib::Result ConvertFrame(long sourceType, const SourceView& source, long destinationType,
                                          const DestinationView& destination,
                                          const FrameOptions& options = {});

}  // namespace ZrConvertersLib
