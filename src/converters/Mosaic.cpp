#include "converters/Mosaic.h"

#include <ZrConvertersLib/PixelConverter.h>

#include "converters/BilinearDemosaic.h"
#include "converters/FastDemosaic.h"
#include "core/PointerOffset.h"

namespace ZrConvertersLib {

using ZrUtilsLib::Result;
using ZrUtilsLib::ResultCode;

namespace {

/// A mosaic of one column or of no pair has no tile, and no plan is made for it.
void RunFast(const PixelConverterContext& context, const MosaicRecipe& recipe, const MosaicPairs& pairs) {
  if (pairs.width < 2 || pairs.count == 0) return;
  FastDemosaic(context, recipe, pairs.width).Run(context, pairs);
}

void RunInterpolating(const PixelConverterContext& context, const MosaicRecipe& recipe,
                      const MosaicPairs& pairs) {
  if (pairs.count == 0) return;
  BilinearDemosaic(context, recipe).Run(context, pairs);
}

}  // namespace

void ConvertPairFast(const PixelConverterContext& context, const MosaicRecipe& recipe, std::uint32_t width) {
  RunFast(context, recipe, {ImageLines(context), width, 1, 0});
}

void ConvertPairInterpolating(const PixelConverterContext& context, const MosaicRecipe& recipe,
                              std::uint32_t width) {
  RunInterpolating(context, recipe, {ImageLines(context), width, 1, 0});
}

Result ConvertLastLineFast(const PixelConverterContext& context, const MosaicRecipe& recipe,
                           std::uint32_t width) {
  if (context.mSourceHeight < 2) return ResultCode::NotSupported;
  PixelConverterContext back = context;
  back.mLine -= 1;
  back.mSource = OffsetBy(back.mSource, -std::ptrdiff_t{back.mSourceStride});
  back.mDestination = OffsetBy(back.mDestination, -std::ptrdiff_t{back.mDestinationStride});
  ConvertPairFast(back, recipe, width);
  return {};
}

void ConvertMosaic(const LineDriver& driver, const MosaicRecipe& recipe, const SourceLines& lines) {
  const PixelConverterContext& first = driver.Context();
  const MosaicPairs pairs{lines, driver.Width(), driver.Blocks(), driver.BlockSteps().destination};
  const bool interpolate = (first.mFlags & PixelConverter::FLAG_BAYER_INTERPOLATE) != 0;
  (interpolate ? RunInterpolating : RunFast)(first, recipe, pairs);
  if (driver.Singles() == 0 || first.mSourceHeight < 2) return;
  // The one line left over comes out of the fast method together with the line before it.
  PixelConverterContext last = first;
  last.mLine = driver.Height() - 2;
  last.mDestination = OffsetBy(
      first.mDestination, pairs.count * pairs.destinationStep - std::ptrdiff_t{first.mDestinationStride});
  RunFast(last, recipe, {lines, driver.Width(), 1, 0});
}

}  // namespace ZrConvertersLib
