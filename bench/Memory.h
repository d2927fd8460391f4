#pragma once

#include <cstddef>

namespace Bench {

/// Memory for frames, from the system and not from a heap, every page touched before anything is timed.
/// Frames are taken from it in turn.
class Ring {
 public:
  /// @param offset bytes from the start of a page to each frame. Source and destination get different ones:
  /// at the same one loads would wait for unrelated stores to addresses that differ by a multiple of 4096
  /// bytes, in conversions as in copies.
  Ring(std::size_t bytes, std::size_t offset);
  ~Ring();
  Ring(const Ring&) = delete;
  Ring& operator=(const Ring&) = delete;

  /// The frame at the beginning.
  unsigned char* First() const { return mPages + mOffset; }

  /// `bytes` after those that were taken last, at the beginning again where they do not fit.
  unsigned char* Take(std::size_t bytes);

  void FillWithNoise() const;

 private:
  std::size_t mBytes, mOffset, mTaken;
  unsigned char* mPages;
};

/// Bytes of the last cache that the processor has, or a usual size where the system does not know it.
std::size_t LastCacheBytes();

}  // namespace Bench
