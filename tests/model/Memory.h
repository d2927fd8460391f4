#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <stdexcept>
#include <vector>

namespace Model {

/// Bytes around the first byte of an image, which remembers how far it was read or written.
///
/// Offsets are counted from the image's first byte and may be negative: flipped frames and border lines lie
/// before it. Leaving the bytes is an error of the test's geometry and throws.
class Memory {
 public:
  Memory(std::size_t before, std::size_t after)
      : mBytes(before + after), mOrigin(static_cast<std::ptrdiff_t>(before)) {}

  std::uint8_t Read(std::ptrdiff_t at) { return mBytes[Touch(at)]; }
  void Write(std::ptrdiff_t at, std::uint8_t value) { mBytes[Touch(at)] = value; }

  /// Little-endian words at any address.
  std::uint32_t Read16(std::ptrdiff_t at) { return static_cast<std::uint32_t>(Read(at) | Read(at + 1) << 8); }
  std::uint32_t Read32(std::ptrdiff_t at) { return Read16(at) | Read16(at + 2) << 16; }
  void Write16(std::ptrdiff_t at, std::uint32_t value) {
    Write(at, static_cast<std::uint8_t>(value));
    Write(at + 1, static_cast<std::uint8_t>(value >> 8));
  }

  bool Untouched() const { return mEnd <= mBegin; }
  /// The touched range is [Begin(), End()); both are 0 while nothing is touched.
  std::ptrdiff_t Begin() const { return Untouched() ? 0 : mBegin; }
  std::ptrdiff_t End() const { return Untouched() ? 0 : mEnd; }

  std::span<std::uint8_t> All() { return mBytes; }
  /// The bytes of [begin, end), without marking them as touched.
  std::span<const std::uint8_t> Range(std::ptrdiff_t begin, std::ptrdiff_t end) const {
    return std::span(mBytes).subspan(Index(begin), static_cast<std::size_t>(end - begin));
  }

 private:
  std::size_t Index(std::ptrdiff_t at) const { return static_cast<std::size_t>(at + mOrigin); }

  std::size_t Touch(std::ptrdiff_t at) {
    if (Index(at) >= mBytes.size()) throw std::out_of_range("the model left the test's memory");
    mBegin = std::min(mBegin, at);
    mEnd = std::max(mEnd, at + 1);
    return Index(at);
  }

  std::vector<std::uint8_t> mBytes;
  std::ptrdiff_t mOrigin;
  std::ptrdiff_t mBegin = std::numeric_limits<std::ptrdiff_t>::max();
  std::ptrdiff_t mEnd = std::numeric_limits<std::ptrdiff_t>::min();
};

}  // namespace Model
