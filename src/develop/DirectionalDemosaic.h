#pragma once

#include <cstddef>
#include <cstdint>

#include "develop/Grading.h"
#include "develop/PictureLines.h"
#include "develop/SampleLines.h"
#include "frame/FramePlan.h"
#include "frame/Rect.h"
#include "simd/DevelopKernels.h"

namespace ZrConvertersLib {

/// The buffers of a tile: a few lines of each stage, which stay in the first-level cache.
struct MosaicTileBuffers : PlaneBuffers {
  /// Green is found from the two lines above and below, and colours from the green of one line more.
  static constexpr std::int64_t kReach = 3;

  static constexpr std::int64_t kSampleLines = kLines + 2 * kReach;
  static constexpr std::int64_t kGreenLines = kLines + 2;
  static constexpr std::ptrdiff_t kWordStride = 2 * (simd::kTilePixels + 2 * SampleLines::kSlack);

  alignas(64) std::uint8_t words[kSampleLines * kWordStride];
  std::uint8_t samples[kSampleLines][2][simd::kHalfBytes];
  std::uint8_t green[kGreenLines][simd::kHalfBytes];
};

/// Demosaics bands of a Bayer frame along the direction in which it changes less. A band is cut into tiles of
/// columns; each goes line by line through the stages: samples, green, three planes, picture.
class DirectionalDemosaic {
 public:
  /// `grading` may be null.
  DirectionalDemosaic(const FramePlan& plan, const Grading* grading, MosaicTileBuffers& buffers,
                      const SourceLines& source, const PictureMemory& picture);

  /// Converts the columns of the region in some of its lines.
  void Convert(const Rect& band);

 private:
  void ConvertTile();
  void ReadLines(std::int64_t end);
  void ReadRun(std::int64_t from, std::int64_t line, std::int64_t count);
  void SplitWords(const std::uint8_t* words, std::int64_t line);
  void SplitBytes(const std::uint8_t* bytes, std::int64_t line);
  template <class SampleAt>
  void Surround(std::int64_t line, std::int64_t begin, SampleAt sampleAt);
  void FindGreen(std::int64_t line);
  void MakePlanes(std::int64_t line, std::int64_t slot);

  std::uint8_t* Samples(std::int64_t line, std::int64_t half) const;
  std::uint8_t* Green(std::int64_t line) const;
  simd::Sites SitesOf(std::int64_t line, std::int64_t half) const;
  std::int64_t ColouredHalf(std::int64_t line) const;
  bool IsRed(std::int64_t line) const;

  const FramePlan& mPlan;
  const Grading* mGrading;
  MosaicTileBuffers& mBuffers;
  SourceLines mSource;
  const simd::DemosaicKernels& mKernels;
  SampleLines mSamples;
  PictureLines mPicture;
  std::size_t mScale;
  std::uint32_t mShift;
  bool mGreenOnly, mOddColumnColoured, mRedFirst;

  Rect mTile;                                ///< pixels of the picture
  std::int64_t mBase = 0, mPairs = 0;        ///< first column and pairs of columns that are computed
  std::int64_t mReadFrom = 0, mReadEnd = 0;  ///< samples that are read of a line
  std::int64_t mLinesRead = 0;               ///< the line up to which samples are there
};

}  // namespace ZrConvertersLib
