#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "FrameCase.h"
#include "support/Registry.h"

// The program's own operator new counts, and refuses when told to.

namespace {

long sAllocations = 0;
long sLive = 0;
long sAllowed = -1;  ///< allocations before the next is refused; negative: all are granted

void* Allocate(std::size_t size) {
  if (sAllowed == 0) return nullptr;
  if (sAllowed > 0) --sAllowed;
  void* memory = std::malloc(size != 0 ? size : 1);
  if (memory == nullptr) return nullptr;
  ++sAllocations;
  ++sLive;
  return memory;
}

void* AllocateOrThrow(std::size_t size) {
  void* memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void Release(void* memory) noexcept {
  if (memory != nullptr) --sLive;
  std::free(memory);
}

}  // namespace

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
void operator delete(void* memory) noexcept {
  Release(memory);
}
void operator delete[](void* memory) noexcept {
  Release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  Release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  Release(memory);
}

namespace {

using namespace ZrConvertersLib;
using FrameTest::Case;

constexpr unsigned kCasesPerPair = 3;

template <typename Action>
void ForEachCase(Action action) {
  for (const auto& [source, destination] : TestSupport::RegisteredPairs()) {
    for (unsigned number = 100; number < 100 + kCasesPerPair; ++number) {
      action(FrameTest::CaseOf(source, destination, number));
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

TEST(MemoryTest, ConversionsAllocateNothing) {
  ForEachCase([](const Case& frame) {
    FrameConverter converter;
    ASSERT_TRUE(converter.Configure(frame.source, frame.destination, frame.width, frame.height, frame.options)
                    .IsSuccess());
    const std::vector<std::uint8_t> from = FrameTest::SourceOf(frame);
    std::vector<std::uint8_t> to = FrameTest::BlankOf(frame);
    const SourceView source = FrameTest::ViewOf(frame, std::span<const std::uint8_t>(from));
    const DestinationView picture = FrameTest::ViewOf(frame, std::span<std::uint8_t>(to));
    const long before = sAllocations;
    const auto whole = converter.Convert(source, picture);
    const auto band = converter.ConvertLines(converter.Height() / 2, 1, source, picture);
    ASSERT_EQ(sAllocations, before) << Describe(frame);
    ASSERT_TRUE(whole.IsSuccess() && band.IsSuccess());
  });
}

TEST(MemoryTest, RefusedMemoryLeavesNothingHalfDone) {
  ForEachCase([](const Case& frame) {
    FrameConverter converter;
    ASSERT_TRUE(converter.Configure(PixelTypeIds::Mono8, PixelTypeIds::Mono16, 3, 2).IsSuccess());
    const long live = sLive;
    std::uint32_t code = FrameCode::OutOfMemory;
    for (long allowed = 0; code == FrameCode::OutOfMemory; ++allowed) {
      ASSERT_EQ(sLive, live) << Describe(frame);
      ASSERT_EQ(converter.Width(), 3u) << Describe(frame);
      sAllowed = allowed;
      code = converter.Configure(frame.source, frame.destination, frame.width, frame.height, frame.options)
                 .GetCode();
      sAllowed = -1;
    }
    ASSERT_EQ(code, 0u) << Describe(frame);
  });
}

TEST(MemoryTest, AFrameBeyondAllMemoryIsRefused) {
  FrameConverter converter;
  FrameOptions options;
  options.flipHorizontal = true;
  sAllowed = 0;
  const auto result =
      converter.Configure(PixelTypeIds::Mono8, PixelTypeIds::RGB16, 1 << 26, 1 << 26, options);
  sAllowed = -1;
  EXPECT_EQ(result.GetCode(), FrameCode::OutOfMemory);
  EXPECT_FALSE(converter.IsConfigured());
}

}  // namespace
