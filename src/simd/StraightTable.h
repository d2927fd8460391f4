#pragma once

#include <cstdint>

namespace ZrConvertersLib::simd {

/// A table of 256 bytes that follows a straight line between limits, as gains and offsets make it, in a form
/// that takes twelve operations to compute. With high = x / 16 and low = x % 16 the entry of x is
///     base[high] + (rise[low] + (fraction[low] > threshold[high] ? 1 : 0) - limit[high]),
/// the difference at least 0 and the sum at most 255: where the line is at the beginning of 16 entries, and
/// what it rises from there, one more if the fractions of both add up to a whole. Where a line begins to rise
/// among the 16 entries, the limit is what it would have risen before.
struct StraightTable {
  static constexpr int kEntries = 16;

  alignas(16) std::uint8_t base[kEntries];
  std::uint8_t limit[kEntries];
  std::int8_t threshold[kEntries];
  std::uint8_t rise[kEntries];
  std::int8_t fraction[kEntries];
};

}  // namespace ZrConvertersLib::simd
