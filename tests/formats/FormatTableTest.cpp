#include "core/FormatTable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/Catalogue.h"
#include "formats/FormatWords.h"

namespace ZrConvertersLib {
namespace {

TEST(FormatTable, AgreesWithTheCatalogue) {
  for (const ZrTest::CatalogueEntry& entry : ZrTest::kCatalogue) {
    const FormatRow* row = FindFormat(entry.id);
    ASSERT_NE(row, nullptr) << entry.name;
    EXPECT_EQ(row->name, entry.name);
    EXPECT_EQ(row->bits, entry.bits) << entry.name;
    EXPECT_EQ(row->bytes, entry.bytes) << entry.name;
    EXPECT_EQ(BitsInMemory(*row), entry.bitsInMemory) << entry.name;
  }
}

TEST(FormatWords, PlacesEveryBit) {
  using Bytes = std::vector<std::string>;
  const auto bytes = [](long id) { return LayoutByBytes(*FindFormat(id)); };
  EXPECT_EQ(bytes(PixelTypeIds::Mono10p),
            (Bytes{"P0 7..0", "P1 5..0 | P0 9..8", "P2 3..0 | P1 9..6", "P3 1..0 | P2 9..4", "P3 9..2"}));
  EXPECT_EQ(bytes(PixelTypeIds::Mono12Packed), (Bytes{"P0 11..4", "P0 3..0 | P1 3..0", "P1 11..4"}));
  EXPECT_EQ(bytes(PixelTypeIds::Bayer10Packed), (Bytes{"P0 9..2", "- | P0 1..0 | - | P1 1..0", "P1 9..2"}));
  EXPECT_EQ(bytes(PixelTypeIds::RGB565p), (Bytes{"G 2..0 | B 4..0", "R 4..0 | G 5..3"}));
  EXPECT_EQ(bytes(PixelTypeIds::BGR565p), (Bytes{"G 2..0 | R 4..0", "B 4..0 | G 5..3"}));
  EXPECT_EQ(bytes(PixelTypeIds::Mono2p), (Bytes{"P3 1..0 | P2 1..0 | P1 1..0 | P0 1..0"}));
  EXPECT_EQ(bytes(PixelTypeIds::BGR10),
            (Bytes{"B 7..0", "- | B 9..8", "G 7..0", "- | G 9..8", "R 7..0", "- | R 9..8"}));
  EXPECT_EQ(bytes(PixelTypeIds::YCbCr411_8),
            (Bytes{"Y0 7..0", "Y1 7..0", "Cb 7..0", "Y2 7..0", "Y3 7..0", "Cr 7..0"}));
}

}  // namespace
}  // namespace ZrConvertersLib
