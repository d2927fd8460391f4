#pragma once

#include <ZrConvertersLib/PixelConverterContext.h>
#include <ZrUtilsLib/Result.h>

#include <cstdint>
#include <optional>

#include "converters/LinePlan.h"
#include "core/LineDriver.h"

namespace ZrConvertersLib {

/// Where red stands in a tile of 2x2 sites; blue is opposite, green on the other two.
struct MosaicTile {
  bool redBelow, redRight;
};

/// What a mosaic converter asks of its kernels.
struct MosaicRecipe {
  std::uint8_t destination;             ///< place in kDestinations
  std::optional<SampleRecipe> samples;  ///< unless they are bytes
};

/// The conversion of a mosaic frame, a pair of lines at a time, prepared once.
class MosaicPlan {
 public:
  /// `lines` is where to read line mLine and those around it.
  MosaicPlan(const PixelConverterContext& context, const MosaicRecipe& recipe);

  /// One colour for each tile of the two lines of a block, and of the blocks that follow in the walk.
  void Fast(const PixelConverterContext& context, const SourceLines& lines, std::uint32_t width,
            std::uint32_t blocks, const LineDriver::Steps& steps);

  /// Colours from 3x3 sites for the same.
  void Interpolate(const PixelConverterContext& context, const SourceLines& lines, std::uint32_t width,
                   std::uint32_t blocks, const LineDriver::Steps& steps);

  void Finish() const;

 private:
  struct Columns {
    std::uint32_t first, end;
  };
  class ReducedLines;

  MosaicTile TileOf(const PixelConverterContext& context) const;
  void FastEven(const PixelConverterContext& context, const SourceLines& lines, std::uint32_t width,
                std::uint32_t blocks, const LineDriver::Steps& steps);
  void FastPair(const PixelConverterContext& context, const SourceLines& lines, std::uint32_t width);
  void LastColumn(const PixelConverterContext& context, const SourceLines& lines, std::uint32_t width);
  void InterpolateColumns(PixelConverterContext context, const SourceLines& lines, std::uint32_t width,
                          const Columns& columns, std::uint32_t blocks, const LineDriver::Steps& steps);
  void InterpolatePair(const PixelConverterContext& context, ReducedLines& lines, const Columns& columns);
  void Reduce(const std::uint8_t* line, const Columns& columns, std::uint32_t width,
              std::uint8_t* reduced) const;
  const std::uint8_t* Samples(const std::uint8_t* line, const Columns& columns, std::uint8_t* scratch) const;

  LinePlan mFast, mBilinear, mSingle;
  std::optional<LinePlan> mSamples;
};

/// What a call of ConvertFast or ConvertInterpolate gives for its two lines.
ZrUtilsLib::Result ConvertPairFast(const PixelConverterContext& context, const MosaicRecipe& recipe,
                                   std::uint32_t width);
ZrUtilsLib::Result ConvertPairInterpolating(const PixelConverterContext& context, const MosaicRecipe& recipe,
                                            std::uint32_t width);

/// The last two lines once more by the fast method; NotSupported for an image of less than two.
ZrUtilsLib::Result ConvertLastLineFast(const PixelConverterContext& context, const MosaicRecipe& recipe,
                                       std::uint32_t width);

/// All lines of a walk, from `lines`, by the method that the flags name.
void ConvertMosaic(const LineDriver& driver, const MosaicRecipe& recipe, const SourceLines& lines);

}  // namespace ZrConvertersLib
