#pragma once

#include "simd/Vec.h"

/// Products and sums of signed words that stay words, for fixed-point arithmetic.

namespace ZrConvertersLib::simd {
namespace {

/// What MultiplyUpper multiplies by: an even number in the range of signed words.
ZR_INLINE S16 Factor(int even) {
#if defined(__aarch64__)
  return As<S16>(Splat16(static_cast<unsigned>(even / 2)));  // the instruction doubles products
#else
  return As<S16>(Splat16(static_cast<unsigned>(even)));
#endif
}

/// What MultiplyAddPairs multiplies the lower and the upper word of every 32-bit element by.
ZR_INLINE S16 Factors(int low, int high) {
  return As<S16>(
      Splat32((static_cast<std::uint32_t>(high) << 16) | (static_cast<std::uint32_t>(low) & 0xFFFF)));
}

/// The upper halves of 32-bit products.
ZR_INLINE S16 MultiplyUpper(S16 x, S16 factor) {
#if defined(__AVX512VBMI__)
  return As<S16>(_mm512_mulhi_epi16(As<Native>(x), As<Native>(factor)));
#elif defined(__AVX2__)
  return As<S16>(_mm256_mulhi_epi16(As<Native>(x), As<Native>(factor)));
#elif defined(__x86_64__)
  return As<S16>(_mm_mulhi_epi16(As<Native>(x), As<Native>(factor)));
#elif defined(__wasm_simd128__)
  return As<S16>(ShuffleTwo<EverySecond<2, 1> >(
      As<U8>(wasm_i32x4_extmul_low_i16x8(As<Native>(x), As<Native>(factor))),
      As<U8>(wasm_i32x4_extmul_high_i16x8(As<Native>(x), As<Native>(factor)))));
#else
  return As<S16>(vqdmulhq_s16(As<int16x8_t>(x), As<int16x8_t>(factor)));
#endif
}

/// a + b, within -32768 and 32767.
ZR_INLINE S16 AddClipped(S16 a, S16 b) {
#if defined(__AVX512VBMI__)
  return As<S16>(_mm512_adds_epi16(As<Native>(a), As<Native>(b)));
#elif defined(__AVX2__)
  return As<S16>(_mm256_adds_epi16(As<Native>(a), As<Native>(b)));
#elif defined(__x86_64__)
  return As<S16>(_mm_adds_epi16(As<Native>(a), As<Native>(b)));
#elif defined(__wasm_simd128__)
  return As<S16>(wasm_i16x8_add_sat(As<Native>(a), As<Native>(b)));
#else
  return As<S16>(vqaddq_s16(As<int16x8_t>(a), As<int16x8_t>(b)));
#endif
}

/// Signed bytes of the lower (or upper) half of every word times a factor of up to 255.
template <bool lower>
ZR_INLINE S16 MultiplyBytes(U8 x, unsigned factor) {
#if defined(__AVX512VBMI__)
  return As<S16>(_mm512_maddubs_epi16(As<Native>(Splat16(lower ? factor : factor << 8)), As<Native>(x)));
#elif defined(__AVX2__)
  return As<S16>(_mm256_maddubs_epi16(As<Native>(Splat16(lower ? factor : factor << 8)), As<Native>(x)));
#elif defined(__SSSE3__)
  return As<S16>(_mm_maddubs_epi16(As<Native>(Splat16(lower ? factor : factor << 8)), As<Native>(x)));
#else
  const S16 bytes = As<S16>(lower ? As<U16>(x) << 8 : As<U16>(x)) >> 8;
  return bytes * As<S16>(Splat16(factor));
#endif
}

/// Bits 7 to 14 of signed words, clipped to signed bytes, each lane of a followed by the same lane of b.
ZR_INLINE U8 PackMiddle(S16 a, S16 b) {
#if defined(__AVX512VBMI__)
  return As<U8>(_mm512_packs_epi16(As<Native>(a >> 7), As<Native>(b >> 7)));
#elif defined(__AVX2__)
  return As<U8>(_mm256_packs_epi16(As<Native>(a >> 7), As<Native>(b >> 7)));
#elif defined(__x86_64__)
  return As<U8>(_mm_packs_epi16(As<Native>(a >> 7), As<Native>(b >> 7)));
#elif defined(__wasm_simd128__)
  return As<U8>(wasm_i8x16_narrow_i16x8(As<Native>(a >> 7), As<Native>(b >> 7)));
#else
  return As<U8>(vqshrn_high_n_s16(vqshrn_n_s16(As<int16x8_t>(a), 7), As<int16x8_t>(b), 7));
#endif
}

/// The lower (or upper) half of every 32-bit element in both of its halves.
template <bool lower>
ZR_INLINE S16 Twice(S16 x) {
#if defined(__aarch64__)
  const int16x8_t v = As<int16x8_t>(x);
  return As<S16>(lower ? vtrn1q_s16(v, v) : vtrn2q_s16(v, v));
#elif defined(__x86_64__) && !defined(__SSSE3__)
  constexpr int kOrder = lower ? 0xA0 : 0xF5;
  return As<S16>(_mm_shufflehi_epi16(_mm_shufflelo_epi16(As<Native>(x), kOrder), kOrder));
#else
  struct Order {
    static constexpr int At(int i) { return i / 4 * 4 + (lower ? 0 : 2) + i % 2; }
  };
  return As<S16>(ShuffleLanes<Order>(As<U8>(x)));
#endif
}

}  // namespace
}  // namespace ZrConvertersLib::simd
