#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <typeinfo>

#include "core/Catalogue.h"

namespace ZrTest {
namespace {

using ZrConvertersLib::PixelConverter;
using ZrConvertersLib::PixelType;
using ZrConvertersLib::PixelTypeFactory;
namespace Ids = ZrConvertersLib::PixelTypeIds;

TEST(Catalogue, HoldsEveryTypeWithItsFigures) {
  for (const CatalogueEntry& entry : kCatalogue) {
    SCOPED_TRACE(entry.name);
    EXPECT_EQ(entry.constant, entry.id);
    ASSERT_TRUE(PixelTypeFactory::HasPixelType(entry.id));
    const PixelType* type = PixelTypeFactory::GetPixelType(entry.id);
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(type->GetTypeID(), entry.id);
    EXPECT_EQ(type->GetPixelBitSize(), entry.bits);
    EXPECT_EQ(type->GetPixelByteSize(), entry.bytes);
    EXPECT_FALSE(type->IsBayerPattern());
    EXPECT_EQ(typeid(*type), typeid(PixelType));
  }
}

TEST(Catalogue, HoldsNothingElse) {
  std::set<long> expected;
  for (const CatalogueEntry& entry : kCatalogue) expected.insert(entry.id);
  EXPECT_EQ(expected.size(), 84u);
  for (long id = 0; id < 0x1000; ++id) {
    EXPECT_EQ(PixelTypeFactory::HasPixelType(id), expected.contains(id)) << id;
    EXPECT_EQ(PixelTypeFactory::GetPixelType(id) != nullptr, expected.contains(id)) << id;
  }
}

TEST(Catalogue, NamesSourcesWithoutType) {
  EXPECT_EQ(Ids::BGR10, 263);
  EXPECT_EQ(Ids::BGRa10, 267);
  EXPECT_EQ(Ids::BGR12, 271);
  EXPECT_EQ(Ids::BGRa12, 275);
}

TEST(Catalogue, HasAClassForEveryType) {
  for (const CatalogueEntry& entry : kCatalogue) {
    const std::unique_ptr<PixelType> type = entry.make();
    const PixelType& object = *type;
    EXPECT_NE(typeid(object), typeid(PixelType)) << entry.name;
    EXPECT_EQ(type->GetTypeID(), 7);
    EXPECT_EQ(type->GetPixelBitSize(), 8);
    EXPECT_EQ(type->GetPixelByteSize(), 9);
    EXPECT_TRUE(type->IsBayerPattern());
  }
}

TEST(PixelType, ClonesIntoAPlainType) {
  const ZrConvertersLib::Mono8 type(Ids::Mono8, 8, 1, true);
  const std::unique_ptr<const PixelType> clone(type.Clone());
  const PixelType& object = *clone;
  EXPECT_EQ(typeid(object), typeid(PixelType));
  EXPECT_EQ(clone->GetTypeID(), 512);
  EXPECT_EQ(clone->GetPixelBitSize(), 8);
  EXPECT_EQ(clone->GetPixelByteSize(), 1);
  EXPECT_TRUE(clone->IsBayerPattern());
}

/// Clone and GetBufferSizeFor take the figures that overrides report.
TEST(PixelType, AsksItsOwnGetters) {
  class Odd : public PixelType {
   public:
    Odd() : PixelType(1, 1, 1, false) {}
    unsigned short GetPixelBitSize() const override { return 77; }
    unsigned short GetPixelByteSize() const override { return 10; }
    bool IsBayerPattern() const override { return true; }
  };
  const Odd odd;
  EXPECT_EQ(odd.GetBufferSizeFor(3, 2), 60u);
  const std::unique_ptr<const PixelType> clone(odd.Clone());
  EXPECT_EQ(clone->GetPixelBitSize(), 77);
  EXPECT_EQ(clone->GetPixelByteSize(), 10);
  EXPECT_TRUE(clone->IsBayerPattern());
}

TEST(PixelType, SizesBuffersByRegisteredBytes) {
  EXPECT_EQ(PixelTypeFactory::GetPixelType(Ids::YCbCr12p_CbYCr)->GetBufferSizeFor(10, 20), 10u * 20 * 40);
  EXPECT_EQ(PixelTypeFactory::GetPixelType(Ids::Mono1p)->GetBufferSizeFor(10, 20), 200u);
  EXPECT_EQ(PixelTypeFactory::GetPixelType(Ids::RGB16)->GetBufferSizeFor(0xFFFFFFFF, 1), 0xFFFFFFFAu);
  EXPECT_EQ(PixelTypeFactory::GetPixelType(Ids::Mono8)->GetBufferSizeFor(1u << 16, 1u << 16), 0u);
}

TEST(PixelType, MatchesByRegisteredBitsAlone) {
  const PixelType& mono12 = *PixelTypeFactory::GetPixelType(Ids::Mono12);
  EXPECT_TRUE(PixelTypeMatches(mono12, 12, 0, false, false, 0));
  EXPECT_TRUE(PixelTypeMatches(mono12, 12, 99, true, true, -1));
  EXPECT_FALSE(PixelTypeMatches(mono12, 16, 0, false, false, 0));
  const PixelType& rgb12 = *PixelTypeFactory::GetPixelType(Ids::RGB12);
  EXPECT_FALSE(PixelTypeMatches(rgb12, 36, 0, false, false, 0));
  EXPECT_TRUE(PixelTypeMatches(rgb12, 12, 0, false, false, 0));
}

TEST(PixelType, FindsItsConverters) {
  const PixelType from(-3000, 8, 1, false);
  const PixelType to(-3001, 8, 1, false);
  EXPECT_FALSE(from.HasConverterTo(to));
  static const PixelConverter converter(-3000, -3001, 1, 1, 1, 1, true);
  EXPECT_TRUE(from.HasConverterTo(to));
  EXPECT_EQ(from.GetConverterTo(to), &converter);
  EXPECT_FALSE(to.HasConverterTo(from));
}

}  // namespace
}  // namespace ZrTest
