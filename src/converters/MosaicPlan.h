#pragma once

#include <ZrConvertersLib/PixelConverterContext.h>
#include <ZrUtilsLib/Result.h>

#include <cstdint>

#include "converters/LinePlan.h"
#include "core/LineDriver.h"

namespace ZrConvertersLib {

/// Where red stands in a tile of 2x2 sites; blue is opposite, green on the other two.
struct MosaicTile {
  bool redBelow, redRight;
};

/// The tile at line 0, column 0 that conversion flags name; of several, BGGR wins, then RGGB, then GBRG.
MosaicTile FirstTile(std::uint32_t flags);

/// What a mosaic converter asks of its kernels.
struct MosaicRecipe {
  std::uint8_t sampleBytes;
  std::uint8_t destination;  ///< place in kDestinations
  std::uint32_t shift;       ///< right shift of a sample to 8 bits
};

/// The conversion of a mosaic frame, a pair of lines at a time, prepared once.
class MosaicPlan {
 public:
  MosaicPlan(const PixelConverterContext& context, const MosaicRecipe& recipe);

  /// One colour for each tile of the lines mLine and mLine + 1.
  ZrUtilsLib::Result Fast(const PixelConverterContext& context, std::uint32_t width);

  /// Colours from 3x3 sites for the lines mLine and mLine + 1.
  ZrUtilsLib::Result Interpolate(const PixelConverterContext& context, std::uint32_t width);

  /// The last two lines once more by the fast method; NotSupported for an image of less than two.
  ZrUtilsLib::Result LastLine(const PixelConverterContext& context, std::uint32_t width);

  void Finish() const;

 private:
  struct Neighbourhood;

  MosaicTile TileOf(const PixelConverterContext& context) const;
  unsigned Sample(const std::uint8_t* line, std::uint32_t x) const;
  void LastColumn(const PixelConverterContext& context, std::uint32_t width);
  void InterpolateColumns(const PixelConverterContext& context, const Neighbourhood& lines,
                          std::uint32_t first, std::uint32_t end, std::uint32_t width);
  void Reduce(const std::uint8_t* line, std::uint32_t first, std::uint32_t end, std::uint32_t width,
              std::uint8_t* reduced) const;

  MosaicRecipe mRecipe;
  LinePlan mFast, mBilinear, mReduce, mSingle;
};

/// All lines of a walk, by the method that the flags name.
void ConvertMosaic(LineDriver& driver, const MosaicRecipe& recipe);

}  // namespace ZrConvertersLib
