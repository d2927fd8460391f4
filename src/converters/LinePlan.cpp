#include "converters/LinePlan.h"

namespace ZrConvertersLib {

LinePlan::~LinePlan() {
  if (mKernel.stream != nullptr) OrderStreamedStores();
}

void LinePlan::Run(const LineBlock& block) const {
  if (block.pixels == 0 || block.lines == 0) return;
  if (block.pixels > mKernel.block && mKernel.PartOfGroup(block.pixels) != 0)
    return RunWithPartOfGroup(block);
  const bool isShort = block.pixels < mKernel.block || mKernel.BlockPlanesOverlap(block.pixels);
  if (!isShort && mKernel.stream == nullptr) return mKernel.Run(block);
  const auto run = isShort ? RunShortLine : RunStreamedLine;
  for (std::size_t i = 0; i < block.lines; ++i) run(mKernel, block.Line(i));
}

/// Kernels take whole groups; the pixels after them are a short line of their own.
void LinePlan::RunWithPartOfGroup(const LineBlock& block) const {
  LineBlock groups = block, rest = block;
  rest.pixels = mKernel.PartOfGroup(block.pixels);
  groups.pixels -= rest.pixels;
  for (const std::uint8_t*& source : rest.source)
    source = OffsetBy(source, static_cast<std::ptrdiff_t>(mKernel.SourceBytes(groups.pixels)));
  for (std::uint8_t*& destination : rest.destination)
    destination = OffsetBy(destination, static_cast<std::ptrdiff_t>(mKernel.DestinationBytes(groups.pixels)));
  Run(groups);
  for (std::size_t i = 0; i < rest.lines; ++i) RunShortLine(mKernel, rest.Line(i));
}

}  // namespace ZrConvertersLib
