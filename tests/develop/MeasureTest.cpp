#include <ZrConvertersLib/Measure.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "model/FullDepth.h"
#include "model/Statistics.h"
#include "support/Random.h"

namespace {

using namespace ZrConvertersLib;
namespace Ids = PixelTypeIds;

TEST(MeasureTest, CountsWhatTheModelCounts) {
  constexpr std::uint32_t kWidth = 141, kHeight = 21;
  TestSupport::Random random(2);
  for (const long source :
       {Ids::Mono8, Ids::Mono12p, Ids::Mono16, Ids::Bayer8, Ids::Bayer10p, Ids::Bayer14}) {
    FrameLayout layout;
    ASSERT_TRUE(DescribeFrame(source, kWidth, kHeight, 0, layout).IsSuccess());
    std::vector<std::uint8_t> frame(layout.frameBytes);
    for (std::uint8_t& byte : frame) byte = static_cast<std::uint8_t>(random.Below(256));
    MeasureOptions options;
    options.pattern = static_cast<MosaicPattern>(random.Below(4));
    options.region = {3, 1, 130, 19};
    options.lineStep = 1 + random.Below(3);
    FrameStatistics statistics;
    ASSERT_TRUE(
        MeasureFrame(source, SourceView::Of(frame, kWidth, kHeight), options, statistics).IsSuccess());

    FrameOptions flags;
    flags.pattern = options.pattern;
    Model::Memory memory(0, frame.size());
    std::ranges::copy(frame, memory.All().begin());
    auto samples = Model::ReadSamples(
        {source, &memory, static_cast<std::ptrdiff_t>(layout.stride), kWidth, kHeight, flags.GetFlags()});
    const unsigned depth = FindFormatInfo(source)->depth;
    for (std::uint32_t& sample : samples) sample >>= 16 - depth;
    Model::MeasuredPart part{3, 133, {}};
    for (std::uint32_t y = 1; y < 20; y += options.lineStep) part.lines.push_back(y);
    const bool grey = FindFormatInfo(source)->family == FormatFamily::Mono;
    ASSERT_EQ(statistics.channels, grey ? 1u : 3u);
    for (unsigned channel = 0; channel < statistics.channels; ++channel) {
      std::vector<std::uint32_t> chosen;
      if (grey) {
        for (const std::uint32_t y : part.lines)
          chosen.insert(chosen.end(), samples.begin() + y * kWidth + 3, samples.begin() + y * kWidth + 133);
      } else {
        chosen = Model::SamplesOfSites(samples, kWidth, part, flags.GetFlags(), channel);
      }
      const auto expected = Model::Measure(chosen, depth, std::size_t{1} << depth);
      const ChannelStatistics& actual = statistics.channel[channel];
      EXPECT_EQ(actual.histogram, expected.histogram);
      EXPECT_EQ(actual.count, expected.count);
      EXPECT_EQ(actual.minimum, expected.minimum);
      EXPECT_EQ(actual.maximum, expected.maximum);
      EXPECT_NEAR(actual.mean, static_cast<double>(expected.mean), 1e-6);
    }
  }
}

/// Colour sources by channel.
TEST(MeasureTest, MeasuresColourByChannel) {
  const std::vector<std::uint8_t> frame = {10, 20, 255, 30, 40, 255};
  FrameStatistics statistics;
  ASSERT_TRUE(MeasureFrame(Ids::RGB8, SourceView::Of(frame, 2, 1), {}, statistics).IsSuccess());
  EXPECT_EQ(statistics.channel[0].mean, 20.0);
  EXPECT_EQ(statistics.channel[1].maximum, 40u);
  EXPECT_EQ(statistics.channel[2].histogram[255], 2u);
  EXPECT_NEAR(SaturatedShare(statistics), 1.0 / 3, 1e-12);
  const Levels levels = LevelsOf(statistics, 0.0, 1.0);
  EXPECT_EQ(levels.black, 10.0);
  EXPECT_EQ(levels.white, 255.0);
  const auto gains = GreyWorldGains(statistics, 10.0);
  EXPECT_NEAR(gains.red, 24.5, 1e-12);
  EXPECT_NEAR(gains.green, 12.25, 1e-12);
  EXPECT_EQ(gains.blue, 1.0);
}

/// More lines than are converted at a time, from columns within a group of pixels.
TEST(MeasureTest, MeasuresColourAsItIsConverted) {
  constexpr std::uint32_t kWidth = 144, kHeight = 80;
  TestSupport::Random random(4);
  for (const long source : {Ids::Mono4p, Ids::BGRa8, Ids::RGB10p32, Ids::YCbCr422_8, Ids::YCbCr422_10p,
                            Ids::BiColor10p, Ids::SCF112p}) {
    FrameLayout layout;
    ASSERT_TRUE(DescribeFrame(source, kWidth, kHeight, 0, layout).IsSuccess());
    std::vector<std::uint8_t> frame(layout.frameBytes);
    for (std::uint8_t& byte : frame) byte = static_cast<std::uint8_t>(random.Below(256));
    MeasureOptions options;
    options.region = {5, 3, 131, 71};
    options.lineStep = 1 + random.Below(2);
    FrameOptions whole;
    whole.region = options.region;
    whole.fullDepth = true;
    std::vector<std::uint16_t> words(3 * 131 * 71);
    const auto from = SourceView::Of(frame, kWidth, kHeight);
    ASSERT_TRUE(ConvertFrame(source, from, Ids::RGB16_Planar, DestinationView::Of(words, 131, 71), whole)
                    .IsSuccess());
    FrameStatistics statistics;
    ASSERT_TRUE(MeasureFrame(source, from, options, statistics).IsSuccess());
    for (unsigned channel = 0; channel < statistics.channels; ++channel) {
      std::vector<std::uint64_t> expected(std::size_t{1} << statistics.depth);
      for (std::size_t y = 0; y < 71; y += options.lineStep)
        for (std::size_t x = 0; x < 131; ++x)
          ++expected[words[(channel * 71 + y) * 131 + x] >> (16 - statistics.depth)];
      EXPECT_EQ(statistics.channel[channel].histogram, expected) << source << " channel " << channel;
    }
  }
}

TEST(MeasureTest, RefusesWhatItCannotRead) {
  const std::vector<std::uint8_t> frame(63);
  const auto code = [&](const MeasureOptions& options) {
    FrameStatistics statistics;
    return MeasureFrame(Ids::Mono8, SourceView::Of(frame, 8, 8), options, statistics).GetCode();
  };
  EXPECT_EQ(code({}), FrameError::SourceTooSmall);
  MeasureOptions outside, noStep;
  outside.region.x = 8;
  noStep.lineStep = 0;
  EXPECT_EQ(code(outside), FrameError::RegionOutside);
  EXPECT_EQ(code(noStep), FrameError::LinesOutside);
}

}  // namespace
