#pragma once

#include "simd/Vec.h"

/// Packed groups of up to 8 bytes spread to 8 bytes each: what the readers of bit-packed lines begin with.

namespace ZrConvertersLib::simd {
namespace {

/// Map::kBytes is the size of a group; byte j of its 8 result bytes is byte Map::At(j) of the group.
/// A vector takes kWidth / 8 groups from p; up to kOverread bytes beyond them are read (and not used).
template <class Map>
struct Spread {
  static constexpr int kGroup = Map::kBytes;
  static constexpr int kTaken = kGroup * kWidth / 8;

#if defined(__AVX512VBMI__)
  static constexpr int kOverread = 0;

  static ZR_INLINE U8 Read(const std::uint8_t* p) {
    struct Whole {
      static constexpr int At(int i) { return Map::At(i % 8) < 0 ? -1 : i / 8 * kGroup + Map::At(i % 8); }
    };
    constexpr std::uint64_t kMask = ~std::uint64_t{0} >> (kWidth - kTaken);
    return ShuffleLanes<Whole>(As<U8>(_mm512_maskz_loadu_epi8(kMask, p)));
  }
#elif defined(__x86_64__) && !defined(__SSSE3__)
  static constexpr int kLoad = kGroup > 4 ? 8 : kGroup;
  static constexpr int kOverread = kLoad - kGroup;

  /// Bytes that move by the same distance do so in one shift of the 64-bit groups.
  template <int distance>
  static ZR_INLINE U64 Move(U64 groups) {
    struct Mask {
      static constexpr int At(int i) {
        return Map::At(i % 8) >= 0 && i % 8 - Map::At(i % 8) == distance ? 0xFF : 0;
      }
    };
    constexpr bool kUsed = [] {
      for (int i = 0; i < 8; ++i)
        if (Mask::At(i) != 0) return true;
      return false;
    }();
    if constexpr (!kUsed)
      return U64{};
    else if constexpr (distance >= 0)
      return (groups << (8 * distance)) & As<U64>(Constant<Mask>::Get());
    else
      return (groups >> (-8 * distance)) & As<U64>(Constant<Mask>::Get());
  }

  static ZR_INLINE U8 Read(const std::uint8_t* p) {
    std::uint64_t first = 0, second = 0;
    std::memcpy(&first, p, kLoad);
    std::memcpy(&second, p + kGroup, kLoad);
    const U64 x = As<U64>(_mm_set_epi64x(static_cast<long long>(second), static_cast<long long>(first)));
    return As<U8>(Move<-4>(x) | Move<-3>(x) | Move<-2>(x) | Move<-1>(x) | Move<0>(x) | Move<1>(x) |
                  Move<2>(x) | Move<3>(x) | Move<4>(x) | Move<5>(x) | Move<6>(x) | Move<7>(x));
  }
#else
  static constexpr int kLoad = kGroup > 4 ? 16 : 2 * kGroup;  ///< two groups a lane of 16 bytes
  static constexpr int kOverread = kLoad - 2 * kGroup;

  using Lane [[gnu::vector_size(16)]] = std::uint8_t;

  static ZR_INLINE Lane ReadLane(const std::uint8_t* p) {
    if constexpr (kLoad == 16) {
      Lane lane;
      std::memcpy(&lane, p, sizeof lane);
      return lane;
    } else {
      using Wide [[gnu::vector_size(16)]] = std::uint64_t;
      std::uint64_t bytes = 0;
      std::memcpy(&bytes, p, kLoad);
      return As<Lane>(Wide{bytes, 0});
    }
  }

  static ZR_INLINE U8 Read(const std::uint8_t* p) {
    struct InLane {
      static constexpr int At(int i) { return Map::At(i % 8) < 0 ? -1 : i / 8 * kGroup + Map::At(i % 8); }
    };
#if defined(__AVX2__)
    const Native x = _mm256_set_m128i(As<__m128i>(ReadLane(p + 2 * kGroup)), As<__m128i>(ReadLane(p)));
    return ShuffleLanes<InLane>(As<U8>(x));
#else
    return ShuffleLanes<InLane>(As<U8>(ReadLane(p)));
#endif
  }
#endif
};

}  // namespace
}  // namespace ZrConvertersLib::simd
