#include "core/FormatTable.h"

#include <gtest/gtest.h>

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

/// Byte and bit of the group where the sample's lowest bit, and that of its upper eight, lie.
struct Place {
  long format;
  unsigned sample, lowByte, lowBit, highByte, highBit;
};

TEST(FormatWords, PlacesSamplesInTheirBytes) {
  namespace Ids = PixelTypeIds;
  constexpr Place kPlaces[] = {
      {Ids::Mono10p, 1, 1, 2, 1, 4},       {Ids::Mono10p, 3, 3, 6, 4, 0},
      {Ids::Mono12Packed, 0, 1, 4, 0, 0},  {Ids::Mono12Packed, 1, 1, 0, 2, 0},
      {Ids::Bayer10Packed, 0, 1, 4, 0, 0}, {Ids::Bayer10Packed, 1, 1, 0, 2, 0},
      {Ids::BGR10, 2, 4, 0, 4, 2},         {Ids::RGB10p32, 1, 1, 2, 1, 4},
      {Ids::RGB10V1Packed, 2, 0, 4, 3, 0}, {Ids::RGB12V1Packed, 1, 1, 4, 2, 0},
      {Ids::RGB12V1Packed, 2, 4, 0, 3, 0}, {Ids::YCbCr411_8, 5, 5, 0, 5, 0},
  };
  for (const Place& place : kPlaces) {
    const FormatRow& row = *FindFormat(place.format);
    EXPECT_EQ(BitPosition(row, place.sample, 0), place.lowByte * 8 + place.lowBit) << row.name;
    EXPECT_EQ(BitPosition(row, place.sample, row.depth - 8u), place.highByte * 8 + place.highBit) << row.name;
  }
  EXPECT_EQ(BitPosition(*FindFormat(Ids::RGB565p), 0, 0), 11u);
  EXPECT_EQ(BitPosition(*FindFormat(Ids::BGR565p), 0, 0), 11u);
}

/// As the public tables of GigE Vision and MIPI CSI-2 have it.
TEST(FormatWords, PlacesSamplesOfFlaggedPackings) {
  namespace Ids = PixelTypeIds;
  constexpr Place kPlaces[] = {
      {Ids::Mono12Packed, 0, 1, 0, 0, 0}, {Ids::Bayer12Packed, 1, 1, 4, 2, 0},
      {Ids::Mono10Packed, 1, 1, 4, 2, 0}, {Ids::Bayer10p, 0, 4, 0, 0, 0},
      {Ids::Mono10p, 3, 4, 6, 3, 0},      {Ids::Mono12p, 1, 2, 4, 1, 0},
      {Ids::Bayer14p, 1, 4, 6, 1, 0},     {Ids::Mono14p, 3, 6, 2, 3, 0},
      {Ids::YCbCr422_10p, 2, 4, 4, 2, 0},
  };
  for (const Place& place : kPlaces) {
    const FormatRow& row = *FindFormat(place.format);
    EXPECT_EQ(FlaggedBitPosition(row, place.sample, 0), place.lowByte * 8 + place.lowBit) << row.name;
    EXPECT_EQ(FlaggedBitPosition(row, place.sample, row.depth - 8u), place.highByte * 8 + place.highBit)
        << row.name;
  }
}

}  // namespace
}  // namespace ZrConvertersLib
