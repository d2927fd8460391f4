#include <ZrUtilsLib/LockScope.h>
#include <ZrUtilsLib/Mutex.h>
#include <ZrUtilsLib/Result.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <vector>

namespace ZrUtilsLib {
namespace {

TEST(Result, CarriesACode) {
  EXPECT_TRUE(Result().IsSuccess());
  EXPECT_EQ(Result().GetCode(), 0u);
  EXPECT_EQ(Result(26).GetCode(), 26u);
  EXPECT_FALSE(Result(26).IsSuccess());
  EXPECT_EQ(Result(0xFFFFFFFF).GetCode(), 0xFFFFFFFF);
  const Result copy = Result(18);
  EXPECT_EQ(copy, Result(18));
  EXPECT_NE(copy, Result(0));
}

TEST(Result, NamesTheCodesInUse) {
  EXPECT_EQ(Result(ResultCode::Success).GetCode(), 0u);
  EXPECT_EQ(Result(ResultCode::AlreadyRegistered).GetCode(), 18u);
  EXPECT_EQ(Result(ResultCode::RegistryNotCreated).GetCode(), 24u);
  EXPECT_EQ(Result(ResultCode::NotSupported).GetCode(), 26u);
  EXPECT_EQ(Result(ResultCode::FileNotOpened).GetCode(), 16384u);
}

TEST(Mutex, TellsThatItCanBeUsed) {
  bool flag = false;
  const Mutex mutex(&flag, "name");
  EXPECT_TRUE(flag);
  EXPECT_STREQ(mutex.GetName(), "name");
  EXPECT_EQ(Mutex(nullptr, nullptr).GetName(), nullptr);
}

TEST(LockScope, LetsOneThreadInAtATime) {
  Mutex mutex;
  int count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int k = 0; k < 5000; ++k) {
        const LockScope lock(mutex, 0);
        ++count;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(count, 20000);
}

TEST(LockScope, GivesUpAfterItsTimeout) {
  Mutex mutex;
  {
    const LockScope held(mutex, 0);
    std::thread([&] { EXPECT_FALSE(LockScope(mutex, 1).IsLocked()); }).join();
  }
  // A scope that ran out of time has not released what it never held.
  EXPECT_TRUE(LockScope(mutex, 1).IsLocked());
}

TEST(LockScope, WaitsAsLongAsItTakesWithoutTimeout) {
  Mutex mutex;
  bool released = false;
  std::thread waiting;
  {
    const LockScope held(mutex, 0);
    waiting = std::thread([&] {
      const LockScope lock(mutex, 0);
      EXPECT_TRUE(lock.IsLocked());
      EXPECT_TRUE(released);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    released = true;
  }
  waiting.join();
}

}  // namespace
}  // namespace ZrUtilsLib
