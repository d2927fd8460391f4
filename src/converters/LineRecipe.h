#pragma once

#include <cstdint>
#include <optional>

#include "simd/LineKernel.h"

namespace ZrConvertersLib {

/// How 16-bit or packed samples are reduced to the bytes that a kernel reads: by the kernel that converts
/// them to Mono8.
struct SampleRecipe {
  simd::SourceReader reader;
  std::uint32_t shift;  ///< of the reader
};

/// The kernel that a converter uses; the same for every line.
struct LineRecipe {
  simd::SourceReader reader;
  simd::PixelWriter writer;  ///< without the filter
  std::uint32_t shift = 0;
  std::uint8_t flip = 0;
  const YCbCrMatrix* matrix = nullptr;
  bool throughCaches = false;                ///< never written past the caches: small, or read again at once
  bool fromCaches = false;                   ///< reads what another kernel has just written
  std::optional<SampleRecipe> samples = {};  ///< when the source's samples are not the bytes that are read
};

/// The recipe that makes bytes of samples.
inline LineRecipe ToBytes(const SampleRecipe& samples) {
  return {.reader = samples.reader,
          .writer = simd::PixelWriter::Mono8,
          .shift = samples.shift,
          .throughCaches = true};
}

/// Turns a recipe that reads bytes into one that reads `samples` itself, where a kernel for the two exists.
bool ReadSamplesDirectly(LineRecipe& recipe, const SampleRecipe& samples);

/// The same, where the level in use has that kernel, and otherwise one that reduces the samples first.
void ReadSamples(LineRecipe& recipe, const SampleRecipe& samples);

}  // namespace ZrConvertersLib
