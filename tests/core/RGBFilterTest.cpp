#include <ZrConvertersLib/RGBFilter.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ZrConvertersLib {
namespace {

TEST(RGBFilter, BeginsAsIdentity) {
  const RGBFilter filter;
  for (int i = 0; i < 256; ++i) {
    EXPECT_EQ(filter.GetRed()[i], i);
    EXPECT_EQ(filter.GetGreen()[i], i);
    EXPECT_EQ(filter.GetBlue()[i], i);
  }
  EXPECT_TRUE(filter.IsIdentity());
  EXPECT_TRUE(sRGBFilter.IsIdentity());
}

TEST(RGBFilter, ScalesEachChannelByItsOwnGain) {
  RGBFilter filter;
  EXPECT_EQ(filter.SetMultipliers(2.0, 1.0, 0.5, 0, 0, 0).GetCode(), 0u);
  EXPECT_EQ(filter.GetRed()[100], 200);
  EXPECT_EQ(filter.GetRed()[200], 255);
  EXPECT_EQ(filter.GetGreen()[200], 200);
  EXPECT_EQ(filter.GetBlue()[3], 2);
  EXPECT_EQ(filter.GetBlue()[1], 1);
}

TEST(RGBFilter, ShiftsEachChannelByItsOwnOffset) {
  RGBFilter filter;
  filter.SetMultipliers(1.0, 1.0, 1.0, -300, 7, 300);
  for (int i = 0; i < 256; ++i) {
    EXPECT_EQ(filter.GetRed()[i], 0);
    EXPECT_EQ(filter.GetGreen()[i], i < 248 ? i + 7 : 255);
    EXPECT_EQ(filter.GetBlue()[i], 255);
  }
}

TEST(RGBFilter, TellsIdentityByTheTables) {
  RGBFilter filter;
  filter.SetMultipliers(1.0, 1.0, 1.0, 0, 0, 0);
  EXPECT_TRUE(filter.IsIdentity());
  // 0.998 x 255 = 254.49 changes the last few entries alone, those from 0.5 / 0.002 = 250 on.
  const double gains[3][3] = {{0.998, 1, 1}, {1, 0.998, 1}, {1, 1, 0.998}};
  for (const auto& gain : gains) {
    filter.SetMultipliers(gain[0], gain[1], gain[2], 0, 0, 0);
    EXPECT_FALSE(filter.IsIdentity());
  }
  EXPECT_EQ(filter.GetBlue()[249], 249);
  EXPECT_EQ(filter.GetBlue()[255], 254);
  filter.SetIdentity();
  EXPECT_TRUE(filter.IsIdentity());
}

TEST(RGBFilter, RoundsHalvesUpAndClamps) {
  EXPECT_EQ(RGBFilter::Get8(0, 0.0, 0), 0);
  EXPECT_EQ(RGBFilter::Get8(255, 1.0, 0), 255);
  EXPECT_EQ(RGBFilter::Get8(1, 2.5, 0), 3);
  EXPECT_EQ(RGBFilter::Get8(1, 2.49, 0), 2);
  EXPECT_EQ(RGBFilter::Get8(1, -0.7, 0), 0);
  EXPECT_EQ(RGBFilter::Get8(10, -1.0, 12), 2);
  EXPECT_EQ(RGBFilter::Get8(100, -1.0, 0), 0);
  EXPECT_EQ(RGBFilter::Get8(255, 1.0, 1), 255);
  EXPECT_EQ(RGBFilter::Get8(-5, 1.0, 10), 5);
}

TEST(RGBFilter, RoundsTheProductBeforeItAdds) {
  // Each product is a little below a half in the reals and exactly a half as a double. A processor that
  // multiplies and adds in one step would give one less.
  EXPECT_EQ(RGBFilter::Get8(5, 0.7, -3), 1);
  EXPECT_EQ(RGBFilter::Get8(15, 0.7, -10), 1);
  EXPECT_EQ(RGBFilter::Get8(25, 0.7, -17), 1);
  RGBFilter filter;
  ToneSettings settings;
  settings.gain = {0.7, 0.7, 0.7};
  settings.offset = {-3.0, -10.0, -17.0};
  ASSERT_TRUE(filter.SetTone(settings).IsSuccess());
  EXPECT_EQ(filter.GetRed()[5], 1);
  EXPECT_EQ(filter.GetGreen()[15], 1);
  EXPECT_EQ(filter.GetBlue()[25], 1);
}

TEST(RGBFilter, TakesAnyNumber) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr int kMax = std::numeric_limits<int>::max();
  constexpr int kMin = std::numeric_limits<int>::min();
  EXPECT_EQ(RGBFilter::Get8(255, 1e300, kMax), 255);
  EXPECT_EQ(RGBFilter::Get8(255, -1e300, kMax), 0);
  EXPECT_EQ(RGBFilter::Get8(1, kInfinity, 0), 255);
  EXPECT_EQ(RGBFilter::Get8(1, -kInfinity, 0), 0);
  EXPECT_EQ(RGBFilter::Get8(0, kInfinity, 0), 0);  // not a number
  EXPECT_EQ(RGBFilter::Get8(1, std::nan(""), 0), 0);
  EXPECT_EQ(RGBFilter::Get8(kMin, 1.0, kMin), 0);
  EXPECT_EQ(RGBFilter::Get8(kMax, 1.0, kMax), 255);
}

}  // namespace
}  // namespace ZrConvertersLib
