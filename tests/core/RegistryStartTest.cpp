// Takes the registry down and lets it come up again, which no other test in the same program would survive.

#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelType.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <gtest/gtest.h>

namespace ZrConvertersLib {
namespace {

void TakeDown() {
  const PixelTypeFactoryCleanup cleanup;
}

class RegistryStart : public testing::Test {
 protected:
  void SetUp() override { TakeDown(); }
};

TEST_F(RegistryStart, LeavesNothingBehind) {
  EXPECT_EQ(PixelTypeFactory::sInternal, nullptr);
  EXPECT_EQ(PixelTypeFactoryInternal::sMutex, nullptr);
  TakeDown();
  EXPECT_EQ(PixelTypeFactory::sInternal, nullptr);
  EXPECT_EQ(PixelTypeFactoryInternal::sMutex, nullptr);
}

TEST_F(RegistryStart, LooksUpNothingInNothing) {
  EXPECT_EQ(PixelTypeFactory::GetPixelType(512), nullptr);
  EXPECT_EQ(PixelTypeFactory::GetConverter(512, 513), nullptr);
  EXPECT_EQ(PixelTypeFactory::sInternal, nullptr);
  EXPECT_FALSE(PixelTypeFactory::HasPixelType(512));
  EXPECT_NE(PixelTypeFactory::sInternal, nullptr);
  EXPECT_EQ(PixelTypeFactory::GetConverter(512, 513), nullptr);
  EXPECT_FALSE(PixelTypeFactory::HasConverter(512, 513));
}

TEST_F(RegistryStart, ComesUpAgain) {
  const PixelConverter converter(1, 2, 1, 1, 1, 1, true);
  EXPECT_NE(PixelTypeFactory::sInternal, nullptr);
  EXPECT_NE(PixelTypeFactoryInternal::sMutex, nullptr);
  EXPECT_EQ(PixelTypeFactory::GetConverter(1, 2), &converter);
  TakeDown();
  EXPECT_FALSE(PixelTypeFactory::HasConverter(1, 2));
  TakeDown();
}

class Counted : public PixelConverter {
 public:
  explicit Counted(int& alive) : PixelConverter(3, 4, 1, 1, 1, 1, false), mAlive(alive) { ++mAlive; }
  ~Counted() override { --mAlive; }

 private:
  int& mAlive;
};

TEST_F(RegistryStart, DeletesOwnedConvertersOnly) {
  int alive = 0;
  auto* owned = new Counted(alive);
  const Counted registered(alive);
  PixelTypeFactory::RegisterPixelConverter(registered);
  PixelTypeFactory::sInternal->mOwnedConverters.push_back(owned);
  EXPECT_EQ(alive, 2);
  TakeDown();
  EXPECT_EQ(alive, 1);
}

}  // namespace
}  // namespace ZrConvertersLib
