#include "frame/FrameScratch.h"

#include <algorithm>
#include <limits>
#include <new>

#include "core/ChainFrame.h"
#include "formats/Limits.h"

namespace ZrConvertersLib {

namespace {

/// About as much as stays in the second-level cache together with what is read.
constexpr std::int64_t kCacheBytes = 512 * 1024;
constexpr std::int64_t kMostLines = 256;

/// Longer lines are converted piece by piece: no product of lines and bytes comes near 31 bits then.
constexpr std::int64_t kMostColumns = 1 << 16;

/// The intermediate image of one raw call.
constexpr std::int64_t kMostIntermediateBytes = 1 << 24;

/// Lines of the intermediate image beside those of the call: borders, and what its first stage may add.
constexpr std::int64_t kSpareLines = 8;

std::int64_t IntermediateLineBytes(const FramePlan& plan, std::int64_t width) {
  return plan.reader->GetDestinationByteSize(static_cast<std::uint32_t>(width) *
                                             plan.reader->GetWidthMultiplier());
}

/// Lines of one raw call of a chain: as many as its intermediate image may have.
std::int64_t ChainLines(const FramePlan& plan) {
  const std::int64_t line = IntermediateLineBytes(plan, RoundUp(plan.RegionWidth(), plan.unit));
  const std::int64_t most = std::int64_t{kLargestCapacity} / line - kSpareLines;
  const std::int64_t wanted = plan.onePass ? most : kMostIntermediateBytes / line - kSpareLines;
  return std::clamp<std::int64_t>(wanted, 0, std::max<std::int64_t>(most, 0));
}

std::int64_t DirectLines(const FramePlan& plan) {
  const std::int64_t most = std::min(kMostCallBytes, RoundUp(plan.height, plan.near.tileHeight));
  return RoundDown(plan.chain ? std::min(most, ChainLines(plan)) : most, plan.near.tileHeight);
}

/// Pixels per line that a band may have to convert in the buffers, or 0.
std::int64_t Columns(const FramePlan& plan, std::int64_t directLines) {
  const bool wholeLines = plan.mosaic || plan.flipHorizontal || plan.destination->planes > 1 ||
                          plan.source->planes > 1 || directLines == 0;
  if (wholeLines) return std::min(RoundUp(plan.RegionWidth(), plan.unit), RoundDown(kMostColumns, plan.unit));
  const bool cut = plan.region.x0 % plan.unit != 0 || plan.region.x1 % plan.unit != 0;
  return cut ? 2 * plan.unit : 0;
}

std::int64_t PictureLineBytes(const FramePlan& plan, std::int64_t width) {
  return width * plan.pixelBytes * plan.destination->planes;
}

std::int64_t Lines(const FramePlan& plan, std::int64_t width) {
  if (width == 0) return 0;
  const std::int64_t least = plan.mosaic ? 4 * plan.near.tileHeight : 1;
  return std::clamp(kCacheBytes / PictureLineBytes(plan, width), least, kMostLines);
}

std::size_t IntermediateBytes(const FramePlan& plan, std::int64_t width, std::int64_t lines) {
  const std::uint32_t flags = plan.LooksAtLines() ? PixelConverter::FLAG_BAND_MIDDLE : 0;
  const auto height = static_cast<std::uint32_t>(lines);
  const auto samples = static_cast<std::uint32_t>(width) * plan.reader->GetWidthMultiplier();
  return LayoutOf(*plan.reader, BandOf(flags, height), samples, height, plan.flipVertical).capacity;
}

std::unique_ptr<std::uint8_t[]> Take(std::int64_t bytes) {
  return std::unique_ptr<std::uint8_t[]>(new std::uint8_t[static_cast<std::size_t>(bytes)]);
}

}  // namespace

FrameScratch::FrameScratch(const FramePlan& plan) : directLines(DirectLines(plan)) {
  columns = Columns(plan, directLines);
  const std::int64_t width = Width(plan);
  lines = Lines(plan, width);
  if (width != 0) {
    source = Take(plan.SourceBytes(width) * lines * plan.source->planes);
    picture = Take(PictureLineBytes(plan, width) * lines);
  }
  if (plan.chain && !plan.onePass) {
    const std::size_t bytes =
        std::max(IntermediateBytes(plan, RoundUp(plan.RegionWidth(), plan.unit), directLines),
                 IntermediateBytes(plan, width, lines));
    if (bytes > kLargestCapacity) throw std::bad_alloc();
    pipeline.data = new unsigned char[bytes];
    pipeline.bytes = static_cast<std::uint32_t>(bytes);
  }
}

}  // namespace ZrConvertersLib
