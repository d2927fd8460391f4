#pragma once

#include <algorithm>
#include <cstddef>

/// @file
/// What caches hold, and from which size on a frame counts as one that they do not.

namespace ZrConvertersLib {

/// Bytes that caches hold and move together.
inline constexpr std::size_t kCacheLine = 64;

/// The caches of the core that asks, in bytes; 0 where the system does not tell.
struct CacheSizes {
  std::size_t second, last;
};

/// What is assumed of the second cache where the system does not tell.
inline constexpr std::size_t kUsualSecondCache = std::size_t{1} << 20;

/// Twice the second cache: what is written to its second half drives out what was read for the first.
constexpr std::size_t BeyondSecondCache(const CacheSizes& caches) {
  return 2 * (caches.second != 0 ? caches.second : kUsualSecondCache);
}

/// The streaming threshold for a machine. Where a large second cache stands beside a very large last one, the
/// last one is spread over the die of a server and no faster than memory, as far as one core is concerned.
/// Other last caches are several times as fast as memory: there a frame is written past them when it fills
/// most of the last cache of a desktop machine.
constexpr std::size_t StreamingThresholdFor(const CacheSizes& caches) {
  constexpr std::size_t kMiB = std::size_t{1} << 20;
  const std::size_t beyondSecond = BeyondSecondCache(caches);
  if (caches.second >= 2 * kMiB && caches.last >= 48 * kMiB) return beyondSecond;
  if (caches.last == 0) return 16 * kMiB;
  return std::clamp(caches.last, std::min(beyondSecond, 16 * kMiB), 16 * kMiB);
}

/// Frames whose source and destination together take more bytes than this are written past the caches.
std::size_t StreamingThreshold();

/// Frames that take more bytes than this are called into the caches before they are read.
std::size_t ReadAheadThreshold();

}  // namespace ZrConvertersLib
