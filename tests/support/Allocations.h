#pragma once

#include <atomic>
#include <cstddef>
#include <limits>

namespace TestSupport {

/// A program that uses this has its allocator replaced, the library's included, by one that counts, can be
/// made to fail and can hold threads until they meet in it.
struct Allocations {
  static constexpr long kUnlimited = std::numeric_limits<long>::max();

  std::atomic<long> left = kUnlimited;  ///< how many still succeed
  /// Of at least so many bytes always fail.
  std::atomic<std::size_t> tooLarge = std::numeric_limits<std::size_t>::max();
  std::atomic<int> awaited = 0;  ///< threads that have to come before any that allocates may go on
  std::atomic<long> made = 0;
  std::atomic<long> alive = 0;  ///< not freed yet

  /// All succeed again.
  void Recover() {
    left = kUnlimited;
    tooLarge = std::numeric_limits<std::size_t>::max();
  }
};

extern Allocations sAllocations;

}  // namespace TestSupport
