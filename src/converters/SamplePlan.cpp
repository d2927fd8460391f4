#include "converters/SamplePlan.h"

#include <algorithm>

namespace ZrConvertersLib {

namespace {

/// Pixels converted at a time, and the most samples they have: two pieces of bytes and what is written stay
/// in the first-level cache.
constexpr std::size_t kPiece = 2048, kSamplesPerPixel = 3;

/// Groups of samples reach past the piece; whole vectors are read beyond it.
constexpr std::size_t kBeyond = 64;

}  // namespace

SamplePlan::SamplePlan(const PixelConverterContext& context, const LineRecipe& recipe)
    : mSamples(context, *recipe.samples), mPixels(context, recipe) {}

void SamplePlan::Run(const Strip& strip) const {
  for (std::size_t i = 0; i < strip.lines; ++i) RunLine(strip.Line(i));
}

void SamplePlan::RunLine(const Strip& strip) const {
  constexpr std::size_t kBytes = kPiece * kSamplesPerPixel + kBeyond;
  alignas(64) std::uint8_t bytes[2][kBytes];
  const std::size_t group = mSamples.GroupOfSource().pixels;
  const auto reduce = [&](std::size_t x) {
    const std::size_t pixels = std::min(kPiece, strip.pixels - x);
    const std::size_t samples = (mPixels.SourceBytes(pixels) + group - 1) / group * group;
    mSamples.Run({{strip.source[0] + SourceBytes(x)}, {bytes[x / kPiece % 2]}, samples});
  };
  // A piece ahead: the bytes that are read have left the store buffer.
  reduce(0);
  for (std::size_t x = 0; x < strip.pixels; x += kPiece) {
    if (x + kPiece < strip.pixels) reduce(x + kPiece);
    mPixels.Run({{bytes[x / kPiece % 2]},
                 {strip.destination[0] + DestinationBytes(x)},
                 std::min(kPiece, strip.pixels - x)});
  }
}

}  // namespace ZrConvertersLib
