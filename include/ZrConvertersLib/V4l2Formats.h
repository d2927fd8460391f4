#pragma once

#include <ZrConvertersLib/Export.h>

#include <cstdint>
#include <span>
#include <string_view>

/// @file
/// The pixel formats of Linux video devices (V4L2, linux/videodev2.h), as drivers report them.
///
/// Such a device may pad its lines: pass its `bytesperline` as the stride of a SourceView. All functions here
/// may be called from any thread at any time.

namespace ZrConvertersLib {

/// One of V4L2's formats beside this library's type.
struct V4l2Format {
  std::uint32_t fourcc = 0;  ///< four characters, the first in the low byte
  std::string_view name;     ///< the kernel's name without its prefix, "SRGGB10P" for instance
  long id = 0;               ///< type ID
  unsigned flags = 0;        ///< conversion flags that the format settles: mosaic pattern and packing
};

/// All of them, in ascending order of their type ID. Static storage.
ZR_EXPORT std::span<const V4l2Format> V4l2Formats() noexcept;

/// The entry of a fourcc, or null.
ZR_EXPORT const V4l2Format* FindV4l2Format(std::uint32_t fourcc) noexcept;

/// The entry of one of the kernel's names, or of the characters of a fourcc (exact spelling, spaces at the
/// end may be left out), or null.
ZR_EXPORT const V4l2Format* FindV4l2Format(std::string_view name) noexcept;

/// The first entry of a type ID with conversion flags, of which only pattern and packing count, or null where
/// V4L2 has no such format.
ZR_EXPORT const V4l2Format* V4l2FormatOf(long id, unsigned flags) noexcept;

}  // namespace ZrConvertersLib
