#pragma once

#include <cstdint>
#include <span>

namespace TestSupport {

/// What an image holds. Noise sets every bit of every word, so also those above the depth of its samples.
enum class Content { Noise, Zeros, Ones, Ramp, Extremes };

const char* NameOf(Content content);

/// Fills `bytes` the same way for the same seed.
void Fill(std::span<std::uint8_t> bytes, Content content, std::uint64_t seed);

}  // namespace TestSupport
