// What becomes of allocations that fail, and of allocations that meet.

#include <ZrConvertersLib/ComplexConverter.h>
#include <ZrConvertersLib/PixelType.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <gtest/gtest.h>

#include <barrier>
#include <new>
#include <thread>

#include "core/Recorder.h"
#include "support/Allocations.h"

namespace ZrConvertersLib {
namespace {

using TestSupport::sAllocations;

class Allocation : public testing::Test {
 protected:
  void TearDown() override { Recover(); }
  static void Recover() { sAllocations.Recover(); }
};

/// Every allocation of the constructor fails in turn; a leak would show under AddressSanitizer.
TEST_F(Allocation, MissingForAFilter) {
  for (int left = 0; left < 3; ++left) {
    sAllocations.left = left;
    EXPECT_THROW(const RGBFilter filter, std::bad_alloc);
  }
  Recover();
  EXPECT_TRUE(RGBFilter().IsIdentity());
}

TEST_F(Allocation, MissingForAType) {
  const PixelType type(-1, 1, 1, false);
  // First the clone, then the entry in the registry.
  for (int left = 0; left < 2; ++left) {
    sAllocations.left = left;
    EXPECT_THROW(PixelTypeFactory::RegisterPixelType(-1, &type, nullptr), std::bad_alloc);
    Recover();
    EXPECT_FALSE(PixelTypeFactory::HasPixelType(-1));
  }
  EXPECT_TRUE(PixelTypeFactory::RegisterPixelType(-1, &type, nullptr).IsSuccess());
}

TEST_F(Allocation, MissingForTheRegistry) {
  { const PixelTypeFactoryCleanup cleanup; }
  const PixelType type(-1, 1, 1, false);
  static const PixelConverter converter(-1, -2, 1, 1, 1, 1, false);
  const auto code = [&](auto action) {
    sAllocations.left = 1;  // the lock, but not what it guards
    const auto result = action();
    Recover();
    { const PixelTypeFactoryCleanup cleanup; }
    return result;
  };
  EXPECT_EQ(code([&] { return PixelTypeFactory::RegisterPixelType(-1, &type, nullptr); }).GetCode(), 24u);
  EXPECT_EQ(code([&] { return PixelTypeFactory::RegisterPixelConverter(converter); }).GetCode(), 24u);
  EXPECT_FALSE(code([&] { return PixelTypeFactory::HasPixelType(-1); }));
  EXPECT_FALSE(code([&] { return PixelTypeFactory::HasConverter(-1, -2); }));
}

/// Two threads that both find no lock and both make one: one of the two must be used by both, the other be
/// freed.
TEST_F(Allocation, HappensOnceForTheLock) {
  { const PixelTypeFactoryCleanup cleanup; }
  const long before = sAllocations.alive;
  long after = 0;
  bool met = false;
  {
    std::barrier start(2);
    const auto first = [&start](long id) {
      const PixelType type(id, 1, 1, false);
      start.arrive_and_wait();
      EXPECT_TRUE(PixelTypeFactory::RegisterPixelType(id, &type, nullptr).IsSuccess());
    };
    std::thread other(first, -31);
    sAllocations.awaited = 2;
    first(-32);
    other.join();
    met = sAllocations.awaited == 0;
    EXPECT_TRUE(PixelTypeFactory::HasPixelType(-31));
    EXPECT_TRUE(PixelTypeFactory::HasPixelType(-32));
    { const PixelTypeFactoryCleanup cleanup; }
  }
  after = sAllocations.alive;
  EXPECT_TRUE(met);
  EXPECT_EQ(after, before);
}

TEST_F(Allocation, MissingForTheBufferOfAChain) {
  PixelConverter stage(-10, -11, 1, 1, 1, 1, false);
  const ComplexConverter chain(&stage, &stage);
  ZrTest::Pipeline pipeline(16);
  const auto convert = [&](bool own) {
    return chain.Convert(nullptr, 1000, 10, nullptr, 1000, 10, 1000, 10, 0, 0,
                         own ? nullptr : &pipeline.buffer, &pipeline.size, 0, false, nullptr);
  };
  sAllocations.tooLarge = 10000;
  EXPECT_THROW(convert(false), std::bad_alloc);
  EXPECT_EQ(pipeline.buffer, nullptr);
  EXPECT_EQ(pipeline.size, 0u);
  EXPECT_THROW(convert(true), std::bad_alloc);
  Recover();
  EXPECT_TRUE(convert(true).IsSuccess());
  EXPECT_TRUE(convert(false).IsSuccess());
  EXPECT_GE(pipeline.size, 10000u);
}

}  // namespace
}  // namespace ZrConvertersLib
