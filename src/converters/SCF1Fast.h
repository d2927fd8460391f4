#pragma once

#include "converters/SCF1Mosaic.h"

namespace ZrConvertersLib {

/// One colour for each tile of 4x4 sites: the means of its two red, its four green and its two blue ones.
/// Sites beyond the last whole tile take the colour of that tile.
class SCF1Fast {
 public:
  SCF1Fast(const PixelConverterContext& context, const SCF1Recipe& recipe);

  void Run(const SCF1Lines& lines) const;

 private:
  void RunTiles(const SCF1Lines& lines, std::uint8_t* destination, SCF1Planes& planes) const;
  void MakeTiles(const SourceLines& lines, const MosaicColumns& columns, SCF1Planes& planes) const;
  void MakeTilesOfRows(const SourceLines& lines, const MosaicColumns& columns, simd::Scf1Tiles& args) const;

  const PixelConverterContext& mContext;
  SCF1Tile mTile;
  bool mToBytes;                        ///< the planes of colours hold bytes
  simd::Scf1TilesFunction mKernel;      ///< of samples where they lie, if there is one
  simd::Scf1TilesFunction mRowsKernel;  ///< of rows of samples
  SCF1Samples mSamples;
  SCF1Pixels mPixels;
};

}  // namespace ZrConvertersLib
