#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "core/Recorder.h"

namespace ZrTest {
namespace {

using ZrConvertersLib::PixelTypeFactory;
using ZrConvertersLib::RGBFilter;

constexpr std::uint32_t kFinishSingly = 0x04000000;

/// One call of ConvertLine or ConvertLastLine: the line it is told, and the lines its pointers are at.
struct Step {
  bool last;
  std::uint32_t line;
  std::ptrdiff_t sourceLine;
  std::ptrdiff_t destinationLine;

  friend bool operator==(const Step&, const Step&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Step& step) {
    return out << (step.last ? "last " : "block ") << step.line << " from " << step.sourceLine << " to "
               << step.destinationLine;
  }
};

struct WalkCase {
  const char* name;
  std::uint32_t lines;
  std::uint32_t height;
  std::uint32_t flags;
  bool flip;
  std::vector<Step> steps;
};

class DriverWalk : public testing::TestWithParam<WalkCase> {};

TEST_P(DriverWalk, VisitsTheseBlocks) {
  constexpr std::uint32_t kWidth = 7;
  constexpr std::ptrdiff_t kSourceStride = kWidth * 3 + 5;
  constexpr std::ptrdiff_t kDestinationStride = kWidth * 2 + 1;
  const WalkCase& walk = GetParam();
  const LineRecorder converter({.sourceBytes = 3, .destinationBytes = 2, .lines = walk.lines});
  std::vector<unsigned char> source(4096);
  std::vector<unsigned char> destination(4096);
  unsigned char* const start = destination.data() + 2048;

  const ConvertCall call{.source = source.data(),
                         .sourceWidth = kWidth,
                         .sourceHeight = walk.height,
                         .destination = start,
                         .destinationWidth = kWidth,
                         .destinationHeight = walk.height,
                         .width = kWidth,
                         .height = walk.height,
                         .flags = walk.flags,
                         .destinationPadding = 1,
                         .sourcePadding = 5,
                         .flipVertical = walk.flip};
  EXPECT_TRUE(call.On(converter).IsSuccess());

  std::vector<Step> steps;
  for (const LineRecorder::Call& seen : converter.calls) {
    const std::ptrdiff_t from = seen.context.mSource - source.data();
    const std::ptrdiff_t to = seen.context.mDestination - start;
    EXPECT_EQ(from % kSourceStride, 0);
    EXPECT_EQ(to % kDestinationStride, 0);
    steps.push_back({seen.last, seen.context.mLine, from / kSourceStride, to / kDestinationStride});
  }
  EXPECT_EQ(steps, walk.steps);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Driver, DriverWalk, testing::Values(
    WalkCase{"NoLines", 1, 0, 0, false, {}},
    WalkCase{"NoLinesFlipped", 2, 0, kFinishSingly, true, {}},
    WalkCase{"Single", 1, 3, 0, false, {{false, 0, 0, 0}, {false, 1, 1, 1}, {false, 2, 2, 2}}},
    WalkCase{"SingleFlipped", 1, 3, 0, true, {{false, 0, 0, 2}, {false, 1, 1, 1}, {false, 2, 2, 0}}},
    WalkCase{"PairsUp", 2, 5, 0, false, {{false, 0, 0, 0}, {false, 2, 2, 2}, {false, 4, 4, 4}}},
    WalkCase{"PairsDown", 2, 5, kFinishSingly, false, {{false, 0, 0, 0}, {false, 2, 2, 2}, {true, 4, 4, 4}}},
    WalkCase{"PairsWhole", 2, 4, kFinishSingly, false, {{false, 0, 0, 0}, {false, 2, 2, 2}}},
    WalkCase{"PairsFlipped", 2, 4, 0, true, {{false, 0, 0, 2}, {false, 2, 2, 0}}},
    // Past the whole blocks a flipped walk goes on before the destination.
    WalkCase{"PairsFlippedUp", 2, 5, 0, true, {{false, 0, 0, 2}, {false, 2, 2, 0}, {false, 4, 4, -2}}},
    WalkCase{"PairsFlippedDown", 2, 5, kFinishSingly, true, {{false, 0, 0, 2}, {false, 2, 2, 0}, {true, 4, 4, -2}}},
    WalkCase{"TriplesDown", 3, 5, kFinishSingly, false, {{false, 0, 0, 0}, {true, 3, 3, 3}, {true, 4, 4, 4}}},
    WalkCase{"TriplesFlippedDown", 3, 5, kFinishSingly, true, {{false, 0, 0, 0}, {true, 3, 3, -3}, {true, 4, 4, -4}}},
    WalkCase{"BlockTallerThanImage", 4, 2, 0, false, {{false, 0, 0, 0}}},
    WalkCase{"BlockTallerThanImageFlipped", 4, 2, 0, true, {{false, 0, 0, -4}}},
    WalkCase{"BlockTallerThanImageDown", 4, 2, kFinishSingly, false, {{true, 0, 0, 0}, {true, 1, 1, 1}}}),
    [](const auto& param) { return std::string(param.param.name); });
// clang-format on

/// A call of one line over null buffers: the driver looks at neither.
ConvertCall LineCall() {
  return {.source = nullptr,
          .sourceWidth = 10,
          .sourceHeight = 1,
          .destination = nullptr,
          .destinationWidth = 30,
          .destinationHeight = 50,
          .width = 20,
          .height = 1};
}

TEST(Driver, FillsTheContext) {
  const LineRecorder converter({.sourceBytes = 3, .destinationBytes = 2, .multiplier = 4});
  std::array<unsigned char, 1> source{};
  std::array<unsigned char, 1> destination{};
  const RGBFilter filter;
  ConvertCall call = LineCall();
  call.source = source.data();
  call.destination = destination.data();
  call.sourceHeight = 40;
  call.flags = 0x80 | 0x10000;
  call.sourcePadding = 6;
  call.destinationPadding = 7;
  call.filter = &filter;
  EXPECT_TRUE(call.On(converter).IsSuccess());

  ASSERT_EQ(converter.calls.size(), 1u);
  const PixelConverterContext& context = converter.calls[0].context;
  EXPECT_EQ(converter.calls[0].width, 20u * 4);
  EXPECT_EQ(context.mReserved, 1u);
  EXPECT_EQ(context.mSourceStride, 10u * 4 * 3 + 6);
  EXPECT_EQ(context.mSourceHeight, 40u);
  EXPECT_EQ(context.mDestinationStride, 30u * 4 * 2 + 7);
  EXPECT_EQ(context.mDestinationHeight, 50u);
  EXPECT_EQ(context.mFlags, 0x80u | 0x10000u);
  EXPECT_EQ(context.mFilter, &filter);
  EXPECT_EQ(context.mLine, 0u);
  EXPECT_EQ(context.mSource, source.data());
  EXPECT_EQ(context.mDestination, destination.data());
}

TEST(Driver, TakesTheDefaultFilterForNone) {
  const LineRecorder converter;
  LineCall().On(converter);
  ASSERT_EQ(converter.calls.size(), 1u);
  ASSERT_EQ(converter.calls[0].context.mFilter, &ZrConvertersLib::sRGBFilter);
  EXPECT_TRUE(converter.calls[0].context.mFilter->IsIdentity());
}

TEST(Driver, AddsABayerOrderOnlyWhereNoneIsGiven) {
  const std::vector<std::pair<std::uint32_t, std::uint32_t>> expected{
      {0, 0x10},    {0x100, 0x110},          {0x20, 0x20}, {0x40, 0x40}, {0x80, 0x80},
      {0xF0, 0xF0}, {0xFFFFFF0F, 0xFFFFFF1F}};
  for (const auto& [given, seen] : expected) {
    const LineRecorder converter;
    ConvertCall call = LineCall();
    call.flags = given;
    call.On(converter);
    ASSERT_EQ(converter.calls.size(), 1u);
    EXPECT_EQ(converter.calls[0].context.mFlags, seen) << std::hex << given;
  }
}

TEST(Driver, StepsAreSigned32Bits) {
  // A stride that wraps around to minus 16: each line lies 16 bytes before the one above it.
  const LineRecorder converter;
  std::array<unsigned char, 64> buffer{};
  ConvertCall call = LineCall();
  call.source = call.destination = buffer.data() + 32;
  call.sourceWidth = call.destinationWidth = 0u - 16;
  call.height = 2;
  call.On(converter);
  ASSERT_EQ(converter.calls.size(), 2u);
  EXPECT_EQ(converter.calls[1].context.mSource, buffer.data() + 16);
  EXPECT_EQ(converter.calls[1].context.mDestination, buffer.data() + 16);
}

TEST(Driver, FlipsImagesOfMoreThanTwoGigabytes) {
  const LineRecorder converter;
  ConvertCall call = LineCall();
  call.destinationWidth = 1u << 30;
  call.height = 4;
  call.flipVertical = true;
  call.On(converter);
  ASSERT_EQ(converter.calls.size(), 4u);
  for (std::uintptr_t i = 0; i < 4; ++i) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(converter.calls[i].context.mDestination), (3 - i) << 30);
  }
}

TEST(Driver, SwallowsUnsupportedLines) {
  const PixelConverter plain(-1000, -1001, 1, 1, 1, 2, false);
  ConvertCall call = LineCall();
  call.height = 3;
  call.flags = kFinishSingly;
  EXPECT_EQ(call.On(plain).GetCode(), 0u);
  const PixelConverterContext context;
  EXPECT_EQ(plain.ConvertLine(context, 1).GetCode(), 26u);
  EXPECT_EQ(plain.ConvertLastLine(context, 1).GetCode(), 26u);
  EXPECT_EQ(plain.Convert(context, nullptr).GetCode(), 26u);
}

TEST(Driver, LetsExceptionsOfAConverterPass) {
  class Throwing : public TestConverter {
   public:
    using TestConverter::TestConverter;
    Result ConvertLine(const PixelConverterContext&, std::uint32_t) const override {
      throw std::runtime_error("line");
    }
  };
  EXPECT_THROW(LineCall().On(Throwing()), std::runtime_error);
}

TEST(Driver, AsksTheConverterForItsSizes) {
  class Packed : public LineRecorder {
   public:
    using LineRecorder::LineRecorder;
    using PixelConverter::GetDestinationByteSize;
    using PixelConverter::GetSourceByteSize;
    std::uint32_t GetSourceByteSize(std::uint32_t width) const override { return width * 5 / 4; }
    std::uint32_t GetDestinationByteSize(std::uint32_t width) const override { return width + 100; }
    std::uint32_t GetLinesPerConvert() const override { return 2; }
  };
  const Packed converter({.lines = 1, .multiplier = 2});
  ConvertCall call = LineCall();
  call.height = 4;
  call.On(converter);
  ASSERT_EQ(converter.calls.size(), 2u);
  EXPECT_EQ(converter.calls[0].context.mSourceStride, 25u);
  EXPECT_EQ(converter.calls[0].context.mDestinationStride, 160u);
  EXPECT_EQ(converter.calls[1].context.mLine, 2u);
}

TEST(Registration, HappensOnlyWhenAskedForAndOnlyOnce) {
  static const PixelConverter silent(-2000, -2001, 1, 1, 1, 1, false);
  EXPECT_FALSE(PixelTypeFactory::HasConverter(-2000, -2001));
  static const PixelConverter first(-2000, -2001, 1, 1, 1, 1, true);
  static const PixelConverter second(-2000, -2001, 1, 1, 1, 1, true);
  EXPECT_EQ(PixelTypeFactory::GetConverter(-2000, -2001), &first);
}

}  // namespace
}  // namespace ZrTest
