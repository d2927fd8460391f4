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
  void RunTiles(const SCF1Lines& lines, std::uint8_t* destination) const;
  void MakeTiles(const SourceLines& lines, const MosaicColumns& columns, SCF1Planes& planes) const;
  void MakePart(const SourceLines& lines, std::uint32_t first, const MosaicColumns& part,
                SCF1Planes& planes) const;

  const PixelConverterContext& mContext;
  bool mFromBytes, mToBytes;
  SCF1Samples mSamples;
  SCF1Pixels mPixels;
};

}  // namespace ZrConvertersLib
