#include "Allocations.h"

#include <chrono>
#include <cstdlib>
#include <new>
#include <thread>

namespace TestSupport {

constinit Allocations sAllocations;

namespace {

void Meet() noexcept {
  if (sAllocations.awaited <= 0) return;
  --sAllocations.awaited;
  for (int i = 0; i < 10000 && sAllocations.awaited > 0; ++i)
    std::this_thread::sleep_for(std::chrono::microseconds(100));
}

void* Allocate(std::size_t size) noexcept {
  Meet();
  if (size >= sAllocations.tooLarge || sAllocations.left == 0) return nullptr;
  if (sAllocations.left != Allocations::kUnlimited) --sAllocations.left;
  ++sAllocations.made;
  ++sAllocations.alive;
  return std::malloc(size != 0 ? size : 1);
}

void* AllocateOrThrow(std::size_t size) {
  void* memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void Free(void* memory) noexcept {
  if (memory != nullptr) --sAllocations.alive;
  std::free(memory);
}

}  // namespace
}  // namespace TestSupport

void* operator new(std::size_t size) {
  return TestSupport::AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return TestSupport::AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return TestSupport::Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return TestSupport::Allocate(size);
}
void operator delete(void* memory) noexcept {
  TestSupport::Free(memory);
}
void operator delete[](void* memory) noexcept {
  TestSupport::Free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  TestSupport::Free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  TestSupport::Free(memory);
}
