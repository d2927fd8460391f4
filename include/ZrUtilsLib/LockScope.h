#pragma once

#include <ZrUtilsLib/Mutex.h>

/// @file
/// A lock held for the length of a block.

namespace ZrUtilsLib {

/// Holds a mutex from its construction to its destruction.
class LockScope {
 public:
  /// Waits for `mutex`: `timeout` milliseconds at most, or as long as it takes when that is 0.
  LockScope(Mutex& mutex, unsigned timeout) : mMutex(mutex), mLocked(mutex.Lock(timeout)) {}

  ~LockScope() {
    if (mLocked) mMutex.Unlock();
  }

  LockScope(const LockScope&) = delete;
  LockScope& operator=(const LockScope&) = delete;

  /// False only when a timeout was given and ran out.
  bool IsLocked() const noexcept { return mLocked; }

 private:
  Mutex& mMutex;
  const bool mLocked;
};

}  // namespace ZrUtilsLib
