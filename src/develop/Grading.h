#pragma once

#include <ZrConvertersLib/Development.h>
#include <ZrUtilsLib/Result.h>

#include <cstddef>
#include <cstdint>
#include <memory>

#include "core/FormatTable.h"
#include "develop/PictureLines.h"
#include "simd/DevelopKernels.h"

namespace ZrConvertersLib {

/// Where a channel lies on the 16-bit scale: of samples as they are, or reduced to 8 bits on the way.
struct ChannelScale {
  double count;  ///< what one count of the source's samples is worth
  double full;   ///< the largest value
};

/// The scale of a source whose samples are kept, or reduced to 8 bits by its conversion.
ChannelScale ScaleOf(const FormatRow& source, bool reduced);

/// Whether anything is asked for.
bool AsksForSomething(const Development& development);

/// Success, or FrameError::InvalidTone.
ZrUtilsLib::Result CheckDevelopment(const Development& development, const FormatRow& source);

/// A development made ready for the kernels. Immutable, so that any number of conversions share it.
class Grading {
 public:
  /// `grey`: the three channels of the source are equal. Throws std::bad_alloc.
  Grading(const Development& development, const ChannelScale& scale, bool grey, bool greenOnly);

  /// Whether results depend on other channels than their own.
  bool Mixes() const { return (mKind & simd::kGradeMixes) != 0; }

  /// Whether only the green plane is graded: the other planes do not matter or are the same.
  bool IsGreenOnly() const { return (mKind & simd::kGradeGreenOnly) != 0; }

  /// Grades the first `pairs` columns of both halves of some lines in place.
  void Apply(PlaneBuffers& buffers, std::int64_t lines, std::int64_t pairs) const;

 private:
  void SetFactors(const Development& development, const ChannelScale& scale, bool grey);
  bool KeepsGrey() const;
  void SetCurve(const Development& development);

  unsigned mKind = 0;
  simd::GradeArgs mArgs{};
  simd::CurveTable mTable{};
  std::unique_ptr<float[]> mPieces;
};

}  // namespace ZrConvertersLib
