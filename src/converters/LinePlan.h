#pragma once

#include "converters/PreparedKernel.h"

namespace ZrConvertersLib {

/// A conversion of lines by one kernel, prepared once per frame. The destructor issues the fence that orders
/// non-temporal stores before the later stores of this thread.
class LinePlan {
 public:
  LinePlan(const PixelConverterContext& context, const LineRecipe& recipe) : mKernel(context, recipe) {}
  ~LinePlan();
  LinePlan(const LinePlan&) = delete;
  LinePlan& operator=(const LinePlan&) = delete;

  void Run(const LineBlock& block) const;

  const PreparedKernel& Kernel() const { return mKernel; }
  simd::KernelArgs& Args() { return mKernel.args; }
  void SetUpcoming(const UpcomingLines& lines) { mKernel.upcoming = lines; }

  std::size_t SourceBytes(std::size_t pixels) const { return mKernel.SourceBytes(pixels); }
  std::size_t DestinationBytes(std::size_t pixels) const { return mKernel.DestinationBytes(pixels); }
  bool PlanesApart(std::size_t pixels) const { return mKernel.PlanesApart(pixels); }

 private:
  void RunWithPartOfGroup(const LineBlock& block) const;

  PreparedKernel mKernel;
};

}  // namespace ZrConvertersLib
