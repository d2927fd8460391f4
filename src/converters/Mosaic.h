#pragma once

#include <ZrUtilsLib/Result.h>

#include "converters/MosaicLines.h"

namespace ZrConvertersLib {

/// What a call of ConvertFast or ConvertInterpolate gives for its two lines.
void ConvertPairFast(const PixelConverterContext& context, const MosaicRecipe& recipe, std::uint32_t width);
void ConvertPairInterpolating(const PixelConverterContext& context, const MosaicRecipe& recipe,
                              std::uint32_t width);

/// The last two lines once more by the fast method; NotSupported for an image of less than two.
ZrUtilsLib::Result ConvertLastLineFast(const PixelConverterContext& context, const MosaicRecipe& recipe,
                                       std::uint32_t width);

/// All lines of a walk, from `lines`, by the method that the flags name.
void ConvertMosaic(const LineDriver& driver, const MosaicRecipe& recipe, const SourceLines& lines);

}  // namespace ZrConvertersLib
