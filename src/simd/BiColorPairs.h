#pragma once

#include "simd/BiColorSamples.h"

/// Pairs of two-colour pixels, to which the fast method gives one colour. A pair stays together as an element
/// of four samples, bytes or words: from there its colours are brought to their places in the destination
/// with fewer operations than from a vector a channel. All of this takes shuffles of bytes.

namespace ZrConvertersLib::simd {
namespace {

/// The places of the colours among the four samples of an element.
struct PairPlaces {
  unsigned red, green, blue;
};

/// Of samples in the order of memory, where the mean of both greens takes the place of the first one.
ZR_INLINE PairPlaces PlacesInMemory(const KernelArgs& args) {
  const unsigned green = args.greenFirst ? 0 : 1, red = 1 - green + (args.redAtEvenColumn ? 0 : 2);
  return {red, green, red ^ 2};
}

/// Puts the mean of both greens in the place of the first one.
class MeansOfWords {
 public:
  explicit ZR_INLINE MeansOfWords(const KernelArgs& args)
      : mFirst(As<U8>(U64{} + (args.greenFirst ? 0xFFFFU : 0xFFFF0000U))) {}

  ZR_INLINE Vectors<2> operator()(const Words& pairs) const { return {{In(pairs.a), In(pairs.b)}}; }

 private:
  ZR_INLINE U8 In(U16 pairs) const {
    return Select(mFirst, As<U8>(MeanUp(pairs, As<U16>(As<U64>(pairs) >> 32))), As<U8>(pairs));
  }

  U8 mFirst;
};

/// What reads pairs as samples of `size` bytes: two vectors of elements from kTaken bytes of a line.
template <class Samples, int size>
class Pairs;

/// As words of the 16-bit scale.
template <class Samples>
class Pairs<Samples, 2> {
 public:
  static constexpr int kTaken = Samples::kGroupBytes * kWidth / 4;

  explicit ZR_INLINE Pairs(const KernelArgs& args)
      : mSamples(args), mMeans(args), mPlaces(PlacesInMemory(args)) {}

  ZR_INLINE PairPlaces Places() const { return mPlaces; }
  ZR_INLINE Vectors<2> Read(const std::uint8_t* p) const { return mMeans(mSamples.Scaled(p)); }

 private:
  Samples mSamples;
  MeansOfWords mMeans;
  PairPlaces mPlaces;
};

/// Samples in bytes as bytes.
template <>
class Pairs<ByteSamples, 1> {
 public:
  static constexpr int kTaken = 2 * kWidth;

  explicit ZR_INLINE Pairs(const KernelArgs& args)
      : mFirst(As<U8>(Splat32(args.greenFirst ? 0xFF : 0xFF00))), mPlaces(PlacesInMemory(args)) {}

  ZR_INLINE PairPlaces Places() const { return mPlaces; }
  ZR_INLINE Vectors<2> Read(const std::uint8_t* p) const {
    return ForEach<2>([&](auto i) ZR_ALWAYS {
      const U8 pairs = Load(p + i * kWidth);
      return Select(mFirst, MeanOfBytes(pairs, As<U8>(As<U32>(pairs) >> 16)), pairs);
    });
  }

 private:
  U8 mFirst;
  PairPlaces mPlaces;
};

#if defined(__AVX2__)

/// Where samples of `bits` bits begin in the words of an element that is sorted: the colour of the first
/// pixel, that of the second one, which does not begin before it, and both greens. A shift of the greens
/// keeps them below bit 15, so that their words are positive.
struct SortedWords {
  unsigned bits, at[4], greenShift;
};

/// Brings sorted elements to bytes: a sum of products puts both colours side by side and adds the greens.
class SortedPairs {
 public:
  explicit ZR_INLINE SortedPairs(const SortedWords& words, const KernelArgs& args)
      : mShift(Element32(words.at[0] + words.bits - 8, words.greenShift)),
        mRed(args.redAtEvenColumn ? 0 : 1) {
    const unsigned all = (1U << words.bits) - 1, second = words.at[1] - words.at[0];
    const unsigned green = words.at[2] - words.greenShift, other = words.at[3] - words.greenShift;
    mKept = Element(0xFF, 0xFFU << second, all << green, all << other);
    mFactors =
        Element(1, 1U << (8 - second), 1U << (15 - words.bits - green), 1U << (15 - words.bits - other));
  }

  /// Both colours, the rest of the greens' mean and its upper byte.
  ZR_INLINE PairPlaces Places() const { return {mRed, 3, mRed ^ 1}; }

  /// Each lane of a, then of b.
  ZR_INLINE U8 Bytes(U8 a, U8 b) const {
    const auto low = As<Native>(Summed(a)), high = As<Native>(Summed(b));
#if defined(__AVX512VBMI__)
    return As<U8>(_mm512_packus_epi32(low, high));
#else
    return As<U8>(_mm256_packus_epi32(low, high));
#endif
  }

 private:
  static ZR_INLINE U64 Element32(std::uint64_t low, std::uint64_t high) {
    return U64{} + (low | high << 32);
  }
  static ZR_INLINE U64 Element(unsigned a, unsigned b, unsigned c, unsigned d) {
    return Element32(a | b << 16, c | d << 16);
  }

  /// In the lower word of each half of an element.
  ZR_INLINE S32 Summed(U8 sorted) const {
#if defined(__AVX512VBMI__)
    const auto shifted = _mm512_srlv_epi32(As<Native>(sorted), As<Native>(mShift));
#else
    const auto shifted = _mm256_srlv_epi32(As<Native>(sorted), As<Native>(mShift));
#endif
    return MultiplyAddPairs(S32{}, As<S16>(As<U64>(shifted) & mKept), As<S16>(mFactors));
  }

  U64 mShift, mKept, mFactors;
  unsigned mRed;
};

/// The sample at a place of a sorted element.
template <bool greenFirst>
constexpr int SampleAt(int place) {
  return place % 2 * 2 + ((place < 2) == greenFirst ? 1 : 0);
}

/// Words as bytes.
template <>
class Pairs<WordSamples, 1> {
 public:
  static constexpr int kTaken = 4 * kWidth;

  explicit ZR_INLINE Pairs(const KernelArgs& args)
      : mSort(args.greenFirst ? Constant<Sorted<true>>::Get() : Constant<Sorted<false>>::Get()),
        mPairs({16 - args.shift, {}, 0}, args) {}

  ZR_INLINE PairPlaces Places() const { return mPairs.Places(); }
  ZR_INLINE Vectors<2> Read(const std::uint8_t* p) const {
    return ForEach<2>([&](auto i) ZR_ALWAYS {
      const std::uint8_t* const half = p + 2 * i * kWidth;
      return JoinHalves(
          mPairs.Bytes(ShuffleBytes(Load(half), mSort), ShuffleBytes(Load(half + kWidth), mSort)));
    });
  }

 private:
  template <bool greenFirst>
  struct Sorted {
    static constexpr int At(int i) { return i % 16 / 8 * 8 + 2 * SampleAt<greenFirst>(i % 8 / 2) + i % 2; }
  };

  U8 mSort;
  SortedPairs mPairs;
};

/// Packed samples as bytes.
template <class Form>
class Pairs<PackedSamples<Form>, 1> {
 public:
  static constexpr int kPair = PackedSamples<Form>::kGroupBytes, kTaken = kPair * kWidth / 2;

  explicit ZR_INLINE Pairs(const KernelArgs& args)
      : mSort(args.greenFirst ? Spread<Sorted<true>>::Index() : Spread<Sorted<false>>::Index()),
        mPairs(args.greenFirst ? At<true>() : At<false>(), args) {}

  ZR_INLINE PairPlaces Places() const { return mPairs.Places(); }
  ZR_INLINE Vectors<2> Read(const std::uint8_t* p) const { return {{Half(p), Half(p + kTaken / 2)}}; }

 private:
  /// A word from the byte on in which its sample begins.
  template <bool greenFirst>
  struct Sorted {
    static constexpr int kBytes = kPair, kResult = 8;
    static constexpr int At(int j) { return Form::kBits * SampleAt<greenFirst>(j / 2) / 8 + j % 2; }
  };

  template <bool greenFirst>
  static constexpr SortedWords At() {
    SortedWords words{Form::kBits, {}, greenFirst ? 0 : 1};
    for (int i = 0; i < 4; ++i)
      words.at[i] = static_cast<unsigned>(Form::kBits * SampleAt<greenFirst>(i) % 8);
    return words;
  }

  ZR_INLINE U8 Half(const std::uint8_t* p) const {
    using Groups = Spread<Sorted<true>>;
#if defined(__AVX512VBMI__)
    const auto sorted = [&](const std::uint8_t* from) ZR_ALWAYS {
      return As<U8>(_mm512_permutexvar_epi8(As<Native>(mSort), As<Native>(Groups::LoadGroups(from))));
    };
    return JoinHalves(mPairs.Bytes(sorted(p), sorted(p + Groups::kTaken)));
#else
    // With every second lane in one vector, packing gives natural order.
    const auto sorted = [&](const std::uint8_t* from)
                            ZR_ALWAYS { return ShuffleBytes(Groups::template LoadGroups<2>(from), mSort); };
    return mPairs.Bytes(sorted(p), sorted(p + Groups::kTaken / 2));
#endif
  }

  U8 mSort;
  SortedPairs mPairs;
};

#else

/// Words and packed samples as bytes: the upper ones of words.
template <class Samples>
class Pairs<Samples, 1> {
 public:
  static constexpr int kTaken = 2 * Pairs<Samples, 2>::kTaken;

  explicit ZR_INLINE Pairs(const KernelArgs& args) : mWords(args) {}

  ZR_INLINE PairPlaces Places() const { return mWords.Places(); }
  ZR_INLINE Vectors<2> Read(const std::uint8_t* p) const {
    return {{Upper(p), Upper(p + Pairs<Samples, 2>::kTaken)}};
  }

 private:
  ZR_INLINE U8 Upper(const std::uint8_t* p) const {
    const Vectors<2> words = mWords.Read(p);
    return NarrowHigh(Words{As<U16>(words.v[0]), As<U16>(words.v[1])});
  }

  Pairs<Samples, 2> mWords;
};

#endif

/// Bytes chosen from a window of pairs by a table that is made once a line.
ZR_INLINE U8 Choose(U8 pairs, U8 from) {
#if defined(__AVX512VBMI__)
  return As<U8>(_mm512_permutexvar_epi8(As<Native>(from), As<Native>(pairs)));
#else
  return ShuffleBytes(pairs, from);
#endif
}

/// The means of the greens of pairs for both of their pixels, for destinations that take nothing else: a
/// vector of samples of `size` bytes from kTaken bytes of a line.
template <class Samples, int size>
class Greens;

/// Samples in bytes as bytes.
template <>
class Greens<ByteSamples, 1> {
 public:
  static constexpr int kTaken = 2 * kWidth;

  explicit ZR_INLINE Greens(const KernelArgs& args)
      : mFrom(Constant<Both>::Get() + Splat8(args.greenFirst ? 0 : 1)) {}

  ZR_INLINE U8 Read(const std::uint8_t* p) const {
    const U8 a = ShuffleBytes(Load(p), mFrom), b = ShuffleBytes(Load(p + kWidth), mFrom);
    return JoinHalves(MeanOfBytes(UnpackLow64(a, b), UnpackHigh64(a, b)));
  }

 private:
  /// Twice the first greens of a lane, then the second ones.
  struct Both {
    static constexpr int At(int i) { return i % 8 / 2 * 4 + i % 16 / 8 * 2; }
  };

  U8 mFrom;
};

/// Samples in bytes as words.
template <>
class Greens<ByteSamples, 2> {
 public:
  static constexpr int kTaken = kWidth;

  explicit ZR_INLINE Greens(const KernelArgs& args) {
    const U8 green = Where<Upper>() & Splat8(args.greenFirst ? 0 : 1);
    mFirst = Constant<Word<0>>::Get() + green;
    mSecond = Constant<Word<2>>::Get() + green;
  }

  ZR_INLINE U8 Read(const std::uint8_t* p) const {
    const U8 pairs = Load(p);
    return As<U8>(MeanUp(As<U16>(ShuffleBytes(pairs, mFirst)), As<U16>(ShuffleBytes(pairs, mSecond))));
  }

 private:
  struct Upper {
    static constexpr bool At(int i) { return i % 2 == 1; }
  };
  template <int at>
  struct Word {
    static constexpr int At(int i) { return i % 2 == 1 ? i % 16 / 4 * 4 + at : 0x80; }
  };

  U8 mFirst, mSecond;
};

/// Loads samples and takes the greens of each pair as two words side by side, each shifted up by its factor
/// to the 16-bit scale.
template <class Samples>
class GreenWords;

template <>
class GreenWords<WordSamples> {
 public:
  static constexpr int kTaken = kWidth;

  explicit ZR_INLINE GreenWords(const KernelArgs& args)
      : mFrom(Constant<Both>::Get() + Splat8(args.greenFirst ? 0 : 2)), mShift(args.shift) {}

  /// Of the pairs of a lane, in its lower half.
  ZR_INLINE U8 Read(const std::uint8_t* p) const { return ShuffleBytes(Load(p), mFrom); }
  ZR_INLINE U16 Scaled(U8 greens) const { return ShiftLeft(As<U16>(greens), mShift); }

 private:
  struct Both {
    static constexpr int At(int i) { return i % 8 / 2 * 4 + i % 2; }
  };

  U8 mFrom;
  std::uint32_t mShift;
};

#if defined(__AVX2__)

template <class Form>
class GreenWords<PackedSamples<Form>> {
 public:
  static constexpr int kTaken = PackedSamples<Form>::kGroupBytes * kWidth / 8;

  explicit ZR_INLINE GreenWords(const KernelArgs& args)
      : mFrom(args.greenFirst ? Groups<0>::Index() : Groups<1>::Index()),
        mFactors(As<U16>(
            Splat32(args.greenFirst ? FactorOf(0) | FactorOf(2) << 16 : FactorOf(1) | FactorOf(3) << 16))) {}

  ZR_INLINE U8 Read(const std::uint8_t* p) const { return Choose(Groups<0>::LoadGroups(p), mFrom); }
  ZR_INLINE U16 Scaled(U8 greens) const {
    return (As<U16>(greens) * mFactors) & Splat16(0xFFFFU << (16 - Form::kBits));
  }

 private:
  /// Two pairs make the lower half of a lane.
  template <int first>
  struct Both {
    static constexpr int kPair = PackedSamples<Form>::kGroupBytes, kBytes = 2 * kPair, kResult = 16;
    static constexpr int At(int j) {
      return j / 4 % 2 * kPair + Form::kBits * (first + j / 2 % 2 * 2) / 8 + j % 2;
    }
  };
  template <int first>
  using Groups = Spread<Both<first>>;

  static constexpr unsigned FactorOf(int sample) {
    return 1U << (16 - Form::kBits - Form::kBits * sample % 8);
  }

  U8 mFrom;
  U16 mFactors;
};

#endif

/// Words and packed samples as bytes or words. `size` bytes of the mean are its upper ones.
template <class Samples, int size>
class Greens {
 public:
  static constexpr int kTaken = 4 / size * GreenWords<Samples>::kTaken;

  explicit ZR_INLINE Greens(const KernelArgs& args) : mWords(args) {}

  ZR_INLINE U8 Read(const std::uint8_t* p) const {
    if constexpr (size == 2)
      return JoinHalves(TwiceMeans(p));
    else
      return JoinQuarters(UnpackLow64(TwiceMeans(p), TwiceMeans(p + kTaken / 2)));
  }

 private:
  struct Upper {
    static constexpr int At(int i) { return i % (16 / 2 * size) / (2 * size) * 4 + 2 - size + i % size; }
  };

  /// Lanes of means twice, the first half from the first vector loaded; bytes fill the lower half of a lane.
  ZR_INLINE U8 TwiceMeans(const std::uint8_t* p) const {
    const U8 greens = UnpackLow64(mWords.Read(p), mWords.Read(p + GreenWords<Samples>::kTaken));
    const U16 words = mWords.Scaled(greens);
    const U16 means = MeanUp(words, As<U16>(As<U32>(words) >> 16));
    return ShuffleBytes(As<U8>(means), Constant<Upper>::Get());
  }

  GreenWords<Samples> mWords;
};

/// A channel of pairs for both of their pixels.
template <int size>
class Twice {
 public:
  explicit ZR_INLINE Twice(unsigned place) : mFrom(Constant<First>::Get() + Splat8(size * place)) {}

  ZR_INLINE U8 operator()(const Vectors<2>& pairs) const {
#if defined(__AVX512VBMI__)
    return As<U8>(_mm512_mask_permutexvar_epi8(As<Native>(Choose(pairs.v[0], mFrom)), 0xFFFFFFFF00000000,
                                               As<Native>(mFrom), As<Native>(pairs.v[1])));
#else
    return JoinHalves(UnpackLow64(ShuffleBytes(pairs.v[0], mFrom), ShuffleBytes(pairs.v[1], mFrom)));
#endif
  }

 private:
  /// The byte of an element's first sample: a lane of elements fills half a lane of a channel.
  struct First {
    static constexpr int At(int i) { return i % (kLane / 2) / (2 * size) * 4 * size + i % size; }
  };

  U8 mFrom;
};

#if !defined(__AVX2__)

/// Packed samples.
template <class Form, int size>
class Greens<PackedSamples<Form>, size> {
 public:
  static constexpr int kTaken = Pairs<PackedSamples<Form>, size>::kTaken;

  explicit ZR_INLINE Greens(const KernelArgs& args) : mPairs(args), mGreen(mPairs.Places().green) {}

  ZR_INLINE U8 Read(const std::uint8_t* p) const { return mGreen(mPairs.Read(p)); }

 private:
  Pairs<PackedSamples<Form>, size> mPairs;
  Twice<size> mGreen;
};

#endif

/// Colours of pairs for both of their pixels, a vector a channel.
template <int size>
class TwiceColours {
 public:
  explicit ZR_INLINE TwiceColours(const PairPlaces& places)
      : mRed(places.red), mGreen(places.green), mBlue(places.blue) {}

  ZR_INLINE Colour<U8> operator()(const Vectors<2>& pairs) const {
    return {mRed(pairs), mGreen(pairs), mBlue(pairs)};
  }

 private:
  Twice<size> mRed, mGreen, mBlue;
};

/// Words of the two halves of a block, from the bytes that they are.
ZR_INLINE Colour<Words> WordsOf(const Colour<U8>& first, const Colour<U8>& second) {
  return {{As<U16>(first.red), As<U16>(second.red)},
          {As<U16>(first.green), As<U16>(second.green)},
          {As<U16>(first.blue), As<U16>(second.blue)}};
}

/// Pairs straight to interleaved pixels of three samples, or of four with an alpha of 0xFF.
template <int size, int channels, bool blueFirst>
class InterleavedPairs {
 public:
  explicit ZR_INLINE InterleavedPairs(const PairPlaces& places) {
    const U8 first = Splat8(size * (blueFirst ? places.blue : places.red)),
             green = Splat8(size * places.green);
    const U8 last = Splat8(size * (blueFirst ? places.red : places.blue));
    Unrolled<channels>([&](auto i) ZR_ALWAYS {
      mFrom[i] = Constant<Pair<i>>::Get() + (Where<Is<i, 0>>() & first) + (Where<Is<i, 1>>() & green) +
                 (Where<Is<i, 2>>() & last);
    });
  }

  ZR_INLINE void Write(std::uint8_t* to, const Vectors<2>& pairs) const {
    Unrolled<channels>([&](auto i) ZR_ALWAYS {
      const U8 pixels = Choose(Window<i>(pairs), mFrom[i]);
      Store(to + i * kWidth, channels == 4 ? pixels | As<U8>(Splat32(0xFF000000)) : pixels);
    });
  }

 private:
  /// Bytes of pairs from which the lanes of a vector of the destination are made.
  template <int vector>
  static ZR_INLINE U8 Window(const Vectors<2>& pairs) {
    if constexpr (channels == 3 && vector == 1) {
      return Middle(pairs);
    } else {
      const U8 half = pairs.v[vector < channels / 2 ? 0 : 1];
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
      constexpr int kParts = channels == 4 ? (vector % 2 == 0 ? 0x50 : 0xFA) : (vector == 0 ? 0x94 : 0xE9);
      return As<U8>(_mm256_permute4x64_epi64(As<Native>(half), kParts));
#else
      return half;
#endif
    }
  }

  /// The second half of the one vector and the first half of the other.
  static ZR_INLINE U8 Middle(const Vectors<2>& pairs) {
#if defined(__AVX512VBMI__)
    return As<U8>(_mm512_shuffle_i64x2(As<Native>(pairs.v[0]), As<Native>(pairs.v[1]), 0x4E));
#elif defined(__AVX2__)
    return As<U8>(_mm256_permute2x128_si256(As<Native>(pairs.v[0]), As<Native>(pairs.v[1]), 0x21));
#else
    return UnpackLow64(UnpackHigh64(pairs.v[0], pairs.v[0]), pairs.v[1]);
#endif
  }

  /// Where the window of a lane begins among the bytes of both vectors.
  static constexpr int WindowAt(int vector, int lane) {
    if (kLane == kWidth) return channels == 3 ? vector * kWidth / 2 : vector / 2 * kWidth;
    constexpr int kOfThree[6] = {0, 8, 16, 32, 40, 48};
    return channels == 3 ? kOfThree[2 * vector + lane] : 8 * (2 * vector + lane);
  }

  /// The place of the element of a destination byte in its lane's window; alpha comes from anywhere.
  template <int vector>
  struct Pair {
    static constexpr int At(int i) {
      const int byte = vector * kWidth + i, pair = byte / (2 * channels * size);
      return 4 * size * pair - WindowAt(vector, i / kLane) + byte % size;
    }
  };
  template <int vector, int channel>
  struct Is {
    static constexpr bool At(int i) { return (vector * kWidth + i) / size % channels == channel; }
  };

  U8 mFrom[static_cast<unsigned>(channels)];
};

#if defined(__SSSE3__)

/// Pairs of bytes straight to words: red in bits 15..11, green in 10..5, blue in 4..0.
class RGB565Pairs {
 public:
  explicit ZR_INLINE RGB565Pairs(const PairPlaces& places)
      : mSort(Constant<ElementOf>::Get() +
              As<U8>(Splat32(places.blue | places.green << 8 | places.red << 16))) {}

  ZR_INLINE void Write(std::uint8_t* to, const Vectors<2>& pairs) const {
    Unrolled<2>([&](auto i) ZR_ALWAYS { Store(to + i * kWidth, Words565(pairs.v[i])); });
  }

 private:
  struct ElementOf {
    static constexpr int At(int i) { return i % 16 / 4 * 4; }
  };
  struct BothWords {
    static constexpr int At(int i) { return i % 16 / 4 * 4 + i % 2; }
  };

  /// Blue and green become one word, red another one; the sum of both is eight times the result.
  ZR_INLINE U8 Words565(U8 pairs) const {
    const U8 sorted = ShuffleBytes(pairs, mSort) & As<U8>(Splat32(0x00F8FCF8));
    const U32 sum = As<U32>(MultiplyAddPairs(S32{}, OfBytes(sorted), As<S16>(Splat32(0x08000001))));
    return ShuffleBytes(As<U8>(sum >> 3), Constant<BothWords>::Get());
  }

  /// Green 64 times beside blue; red.
  static ZR_INLINE S16 OfBytes(U8 sorted) {
    const auto factors = As<Native>(Splat32(0x00014001));
#if defined(__AVX512VBMI__)
    return As<S16>(_mm512_maddubs_epi16(As<Native>(sorted), factors));
#elif defined(__AVX2__)
    return As<S16>(_mm256_maddubs_epi16(As<Native>(sorted), factors));
#else
    return As<S16>(_mm_maddubs_epi16(As<Native>(sorted), factors));
#endif
  }

  U8 mSort;
};

#endif

/// What writes pairs as a writer does, where there is such a way.
template <class Writer>
struct PairsWriter;
template <bool blueFirst>
struct PairsWriter<ThreeBytesWriter<blueFirst>> : InterleavedPairs<1, 3, blueFirst> {
  static constexpr int kSize = 1;
  using InterleavedPairs<1, 3, blueFirst>::InterleavedPairs;
};
template <bool blueFirst>
struct PairsWriter<FourBytesWriter<blueFirst>> : InterleavedPairs<1, 4, blueFirst> {
  static constexpr int kSize = 1;
  using InterleavedPairs<1, 4, blueFirst>::InterleavedPairs;
};
template <bool blueFirst>
struct PairsWriter<ThreeWordsWriter<blueFirst>> : InterleavedPairs<2, 3, blueFirst> {
  static constexpr int kSize = 2;
  using InterleavedPairs<2, 3, blueFirst>::InterleavedPairs;
};
#if defined(__SSSE3__)
template <>
struct PairsWriter<RGB565Writer<false>> : RGB565Pairs {
  static constexpr int kSize = 1;
  using RGB565Pairs::RGB565Pairs;
};
#endif

}  // namespace
}  // namespace ZrConvertersLib::simd
