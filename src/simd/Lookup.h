#pragma once

#include "simd/Vec.h"

namespace ZrConvertersLib::simd {
namespace {

/// A table of 256 bytes applied to every byte of a vector. On CPUs without AVX2 and in WebAssembly it is not
/// inlined: in the six filtered writers of every reader it would take a megabyte.
#if (defined(__x86_64__) && !defined(__AVX2__)) || defined(__wasm_simd128__)
#define ZR_LOOKUP [[gnu::noinline]]
#else
#define ZR_LOOKUP ZR_INLINE
#endif

#if defined(__AVX512VBMI__)

class Lookup {
 public:
  explicit ZR_INLINE Lookup(const std::uint8_t* table) {
    for (int i = 0; i < 4; ++i) mPart[i] = _mm512_loadu_si512(table + 64 * i);
  }

  ZR_INLINE U8 operator()(U8 x) const {
    const auto index = As<Native>(x);
    const Native low = _mm512_permutex2var_epi8(mPart[0], index, mPart[1]);
    const Native high = _mm512_permutex2var_epi8(mPart[2], index, mPart[3]);
    return As<U8>(_mm512_mask_blend_epi8(_mm512_movepi8_mask(index), low, high));
  }

 private:
  Native mPart[4];
};

#elif defined(__SSSE3__)

/// Sixteen shuffles of sixteen entries. A shuffle gives 0 for indices below zero, so with delta tables (each
/// part XORed with the one before) the parts whose base the index has reached add up, by XOR, to the last of
/// them.
class Lookup {
 public:
  explicit ZR_INLINE Lookup(const std::uint8_t* table) {
    Lane before{};
    for (int i = 0; i < 16; ++i) {
      if (i == 8) before = Lane{};
      Lane part;
      std::memcpy(&part, table + 16 * i, sizeof part);
      mDelta[i] = part ^ before;
      before = part;
    }
  }

  ZR_LOOKUP U8 operator()(U8 x) const { return Half(x, 0) ^ Half(x ^ Splat8(0x80), 8); }

 private:
  using Lane [[gnu::vector_size(16)]] = std::uint8_t;

  /// Entries 16 * first to 16 * first + 127, for signed indices 0 to 127.
  ZR_INLINE U8 Half(U8 index, int first) const {
    U8 found = ShuffleBytes(Part(first), index);
    for (int i = 1; i < 8; ++i) {
      index = Minus16(index);
      found ^= ShuffleBytes(Part(first + i), index);
    }
    return found;
  }

#if defined(__AVX2__)
  ZR_INLINE U8 Part(int part) const {
    return As<U8>(_mm256_broadcastsi128_si256(As<__m128i>(mDelta[part])));
  }
  static ZR_INLINE U8 Minus16(U8 x) {
    return As<U8>(_mm256_subs_epi8(As<Native>(x), _mm256_set1_epi8(16)));
  }
#else
  ZR_INLINE U8 Part(int part) const {
    return As<U8>(mDelta[part]);
  }
  static ZR_INLINE U8 Minus16(U8 x) {
    return As<U8>(_mm_subs_epi8(As<Native>(x), _mm_set1_epi8(16)));
  }
#endif

  Lane mDelta[16];
};

#elif defined(__wasm_simd128__)

/// Sixteen lookups of sixteen entries; one gives 0 where the index is out of them.
class Lookup {
 public:
  explicit ZR_INLINE Lookup(const std::uint8_t* table) {
    for (int i = 0; i < 16; ++i) mPart[i] = Load(table + 16 * i);
  }

  ZR_LOOKUP U8 operator()(U8 x) const {
    U8 found = ShuffleBytes(mPart[0], x);
    for (int i = 1; i < 16; ++i) found |= ShuffleBytes(mPart[i], x - Splat8(static_cast<unsigned>(16 * i)));
    return found;
  }

 private:
  U8 mPart[16];
};

#elif defined(__aarch64__)

class Lookup {
 public:
  explicit ZR_INLINE Lookup(const std::uint8_t* table) {
    for (int i = 0; i < 4; ++i) mPart[i] = vld1q_u8_x4(table + 64 * i);
  }

  /// A table lookup leaves the result alone where the index is out of its 64 entries.
  ZR_INLINE U8 operator()(U8 x) const {
    const uint8x16_t index = As<Native>(x), step = vdupq_n_u8(64);
    uint8x16_t found = vqtbl4q_u8(mPart[0], index);
    found = vqtbx4q_u8(found, mPart[1], vsubq_u8(index, step));
    found = vqtbx4q_u8(found, mPart[2], vsubq_u8(index, vdupq_n_u8(128)));
    return As<U8>(vqtbx4q_u8(found, mPart[3], vsubq_u8(index, vdupq_n_u8(192))));
  }

 private:
  uint8x16x4_t mPart[4];
};

#else

/// Without a byte shuffle there is nothing better than one load a byte.
class Lookup {
 public:
  explicit ZR_INLINE Lookup(const std::uint8_t* table) : mTable(table) {}

  ZR_LOOKUP U8 operator()(U8 x) const {
    std::uint8_t bytes[kWidth];
    Store(bytes, x);
    for (std::uint8_t& byte : bytes) byte = mTable[byte];
    return Load(bytes);
  }

 private:
  const std::uint8_t* mTable;
};

#endif

}  // namespace
}  // namespace ZrConvertersLib::simd
