#pragma once

#include <concepts>

#include "converters/LinePlan.h"
#include "converters/WholeFrameConverter.h"

namespace ZrConvertersLib {

/// One line by `recipe`.
void ConvertOneLine(const PixelConverterContext& context, const LineRecipe& recipe, std::size_t pixels);

/// All lines of a call to `converter`, `pixels` of each: what ConvertOneLine for each would give, prepared
/// once. From `lines` where they are not those of the call.
void ConvertAllLines(const PixelConverter& converter, const FrameCall& call, const LineRecipe& recipe,
                     std::size_t pixels, const SourceLines* lines = nullptr);

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
    ConvertAllLines(*this, call, this->Self().Recipe(call.flags), Pixels(call));
  }

  /// As the second stage of a chain: reads `samples` of `lines` where they are instead of an unpacked image.
  void ConvertSamples(const FrameCall& call, const SourceLines& lines, const SampleRecipe& samples) const {
    LineRecipe recipe = this->Self().Recipe(call.flags);
    ReadSamples(recipe, samples);
    ConvertAllLines(*this, call, recipe, Pixels(call), &lines);
  }

 private:
  std::size_t Pixels(const FrameCall& call) const {
    return this->Self().Pixels(call.width * this->GetWidthMultiplier());
  }
};

/// `width` rounded up to whole groups of a reader.
constexpr std::size_t WholeGroups(std::uint32_t width, simd::SourceReader reader) {
  const std::size_t pixels = simd::FactsOf(reader).group.pixels;
  return (width + pixels - 1) / pixels * pixels;
}

}  // namespace ZrConvertersLib
