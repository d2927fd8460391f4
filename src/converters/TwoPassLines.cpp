#include "converters/TwoPassLines.h"

#include <algorithm>

namespace ZrConvertersLib {

namespace {

/// Pixels converted at a time, and the most samples they have: two pieces of bytes and what is written stay
/// in the first-level cache.
constexpr std::size_t kPixelsAtATime = 2048, kSamplesPerPixel = 3;

/// Groups of samples reach past these pixels; whole vectors are read beyond it.
constexpr std::size_t kBeyond = 64;

}  // namespace

TwoPassLines::TwoPassLines(const PixelConverterContext& context, const LineRecipe& recipe)
    : mSamples(context, ToBytes(*recipe.samples)), mPixels(context, recipe) {}

void TwoPassLines::Run(const LineBlock& block) const {
  for (std::size_t i = 0; i < block.lines; ++i) RunLine(block.Line(i));
}

void TwoPassLines::RunLine(const LineBlock& block) const {
  constexpr std::size_t kBytes = kPixelsAtATime * kSamplesPerPixel + kBeyond;
  alignas(64) std::uint8_t bytes[2][kBytes];
  const std::size_t group = mSamples.Kernel().reader.group.pixels;
  const auto reduce = [&](std::size_t x) {
    const std::size_t pixels = std::min(kPixelsAtATime, block.pixels - x);
    const std::size_t samples = (mPixels.SourceBytes(pixels) + group - 1) / group * group;
    mSamples.Run({{block.source[0] + SourceBytes(x)}, {bytes[x / kPixelsAtATime % 2]}, samples});
  };
  // A piece ahead: the bytes that are read have left the store buffer.
  reduce(0);
  for (std::size_t x = 0; x < block.pixels; x += kPixelsAtATime) {
    if (x + kPixelsAtATime < block.pixels) reduce(x + kPixelsAtATime);
    mPixels.Run({{bytes[x / kPixelsAtATime % 2]},
                 {block.destination[0] + DestinationBytes(x)},
                 std::min(kPixelsAtATime, block.pixels - x)});
  }
}

}  // namespace ZrConvertersLib
