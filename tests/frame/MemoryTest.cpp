#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <gtest/gtest.h>

#include "FrameCase.h"
#include "support/Allocations.h"
#include "support/Registry.h"

namespace {

using namespace ZrConvertersLib;
using FrameTest::Case;
using TestSupport::sAllocations;

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
    const long before = sAllocations.made;
    const auto whole = converter.Convert(source, picture);
    const auto band = converter.ConvertLines(converter.Height() / 2, 1, source, picture);
    ASSERT_EQ(sAllocations.made, before) << Describe(frame);
    ASSERT_TRUE(whole.IsSuccess() && band.IsSuccess());
  });
}

TEST(MemoryTest, RefusedMemoryLeavesNothingHalfDone) {
  ForEachCase([](const Case& frame) {
    FrameConverter converter;
    ASSERT_TRUE(converter.Configure(PixelTypeIds::Mono8, PixelTypeIds::Mono16, 3, 2).IsSuccess());
    const long live = sAllocations.alive;
    std::uint32_t code = FrameError::OutOfMemory;
    for (long allowed = 0; code == FrameError::OutOfMemory; ++allowed) {
      ASSERT_EQ(sAllocations.alive, live) << Describe(frame);
      ASSERT_EQ(converter.Width(), 3u) << Describe(frame);
      sAllocations.left = allowed;
      code = converter.Configure(frame.source, frame.destination, frame.width, frame.height, frame.options)
                 .GetCode();
      sAllocations.Recover();
    }
    ASSERT_EQ(code, 0u) << Describe(frame);
  });
}

TEST(MemoryTest, AFrameBeyondAllMemoryIsRefused) {
  FrameConverter converter;
  FrameOptions options;
  options.flipHorizontal = true;
  sAllocations.left = 0;
  const auto result =
      converter.Configure(PixelTypeIds::Mono8, PixelTypeIds::RGB16, 1 << 26, 1 << 26, options);
  sAllocations.Recover();
  EXPECT_EQ(result.GetCode(), FrameError::OutOfMemory);
  EXPECT_FALSE(converter.IsConfigured());
}

/// Chains of the library convert in one pass; what they would need for two is more than some frames leave.
TEST(MemoryTest, ChainsOfTheLibraryTakeNoIntermediateImage) {
  for (const long source : {PixelTypeIds::Bayer12p, PixelTypeIds::YCbCr422_10p, PixelTypeIds::Mono12p}) {
    for (const std::uint32_t width : {5472u, 1u << 27}) {
      FrameConverter converter;
      sAllocations.tooLarge = std::size_t{4} << 20;
      const auto result = converter.Configure(source, PixelTypeIds::Mono8, width, 3648);
      sAllocations.Recover();
      EXPECT_TRUE(result.IsSuccess()) << source << " " << width;
    }
  }
}

}  // namespace
