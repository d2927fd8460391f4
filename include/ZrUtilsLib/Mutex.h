#pragma once

#include <chrono>
#include <mutex>
#include <thread>

/// @file
/// The lock of the companion library.

namespace ZrUtilsLib {

/// A mutual-exclusion lock, not recursive. Take it through a LockScope.
class Mutex {
 public:
  /// `flag` is set to true once the mutex can be used. `name` is for bug reports and must outlive the mutex.
  /// Both may be null.
  explicit Mutex(bool* flag = nullptr, const char* name = nullptr) : mName(name) {
    if (flag != nullptr) *flag = true;
  }

  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  /// Waits for the lock: `timeout` milliseconds at most, or as long as it takes when that is 0. Returns
  /// whether the lock is now held.
  bool Lock(unsigned timeout) {
    if (timeout != 0) return LockWithin(std::chrono::milliseconds(timeout));
    mMutex.lock();
    return true;
  }

  void Unlock() { mMutex.unlock(); }

  const char* GetName() const noexcept { return mName; }

 private:
  /// Asks again and again: ThreadSanitizer does not see the waiting of a std::timed_mutex.
  bool LockWithin(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!mMutex.try_lock()) {
      if (std::chrono::steady_clock::now() >= deadline) return false;
      std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    return true;
  }

  std::mutex mMutex;
  const char* mName;
};

}  // namespace ZrUtilsLib
