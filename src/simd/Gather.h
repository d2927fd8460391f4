#pragma once

#include "simd/Vec.h"

/// Bytes gathered from memory, where from is known when this is compiled.

namespace ZrConvertersLib::simd {
namespace {

#if defined(__x86_64__) && !defined(__SSSE3__)
/// Without a shuffle of bytes there is no Gather.
inline constexpr bool kGathers = false;

template <class Map>
struct Gathering;
template <class Map>
U8 Gather(const std::uint8_t* p);
#else
inline constexpr bool kGathers = true;

/// Byte i of the vector is byte Map::At(i) from p, or 0 where that is negative; Map::kBytes, at least a lane,
/// is how many bytes from p on may be read. A lane of the vector is shuffled from one load of a lane of
/// memory, or from more where its bytes lie further apart.
template <class Map>
struct Gathering {
  static constexpr int kLanes = kWidth / kLane, kMostLoads = 3;
  static constexpr std::uint8_t kNone = 0xFF;  ///< index of a byte that a load does not give

  /// Where one load of each lane begins, and the places it is free to choose from.
  struct Places {
    int of[kLanes];
  };
  struct Range {
    int first, last;

    constexpr bool Has(int place) const { return first <= place && place <= last; }
  };

  /// Lanes that follow one another in memory take one load, and so do equal ones.
  static constexpr Places Choose(const Range (&free)[kLanes]) {
    Places places{};
    for (int lane = 0; lane < kLanes; ++lane) places.of[lane] = free[lane].last;
    if constexpr (kLanes == 2) {
      for (int place = free[0].first; place <= free[0].last; ++place)
        if (free[1].Has(place)) places = {{place, place}};
      for (int place = free[0].first; place <= free[0].last; ++place)
        if (free[1].Has(place + kLane)) places = {{place, place + kLane}};
    }
    return places;
  }

  /// Loads, and what byte i of the vector is in the load that gives it.
  struct Plan {
    int loads = 0;
    Places at[kMostLoads]{};
    std::uint8_t index[kMostLoads][kWidth]{};
    bool given[kWidth]{};
    int missing = 0;  ///< bytes not given

    constexpr Plan() {
      for (int i = 0; i < kWidth; ++i) {
        given[i] = Map::At(i) < 0;
        missing += given[i] ? 0 : 1;
      }
    }

    constexpr void Add(const Places& places) {
      for (int i = 0; i < kWidth; ++i) {
        const int within = Map::At(i) - places.of[i / kLane];
        const bool gives = !given[i] && within >= 0 && within < kLane;
        index[loads][i] = gives ? static_cast<std::uint8_t>(within) : kNone;
        given[i] = given[i] || gives;
        missing -= gives ? 1 : 0;
      }
      at[loads++] = places;
    }

    constexpr bool Gives(int load, int i) const { return index[load][i] != kNone; }

    constexpr bool IsComplete() const { return missing == 0; }
  };

  /// The first and the last byte of memory that a lane still needs; none if they are the other way round.
  static constexpr Range Missing(const Plan& plan, int lane) {
    Range missing{Map::kBytes, -1};
    for (int i = lane * kLane; i < (lane + 1) * kLane; ++i) {
      if (plan.given[i]) continue;
      missing.first = Map::At(i) < missing.first ? Map::At(i) : missing.first;
      missing.last = Map::At(i) > missing.last ? Map::At(i) : missing.last;
    }
    return missing;
  }

  /// Where the first of `left` more loads of a lane may begin: not after the first byte that it needs, and so
  /// that those left reach the last one.
  static constexpr Range Free(const Range& missing, int left) {
    constexpr int kLimit = Map::kBytes - kLane;
    if (missing.last < 0) return {0, kLimit};
    const int last = missing.first < kLimit ? missing.first : kLimit;
    int first = missing.first + 1 - kLane;
    if (first < missing.last + 1 - left * kLane) first = missing.last + 1 - left * kLane;
    if (first < 0) first = 0;
    return {first < last ? first : last, last};
  }

  static constexpr Plan Try(int count) {
    Plan plan;
    while (plan.loads < count) {
      Range free[kLanes]{};
      for (int lane = 0; lane < kLanes; ++lane) free[lane] = Free(Missing(plan, lane), count - plan.loads);
      plan.Add(Choose(free));
    }
    return plan;
  }

  /// Loads of whole vectors one after another, which the vectors of a block share: where a vector is as long
  /// as a cache line, most other loads would cross one.
  static constexpr Plan WholeVectors() {
    Plan plan;
    const int first = Missing(plan, 0).first / kWidth * kWidth;
    while (plan.loads < kMostLoads && !plan.IsComplete()) {
      const int next = first + plan.loads * kWidth, last = Map::kBytes - kWidth;
      plan.Add({{next < last ? next : last}});
    }
    return plan;
  }

  static constexpr Plan Best() {
    if (Try(1).IsComplete()) return Try(1);
    if (kLane == 64) return WholeVectors();
    return Try(2).IsComplete() ? Try(2) : Try(kMostLoads);
  }

  static constexpr Plan kPlan = Best();
  static constexpr bool kPossible = kPlan.IsComplete();

  static constexpr bool kAsInMemory = [] {
    for (int i = 0; i < kWidth; ++i)
      if (Map::At(i) != Map::At(0) + i) return false;
    return true;
  }();

  template <int load>
  struct Index {
    static constexpr int At(int i) { return kPlan.index[load][i]; }
  };

  template <int load>
  static ZR_INLINE U8 LoadLanes(const std::uint8_t* p) {
    constexpr Places places = kPlan.at[load];
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
    if constexpr (places.of[1] == places.of[0] + kLane)
      return Load(p + places.of[0]);
    else if constexpr (places.of[1] == places.of[0])
      return As<U8>(
          _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p + places.of[0]))));
    else
      return simd::LoadLanes(p + places.of[0], p + places.of[1]);
#else
    return Load(p + places.of[0]);
#endif
  }

  /// The bytes that a load gives, added to those of the loads before it.
  template <int load>
  static ZR_INLINE U8 Add(U8 before, const std::uint8_t* p) {
    const U8 x = LoadLanes<load>(p);
#if defined(__AVX512VBMI__)
    constexpr std::uint64_t kGiven = [] {
      std::uint64_t bits = 0;
      for (int i = 0; i < kWidth; ++i) bits |= static_cast<std::uint64_t>(kPlan.Gives(load, i)) << i;
      return bits;
    }();
    const auto index = As<Native>(Constant<Index<load> >::Get());
    if constexpr (kGiven == ~std::uint64_t{0})
      return As<U8>(_mm512_permutexvar_epi8(index, As<Native>(x)));
    else
      return As<U8>(_mm512_mask_permutexvar_epi8(As<Native>(before), kGiven, index, As<Native>(x)));
#elif defined(__wasm_simd128__)
    struct OrBefore {
      static constexpr int At(int i) { return kPlan.Gives(load, i) ? Index<load>::At(i) : kWidth + i; }
    };
    return ShuffleTwo<OrBefore>(x, before);
#else
    return before | ShuffleBytes(x, Constant<Index<load> >::Get());
#endif
  }

  static ZR_INLINE U8 Get(const std::uint8_t* p) {
    if constexpr (kAsInMemory) {
      return Load(p + Map::At(0));
    } else {
      U8 x = Add<0>(U8{}, p);
      if constexpr (kPlan.loads > 1) x = Add<1>(x, p);
      if constexpr (kPlan.loads > 2) x = Add<2>(x, p);
      return x;
    }
  }
};

template <class Map>
ZR_INLINE U8 Gather(const std::uint8_t* p) {
  static_assert(Gathering<Map>::kPossible);
  return Gathering<Map>::Get(p);
}
#endif

}  // namespace
}  // namespace ZrConvertersLib::simd
