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
  std::optional<std::uint32_t>
      shift;  ///< samples in words, which the fast method reads itself: right shift to 8 bits
};

/// The conversion of a mosaic frame, a pair of lines at a time, prepared once.
class MosaicPlan {
 public:
  MosaicPlan(const PixelConverterContext& context, const MosaicRecipe& recipe);

  /// Pairs of lines that follow one another, of which the first is the context's.
  struct Pairs {
    SourceLines lines;  ///< from line 0 of the image
    std::uint32_t width;
    std::uint32_t count;
    std::ptrdiff_t destinationStep;
  };

  /// One colour for each tile.
  void Fast(const PixelConverterContext& context, const Pairs& pairs);

  /// Colours from 3x3 sites.
  void Interpolate(const PixelConverterContext& context, const Pairs& pairs);

  void Finish() const;

 private:
  struct Columns {
    std::uint32_t first, end;

    std::uint32_t Count() const { return end - first; }
  };

  /// Some columns of all pairs, and the memory for their samples as bytes.
  struct Interpolation {
    const PixelConverterContext& context;
    const Pairs& pairs;
    const Columns& columns;
    std::uint8_t* rows;  ///< the first of the columns in the first row
    std::size_t pitch;   ///< bytes from a row to the next
  };

  LinePlan* Direct(std::uint32_t columns);
  void FastDirect(const PixelConverterContext& context, const Pairs& pairs, LinePlan& plan);
  void FastReduced(const PixelConverterContext& context, const Pairs& pairs, const Columns& columns);
  void LastColumn(const PixelConverterContext& context, const Pairs& pairs);
  void InterpolateColumns(const PixelConverterContext& context, const Pairs& pairs, const Columns& columns);
  std::uint32_t InterpolateInside(const Interpolation& all) const;
  void InterpolateBeyond(const Interpolation& all, std::uint32_t pair) const;
  template <class Row>
  void InterpolatePairs(const Interpolation& all, std::uint32_t pair, std::uint32_t count,
                        const Row& row) const;
  void Reduce(const Interpolation& all, std::ptrdiff_t line, std::size_t count, std::uint8_t* row) const;
  void Samples(const SourceLines& lines, std::size_t count, const Columns& columns, std::uint8_t* bytes,
               std::size_t pitch) const;
  static void Run(const LinePlan& plan, const SourceLines& lines, std::size_t count, const Columns& columns,
                  std::uint8_t* bytes, std::size_t pitch);

  LinePlan mFast, mBilinear, mSingle;
  std::optional<LinePlan> mSamples;
  std::optional<LinePlan> mComplement;  ///< the samples as interpolation to byte channels takes them
  std::optional<LinePlan>
      mFused;    ///< the fast method for packed samples of lines that end with a whole group
  bool mDirect;  ///< whether mFast reads the source itself
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
