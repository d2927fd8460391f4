#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace Model {

/// What a channel's samples are, in the unit in which they are given.
struct Statistics {
  std::uint64_t count = 0;
  std::uint32_t minimum = 0, maximum = 0;
  long double mean = 0;
  std::vector<std::uint64_t> histogram;  ///< by the upper bits of the samples
};

/// Of samples of `depth` bits; the histogram has `bins` of equal width, a power of two of at most 2^depth.
/// Without samples all is 0.
Statistics Measure(std::span<const std::uint32_t> samples, unsigned depth, std::size_t bins);

/// Columns [left, right) of each of `lines`.
struct MeasuredPart {
  std::uint32_t left, right;
  std::vector<std::uint32_t> lines;
};

/// The samples of a mosaic's red, green or blue sites (0, 1, 2); `flags` choose the pattern.
std::vector<std::uint32_t> SamplesOfSites(std::span<const std::uint32_t> samples, std::uint32_t width,
                                          const MeasuredPart& part, unsigned flags, unsigned channel);

}  // namespace Model
