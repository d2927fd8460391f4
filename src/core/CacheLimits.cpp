#include "core/CacheLimits.h"

#include <ZrConvertersLib/StreamingStores.h>

#include <atomic>

#if __has_include(<unistd.h>)
#include <unistd.h>
#endif

namespace ZrConvertersLib {

namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;

// Measured: a server with a slow last cache, a desktop machine with a fast one.
static_assert(StreamingThresholdFor({2 * kMiB, 105 * kMiB}) == 4 * kMiB);
static_assert(StreamingThresholdFor({1 * kMiB, 32 * kMiB}) == 16 * kMiB);
// A last cache that does not hold 16 MiB; a machine that tells nothing.
static_assert(StreamingThresholdFor({kMiB / 4, 6 * kMiB}) == 6 * kMiB);
static_assert(StreamingThresholdFor({0, 0}) == 16 * kMiB);

#if defined(_SC_LEVEL2_CACHE_SIZE) && defined(_SC_LEVEL3_CACHE_SIZE)

std::size_t SizeOf(int cache) {
  const long bytes = sysconf(cache);
  return bytes > 0 ? static_cast<std::size_t>(bytes) : 0;
}

CacheSizes ReadCacheSizes() {
  return {SizeOf(_SC_LEVEL2_CACHE_SIZE), SizeOf(_SC_LEVEL3_CACHE_SIZE)};
}

#else

CacheSizes ReadCacheSizes() {
  return {0, 0};
}

#endif

struct Limits {
  std::size_t readAhead;
  std::atomic<std::size_t> streaming;

  explicit Limits(const CacheSizes& caches)
      : readAhead(BeyondSecondCache(caches)), streaming(StreamingThresholdFor(caches)) {}
};

Limits& TheLimits() {
  static Limits sLimits(ReadCacheSizes());
  return sLimits;
}

}  // namespace

std::size_t StreamingThreshold() {
  return TheLimits().streaming.load(std::memory_order_relaxed);
}

std::size_t ReadAheadThreshold() {
  return std::min(TheLimits().readAhead, StreamingThreshold());
}

std::size_t SetStreamingThreshold(std::size_t bytes) noexcept {
  return TheLimits().streaming.exchange(bytes, std::memory_order_relaxed);
}

}  // namespace ZrConvertersLib
