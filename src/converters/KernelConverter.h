#pragma once

#include <ZrConvertersLib/PixelConverter.h>

#include "converters/LinePlan.h"
#include "core/LineDriver.h"

namespace ZrConvertersLib {

/// One line by `recipe`; `pixels` a whole number of groups.
void ConvertOneLine(const PixelConverterContext& context, const LineRecipe& recipe, std::size_t pixels);

/// All lines of a walk, `pixels` of each, from `lines`: what ConvertOneLine for each would give, prepared
/// once.
void ConvertAllLines(const LineDriver& driver, const LineRecipe& recipe, std::size_t pixels,
                     const SourceLines& lines);

/// Base of the converters that take one line at a time. Derived offers Recipe(flags), the kernel to use, and
/// Pixels(width), how many of them a line of that width is to write.
template <class Derived>
class KernelConverter : public PixelConverter {
 public:
  using PixelConverter::Convert;
  using PixelConverter::PixelConverter;

  ZrUtilsLib::Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    ConvertOneLine(context, Self().Recipe(context.mFlags), Self().Pixels(width));
    return {};
  }

  /// As inherited, but without a virtual call and preparations for every line.
  ZrUtilsLib::Result Convert(const unsigned char* source, std::uint32_t sourceWidth,
                             std::uint32_t sourceHeight, unsigned char* destination,
                             std::uint32_t destinationWidth, std::uint32_t destinationHeight,
                             std::uint32_t width, std::uint32_t height, std::uint32_t flags,
                             std::uint32_t destinationPadding, unsigned char**, std::uint32_t*,
                             std::uint32_t sourcePadding, bool flipVertical,
                             const RGBFilter* filter) const override {
    const LineDriver driver(
        *this, {source, sourceWidth, sourceHeight, destination, destinationWidth, destinationHeight, width,
                height, flags, destinationPadding, sourcePadding, flipVertical, filter});
    ConvertAllLines(driver, Self().Recipe(flags), Self().Pixels(driver.Width()), driver.Source());
    return {};
  }

  /// As the second stage of a chain: reads `samples` of `lines` where they are instead of an unpacked image.
  void ConvertSamples(const FrameCall& call, const SourceLines& lines, const SampleRecipe& samples) const {
    const LineDriver driver(*this, call);
    LineRecipe recipe = Self().Recipe(call.flags);
    if (!ReadSamplesDirectly(recipe, samples)) recipe.samples = samples;
    ConvertAllLines(driver, recipe, Self().Pixels(driver.Width()), lines);
  }

 private:
  const Derived& Self() const { return static_cast<const Derived&>(*this); }
};

/// `width` rounded up to whole groups.
constexpr std::size_t WholeGroups(std::uint32_t width, std::size_t groupPixels) {
  return (width + groupPixels - 1) / groupPixels * groupPixels;
}

}  // namespace ZrConvertersLib
