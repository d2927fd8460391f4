#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelTypes.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <vector>

#include "model/Develop.h"
#include "model/FullDepth.h"
#include "support/Allocations.h"
#include "support/CpuLevels.h"
#include "support/Random.h"

// Levels, gains, matrix and curve, and YCbCr at full depth, against exact arithmetic.

namespace {

using namespace ZrConvertersLib;
namespace Ids = PixelTypeIds;
using Words = std::vector<std::uint16_t>;
using Bytes = std::vector<std::uint8_t>;

const std::vector<CurvePoint> kPoints = {{0.1, 0.0}, {0.3, 0.7}, {0.31, 0.2}, {0.9, 1.0}};

struct Setting {
  const char* name;
  Development development;
};

Development With(void (*change)(Development&)) {
  Development development;
  change(development);
  return development;
}

std::vector<Setting> Settings() {
  return {
      {"Levels", With([](Development& d) {
         d.black = {64.5, 600, 1000};
         d.white = 50000;
       })},
      {"WhiteOnly", With([](Development& d) { d.white = 65535; })},
      {"Gains", With([](Development& d) {
         d.gain = {0.03, 1.7, 40};
       })},
      {"Gamma", With([](Development& d) { d.curve = ToneCurve::Gamma; })},
      {"SteepGamma", With([](Development& d) {
         d.curve = ToneCurve::Gamma;
         d.gamma = 4.5;
         d.gain = {0.2, 1, 3};
       })},
      {"DarkGamma", With([](Development& d) {
         d.curve = ToneCurve::Gamma;
         d.gamma = 0.4;
       })},
      {"Srgb", With([](Development& d) {
         d.black = {256, 256, 256};
         d.gain = {1.9, 1, 1.4};
         d.curve = ToneCurve::Srgb;
       })},
      {"Points", With([](Development& d) {
         d.curve = ToneCurve::Points;
         d.points = kPoints;
       })},
      {"Matrix", With([](Development& d) {
         d.black = {300, 300, 300};
         d.gain = {2.1, 1, 1.6};
         d.matrix = {1.7, -0.5, -0.2, -0.3, 1.6, -0.3, 0.1, -0.7, 1.6};
         d.curve = ToneCurve::Srgb;
       })},
  };
}

Model::Development Exact(const Development& d) {
  Model::Development exact;
  exact.black = {d.black.red, d.black.green, d.black.blue};
  exact.white = d.white;
  exact.gain = {d.gain.red, d.gain.green, d.gain.blue};
  for (std::size_t i = 0; i < 9; ++i) exact.matrix[i / 3][i % 3] = d.matrix[i];
  std::vector<std::pair<Model::Real, Model::Real>> points;
  for (const CurvePoint& point : d.points) points.emplace_back(point.input, point.output);
  if (d.curve == ToneCurve::Gamma) exact.curve = Model::GammaCurve(d.gamma);
  if (d.curve == ToneCurve::Srgb) exact.curve = Model::SrgbCurve();
  if (d.curve == ToneCurve::Points) exact.curve = Model::PointsCurve(points);
  return exact;
}

template <class Sample>
std::vector<Sample> Develop(long source, long destination, std::uint32_t width, std::uint32_t height,
                            const auto& frame, const FrameOptions& options) {
  FrameConverter converter;
  if (!converter.Configure(source, destination, width, height, options).IsSuccess()) {
    ADD_FAILURE() << "refused: " << source;
    return std::vector<Sample>(std::size_t{width} * height * 3);
  }
  std::vector<Sample> picture(converter.DestinationLayout().frameBytes / sizeof(Sample));
  const auto to = DestinationView::Of(picture, converter.Width(), converter.Height());
  // In bands, which must not show.
  const auto from = SourceView::Of(frame, width, height);
  const std::uint32_t half = converter.Height() / 2;
  EXPECT_TRUE(converter.ConvertLines(half, converter.Height() - half, from, to).IsSuccess());
  EXPECT_TRUE(converter.ConvertLines(0, half, from, to).IsSuccess());
  return picture;
}

/// Every sample in the red channel, with green and blue that differ from it.
Words EverySample() {
  Words words;
  for (std::uint32_t i = 0; i < 65536; ++i) {
    words.push_back(static_cast<std::uint16_t>(i));
    words.push_back(static_cast<std::uint16_t>(i * 40503));
    words.push_back(static_cast<std::uint16_t>(65535 - i));
  }
  return words;
}

TEST(GradingTest, IsWithinTheToleranceForEverySample) {
  const Words frame = EverySample();
  for (const Setting& setting : Settings()) {
    const Model::Development exact = Exact(setting.development);
    FrameOptions options;
    options.development = &setting.development;
    const Words words = Develop<std::uint16_t>(Ids::RGB16, Ids::RGB16, 256, 256, frame, options);
    const Bytes bytes = Develop<std::uint8_t>(Ids::RGB16, Ids::RGB8, 256, 256, frame, options);
    for (std::size_t i = 0; i < 65536; ++i) {
      const auto colour = Model::Develop({frame[3 * i], frame[3 * i + 1], frame[3 * i + 2]}, exact);
      for (std::size_t c = 0; c < 3; ++c) {
        const int value = static_cast<int>(colour[c]);
        ASSERT_LE(std::abs(words[3 * i + c] - value), 16) << setting.name << " of pixel " << i << "." << c;
        ASSERT_LE(std::abs(bytes[3 * i + c] - value / 256), 1)
            << setting.name << " of pixel " << i << "." << c;
      }
    }
  }
}

TEST(GradingTest, GivesTheSameAtEveryCpuLevel) {
  const Words frame = EverySample();
  for (const Setting& setting : Settings()) {
    FrameOptions options;
    options.development = &setting.development;
    const Words expected = Develop<std::uint16_t>(Ids::RGB16, Ids::RGB16, 256, 256, frame, options);
    for (const char* level : TestSupport::CpuLevels()) {
      const TestSupport::ForcedCpuLevel forced(level);
      ASSERT_EQ(Develop<std::uint16_t>(Ids::RGB16, Ids::RGB16, 256, 256, frame, options), expected)
          << setting.name << " at " << level;
    }
  }
}

/// White levels that name full scale ask for something and change nothing.
TEST(GradingTest, LeavesWhatItIsNotToChange) {
  struct Depth {
    long grey, mosaic;
    double white;
  };
  for (const Depth& depth : {Depth{Ids::Mono8, Ids::Bayer8, 255}, Depth{Ids::Mono12, Ids::Bayer12, 4095}}) {
    Development development;
    development.white = depth.white;
    FrameOptions plain, graded;
    plain.demosaic = graded.demosaic = Demosaic::Directional;
    graded.development = &development;
    Words frame(128 * 32);
    TestSupport::Random random(5);
    for (std::uint16_t& word : frame) word = static_cast<std::uint16_t>(random.Below(65536) & 0x0FFF);
    EXPECT_EQ(Develop<std::uint16_t>(depth.grey, depth.grey == Ids::Mono8 ? Ids::Mono8 : Ids::Mono12, 128, 32,
                                     frame, graded),
              Develop<std::uint16_t>(depth.grey, depth.grey == Ids::Mono8 ? Ids::Mono8 : Ids::Mono12, 128, 32,
                                     frame, plain));
  }
}

/// A picture graded afterwards is the picture of a graded frame, for every family, region and flip.
TEST(GradingTest, GradesEveryFamilyAsItsPicture) {
  TestSupport::Random random(3);
  for (const long source :
       {Ids::Mono12p, Ids::Mono4p, Ids::RGB12, Ids::BGRa8, Ids::YCbCr422_8, Ids::YCbCr411_8,
        Ids::YCbCr422_10p, Ids::Bayer8, Ids::Bayer12p, Ids::Bayer16, Ids::RGB8_Planar}) {
    for (const Demosaic demosaic : {Demosaic::Fast, Demosaic::Interpolate, Demosaic::Directional}) {
      // One of them keeps grey pictures grey.
      const std::vector<Setting> settings = Settings();
      Development development = settings[demosaic == Demosaic::Fast ? 5 : settings.size() - 1].development;
      development.black = {3, 3, 3};  // below white at every depth
      FrameLayout layout;
      if (!DescribeFrame(source, 144, 30, 0, layout).IsSuccess() || FindFormatInfo(source)->isSource == false)
        continue;
      Bytes frame(layout.frameBytes);
      for (std::uint8_t& byte : frame) byte = static_cast<std::uint8_t>(random.Below(256));
      FrameOptions options;
      options.demosaic = demosaic;
      options.region = {4, 3, 133 + random.Below(7), 20};
      options.flipHorizontal = random.Below(2) == 1;
      options.flipVertical = random.Below(2) == 1;
      const Words plain = Develop<std::uint16_t>(source, Ids::RGB16, 144, 30, frame, options);
      options.development = &development;
      const Words graded = Develop<std::uint16_t>(source, Ids::RGB16, 144, 30, frame, options);
      const Words grey = Develop<std::uint16_t>(source, Ids::Mono16, 144, 30, frame, options);
      Model::Development exact = Exact(development);
      const unsigned depth = std::min(FindFormatInfo(source)->depth, 16u);
      const bool reduced =
          depth < 8 || FindFormatInfo(source)->family == FormatFamily::YCbCr ||
          (FindFormatInfo(source)->family == FormatFamily::Bayer && demosaic != Demosaic::Directional);
      const double count = depth < 8 ? 65280.0 / ((1 << depth) - 1) : std::ldexp(1.0, 16 - int(depth));
      for (auto& black : exact.black) black *= count;
      exact.white = reduced ? 65280.0 : 65536.0 - count;
      for (std::size_t i = 0; i < plain.size() / 3; ++i) {
        const auto colour = Model::Develop({plain[3 * i], plain[3 * i + 1], plain[3 * i + 2]}, exact);
        for (std::size_t c = 0; c < 3; ++c)
          ASSERT_LE(std::abs(graded[3 * i + c] - int(colour[c])), 16) << source << " pixel " << i << "." << c;
        ASSERT_EQ(grey[i], graded[3 * i + 1]) << source << " pixel " << i;
      }
    }
  }
}

TEST(GradingTest, KeepsTheDepthOfYCbCr) {
  TestSupport::Random random(9);
  for (const long source : {Ids::YCbCr422_10, Ids::YCbCr422_12p, Ids::YCbCr422_10p_CbYCrY,
                            Ids::YCbCr422_12_CbYCrY, Ids::YCbCr10p_CbYCr, Ids::YCbCr12_CbYCr}) {
    for (const ColourMatrix matrix : {ColourMatrix::Bt601, ColourMatrix::Bt709, ColourMatrix::Jpeg}) {
      FrameLayout layout;
      ASSERT_TRUE(DescribeFrame(source, 140, 12, 0, layout).IsSuccess());
      Bytes frame(layout.frameBytes);
      for (std::uint8_t& byte : frame) byte = static_cast<std::uint8_t>(random.Below(256));
      FrameOptions options;
      options.matrix = matrix;
      options.fullDepth = true;
      Model::Memory memory(0, frame.size());
      std::ranges::copy(frame, memory.All().begin());
      const auto expected = Model::ReadPicture(
          {source, &memory, static_cast<std::ptrdiff_t>(layout.stride), 140, 12, options.GetFlags()});
      options.region = {5, 0, 131, 0};
      for (const char* level : TestSupport::CpuLevels()) {
        const TestSupport::ForcedCpuLevel forced(level);
        const Words actual = Develop<std::uint16_t>(source, Ids::RGB16, 140, 12, frame, options);
        for (std::size_t i = 0; i < actual.size() / 3; ++i) {
          const auto& pixel = expected[i / 131 * 140 + 5 + i % 131];
          ASSERT_EQ(actual[3 * i], pixel.red) << source << " pixel " << i << " at " << level;
          ASSERT_EQ(actual[3 * i + 1], pixel.green) << source << " pixel " << i << " at " << level;
          ASSERT_EQ(actual[3 * i + 2], pixel.blue) << source << " pixel " << i << " at " << level;
        }
      }
    }
  }
}

TEST(GradingTest, AllocatesNothingPerFrame) {
  const Development development = Settings().back().development;
  for (const long source : {Ids::Bayer12p, Ids::YCbCr422_10, Ids::RGB12}) {
    FrameOptions options;
    options.demosaic = Demosaic::Directional;
    options.development = &development;
    options.flipHorizontal = options.fullDepth = true;
    FrameConverter converter;
    ASSERT_TRUE(converter.Configure(source, Ids::RGB8, 130, 20, options).IsSuccess());
    const Bytes frame(converter.SourceLayout().frameBytes);
    Bytes picture(converter.DestinationLayout().frameBytes);
    const long before = TestSupport::sAllocations.made;
    const auto result =
        converter.Convert(SourceView::Of(frame, 130, 20), DestinationView::Of(picture, 130, 20));
    EXPECT_EQ(TestSupport::sAllocations.made, before) << source;
    EXPECT_TRUE(result.IsSuccess());
  }
}

TEST(GradingTest, RefusesSettingsWithoutMeaning) {
  const std::vector<CurvePoint> backwards = {{0.5, 0}, {0.5, 1}};
  for (const Development& development :
       {With([](Development& d) { d.black.red = 4095; }), With([](Development& d) { d.white = -1; }),
        With([](Development& d) { d.gain.blue = NAN; }), With([](Development& d) { d.matrix[4] = INFINITY; }),
        With([](Development& d) {
          d.curve = ToneCurve::Gamma;
          d.gamma = 0;
        }),
        With([](Development& d) { d.curve = ToneCurve::Points; })}) {
    FrameOptions options;
    options.development = &development;
    FrameConverter converter;
    EXPECT_EQ(converter.Configure(Ids::Mono12, Ids::RGB8, 8, 8, options).GetCode(), FrameError::InvalidTone);
  }
}

}  // namespace
