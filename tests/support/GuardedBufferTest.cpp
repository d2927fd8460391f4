#include "GuardedBuffer.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using TestSupport::GuardedBuffer;
using TestSupport::Placement;

constexpr Placement kPlacements[] = {
    {Placement::At::End}, {Placement::At::Begin}, {Placement::At::Middle, 0}, {Placement::At::Middle, 13}};

class GuardedBufferTest : public testing::TestWithParam<Placement> {
 protected:
  std::span<std::uint8_t> Place(std::size_t size) {
    return mBuffer.Place(std::vector<std::uint8_t>(size, 7), GetParam());
  }
  GuardedBuffer mBuffer{5000};
};

TEST_P(GuardedBufferTest, KeepsTheImageAndReportsNothingWhileOnlyItIsWritten) {
  const auto image = Place(4097);
  for (std::uint8_t& byte : image) {
    ASSERT_EQ(byte, 7);
    byte = 0;
  }
  EXPECT_EQ(mBuffer.FirstDamage(), std::nullopt);
}

TEST_P(GuardedBufferTest, SeesTheByteBefore) {
  const auto image = Place(100);
  if (GetParam().at == Placement::At::Begin) {
    EXPECT_DEATH(image.data()[-1] = 0, "");
  } else {
    image.data()[-1] ^= 1;
    EXPECT_EQ(mBuffer.FirstDamage(), -1);
  }
}

TEST_P(GuardedBufferTest, SeesTheByteAfter) {
  const auto image = Place(100);
  if (GetParam().at == Placement::At::End) {
    EXPECT_DEATH(image.data()[100] = 0, "");
  } else {
    image.data()[100] ^= 1;
    EXPECT_EQ(mBuffer.FirstDamage(), 100);
  }
}

TEST_P(GuardedBufferTest, SurroundsAnEmptyImage) {
  const auto image = Place(0);
  EXPECT_EQ(mBuffer.FirstDamage(), std::nullopt);
  image.data()[GetParam().at == Placement::At::End ? -1 : 0] ^= 1;
  EXPECT_TRUE(mBuffer.FirstDamage());
}

INSTANTIATE_TEST_SUITE_P(AllPlacements, GuardedBufferTest, testing::ValuesIn(kPlacements));

TEST(GuardedBuffer, ReadingPastTheEndCrashes) {
  GuardedBuffer buffer(64);
  const volatile std::uint8_t* end =
      buffer.Place(std::vector<std::uint8_t>(10), {Placement::At::End}).data() + 10;
  EXPECT_DEATH(static_cast<void>(*end), "");
}

}  // namespace
