#include "converters/LinePlan.h"

#include <iterator>

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

namespace ZrConvertersLib {

LinePlan::~LinePlan() {
#if defined(__x86_64__)
  if (mKernel.stream != nullptr) _mm_sfence();
#endif
}

void LinePlan::Run(const LineBlock& block) const {
  if (block.pixels == 0 || block.lines == 0) return;
  const bool isShort = block.pixels < mKernel.block || mKernel.BlockPlanesOverlap(block.pixels);
  if (!isShort && mKernel.stream == nullptr) return RunWhole(block);
  const auto run = isShort ? RunShortLine : RunStreamedLine;
  for (std::size_t i = 0; i < block.lines; ++i) run(mKernel, block.Line(i));
}

void LinePlan::RunWhole(const LineBlock& block) const {
  simd::KernelArgs args = mKernel.args;
  for (std::size_t i = 0; i < std::size(args.source); ++i)
    args.source[i] = simd::LoadedSingly(block.source[i]);
  for (std::size_t i = 0; i < std::size(args.destination); ++i)
    args.destination[i] = simd::LoadedSingly(block.destination[i]);
  args.width = block.pixels;
  args.lines = block.lines;
  args.sourceStep = block.sourceStep;
  args.destinationStep = block.destinationStep;
  mKernel.function(args);
}

}  // namespace ZrConvertersLib
