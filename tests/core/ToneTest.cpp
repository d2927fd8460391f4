#include <ZrConvertersLib/FrameErrors.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace {

using namespace ZrConvertersLib;

TEST(ToneTest, DefaultsAreTheIdentity) {
  RGBFilter filter;
  filter.SetMultipliers(0, 0, 0, 1, 2, 3);
  EXPECT_TRUE(filter.SetTone({}).IsSuccess());
  EXPECT_TRUE(filter.IsIdentity());
}

TEST(ToneTest, LinearSettingsAreMultipliers) {
  RGBFilter expected;
  expected.SetMultipliers(2.0, 0.37, 1.0, -100, 12, 255);
  ToneSettings settings;
  settings.gain = {2.0, 0.37, 1.0};
  settings.offset = {-100, 12, 255};
  RGBFilter filter;
  ASSERT_TRUE(filter.SetTone(settings).IsSuccess());
  EXPECT_EQ(std::memcmp(filter.GetRed(), expected.GetRed(), 256), 0);
  EXPECT_EQ(std::memcmp(filter.GetGreen(), expected.GetGreen(), 256), 0);
  EXPECT_EQ(std::memcmp(filter.GetBlue(), expected.GetBlue(), 256), 0);
}

TEST(ToneTest, BlackLevelKeepsWhiteAndBalanceKeepsBlack) {
  ToneSettings settings;
  settings.black = 15;
  settings.balance = {2.0, 1.0, 0.5};
  RGBFilter filter;
  ASSERT_TRUE(filter.SetTone(settings).IsSuccess());
  EXPECT_EQ(filter.GetRed()[15], 0);
  EXPECT_EQ(filter.GetGreen()[14], 0);
  EXPECT_EQ(filter.GetGreen()[255], 255);
  EXPECT_EQ(filter.GetGreen()[135], 128);  // 120 x 255 / 240 = 127.5
  EXPECT_EQ(filter.GetRed()[135], 255);
  EXPECT_EQ(filter.GetBlue()[135], 64);
}

TEST(ToneTest, GammaBrightensTheShadows) {
  ToneSettings settings;
  settings.gamma = 2.0;
  RGBFilter filter;
  ASSERT_TRUE(filter.SetTone(settings).IsSuccess());
  EXPECT_EQ(filter.GetRed()[0], 0);
  EXPECT_EQ(filter.GetRed()[64], 128);  // 255 x sqrt(64 / 255) = 127.7
  EXPECT_EQ(filter.GetRed()[255], 255);
}

TEST(ToneTest, ExtremesStayInside) {
  const double huge = std::numeric_limits<double>::max();
  ToneSettings settings;
  settings.balance = {huge, huge, 0.0};
  settings.gain = {huge, 0.0, huge};
  settings.offset = {-huge, huge, 0.0};
  settings.gamma = std::numeric_limits<double>::denorm_min();
  settings.black = 254.0;
  RGBFilter filter;
  ASSERT_TRUE(filter.SetTone(settings).IsSuccess());
  EXPECT_EQ(filter.GetRed()[0], 0);
  EXPECT_EQ(filter.GetGreen()[255], 255);
  EXPECT_EQ(filter.GetBlue()[255], 0);
}

TEST(ToneTest, SettingsWithoutMeaningChangeNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinite = std::numeric_limits<double>::infinity();
  std::vector<ToneSettings> wrong(9);
  wrong[0].gamma = 0.0;
  wrong[1].gamma = nan;
  wrong[2].gamma = infinite;
  wrong[3].black = -1.0;
  wrong[4].black = 254.5;
  wrong[5].black = nan;
  wrong[6].balance.green = -0.1;
  wrong[7].gain.blue = infinite;
  wrong[8].offset.red = nan;
  RGBFilter filter;
  for (const ToneSettings& settings : wrong) {
    EXPECT_EQ(filter.SetTone(settings).GetCode(), FrameError::InvalidTone);
    EXPECT_TRUE(filter.IsIdentity());
  }
}

}  // namespace
