#include <ZrConvertersLib/FrameConverter.h>

#include <new>
#include <utility>

#include "frame/FramePlan.h"
#include "frame/FrameRoute.h"

namespace ZrConvertersLib {

using ZrUtilsLib::Result;

struct FrameConverter::State {
  FramePlan plan;
  FrameRoute route;
};

namespace {

/// The error codes for a source or a destination view, except that of width and height.
struct ViewCodes {
  std::uint32_t null;
  std::uint32_t size;
  std::uint32_t bytes;
};

constexpr ViewCodes kSourceCodes{FrameError::NullSource, FrameError::SourceSizeDiffers,
                                 FrameError::SourceTooSmall};
constexpr ViewCodes kPictureCodes{FrameError::NullDestination, FrameError::DestinationSizeDiffers,
                                  FrameError::DestinationTooSmall};

/// Where a view's bytes lie.
struct Extent {
  std::uintptr_t begin = 0;
  std::uintptr_t end = 0;
};

template <typename View>
Result CheckView(const View& view, const ViewCodes& codes, long format, std::int64_t width,
                 std::int64_t height, FrameLayout& layout, Extent& extent) {
  if (view.data == nullptr) return codes.null;
  if (view.width != width || view.height != height) return codes.size;
  const Result result = DescribeFrame(format, view.width, view.height, view.stride, layout);
  if (!result.IsSuccess()) return result;
  if (view.size < layout.leastBytes) return codes.bytes;
  extent.begin = reinterpret_cast<std::uintptr_t>(view.data);
  extent.end = extent.begin + layout.leastBytes;
  return extent.end < extent.begin ? Result(codes.bytes) : Result();
}

bool Overlap(const Extent& a, const Extent& b) noexcept {
  return a.begin < b.end && b.begin < a.end;
}

/// The source lines of picture lines [first, first + count).
Rect BandOf(const FramePlan& plan, std::int64_t first, std::int64_t count) noexcept {
  Rect band = plan.region;
  band.y0 = plan.flipVertical ? plan.region.y1 - first - count : plan.region.y0 + first;
  band.y1 = band.y0 + count;
  return band;
}

}  // namespace

FrameConverter::FrameConverter() noexcept = default;
FrameConverter::~FrameConverter() = default;
FrameConverter::FrameConverter(FrameConverter&&) noexcept = default;
FrameConverter& FrameConverter::operator=(FrameConverter&&) noexcept = default;

Result FrameConverter::Configure(long source, long destination, std::uint32_t width, std::uint32_t height,
                                 const FrameOptions& options) {
  try {
    auto state = std::make_unique<State>();
    Result result = MakeFramePlan(source, destination, width, height, options, state->plan);
    if (result.IsSuccess()) result = state->route.Take(state->plan, options);
    if (result.IsSuccess()) mState = std::move(state);
    return result;
  } catch (const std::bad_alloc&) {
    return FrameError::OutOfMemory;
  }
}

bool FrameConverter::IsConfigured() const noexcept {
  return mState != nullptr;
}

Result FrameConverter::Convert(const SourceView& source, const DestinationView& destination) {
  return ConvertLines(0, Height(), source, destination);
}

Result FrameConverter::ConvertLines(std::uint32_t first, std::uint32_t count, const SourceView& source,
                                    const DestinationView& destination) {
  if (mState == nullptr) return FrameError::NotConfigured;
  const FramePlan& plan = mState->plan;
  FrameLayout from;
  FrameLayout to;
  Extent read;
  Extent written;
  Result result = CheckView(source, kSourceCodes, plan.source->id, plan.width, plan.height, from, read);
  if (!result.IsSuccess()) return result;
  result = CheckView(destination, kPictureCodes, plan.destination->id, plan.RegionWidth(),
                     plan.RegionHeight(), to, written);
  if (!result.IsSuccess()) return result;
  if (Overlap(read, written)) return FrameError::BuffersOverlap;
  if (first > Height() || count > Height() - first) return FrameError::LinesOutside;
  if (count == 0) return {};

  return mState->route.Run(
      plan, {static_cast<const std::uint8_t*>(source.data), static_cast<std::ptrdiff_t>(from.stride)},
      {static_cast<std::uint8_t*>(destination.data), static_cast<std::ptrdiff_t>(to.stride)},
      BandOf(plan, first, count));
}

FrameLayout FrameConverter::SourceLayout() const noexcept {
  return mState != nullptr ? mState->plan.sourceLayout : FrameLayout{};
}

FrameLayout FrameConverter::DestinationLayout() const noexcept {
  return mState != nullptr ? mState->plan.destinationLayout : FrameLayout{};
}

std::uint32_t FrameConverter::Width() const noexcept {
  return mState != nullptr ? static_cast<std::uint32_t>(mState->plan.RegionWidth()) : 0;
}

std::uint32_t FrameConverter::Height() const noexcept {
  return mState != nullptr ? static_cast<std::uint32_t>(mState->plan.RegionHeight()) : 0;
}

MosaicPattern FrameConverter::DestinationPattern() const noexcept {
  if (mState == nullptr) return MosaicPattern::GRBG;
  const FramePlan& plan = mState->plan;
  FrameOptions options;
  options.SetFlags(plan.flags);
  const std::int64_t x = plan.flipHorizontal ? plan.region.x1 - 1 : plan.region.x0;
  const std::int64_t y = plan.flipVertical ? plan.region.y1 - 1 : plan.region.y0;
  // As the patterns are numbered, a step to the side changes bit 1 and a step down both bits.
  const unsigned step = (x % 2 != 0 ? 2u : 0u) ^ (y % 2 != 0 ? 3u : 0u);
  return static_cast<MosaicPattern>(static_cast<unsigned>(options.pattern) ^ step);
}

Result ConvertFrame(long sourceType, const SourceView& source, long destinationType,
                    const DestinationView& destination, const FrameOptions& options) {
  FrameConverter converter;
  const Result result =
      converter.Configure(sourceType, destinationType, source.width, source.height, options);
  return result.IsSuccess() ? converter.Convert(source, destination) : result;
}

}  // namespace ZrConvertersLib
