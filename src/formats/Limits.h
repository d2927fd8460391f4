#pragma once

#include <cstdint>
#include <limits>

/// @file
/// What the checked interface takes at most. The raw call computes line steps of two lines, and packed lines
/// of up to seven times their pixels, in 32 bits; within these limits it never wraps.

namespace ZrConvertersLib {

/// Pixels per line, and lines.
inline constexpr std::uint64_t kMostPixels = std::numeric_limits<std::uint32_t>::max();

/// Bytes from one line to the next.
inline constexpr std::uint64_t kMostLineBytes = std::uint64_t{1} << 29;

/// Bytes that one raw call may step over, and that lie between two planes.
inline constexpr std::int64_t kMostCallBytes = std::numeric_limits<std::int32_t>::max();

}  // namespace ZrConvertersLib
