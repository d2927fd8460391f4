// Replaces the allocator of the whole program, the library's included, by one that can be made to fail.

#include <ZrConvertersLib/ComplexConverter.h>
#include <ZrConvertersLib/PixelType.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <vector>

namespace {

/// Allocations that still succeed.
int sAllocationsLeft = std::numeric_limits<int>::max();
/// Allocations of at least so many bytes always fail.
std::size_t sTooLarge = std::numeric_limits<std::size_t>::max();

void* Allocate(std::size_t size) noexcept {
  if (size >= sTooLarge || sAllocationsLeft == 0) return nullptr;
  if (sAllocationsLeft != std::numeric_limits<int>::max()) --sAllocationsLeft;
  return std::malloc(size);
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
  std::free(memory);
}
ZR_NOT_INLINED void operator delete[](void* memory) noexcept {
  std::free(memory);
}
ZR_NOT_INLINED void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
ZR_NOT_INLINED void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace ZrConvertersLib {
namespace {

class OutOfMemory : public testing::Test {
 protected:
  void TearDown() override { Recover(); }
  static void Recover() {
    sAllocationsLeft = std::numeric_limits<int>::max();
    sTooLarge = std::numeric_limits<std::size_t>::max();
  }
};

/// Every allocation of the constructor fails in turn; a leak would show under AddressSanitizer.
TEST_F(OutOfMemory, FilterIsNotMade) {
  for (int left = 0; left < 3; ++left) {
    sAllocationsLeft = left;
    EXPECT_THROW(const RGBFilter filter, std::bad_alloc);
  }
  Recover();
  EXPECT_TRUE(RGBFilter().IsIdentity());
}

TEST_F(OutOfMemory, TypeIsNotRegistered) {
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

TEST_F(OutOfMemory, RegistryIsNotCreated) {
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

/// A buffer that is just large enough is used as it is.
TEST_F(OutOfMemory, ChainNeedsNoneForALargeEnoughBuffer) {
  PixelConverter stage(-20, -21, 1, 2, 1, 1, false);
  const ComplexConverter chain(&stage, &stage);
  std::uint32_t size = (10 + 4) * 16 * 2;
  unsigned char* buffer = new unsigned char[size];
  sAllocationsLeft = 0;
  for (const std::uint32_t flags : {0u, PixelConverter::FLAG_BAND_MIDDLE}) {
    EXPECT_NO_THROW(
        chain.Convert(nullptr, 16, 10, nullptr, 16, 10, 16, 10, flags, 0, &buffer, &size, 0, false, nullptr));
  }
  Recover();
  delete[] buffer;
}

TEST_F(OutOfMemory, ChainIsLeftWithoutBuffer) {
  PixelConverter stage(-10, -11, 1, 1, 1, 1, false);
  const ComplexConverter chain(&stage, &stage);
  unsigned char* buffer = new unsigned char[16];
  std::uint32_t size = 16;
  const auto convert = [&](bool own) {
    return chain.Convert(nullptr, 1000, 10, nullptr, 1000, 10, 1000, 10, 0, 0, own ? nullptr : &buffer, &size,
                         0, false, nullptr);
  };
  sTooLarge = 10000;
  EXPECT_THROW(convert(false), std::bad_alloc);
  EXPECT_EQ(buffer, nullptr);
  EXPECT_EQ(size, 0u);
  EXPECT_THROW(convert(true), std::bad_alloc);
  Recover();
  EXPECT_TRUE(convert(true).IsSuccess());
  EXPECT_TRUE(convert(false).IsSuccess());
  EXPECT_GE(size, 10000u);
  delete[] buffer;
}

}  // namespace
}  // namespace ZrConvertersLib
