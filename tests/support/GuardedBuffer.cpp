#include "GuardedBuffer.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>

#include "Random.h"

namespace TestSupport {
namespace {

std::size_t RoundUp(std::size_t size, std::size_t step) {
  return (size + step - 1) / step * step;
}

/// Unlike any value that a stray store is likely to repeat.
template <std::size_t Count>
constexpr std::array<std::uint8_t, Count> MakeCanaries() {
  std::array<std::uint8_t, Count> canaries{};
  Random random(Count);
  for (std::uint8_t& canary : canaries) canary = static_cast<std::uint8_t>(random.Next());
  return canaries;
}

constexpr auto kPattern = MakeCanaries<512>();

}  // namespace

const char* NameOf(Placement::At at) {
  constexpr const char* kNames[] = {"before an unmapped page", "after an unmapped page", "between canaries"};
  return kNames[static_cast<int>(at)];
}

GuardedBuffer::GuardedBuffer(std::size_t capacity) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t usable = RoundUp(capacity + 2 * kCanaries + 64, page);
  mMappedSize = usable + 2 * page;
  void* mapped = mmap(nullptr, mMappedSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (mapped == MAP_FAILED) throw std::bad_alloc();
  mMapped = static_cast<std::uint8_t*>(mapped);
  mUsable = {mMapped + page, usable};
  if (mprotect(mUsable.data(), usable, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
  mImage = mUsable.first(0);
}

GuardedBuffer::~GuardedBuffer() {
  munmap(mMapped, mMappedSize);
}

std::span<std::uint8_t> GuardedBuffer::Place(std::span<const std::uint8_t> image, Placement placement) {
  if (image.size() + 2 * kCanaries + 64 > mUsable.size())
    throw std::length_error("the image exceeds its buffer");
  mImage = {StartOf(image.size(), placement), image.size()};
  std::ranges::copy(image, mImage.begin());
  std::copy_n(kPattern.begin(), CanariesBefore().size(), CanariesBefore().begin());
  std::copy_n(kPattern.begin(), CanariesAfter().size(), CanariesAfter().begin());
  return mImage;
}

std::optional<std::ptrdiff_t> GuardedBuffer::FirstDamage() const {
  for (const auto canaries : {CanariesBefore(), CanariesAfter()}) {
    const auto damage = std::mismatch(canaries.begin(), canaries.end(), kPattern.begin()).first;
    if (damage != canaries.end()) return &*damage - mImage.data();
  }
  return std::nullopt;
}

std::uint8_t* GuardedBuffer::StartOf(std::size_t size, Placement placement) const {
  switch (placement.at) {
    case Placement::At::End:
      return mUsable.data() + mUsable.size() - size;
    case Placement::At::Begin:
      return mUsable.data();
    default:
      return mUsable.data() + kCanaries + placement.misalignment % 64;
  }
}

std::span<std::uint8_t> GuardedBuffer::CanariesBefore() const {
  const auto room = static_cast<std::size_t>(mImage.data() - mUsable.data());
  const std::size_t count = std::min(room, kCanaries);
  return {mImage.data() - count, count};
}

std::span<std::uint8_t> GuardedBuffer::CanariesAfter() const {
  std::uint8_t* const end = mImage.data() + mImage.size();
  const auto room = static_cast<std::size_t>(mUsable.data() + mUsable.size() - end);
  return {end, std::min(room, kCanaries)};
}

}  // namespace TestSupport
