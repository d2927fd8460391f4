#pragma once

#include <cstddef>

namespace Bench {

/// Memory for frames, from the system and not from a heap, every page touched before anything is timed.
class Memory {
 public:
  /// @param offset bytes from the start of a page to the first frame. Source and destination get different
  /// ones: at the same one loads would wait for unrelated stores to addresses that differ by a multiple of
  /// 4096 bytes, in conversions as in copies.
  Memory(std::size_t bytes, std::size_t offset);
  ~Memory();
  Memory(const Memory&) = delete;
  Memory& operator=(const Memory&) = delete;

  unsigned char* Data() const { return mPages + mOffset; }
  std::size_t Size() const { return mBytes; }

  void FillWithNoise() const;

 private:
  std::size_t mBytes, mOffset;
  unsigned char* mPages;
};

}  // namespace Bench
