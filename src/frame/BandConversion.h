#pragma once

#include <ZrUtilsLib/Result.h>

#include <cstdint>

#include "frame/FramePlan.h"
#include "frame/FrameScratch.h"

namespace ZrConvertersLib {

/// One conversion of a band of lines.
///
/// Whole groups of pixels in whole blocks of lines, which is most of a band, are converted by raw calls
/// straight into the caller's picture. The rest is converted in the scratch buffers and copied, because a raw
/// call cannot make it or would write beside the picture: pixels of groups that the region cuts, lines of
/// pairs that the band cuts, the odd last line of a mosaic, and a picture mirrored from left to right.
class BandConversion {
 public:
  /// The buffers hold what the plan's layouts say at the given strides; everything has been checked.
  BandConversion(const FramePlan& plan, FrameScratch& scratch, const std::uint8_t* source,
                 std::int64_t sourceStride, std::uint8_t* picture, std::int64_t pictureStride) noexcept;

  /// Converts the band: columns of the region, any of its lines.
  ZrUtilsLib::Result Convert(const Rect& band);

 private:
  struct RawCall;

  /// Columns or lines [begin, end).
  struct Interval {
    std::int64_t begin;
    std::int64_t end;
  };

  Rect DirectPart(const Rect& band) const noexcept;
  bool PlanesTooFar() const noexcept;
  std::int64_t DirectLines() const noexcept;
  Rect RightPart(const Rect& direct) const noexcept;
  ZrUtilsLib::Result ConvertDirect(const Rect& part);
  ZrUtilsLib::Result ConvertDirectCall(const Rect& part);
  ZrUtilsLib::Result ConvertEdges(const Rect& band, const Rect& right);
  ZrUtilsLib::Result ConvertViaScratch(const Rect& part);
  ZrUtilsLib::Result ConvertLinesViaScratch(const Rect& lines);
  ZrUtilsLib::Result ConvertScratchCall(const Rect& part);
  ZrUtilsLib::Result CallRaw(const RawCall& call);

  static Interval Surroundings(Interval part, std::int64_t side, std::int64_t tile, std::int64_t reach,
                               std::int64_t unit) noexcept;
  Rect Surroundings(const Rect& part) const noexcept;
  RawCall SourceOf(const Rect& around);
  void CopySource(const Rect& around, std::int64_t stride);
  void CopyPicture(const Rect& part, const Rect& around, const RawCall& call);
  void CopyLine(const std::uint8_t* from, std::uint8_t* to, std::int64_t pixels) const noexcept;

  std::int64_t PictureLine(std::int64_t y0, std::int64_t y1) const noexcept;
  bool ReadsBeyond(const Rect& part) const noexcept;
  unsigned FlagsOf(const Rect& part) const noexcept;

  const FramePlan& mPlan;
  FrameScratch& mScratch;
  const std::uint8_t* mSource;
  std::int64_t mSourceStride;
  std::uint8_t* mPicture;
  std::int64_t mPictureStride;
};

}  // namespace ZrConvertersLib
