#pragma once

#include <cstdint>

namespace ZrConvertersLib {

/// Pixels of the source frame: columns [x0, x1) of lines [y0, y1).
struct Rect {
  std::int64_t x0 = 0;
  std::int64_t y0 = 0;
  std::int64_t x1 = 0;
  std::int64_t y1 = 0;

  std::int64_t Width() const noexcept { return x1 - x0; }
  std::int64_t Height() const noexcept { return y1 - y0; }
  bool IsEmpty() const noexcept { return x0 >= x1 || y0 >= y1; }
};

/// The largest multiple of `unit` that is not above a value that is not negative.
constexpr std::int64_t RoundDown(std::int64_t value, std::int64_t unit) noexcept {
  return value - value % unit;
}

/// The smallest multiple of `unit` that is not below a value that is not negative.
constexpr std::int64_t RoundUp(std::int64_t value, std::int64_t unit) noexcept {
  return RoundDown(value + unit - 1, unit);
}

}  // namespace ZrConvertersLib
