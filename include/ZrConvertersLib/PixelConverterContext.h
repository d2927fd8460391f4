#pragma once

#include <cstdint>

/// @file
/// The state of one conversion call.

namespace ZrConvertersLib {

class RGBFilter;

/// What PixelConverter::Convert passes to ConvertLine and ConvertLastLine: the image, and where in it the
/// current block of lines begins. Each call of Convert has one, on its stack.
class PixelConverterContext {
 public:
  std::uint32_t mReserved = 1;             ///< always 1; not used
  std::uint32_t mSourceStride = 0;         ///< bytes from one source line to the next
  std::uint32_t mSourceHeight = 0;         ///< lines in the source image
  std::uint32_t mDestinationStride = 0;    ///< bytes from one destination line to the next
  std::uint32_t mDestinationHeight = 0;    ///< lines in the destination image (in each plane)
  std::uint32_t mFlags = 0;                ///< PixelConverter::FLAG_* bits; a Bayer pattern is always set
  const RGBFilter* mFilter = nullptr;      ///< tone tables for 8-bit colour; never null during a conversion
  std::uint32_t mLine = 0;                 ///< index of the first line of the current block
  const unsigned char* mSource = nullptr;  ///< start of that line in the source
  unsigned char* mDestination = nullptr;   ///< start of that line in the destination (in plane 0)
};

}  // namespace ZrConvertersLib
