#pragma once

#include <cstddef>
#include <cstdint>

#include "converters/PreparedKernel.h"
#include "core/FormatTable.h"
#include "frame/FramePlan.h"
#include "simd/DevelopKernels.h"

namespace ZrConvertersLib {

/// Where a picture lies in memory.
struct PictureMemory {
  std::uint8_t* data = nullptr;  ///< first byte of the picture
  std::ptrdiff_t stride = 0;     ///< bytes from a line to the next
};

/// Lines of three planes kept in halves, to be written.
struct DevelopedLines {
  const std::uint8_t* first;  ///< the first line's first pixel in the even half of its red plane
  std::int64_t x, y;          ///< place of that pixel in the source frame
  std::int64_t width, count;
};

/// The last buffers on the way: lines of three planes in halves, and those that cannot be written in place.
struct alignas(64) PlaneBuffers {
  /// Lines of the picture that are made at a time.
  static constexpr std::int64_t kLines = 4;

  std::uint8_t planes[kLines][3][2][simd::kHalfBytes];
  std::uint8_t picture[2 * 3 * 2 * (simd::kTilePixels + 64)];  ///< a line of the longest pixels, twice

  /// The first word of a half.
  std::uint8_t* Half(std::int64_t line, std::int64_t plane, std::int64_t half) {
    return planes[line][plane][half] + simd::kHalfMargin;
  }
};

/// Writes developed lines into the picture, flipped as the plan says, past the caches if it is large.
class PictureLines {
 public:
  PictureLines(const FramePlan& plan, const PictureMemory& picture, PlaneBuffers& buffers);
  ~PictureLines();
  PictureLines(const PictureLines&) = delete;
  PictureLines& operator=(const PictureLines&) = delete;

  void Write(const DevelopedLines& lines) const;

 private:
  void WriteDirectly(const DevelopedLines& lines, std::int64_t width) const;
  void WriteStaged(const DevelopedLines& lines, std::int64_t line, std::int64_t from) const;
  std::uint8_t* At(std::int64_t x, std::int64_t y, std::int64_t width) const;

  const FramePlan& mPlan;
  PictureMemory mPicture;
  std::uint8_t* mScratch;
  PreparedKernel mKernel;
};

}  // namespace ZrConvertersLib
