#pragma once

#include "converters/SCF1Mosaic.h"

namespace ZrConvertersLib {

/// White carries the detail, cells carry the colour: a pixel is its white, or the mean of the white around
/// it, times the quotient of colour and white that is interpolated between cells as in a Bayer mosaic.
class SCF1Interpolation {
 public:
  SCF1Interpolation(const PixelConverterContext& context, const SCF1Recipe& recipe)
      : mContext(context), mSamples(context, recipe), mPixels(context, recipe) {}

  void Run(const SCF1Lines& lines) const;

 private:
  /// Some columns of the lines, and the memory for their rows.
  class Work;

  const PixelConverterContext& mContext;
  SCF1Samples mSamples;
  SCF1Pixels mPixels;
};

}  // namespace ZrConvertersLib
