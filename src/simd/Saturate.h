#pragma once

#include "simd/Vec.h"

/// Unsigned bytes and words: sums and differences that stop at the ends of the range, means of words, the
/// lesser and the greater.

namespace ZrConvertersLib::simd {
namespace {

#if defined(__AVX512VBMI__)
#define ZR_UNSIGNED(type, lanes, name, x86, neon, wasm)          \
  ZR_INLINE type name(type a, type b) {                          \
    return As<type>(_mm512_##x86(As<Native>(a), As<Native>(b))); \
  }
#elif defined(__AVX2__)
#define ZR_UNSIGNED(type, lanes, name, x86, neon, wasm)          \
  ZR_INLINE type name(type a, type b) {                          \
    return As<type>(_mm256_##x86(As<Native>(a), As<Native>(b))); \
  }
#elif defined(__x86_64__)
#define ZR_UNSIGNED(type, lanes, name, x86, neon, wasm)       \
  ZR_INLINE type name(type a, type b) {                       \
    return As<type>(_mm_##x86(As<Native>(a), As<Native>(b))); \
  }
#elif defined(__wasm_simd128__)
#define ZR_UNSIGNED(type, lanes, name, x86, neon, wasm)  \
  ZR_INLINE type name(type a, type b) {                  \
    return As<type>(wasm(As<Native>(a), As<Native>(b))); \
  }
#else
#define ZR_UNSIGNED(type, lanes, name, x86, neon, wasm) \
  ZR_INLINE type name(type a, type b) {                 \
    return As<type>(neon(As<lanes>(a), As<lanes>(b)));  \
  }
#endif
#define ZR_BYTES(name, x86, neon, wasm) ZR_UNSIGNED(U8, uint8x16_t, name, x86, neon, wasm)
#define ZR_WORDS(name, x86, neon, wasm) ZR_UNSIGNED(U16, uint16x8_t, name, x86, neon, wasm)

ZR_BYTES(AddClipped, adds_epu8, vqaddq_u8, wasm_u8x16_add_sat)         ///< a + b, at most 255
ZR_BYTES(SubtractClipped, subs_epu8, vqsubq_u8, wasm_u8x16_sub_sat)    ///< a - b, at least 0
ZR_WORDS(AddClipped, adds_epu16, vqaddq_u16, wasm_u16x8_add_sat)       ///< a + b, at most 65535
ZR_WORDS(SubtractClipped, subs_epu16, vqsubq_u16, wasm_u16x8_sub_sat)  ///< a - b, at least 0
ZR_WORDS(MeanUp, avg_epu16, vrhaddq_u16, wasm_u16x8_avgr)              ///< (a + b + 1) / 2
#if defined(__SSE4_1__) || !defined(__x86_64__)
ZR_WORDS(Min16, min_epu16, vminq_u16, wasm_u16x8_min)
ZR_WORDS(Max16, max_epu16, vmaxq_u16, wasm_u16x8_max)
#else
ZR_INLINE U16 Min16(U16 a, U16 b) {
  return a - SubtractClipped(a, b);
}
ZR_INLINE U16 Max16(U16 a, U16 b) {
  return b + SubtractClipped(a, b);
}
#endif
#undef ZR_WORDS
#undef ZR_BYTES
#undef ZR_UNSIGNED

/// Elements of 0 to 2^31 - 1 to words of at most 65535, each lane of a followed by the same lane of b.
ZR_INLINE U16 PackUnsigned(S32 a, S32 b) {
#if defined(__AVX512VBMI__)
  return As<U16>(_mm512_packus_epi32(As<Native>(a), As<Native>(b)));
#elif defined(__AVX2__)
  return As<U16>(_mm256_packus_epi32(As<Native>(a), As<Native>(b)));
#elif defined(__SSE4_1__)
  return As<U16>(_mm_packus_epi32(As<Native>(a), As<Native>(b)));
#elif defined(__x86_64__)
  return As<U16>(PackSigned(a - 0x8000, b - 0x8000)) ^ Splat16(0x8000);
#elif defined(__wasm_simd128__)
  return As<U16>(wasm_u16x8_narrow_i32x4(As<Native>(a), As<Native>(b)));
#else
  return As<U16>(vcombine_u16(vqmovun_s32(As<int32x4_t>(a)), vqmovun_s32(As<int32x4_t>(b))));
#endif
}

/// |a - b|.
ZR_INLINE U16 Distance(U16 a, U16 b) {
  return Max16(a, b) - Min16(a, b);
}

/// x where a < b, else y.
ZR_INLINE U16 SelectLess(U16 a, U16 b, U16 x, U16 y) {
#if defined(__AVX512VBMI__)
  const __mmask32 less = _mm512_cmplt_epu16_mask(As<Native>(a), As<Native>(b));
  return As<U16>(_mm512_mask_blend_epi16(less, As<Native>(y), As<Native>(x)));
#else
  const U16 notLess = As<U16>(SubtractClipped(b, a) == U16{});
  return As<U16>(Select(As<U8>(notLess), As<U8>(y), As<U8>(x)));
#endif
}

}  // namespace
}  // namespace ZrConvertersLib::simd
