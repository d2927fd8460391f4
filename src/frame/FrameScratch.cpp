#include "frame/FrameScratch.h"

#include <algorithm>
#include <limits>
#include <new>

#include "formats/Limits.h"

namespace ZrConvertersLib {

namespace {

/// About as much as stays in the second-level cache together with what is read.
constexpr std::int64_t kCacheBytes = 512 * 1024;
constexpr std::int64_t kMostScratchLines = 256;

/// A mosaic's neighbourhood and pairing take up to four lines more than are wanted.
constexpr std::int64_t kLeastMosaicLines = 8;

/// A chain's intermediate image per raw call, in pixels.
constexpr std::int64_t kMostChainPixels = std::int64_t{1} << 25;

/// The widest intermediate pixel: three samples of a byte, or one of two.
constexpr std::int64_t kMostChainPixelBytes = 3;
constexpr std::int64_t kChainBorderLines = 6;
constexpr std::int64_t kChainGroupPixels = 16;

std::int64_t ScratchWidth(const FramePlan& plan) {
  if (!plan.NeedsScratch()) return 0;
  const bool wholeLines = plan.mosaic || plan.flipHorizontal || plan.destination->planes > 1;
  return (wholeLines ? RoundUp(plan.RegionWidth(), plan.unit) : 2 * plan.unit) + 4 * plan.unit;
}

std::int64_t PictureLineBytes(const FramePlan& plan, std::int64_t width) {
  return width * plan.pixelBytes * plan.destination->planes;
}

std::int64_t ScratchLines(const FramePlan& plan, std::int64_t width) {
  if (width == 0) return 0;
  const std::int64_t least = plan.mosaic ? kLeastMosaicLines : 1;
  return std::clamp(kCacheBytes / PictureLineBytes(plan, width), least, kMostScratchLines);
}

std::int64_t DirectLines(const FramePlan& plan) {
  const std::int64_t most = plan.chain ? kMostChainPixels / plan.RegionWidth() : kMostCallBytes;
  return std::max<std::int64_t>(RoundDown(std::min(most, plan.height + 1), 2), 2);
}

std::int64_t PipelineBytes(std::int64_t width, std::int64_t lines) {
  return (width + kChainGroupPixels) * (lines + kChainBorderLines) * kMostChainPixelBytes;
}

}  // namespace

FrameScratch::FrameScratch(const FramePlan& plan)
    : width(ScratchWidth(plan)), lines(ScratchLines(plan, width)), directLines(DirectLines(plan)) {
  if (width != 0) {
    source.reset(new std::uint8_t[static_cast<std::size_t>(plan.RawSourceBytes(width) * lines)]);
    picture.reset(new std::uint8_t[static_cast<std::size_t>(PictureLineBytes(plan, width) * lines)]);
  }
  if (plan.chain) {
    const std::int64_t bytes = std::max(PipelineBytes(RoundUp(plan.RegionWidth(), plan.unit), directLines),
                                        PipelineBytes(width, lines));
    if (bytes > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    pipeline.data = new unsigned char[static_cast<std::size_t>(bytes)];
    pipeline.bytes = static_cast<std::uint32_t>(bytes);
  }
}

}  // namespace ZrConvertersLib
