#include "core/FormatTable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/Catalogue.h"
#include "core/FormatWords.h"
#include "core/OutputWriters.h"

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

TEST(FormatTable, KnowsSourcesWithoutType) {
  EXPECT_EQ(FindFormat(263)->name, "BGR10");
  EXPECT_EQ(BitsInMemory(*FindFormat(263)), 48u);
  EXPECT_EQ(FindFormat(267)->name, "BGRa10");
  EXPECT_EQ(FindFormat(271)->depth, 12);
  EXPECT_EQ(BitsInMemory(*FindFormat(275)), 64u);
  EXPECT_EQ(FindFormat(265), nullptr);
}

TEST(FormatTable, SizesLines) {
  EXPECT_EQ(LineBytes(FormatOf(PixelTypeIds::Mono10p), 5), 7u);
  EXPECT_EQ(LineBytes(FormatOf(PixelTypeIds::Mono10Packed), 5), 8u);
  EXPECT_EQ(LineBytes(FormatOf(PixelTypeIds::Mono1p), 9), 2u);
  EXPECT_EQ(LineBytes(FormatOf(PixelTypeIds::YCbCr411_8), 8), 12u);
  EXPECT_EQ(LineBytes(FormatOf(PixelTypeIds::YCbCr12p_CbYCr), 3), 14u);
  EXPECT_EQ(LineBytes(FormatOf(PixelTypeIds::RGB10_Planar), 3), 6u);
  EXPECT_EQ(LineBytes(FormatOf(PixelTypeIds::RGBa16), 0xFFFFFFFF), 8 * std::uint64_t{0xFFFFFFFF});
}

template <class Writer>
void ExpectWriter(long id, std::uint32_t bytes, bool filtered) {
  EXPECT_EQ(Writer::kTypeId, id);
  EXPECT_EQ(Writer::kByteSize, bytes) << id;
  EXPECT_EQ(Writer::kRow.filtered, filtered) << id;
  EXPECT_EQ(kDestinations[Writer::kIndex].id, id);
}

TEST(FormatTable, DescribesTheWriters) {
  ExpectWriter<OutputMono8>(512, 1, false);
  ExpectWriter<OutputMono10>(514, 2, false);
  ExpectWriter<OutputMono12>(515, 2, false);
  ExpectWriter<OutputMono14>(518, 2, false);
  ExpectWriter<OutputMono16>(519, 2, false);
  ExpectWriter<OutputRGB8>(258, 3, true);
  ExpectWriter<OutputBGR8>(259, 3, true);
  ExpectWriter<OutputRGBa8>(260, 4, true);
  ExpectWriter<OutputBGRa8>(261, 4, true);
  ExpectWriter<OutputRGB16>(282, 6, false);
  ExpectWriter<OutputBGR16>(283, 6, false);
  ExpectWriter<OutputRGB565p>(256, 2, true);
  ExpectWriter<OutputPlanar8>(289, 1, true);
  ExpectWriter<OutputPlanar10>(290, 2, false);
  ExpectWriter<OutputPlanar12>(291, 2, false);
  ExpectWriter<OutputPlanar16>(292, 2, false);
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

TEST(FormatWords, SaysLayoutsInWords) {
  const auto words = [](long id) { return LayoutInWords(*FindFormat(id)); };
  EXPECT_EQ(words(PixelTypeIds::Mono8s), "each pixel a byte, two's complement");
  EXPECT_EQ(words(PixelTypeIds::Bayer14), "each pixel bits 13..0 of a 16-bit little-endian word");
  EXPECT_EQ(words(PixelTypeIds::BGRa8), "B G R a, each a byte");
  EXPECT_EQ(words(PixelTypeIds::Mono14p),
            "4 pixels in 7 bytes, 14-bit samples without gaps, lowest bits first");
  EXPECT_EQ(words(PixelTypeIds::YCbCr422_8), "Y0 Cb Y1 Cr for 2 pixels, each a byte");
  EXPECT_EQ(words(PixelTypeIds::RGB16_Planar), "planes R G B, each sample a 16-bit little-endian word");
  EXPECT_EQ(words(PixelTypeIds::RGB565p),
            "16-bit little-endian word per pixel: R in bits 15..11, G in bits 10..5, B in bits 4..0");
}

}  // namespace
}  // namespace ZrConvertersLib
