#pragma once

#include "converters/LinePlan.h"
#include "core/LineDriver.h"

namespace ZrConvertersLib {

/// The kernels that a BiColor converter uses.
struct BiColorRecipe {
  simd::PixelWriter writer;
  simd::SourceReader fast;   ///< one colour for two pixels
  simd::SourceReader split;  ///< samples to rows of each colour
  std::uint32_t shift;       ///< of words, to the 16-bit scale
};

/// One line, by the method named. Lines of less than two pixels write nothing.
void ConvertBiColorLine(const PixelConverterContext& context, const BiColorRecipe& recipe,
                        std::uint32_t width, bool interpolate);

/// All lines of a walk by the method that the flags name, prepared once.
void ConvertBiColorLines(const LineDriver& driver, const BiColorRecipe& recipe);

}  // namespace ZrConvertersLib
