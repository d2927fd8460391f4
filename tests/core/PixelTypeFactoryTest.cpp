#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <ZrUtilsLib/LockScope.h>
#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <thread>
#include <typeinfo>
#include <vector>

namespace ZrConvertersLib {
namespace {

TEST(PixelTypeFactory, KeepsTheFirstTypeOfAnId) {
  const PixelType other(PixelTypeIds::Mono8, 99, 98, true);
  EXPECT_EQ(PixelTypeFactory::RegisterPixelType(PixelTypeIds::Mono8, &other, nullptr).GetCode(), 18u);
  EXPECT_EQ(PixelTypeFactory::GetPixelType(PixelTypeIds::Mono8)->GetPixelBitSize(), 8);
}

TEST(PixelTypeFactory, StoresACloneUnderTheIdItIsTold) {
  constexpr long kId = -4000;
  {
    const Bayer8 type(-4001, 21, 22, true);
    EXPECT_EQ(PixelTypeFactory::RegisterPixelType(kId, &type, "any name").GetCode(), 0u);
  }
  const PixelType* stored = PixelTypeFactory::GetPixelType(kId);
  ASSERT_NE(stored, nullptr);
  EXPECT_EQ(typeid(*stored), typeid(PixelType));
  EXPECT_EQ(stored->GetTypeID(), -4001);
  EXPECT_EQ(stored->GetPixelBitSize(), 21);
  EXPECT_EQ(stored->GetPixelByteSize(), 22);
  EXPECT_TRUE(stored->IsBayerPattern());
  EXPECT_FALSE(PixelTypeFactory::HasPixelType(-4001));
}

TEST(PixelTypeFactory, KeepsTheFirstConverterOfAPair) {
  static const PixelConverter first(-4010, -4011, 1, 1, 1, 1, false);
  static const PixelConverter second(-4010, -4011, 1, 1, 1, 1, false);
  EXPECT_FALSE(PixelTypeFactory::HasConverter(-4010, -4011));
  EXPECT_EQ(PixelTypeFactory::RegisterPixelConverter(first).GetCode(), 0u);
  EXPECT_EQ(PixelTypeFactory::RegisterPixelConverter(second).GetCode(), 18u);
  EXPECT_EQ(PixelTypeFactory::RegisterPixelConverter(-4010, -4011, &second).GetCode(), 18u);
  EXPECT_EQ(PixelTypeFactory::GetConverter(-4010, -4011), &first);
  EXPECT_FALSE(PixelTypeFactory::HasConverter(-4011, -4010));
}

TEST(PixelTypeFactory, TakesAConverterForAnyPair) {
  static const PixelConverter converter(-4020, -4021, 1, 1, 1, 1, false);
  EXPECT_EQ(PixelTypeFactory::RegisterPixelConverter(-4022, -4023, &converter).GetCode(), 0u);
  EXPECT_EQ(PixelTypeFactory::GetConverter(-4022, -4023), &converter);
  EXPECT_FALSE(PixelTypeFactory::HasConverter(-4020, -4021));
}

TEST(PixelTypeFactory, AnswersAbsentPairsWithTheSmallest) {
  constexpr long kSmallest = std::numeric_limits<long>::min();
  static const PixelConverter second(kSmallest, 2, 1, 1, 1, 1, true);
  EXPECT_EQ(PixelTypeFactory::GetConverter(-4030, 0), &second);
  static const PixelConverter first(kSmallest, 1, 1, 1, 1, 1, true);
  EXPECT_FALSE(PixelTypeFactory::HasConverter(-4030, 0));
  EXPECT_EQ(PixelTypeFactory::GetConverter(-4030, 0), &first);
  EXPECT_EQ(PixelTypeFactory::GetConverter(PixelTypeIds::Mono8, -4030), &first);
}

TEST(PixelTypeFactory, OffersItsInnerStepUnderTheLock) {
  static const PixelConverter converter(-4040, -4041, 1, 1, 1, 1, true);
  ASSERT_NE(PixelTypeFactoryInternal::sMutex, nullptr);
  const ZrUtilsLib::LockScope lock(*PixelTypeFactoryInternal::sMutex, 0);
  EXPECT_TRUE(PixelTypeFactory::HasConverterUnprotected(-4040, -4041));
  EXPECT_FALSE(PixelTypeFactory::HasConverterUnprotected(-4040, -4042));
}

TEST(PixelTypeFactory, ServesManyThreads) {
  constexpr int kThreads = 4;
  constexpr long kPairs = 200;
  static const PixelConverter converter(-4050, -4050, 1, 1, 1, 1, false);
  std::atomic<int> stored = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      for (long k = 0; k < kPairs; ++k) {
        const PixelType type(k, 1, 1, false);
        stored += PixelTypeFactory::RegisterPixelType(-10000 - k, &type, nullptr).IsSuccess();
        stored += PixelTypeFactory::RegisterPixelConverter(-10000, -10000 - k, &converter).IsSuccess();
        EXPECT_EQ(PixelTypeFactory::GetPixelType(-10000 - k)->GetTypeID(), k);
        EXPECT_EQ(PixelTypeFactory::GetConverter(-10000, -10000 - k), &converter);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(stored, 2 * kPairs);
}

}  // namespace
}  // namespace ZrConvertersLib
