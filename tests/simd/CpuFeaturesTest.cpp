#include "simd/CpuFeatures.h"

#include <gtest/gtest.h>

namespace ZrConvertersLib::simd {
namespace {

class CpuFeaturesTest : public testing::TestWithParam<CpuFeatures> {};

TEST_P(CpuFeaturesTest, EveryBitThatIsNeededCounts) {
  const CpuFeatures& needed = GetParam();
  EXPECT_TRUE(HasAll(needed, needed));
  for (std::size_t word = 0; word < kCpuWords; ++word) {
    for (std::uint32_t bit = 1; bit != 0; bit <<= 1) {
      CpuFeatures masked = needed;
      masked[word] &= ~bit;
      EXPECT_EQ(HasAll(masked, needed), (needed[word] & bit) == 0) << "word " << word << ", bit " << bit;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Levels, CpuFeaturesTest, testing::Values(kNeededByV2, kNeededByV3, kNeededByV4));

TEST(CpuFeatures, LevelsBuildOnOneAnother) {
  EXPECT_TRUE(HasAll(kNeededByV4, kNeededByV3));
  EXPECT_TRUE(HasAll(kNeededByV3, kNeededByV2));
  EXPECT_FALSE(HasAll(kNeededByV3, kNeededByV4));
}

TEST(CpuFeatures, AnOperatingSystemThatDoesNotSaveVectorsLimitsTheLevel) {
  CpuFeatures features = kNeededByV4;
  features[kXcr0] = 0x07;  // AVX, but none of what AVX-512 adds
  EXPECT_TRUE(HasAll(features, kNeededByV3));
  EXPECT_FALSE(HasAll(features, kNeededByV4));
  features[kXcr0] = 0x03;  // SSE only
  EXPECT_TRUE(HasAll(features, kNeededByV2));
  EXPECT_FALSE(HasAll(features, kNeededByV3));
}

}  // namespace
}  // namespace ZrConvertersLib::simd
