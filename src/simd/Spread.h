#pragma once

#include "simd/Vec.h"

/// Groups of up to 8 bytes spread to 8 bytes each: what the readers of packed lines begin with.

namespace ZrConvertersLib::simd {
namespace {

/// Map::kBytes is the size of a group; byte j of its Map::kResult result bytes is byte Map::At(j) of the
/// group, or 0 where that is negative. A vector takes kWidth / kResult groups from p; up to kOverread bytes
/// beyond them are read (and not used). With AVX2 the groups of the second lane may lie further on: `apart`
/// times the bytes of a lane after those of the first. LoadGroups and Index are the two steps of Read, for
/// callers that choose between several maps of groups of one size.
template <class Map>
struct Spread {
  static constexpr int kGroup = Map::kBytes, kResult = Map::kResult;
  static constexpr int kTaken = kGroup * kWidth / kResult;

  /// Result byte -> byte counted from the first of `perLane` groups that lie one after another.
  struct FromGroups {
    static constexpr int At(int i) {
      const int in = Map::At(i % kResult);
      return in < 0 ? -1 : i / kResult * kGroup + in;
    }
  };

#if defined(__AVX512VBMI__)
  static constexpr int kOverread = 0;

  static ZR_INLINE U8 LoadGroups(const std::uint8_t* p) {
    constexpr std::uint64_t kMask = ~std::uint64_t{0} >> (kWidth - kTaken);
    return As<U8>(_mm512_maskz_loadu_epi8(kMask, p));
  }
  static ZR_INLINE U8 Index() {
    return Constant<FromGroups>::Get();
  }

  template <int apart = 1>
  static ZR_INLINE U8 Read(const std::uint8_t* p) {
    static_assert(apart == 1);
    return ShuffleLanes<FromGroups>(LoadGroups(p));
  }
#elif defined(__x86_64__) && !defined(__SSSE3__)
  static constexpr int kLoad = kGroup > 4 ? 8 : kGroup;
  static constexpr int kOverread = kLoad - kGroup;

  /// Moves bytes within 64-bit groups; those that move by the same distance do so in one shift.
  template <int distance>
  static ZR_INLINE U64 Move(U64 groups) {
    struct Mask {
      static constexpr int At(int i) {
        const int in = Map::At(i % kResult);
        return in >= 0 && i % 8 - in == distance ? 0xFF : 0;
      }
    };
    constexpr bool kUsed = [] {
      for (int i = 0; i < kWidth; ++i)
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

  template <int apart = 1>
  static ZR_INLINE U8 Read(const std::uint8_t* p) {
    static_assert(apart == 1);
    std::uint64_t first = 0, second = 0;
    std::memcpy(&first, p, kLoad);
    std::memcpy(&second, p + kGroup, kLoad);
    const U64 x = As<U64>(_mm_set_epi64x(static_cast<long long>(second), static_cast<long long>(first)));
    return As<U8>(Move<-7>(x) | Move<-6>(x) | Move<-5>(x) | Move<-4>(x) | Move<-3>(x) | Move<-2>(x) |
                  Move<-1>(x) | Move<0>(x) | Move<1>(x) | Move<2>(x) | Move<3>(x) | Move<4>(x) | Move<5>(x) |
                  Move<6>(x) | Move<7>(x));
  }
#else
  static constexpr int kPerLane = kGroup * 16 / kResult;  ///< bytes that a lane of 16 result bytes takes
  static constexpr int kLoad = kPerLane > 8 ? 16 : kPerLane > 4 ? 8 : kPerLane;
#if defined(__AVX2__)
  static constexpr int kOverread = 0;
#else
  static constexpr int kOverread = kLoad - kPerLane;
#endif

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

#if defined(__AVX2__)
  /// The second lane is loaded so that it ends with its groups, so that nothing behind them is read.
  struct FromLanes {
    static constexpr int At(int i) {
      const int from = FromGroups::At(i % 16);
      return from < 0 ? 0xFF : i < 16 ? from : from + kLoad - kPerLane;
    }
  };

  template <int apart = 1>
  static ZR_INLINE U8 LoadGroups(const std::uint8_t* p) {
    const Lane low = ReadLane(p), high = ReadLane(p + (apart + 1) * kPerLane - kLoad);
    return As<U8>(_mm256_set_m128i(As<__m128i>(high), As<__m128i>(low)));
  }
  static ZR_INLINE U8 Index() {
    return Constant<FromLanes>::Get();
  }

  template <int apart = 1>
  static ZR_INLINE U8 Read(const std::uint8_t* p) {
    return ShuffleBytes(LoadGroups<apart>(p), Index());
  }
#else
  template <int apart = 1>
  static ZR_INLINE U8 Read(const std::uint8_t* p) {
    static_assert(apart == 1);
    return ShuffleLanes<FromGroups>(As<U8>(ReadLane(p)));
  }
#endif
#endif
};

}  // namespace
}  // namespace ZrConvertersLib::simd
