#pragma once

#include <ZrUtilsLib/Result.h>

#include <cstdint>
#include <memory>
#include <optional>

#include "develop/Grading.h"
#include "develop/PictureLines.h"
#include "develop/SampleLines.h"
#include "frame/FramePlan.h"
#include "frame/FrameScratch.h"
#include "frame/Rect.h"

namespace ZrConvertersLib {

/// What develops sources that are no mosaics, or mosaics that the raw call demosaics: a few lines of the
/// region at a time become planes of words, by raw calls or from YCbCr samples at their full depth; these are
/// graded and written.
class StripDevelopment {
 public:
  /// Takes all memory; throws std::bad_alloc. `planes` is the plan of the frame's conversion to words: to
  /// RGB16_Planar, or to Mono16 where all channels are equal or only green matters.
  StripDevelopment(const FramePlan& planes, bool yCbCrDepth);

  /// Converts the columns of the region in some of its lines. `grading` may be null.
  ZrUtilsLib::Result Convert(const FramePlan& plan, const Grading* grading, const SourceLines& source,
                             const PictureMemory& picture, const Rect& band);

 private:
  ZrUtilsLib::Result MakeStrip(const SourceLines& source, std::int64_t y, std::int64_t count);
  void ConvertSamples(const SourceLines& source, std::int64_t y, std::int64_t count);
  void WriteStrip(const Grading* grading, const PictureLines& picture, std::int64_t y, std::int64_t count);
  void SplitLine(std::int64_t line, std::int64_t x, std::int64_t width, std::int64_t slot);
  std::uint8_t* Word(std::int64_t plane, std::int64_t line) const;

  FramePlan mPlan;  ///< its region is the strip's
  bool mYCbCrDepth;
  Rect mRegion;
  std::int64_t mLines, mStride, mPlanes;
  std::optional<FrameScratch> mScratch;
  std::unique_ptr<std::uint8_t[]> mStrip, mSamples;
  std::unique_ptr<PlaneBuffers> mBuffers;
};

}  // namespace ZrConvertersLib
