#include "Registry.h"

#include <ZrConvertersLib/PixelTypeFactory.h>

namespace TestSupport {
namespace {

/// Families have ranges of 256 from 0x100 (RGB) to 0x600 (BiColor), each filled from its beginning; walk one
/// more on each side, and past twice the longest.
template <typename Action>
void ForEachId(Action action) {
  for (long family = 0; family < 0x800; family += 0x100)
    for (long id = family; id < family + 0x50; ++id) action(id);
}

}  // namespace

std::vector<long> DestinationsOf(long source) {
  std::vector<long> destinations;
  ForEachId([&](long id) {
    if (ZrConvertersLib::PixelTypeFactory::HasConverter(source, id)) destinations.push_back(id);
  });
  return destinations;
}

std::vector<std::pair<long, long>> RegisteredPairs() {
  std::vector<std::pair<long, long>> pairs;
  ForEachId([&](long source) {
    for (const long destination : DestinationsOf(source)) pairs.emplace_back(source, destination);
  });
  return pairs;
}

}  // namespace TestSupport
