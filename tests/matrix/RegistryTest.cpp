#include "support/Registry.h"

#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <vector>

#include "model/Formats.h"

namespace {

/// The only place where the pairs are counted. Families have ranges of 256 type numbers.
const std::map<long, std::size_t> kPairsPerFamily = {{0x100, 320}, {0x200, 240}, {0x300, 294}, {0x400, 170}};

std::vector<std::pair<long, long>> ModelPairs() {
  std::vector<std::pair<long, long>> pairs;
  for (const Model::Source& source : Model::AllSources())
    for (const long destination : Model::DestinationsOf(source.id))
      pairs.emplace_back(source.id, destination);
  std::ranges::sort(pairs);
  return pairs;
}

TEST(RegistryTest, HoldsTheCountedPairsOfEachFamily) {
  std::map<long, std::size_t> counts;
  for (const auto& [source, destination] : TestSupport::RegisteredPairs()) ++counts[source & ~0xFFL];
  EXPECT_EQ(counts, kPairsPerFamily);
}

TEST(RegistryTest, HoldsThePairsOfTheModel) {
  EXPECT_EQ(TestSupport::RegisteredPairs(), ModelPairs());
}

TEST(RegistryTest, GivesEachPairItsOwnConverter) {
  for (const auto& [source, destination] : TestSupport::RegisteredPairs()) {
    const auto* converter = ZrConvertersLib::PixelTypeFactory::GetConverter(source, destination);
    EXPECT_EQ(converter->GetSourceType(), source);
    EXPECT_EQ(converter->GetDestinationType(), destination);
  }
}

TEST(RegistryTest, ServesSourcesThatAreNoTypes) {
  for (const long id : {263, 267, 271, 275}) {
    EXPECT_FALSE(ZrConvertersLib::PixelTypeFactory::HasPixelType(id));
    EXPECT_TRUE(ZrConvertersLib::PixelTypeFactory::HasConverter(id, 258));
  }
}

}  // namespace
