#include "Memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <new>

namespace Bench {

Ring::Ring(std::size_t bytes, std::size_t offset)
    : mBytes(bytes), mOffset(offset), mTaken(0), mPages(nullptr) {
  void* pages = mmap(nullptr, bytes + offset, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) throw std::bad_alloc();
  mPages = static_cast<unsigned char*>(pages);
  std::memset(mPages, 1, bytes + offset);
}

Ring::~Ring() {
  munmap(mPages, mBytes + mOffset);
}

unsigned char* Ring::Take(std::size_t bytes) {
  constexpr std::size_t kPage = 4096;
  if (mTaken + bytes > mBytes) mTaken = 0;
  unsigned char* frame = First() + mTaken;
  mTaken += (bytes + kPage - 1) / kPage * kPage;
  return frame;
}

void Ring::FillWithNoise() const {
  std::uint64_t state = 0x9E3779B97F4A7C15u;
  for (std::size_t i = 0; i + sizeof state <= mBytes; i += sizeof state) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    std::memcpy(First() + i, &state, sizeof state);
  }
}

std::size_t LastCacheBytes() {
  constexpr std::size_t kUsual = std::size_t{32} << 20;
#if defined(_SC_LEVEL3_CACHE_SIZE)
  for (const int name : {_SC_LEVEL3_CACHE_SIZE, _SC_LEVEL2_CACHE_SIZE})
    if (const long bytes = sysconf(name); bytes > 0) return static_cast<std::size_t>(bytes);
#endif
  return kUsual;
}

}  // namespace Bench
