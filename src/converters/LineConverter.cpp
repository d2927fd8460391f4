#include "converters/LineConverter.h"

#include "converters/TwoPassLines.h"

namespace ZrConvertersLib {

namespace {

/// Whether the lines follow one another without a gap in either image, so that they may be converted as one.
template <class Plan>
bool LinesJoin(const Plan& plan, const LineDriver& driver, const LineBlock& block) {
  return block.pixels == driver.Width() &&
         block.sourceStep == static_cast<std::ptrdiff_t>(plan.SourceBytes(block.pixels)) &&
         block.destinationStep == static_cast<std::ptrdiff_t>(plan.DestinationBytes(block.pixels)) &&
         plan.PlanesApart(block.pixels * block.lines);
}

LineBlock AllLines(const LineDriver& driver, const SourceLines& lines, std::size_t pixels) {
  const LineDriver::Steps steps = driver.BlockSteps();
  return {{lines.first},    {driver.Context().mDestination}, pixels, driver.Height(), lines.step,
          steps.destination};
}

/// The same pixels as a single line.
LineBlock Joined(const LineBlock& block) {
  return {{block.source[0]}, {block.destination[0]}, block.pixels * block.lines};
}

template <class Plan>
void RunLines(const Plan& plan, const LineDriver& driver, const SourceLines& lines, std::size_t pixels,
              bool mayJoin) {
  const LineBlock block = AllLines(driver, lines, pixels);
  plan.Run(mayJoin && LinesJoin(plan, driver, block) ? Joined(block) : block);
}

template <class Plan>
void RunOneLine(const Plan& plan, const PixelConverterContext& context, std::size_t pixels) {
  plan.Run({{context.mSource}, {context.mDestination}, pixels});
}

}  // namespace

void ConvertOneLine(const PixelConverterContext& context, const LineRecipe& recipe, std::size_t pixels) {
  if (recipe.samples)
    RunOneLine(TwoPassLines(context, recipe), context, pixels);
  else
    RunOneLine(LinePlan(context, recipe), context, pixels);
}

void ConvertAllLines(const LineDriver& driver, const LineRecipe& recipe, std::size_t pixels,
                     const SourceLines& lines) {
  if (recipe.samples) {
    const TwoPassLines plan(driver.Context(), recipe);
    RunLines(plan, driver, lines, pixels, plan.FillsGroups(pixels));
  } else {
    RunLines(LinePlan(driver.Context(), recipe), driver, lines, pixels, true);
  }
}

}  // namespace ZrConvertersLib
