#include "converters/KernelConverter.h"

namespace ZrConvertersLib {

namespace {

Strip LineOf(const PixelConverterContext& context, std::size_t pixels) {
  return {{context.mSource}, {context.mDestination}, pixels};
}

/// Whether the lines follow one another without a gap in either image, so that they may be converted as one.
bool LinesJoin(const LineDriver& driver, const LinePlan& plan, std::size_t pixels) {
  const PixelConverterContext& context = driver.Context();
  constexpr std::uint32_t kLargestStep = 0x7FFFFFFF;
  return !driver.Flips() && pixels == driver.Width() && context.mSourceStride == plan.SourceBytes(pixels) &&
         context.mDestinationStride == plan.DestinationBytes(pixels) &&
         context.mSourceStride <= kLargestStep && context.mDestinationStride <= kLargestStep;
}

}  // namespace

void ConvertOneLine(const PixelConverterContext& context, const LineRecipe& recipe, std::size_t pixels) {
  const LinePlan plan(context, recipe);
  plan.Run(LineOf(context, pixels));
  plan.Finish();
}

void ConvertAllLines(LineDriver& driver, const LineRecipe& recipe, std::size_t pixels) {
  const LinePlan plan(driver.Context(), recipe);
  if (LinesJoin(driver, plan, pixels)) {
    plan.Run(LineOf(driver.Context(), pixels * driver.Height()));
  } else {
    driver.Walk(
        [&](const PixelConverterContext& context, std::uint32_t) { plan.Run(LineOf(context, pixels)); },
        [](const PixelConverterContext&, std::uint32_t) {});
  }
  plan.Finish();
}

}  // namespace ZrConvertersLib
