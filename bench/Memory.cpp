#include "Memory.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstring>
#include <new>

namespace Bench {

Memory::Memory(std::size_t bytes, std::size_t offset) : mBytes(bytes), mOffset(offset), mPages(nullptr) {
  void* pages = mmap(nullptr, bytes + offset, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) throw std::bad_alloc();
  mPages = static_cast<unsigned char*>(pages);
  std::memset(mPages, 1, bytes + offset);
}

Memory::~Memory() {
  munmap(mPages, mBytes + mOffset);
}

void Memory::FillWithNoise() const {
  std::uint64_t state = 0x9E3779B97F4A7C15u;
  for (std::size_t i = 0; i + sizeof state <= mBytes; i += sizeof state) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    std::memcpy(Data() + i, &state, sizeof state);
  }
}

}  // namespace Bench
