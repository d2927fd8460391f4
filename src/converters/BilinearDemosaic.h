#pragma once

#include <array>

#include "converters/MosaicLines.h"

namespace ZrConvertersLib {

/// Colours interpolated from 3x3 sites. Lines are read as rows of even and of odd columns, some lines at a
/// time, each line once and with its neighbours beyond the first and last column.
class BilinearDemosaic {
 public:
  BilinearDemosaic(const PixelConverterContext& context, const MosaicRecipe& recipe);

  /// The context is that of the first pair.
  void Run(const PixelConverterContext& context, const MosaicPairs& pairs);

 private:
  /// Some columns of all pairs, and the memory for their rows.
  struct Work;

  struct Pairs {
    std::uint32_t first, count;
  };

  /// A pair of lines between its neighbours.
  using FourRows = std::array<const std::uint8_t*, 4>;

  std::size_t RowOffset(const PixelConverterContext& context, const MosaicColumns& columns) const;
  void RunColumns(const PixelConverterContext& context, const MosaicPairs& pairs,
                  const MosaicColumns& columns);
  std::uint32_t RunInside(const Work& work);
  UpcomingLines Upcoming(const Work& work, std::ptrdiff_t line) const;
  void RunBeyond(const Work& work, std::uint32_t pair);
  void ReadLines(const Work& work, std::ptrdiff_t first, std::ptrdiff_t end, std::uint8_t* row) const;
  void ReadRows(const Work& work, std::ptrdiff_t line, std::size_t count, std::uint8_t* row) const;

  simd::PixelWriter mWriter;
  LinePlan mLines;  ///< from rows
  LinePlan mSplit;  ///< samples to rows
};

}  // namespace ZrConvertersLib
