#include "support/Registry.h"

#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <vector>

#include "model/Formats.h"
#include "model/Readers.h"

namespace {

/// The only place where the pairs are counted. Families have ranges of 256 type numbers.
const std::map<long, std::size_t> kPairsPerFamily = {{0x100, 592}, {0x200, 240}, {0x300, 294},
                                                     {0x400, 170}, {0x500, 112}, {0x600, 80}};

/// Of the sources that have converters.
std::vector<std::pair<long, long>> ModelPairs() {
  std::vector<std::pair<long, long>> pairs;
  std::vector<Model::Source> sources = Model::AllSources();
  std::erase_if(sources, [](const auto& source) { return TestSupport::DestinationsOf(source.id).empty(); });
  for (const Model::Source& source : sources)
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

TEST(RegistryTest, CountsLinesAsTheModelDoes) {
  for (const auto& [source, destination] : ModelPairs()) {
    const Model::Pair pair = *Model::FindPair(source, destination);
    const auto* converter = ZrConvertersLib::PixelTypeFactory::GetConverter(source, destination);
    const bool mosaic = pair.back().source.meaning == Model::Meaning::Mosaic;
    SCOPED_TRACE(testing::Message() << source << " to " << destination);
    EXPECT_EQ(converter->GetLinesPerConvert(), mosaic ? 2u : 1u);
    EXPECT_EQ(converter->GetWidthMultiplier(), pair.size() > 1 ? 1u : pair[0].source.multiplier);
    for (const std::uint32_t width : {0u, 1u, 2u, 3u, 5u, 7u, 64u, 1001u}) {
      EXPECT_EQ(converter->GetSourceByteSize(width), Model::LineBytes(pair.front().source, width));
      EXPECT_EQ(converter->GetDestinationByteSize(width), pair.back().destination.bytes * width);
    }
  }
}

/// What GetSourceByteSize() says of sources whose pixels do not fill bytes of their own, or lie in planes.
const std::map<long, std::uint32_t> kPixelBytes = {
    {256, 2},  {257, 2},  {264, 4},  {265, 4},  {268, 5},  {269, 5},  {272, 5},  {273, 5},
    {276, 6},  {277, 6},  {286, 4},  {287, 4},  {288, 5},  {289, 1},  {290, 2},  {291, 2},
    {292, 2},  {1280, 1}, {1281, 2}, {1282, 2}, {1283, 2}, {1284, 2}, {1285, 2}, {1286, 2},
    {1536, 2}, {1537, 4}, {1538, 4}, {1539, 3}, {1540, 3}};

TEST(RegistryTest, CountsPixelsAsTheCatalogueDoes) {
  for (const auto& [source, destination] : TestSupport::RegisteredPairs()) {
    if (!kPixelBytes.contains(source)) continue;
    const auto* converter = ZrConvertersLib::PixelTypeFactory::GetConverter(source, destination);
    EXPECT_EQ(converter->GetSourceByteSize(), kPixelBytes.at(source)) << source << " to " << destination;
    EXPECT_EQ(converter->GetPipeliningSize(), 1u) << source << " to " << destination;
  }
}

TEST(RegistryTest, ServesSourcesThatAreNoTypes) {
  for (const long id : {263, 267, 271, 275}) {
    EXPECT_FALSE(ZrConvertersLib::PixelTypeFactory::HasPixelType(id));
    EXPECT_TRUE(ZrConvertersLib::PixelTypeFactory::HasConverter(id, 258));
  }
}

}  // namespace
