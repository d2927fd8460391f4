#pragma once

#include <cpuid.h>

#include <array>
#include <cstddef>
#include <cstdint>

/// What an x86-64 machine must have for each CPU level: every feature that the compiler may use there
/// (cmake/KernelLevels.cmake), since hypervisors hide single ones, and the registers that the operating
/// system saves when it switches threads.

namespace ZrConvertersLib::simd {

/// Words of feature bits as CPUID and XGETBV give them.
enum CpuWord : std::size_t {
  kLeaf1Ecx,
  kLeaf7Ebx,
  kLeaf7Ecx,
  kExtended1Ecx,  ///< leaf 0x80000001
  kXcr0,          ///< register states that the operating system saves; 0 without OSXSAVE
  kCpuWords
};

using CpuFeatures = std::array<std::uint32_t, kCpuWords>;

inline constexpr std::uint32_t kSavedVectors = 0x06;     ///< SSE, and the upper halves for AVX
inline constexpr std::uint32_t kSavedVectors512 = 0xE6;  ///< those, masks, and what AVX-512 adds

inline constexpr CpuFeatures kNeededByV2 = {
    bit_SSE3 | bit_SSSE3 | bit_CMPXCHG16B | bit_SSE4_1 | bit_SSE4_2 | bit_POPCNT, 0, 0, bit_LAHF_LM, 0};

inline constexpr CpuFeatures kNeededByV3 = {
    kNeededByV2[kLeaf1Ecx] | bit_FMA | bit_MOVBE | bit_XSAVE | bit_OSXSAVE | bit_AVX | bit_F16C,
    bit_BMI | bit_AVX2 | bit_BMI2, 0, kNeededByV2[kExtended1Ecx] | bit_LZCNT, kSavedVectors};

inline constexpr CpuFeatures kNeededByV4 = {
    kNeededByV3[kLeaf1Ecx],
    kNeededByV3[kLeaf7Ebx] | bit_AVX512F | bit_AVX512DQ | bit_AVX512CD | bit_AVX512BW | bit_AVX512VL,
    bit_AVX512VBMI | bit_AVX512VBMI2 | bit_AVX512VNNI, kNeededByV3[kExtended1Ecx], kSavedVectors512};

constexpr bool HasAll(const CpuFeatures& features, const CpuFeatures& needed) {
  for (std::size_t i = 0; i < kCpuWords; ++i) {
    if ((features[i] & needed[i]) != needed[i]) return false;
  }
  return true;
}

}  // namespace ZrConvertersLib::simd
