#include "converters/KernelConverter.h"

#include "converters/SamplePlan.h"

namespace ZrConvertersLib {

namespace {

/// Whether the lines follow one another without a gap in either image, so that they may be converted as one.
template <class Plan>
bool LinesJoin(const Plan& plan, const LineDriver& driver, const Strip& strip) {
  return strip.pixels == driver.Width() &&
         strip.sourceStep == static_cast<std::ptrdiff_t>(plan.SourceBytes(strip.pixels)) &&
         strip.destinationStep == static_cast<std::ptrdiff_t>(plan.DestinationBytes(strip.pixels)) &&
         plan.PlanesApart(strip.pixels * strip.lines);
}

Strip AllLines(const LineDriver& driver, const SourceLines& lines, std::size_t pixels) {
  const LineDriver::Steps steps = driver.BlockSteps();
  return {{lines.first},    {driver.Context().mDestination}, pixels, driver.Height(), lines.step,
          steps.destination};
}

/// The same pixels as a single line.
Strip Joined(const Strip& strip) {
  return {{strip.source[0]}, {strip.destination[0]}, strip.pixels * strip.lines};
}

template <class Plan>
void RunLines(const Plan& plan, const LineDriver& driver, const SourceLines& lines, std::size_t pixels,
              bool mayJoin) {
  const Strip strip = AllLines(driver, lines, pixels);
  plan.Run(mayJoin && LinesJoin(plan, driver, strip) ? Joined(strip) : strip);
  plan.Finish();
}

template <class Plan>
void RunOneLine(const Plan& plan, const PixelConverterContext& context, std::size_t pixels) {
  plan.Run({{context.mSource}, {context.mDestination}, pixels});
  plan.Finish();
}

}  // namespace

void ConvertOneLine(const PixelConverterContext& context, const LineRecipe& recipe, std::size_t pixels) {
  if (recipe.samples)
    RunOneLine(SamplePlan(context, recipe), context, pixels);
  else
    RunOneLine(LinePlan(context, recipe), context, pixels);
}

void ConvertAllLines(const LineDriver& driver, const LineRecipe& recipe, std::size_t pixels,
                     const SourceLines& lines) {
  if (recipe.samples) {
    const SamplePlan plan(driver.Context(), recipe);
    RunLines(plan, driver, lines, pixels, plan.FillsGroups(pixels));
  } else {
    RunLines(LinePlan(driver.Context(), recipe), driver, lines, pixels, true);
  }
}

}  // namespace ZrConvertersLib
