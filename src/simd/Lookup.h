#pragma once

#include "simd/Interleave.h"

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
      if (i == kHalf) before = Lane{};
      Lane part;
      std::memcpy(&part, table + 16 * i, sizeof part);
      mDelta[i] = part ^ before;
      before = part;
    }
  }

  ZR_LOOKUP U8 operator()(U8 x) const {
    const Lookup* const one[] = {this};
    U8 found[] = {x};
    Find(one, found);
    return found[0];
  }

  /// Several tables at once, part by part, so that one loop has work for all ports.
  template <std::size_t n>
  static ZR_INLINE void Find(const Lookup* const (&tables)[n], U8 (&x)[n]) {
    U8 low[n], high[n];
    Each<n>([&](unsigned k) ZR_ALWAYS {
      low[k] = x[k];
      high[k] = x[k] ^ Splat8(0x80);
      x[k] = ShuffleBytes(tables[k]->Part(0), low[k]) ^ ShuffleBytes(tables[k]->Part(kHalf), high[k]);
    });
    for (int i = 1; i < kHalf; ++i)
      Each<n>([&](unsigned k) ZR_ALWAYS {
        low[k] = Minus16(low[k]);
        high[k] = Minus16(high[k]);
        x[k] ^= ShuffleBytes(tables[k]->Part(i), low[k]) ^ ShuffleBytes(tables[k]->Part(kHalf + i), high[k]);
      });
  }

  /// The same of one vector.
  template <std::size_t n>
  static ZR_INLINE void Find(const Lookup* const (&tables)[n], U8 x, U8 (&found)[n]) {
    U8 low = x, high = x ^ Splat8(0x80);
    const auto both = [&](unsigned k, int i) ZR_ALWAYS {
      return ShuffleBytes(tables[k]->Part(i), low) ^ ShuffleBytes(tables[k]->Part(kHalf + i), high);
    };
    Each<n>([&](unsigned k) ZR_ALWAYS { found[k] = both(k, 0); });
    for (int i = 1; i < kHalf; ++i) {
      low = Minus16(low);
      high = Minus16(high);
      Each<n>([&](unsigned k) ZR_ALWAYS { found[k] ^= both(k, i); });
    }
  }

 private:
  using Lane [[gnu::vector_size(16)]] = std::uint8_t;
  static constexpr int kHalf = 8;  ///< parts of 128 entries, for signed indices

  template <std::size_t n, class F>
  static ZR_INLINE void Each(F f) {
    Unrolled<static_cast<int>(n)>([&](auto k) ZR_ALWAYS { f(static_cast<unsigned>(k)); });
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

/// A table each for three vectors.
class Lookups {
 public:
  explicit ZR_INLINE Lookups(const std::uint8_t* const (&tables)[3])
      : mFirst(tables[0]), mSecond(tables[1]), mThird(tables[2]) {}

  ZR_INLINE U8 First(U8 x) const { return mFirst(x); }

  /// The first table of all vectors.
  template <int n>
  ZR_INLINE Vectors<n> First(const Vectors<n>& x) const {
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
    if constexpr (n == 3) {
      U8 found[] = {x.v[0], x.v[1], x.v[2]};
      Lookup::Find({&mFirst, &mFirst, &mFirst}, found);
      return {{found[0], found[1], found[2]}};
    } else if constexpr (n == 4) {
      U8 low[] = {x.v[0], x.v[1]}, high[] = {x.v[2], x.v[3]};
      Lookup::Find({&mFirst, &mFirst}, low);
      Lookup::Find({&mFirst, &mFirst}, high);
      return {{low[0], low[1], high[0], high[1]}};
    }
#endif
    return ForEach<n>([&](auto i) ZR_ALWAYS { return mFirst(x.v[i]); });
  }

  ZR_INLINE void operator()(U8 (&x)[3]) const {
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
    Lookup::Find({&mFirst, &mSecond, &mThird}, x);
#else
    x[0] = mFirst(x[0]);
    x[1] = mSecond(x[1]);
    x[2] = mThird(x[2]);
#endif
  }

  /// All of one vector.
  ZR_INLINE void operator()(U8 x, U8 (&found)[3]) const {
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
    Lookup::Find({&mFirst, &mSecond, &mThird}, x, found);
#else
    found[0] = mFirst(x);
    found[1] = mSecond(x);
    found[2] = mThird(x);
#endif
  }

 private:
  Lookup mFirst, mSecond, mThird;
};

}  // namespace
}  // namespace ZrConvertersLib::simd
