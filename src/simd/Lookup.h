#pragma once

#include "simd/Interleave.h"
#include "simd/LineKernel.h"
#include "simd/Saturate.h"

namespace ZrConvertersLib::simd {
namespace {

#if defined(__AVX512VBMI__)

class Lookup {
 public:
  ZR_INLINE void Set(const std::uint8_t* table) {
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
#define ZR_DELTA_TABLES 1

/// Sixteen shuffles of sixteen entries. A shuffle gives 0 for indices below zero, so with delta tables (each
/// part XORed with the one before) the parts whose base the index has reached add up, by XOR, to the last of
/// them.
class Lookup {
 public:
  ZR_INLINE void Set(const std::uint8_t* table) {
    Lane before{};
    for (int i = 0; i < 16; ++i) {
      if (i == kHalf) before = Lane{};
      Lane part;
      std::memcpy(&part, table + 16 * i, sizeof part);
      mDelta[i] = part ^ before;
      before = part;
    }
  }

  ZR_INLINE U8 operator()(U8 x) const { return Find({this}, Vectors<1>{{x}}).v[0]; }

  /// A table each for some vectors at once, part by part, so that one loop has work for all ports.
  template <std::size_t count, int n = static_cast<int>(count)>
  static ZR_INLINE Vectors<n> Find(const Lookup* const (&tables)[count], const Vectors<n>& x) {
    Vectors<n> low = x, high = ForEach<n>([&](auto k) ZR_ALWAYS { return x.v[k] ^ Splat8(0x80); });
    const auto part = [&](auto k, int i) ZR_ALWAYS { return tables[k]->Both(i, low.v[k], high.v[k]); };
    Vectors<n> found = ForEach<n>([&](auto k) ZR_ALWAYS { return part(k, 0); });
    for (int i = 1; i < kHalf; ++i)
      Unrolled<n>([&](auto k) ZR_ALWAYS {
        low.v[k] = Minus16(low.v[k]);
        high.v[k] = Minus16(high.v[k]);
        found.v[k] ^= part(k, i);
      });
    return found;
  }

  /// Some tables of one vector.
  template <std::size_t count, int n = static_cast<int>(count)>
  static ZR_INLINE Vectors<n> Find(const Lookup* const (&tables)[count], U8 x) {
    U8 low = x, high = x ^ Splat8(0x80);
    const auto part = [&](auto k, int i) ZR_ALWAYS { return tables[k]->Both(i, low, high); };
    Vectors<n> found = ForEach<n>([&](auto k) ZR_ALWAYS { return part(k, 0); });
    for (int i = 1; i < kHalf; ++i) {
      low = Minus16(low);
      high = Minus16(high);
      Unrolled<n>([&](auto k) ZR_ALWAYS { found.v[k] ^= part(k, i); });
    }
    return found;
  }

 private:
  using Lane [[gnu::vector_size(16)]] = std::uint8_t;
  static constexpr int kHalf = 8;  ///< parts of 128 entries, for signed indices

  /// What the parts at i and at kHalf + i contribute.
  ZR_INLINE U8 Both(int i, U8 low, U8 high) const {
    return ShuffleBytes(Part(i), low) ^ ShuffleBytes(Part(kHalf + i), high);
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
  ZR_INLINE void Set(const std::uint8_t* table) {
    for (int i = 0; i < 16; ++i) mPart[i] = Load(table + 16 * i);
  }

  ZR_INLINE U8 operator()(U8 x) const {
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
  ZR_INLINE void Set(const std::uint8_t* table) {
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
  ZR_INLINE void Set(const std::uint8_t* table) { mTable = table; }

  ZR_INLINE U8 operator()(U8 x) const {
    std::uint8_t bytes[kWidth];
    Store(bytes, x);
    for (std::uint8_t& byte : bytes) byte = mTable[byte];
    return Load(bytes);
  }

 private:
  const std::uint8_t* mTable;
};

#endif

#if (defined(__SSSE3__) && !defined(__AVX512VBMI__)) || defined(__wasm_simd128__)
#define ZR_STRAIGHT_TABLES 1

/// Sixteen bytes in each lane.
ZR_INLINE U8 LoadLanes(const void* p) {
#if defined(__AVX2__)
  return As<U8>(_mm256_broadcastsi128_si256(_mm_load_si128(static_cast<const __m128i*>(p))));
#else
  return Load(static_cast<const std::uint8_t*>(p));
#endif
}

/// The two parts of bytes by which straight tables are computed.
struct Nibbles {
  U8 high, low;

  explicit ZR_INLINE Nibbles(U8 x) : high(As<U8>(As<U16>(x) >> 4) & Splat8(0x0F)), low(x & Splat8(0x0F)) {}
};

/// The entries of a straight table.
ZR_INLINE U8 EntriesOf(const StraightTable& table, const Nibbles& x) {
  using S8 [[gnu::vector_size(kWidth)]] = std::int8_t;
  const auto of = [](const auto& part, U8 index) ZR_ALWAYS { return ShuffleBytes(LoadLanes(part), index); };
  const U8 oneMore = As<U8>(As<S8>(of(table.fraction, x.low)) > As<S8>(of(table.threshold, x.high)));
  const U8 rise = of(table.rise, x.low) - oneMore;
  return AddClipped(SubtractClipped(rise, of(table.limit, x.high)), of(table.base, x.high));
}

#endif

/// On CPUs without AVX2 and in WebAssembly tables are not inlined: in the six filtered writers of every
/// reader they would take a megabyte.
#if defined(__AVX2__) || defined(__aarch64__)
#define ZR_TABLES ZR_INLINE
#else
#define ZR_TABLES [[gnu::noinline]]
#endif

/// Three tables, of red, green and blue.
class Lookups {
 public:
  explicit ZR_INLINE Lookups(const KernelArgs& args) : mStraight(args.straight) {
    if (!IsStraight())
      for (int i = 0; i < 3; ++i) mTables[i].Set(args.tables[i]);
  }

  /// The first table of all vectors.
  template <int n>
  ZR_TABLES Vectors<n> First(const Vectors<n>& x) const {
#if defined(ZR_STRAIGHT_TABLES)
    if (IsStraight())
      return ForEach<n>([&](auto i) ZR_ALWAYS { return EntriesOf(mStraight[0], Nibbles(x.v[i])); });
#endif
    return FirstByLookup(x);
  }

  /// A table each of three vectors.
  ZR_TABLES Vectors<3> Each(const Vectors<3>& x) const {
#if defined(ZR_STRAIGHT_TABLES)
    if (IsStraight())
      return ForEach<3>([&](auto i) ZR_ALWAYS { return EntriesOf(mStraight[i], Nibbles(x.v[i])); });
#endif
    return EachByLookup(x);
  }

  /// All tables of one vector.
  ZR_TABLES Vectors<3> All(U8 x) const {
#if defined(ZR_STRAIGHT_TABLES)
    if (IsStraight()) {
      const Nibbles parts(x);
      return ForEach<3>([&](auto i) ZR_ALWAYS { return EntriesOf(mStraight[i], parts); });
    }
#endif
    return AllByLookup(x);
  }

 private:
  ZR_INLINE bool IsStraight() const {
#if defined(ZR_STRAIGHT_TABLES)
    return mStraight != nullptr;
#else
    return false;
#endif
  }

  template <int n>
  ZR_INLINE Vectors<n> FirstByLookup(const Vectors<n>& x) const {
#if defined(ZR_DELTA_TABLES)
    const Lookup* const first = &mTables[0];
    if constexpr (n == 3) return Lookup::Find({first, first, first}, x);
    if constexpr (n == 4) {
      const Vectors<2> low = Lookup::Find({first, first}, Vectors<2>{{x.v[0], x.v[1]}});
      const Vectors<2> high = Lookup::Find({first, first}, Vectors<2>{{x.v[2], x.v[3]}});
      return {{low.v[0], low.v[1], high.v[0], high.v[1]}};
    }
#endif
    return ForEach<n>([&](auto i) ZR_ALWAYS { return mTables[0](x.v[i]); });
  }

  ZR_INLINE Vectors<3> EachByLookup(const Vectors<3>& x) const {
#if defined(ZR_DELTA_TABLES)
    return Lookup::Find({&mTables[0], &mTables[1], &mTables[2]}, x);
#else
    return ForEach<3>([&](auto i) ZR_ALWAYS { return mTables[i](x.v[i]); });
#endif
  }

  ZR_INLINE Vectors<3> AllByLookup(U8 x) const {
#if defined(ZR_DELTA_TABLES)
    return Lookup::Find({&mTables[0], &mTables[1], &mTables[2]}, x);
#else
    return ForEach<3>([&](auto i) ZR_ALWAYS { return mTables[i](x); });
#endif
  }

  [[maybe_unused]] const StraightTable* mStraight;
  Lookup mTables[3];
};

}  // namespace
}  // namespace ZrConvertersLib::simd
