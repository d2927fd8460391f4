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

/// Facts of one pixel format. All sizes are what lies in memory, not what the type catalogue registers.
struct FormatInfo {
  long id = 0;            ///< type ID, see PixelTypes.h
  std::string_view name;  ///< the library's name, "Mono12p" for instance
  FormatFamily family = FormatFamily::Rgb;
  unsigned bitsPerPixel = 0;    ///< bits of memory per pixel, all planes together
  unsigned depth = 0;           ///< significant bits of one sample
  unsigned planes = 1;          ///< planes, which follow one another in the frame
  unsigned widthMultiple = 1;   ///< a frame's width must be a multiple of this
  unsigned heightMultiple = 1;  ///< a frame's height must be a multiple of this
  bool isSource = false;        ///< the library converts from it
  bool isDestination = false;   ///< the library converts to it
  std::string_view layout;      ///< bit layout in words
};

/// All formats that the library knows by name, in the order of their IDs. Static storage.
ZR_EXPORT std::span<const FormatInfo> Formats();

/// The format of that ID, or null.
ZR_EXPORT const FormatInfo* FindFormatInfo(long id);

/// The format of that name (exact spelling, the library's names only; FormatCodes.h knows more), or null.
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
