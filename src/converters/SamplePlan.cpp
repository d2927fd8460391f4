#include "converters/SamplePlan.h"

#include <algorithm>

#include "core/PointerOffset.h"

namespace ZrConvertersLib {

namespace {

/// Pixels converted at a time, and the most samples they have: together with what is written they stay in the
/// first-level cache.
constexpr std::size_t kPiece = 4096, kSamplesPerPixel = 3;

/// Groups of samples reach past the piece; whole vectors are read beyond it.
constexpr std::size_t kBeyond = 64;

}  // namespace

SamplePlan::SamplePlan(const PixelConverterContext& context, const LineRecipe& recipe)
    : mSamples(context, *recipe.samples), mPixels(context, recipe) {}

void SamplePlan::Run(const Strip& strip) const {
  Strip line = Joined(strip, SourceBytes(strip.pixels), DestinationBytes(strip.pixels));
  for (std::size_t i = 0; i < line.lines; ++i) {
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
    mPixels.Run({{bytes}, {strip.destination[0] + DestinationBytes(x)}, pixels});
  }
}

}  // namespace ZrConvertersLib
