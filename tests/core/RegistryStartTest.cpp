// Takes the registry down and lets it come up again, which no other test in the same program would survive.

#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelType.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <thread>
#include <vector>

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

/// Threads whose first calls meet: one registry and one lock must come of it, and nothing be lost. Two
/// threads spin, so that they do meet; a lock that is made twice shows as a leak or a race under the
/// sanitizers.
TEST_F(RegistryStart, MeetsFirstCallsFromSeveralThreads) {
  constexpr int kThreads = 2;
  constexpr int kRounds = 3000;
  static const PixelConverter converter(5, 6, 1, 1, 1, 1, false);
  std::atomic<int> stored = 0;
  std::atomic<int> arrived = 0;
  std::barrier down(kThreads, []() noexcept { TakeDown(); });
  std::barrier end(kThreads);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      for (int round = 1; round <= kRounds; ++round) {
        down.arrive_and_wait();
        ++arrived;
        for (int spins = 0; arrived < round * kThreads; ++spins) {
          if (spins > 10000) std::this_thread::yield();
        }
        const PixelType type(i, 1, 1, false);
        stored += PixelTypeFactory::RegisterPixelType(i, &type, nullptr).IsSuccess();
        stored += PixelTypeFactory::RegisterPixelConverter(7, 8, &converter).IsSuccess();
        end.arrive_and_wait();
        for (int k = 0; k < kThreads; ++k) EXPECT_TRUE(PixelTypeFactory::HasPixelType(k));
        EXPECT_EQ(PixelTypeFactory::GetConverter(7, 8), &converter);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(stored, kRounds * (kThreads + 1));
}

}  // namespace
}  // namespace ZrConvertersLib
