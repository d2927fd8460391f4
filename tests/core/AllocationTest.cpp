// Replaces the allocator of the whole program, the library's included, by one that counts, can be made to
// fail and can hold threads until they meet in it.

#include <ZrConvertersLib/ComplexConverter.h>
#include <ZrConvertersLib/PixelType.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <thread>
#include <vector>

#include "core/Recorder.h"

namespace {

/// Allocations that still succeed.
std::atomic<int> sAllocationsLeft = std::numeric_limits<int>::max();
/// Allocations of at least so many bytes always fail.
std::atomic<std::size_t> sTooLarge = std::numeric_limits<std::size_t>::max();
/// Threads that still have to come before any that allocates may go on.
std::atomic<int> sAwaited = 0;
/// Allocations that have not been freed.
std::atomic<int> sAlive = 0;

void Meet() noexcept {
  if (sAwaited <= 0) return;
  --sAwaited;
  for (int i = 0; i < 10000 && sAwaited > 0; ++i) std::this_thread::sleep_for(std::chrono::microseconds(100));
}

void* Allocate(std::size_t size) noexcept {
  Meet();
  if (size >= sTooLarge || sAllocationsLeft == 0) return nullptr;
  if (sAllocationsLeft != std::numeric_limits<int>::max()) --sAllocationsLeft;
  ++sAlive;
  return std::malloc(size);
}

void Free(void* memory) noexcept {
  if (memory != nullptr) --sAlive;
  std::free(memory);
}

void* AllocateOrThrow(std::size_t size) {
  void* memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

// GCC takes one side that is inlined for a mismatch with the other.
#define ZR_NOT_INLINED __attribute__((noinline))

void* operator new(std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
ZR_NOT_INLINED void operator delete(void* memory) noexcept {
  Free(memory);
}
ZR_NOT_INLINED void operator delete[](void* memory) noexcept {
  Free(memory);
}
ZR_NOT_INLINED void operator delete(void* memory, std::size_t) noexcept {
  Free(memory);
}
ZR_NOT_INLINED void operator delete[](void* memory, std::size_t) noexcept {
  Free(memory);
}

namespace ZrConvertersLib {
namespace {

class Allocation : public testing::Test {
 protected:
  void TearDown() override { Recover(); }
  static void Recover() {
    sAllocationsLeft = std::numeric_limits<int>::max();
    sTooLarge = std::numeric_limits<std::size_t>::max();
  }
};

/// Every allocation of the constructor fails in turn; a leak would show under AddressSanitizer.
TEST_F(Allocation, MissingForAFilter) {
  for (int left = 0; left < 3; ++left) {
    sAllocationsLeft = left;
    EXPECT_THROW(const RGBFilter filter, std::bad_alloc);
  }
  Recover();
  EXPECT_TRUE(RGBFilter().IsIdentity());
}

TEST_F(Allocation, MissingForAType) {
  const PixelType type(-1, 1, 1, false);
  // First the clone, then the entry in the registry.
  for (int left = 0; left < 2; ++left) {
    sAllocationsLeft = left;
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
    sAllocationsLeft = 1;  // the lock, but not what it guards
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
  const int before = sAlive;
  int after = 0;
  bool met = false;
  {
    std::barrier start(2);
    const auto first = [&start](long id) {
      const PixelType type(id, 1, 1, false);
      start.arrive_and_wait();
      EXPECT_TRUE(PixelTypeFactory::RegisterPixelType(id, &type, nullptr).IsSuccess());
    };
    std::thread other(first, -31);
    sAwaited = 2;
    first(-32);
    other.join();
    met = sAwaited == 0;
    EXPECT_TRUE(PixelTypeFactory::HasPixelType(-31));
    EXPECT_TRUE(PixelTypeFactory::HasPixelType(-32));
    { const PixelTypeFactoryCleanup cleanup; }
  }
  after = sAlive;
  EXPECT_TRUE(met);
  EXPECT_EQ(after, before);
}

/// A buffer that is just large enough is used as it is.
TEST_F(Allocation, HappensNotForALargeEnoughBuffer) {
  PixelConverter stage(-20, -21, 1, 2, 1, 1, false);
  const ComplexConverter chain(&stage, &stage);
  ZrTest::Pipeline pipeline((10 + 4) * 16 * 2);
  sAllocationsLeft = 0;
  for (const std::uint32_t flags : {0u, PixelConverter::FLAG_BAND_MIDDLE}) {
    EXPECT_NO_THROW(chain.Convert(nullptr, 16, 10, nullptr, 16, 10, 16, 10, flags, 0, &pipeline.buffer,
                                  &pipeline.size, 0, false, nullptr));
  }
  Recover();
}

TEST_F(Allocation, MissingForTheBufferOfAChain) {
  PixelConverter stage(-10, -11, 1, 1, 1, 1, false);
  const ComplexConverter chain(&stage, &stage);
  ZrTest::Pipeline pipeline(16);
  const auto convert = [&](bool own) {
    return chain.Convert(nullptr, 1000, 10, nullptr, 1000, 10, 1000, 10, 0, 0,
                         own ? nullptr : &pipeline.buffer, &pipeline.size, 0, false, nullptr);
  };
  sTooLarge = 10000;
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
