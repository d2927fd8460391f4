#include "develop/PictureLines.h"

#include <ZrConvertersLib/RGBFilter.h>

#include <algorithm>
#include <cstring>

#include "core/CacheLimits.h"
#include "frame/PixelMoves.h"
#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

/// What the kernels that write pictures read: for two pixels a word of each half, two bytes on from the last.
constexpr simd::ReaderFacts kHalves{{2, 2}, simd::kOneLine};

/// Bytes of the part of the frame and its picture.
std::size_t FrameBytes(const FramePlan& plan) {
  const auto source =
      static_cast<std::size_t>(plan.sourceLayout.stride) * static_cast<std::size_t>(plan.RegionHeight());
  return source + plan.destinationLayout.frameBytes;
}

/// The place of the plan's destination in the list of destinations.
std::size_t RowOf(const FramePlan& plan) {
  std::size_t row = 0;
  while (kDestinations[row].id != plan.destination->id) ++row;
  return row;
}

bool Filters(const FramePlan& plan) {
  return kDestinations[RowOf(plan)].filtered && plan.filter != nullptr && !plan.filter->IsIdentity();
}

/// The kernel that writes a destination; those that a filter acts on follow all others.
simd::KernelFunction KernelOf(const FramePlan& plan) {
  const std::size_t row = RowOf(plan);
  std::size_t filtered = kDestinations.size();
  for (std::size_t i = 0; i < row; ++i) filtered += kDestinations[i].filtered ? 1U : 0U;
  return simd::CurrentLevel().halves->with[Filters(plan) ? filtered : row];
}

}  // namespace

PictureLines::PictureLines(const FramePlan& plan, const PictureMemory& picture, PlaneBuffers& buffers)
    : mPlan(plan),
      mPicture(picture),
      mScratch(buffers.picture),
      mKernel(KernelOf(plan), kHalves, RowOf(plan)) {
  mKernel.args.planeDistance = picture.stride * plan.RegionHeight();
  if (FrameBytes(plan) > StreamingThreshold()) mKernel.stream = *simd::CurrentLevel().stream;
  if (Filters(plan)) mKernel.SetTables(*plan.filter, FrameBytes(plan));
}

PictureLines::~PictureLines() {
  if (mKernel.stream != nullptr) OrderStreamedStores();
}

/// The first byte in the picture of `width` pixels of the frame's line y.
std::uint8_t* PictureLines::At(std::int64_t x, std::int64_t y, std::int64_t width) const {
  const std::int64_t line = mPlan.flipVertical ? mPlan.region.y1 - 1 - y : y - mPlan.region.y0;
  const std::int64_t column = mPlan.flipHorizontal ? mPlan.region.x1 - x - width : x - mPlan.region.x0;
  return mPicture.data + line * mPicture.stride + column * mPlan.pixelBytes;
}

/// Pairs of columns are written in place. What is left of a line shorter than a block or of odd width goes
/// through the scratch buffer, and so does everything that is mirrored.
void PictureLines::Write(const DevelopedLines& lines) const {
  const std::int64_t pairs = lines.width / 2 * 2;
  const bool isShort = pairs < static_cast<std::int64_t>(mKernel.block);
  const std::int64_t direct = mPlan.flipHorizontal || isShort ? 0 : pairs;
  if (direct != 0) WriteDirectly(lines, direct);
  if (direct == lines.width) return;
  for (std::int64_t line = 0; line < lines.count; ++line) WriteStaged(lines, line, direct);
}

void PictureLines::WriteDirectly(const DevelopedLines& lines, std::int64_t width) const {
  LineBlock block{{lines.first}, {At(lines.x, lines.y, width)}, static_cast<std::size_t>(width)};
  block.lines = static_cast<std::size_t>(lines.count);
  block.sourceStep = simd::kDevelopedLine;
  block.destinationStep = mPlan.flipVertical ? -mPicture.stride : mPicture.stride;
  if (mKernel.stream == nullptr) return mKernel.Run(block);
  for (std::size_t i = 0; i < block.lines; ++i) RunStreamedLine(mKernel, block.Line(i));
}

void PictureLines::WriteStaged(const DevelopedLines& lines, std::int64_t line, std::int64_t from) const {
  constexpr std::ptrdiff_t kPlane = 2 * (simd::kTilePixels + 64);
  const std::int64_t width = lines.width - from;
  simd::KernelArgs args = mKernel.args;
  args.planeDistance = kPlane;
  mKernel.function({{lines.first + line * static_cast<std::int64_t>(simd::kDevelopedLine) + from},
                    {mScratch},
                    std::max(mKernel.block, static_cast<std::size_t>((width + 1) / 2 * 2))},
                   args);
  std::uint8_t* const to = At(lines.x + from, lines.y + line, width);
  for (int plane = 0; plane < mPlan.destination->planes; ++plane) {
    const std::uint8_t* const staged = mScratch + plane * kPlane;
    std::uint8_t* const there = to + plane * mKernel.args.planeDistance;
    if (mPlan.flipHorizontal)
      CopyMirrored(staged, there, width, mPlan.pixelBytes, Mirror::Pixels);
    else
      std::memcpy(there, staged, static_cast<std::size_t>(width * mPlan.pixelBytes));
  }
}

}  // namespace ZrConvertersLib
