#include "converters/SamplePlan.h"

#include <algorithm>

#include "core/PointerOffset.h"

namespace ZrConvertersLib {

namespace {

/// Pixels converted at a time, and the most samples they have: together with what is written they stay in the
/// first-level cache.
constexpr std::size_t kPiece = 4096, kSamplesPerPixel = 3;

/// Pixels between two calls for the next piece of a large frame: one kernel reads memory and the other does
/// not, so that without them memory would rest meanwhile.
constexpr std::size_t kPart = 1024;

/// Groups of samples reach past the piece; whole vectors are read beyond it.
constexpr std::size_t kBeyond = 64;

/// Only asks: the bytes may lie beyond the frame.
void CallToCache(const std::uint8_t* bytes, std::size_t size) {
  constexpr std::size_t kLine = 64;
  for (std::size_t i = 0; i < size; i += kLine)
    __builtin_prefetch(OffsetBy(bytes, static_cast<std::ptrdiff_t>(i)), 0, 2);
}

}  // namespace

SamplePlan::SamplePlan(const PixelConverterContext& context, const LineRecipe& recipe)
    : mSamples(context, *recipe.samples), mPixels(context, recipe) {}

void SamplePlan::Run(const Strip& strip) const {
  Strip line = strip;
  for (std::size_t i = 0; i < strip.lines; ++i) {
    RunLine(line);
    line.source[0] = OffsetBy(line.source[0], strip.sourceStep);
    line.destination[0] = OffsetBy(line.destination[0], strip.destinationStep);
  }
}

void SamplePlan::RunLine(const Strip& strip) const {
  alignas(64) std::uint8_t bytes[kPiece * kSamplesPerPixel + kBeyond];
  const std::size_t group = mSamples.GroupOfSource().pixels;
  for (std::size_t x = 0; x < strip.pixels; x += kPiece) {
    const std::size_t pixels = std::min(kPiece, strip.pixels - x);
    const std::size_t samples = (mPixels.SourceBytes(pixels) + group - 1) / group * group;
    mSamples.Run({{strip.source[0] + SourceBytes(x)}, {bytes}, samples});
    const std::size_t part = mPixels.IsLarge() ? kPart : kPiece;
    for (std::size_t y = 0; y < pixels; y += part) {
      const std::size_t count = std::min(part, pixels - y);
      if (mPixels.IsLarge()) CallToCache(strip.source[0] + SourceBytes(x + y + kPiece), SourceBytes(count));
      mPixels.Run(
          {{bytes + mPixels.SourceBytes(y)}, {strip.destination[0] + DestinationBytes(x + y)}, count});
    }
  }
}

}  // namespace ZrConvertersLib
