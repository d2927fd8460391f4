#include "Registry.h"

#include <ZrConvertersLib/PixelTypeFactory.h>

namespace TestSupport {
namespace {

/// Families have ranges of 256 from 0x100 (RGB) to 0x600 (BiColor); walk one more on each side.
constexpr long kFirst = 0, kEnd = 0x800;

}  // namespace

std::vector<long> DestinationsOf(long source) {
  std::vector<long> destinations;
  for (long id = kFirst; id < kEnd; ++id)
    if (ZrConvertersLib::PixelTypeFactory::HasConverter(source, id)) destinations.push_back(id);
  return destinations;
}

std::vector<std::pair<long, long>> RegisteredPairs() {
  std::vector<std::pair<long, long>> pairs;
  for (long source = kFirst; source < kEnd; ++source)
    for (const long destination : DestinationsOf(source)) pairs.emplace_back(source, destination);
  return pairs;
}

}  // namespace TestSupport
