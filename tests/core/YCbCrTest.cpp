#include <ZrConvertersLib/YCbCr.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace ZrConvertersLib {
namespace {

YUVPixelContext Convert(void (*matrix)(YUVPixelContext&), int y, int cb, int cr) {
  YUVPixelContext pixel;
  pixel.y = y;
  pixel.cb = cb;
  pixel.cr = cr;
  matrix(pixel);
  EXPECT_EQ(pixel.y, y);
  EXPECT_EQ(pixel.cb, cb);
  EXPECT_EQ(pixel.cr, cr);
  return pixel;
}

void ExpectGrey(const YUVPixelContext& pixel, int value) {
  EXPECT_EQ(pixel.r, value << 8);
  EXPECT_EQ(pixel.g, value << 8);
  EXPECT_EQ(pixel.b, value << 8);
}

TEST(YCbCr, MapsTheEndsOfTheLumaRange) {
  for (const auto matrix : {YCbCrToPixel601, YCbCrToPixel709}) {
    ExpectGrey(Convert(matrix, 16, 128, 128), 0);
    ExpectGrey(Convert(matrix, 235, 128, 128), 255);
    ExpectGrey(Convert(matrix, 0, 128, 128), 0);
    ExpectGrey(Convert(matrix, 126, 128, 128), 128);
  }
  ExpectGrey(Convert(YCbCrToPixelJPG, 0, 128, 128), 0);
  ExpectGrey(Convert(YCbCrToPixelJPG, 77, 128, 128), 77);
  ExpectGrey(Convert(YCbCrToPixelJPG, 255, 128, 128), 255);
}

/// The fixed-point constants, typed here once more: a wrong last digit changes few pixels and no hand-made
/// example.
TEST(YCbCr, IsExactEverywhere) {
  struct Constants {
    void (*matrix)(YUVPixelContext&);
    int offset, y, rv, gu, gv, bu;
  };
  const Constants all[] = {{YCbCrToPixel601, 16, 1192, 1634, -401, -832, 2067},
                           {YCbCrToPixel709, 16, 1192, 1836, -218, -546, 2163},
                           {YCbCrToPixelJPG, 0, 1024, 1435, -352, -731, 1815}};
  const auto clip = [](int sum) {
    return std::min(std::max((sum + 512) / 1024 - ((sum + 512) < 0 ? 1 : 0), 0), 255);
  };
  for (const Constants& k : all) {
    for (int y = 0; y < 256; ++y) {
      for (int cb = 0; cb < 256; cb += 3) {
        const int cr = (y * 7 + cb * 5) % 256;
        const YUVPixelContext pixel = Convert(k.matrix, y, cb, cr);
        const int c = (y - k.offset) * k.y;
        ASSERT_EQ(pixel.r, clip(c + k.rv * (cr - 128)) * 256);
        ASSERT_EQ(pixel.g, clip(c + k.gu * (cb - 128) + k.gv * (cr - 128)) * 256);
        ASSERT_EQ(pixel.b, clip(c + k.bu * (cb - 128)) * 256);
      }
    }
  }
}

TEST(YCbCr, ClipsWhateverComes) {
  EXPECT_EQ(Convert(YCbCrToPixel601, 255, 255, 128).b, 255 << 8);
  constexpr int kMax = std::numeric_limits<int>::max();
  constexpr int kMin = std::numeric_limits<int>::min();
  for (const auto matrix : {YCbCrToPixel601, YCbCrToPixel709, YCbCrToPixelJPG}) {
    ExpectGrey(Convert(matrix, kMax, 128, 128), 255);
    ExpectGrey(Convert(matrix, kMin, 128, 128), 0);
    EXPECT_EQ(Convert(matrix, 128, kMax, kMin).g, 255 << 8);
  }
}

}  // namespace
}  // namespace ZrConvertersLib
