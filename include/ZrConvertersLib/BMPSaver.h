#pragma once

#include <ZrConvertersLib/Export.h>
#include <ZrUtilsLib/Result.h>

#include <string>

/// @file
/// Writing Windows bitmap files.

namespace ZrConvertersLib {

/// Writes images as .bmp files. Holds no state: one object may serve any number of threads.
class ZR_EXPORT BMPSaver {
 public:
  BMPSaver();
  virtual ~BMPSaver();

  /// Writes a top-down bitmap: the headers, then the first (height x bitCount x width) / 8 bytes of `data` as
  /// they stand (the 32-bit product wraps around).
  ///
  /// The caller must provide what viewers expect: rows of a multiple of 4 bytes, and channels in the order
  /// blue, green, red (BGR8, BGRa8). SaveBMP adds no padding, reorders nothing and writes no palette for
  /// 8-bit images.
  ///
  /// Returns FileNotOpened (16384) when the file cannot be opened. A full disk is not detected.
  ZrUtilsLib::Result SaveBMP(const std::string& fileName, const void* data, int width, int height,
                             unsigned short bitCount);
};

}  // namespace ZrConvertersLib
