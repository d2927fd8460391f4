#pragma once

#include <ZrConvertersLib/Export.h>
#include <ZrUtilsLib/Result.h>

#include <cstdint>
#include <span>
#include <string_view>

/// @file
/// The 32-bit codes and names of the GenICam Pixel Format Naming Convention (PFNC), as cameras report them.
///
/// Some names mean one thing in the convention and another in this library:
/// - RGB565p and BGR565p are matched by layout, not by name. The convention puts the component that is named
///   first into the low bits; this library's RGB565p has red in bits 15..11 and is the convention's BGR565p.
/// - The convention's plain YCbCr names are full range (FLAG_YCBCR_JPG, ColourMatrix::Jpeg); its 601 and 709
///   names are video range. The bytes are laid out alike. Names with BT.2020 are known, but the library has
///   no such matrix.
/// - The GigE Vision formats Mono10Packed, Mono12Packed, Bayer..10Packed and Bayer..12Packed order the bits
/// of
///   the middle byte in another way than this library's types of these names. Their codes carry
///   PixelConverter::FLAG_PACKED_GIGE_VISION, which selects the camera's order.
///
/// All functions here may be called from any thread at any time.

namespace ZrConvertersLib {

/// One code of the convention beside this library's type.
struct FormatCode {
  std::uint32_t code = 0;   ///< bits 31..24 kind, 23..16 bits per pixel in memory, 15..0 running number
  std::string_view name;    ///< the convention's name, "BayerRG12p" for instance
  long id = 0;              ///< type ID
  unsigned flags = 0;       ///< conversion flags that the code settles: pattern, matrix, packing
  bool matrixKnown = true;  ///< false: BT.2020, the layout is known but no matrix of the library fits
};

/// All codes, in ascending order of their type ID. Static storage.
ZR_EXPORT std::span<const FormatCode> FormatCodes() noexcept;

/// The entry of a 32-bit code, or null.
ZR_EXPORT const FormatCode* FindFormatCode(std::uint32_t code) noexcept;

/// The entry of one of the convention's names (exact spelling), or null.
ZR_EXPORT const FormatCode* FindFormatCode(std::string_view name) noexcept;

/// The code of a type ID with conversion flags, or null where the convention has none. Only the pattern,
/// matrix and packing bits that apply to the type count; without a pattern bit it is the family's first
/// pattern, without a matrix bit BT.601.
ZR_EXPORT const FormatCode* FormatCodeOf(long id, unsigned flags) noexcept;

/// What a user's word for a format means.
struct FormatChoice {
  long id = 0;           ///< type ID
  unsigned flags = 0;    ///< flags that the word settled; SetFlags() of FrameOptions takes them
  bool settled = false;  ///< true: the word named the pattern or matrix too
};

/// Reads a format as a person writes it: a name of this library, a name of the convention, a name or fourcc
/// of V4L2 (V4l2Formats.h), or a code of either as hexadecimal ("0x010C0059") or decimal number. The
/// library's own names take precedence, so "RGB565p" is this library's and "YCbCr422_8" leaves the matrix
/// open. The exception is "Mono12Packed" and its like, which mean what cameras send and set
/// FLAG_PACKED_GIGE_VISION.
/// @param text    the word
/// @param choice  receives the meaning; left as it was when the result is no success
/// @return success, FrameError::UnknownFormat or FrameError::MatrixUnknown
ZR_EXPORT ZrUtilsLib::Result ReadFormat(std::string_view text, FormatChoice& choice);

}  // namespace ZrConvertersLib
