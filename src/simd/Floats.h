#pragma once

#include "simd/Vec.h"

/// Vectors of 32-bit floating-point numbers. Products and quotients are rounded to nearest and nothing is
/// fused, so that every level gives the same bits.

namespace ZrConvertersLib::simd {
namespace {

using F32 [[gnu::vector_size(kWidth)]] = float;

/// Integers below 2^24, which floats hold exactly.
ZR_INLINE F32 ToFloat(U32 x) {
  return __builtin_convertvector(As<S32>(x), F32);
}

/// Cut to integers, which are to be in the range of signed ones.
ZR_INLINE U32 CutToIntegers(F32 x) {
  return As<U32>(__builtin_convertvector(x, S32));
}

/// To the nearest integers, of two the even one. What is less than all integers becomes the least of them.
ZR_INLINE S32 RoundToIntegers(F32 x) {
#if defined(__AVX512VBMI__)
  return As<S32>(_mm512_cvtps_epi32(x));
#elif defined(__AVX2__)
  return As<S32>(_mm256_cvtps_epi32(x));
#elif defined(__x86_64__)
  return As<S32>(_mm_cvtps_epi32(x));
#elif defined(__wasm_simd128__)
  return As<S32>(wasm_i32x4_trunc_sat_f32x4(wasm_f32x4_nearest(As<Native>(x))));
#else
  return As<S32>(vcvtnq_s32_f32(As<float32x4_t>(x)));
#endif
}

ZR_INLINE F32 Smaller(F32 a, F32 b) {
#if defined(__AVX512VBMI__)
  return _mm512_min_ps(a, b);
#elif defined(__AVX2__)
  return _mm256_min_ps(a, b);
#elif defined(__x86_64__)
  return _mm_min_ps(a, b);
#elif defined(__wasm_simd128__)
  return As<F32>(wasm_f32x4_pmin(As<Native>(a), As<Native>(b)));
#else
  return As<F32>(vminq_f32(As<float32x4_t>(a), As<float32x4_t>(b)));
#endif
}

ZR_INLINE F32 Larger(F32 a, F32 b) {
#if defined(__AVX512VBMI__)
  return _mm512_max_ps(a, b);
#elif defined(__AVX2__)
  return _mm256_max_ps(a, b);
#elif defined(__x86_64__)
  return _mm_max_ps(a, b);
#elif defined(__wasm_simd128__)
  return As<F32>(wasm_f32x4_pmax(As<Native>(a), As<Native>(b)));
#else
  return As<F32>(vmaxq_f32(As<float32x4_t>(a), As<float32x4_t>(b)));
#endif
}

}  // namespace
}  // namespace ZrConvertersLib::simd
