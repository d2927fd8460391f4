#include <ZrConvertersLib/ComplexConverter.h>

#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "core/Recorder.h"

namespace ZrTest {
namespace {

using ZrConvertersLib::ComplexConverter;
using ZrConvertersLib::PixelTypeFactory;
using ZrConvertersLib::RGBFilter;

constexpr std::uint32_t kFirst = 0x01000000;
constexpr std::uint32_t kMiddle = 0x02000000;
constexpr std::uint32_t kLast = 0x04000000;

/// Chains register themselves and are never forgotten, so every one here has an ID of its own and stays.
ComplexConverter& Chain(PixelConverter& first, PixelConverter& second) {
  static std::vector<std::unique_ptr<ComplexConverter>> chains;
  return *chains.emplace_back(std::make_unique<ComplexConverter>(&first, &second));
}

TEST(ComplexConverter, CombinesItsStages) {
  CallRecorder first(
      {.source = -5000, .destination = -5001, .sourceBytes = 3, .destinationBytes = 5, .lines = 2});
  CallRecorder second(
      {.source = -5001, .destination = -5002, .sourceBytes = 5, .destinationBytes = 7, .lines = 1});
  const ComplexConverter& chain = Chain(first, second);
  EXPECT_EQ(chain.GetSourceType(), -5000);
  EXPECT_EQ(chain.GetDestinationType(), -5002);
  EXPECT_EQ(chain.GetSourceByteSize(), 3u);
  EXPECT_EQ(chain.GetSourceByteSize(10), 30u);
  EXPECT_EQ(chain.GetDestinationByteSize(), 7u);
  EXPECT_EQ(chain.GetDestinationByteSize(10), 70u);
  EXPECT_EQ(chain.GetWidthMultiplier(), 1u);
  EXPECT_EQ(PixelTypeFactory::GetConverter(-5000, -5002), &chain);
  Chain(first, second);
  EXPECT_EQ(PixelTypeFactory::GetConverter(-5000, -5002), &chain);
}

TEST(ComplexConverter, CombinesLineCounts) {
  const std::array<std::array<std::uint32_t, 3>, 8> cases{
      {{1, 1, 1}, {2, 1, 2}, {1, 2, 2}, {2, 3, 6}, {4, 2, 4}, {4, 6, 24}, {3, 9, 9}, {5, 5, 5}}};
  for (const auto& [a, b, combined] : cases) {
    CallRecorder first({.pipelining = b, .lines = a});
    CallRecorder second({.pipelining = a, .lines = b});
    const ComplexConverter& chain = Chain(first, second);
    EXPECT_EQ(chain.GetLinesPerConvert(), combined);
    EXPECT_EQ(chain.GetPipeliningSize(), combined);
  }
}

TEST(ComplexConverter, HandsItsArgumentsOn) {
  CallRecorder first({.sourceBytes = 3, .destinationBytes = 2});
  CallRecorder second({.sourceBytes = 2, .destinationBytes = 4});
  Pipeline pipeline;
  std::array<unsigned char, 1> source{};
  std::array<unsigned char, 1> destination{};
  const RGBFilter filter;
  const std::uint32_t flags = 0x80 | kFirst | kLast;
  const ConvertCall call{source.data(),
                         10,
                         20,
                         destination.data(),
                         30,
                         40,
                         50,
                         60,
                         flags,
                         70,
                         &pipeline.buffer,
                         &pipeline.size,
                         80,
                         true,
                         &filter};
  EXPECT_TRUE(call.On(Chain(first, second)).IsSuccess());

  unsigned char* const lines = pipeline.buffer;
  const ConvertCall toFirst{source.data(), 10, 20,      lines,   10, 20,   10,     20,
                            flags,         0,  nullptr, nullptr, 80, true, nullptr};
  const ConvertCall toSecond{
      lines, 10, 20, destination.data(), 30, 40, 50, 60, flags, 70, nullptr, nullptr, 0, false, &filter};
  ASSERT_EQ(first.calls.size(), 1u);
  ASSERT_EQ(second.calls.size(), 1u);
  EXPECT_EQ(first.calls[0], toFirst);
  EXPECT_EQ(second.calls[0], toSecond);
}

TEST(ComplexConverter, StopsAtAFailingStage) {
  CallRecorder first;
  CallRecorder second;
  Pipeline pipeline;
  const ConvertCall call{nullptr, 4, 4, nullptr, 4, 4, 4, 4, 0, 0, &pipeline.buffer, &pipeline.size};
  first.result = 77;
  EXPECT_EQ(call.On(Chain(first, second)).GetCode(), 77u);
  EXPECT_TRUE(second.calls.empty());
  first.result = 0;
  second.result = 78;
  EXPECT_EQ(call.On(Chain(first, second)).GetCode(), 78u);
}

struct BandCase {
  std::uint32_t flags;
  std::uint32_t above;
  std::uint32_t extra;
};

class ChainBand : public testing::TestWithParam<BandCase> {};

TEST_P(ChainBand, ConvertsTheLinesAroundIt) {
  constexpr std::uint32_t kWidth = 12;
  constexpr std::uint32_t kHeight = 10;
  const BandCase& band = GetParam();
  CallRecorder first({.sourceBytes = 3, .destinationBytes = 2, .multiplier = 2});
  CallRecorder second({.sourceBytes = 4});
  Pipeline pipeline;
  std::vector<unsigned char> source(4096);
  unsigned char* const start = source.data() + 2048;
  const ConvertCall call{.source = start,
                         .sourceWidth = kWidth,
                         .sourceHeight = kHeight,
                         .destination = nullptr,
                         .destinationWidth = kWidth,
                         .destinationHeight = kHeight,
                         .width = kWidth,
                         .height = kHeight,
                         .flags = band.flags,
                         .pipelineBuffer = &pipeline.buffer,
                         .pipelineBufferSize = &pipeline.size,
                         .sourcePadding = 5};
  EXPECT_TRUE(call.On(Chain(first, second)).IsSuccess());

  ASSERT_EQ(first.calls.size(), 1u);
  const ConvertCall& toFirst = first.calls[0];
  EXPECT_EQ(start - toFirst.source, std::ptrdiff_t{band.above * (kWidth * 2 * 3 + 5)});
  EXPECT_EQ(toFirst.sourceHeight, kHeight + band.extra);
  EXPECT_EQ(toFirst.destinationHeight, kHeight + band.extra);
  EXPECT_EQ(toFirst.height, kHeight + band.extra);
  EXPECT_EQ(toFirst.flags, band.flags);
  ASSERT_EQ(second.calls.size(), 1u);
  const ConvertCall& toSecond = second.calls[0];
  EXPECT_EQ(toSecond.source - pipeline.buffer, std::ptrdiff_t{band.above * kWidth * 4});
  EXPECT_EQ(toSecond.sourceHeight, kHeight);
  EXPECT_EQ(toSecond.flags, band.flags);
  EXPECT_GE(pipeline.size, (kHeight + std::max(band.extra, 4u)) * kWidth * 2 * 2);
}

INSTANTIATE_TEST_SUITE_P(ComplexConverter, ChainBand,
                         testing::Values(BandCase{0, 0, 0}, BandCase{kFirst, 0, 2}, BandCase{kMiddle, 2, 4},
                                         BandCase{kFirst | kMiddle, 2, 6}, BandCase{kLast, 2, 2},
                                         BandCase{kFirst | kLast, 0, 0}, BandCase{kMiddle | kLast, 2, 4},
                                         BandCase{kFirst | kMiddle | kLast, 2, 4}),
                         [](const auto& param) { return "Bits" + std::to_string(param.param.flags >> 24); });

TEST(ComplexConverter, ReplacesTheCallersBufferOnlyWhenTooSmall) {
  constexpr std::uint32_t kNeeded = (10 + 4) * 16 * 2;
  CallRecorder first({.destinationBytes = 2});
  CallRecorder second({.sourceBytes = 2});
  const ComplexConverter& chain = Chain(first, second);
  for (const std::uint32_t capacity : {0u, kNeeded - 1, kNeeded, kNeeded * 10}) {
    Pipeline pipeline(capacity);
    const unsigned char* const before = pipeline.buffer;
    const ConvertCall call{nullptr,       16, 10, nullptr, 16, 10, 16, 10, kMiddle, 0, &pipeline.buffer,
                           &pipeline.size};
    EXPECT_TRUE(call.On(chain).IsSuccess());
    EXPECT_EQ(first.calls.back().destination, pipeline.buffer);
    EXPECT_EQ(pipeline.size, std::max(capacity, kNeeded));
    EXPECT_TRUE(pipeline.buffer == before || capacity < kNeeded);
    std::fill_n(pipeline.buffer, pipeline.size, static_cast<unsigned char>(1));  // as large as it says
  }
}

TEST(ComplexConverter, UsesItsOwnBufferWithoutACallers) {
  CallRecorder first;
  CallRecorder second;
  const ComplexConverter& chain = Chain(first, second);
  Pipeline pipeline;
  ConvertCall call{nullptr, 16, 10, nullptr, 16, 10, 16, 10};
  call.pipelineBuffer = &pipeline.buffer;  // without a capacity it does not count
  call.On(chain);
  call.pipelineBuffer = nullptr;
  call.pipelineBufferSize = &pipeline.size;
  call.On(chain);
  EXPECT_EQ(pipeline.buffer, nullptr);
  EXPECT_EQ(pipeline.size, 0u);
  ASSERT_EQ(first.calls.size(), 2u);
  EXPECT_NE(first.calls[0].destination, nullptr);
  EXPECT_EQ(first.calls[0].destination, first.calls[1].destination);
}

TEST(ComplexConverter, RefusesAnIntermediateImageOverFourGigabytes) {
  class Huge : public CallRecorder {
   public:
    using CallRecorder::CallRecorder;
    using PixelConverter::GetDestinationByteSize;
    std::uint32_t GetDestinationByteSize(std::uint32_t width) const override {
      return width == 1 ? 2863311531 : width * 6;
    }
  };
  // 6 x 2^16 x (2^16 - 4 + 4) wraps around to a small size. So does, even in 64 bits, a flipped block that is
  // not whole and needs three blocks of room: 3 x 2^31 lines of 2863311531 bytes.
  for (const auto& [lines, width, height] :
       {std::array{1u, 1u << 16, (1u << 16) - 4}, std::array{1u << 31, 1u, 1u}}) {
    Huge first({.lines = lines});
    CallRecorder second;
    Pipeline pipeline;
    ConvertCall call{nullptr, width, height, nullptr, 1, 1, 1, 1, 0, 0, &pipeline.buffer, &pipeline.size};
    call.flipVertical = true;
    EXPECT_EQ(call.On(Chain(first, second)).GetCode(), 26u);
    EXPECT_EQ(pipeline.buffer, nullptr);
    EXPECT_TRUE(first.calls.empty());
  }
}

/// Fills every byte a first stage may write: whole groups of 8 pixels past the width, blocks past the height,
/// single lines that go back by one. Remembers how far it went.
class Sprawling : public TestConverter {
 public:
  using TestConverter::TestConverter;

  Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    Fill(context, 0, GetLinesPerConvert(), width);
    return 0;
  }
  Result ConvertLastLine(const PixelConverterContext& context, std::uint32_t width) const override {
    Fill(context, -1, 1, width);
    return 0;
  }

  mutable const unsigned char* lowest = nullptr;
  mutable const unsigned char* highest = nullptr;

 private:
  void Fill(const PixelConverterContext& context, std::ptrdiff_t from, std::ptrdiff_t to,
            std::uint32_t width) const {
    const std::ptrdiff_t stride = context.mDestinationStride;
    const std::ptrdiff_t bytes = (width + 7) / 8 * 8 * GetDestinationByteSize();
    if (context.mLine == 0 && from < 0) from = 0;
    for (std::ptrdiff_t line = from; line < to; ++line) {
      unsigned char* const start = context.mDestination + line * stride;
      std::fill_n(start, bytes, static_cast<unsigned char>(1));
      lowest = lowest == nullptr ? start : std::min<const unsigned char*>(lowest, start);
      highest = std::max<const unsigned char*>(highest, start + bytes);
    }
  }
};

using SprawlCase = std::tuple<std::uint32_t, bool, std::uint32_t>;  // lines per block, flipped, border bits

class ChainBuffer : public testing::TestWithParam<SprawlCase> {};

TEST_P(ChainBuffer, HoldsWhateverTheFirstStageWrites) {
  const auto [lines, flip, bits] = GetParam();
  for (std::uint32_t width = 1; width <= 17; ++width) {
    for (std::uint32_t height = 0; height <= 7; ++height) {
      Sprawling first({.destinationBytes = 2, .lines = lines, .multiplier = 3});
      CallRecorder second({.sourceBytes = 6});
      const ComplexConverter chain(&first, &second);
      Pipeline pipeline;
      const ConvertCall call{.source = nullptr,
                             .sourceWidth = width,
                             .sourceHeight = height,
                             .destination = nullptr,
                             .destinationWidth = width,
                             .destinationHeight = height,
                             .width = width,
                             .height = height,
                             .flags = bits << 24,
                             .pipelineBuffer = &pipeline.buffer,
                             .pipelineBufferSize = &pipeline.size,
                             .flipVertical = flip};
      EXPECT_TRUE(call.On(chain).IsSuccess());
      if (first.lowest == nullptr) continue;
      ASSERT_GE(first.lowest, pipeline.buffer) << width << "x" << height;
      ASSERT_LE(first.highest, pipeline.buffer + pipeline.size) << width << "x" << height;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(ComplexConverter, ChainBuffer,
                         testing::Combine(testing::Values(1u, 2u, 3u), testing::Bool(),
                                          testing::Range(0u, 8u)),
                         [](const auto& param) {
                           return "Lines" + std::to_string(std::get<0>(param.param)) +
                                  (std::get<1>(param.param) ? "Flipped" : "") + "Bits" +
                                  std::to_string(std::get<2>(param.param));
                         });

/// Adds one to every byte.
class PlusOne : public TestConverter {
 public:
  using TestConverter::TestConverter;
  Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    for (std::uint32_t i = 0; i < width; ++i) {
      context.mDestination[i] = static_cast<unsigned char>(context.mSource[i] + 1);
    }
    return 0;
  }
};

/// Sums each line and the line below it, the one past the image included.
class PairSum : public TestConverter {
 public:
  using TestConverter::TestConverter;
  Result ConvertLine(const PixelConverterContext& context, std::uint32_t width) const override {
    for (std::uint32_t i = 0; i < width; ++i) {
      context.mDestination[i] =
          static_cast<unsigned char>(context.mSource[i] + context.mSource[i + context.mSourceStride]);
    }
    return 0;
  }
};

TEST(ComplexConverter, ShowsTheSecondStageTheSameLinePastTheImageEveryTime) {
  PlusOne first;
  PairSum second;
  const ComplexConverter& chain = Chain(first, second);
  const std::vector<unsigned char> source(8 * 3, 10);
  Pipeline pipeline(4096);
  std::fill_n(pipeline.buffer, pipeline.size, static_cast<unsigned char>(99));
  std::vector<unsigned char> destination(8 * 3);
  const ConvertCall call{source.data(), 8, 3, destination.data(), 8, 3, 8, 3, 0, 0, &pipeline.buffer,
                         &pipeline.size};
  EXPECT_TRUE(call.On(chain).IsSuccess());
  EXPECT_EQ(destination[0], 22);
  EXPECT_EQ(destination[8 * 2], 11);
}

}  // namespace
}  // namespace ZrTest
