#include "converters/LineConverter.h"

#include "converters/TwoPassLines.h"
#include "core/PointerOffset.h"

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

/// A block of lines of one source image: of its one plane, or of all three.
LineBlock BlockOf(const PixelConverterContext& context, const SourceLines& lines, std::size_t pixels) {
  const std::ptrdiff_t plane = static_cast<std::int32_t>(context.mSourceStride * context.mSourceHeight);
  return {{lines.first, OffsetBy(lines.first, plane), OffsetBy(lines.first, 2 * plane)},
          {context.mDestination},
          pixels,
          1,
          lines.step};
}

LineBlock AllLines(const LineDriver& driver, const SourceLines& lines, std::size_t pixels) {
  LineBlock all = BlockOf(driver.Context(), lines, pixels);
  all.lines = driver.Height();
  all.destinationStep = driver.BlockSteps().destination;
  return all;
}

template <class Plan>
void RunLines(const Plan& plan, const LineDriver& driver, const SourceLines& lines, std::size_t pixels,
              bool mayJoin) {
  LineBlock block = AllLines(driver, lines, pixels);
  if (mayJoin && LinesJoin(plan, driver, block)) {
    block.pixels *= block.lines;
    block.lines = 1;
  }
  plan.Run(block);
}

template <class Plan>
void RunOneLine(const Plan& plan, const PixelConverterContext& context, std::size_t pixels) {
  plan.Run(BlockOf(context, {context.mSource, 0}, pixels));
}

}  // namespace

void ConvertOneLine(const PixelConverterContext& context, const LineRecipe& recipe, std::size_t pixels) {
  if (recipe.samples)
    RunOneLine(TwoPassLines(context, recipe), context, pixels);
  else
    RunOneLine(LinePlan(context, recipe), context, pixels);
}

void ConvertAllLines(const PixelConverter& converter, const FrameCall& call, const LineRecipe& recipe,
                     std::size_t pixels, const SourceLines* lines) {
  const LineDriver driver(converter, call);
  const SourceLines source = lines != nullptr ? *lines : driver.Source();
  if (recipe.samples) {
    const TwoPassLines plan(driver.Context(), recipe);
    RunLines(plan, driver, source, pixels, plan.FillsGroups(pixels));
  } else {
    RunLines(LinePlan(driver.Context(), recipe), driver, source, pixels, true);
  }
}

}  // namespace ZrConvertersLib
