#pragma once

#include "converters/SCF1Mosaic.h"

namespace ZrConvertersLib {

/// White sites give the detail, cells the colour. A pixel's white is its own sample or the mean of the white
/// sites around it; its colour is this white times the quotient of colour and white, which is interpolated
/// between the cells as in a Bayer mosaic.
class SCF1Interpolation {
 public:
  SCF1Interpolation(const PixelConverterContext& context, const SCF1Recipe& recipe);

  void Run(const SCF1Lines& lines) const;

 private:
  /// Some columns of the lines, and the memory for their rows.
  class Work;

  const PixelConverterContext& mContext;
  bool mApart;                             ///< lines are taken apart
  bool mToBytes;                           ///< the planes of colours hold bytes
  simd::Scf1ApartFunction mTakeApart;      ///< of samples where they lie, if there is one
  simd::Scf1ApartFunction mTakeRowsApart;  ///< of rows of samples
  simd::Scf1CellRowFunction mCellRow;
  SCF1Samples mSamples;
  SCF1Pixels mPixels;
};

}  // namespace ZrConvertersLib
