#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#if defined(__x86_64__)
#include <immintrin.h>
#elif defined(__wasm_simd128__)
#include <wasm_simd128.h>
#else
#include <arm_neon.h>
#endif

/// Vectors of the level's native width, and the operations for which compilers generate poor code from
/// generic vectors. Included by kernel files only; everything has internal linkage, so each level has its own
/// copy.
///
/// "Natural order": element i of the (concatenated) vectors belongs to pixel i of the block.

#define ZR_ALWAYS __attribute__((always_inline))
#define ZR_INLINE inline ZR_ALWAYS

namespace ZrConvertersLib::simd {
namespace {

#if defined(__AVX512VBMI__)
inline constexpr int kWidth = 64;  ///< bytes of a vector, and pixels of a block
inline constexpr int kLane = 64;   ///< bytes within which one instruction shuffles freely
using Native = __m512i;
#elif defined(__AVX2__)
inline constexpr int kWidth = 32;
inline constexpr int kLane = 16;
using Native = __m256i;
#elif defined(__x86_64__)
inline constexpr int kWidth = 16;
inline constexpr int kLane = 16;
using Native = __m128i;
#elif defined(__wasm_simd128__)
inline constexpr int kWidth = 16;
inline constexpr int kLane = 16;
using Native = v128_t;
#else
inline constexpr int kWidth = 16;
inline constexpr int kLane = 16;
using Native = uint8x16_t;
#endif

using U8 [[gnu::vector_size(kWidth)]] = std::uint8_t;
using U16 [[gnu::vector_size(kWidth)]] = std::uint16_t;
using S16 [[gnu::vector_size(kWidth)]] = std::int16_t;
using U32 [[gnu::vector_size(kWidth)]] = std::uint32_t;
using S32 [[gnu::vector_size(kWidth)]] = std::int32_t;
using U64 [[gnu::vector_size(kWidth)]] = std::uint64_t;

/// f(0), f(1), ... with the numbers as compile-time constants; compilers leave a loop of four as a loop.
template <int n, class F>
ZR_INLINE void Unrolled(F f) {
  [&]<int... i>(std::integer_sequence<int, i...>) ZR_ALWAYS {
    (f(std::integral_constant<int, i>{}), ...);
  }
  (std::make_integer_sequence<int, n>{});
}

/// One channel of a block in 16-bit lanes, natural order.
struct Words {
  U16 a, b;
};

template <class To, class From>
ZR_INLINE To As(From x) {
  return __builtin_bit_cast(To, x);
}

ZR_INLINE U8 Load(const std::uint8_t* p) {
  U8 x;
  std::memcpy(&x, p, sizeof x);
  return x;
}

/// Keeps a vector in its register: compilers would compute it again, which costs more.
ZR_INLINE U8 Pinned(U8 x) {
#if defined(__AVX512VBMI__)
  asm("" : "+v"(x));
#elif defined(__x86_64__)
  asm("" : "+x"(x));
#endif
  return x;
}

/// A load whose result is used several times. Compilers would repeat it for each use, and unaligned loads are
/// expensive.
ZR_INLINE U8 LoadOnce(const std::uint8_t* p) {
  return Pinned(Load(p));
}

template <class V>
ZR_INLINE void Store(std::uint8_t* p, V x) {
  std::memcpy(p, &x, sizeof x);
}

ZR_INLINE Words LoadWords(const std::uint8_t* p) {
  return {As<U16>(Load(p)), As<U16>(Load(p + kWidth))};
}

ZR_INLINE U16 Splat16(unsigned v) {
  return U16{} + static_cast<std::uint16_t>(v);
}
ZR_INLINE U8 Splat8(unsigned v) {
  return U8{} + static_cast<std::uint8_t>(v);
}
ZR_INLINE U32 Splat32(unsigned v) {
  return U32{} + v;
}

/// A vector of bytes computed at compile time: byte i is Map::At(i).
template <class Map>
struct Constant {
  struct Bytes {
    alignas(kWidth) std::uint8_t at[kWidth];
  };
  static constexpr Bytes Make() {
    Bytes bytes{};
    for (int i = 0; i < kWidth; ++i) bytes.at[i] = static_cast<std::uint8_t>(Map::At(i));
    return bytes;
  }
  static constexpr Bytes kBytes = Make();
  static ZR_INLINE U8 Get() { return Load(kBytes.at); }
};

/// Shifts by a count known only at run time, 0 to 15.
ZR_INLINE U16 ShiftLeft(U16 x, std::uint32_t count) {
#if defined(__x86_64__)
  return x * Splat16(1U << count);  // half of the work of a shift by a register
#elif defined(__wasm_simd128__)
  return As<U16>(wasm_i16x8_shl(As<Native>(x), count));
#else
  return As<U16>(vshlq_u16(As<uint16x8_t>(x), vdupq_n_s16(static_cast<std::int16_t>(count))));
#endif
}

ZR_INLINE U16 ShiftRight(U16 x, std::uint32_t count) {
#if defined(__AVX512VBMI__)
  return As<U16>(_mm512_srl_epi16(As<Native>(x), _mm_cvtsi32_si128(static_cast<int>(count))));
#elif defined(__AVX2__)
  return As<U16>(_mm256_srl_epi16(As<Native>(x), _mm_cvtsi32_si128(static_cast<int>(count))));
#elif defined(__x86_64__)
  return As<U16>(_mm_srl_epi16(As<Native>(x), _mm_cvtsi32_si128(static_cast<int>(count))));
#elif defined(__wasm_simd128__)
  return As<U16>(wasm_u16x8_shr(As<Native>(x), count));
#else
  return As<U16>(
      vshlq_u16(As<uint16x8_t>(x), vdupq_n_s16(static_cast<std::int16_t>(-static_cast<int>(count)))));
#endif
}

#if defined(__AVX2__) && !defined(__AVX512VBMI__)
/// The lanes at two addresses.
ZR_INLINE U8 LoadLanes(const std::uint8_t* low, const std::uint8_t* high) {
  const auto lane = [](const std::uint8_t* p)
                        ZR_ALWAYS { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); };
  return As<U8>(_mm256_set_m128i(lane(high), lane(low)));
}
#endif

/// The upper halves of the 32-bit products of words.
ZR_INLINE U16 MultiplyUpper(U16 x, U16 factors) {
#if defined(__AVX512VBMI__)
  return As<U16>(_mm512_mulhi_epu16(As<Native>(x), As<Native>(factors)));
#elif defined(__AVX2__)
  return As<U16>(_mm256_mulhi_epu16(As<Native>(x), As<Native>(factors)));
#elif defined(__x86_64__)
  return As<U16>(_mm_mulhi_epu16(As<Native>(x), As<Native>(factors)));
#elif defined(__wasm_simd128__)
  const Native by = As<Native>(factors);
  return As<U16>(wasm_i16x8_shuffle(wasm_u32x4_extmul_low_u16x8(As<Native>(x), by),
                                    wasm_u32x4_extmul_high_u16x8(As<Native>(x), by), 1, 3, 5, 7, 9, 11, 13,
                                    15));
#else
  const uint16x8_t words = As<uint16x8_t>(x), by = As<uint16x8_t>(factors);
  return As<U16>(vuzp2q_u16(As<uint16x8_t>(vmull_u16(vget_low_u16(words), vget_low_u16(by))),
                            As<uint16x8_t>(vmull_high_u16(words, by))));
#endif
}
ZR_INLINE U16 MultiplyUpper(U16 x, unsigned factor) {
  return MultiplyUpper(x, Splat16(factor));
}

/// Grey as words of five, six and five bits, from the upper six bits of words.
ZR_INLINE U16 Grey565(U16 x) {
#if defined(__aarch64__)
  const uint16x8_t grey = As<uint16x8_t>(x);
  return As<U16>(vsriq_n_u16(grey, vsriq_n_u16(grey, grey, 6), 5));
#elif defined(__x86_64__)
  // 32.5 times six bits are these bits above their upper five.
  return (x & Splat16(0xF800)) | MultiplyUpper(x & Splat16(0xFC00), 2080);
#else
  return (x & Splat16(0xF800)) | ((x >> 5) & Splat16(0x07E0)) | (x >> 11);
#endif
}

/// 0xFF in each byte where Mask::At(i) is true, else 0.
template <class Mask>
ZR_INLINE U8 Where() {
  struct Bytes {
    static constexpr int At(int i) { return Mask::At(i) ? 0xFF : 0; }
  };
  return Constant<Bytes>::Get();
}

/// Where Mask::At(i) is true byte i of b, else of a.
template <class Mask>
ZR_INLINE U8 Blend(U8 a, U8 b) {
#if defined(__AVX512VBMI__)
  constexpr std::uint64_t kBits = [] {
    std::uint64_t bits = 0;
    for (int i = 0; i < kWidth; ++i) bits |= static_cast<std::uint64_t>(Mask::At(i)) << i;
    return bits;
  }();
  return As<U8>(_mm512_mask_blend_epi8(kBits, As<Native>(a), As<Native>(b)));
#else
  const U8 mask = Where<Mask>();
#if defined(__AVX2__)
  return As<U8>(_mm256_blendv_epi8(As<Native>(a), As<Native>(b), As<Native>(mask)));
#elif defined(__SSE4_1__)
  return As<U8>(_mm_blendv_epi8(As<Native>(a), As<Native>(b), As<Native>(mask)));
#else
  return (a & ~mask) | (b & mask);
#endif
#endif
}

/// Bits of a where those of mask are set, else bits of b.
ZR_INLINE U8 Select(U8 mask, U8 a, U8 b) {
#if defined(__AVX512VBMI__)
  return As<U8>(_mm512_ternarylogic_epi32(As<Native>(mask), As<Native>(a), As<Native>(b), 0xCA));
#elif defined(__x86_64__)
  return (a & mask) | (b & ~mask);
#elif defined(__wasm_simd128__)
  return As<U8>(wasm_v128_bitselect(As<Native>(a), As<Native>(b), As<Native>(mask)));
#else
  return As<U8>(vbslq_u8(As<Native>(mask), As<Native>(a), As<Native>(b)));
#endif
}

#if !defined(__x86_64__) || defined(__SSSE3__)
/// Byte i of each lane of 16 is byte index[i] % 16 of that lane; 0 for an index of 0x80 and more.
ZR_INLINE U8 ShuffleBytes(U8 x, U8 index) {
#if defined(__AVX512VBMI__)
  return As<U8>(_mm512_shuffle_epi8(As<Native>(x), As<Native>(index)));
#elif defined(__AVX2__)
  return As<U8>(_mm256_shuffle_epi8(As<Native>(x), As<Native>(index)));
#elif defined(__x86_64__)
  return As<U8>(_mm_shuffle_epi8(As<Native>(x), As<Native>(index)));
#elif defined(__wasm_simd128__)
  return As<U8>(wasm_i8x16_swizzle(As<Native>(x), As<Native>(index)));
#else
  return As<U8>(vqtbl1q_u8(As<Native>(x), As<Native>(index)));
#endif
}

#if defined(__wasm_simd128__)
/// Byte i of the result is byte Map::At(i) of a followed by b. The indices are constants, because WebAssembly
/// engines select an instruction by them; they cannot for a table in memory.
template <class Map>
ZR_INLINE U8 ShuffleTwo(U8 a, U8 b) {
  return [&]<int... i>(std::integer_sequence<int, i...>) ZR_ALWAYS {
    return __builtin_shufflevector(a, b, Map::At(i)...);
  }
  (std::make_integer_sequence<int, kWidth>{});
}
#endif

/// Byte i of the result is byte Map::At(i % kLane) of the same lane, or 0 where that is negative.
template <class Map>
ZR_INLINE U8 ShuffleLanes(U8 x) {
#if defined(__wasm_simd128__)
  struct FromZero {
    static constexpr int At(int i) { return Map::At(i) < 0 ? kWidth : Map::At(i); }
  };
  return ShuffleTwo<FromZero>(x, U8{});
#else
  struct Index {
    static constexpr int At(int i) {
      const int from = Map::At(i % kLane);
      return from < 0 ? 0xFF : from;
    }
  };
  const U8 index = Constant<Index>::Get();
#if defined(__AVX512VBMI__)
  constexpr std::uint64_t kKeep = [] {
    std::uint64_t bits = 0;
    for (int i = 0; i < kWidth; ++i) bits |= static_cast<std::uint64_t>(Map::At(i) >= 0) << i;
    return bits;
  }();
  if constexpr (kKeep == ~std::uint64_t{0})
    return As<U8>(_mm512_permutexvar_epi8(As<Native>(index), As<Native>(x)));
  else
    return As<U8>(_mm512_maskz_permutexvar_epi8(kKeep, As<Native>(index), As<Native>(x)));
#else
  return ShuffleBytes(x, index);
#endif
#endif
}
#endif

/// Interleaves elements within lanes of 16 bytes: a0 b0 a1 b1 ... from the low or the high halves.
#if defined(__AVX512VBMI__)
#define ZR_UNPACK(name, size)                                         \
  ZR_INLINE U8 name(U8 a, U8 b) {                                     \
    return As<U8>(_mm512_unpack##size(As<Native>(a), As<Native>(b))); \
  }
#elif defined(__AVX2__)
#define ZR_UNPACK(name, size)                                         \
  ZR_INLINE U8 name(U8 a, U8 b) {                                     \
    return As<U8>(_mm256_unpack##size(As<Native>(a), As<Native>(b))); \
  }
#elif defined(__x86_64__)
#define ZR_UNPACK(name, size)                                      \
  ZR_INLINE U8 name(U8 a, U8 b) {                                  \
    return As<U8>(_mm_unpack##size(As<Native>(a), As<Native>(b))); \
  }
#endif
#if defined(__x86_64__)
ZR_UNPACK(UnpackLow8, lo_epi8)
ZR_UNPACK(UnpackHigh8, hi_epi8)
ZR_UNPACK(UnpackLow16, lo_epi16)
ZR_UNPACK(UnpackHigh16, hi_epi16)
ZR_UNPACK(UnpackLow32, lo_epi32)
ZR_UNPACK(UnpackHigh32, hi_epi32)
ZR_UNPACK(UnpackLow64, lo_epi64)
ZR_UNPACK(UnpackHigh64, hi_epi64)
#undef ZR_UNPACK
#elif defined(__wasm_simd128__)
template <int size, bool high>
struct Unpacked {
  static constexpr int At(int i) {
    return i / size % 2 * kWidth + (high ? kWidth / 2 : 0) + i / (2 * size) * size + i % size;
  }
};
#define ZR_UNPACK(bits)                                   \
  ZR_INLINE U8 UnpackLow##bits(U8 a, U8 b) {              \
    return ShuffleTwo<Unpacked<(bits) / 8, false>>(a, b); \
  }                                                       \
  ZR_INLINE U8 UnpackHigh##bits(U8 a, U8 b) {             \
    return ShuffleTwo<Unpacked<(bits) / 8, true>>(a, b);  \
  }
ZR_UNPACK(8)
ZR_UNPACK(16)
ZR_UNPACK(32)
ZR_UNPACK(64)
#undef ZR_UNPACK
#else
ZR_INLINE U8 UnpackLow8(U8 a, U8 b) {
  return As<U8>(vzip1q_u8(As<Native>(a), As<Native>(b)));
}
ZR_INLINE U8 UnpackHigh8(U8 a, U8 b) {
  return As<U8>(vzip2q_u8(As<Native>(a), As<Native>(b)));
}
ZR_INLINE U8 UnpackLow16(U8 a, U8 b) {
  return As<U8>(vzip1q_u16(As<uint16x8_t>(a), As<uint16x8_t>(b)));
}
ZR_INLINE U8 UnpackHigh16(U8 a, U8 b) {
  return As<U8>(vzip2q_u16(As<uint16x8_t>(a), As<uint16x8_t>(b)));
}
ZR_INLINE U8 UnpackLow32(U8 a, U8 b) {
  return As<U8>(vzip1q_u32(As<uint32x4_t>(a), As<uint32x4_t>(b)));
}
ZR_INLINE U8 UnpackHigh32(U8 a, U8 b) {
  return As<U8>(vzip2q_u32(As<uint32x4_t>(a), As<uint32x4_t>(b)));
}
ZR_INLINE U8 UnpackLow64(U8 a, U8 b) {
  return As<U8>(vzip1q_u64(As<uint64x2_t>(a), As<uint64x2_t>(b)));
}
ZR_INLINE U8 UnpackHigh64(U8 a, U8 b) {
  return As<U8>(vzip2q_u64(As<uint64x2_t>(a), As<uint64x2_t>(b)));
}
#endif

/// Orders the 64-bit parts so that UnpackLow and UnpackHigh of the results give natural order.
ZR_INLINE U8 SpreadHalves(U8 x) {
#if defined(__AVX512VBMI__)
  const Native index = _mm512_setr_epi64(0, 4, 1, 5, 2, 6, 3, 7);
  return As<U8>(_mm512_permutexvar_epi64(index, As<Native>(x)));
#elif defined(__AVX2__)
  return As<U8>(_mm256_permute4x64_epi64(As<Native>(x), 0xD8));
#else
  return x;
#endif
}

/// The inverse: natural order from what packing within lanes gives.
ZR_INLINE U8 JoinHalves(U8 x) {
#if defined(__AVX512VBMI__)
  const Native index = _mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7);
  return As<U8>(_mm512_permutexvar_epi64(index, As<Native>(x)));
#elif defined(__AVX2__)
  return As<U8>(_mm256_permute4x64_epi64(As<Native>(x), 0xD8));
#else
  return x;
#endif
}

/// Words low | high << 8 in natural order.
ZR_INLINE Words InterleaveBytes(U8 low, U8 high) {
  const U8 l = SpreadHalves(low), h = SpreadHalves(high);
  return {As<U16>(UnpackLow8(l, h)), As<U16>(UnpackHigh8(l, h))};
}

/// x << 8 in 16-bit lanes.
ZR_INLINE Words WidenHigh(U8 x) {
  const U8 spread = SpreadHalves(x);
  return {As<U16>(UnpackLow8(U8{}, spread)), As<U16>(UnpackHigh8(U8{}, spread))};
}

/// Words even[0], odd[0], even[1], odd[1], ... in natural order.
ZR_INLINE Words InterleaveWords(U16 even, U16 odd) {
  const U8 e = SpreadHalves(As<U8>(even)), o = SpreadHalves(As<U8>(odd));
  return {As<U16>(UnpackLow16(e, o)), As<U16>(UnpackHigh16(e, o))};
}

/// Signed words to bytes, clipped to 0..255, each lane of a followed by the same lane of b.
ZR_INLINE U8 PackClipped(S16 a, S16 b) {
#if defined(__AVX512VBMI__)
  return As<U8>(_mm512_packus_epi16(As<Native>(a), As<Native>(b)));
#elif defined(__AVX2__)
  return As<U8>(_mm256_packus_epi16(As<Native>(a), As<Native>(b)));
#elif defined(__x86_64__)
  return As<U8>(_mm_packus_epi16(As<Native>(a), As<Native>(b)));
#elif defined(__wasm_simd128__)
  return As<U8>(wasm_u8x16_narrow_i16x8(As<Native>(a), As<Native>(b)));
#else
  return As<U8>(vcombine_u8(vqmovun_s16(As<int16x8_t>(a)), vqmovun_s16(As<int16x8_t>(b))));
#endif
}

/// Signed 32-bit elements to signed words, saturating, each lane of a followed by the same lane of b.
ZR_INLINE S16 PackSigned(S32 a, S32 b) {
#if defined(__AVX512VBMI__)
  return As<S16>(_mm512_packs_epi32(As<Native>(a), As<Native>(b)));
#elif defined(__AVX2__)
  return As<S16>(_mm256_packs_epi32(As<Native>(a), As<Native>(b)));
#elif defined(__x86_64__)
  return As<S16>(_mm_packs_epi32(As<Native>(a), As<Native>(b)));
#elif defined(__wasm_simd128__)
  return As<S16>(wasm_i16x8_narrow_i32x4(As<Native>(a), As<Native>(b)));
#else
  return As<S16>(vcombine_s16(vqmovn_s32(As<int32x4_t>(a)), vqmovn_s32(As<int32x4_t>(b))));
#endif
}

/// Natural order of 32-bit elements from what working twice within lanes gives.
ZR_INLINE U8 JoinQuarters(U8 x) {
#if defined(__AVX512VBMI__)
  const Native index = _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
  return As<U8>(_mm512_permutexvar_epi32(index, As<Native>(x)));
#elif defined(__AVX2__)
  return As<U8>(_mm256_permutevar8x32_epi32(As<Native>(x), _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7)));
#else
  return x;
#endif
}

#if defined(__AVX512VBMI__)
/// Every second byte of a, then of b, from byte `odd` on: two permutes, the second merged into the first.
template <int odd>
ZR_INLINE U8 EverySecondByte(U8 a, U8 b) {
  struct Index {
    static constexpr int At(int i) { return (2 * i + odd) % kWidth; }
  };
  const auto index = As<Native>(Constant<Index>::Get());
  const Native low = _mm512_permutexvar_epi8(index, As<Native>(a));
  return As<U8>(_mm512_mask_permutexvar_epi8(low, 0xFFFFFFFF00000000, index, As<Native>(b)));
}
#endif

#if defined(__wasm_simd128__)
/// Every second element of `size` bytes, from the one at `odd` on.
template <int size, int odd>
struct EverySecond {
  static constexpr int At(int i) { return (i / size * 2 + odd) * size + i % size; }
};
#endif

/// The low bytes of words, natural order; the high bytes are cut off.
ZR_INLINE U8 NarrowLow(Words x) {
#if defined(__AVX512VBMI__)
  return EverySecondByte<0>(As<U8>(x.a), As<U8>(x.b));
#elif defined(__x86_64__)
  return JoinHalves(PackClipped(As<S16>(x.a & Splat16(0xFF)), As<S16>(x.b & Splat16(0xFF))));
#elif defined(__wasm_simd128__)
  return ShuffleTwo<EverySecond<1, 0>>(As<U8>(x.a), As<U8>(x.b));
#else
  return As<U8>(vuzp1q_u8(As<Native>(x.a), As<Native>(x.b)));
#endif
}

/// The high bytes of words, natural order.
ZR_INLINE U8 NarrowHigh(Words x) {
#if defined(__AVX512VBMI__)
  return EverySecondByte<1>(As<U8>(x.a), As<U8>(x.b));
#elif defined(__x86_64__)
  return JoinHalves(PackClipped(As<S16>(x.a >> 8), As<S16>(x.b >> 8)));
#elif defined(__wasm_simd128__)
  return ShuffleTwo<EverySecond<1, 1>>(As<U8>(x.a), As<U8>(x.b));
#else
  return As<U8>(vuzp2q_u8(As<Native>(x.a), As<Native>(x.b)));
#endif
}

/// The high words of 32-bit elements, natural order.
ZR_INLINE U16 NarrowHigh(U32 a, U32 b) {
#if defined(__AVX512VBMI__)
  struct Index {
    static constexpr int At(int i) { return (4 * (i / 2) + 2 + i % 2) % kWidth; }
  };
  const auto index = As<Native>(Constant<Index>::Get());
  const Native low = _mm512_permutexvar_epi8(index, As<Native>(a));
  return As<U16>(_mm512_mask_permutexvar_epi8(low, 0xFFFFFFFF00000000, index, As<Native>(b)));
#elif defined(__x86_64__)
  const S32 low = As<S32>(a) >> 16, high = As<S32>(b) >> 16;
#if defined(__AVX2__)
  return As<U16>(JoinHalves(As<U8>(_mm256_packs_epi32(As<Native>(low), As<Native>(high)))));
#else
  return As<U16>(_mm_packs_epi32(As<Native>(low), As<Native>(high)));
#endif
#elif defined(__wasm_simd128__)
  return As<U16>(ShuffleTwo<EverySecond<2, 1>>(As<U8>(a), As<U8>(b)));
#else
  return As<U16>(vuzp2q_u16(As<uint16x8_t>(a), As<uint16x8_t>(b)));
#endif
}

/// The upper halves of 32-bit elements: those of even in the lower halves of the result, those of odd in the
/// upper.
ZR_INLINE U16 JoinUpper(S32 even, S32 odd) {
#if defined(__AVX512VBMI__)
  struct Upper {
    static constexpr int At(int i) { return i % 16 / 4 * 4 + 2 + i % 2; }
  };
  const auto index = As<Native>(Constant<Upper>::Get());
  return As<U16>(_mm512_mask_shuffle_epi8(As<Native>(odd), 0x3333333333333333, As<Native>(even), index));
#elif defined(__AVX2__)
  return As<U16>(_mm256_blend_epi16(_mm256_srli_epi32(As<Native>(even), 16), As<Native>(odd), 0xAA));
#elif defined(__SSE4_1__)
  return As<U16>(_mm_blend_epi16(_mm_srli_epi32(As<Native>(even), 16), As<Native>(odd), 0xAA));
#else
  return As<U16>((As<U32>(even) >> 16) | (As<U32>(odd) & Splat32(0xFFFF0000)));
#endif
}

/// Per 32-bit element: sum + a.low * b.low + a.high * b.high, the halves signed 16-bit.
ZR_INLINE S32 MultiplyAddPairs(S32 sum, S16 a, S16 b) {
#if defined(__AVX512VBMI__)
  return As<S32>(_mm512_dpwssd_epi32(As<Native>(sum), As<Native>(a), As<Native>(b)));
#elif defined(__AVX2__)
  return sum + As<S32>(_mm256_madd_epi16(As<Native>(a), As<Native>(b)));
#elif defined(__x86_64__)
  return sum + As<S32>(_mm_madd_epi16(As<Native>(a), As<Native>(b)));
#elif defined(__wasm_simd128__)
  return sum + As<S32>(wasm_i32x4_dot_i16x8(As<Native>(a), As<Native>(b)));
#else
  const int16x8_t x = As<int16x8_t>(a), y = As<int16x8_t>(b);
  const int32x4_t low = vmull_s16(vget_low_s16(x), vget_low_s16(y)), high = vmull_high_s16(x, y);
  return sum + As<S32>(vpaddq_s32(low, high));
#endif
}

}  // namespace
}  // namespace ZrConvertersLib::simd
