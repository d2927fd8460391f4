#include "develop/PictureLines.h"

#include <ZrConvertersLib/RGBFilter.h>

#include <algorithm>
#include <cstring>

#include "frame/PixelMoves.h"
#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

using simd::PixelWriter;

/// The writer of a destination, with the filter's tables for those that a filter acts on.
PixelWriter WriterOf(long destination, const RGBFilter* filter) {
  auto plain = std::size_t{0};
  auto filtered = kDestinations.size();
  for (const DestinationRow& row : kDestinations) {
    if (row.id == destination)
      return static_cast<PixelWriter>(row.filtered && filter != nullptr ? filtered : plain);
    ++plain;
    filtered += row.filtered ? 1 : 0;
  }
  return PixelWriter::Count;
}

}  // namespace

PictureLines::PictureLines(const FramePlan& plan, const PictureMemory& picture, PlaneBuffers& buffers)
    : mPlan(plan),
      mPicture(picture),
      mScratch(buffers.picture),
      mBlock(static_cast<std::int64_t>(simd::CurrentLevel().blockPixels)),
      mArgs{} {
  const RGBFilter* const filter =
      plan.filter != nullptr && !plan.filter->IsIdentity() ? plan.filter : nullptr;
  const PixelWriter writer = WriterOf(plan.destination->id, filter);
  mFunction = simd::CurrentLevel().halves->with[static_cast<std::size_t>(writer)];
  mArgs.planeDistance = picture.stride * plan.RegionHeight();
  if (filter == nullptr) return;
  mArgs.tables[0] = filter->GetRed();
  mArgs.tables[1] = filter->GetGreen();
  mArgs.tables[2] = filter->GetBlue();
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
  const std::int64_t direct = mPlan.flipHorizontal || pairs < mBlock ? 0 : pairs;
  if (direct != 0) {
    simd::KernelArgs args = mArgs;
    args.source[0] = lines.first;
    args.sourceStep = simd::kDevelopedLine;
    args.destination[0] = At(lines.x, lines.y, direct);
    args.destinationStep = mPlan.flipVertical ? -mPicture.stride : mPicture.stride;
    args.width = static_cast<std::size_t>(direct);
    args.lines = static_cast<std::size_t>(lines.count);
    mFunction(args);
  }
  if (direct == lines.width) return;
  for (std::int64_t line = 0; line < lines.count; ++line) WriteStaged(lines, line, direct);
}

void PictureLines::WriteStaged(const DevelopedLines& lines, std::int64_t line, std::int64_t from) const {
  constexpr std::ptrdiff_t kPlane = 2 * (simd::kTilePixels + 64);
  const std::int64_t width = lines.width - from;
  simd::KernelArgs args = mArgs;
  args.source[0] = lines.first + line * static_cast<std::int64_t>(simd::kDevelopedLine) + from;
  args.destination[0] = mScratch;
  args.planeDistance = kPlane;
  args.width = static_cast<std::size_t>(std::max(mBlock, (width + 1) / 2 * 2));
  args.lines = 1;
  mFunction(args);
  std::uint8_t* const to = At(lines.x + from, lines.y + line, width);
  for (int plane = 0; plane < mPlan.destination->planes; ++plane) {
    const std::uint8_t* const staged = mScratch + plane * kPlane;
    if (mPlan.flipHorizontal)
      CopyMirrored(staged, to + plane * mArgs.planeDistance, width, mPlan.pixelBytes, Mirror::Pixels);
    else
      std::memcpy(to + plane * mArgs.planeDistance, staged,
                  static_cast<std::size_t>(width * mPlan.pixelBytes));
  }
}

}  // namespace ZrConvertersLib
