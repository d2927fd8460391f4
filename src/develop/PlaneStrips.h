#pragma once

#include <ZrUtilsLib/Result.h>

#include <cstdint>
#include <memory>
#include <optional>

#include "develop/SampleLines.h"
#include "frame/FramePlan.h"
#include "frame/FrameScratch.h"
#include "frame/Rect.h"

namespace ZrConvertersLib {

/// Makes a few lines of a frame's region at a time into planes that stay in the caches, by raw calls or from
/// YCbCr samples at their full depth.
class PlaneStrips {
 public:
  /// Takes all memory; throws std::bad_alloc. `planes` is the plan of the frame's conversion to grey or to
  /// planar colour, of words if the depth of YCbCr is to be kept.
  PlaneStrips(const FramePlan& planes, bool yCbCrDepth);

  /// Lines that a strip can hold; a multiple of 4.
  std::int64_t Lines() const { return mLines; }

  /// Planes that there are: 1 or 3.
  std::int64_t Planes() const { return mPlanes; }

  /// Bytes of a pixel in a plane: 1 or 2.
  std::int64_t PixelBytes() const { return mPlan.pixelBytes; }

  /// Replaces the strip by `count` lines of the region from the frame's line `y` on.
  ZrUtilsLib::Result Make(const SourceLines& source, std::int64_t y, std::int64_t count);

  /// The region's first pixel in a line of the strip.
  const std::uint8_t* Pixels(std::int64_t plane, std::int64_t line) const {
    return Line(plane, line) + mSkipped;
  }

 private:
  void ConvertSamples(const SourceLines& source, std::int64_t y, std::int64_t count);
  std::uint8_t* Line(std::int64_t plane, std::int64_t line) const;

  FramePlan mPlan;  ///< its region is the strip's
  bool mYCbCrDepth;
  std::int64_t mPlanes, mStride, mLines;
  std::int64_t mSkipped = 0;  ///< bytes of a line before the region
  std::optional<FrameScratch> mScratch;
  std::unique_ptr<std::uint8_t[]> mStrip, mSamples;
};

}  // namespace ZrConvertersLib
