#pragma once

#include "simd/Vec.h"

/// Interleaved pixels in memory to one vector a channel, and back. An element is 1 or 2 bytes.

namespace ZrConvertersLib::simd {
namespace {

template <int n>
struct Vectors {
  U8 v[static_cast<unsigned>(n)];
};

/// Vectors{f(0), f(1), ...} with the numbers as compile-time constants.
template <int n, class F>
ZR_INLINE Vectors<n> ForEach(F f) {
  return [&]<int... i>(std::integer_sequence<int, i...>) ZR_ALWAYS {
    return Vectors<n>{{f(std::integral_constant<int, i>{})...}};
  }
  (std::make_integer_sequence<int, n>{});
}

template <int n>
ZR_INLINE Vectors<n> LoadVectors(const std::uint8_t* p) {
  return ForEach<n>([&](auto i) ZR_ALWAYS { return Load(p + i * kWidth); });
}

template <int n>
ZR_INLINE void StoreVectors(std::uint8_t* p, const Vectors<n>& x) {
  Unrolled<n>([&](auto i) ZR_ALWAYS { Store(p + i * kWidth, x.v[i]); });
}

/// Three channels. A group of pixels is three lanes of memory. Since 3 does not divide the elements of a
/// lane, the elements of one channel stand at different positions in the three lanes: blending the lanes
/// gathers the whole channel, and one shuffle puts it in order. Storing is the same backwards.
template <int size, int channel>
struct ChannelOf3 {
  static constexpr int kElements = kLane / size;

  static constexpr int Element(int byte) { return byte % kLane / size; }

  /// True where this byte of memory lane `part` belongs to the channel.
  template <int part>
  struct In {
    static constexpr bool At(int byte) { return (kElements * part + Element(byte)) % 3 == channel; }
  };

  /// Position in the blended lanes -> element of the channel.
  struct Scatter {
    static constexpr int At(int byte) {
      for (int part = 0; part < 3; ++part) {
        const int at = kElements * part + Element(byte);
        if (at % 3 == channel) return at / 3 * size + byte % size;
      }
      return -1;
    }
  };

  /// Element of the channel -> position in the blended lanes.
  struct Gather {
    static constexpr int At(int byte) {
      return (3 * Element(byte) + channel) % kElements * size + byte % size;
    }
  };
};

#if defined(__AVX2__) && !defined(__AVX512VBMI__)
/// From three vectors as in memory to vectors k that hold lane k of each of the two groups.
ZR_INLINE Vectors<3> Lanes3(const Vectors<3>& m) {
  const auto m0 = As<Native>(m.v[0]), m1 = As<Native>(m.v[1]), m2 = As<Native>(m.v[2]);
  return {{As<U8>(_mm256_blend_epi32(m0, m1, 0xF0)), As<U8>(_mm256_permute2x128_si256(m0, m2, 0x21)),
           As<U8>(_mm256_blend_epi32(m1, m2, 0xF0))}};
}

ZR_INLINE void StoreLanes3(std::uint8_t* p, const Vectors<3>& x) {
  const auto t0 = As<Native>(x.v[0]), t1 = As<Native>(x.v[1]), t2 = As<Native>(x.v[2]);
  Store(p, _mm256_permute2x128_si256(t0, t1, 0x20));
  Store(p + kWidth, _mm256_blend_epi32(t2, t0, 0xF0));
  Store(p + 2 * kWidth, _mm256_permute2x128_si256(t1, t2, 0x31));
}
#else
ZR_INLINE const Vectors<3>& Lanes3(const Vectors<3>& m) {
  return m;
}

ZR_INLINE void StoreLanes3(std::uint8_t* p, const Vectors<3>& x) {
  StoreVectors(p, x);
}
#endif

#if defined(__SSE4_1__)
/// Where Mask::At(i) is true the word of byte i of b, else of a; Mask is the same for both bytes of a word
/// and in all lanes.
template <class Mask>
ZR_INLINE U8 BlendWords(U8 a, U8 b) {
  constexpr int kBits = [] {
    int bits = 0;
    for (int i = 0; i < 8; ++i) bits |= Mask::At(2 * i) ? 1 << i : 0;
    return bits;
  }();
#if defined(__AVX512VBMI__)
  return As<U8>(_mm512_mask_blend_epi16(0x01010101U * unsigned{kBits}, As<Native>(a), As<Native>(b)));
#elif defined(__AVX2__)
  return As<U8>(_mm256_blend_epi16(As<Native>(a), As<Native>(b), kBits));
#else
  return As<U8>(_mm_blend_epi16(As<Native>(a), As<Native>(b), kBits));
#endif
}
#endif

#if defined(__SSE4_1__) && !defined(__AVX512VBMI__)
/// Whether the two bytes of each word go to the same vector.
template <template <int, int> class Goes>
inline constexpr bool kGoesByWords = [] {
  for (int i = 0; i < kWidth; i += 2)
    if (Goes<1, 0>::At(i) != Goes<1, 0>::At(i + 1) || Goes<2, 0>::At(i) != Goes<2, 0>::At(i + 1))
      return false;
  return true;
}();
#endif

/// Vector `to` of the result has byte i of vector `from` where Goes<from, to>::At(i) is true. A byte of every
/// vector goes to each.
template <template <int, int> class Goes>
ZR_INLINE Vectors<3> Distribute(const Vectors<3>& x) {
#if defined(__SSE4_1__) && !defined(__AVX512VBMI__)
  // A constant selection of words takes one operation.
  if constexpr (kGoesByWords<Goes>)
    return ForEach<3>([&](auto to) ZR_ALWAYS {
      return BlendWords<Goes<2, to>>(BlendWords<Goes<1, to>>(x.v[0], x.v[1]), x.v[2]);
    });
#endif
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
  // Byte blends take up to three operations with AVX2. What the third vector has is what the others leave.
  const U8 to1 = x.v[0] ^ x.v[1], to2 = x.v[0] ^ x.v[2];
  const auto chosen = [&](auto to) ZR_ALWAYS {
    return x.v[0] ^ (to1 & Where<Goes<1, to>>()) ^ (to2 & Where<Goes<2, to>>());
  };
  const U8 first = chosen(std::integral_constant<int, 0>{}),
           second = chosen(std::integral_constant<int, 1>{});
  return {{first, second, first ^ second ^ to1 ^ x.v[2]}};
#else
  return ForEach<3>([&](auto to)
                        ZR_ALWAYS { return Blend<Goes<2, to>>(Blend<Goes<1, to>>(x.v[0], x.v[1]), x.v[2]); });
#endif
}

#if defined(__x86_64__) && !defined(__SSSE3__)

/// Without a byte shuffle: element p of 3n goes to 2p mod (3n - 1), by interleaving the two halves. Doing so
/// log2(n) times takes 3i + c to i + nc, which is the de-interleaving, because n * 3n = n mod (3n - 1).
template <int size>
ZR_INLINE Vectors<3> Riffle(const Vectors<3>& x) {
  const U8 high0 = UnpackHigh64(x.v[0], x.v[0]), high1 = UnpackHigh64(x.v[1], x.v[1]);
  const U8 high2 = UnpackHigh64(x.v[2], x.v[2]);
  if constexpr (size == 1)
    return {{UnpackLow8(x.v[0], high1), UnpackLow8(high0, x.v[2]), UnpackLow8(x.v[1], high2)}};
  else
    return {{UnpackLow16(x.v[0], high1), UnpackLow16(high0, x.v[2]), UnpackLow16(x.v[1], high2)}};
}

/// Even elements of a, then of b.
template <int size>
ZR_INLINE U8 Evens(U8 a, U8 b) {
  if constexpr (size == 1)
    return PackClipped(As<S16>(As<U16>(a) & Splat16(0xFF)), As<S16>(As<U16>(b) & Splat16(0xFF)));
  else
    return As<U8>(_mm_packs_epi32(As<Native>(As<S32>(As<U32>(a) << 16) >> 16),
                                  As<Native>(As<S32>(As<U32>(b) << 16) >> 16)));
}

template <int size>
ZR_INLINE U8 Odds(U8 a, U8 b) {
  if constexpr (size == 1)
    return PackClipped(As<S16>(As<U16>(a) >> 8), As<S16>(As<U16>(b) >> 8));
  else
    return As<U8>(_mm_packs_epi32(As<Native>(As<S32>(a) >> 16), As<Native>(As<S32>(b) >> 16)));
}

/// The inverse of Riffle: all even elements, then all odd ones.
template <int size>
ZR_INLINE Vectors<3> Unriffle(const Vectors<3>& x) {
  const U8 even2 = Evens<size>(x.v[2], x.v[2]), odd0 = Odds<size>(x.v[0], x.v[0]);
  return {{Evens<size>(x.v[0], x.v[1]), UnpackLow64(even2, odd0), Odds<size>(x.v[1], x.v[2])}};
}

template <int size>
ZR_INLINE Vectors<3> Deinterleave3(Vectors<3> x) {
  for (int step = size; step < kLane; step *= 2) x = Riffle<size>(x);
  return x;
}

template <int size>
ZR_INLINE void Store3(std::uint8_t* p, Vectors<3> x) {
  for (int step = size; step < kLane; step *= 2) x = Unriffle<size>(x);
  StoreLanes3(p, x);
}

#else

template <int size>
struct Of3 {
  template <int part, int channel>
  using ToChannel = typename ChannelOf3<size, channel>::template In<part>;
  template <int channel, int part>
  using ToPart = typename ChannelOf3<size, channel>::template In<part>;
};

template <int size>
ZR_INLINE Vectors<3> Deinterleave3(const Vectors<3>& memory) {
  const Vectors<3> x = Distribute<Of3<size>::template ToChannel>(Lanes3(memory));
  return ForEach<3>([&](auto channel) ZR_ALWAYS {
    return ShuffleLanes<typename ChannelOf3<size, channel>::Gather>(x.v[channel]);
  });
}

template <int size>
ZR_INLINE void Store3(std::uint8_t* p, const Vectors<3>& x) {
  const Vectors<3> s = ForEach<3>([&](auto channel) ZR_ALWAYS {
    return ShuffleLanes<typename ChannelOf3<size, channel>::Scatter>(x.v[channel]);
  });
  StoreLanes3(p, Distribute<Of3<size>::template ToPart>(s));
}

#endif

#if defined(__AVX2__) && !defined(__AVX512VBMI__)
/// Dwords of a where `mask` has 0 in each lane, of b where it has 1.
template <int mask>
ZR_INLINE U8 BlendDwords(U8 a, U8 b) {
  return As<U8>(_mm256_blend_epi32(As<Native>(a), As<Native>(b), mask * 0x11));
}

/// Each lane of vector k has a dword of channel c at place (k + c) % 4. The result is a vector a channel:
/// there the dword of vector k of channel c is at place (k + c) % 4 of the lane, too.
ZR_INLINE Vectors<3> TransposeRotated(const Vectors<4>& x) {
  const U8 even = BlendDwords<0b1100>(x.v[0], x.v[2]), third = BlendDwords<0b0011>(x.v[0], x.v[2]);
  const U8 odd = BlendDwords<0b1001>(x.v[1], x.v[3]), thirdOdd = BlendDwords<0b0010>(x.v[1], x.v[3]);
  return {
      {BlendDwords<0b1010>(even, odd), BlendDwords<0b0101>(even, odd), BlendDwords<0b1010>(third, thirdOdd)}};
}

/// The inverse, where all dwords of the fourth channel are equal.
ZR_INLINE Vectors<4> TransposeRotated(const Vectors<3>& x, U8 fourth) {
  const U8 even = BlendDwords<0b1010>(x.v[0], x.v[1]), odd = BlendDwords<0b0101>(x.v[0], x.v[1]);
  const U8 thirdEven = BlendDwords<0b1010>(x.v[2], fourth), thirdOdd = BlendDwords<0b0101>(x.v[2], fourth);
  return {{BlendDwords<0b1100>(even, thirdEven), BlendDwords<0b1001>(odd, thirdOdd),
           BlendDwords<0b0011>(even, thirdEven), BlendDwords<0b0110>(odd, thirdOdd)}};
}
#endif

/// Three equal channels.
#if defined(__x86_64__) && !defined(__SSSE3__)
template <int size>
ZR_INLINE void Store3Equal(std::uint8_t* p, U8 x) {
  Store3<size>(p, {{x, x, x}});
}
#else
/// Byte of memory lane `part` -> byte of the pixels.
template <int size>
constexpr int FromThird(int part, int byte) {
  return (kLane / size * part + byte % kLane / size) / 3 * size + byte % size;
}

#if defined(__AVX2__) && !defined(__AVX512VBMI__)
/// The same lane twice.
template <int lane>
ZR_INLINE U8 LaneTwice(U8 x) {
  return As<U8>(_mm256_permute4x64_epi64(As<Native>(x), lane == 0 ? 0x44 : 0xEE));
}

/// Byte of vector `vector` of memory -> byte of the lane that has the pixels.
template <int size, int vector>
struct Thrice {
  static constexpr int At(int i) { return FromThird<size>((2 * vector + i / kLane) % 3, i); }
};

template <int size>
ZR_INLINE void Store3Equal(std::uint8_t* p, U8 x) {
  Store(p, ShuffleBytes(LaneTwice<0>(x), Constant<Thrice<size, 0>>::Get()));
  Store(p + kWidth, ShuffleBytes(x, Constant<Thrice<size, 1>>::Get()));
  Store(p + 2 * kWidth, ShuffleBytes(LaneTwice<1>(x), Constant<Thrice<size, 2>>::Get()));
}
#else
template <int size, int part>
struct Thrice {
  static constexpr int At(int i) { return FromThird<size>(part, i); }
};

template <int size>
ZR_INLINE void Store3Equal(std::uint8_t* p, U8 x) {
  StoreLanes3(p, ForEach<3>([&](auto part) ZR_ALWAYS { return ShuffleLanes<Thrice<size, part>>(x); }));
}
#endif
#endif

/// Four channels: the first three of them; the fourth (alpha) is never used.
#if defined(__AVX512VBMI__)

/// Element of the channel -> position in one of the four vectors.
template <int size, int channel>
struct GatherFrom4 {
  static constexpr int At(int byte) { return (byte / size * 4 + channel) * size % kWidth + byte % size; }
};

template <int size>
ZR_INLINE Vectors<3> Deinterleave4(const Vectors<4>& m) {
  return ForEach<3>([&](auto channel) ZR_ALWAYS {
    const auto index = As<Native>(Constant<GatherFrom4<size, channel>>::Get());
    Native x = _mm512_permutexvar_epi8(index, As<Native>(m.v[0]));
    x = _mm512_mask_permutexvar_epi8(x, 0x00000000FFFF0000, index, As<Native>(m.v[1]));
    x = _mm512_mask_permutexvar_epi8(x, 0x0000FFFF00000000, index, As<Native>(m.v[2]));
    return As<U8>(_mm512_mask_permutexvar_epi8(x, 0xFFFF000000000000, index, As<Native>(m.v[3])));
  });
}

#elif defined(__x86_64__) && !defined(__SSSE3__)

/// As for three channels: element p of 4n goes to 2p mod (4n - 1), log2(n) times.
template <int size>
ZR_INLINE Vectors<4> Riffle(const Vectors<4>& x) {
  if constexpr (size == 1)
    return {{UnpackLow8(x.v[0], x.v[2]), UnpackHigh8(x.v[0], x.v[2]), UnpackLow8(x.v[1], x.v[3]),
             UnpackHigh8(x.v[1], x.v[3])}};
  else
    return {{UnpackLow16(x.v[0], x.v[2]), UnpackHigh16(x.v[0], x.v[2]), UnpackLow16(x.v[1], x.v[3]),
             UnpackHigh16(x.v[1], x.v[3])}};
}

template <int size>
ZR_INLINE Vectors<3> Deinterleave4(Vectors<4> x) {
  for (int step = size; step < kLane; step *= 2) x = Riffle<size>(x);
  return {{x.v[0], x.v[1], x.v[2]}};
}

#elif defined(__AVX2__)

/// Sorts a lane: 4 bytes of each channel in turn, from dword `first` on.
template <int size, int first>
struct SortBy4 {
  static constexpr int At(int i) { return (i % 4 / size * 4 + (i / 4 + 4 - first) % 4) * size + i % size; }
};

/// Natural order of what TransposeRotated gives, for channel `places`.
template <int places>
ZR_INLINE U8 JoinRotated(U8 x) {
  constexpr int a = places % 4, b = (places + 1) % 4, c = (places + 2) % 4, d = (places + 3) % 4;
  return As<U8>(
      _mm256_permutevar8x32_epi32(As<Native>(x), _mm256_setr_epi32(a, a + 4, b, b + 4, c, c + 4, d, d + 4)));
}

template <int size>
ZR_INLINE Vectors<3> Deinterleave4(const Vectors<4>& memory) {
  const Vectors<3> x = TransposeRotated(
      ForEach<4>([&](auto i) ZR_ALWAYS { return ShuffleLanes<SortBy4<size, i>>(memory.v[i]); }));
  return {{JoinRotated<0>(x.v[0]), JoinRotated<1>(x.v[1]), JoinRotated<2>(x.v[2])}};
}

#else

/// Sorts a lane: 4 bytes of each channel in turn.
template <int size>
struct SortBy4 {
  static constexpr int At(int i) { return (i % 4 / size * 4 + i / 4) * size + i % size; }
};

template <int size>
ZR_INLINE Vectors<3> Deinterleave4(const Vectors<4>& memory) {
  const Vectors<4> m = ForEach<4>([&](auto i) ZR_ALWAYS { return ShuffleLanes<SortBy4<size>>(memory.v[i]); });
  const U8 low01 = UnpackLow32(m.v[0], m.v[1]), low23 = UnpackLow32(m.v[2], m.v[3]);
  const U8 high01 = UnpackHigh32(m.v[0], m.v[1]), high23 = UnpackHigh32(m.v[2], m.v[3]);
  return {{JoinQuarters(UnpackLow64(low01, low23)), JoinQuarters(UnpackHigh64(low01, low23)),
           JoinQuarters(UnpackLow64(high01, high23))}};
}

#endif

#if defined(__AVX2__) && !defined(__AVX512VBMI__)

/// Dword 2k of natural order goes to place (k + places) % 4 of the first lane, the one after it of the
/// second.
template <int places>
ZR_INLINE U8 SpreadRotated(U8 x) {
  constexpr int a = (8 - 2 * places) % 8, b = (a + 2) % 8, c = (a + 4) % 8, d = (a + 6) % 8;
  return As<U8>(
      _mm256_permutevar8x32_epi32(As<Native>(x), _mm256_setr_epi32(a, b, c, d, a + 1, b + 1, c + 1, d + 1)));
}

/// Four dwords of channels, the first one at place `first`, to four pixels.
template <int first>
struct PixelsOf4 {
  static constexpr int At(int i) { return (first + i % 4) % 4 * 4 + i / 4; }
};

/// Three channels of bytes and a fourth that is 0xFF throughout.
ZR_INLINE void Store4(std::uint8_t* p, const Vectors<3>& x) {
  const Vectors<4> s = TransposeRotated(
      {{SpreadRotated<0>(x.v[0]), SpreadRotated<1>(x.v[1]), SpreadRotated<2>(x.v[2])}}, Splat8(0xFF));
  Unrolled<4>([&](auto i) ZR_ALWAYS { Store(p + i * kWidth, ShuffleLanes<PixelsOf4<i>>(s.v[i])); });
}

#else

/// Orders 32-bit elements so that unpacking twice within lanes gives natural order.
ZR_INLINE U8 SpreadQuarters(U8 x) {
#if defined(__AVX512VBMI__)
  const Native index = _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
  return As<U8>(_mm512_permutexvar_epi32(index, As<Native>(x)));
#else
  return x;
#endif
}

/// Three channels of bytes and a fourth that is 0xFF throughout.
ZR_INLINE void Store4(std::uint8_t* p, const Vectors<3>& x) {
  const U8 first = SpreadQuarters(x.v[0]), second = SpreadQuarters(x.v[1]), third = SpreadQuarters(x.v[2]);
  const U8 opaque = Splat8(0xFF);
  const U8 low01 = UnpackLow8(first, second), low23 = UnpackLow8(third, opaque);
  const U8 high01 = UnpackHigh8(first, second), high23 = UnpackHigh8(third, opaque);
  Store(p, UnpackLow16(low01, low23));
  Store(p + kWidth, UnpackHigh16(low01, low23));
  Store(p + 2 * kWidth, UnpackLow16(high01, high23));
  Store(p + 3 * kWidth, UnpackHigh16(high01, high23));
}

#endif

#if defined(__AVX512VBMI__)
/// Byte of vector `part` -> pixel.
template <int part>
struct FourTimes {
  static constexpr int At(int byte) { return (kWidth * part + byte) / 4; }
};

/// Three equal channels of bytes and a fourth that is 0xFF throughout.
ZR_INLINE void Store4Equal(std::uint8_t* p, U8 x) {
  const U8 opaque = As<U8>(Splat32(0xFF000000));
  StoreVectors(p, ForEach<4>([&](auto part) ZR_ALWAYS { return ShuffleLanes<FourTimes<part>>(x) | opaque; }));
}
#elif defined(__AVX2__)
/// Byte of an odd or even vector of memory -> byte of the lane that has the pixels.
template <int odd>
struct FourTimesOfLane {
  static constexpr int At(int i) { return 8 * odd + i / 4; }
};

ZR_INLINE void Store4Equal(std::uint8_t* p, U8 x) {
  const U8 opaque = As<U8>(Splat32(0xFF000000)), low = LaneTwice<0>(x), high = LaneTwice<1>(x);
  const U8 first = Constant<FourTimesOfLane<0>>::Get(), second = Constant<FourTimesOfLane<1>>::Get();
  Store(p, ShuffleBytes(low, first) | opaque);
  Store(p + kWidth, ShuffleBytes(low, second) | opaque);
  Store(p + 2 * kWidth, ShuffleBytes(high, first) | opaque);
  Store(p + 3 * kWidth, ShuffleBytes(high, second) | opaque);
}
#else
ZR_INLINE void Store4Equal(std::uint8_t* p, U8 x) {
  Store4(p, {{x, x, x}});
}
#endif

}  // namespace
}  // namespace ZrConvertersLib::simd
