#pragma once

#include <concepts>

#include "converters/LinePlan.h"
#include "converters/WholeFrameConverter.h"

namespace ZrConvertersLib {

/// One line by `recipe`; `pixels` a whole number of groups.
void ConvertOneLine(const PixelConverterContext& context, const LineRecipe& recipe, std::size_t pixels);

/// All lines of a walk, `pixels` of each, from `lines`: what ConvertOneLine for each would give, prepared
/// once.
void ConvertAllLines(const LineDriver& driver, const LineRecipe& recipe, std::size_t pixels,
                     const SourceLines& lines);

/// What a converter of single lines offers: the kernels to use, and how many pixels a line of a width writes.
template <class Converter>
concept ConvertsLines = requires(const Converter& converter, std::uint32_t number) {
  { converter.Recipe(number) } -> std::same_as<LineRecipe>;
  { converter.Pixels(number) } -> std::same_as<std::size_t>;
};

/// Base of the converters that take one line at a time. Derived satisfies ConvertsLines; Recipe is given the
/// flags of the call.
template <class Derived>
class LineConverter : public WholeFrameConverter<Derived> {
 public:
  using WholeFrameConverter<Derived>::WholeFrameConverter;

  ZrUtilsLib::Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    static_assert(ConvertsLines<Derived>);
    ConvertOneLine(context, this->Self().Recipe(context.mFlags), this->Self().Pixels(width));
    return {};
  }

  void ConvertFrame(const FrameCall& call) const {
    const LineDriver driver(*this, call);
    ConvertAllLines(driver, this->Self().Recipe(call.flags), this->Self().Pixels(driver.Width()),
                    driver.Source());
  }

  /// As the second stage of a chain: reads `samples` of `lines` where they are instead of an unpacked image.
  void ConvertSamples(const FrameCall& call, const SourceLines& lines, const SampleRecipe& samples) const {
    const LineDriver driver(*this, call);
    LineRecipe recipe = this->Self().Recipe(call.flags);
    if (!ReadSamplesDirectly(recipe, samples)) recipe.samples = samples;
    ConvertAllLines(driver, recipe, this->Self().Pixels(driver.Width()), lines);
  }
};

/// `width` rounded up to whole groups of a reader.
constexpr std::size_t WholeGroups(std::uint32_t width, simd::SourceReader reader) {
  const std::size_t pixels = simd::FactsOf(reader).group.pixels;
  return (width + pixels - 1) / pixels * pixels;
}

}  // namespace ZrConvertersLib
