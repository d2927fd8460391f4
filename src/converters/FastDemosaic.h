#pragma once

#include "converters/MosaicLines.h"

namespace ZrConvertersLib {

/// One colour for each tile of 2x2 sites: red, blue, and the mean of its two greens. Prepared for frames of
/// one width.
class FastDemosaic {
 public:
  FastDemosaic(const PixelConverterContext& context, const MosaicRecipe& recipe, std::uint32_t width);

  /// Pairs of the width that was named, at least 2; the context is that of the first one.
  void Run(const PixelConverterContext& context, const MosaicPairs& pairs);

 private:
  /// The last column of an odd width.
  struct LastColumn {
    MosaicSamples samples;
    LinePlan pixel;  ///< from three words

    LastColumn(const PixelConverterContext& context, const MosaicRecipe& recipe);
    void Run(const PixelConverterContext& pair, const MosaicPairs& pairs) const;
  };

  FastDemosaic(const PixelConverterContext& context, const MosaicRecipe& recipe, std::uint32_t width,
               const LineRecipe& tiles);
  void RunDirect(const PixelConverterContext& context, const MosaicPairs& pairs) const;
  void RunFromBytes(const PixelConverterContext& context, const MosaicPairs& pairs,
                    const MosaicColumns& columns) const;

  LinePlan mTiles;
  std::optional<MosaicSamples> mSamples;  ///< when mTiles does not read the source itself
  std::optional<LastColumn> mLastColumn;
};

}  // namespace ZrConvertersLib
