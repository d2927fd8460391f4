#include "Pattern.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <numeric>

#include "Random.h"

namespace TestSupport {
namespace {

void FillWithNoise(std::span<std::uint8_t> bytes, std::uint64_t seed) {
  Random random(seed);
  for (std::size_t at = 0; at < bytes.size(); at += 8) {
    const std::uint64_t word = random.Next();
    std::memcpy(bytes.data() + at, &word, std::min<std::size_t>(8, bytes.size() - at));
  }
}

/// Runs of darkest and brightest samples: carries and clips show here.
void FillWithExtremes(std::span<std::uint8_t> bytes, std::uint64_t seed) {
  FillWithNoise(bytes, seed);
  for (std::uint8_t& byte : bytes) byte = byte & 1 ? 0xFF : 0;
}

}  // namespace

const char* NameOf(Content content) {
  constexpr const char* kNames[] = {"noise", "zeros", "ones", "ramp", "extremes"};
  return kNames[static_cast<int>(content)];
}

void Fill(std::span<std::uint8_t> bytes, Content content, std::uint64_t seed) {
  switch (content) {
    case Content::Noise:
      FillWithNoise(bytes, seed);
      break;
    case Content::Zeros:
      std::ranges::fill(bytes, std::uint8_t{0});
      break;
    case Content::Ones:
      std::ranges::fill(bytes, std::uint8_t{0xFF});
      break;
    case Content::Ramp:
      std::iota(bytes.begin(), bytes.end(), static_cast<std::uint8_t>(seed));
      break;
    case Content::Extremes:
      FillWithExtremes(bytes, seed);
      break;
  }
}

}  // namespace TestSupport
