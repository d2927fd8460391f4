#pragma once

#include "simd/Blocks.h"

/// The mean of two samples of 8 bits, in the form of channel that is asked for.

namespace ZrConvertersLib::simd {
namespace {

/// Rounded down. Instructions that round up round the complements' means down. With AVX-512 a
/// complement waits for what its register held before, so bit 0 is subtracted where it was rounded up.
ZR_INLINE U8 MeanOfBytes(U8 a, U8 b) {
#if defined(__AVX512VBMI__)
  constexpr int kOfDifference = (0xF0 ^ 0xCC) & 0xAA;
  const Native roundedUp =
      _mm512_ternarylogic_epi32(As<Native>(a), As<Native>(b), As<Native>(Splat8(1)), kOfDifference);
  return As<U8>(_mm512_avg_epu8(As<Native>(a), As<Native>(b))) - As<U8>(roundedUp);
#elif defined(__AVX2__)
  return ~As<U8>(_mm256_avg_epu8(As<Native>(~a), As<Native>(~b)));
#elif defined(__x86_64__)
  return ~As<U8>(_mm_avg_epu8(As<Native>(~a), As<Native>(~b)));
#elif defined(__wasm_simd128__)
  return ~As<U8>(wasm_u8x16_avgr(As<Native>(~a), As<Native>(~b)));
#else
  return As<U8>(vhaddq_u8(As<Native>(a), As<Native>(b)));
#endif
}

template <class Channel>
struct MeanOfTwo;

/// Rounded down, as bytes.
template <>
struct MeanOfTwo<U8> {
  static ZR_INLINE U8 Get(U8 a, U8 b) { return MeanOfBytes(a, b); }
};

/// On the 16-bit scale, which keeps the half that a byte cannot hold.
template <>
struct MeanOfTwo<Words> {
  static ZR_INLINE Words Get(U8 a, U8 b) { return InterleaveBytes((a ^ b) << 7, MeanOfBytes(a, b)); }
};

}  // namespace
}  // namespace ZrConvertersLib::simd
