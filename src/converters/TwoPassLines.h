#pragma once

#include "converters/LinePlan.h"

namespace ZrConvertersLib {

/// A line conversion in two kernels: samples to bytes in the first-level cache, bytes to pixels from there, a
/// piece of a line at a time.
class TwoPassLines {
 public:
  /// `recipe` with its samples; the source of the blocks it runs has the samples' layout.
  TwoPassLines(const PixelConverterContext& context, const LineRecipe& recipe);

  void Run(const LineBlock& block) const;

  /// Bytes of a whole number of groups.
  std::size_t SourceBytes(std::size_t pixels) const {
    return mSamples.SourceBytes(mPixels.SourceBytes(pixels));
  }
  std::size_t DestinationBytes(std::size_t pixels) const { return mPixels.DestinationBytes(pixels); }

  bool PlanesApart(std::size_t pixels) const { return mPixels.PlanesApart(pixels); }

  /// Whether the samples of `pixels` fill whole groups, so that the next line's may follow at once.
  bool FillsGroups(std::size_t pixels) const {
    return mPixels.SourceBytes(pixels) % mSamples.Kernel().reader.group.pixels == 0;
  }

 private:
  void RunLine(const LineBlock& block) const;

  LinePlan mSamples, mPixels;
};

}  // namespace ZrConvertersLib
