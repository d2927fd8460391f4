#include <ZrUtilsLib/LockScope.h>
#include <ZrUtilsLib/Mutex.h>
#include <ZrUtilsLib/Result.h>
#include <gtest/gtest.h>

#include <thread>

namespace ZrUtilsLib {
namespace {

TEST(Result, NamesTheCodesInUse) {
  EXPECT_EQ(Result(ResultCode::Success).GetCode(), 0u);
  EXPECT_EQ(Result(ResultCode::AlreadyRegistered).GetCode(), 18u);
  EXPECT_EQ(Result(ResultCode::RegistryNotCreated).GetCode(), 24u);
  EXPECT_EQ(Result(ResultCode::NotSupported).GetCode(), 26u);
  EXPECT_EQ(Result(ResultCode::FileNotOpened).GetCode(), 16384u);
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

}  // namespace
}  // namespace ZrUtilsLib
