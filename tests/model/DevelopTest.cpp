#include "Develop.h"

#include <gtest/gtest.h>

#include "Demosaic.h"
#include "Directional.h"
#include "FullDepth.h"
#include "Statistics.h"

// Figures worked out by hand.

namespace {

using Model::Value;
using Samples = std::vector<std::uint32_t>;

void ExpectColour(const Value& actual, const Value& expected) {
  EXPECT_EQ(actual.red, expected.red);
  EXPECT_EQ(actual.green, expected.green);
  EXPECT_EQ(actual.blue, expected.blue);
}

TEST(DirectionalModel, FollowsTheDirectionOfLessChange) {
  // R G R G R
  // G B G B G and so on.
  const Samples samples = {30, 20,  30, 20,  30,  //
                           20, 100, 10, 100, 20,  //
                           10, 20,  40, 50,  60,  //
                           20, 100, 30, 100, 20,  //
                           30, 20,  40, 20,  30};
  const auto pixels = Model::DemosaicDirectionally(samples, 5, 5, Model::kRggb);
  // Along the line 37 with change 40, along the column 22 with change 30: (37 + 3 * 22) / 4. The corners'
  // greens are 20, 15, 20, 25, so blue exceeds green by 80.
  ExpectColour(pixels[12], {40, 25, 105});
  // Red exceeds green by 10 above and 15 below, blue by 80 on the left and 85 on the right.
  ExpectColour(pixels[7], {22, 10, 92});
  Samples turned(25);
  for (std::size_t i = 0; i < 25; ++i) turned[i % 5 * 5 + i / 5] = samples[i];
  ExpectColour(Model::DemosaicDirectionally(turned, 5, 5, Model::kRggb)[12], {40, 25, 105});
}

TEST(DirectionalModel, ReflectsAndLimits) {
  const auto tile = Model::DemosaicDirectionally(Samples{10, 20, 30, 40}, 2, 2, Model::kRggb);
  ExpectColour(tile[0], {10, 25, 40});
  // A red of 65535 among reds of 0 bends green to 98302 in both directions; blue is green's equal.
  Samples peak(25, 65535);
  for (const std::size_t red : {0u, 2u, 4u, 10u, 14u, 20u, 22u, 24u}) peak[red] = 0;
  ExpectColour(Model::DemosaicDirectionally(peak, 5, 5, Model::kRggb)[12], {65535, 65535, 65535});
}

TEST(FullDepthModel, KeepsTheFractionsOfYCbCr) {
  ExpectColour(Model::YCbCrToRgbAtFullDepth(65 << 6, 512 << 6, 512 << 6, 0), {74, 74, 74});
  ExpectColour(Model::YCbCrToRgbAtFullDepth(940 << 6, 512 << 6, 512 << 6, 0), {65262, 65262, 65262});
  // Cr is a quarter above its middle: 64 of 256, times 1435 and -731 of 1024.
  ExpectColour(Model::YCbCrToRgbAtFullDepth(128 << 8, 512 << 6, 513 << 6, 0x10000), {32857, 32722, 32768});
  ExpectColour(Model::YCbCrToRgbAtFullDepth(0xFFC0, 0xFFC0, 0, 0x10000), {19552, 65280, 65280});
}

TEST(FullDepthModel, ReadsPackedFramesWithoutAnIntermediate) {
  Model::Memory memory(0, 16);
  // Y 65, Cb 512, Y 940, Cr 512 of 10 bits, then as CSI-2 packs them.
  const std::vector<std::uint8_t> bytes = {0x41, 0x00, 0xC8, 0x3A, 0x80, 16, 128, 235, 128, 0x01};
  std::ranges::copy(bytes, memory.All().begin());
  Model::Frame frame{770, &memory, 5, 2, 1, 0};
  ExpectColour(Model::ReadPicture(frame)[0], {74, 74, 74});
  ExpectColour(Model::ReadPicture(frame)[1], {65262, 65262, 65262});
  frame = {1030, &memory, 5, 4, 2, Model::kCsi2Packing};
  EXPECT_EQ(Model::ReadSamples(frame)[4], 65u << 6);
  EXPECT_EQ(Model::ReadSamples(frame)[6], 940u << 6);
}

TEST(DevelopModel, TakesTheStepsInTheirOrder) {
  Model::Development steps{.depth = 12, .black = {240, 240, 0}, .white = 4080};
  const Value samples{2160 << 4, 1200 << 4, 2040 << 4};
  EXPECT_NEAR(static_cast<double>(Model::Develop(samples, steps)[0]), 32767.5, 1e-9);
  EXPECT_NEAR(static_cast<double>(Model::Develop(samples, steps)[1]), 16383.75, 1e-9);
  steps.gain = {3, 2, 1};
  // 1.5, 0.5, 0.5 before the matrix; nothing is limited there.
  steps.matrix = {{{0.5, 0, 0}, {-1, 0, 0.5}, {0, 1, -0.5}}};
  steps.curve = Model::GammaCurve(2);
  const auto colour = Model::Develop(samples, steps);
  EXPECT_NEAR(static_cast<double>(colour[0]), 56754.97484, 1e-4);  // the root of 3/4
  EXPECT_EQ(colour[1], 0);
  EXPECT_NEAR(static_cast<double>(colour[2]), 32767.5, 1e-9);
  const auto white = Model::Develop({255 << 8, 0, 0}, {.depth = 8});
  EXPECT_EQ(white[0], 65535);
}

TEST(DevelopModel, KnowsTheCurvesAndTheTolerances) {
  const auto points = Model::PointsCurve({{0.1L, 0.2L}, {0.5L, 0.8L}, {1, 0.9L}});
  EXPECT_EQ(points(0), 0.2L);
  EXPECT_NEAR(static_cast<double>(points(0.3L)), 0.5, 1e-15);
  EXPECT_NEAR(static_cast<double>(points(0.75L)), 0.85, 1e-15);
  EXPECT_NEAR(static_cast<double>(Model::SrgbCurve()(0.5L)), 0.7353569831, 1e-10);
  EXPECT_NEAR(static_cast<double>(Model::SrgbCurve()(0.001L)), 0.01292, 1e-15);
  EXPECT_EQ(Model::ToleranceOf(8), 1u);
  EXPECT_EQ(Model::ToleranceOf(14), 4u);
  EXPECT_EQ(Model::ToleranceOf(16), 16u);
}

TEST(StatisticsModel, CountsTheSitesOfAMosaic) {
  const Samples samples = {1, 2, 3, 4, 5, 6, 7, 8, 9, 1000, 11, 12};
  // Lines 0 and 2 of GRBG without their first column: red 2, 4 and 1000, 12.
  const auto red = Model::SamplesOfSites(samples, 4, {1, 4, {0, 2}}, Model::kGrbg, 0);
  EXPECT_EQ(red, (Samples{2, 4, 1000, 12}));
  const auto measured = Model::Measure(red, 10, 4);
  EXPECT_EQ(measured.count, 4u);
  EXPECT_EQ(measured.minimum, 2u);
  EXPECT_EQ(measured.maximum, 1000u);
  EXPECT_EQ(measured.mean, 254.5L);
  EXPECT_EQ(measured.histogram, (std::vector<std::uint64_t>{3, 0, 0, 1}));
}

}  // namespace
