#pragma once

#include <cstdint>
#include <initializer_list>

namespace TestSupport {

/// Scrambles 64 bits, so that neighbouring seeds give unrelated numbers.
constexpr std::uint64_t Scramble(std::uint64_t x) {
  x += 0x9E3779B97F4A7C15u;
  x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9u;
  x = (x ^ (x >> 27)) * 0x94D049BB133111EBu;
  return x ^ (x >> 31);
}

/// One number for several; the order matters.
constexpr std::uint64_t Hash(std::initializer_list<std::uint64_t> values) {
  std::uint64_t hash = 0;
  for (const std::uint64_t value : values) hash = Scramble(hash ^ value);
  return hash;
}

/// The same numbers in every run and on every machine.
class Random {
 public:
  explicit constexpr Random(std::uint64_t seed) : mState(seed) {}

  constexpr std::uint64_t Next() { return Scramble(mState++); }
  /// 0 to count - 1.
  constexpr std::uint32_t Below(std::uint32_t count) {
    return static_cast<std::uint32_t>(Next() >> 33) % count;
  }

  template <class T>
  constexpr T OneOf(std::initializer_list<T> values) {
    return values.begin()[Below(static_cast<std::uint32_t>(values.size()))];
  }

 private:
  std::uint64_t mState;
};

}  // namespace TestSupport
