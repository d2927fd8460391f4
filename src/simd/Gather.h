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
  static constexpr int kLanes = kWidth / kLane, kMostLoads = kLane == 64 ? 3 : 2;
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

  /// The loads in the order of their places, and what byte i of the vector is in the load that gives it.
  struct Plan {
    int loads = 0;
    Places at[kMostLoads]{};
    std::uint8_t index[kMostLoads][kWidth]{};
    bool complete = true;

    constexpr bool Gives(int load, int i) const { return index[load][i] != kNone; }
  };

  /// Plans `count` loads; each begins at the latest with the first byte that those before it do not give.
  static constexpr Plan Try(int count) {
    Plan plan;
    bool given[kWidth]{};
    for (int i = 0; i < kWidth; ++i) given[i] = Map::At(i) < 0;
    for (; plan.loads < count; ++plan.loads) {
      Range free[kLanes]{};
      for (int lane = 0; lane < kLanes; ++lane) {
        int first = Map::kBytes, last = -1;
        for (int i = lane * kLane; i < (lane + 1) * kLane; ++i) {
          if (given[i]) continue;
          first = Map::At(i) < first ? Map::At(i) : first;
          last = Map::At(i) > last ? Map::At(i) : last;
        }
        const int reach = last + 1 - (count - plan.loads) * kLane, limit = Map::kBytes - kLane;
        free[lane] = {reach > 0 ? reach : 0, first < limit ? first : limit};
        if (last < 0) free[lane] = {0, limit};
        if (free[lane].first < first + 1 - kLane) free[lane].first = first + 1 - kLane;
        if (free[lane].first > free[lane].last) free[lane].first = free[lane].last;
      }
      const Places places = plan.at[plan.loads] = Choose(free);
      for (int i = 0; i < kWidth; ++i) {
        const int within = Map::At(i) - places.of[i / kLane];
        const bool gives = !given[i] && within >= 0 && within < kLane;
        plan.index[plan.loads][i] = gives ? static_cast<std::uint8_t>(within) : kNone;
        given[i] = given[i] || gives;
      }
    }
    for (const bool one : given) plan.complete = plan.complete && one;
    return plan;
  }

  /// Loads of whole vectors one after another, which the vectors of a block share: where a vector is as long
  /// as a cache line, most other loads would cross one.
  static constexpr Plan Line() {
    Plan plan;
    int first = Map::kBytes;
    for (int i = 0; i < kWidth; ++i)
      if (Map::At(i) >= 0 && Map::At(i) < first) first = Map::At(i);
    for (int i = 0; i < kWidth; ++i) {
      for (int load = 0; load < kMostLoads; ++load) {
        plan.at[load].of[0] = (first / kWidth + load) * kWidth;
        const int within = Map::At(i) - plan.at[load].of[0];
        const bool gives = within >= 0 && within < kWidth;
        plan.index[load][i] = gives ? static_cast<std::uint8_t>(within) : kNone;
        if (gives && load >= plan.loads) plan.loads = load + 1;
      }
      plan.complete = plan.complete && Map::At(i) < (first / kWidth + kMostLoads) * kWidth;
    }
    return plan;
  }

  static constexpr Plan kPlan = Try(1).complete ? Try(1) : kLane == 64 ? Line() : Try(kMostLoads);
  static constexpr bool kPossible = kPlan.complete;

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
    const auto lane = [&](int i) ZR_ALWAYS {
      return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + places.of[i]));
    };
    if constexpr (places.of[1] == places.of[0] + kLane)
      return Load(p + places.of[0]);
    else if constexpr (places.of[1] == places.of[0])
      return As<U8>(_mm256_broadcastsi128_si256(lane(0)));
    else
      return As<U8>(_mm256_set_m128i(lane(1), lane(0)));
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
    const auto index = As<Native>(Constant<Index<load>>::Get());
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
    return before | ShuffleBytes(x, Constant<Index<load>>::Get());
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
  return Gathering<Map>::Get(p);
}
#endif

}  // namespace
}  // namespace ZrConvertersLib::simd
