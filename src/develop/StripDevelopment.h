#pragma once

#include <ZrUtilsLib/Result.h>

#include <cstdint>
#include <memory>

#include "develop/Grading.h"
#include "develop/PictureLines.h"
#include "develop/PlaneStrips.h"
#include "develop/SampleLines.h"
#include "frame/FramePlan.h"
#include "frame/Rect.h"

namespace ZrConvertersLib {

/// What develops sources that are no mosaics, or mosaics that the raw call demosaics: a few lines of the
/// region at a time become planes of words; these are graded and written.
class StripDevelopment {
 public:
  /// Takes all memory; throws std::bad_alloc. `planes` is the plan of the frame's conversion to planar
  /// colour, or to grey where all channels are equal or only green matters: of words, or of bytes if these
  /// hold all there is.
  StripDevelopment(const FramePlan& planes, bool yCbCrDepth);

  /// Converts the columns of the region in some of its lines. `grading` may be null.
  ZrUtilsLib::Result Convert(const FramePlan& plan, const Grading* grading, const SourceLines& source,
                             const PictureMemory& picture, const Rect& band);

 private:
  void WriteStrip(const Grading* grading, const PictureLines& picture, std::int64_t y, std::int64_t count);
  void MakeTile(const Grading* grading, const Rect& tile);
  void Split(std::int64_t plane, const Rect& tile);
  void CopyGreen(const Rect& tile);

  Rect mRegion;
  PlaneStrips mStrips;
  std::unique_ptr<PlaneBuffers> mBuffers;
};

}  // namespace ZrConvertersLib
