#pragma once

#include <ZrConvertersLib/Export.h>
#include <ZrUtilsLib/Result.h>

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

/// @file
/// What a pixel format is and how large its frames are.
///
/// All functions here may be called from any thread at any time.

namespace ZrConvertersLib {

/// The camera families that share one kind of pixel.
enum class FormatFamily : std::uint8_t { Rgb, Mono, YCbCr, Bayer, Scf1, BiColor };

/// The family's name in words, "Mono" for instance; empty for a value that is no family.
ZR_EXPORT std::string_view FamilyName(FormatFamily family) noexcept;

/// The samples of a pixel, or of the pixels that share chroma, in memory order.
enum class ChannelOrder : std::uint8_t {
  Mono,
  Bayer,    ///< one site of the mosaic
  Scf1,     ///< one site of the mosaic
  BiColor,  ///< two sites
  Rgb,
  Bgr,
  RgbA,
  BgrA,
  YCbCr,     ///< 4:4:4
  CbYCr,     ///< 4:4:4
  YCbYCr,    ///< 4:2:2, two pixels
  CbYCrY,    ///< 4:2:2, two pixels
  YYCbYYCr,  ///< 4:1:1, four pixels
  CbYYCrYY,  ///< 4:1:1, four pixels
};

/// How samples lie in memory. Everything is little-endian.
enum class Packing : std::uint8_t {
  Plain,     ///< each sample in the low bits of a byte or word of its own
  Dense,     ///< one sample after another without gaps, from the least significant bit of the first byte up
  Pair,      ///< two samples in three bytes: their high 8 bits outside, their low bits in the middle byte
  Word,      ///< one pixel in one word: RGB565p red highest; RGB10p32 red lowest
  V1Packed,  ///< the packed colour layouts of GigE Vision 1: bytes of low bits beside bytes of high bits
  Planar,    ///< one plane per channel, each as Plain
};

/// Facts of one pixel format. All sizes are those in memory, not those that PixelType registers.
struct FormatInfo {
  long id = 0;            ///< type ID, see PixelTypes.h
  std::string_view name;  ///< the library's name, "Mono12p" for instance
  FormatFamily family = FormatFamily::Rgb;
  ChannelOrder order = ChannelOrder::Rgb;
  Packing packing = Packing::Plain;
  unsigned bitsPerPixel = 0;   ///< bits of memory per pixel, all planes together
  unsigned depth = 0;          ///< significant bits of one sample (565: of red and blue; green has one more)
  unsigned sampleBits = 0;     ///< bits of memory a sample takes; Word and V1Packed: the whole pixel
  bool isSigned = false;       ///< two's complement samples
  unsigned groupPixels = 1;    ///< the fewest pixels that fill whole bytes (of one plane)
  unsigned groupBytes = 0;     ///< those bytes
  unsigned planes = 1;         ///< planes, which follow one another in the frame
  unsigned widthMultiple = 1;  ///< a frame's width must be a multiple of this
  std::string_view layout;     ///< bit layout in words
  bool takesFilter = false;    ///< as a destination it applies the RGBFilter
  bool isSource = false;       ///< the library converts from it
  bool isDestination = false;  ///< the library converts to it
};

/// All formats that the library knows by name, in the order of their IDs. Static storage that is never
/// destroyed, so destructors of static objects may use it, too; allocates nothing.
ZR_EXPORT std::span<const FormatInfo> Formats();

/// The format of that ID, or null.
ZR_EXPORT const FormatInfo* FindFormatInfo(long id);

/// The format of that name, or null. Exact spelling, the library's names only; ReadFormat takes others, too.
ZR_EXPORT const FormatInfo* FindFormatInfo(std::string_view name);

/// IDs of all formats that the source converts to, ascending; empty when there are none.
ZR_EXPORT std::vector<long> DestinationsOf(long source);

/// Sizes of one frame, in bytes.
///
/// A packed line begins at a whole byte and takes its bits rounded up to whole bytes. Planes follow one
/// another at `bytesPerPlane`.
struct FrameLayout {
  std::uint64_t bytesPerLine = 0;   ///< bytes that the pixels of one line take (in one plane)
  std::uint64_t stride = 0;         ///< bytes from one line to the next
  unsigned planes = 0;              ///< planes of the frame
  std::uint64_t bytesPerPlane = 0;  ///< stride x height
  std::uint64_t frameBytes = 0;     ///< bytes of the whole frame, padding of its last line included
  std::uint64_t leastBytes = 0;  ///< the same without the padding of its last line: what a buffer must hold
};

/// Sizes of a frame of the given format.
/// @param id      type ID
/// @param width   pixels per line
/// @param height  lines
/// @param stride  bytes from one line to the next; 0: lines follow one another without a gap
/// @param layout  receives the sizes; left as it was when the result is no success
/// @return success, or FrameError::UnknownFormat, ZeroSize, WidthNotAllowed, HeightNotAllowed,
/// StrideTooSmall,
///         FrameTooLarge (sizes beyond what FrameConverter takes, or beyond 64 bits)
ZR_EXPORT ZrUtilsLib::Result DescribeFrame(long id, std::uint64_t width, std::uint64_t height,
                                           std::uint64_t stride, FrameLayout& layout);

}  // namespace ZrConvertersLib
