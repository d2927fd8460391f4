#include "Expectation.h"

#include <algorithm>

#include "Filters.h"
#include "model/Readers.h"

namespace Matrix {
namespace {

using Model::Memory;

/// Room for two border lines, a flipped overhang or a step back, more lines below, and three planes.
Memory SourceMemory(const Model::Pair& pair, const Model::Call& call) {
  const std::size_t stride = Model::SourceStride(pair, call);
  return {8 * stride + 64, (3 * call.sourceHeight + 10) * stride + 128};
}

Memory DestinationMemory(const Model::Pair& pair, const Model::Call& call) {
  const std::size_t stride = Model::DestinationStride(pair, call);
  return {4 * stride + 64, (call.height + 4 + 2 * call.destinationHeight) * stride + 256};
}

std::vector<std::uint8_t> Window(const Memory& memory, std::ptrdiff_t begin, std::ptrdiff_t end) {
  const auto bytes = memory.Range(begin, end);
  return {bytes.begin(), bytes.end()};
}

/// Bytes of the intermediate image; 0 where there is none.
std::uint32_t IntermediateSize(const Model::Pair& pair, const Model::Call& call) {
  if (pair.size() < 2) return 0;
  const Model::Stage& first = pair.front();
  return (call.sourceHeight + 4) * call.sourceWidth * first.source.multiplier * first.destination.bytes;
}

/// The second line of a mosaic's last pair may be one that the first stage of a chain did not write.
bool MayReadStaleLines(const Model::Pair& pair, const Model::Call& call) {
  return pair.size() > 1 && pair.back().source.meaning == Model::Meaning::Mosaic && call.height % 2 != 0;
}

/// Bytes that differ when an intermediate image held something else. A filter might map both to the same.
std::vector<bool> FindUndefined(const Model::Pair& pair, const Model::Call& call, Memory source,
                                Memory darkest) {
  Model::Call unfiltered = call;
  unfiltered.filter = nullptr;
  Memory brightest = darkest;
  Model::Convert(pair, unfiltered, source, darkest, 0x00);
  Model::Convert(pair, unfiltered, source, brightest, 0xFF);
  const auto dark = darkest.Range(darkest.Begin(), darkest.End());
  const auto bright = brightest.Range(brightest.Begin(), brightest.End());
  std::vector<bool> undefined(dark.size());
  for (std::size_t i = 0; i < dark.size(); ++i) undefined[i] = dark[i] != bright[i];
  return undefined;
}

}  // namespace

Expectation Expect(const Model::Pair& pair, const Case& conversion) {
  Model::Call call = conversion.call;
  call.filter = &GetFilter(conversion.filter).tables;
  Memory source = SourceMemory(pair, call), destination = DestinationMemory(pair, call);
  TestSupport::Fill(source.All(), conversion.content, conversion.seed);
  TestSupport::Fill(destination.All(), TestSupport::Content::Noise, ~conversion.seed);
  const Memory before = destination;

  Expectation expected;
  if (MayReadStaleLines(pair, call)) expected.undefined = FindUndefined(pair, call, source, destination);
  Model::Convert(pair, call, source, destination);
  expected.intermediateSize = IntermediateSize(pair, call);
  expected.sourceBegin = source.Begin();
  expected.destinationBegin = destination.Begin();
  expected.destinationStride = static_cast<std::ptrdiff_t>(Model::DestinationStride(pair, call));
  expected.source = Window(source, source.Begin(), source.End());
  expected.before = Window(before, destination.Begin(), destination.End());
  expected.after = Window(destination, destination.Begin(), destination.End());
  return expected;
}

}  // namespace Matrix
