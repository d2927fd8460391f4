#include <type_traits>

#include "simd/ColourPairs.h"
#include "simd/Line.h"
#include "simd/Packed.h"
#include "simd/Products.h"

/// Readers of YCbCr. All arithmetic is on 8-bit samples, in 32 bits and exact.

namespace ZrConvertersLib::simd {
namespace {

#if defined(__AVX2__) || !defined(__SSSE3__)
/// What rounding and the offsets of luma and chroma add to every sum of products.
ZR_INLINE S32 First(const YCbCrMatrix& m, int chroma, int scale) {
  return As<S32>(Splat32(static_cast<std::uint32_t>((512 - m.yOffset * m.y - 128 * chroma) * scale)));
}
#endif

#if defined(__SSSE3__) && !defined(__AVX512VBMI__)
#define ZR_READS_FOURS
/// Sixteen bytes for each lane from byte `first` on of two parts of a block that have kBytes each. In a
/// second lane those before `first` take the place of bytes beyond the part, so that none of them is read.
template <int kBytes, int first, int low, int high>
struct LanesOfParts {
  static constexpr int kBeyond = kWidth > 16 && first + 16 > kBytes ? first + 16 - kBytes : 0;

  static ZR_INLINE U8 Load(const std::uint8_t* p) {
    const std::uint8_t* const at = p + low * kBytes + first;
#if defined(__AVX2__)
    return LoadLanes(at, p + high * kBytes + first - kBeyond);
#else
    return simd::Load(at);
#endif
  }

  /// Byte i of a lane is byte Map::At(i) of the part, or 0 where that is negative.
  template <class Map>
  static ZR_INLINE U8 Shuffled(const std::uint8_t* p) {
    struct Index {
      static constexpr int At(int i) {
        const int from = Map::At(i % 16);
        return from < 0 ? 0xFF : from - first + (i < 16 ? 0 : kBeyond);
      }
    };
    return ShuffleBytes(Load(p), Constant<Index>::Get());
  }
};

#if defined(__AVX2__)
template <int first>
struct InTurn {
  static constexpr int At(int i) { return first + i; }
};

/// Words whose upper bytes are those of eight packed samples of each lane's part, those at Order::At(i).
template <class Form, class Order, class Lanes>
ZR_INLINE U16 EightSamples(const std::uint8_t* p) {
  using Map = typename Form::Map;
  constexpr int kSamples = Map::kResult / 2;
  struct Bytes {
    static constexpr int At(int i) {
      const int sample = Order::At(i / 2);
      return sample / kSamples * Map::kBytes + Map::At(sample % kSamples * 2 + i % 2);
    }
  };
  struct Factors {
    static constexpr int At(int i) {
      return i % 2 == 0 ? static_cast<int>(Form::kFactors[Order::At(i / 2 % 8) % 4]) : 0;
    }
  };
  return As<U16>(Lanes::template Shuffled<Bytes>(p)) * As<U16>(Constant<Factors>::Get());
}
#endif

/// The fours that the two lanes of a vector have.
template <int low, int high>
struct LanesOf {
  static constexpr int kLow = low, kHigh = high;
};

/// Two vectors of fours that make the first (0) or the second half of a block.
template <Placing placing, int half>
class HalfOfFours {
  static constexpr bool kOne = kWidth == 16, kStrips = placing == Placing::Strips;
  static constexpr int kApart = kOne ? 0 : kStrips ? 4 : placing == Placing::Natural ? 2 : 1;
  static constexpr int kNext = !kOne && placing == Placing::Quarters ? 2 : 1;
  static constexpr int kBegin = half * (kOne || kStrips ? 2 : 4);

 public:
  using First = LanesOf<kBegin, kBegin + kApart>;
  using Second = LanesOf<kBegin + kNext, kBegin + kNext + kApart>;
};

/// Four pixels of 4:4:4 for each lane. Samples::Of<Lanes, Order>(p) gives their twelve samples by
/// Order::At(byte); Green<Fours>(p), where there is one, gives half a block of green alone.
template <class Samples, int cb, int luma, int cr>
class SingleReader : Samples {
 public:
  using Samples::kGroupBytes, Samples::kGroupPixels, Samples::kOverread;

  explicit ZR_INLINE SingleReader(const KernelArgs& args) : Samples(args), mMatrix(*args.matrix) {}

  template <class Channel>
  ZR_INLINE auto Read(const std::uint8_t* p) const {
    if constexpr (GivesGreen<Channel>())
      return Greens{this->template Green<HalfOfFours<Channel::kPlacing, 0>>(p),
                    this->template Green<HalfOfFours<Channel::kPlacing, 1>>(p)};
    else if constexpr (requires { Channel::kPlacing; })
      return Pairs<Channel::kPlacing>(p);
    else
      return Channels(Pairs<Placing::Strips>(p));
  }

 private:
  /// The luma of each pixel with its cb and with its cr.
  struct LumaTwice {
    static constexpr int At(int i) { return i / 4 * 3 + (i % 2 == 0 ? luma : i % 4 == 1 ? cb : cr); }
  };

  template <class Channel>
  static constexpr bool GivesGreen() {
    if constexpr (requires { Channel::kGreenOnly; })
      return requires(const Samples& samples, const std::uint8_t* p) {
        samples.template Green<HalfOfFours<Channel::kPlacing, 0>>(p);
      };
    return false;
  }

  template <Placing placing>
  ZR_INLINE ColourPairs<LanesOfPixels> Pairs(const std::uint8_t* p) const {
    return {Half<HalfOfFours<placing, 0>>(p), Half<HalfOfFours<placing, 1>>(p)};
  }

  template <class Fours>
  ZR_INLINE HalfOfPairs Half(const std::uint8_t* p) const {
    return mMatrix.Single(this->template Of<typename Fours::First, LumaTwice>(p),
                          this->template Of<typename Fours::Second, LumaTwice>(p));
  }

  PairMatrix<true> mMatrix;
};

struct SingleBytes {
  static constexpr int kGroupPixels = 1, kGroupBytes = 3, kOverread = kWidth > 16 ? 0 : 4;

  explicit ZR_INLINE SingleBytes(const KernelArgs&) {}

  template <class Lanes, class Order>
  static ZR_INLINE U8 Of(const std::uint8_t* p) {
    return LanesOfParts<12, 0, Lanes::kLow, Lanes::kHigh>::template Shuffled<Order>(p);
  }
};

#if defined(__AVX2__)
/// Twelve samples from words with the first eight and the last eight, whose upper bytes they are.
template <class Order>
ZR_INLINE U8 TwelveOf(U16 first, U16 last) {
  struct Packed {
    static constexpr int At(int i) { return Order::At(i) < 8 ? Order::At(i) : Order::At(i) + 4; }
  };
  return ShuffleSixteens<Packed>(PackClipped(As<S16>(first >> 8), As<S16>(last >> 8)));
}

struct SingleWords {
  static constexpr int kGroupPixels = 1, kGroupBytes = 6, kOverread = 0;

  explicit ZR_INLINE SingleWords(const KernelArgs& args) : mShift(args.shift) {}

  template <class Lanes, class Order>
  ZR_INLINE U8 Of(const std::uint8_t* p) const {
    const auto eight = [&](auto first) ZR_ALWAYS {
      return ShiftLeft(As<U16>(LanesOfParts<24, first, Lanes::kLow, Lanes::kHigh>::Load(p)), mShift);
    };
    return TwelveOf<Order>(eight(std::integral_constant<int, 0>{}), eight(std::integral_constant<int, 8>{}));
  }

 private:
  std::uint32_t mShift;
};

/// Samples of a form in words that are not negative: of the bytes of two, Wanted keeps a sample's upper eight
/// bits. These may stand at different places; times its weight each is 2^kScale times the value.
template <class Form>
struct PositiveWords;

/// All at one place. The last sample of a group fills a byte, which therefore may be the lower one.
template <>
struct PositiveWords<Form10p> {
  static constexpr int kScale = 7;

  static constexpr int Byte(int sample, int i) {
    const int in = sample % 4;
    return in < 3 ? sample / 4 * 5 + in + i : i == 0 ? sample / 4 * 5 + 4 : -1;
  }
  static constexpr unsigned Weight(int) { return 1; }

  template <class Order>
  static ZR_INLINE U16 Wanted(U8 bytes) {
    struct Factors {
      static constexpr int At(int i) {
        constexpr int of[] = {32, 8, 2, 128};
        return i % 2 == 0 ? of[Order::At(i / 2 % 8) % 4] : 0;
      }
    };
    return (As<U16>(bytes) * As<U16>(Constant<Factors>::Get())) & Splat16(0x7F80);
  }
};

/// Every second sample has a byte of its own.
template <>
struct PositiveWords<Form12p> {
  static constexpr int kScale = 4;

  static constexpr int Byte(int sample, int i) {
    const int group = sample / 2 * 3;
    return sample % 2 == 0 ? group + i : i == 0 ? group + 2 : -1;
  }
  static constexpr unsigned Weight(int sample) { return sample % 2 == 0 ? 1 : 16; }

  template <class Order>
  static ZR_INLINE U16 Wanted(U8 bytes) {
    struct Mask {
      static constexpr int At(int i) {
        const bool whole = Order::At(i / 2 % 8) % 2 != 0;
        return i % 2 == 0 ? (whole ? 0xFF : 0xF0) : 0x0F;
      }
    };
    return As<U16>(bytes & Constant<Mask>::Get());
  }
};

/// Green of packed cb, luma and cr, in 32-bit sums. Neither blue nor red is computed, and two vectors share
/// what is done with cb.
template <class Form>
class GreenSums {
 public:
  explicit ZR_INLINE GreenSums(const YCbCrMatrix& m)
      : mLumaCr(Weighted<LumaCr>(Factors(m.y, m.greenV))),
        mFirstCb(Weighted<Cb>(Factors(m.greenU, 0))),
        mSecondCb(Weighted<Cb>(Factors(0, m.greenU))),
        mOffset(First(m, m.greenU + m.greenV, 1 << Words::kScale)) {}

  /// Half a block.
  template <class Fours>
  ZR_INLINE HalfOfGreens Half(const std::uint8_t* p) const {
    using A = typename Fours::First;
    using B = typename Fours::Second;
    const S16 cb = As<S16>(Words::template Wanted<Cb>(Bytes<CbOf<0>, A>(p) | Bytes<CbOf<1>, B>(p)));
    const auto sum = [&](U8 lumaCr, S16 cbFactors) ZR_ALWAYS {
      const S16 x = As<S16>(Words::template Wanted<LumaCr>(lumaCr));
      return MultiplyAddPairs(MultiplyAddPairs(mOffset, x, mLumaCr), cb, cbFactors) >> (Words::kScale + 3);
    };
    return {PackSigned(sum(Bytes<LumaCr, A>(p), mFirstCb), sum(Bytes<LumaCr, B>(p), mSecondCb))};
  }

 private:
  using Words = PositiveWords<Form>;
  static constexpr int kFour = 12 * Form::kBytes / Form::kPixels;

  /// The samples of a four in eight words: luma and cr of each pixel, ...
  struct LumaCr {
    static constexpr int At(int i) { return i / 2 * 3 + 1 + i % 2; }
  };
  /// ... cb twice, ...
  struct Cb {
    static constexpr int At(int i) { return i / 2 * 3; }
  };
  /// ... or once, leaving out every second word.
  template <int first>
  struct CbOf {
    static constexpr int At(int i) { return i % 2 == first ? i / 2 * 3 : -1; }
  };

  /// The bytes that hold samples of a four in each lane.
  template <class Order, class Lanes>
  static ZR_INLINE U8 Bytes(const std::uint8_t* p) {
    struct Map {
      static constexpr int At(int i) {
        return Order::At(i / 2) < 0 ? -1 : Words::Byte(Order::At(i / 2), i % 2);
      }
    };
    constexpr bool kFirstSixteen = [] {
      for (int i = 0; i < 16; ++i)
        if (Map::At(i) >= 16) return false;
      return true;
    }();
    return LanesOfParts < kFour, kFirstSixteen ? 0 : kFour - 16, Lanes::kLow,
           Lanes::kHigh > ::template Shuffled<Map>(p);
  }

  template <class Order>
  static ZR_INLINE S16 Weighted(S16 factors) {
    struct Weights {
      static constexpr int At(int i) {
        return i % 2 == 0 ? static_cast<int>(Words::Weight(Order::At(i / 2 % 8))) : 0;
      }
    };
    return As<S16>(As<U16>(factors) * As<U16>(Constant<Weights>::Get()));
  }

  S16 mLumaCr, mFirstCb, mSecondCb;
  S32 mOffset;
};

/// Packed samples, of cb, luma and cr.
template <class Form>
class SinglePacked {
 public:
  static constexpr int kFour = 12 * Form::kBytes / Form::kPixels;
  static constexpr int kGroupPixels = Form::kPixels, kGroupBytes = 3 * Form::kBytes, kOverread = 0;

  explicit ZR_INLINE SinglePacked(const KernelArgs& args) : mGreen(*args.matrix) {}

  template <class Lanes, class Order>
  ZR_INLINE U8 Of(const std::uint8_t* p) const {
    if constexpr (kFour <= 16) {
      const U16 even = Eight<EverySecond<Order, 0>, 0, Lanes>(p);
      const U16 odd = Eight<EverySecond<Order, 1>, 0, Lanes>(p);
      return As<U8>((even >> 8) | (odd & Splat16(0xFF00)));
    } else {
      return TwelveOf<Order>(Eight<InTurn<0>, 0, Lanes>(p), Eight<InTurn<4>, kFour - 16, Lanes>(p));
    }
  }

  template <class Fours>
  ZR_INLINE HalfOfGreens Green(const std::uint8_t* p) const {
    return mGreen.template Half<Fours>(p);
  }

 private:
  template <class Order, int odd>
  struct EverySecond {
    static constexpr int At(int i) { return Order::At(2 * i + odd); }
  };
  template <class Order, int first, class Lanes>
  static ZR_INLINE U16 Eight(const std::uint8_t* p) {
    return EightSamples<Form, Order, LanesOfParts<kFour, first, Lanes::kLow, Lanes::kHigh>>(p);
  }

  GreenSums<Form> mGreen;
};
#endif

#else
/// The matrix for 4:4:4, where each pixel has its own chroma. A 32-bit element takes one pixel: luma in its
/// low half and a chroma sample in its high half, so that a sum of products is one instruction.
class Matrix {
 public:
  explicit ZR_INLINE Matrix(const YCbCrMatrix& m)
      : mRed(Factors(m.y, m.redV)),
        mBlue(Factors(m.y, m.blueU)),
        mGreenCr(Factors(m.y, m.greenV)),
        mGreenCb(Factors(0, m.greenU)),
        mRedFirst(First(m, m.redV, 1)),
        mBlueFirst(First(m, m.blueU, 1)),
        mGreenFirst(First(m, m.greenU + m.greenV, 1)) {}

  /// Of kWidth / 4 pixels, as 32-bit values that are not clipped yet.
  ZR_INLINE Colour<S32> Convert(S16 lumaCb, S16 lumaCr) const {
    return {MultiplyAddPairs(mRedFirst, lumaCr, mRed) >> 10,
            MultiplyAddPairs(MultiplyAddPairs(mGreenFirst, lumaCr, mGreenCr), lumaCb, mGreenCb) >> 10,
            MultiplyAddPairs(mBlueFirst, lumaCb, mBlue) >> 10};
  }

 private:
  S16 mRed, mBlue, mGreenCr, mGreenCb;
  S32 mRedFirst, mBlueFirst, mGreenFirst;
};

/// Four vectors of 32-bit values to one of bytes, clipped to 0..255, natural order.
ZR_INLINE U8 Clip(S32 a, S32 b, S32 c, S32 d) {
  return JoinQuarters(PackClipped(PackSigned(a, b), PackSigned(c, d)));
}

/// 4:4:4. Samples::Words<0>(p) gives a quarter of a block as words of luma and cb in turn, Words<1> luma and
/// cr.
template <class Samples>
class SumReader : Samples {
 public:
  using Samples::kGroupBytes, Samples::kGroupPixels, Samples::kOverread;

  explicit ZR_INLINE SumReader(const KernelArgs& args) : Samples(args), mMatrix(*args.matrix) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    const auto quarter = [&](int i) ZR_ALWAYS {
      const std::uint8_t* const at = p + i * (kWidth / 4 / kGroupPixels * kGroupBytes);
      return mMatrix.Convert(this->template Words<0>(at), this->template Words<1>(at));
    };
    const Colour<S32> a = quarter(0), b = quarter(1), c = quarter(2), d = quarter(3);
    return {Clip(a.red, b.red, c.red, d.red), Clip(a.green, b.green, c.green, d.green),
            Clip(a.blue, b.blue, c.blue, d.blue)};
  }

 private:
  Matrix mMatrix;
};

template <int cb, int luma, int cr>
class WordsOfBytes {
  /// Two pixels, luma and one of the chroma samples each.
  template <int chroma>
  struct Pairs {
    static constexpr int kBytes = 6, kResult = 8;
    static constexpr int At(int j) {
      return j % 4 == 0 ? j / 4 * 3 + luma : j % 4 == 2 ? j / 4 * 3 + chroma : -1;
    }
  };

 public:
  static constexpr int kGroupPixels = 1, kGroupBytes = 3, kOverread = Spread<Pairs<cb>>::kOverread;

  explicit ZR_INLINE WordsOfBytes(const KernelArgs&) {}

  template <int chroma>
  static ZR_INLINE S16 Words(const std::uint8_t* p) {
    return As<S16>(Spread<Pairs<chroma == 0 ? cb : cr>>::Read(p));
  }
};

#if defined(__AVX512VBMI__)
/// Cb, luma and cr of `bits` each. The bytes of two pixels, or of one if they have words, are put into 64
/// bits, of which the upper 8 bits of the samples are extracted.
template <int bits>
class WordsOfPacked {
 public:
  static constexpr int kGroupPixels = bits == 10 ? 4 : bits == 12 ? 2 : 1;
  static constexpr int kGroupBytes = kGroupPixels * 3 * bits / 8, kOverread = 0;

  explicit ZR_INLINE WordsOfPacked(const KernelArgs& args) : mUnused(Splat8(bits == 16 ? args.shift : 0)) {}

  template <int chroma>
  ZR_INLINE S16 Words(const std::uint8_t* p) const {
    constexpr std::uint64_t kMask = ~std::uint64_t{0} >> (kTaken < kWidth ? kWidth - kTaken : 0);
    const auto index = As<Native>(Constant<Bytes<chroma>>::Get());
    Native pairs = _mm512_permutexvar_epi8(index, _mm512_maskz_loadu_epi8(kMask, p));
    if constexpr (kTaken > kWidth)
      pairs =
          _mm512_mask_permutexvar_epi8(pairs, Beyond<chroma>(), index, As<Native>(Load(p + kTaken - kWidth)));
    const U8 fields = Constant<Fields<chroma>>::Get() - mUnused;
    return As<S16>(_mm512_maskz_multishift_epi64_epi8(0x5555555555555555, As<Native>(fields), pairs));
  }

 private:
  static constexpr int kTaken = 3 * bits * kWidth / 4 / 8;  ///< bytes of a quarter of a block

  /// The first bit of the upper 8 of a sample: of luma or a chroma sample of a pixel.
  static constexpr int Upper(int pixel, int sample) { return (3 * pixel + sample + 1) * bits - 8; }

  /// The first byte of part i of 64 bits, that of the first sample that is wanted from it. All bits of words
  /// are kept, since the upper 8 of those in use may be lower ones.
  template <int chroma>
  static constexpr int First(int i) {
    return bits == 16 ? 6 * 2 * i + 2 * chroma : Upper(2 * i, chroma) / 8;
  }

  template <int chroma>
  struct Bytes {
    /// Luma follows cb and cr follows luma, so words of a pixel lie side by side.
    static constexpr int From(int i) {
      if (bits == 16) return 6 * (i / 4) + 2 * chroma + i % 4;
      return First<chroma>(i / 8) + i % 8;
    }
    static constexpr int At(int i) { return From(i) < kWidth ? From(i) : From(i) - (kTaken - kWidth); }
  };

  template <int chroma>
  static constexpr std::uint64_t Beyond() {
    std::uint64_t bytes = 0;
    for (int i = 0; i < kWidth; ++i) bytes |= std::uint64_t{Bytes<chroma>::From(i) >= kWidth} << i;
    return bytes;
  }

  /// Luma in even, chroma in odd words.
  template <int chroma>
  struct Fields {
    static constexpr int At(int i) {
      const int sample = i % 4 == 0 ? 1 : 2 * chroma;
      if (bits == 16) return i % 8 / 4 * 32 + (sample - chroma) * 16 + 8;
      return (Upper(i / 4, sample) - 8 * First<chroma>(i / 8)) & 63;
    }
  };

  U8 mUnused;
};
#endif
#endif

/// A channel of a block whose pixels share chroma: words with 128 * (value - 128) and a fraction, which clip
/// to values from 0 to 255. `spread` is the order of SpreadHalves, else the pixels stand in natural order.
template <bool spread>
struct Sums {
  static constexpr bool kSpread = spread;
  S16 a, b;
};

template <bool spread>
struct Cast<Sums<spread>> {
  static ZR_INLINE Sums<spread> From(const Sums<spread>& x) { return x; }
};

/// A channel less 128 in the upper bytes of words, the fraction in the lower.
ZR_INLINE U16 Doubled(S16 sum) {
  return As<U16>(AddClipped(sum, sum));
}

template <class Matrix, bool spread>
ZR_INLINE U8 Bytes(const Sums<spread>& x) {
  const U8 packed = Matrix::Pack(x.a, x.b);
  return spread ? JoinQuarters(packed) : JoinHalves(packed);
}

ZR_INLINE Words WordsOf(const Sums<false>& x) {
  const auto word = [](S16 sum) ZR_ALWAYS { return (Doubled(sum) & Splat16(0xFF00)) ^ Splat16(0x8000); };
  return {word(x.a), word(x.b)};
}

/// The matrix for chroma shared by two pixels, in words. Every factor of luma is 8 times an integer, so the
/// lowest 3 bits of products with chroma do not matter beyond rounding down. Of what exceeds 16 bits only the
/// sign matters, so the last addition of a channel saturates. Two additions are needed because chroma
/// products themselves may take 17 bits.
class SharedMatrix {
 public:
  explicit ZR_INLINE SharedMatrix(const YCbCrMatrix& m)
      : mLuma(static_cast<unsigned>(m.y) / 8),
        mOffset(As<S16>(Splat16(static_cast<unsigned>((512 + (128 - m.yOffset) * m.y) / 8 - 128 * 128)))),
        mRed(Factor(32 * m.redV - 65536)),
        mBlue(Factor(32 * m.blueU - 65536)),
        mGreen(Factors(32 * m.greenU, 32 * m.greenV)) {}

  /// Of kWidth / 2 pixels, in the order of the samples: luma and chroma in turn, with cb and cr in turn.
  template <bool lumaFirst>
  ZR_INLINE Colour<S16> Convert(U8 samples) const {
    const U8 centred = samples ^ Splat8(0x80);
    const S16 luma = MultiplyBytes<lumaFirst>(centred, mLuma) + mOffset;
    const S16 chroma = As<S16>(lumaFirst ? As<U16>(centred) & Splat16(0xFF00) : As<U16>(centred) << 8);
    const S16 cb = Twice<true>(chroma), cr = Twice<false>(chroma);
    const S16 green = Twice<false>(As<S16>(MultiplyAddPairs(S32{}, chroma, mGreen)));
    return {AddClipped(luma + MultiplyUpper(cr, mRed), cr), AddClipped(luma, green),
            AddClipped(luma + MultiplyUpper(cb, mBlue), cb)};
  }

  /// Two vectors of a channel to bytes, each lane of a followed by the same lane of b.
  static ZR_INLINE U8 Pack(S16 a, S16 b) { return PackMiddle(a, b) ^ Splat8(0x80); }

 private:
  unsigned mLuma;
  S16 mOffset, mRed, mBlue, mGreen;
};

#if defined(__AVX512VBMI__)
/// The same in 32-bit sums, which take fewer instructions for bytes where one instruction adds two products
/// to a sum. An element takes both pixels: products of luma apart, those of chroma added to either. Samples
/// come 6 bits up, so that results are the high halves of the sums.
class SharedSumMatrix {
 public:
  explicit ZR_INLINE SharedSumMatrix(const YCbCrMatrix& m)
      : mEven(Factors(m.y, 0)),
        mOdd(Factors(0, m.y)),
        mRed(Factors(0, m.redV)),
        mGreen(Factors(m.greenU, m.greenV)),
        mBlue(Factors(m.blueU, 0)),
        mFirst(First(m, 0, 64)),
        mRedOffset(ChromaOffset(m.redV)),
        mGreenOffset(ChromaOffset(m.greenU + m.greenV)),
        mBlueOffset(ChromaOffset(m.blueU)) {}

  /// Of kWidth / 2 pixels, as words that are not clipped yet.
  template <bool lumaFirst>
  ZR_INLINE Colour<S16> Convert(U8 samples) const {
    const U16 x = As<U16>(samples);
    const S16 low = As<S16>((x << 6) & Splat16(0xFF << 6)), high = As<S16>((x >> 2) & Splat16(0xFF << 6));
    const S16 luma = lumaFirst ? low : high, chroma = lumaFirst ? high : low;
    const S32 even = MultiplyAddPairs(mFirst, luma, mEven), odd = MultiplyAddPairs(mFirst, luma, mOdd);
    const auto channel = [&](S32 offset, S16 factors) ZR_ALWAYS {
      const S32 share = MultiplyAddPairs(offset, chroma, factors);
      return As<S16>(JoinUpper(even + share, odd + share));
    };
    return {channel(mRedOffset, mRed), channel(mGreenOffset, mGreen), channel(mBlueOffset, mBlue)};
  }

  static ZR_INLINE U8 Pack(S16 a, S16 b) { return PackClipped(a, b); }

 private:
  static ZR_INLINE S32 ChromaOffset(int factors) {
    return As<S32>(Splat32(static_cast<std::uint32_t>(-128 * 64 * factors)));
  }

  S16 mEven, mOdd, mRed, mGreen, mBlue;
  S32 mFirst, mRedOffset, mGreenOffset, mBlueOffset;
};

using SharedByteMatrix = SharedSumMatrix;
#else
using SharedByteMatrix = SharedMatrix;
#endif

#if defined(__AVX2__) && !defined(__AVX512VBMI__)
/// From lanes in natural order to strips.
ZR_INLINE Vectors<2> StripsOf(const Vectors<2>& x) {
  const auto a = As<Native>(x.v[0]), b = As<Native>(x.v[1]);
  return {{As<U8>(_mm256_permute2x128_si256(a, b, 0x20)), As<U8>(_mm256_permute2x128_si256(a, b, 0x31))}};
}
#endif

/// Reads pixels that share chroma. Samples::Half<spread>(p) gives half a block as 4:2:2 has it, in the order
/// of SpreadHalves or in natural order; kSpread is the order that takes fewer instructions.
template <class Samples, bool lumaFirst>
class SharedReader : Samples {
 public:
  using Samples::kGroupBytes, Samples::kGroupPixels, Samples::kOverread;

  explicit ZR_INLINE SharedReader(const KernelArgs& args)
      : Samples(args), mMatrix(*args.matrix), mByteMatrix(*args.matrix), mPairs(*args.matrix) {}

  template <class Channel>
  ZR_INLINE auto Read(const std::uint8_t* p) const {
#if defined(__SSSE3__)
    if constexpr (requires { Channel::kPlacing; }) {
      const Vectors<2> x = Placed<Channel::kPlacing>(p);
      return ColourPairs<LanesOfGroups>{mPairs.Shared(x.v[0]), mPairs.Shared(x.v[1])};
    } else
#endif
        if constexpr (std::is_same_v<Channel, U8>) {
      const auto sums = Convert<Samples::kSpread>(mByteMatrix, p);
      return Colour<U8>{Bytes<SharedByteMatrix>(sums.red), Bytes<SharedByteMatrix>(sums.green),
                        Bytes<SharedByteMatrix>(sums.blue)};
    } else if constexpr (std::is_same_v<Channel, Words>) {
      const auto sums = Convert<false>(mMatrix, p);
      return Colour<Words>{WordsOf(sums.red), WordsOf(sums.green), WordsOf(sums.blue)};
    } else {
      return Convert<Channel::kSpread>(mMatrix, p);
    }
  }

 private:
  template <bool spread>
  ZR_INLINE Vectors<2> Halves(const std::uint8_t* p) const {
    return {{this->template Half<spread>(p), this->template Half<spread>(p + Samples::kHalf)}};
  }

#if defined(__SSSE3__)
  template <Placing placing>
  ZR_INLINE Vectors<2> Placed(const std::uint8_t* p) const {
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
    if constexpr (placing == Placing::Strips && requires { Samples::Strips(p); })
      return Samples::Strips(p);
    else if constexpr (placing == Placing::Strips)
      return StripsOf(Halves<false>(p));
    else
#endif
      return Halves<placing == Placing::Quarters>(p);
  }
#endif

  template <bool spread, class Matrix>
  ZR_INLINE Colour<Sums<spread>> Convert(const Matrix& matrix, const std::uint8_t* p) const {
    const Vectors<2> x = Halves<spread>(p);
    const Colour<S16> a = matrix.template Convert<lumaFirst>(x.v[0]);
    const Colour<S16> b = matrix.template Convert<lumaFirst>(x.v[1]);
    return {{a.red, b.red}, {a.green, b.green}, {a.blue, b.blue}};
  }

  SharedMatrix mMatrix;
  SharedByteMatrix mByteMatrix;
  PairMatrix<lumaFirst> mPairs;
};

/// 4:2:2 with samples in bytes.
struct Samples8 {
  static constexpr int kGroupPixels = 2, kGroupBytes = 4, kOverread = 0, kHalf = kWidth;
  static constexpr bool kSpread = false;

  explicit ZR_INLINE Samples8(const KernelArgs&) {}

  template <bool spread>
  ZR_INLINE U8 Half(const std::uint8_t* p) const {
    return spread ? SpreadHalves(Load(p)) : Load(p);
  }

#if defined(__AVX2__) && !defined(__AVX512VBMI__)
  static ZR_INLINE Vectors<2> Strips(const std::uint8_t* p) {
    return {{LoadLanes(p, p + kWidth), LoadLanes(p + kWidth / 2, p + 3 * kWidth / 2)}};
  }
#endif
};

/// 4:2:2 with samples in words, which are cut to their upper 8 bits.
struct Samples16 {
  static constexpr int kGroupPixels = 2, kGroupBytes = 8, kOverread = 0, kHalf = 2 * kWidth;
  static constexpr bool kSpread = true;

  explicit ZR_INLINE Samples16(const KernelArgs& args) : mShift(args.shift) {}

  template <bool spread>
  ZR_INLINE U8 Half(const std::uint8_t* p) const {
    const Words x = LoadWords(p);
    const Words shifted{ShiftRight(x.a, mShift), ShiftRight(x.b, mShift)};
    return spread ? PackClipped(As<S16>(shifted.a & Splat16(0xFF)), As<S16>(shifted.b & Splat16(0xFF)))
                  : NarrowLow(shifted);
  }

 private:
  std::uint32_t mShift;
};

/// 4:2:2 with packed samples, which are cut to their upper 8 bits.
template <class Form>
struct SamplesPacked {
  static constexpr int kGroupPixels = 2, kGroupBytes = 4 / Form::kPixels * Form::kBytes;
  static constexpr int kOverread = Packed<Form>::kOverread, kHalf = Packed<Form>::kTaken;
  static constexpr bool kSpread = false;

  explicit ZR_INLINE SamplesPacked(const KernelArgs& args) : mForm{args.shift} {}

  template <bool spread>
  ZR_INLINE U8 Half(const std::uint8_t* p) const {
    const U8 samples = Packed<Form>::ReadHigh(mForm, p);
    return spread ? SpreadHalves(samples) : samples;
  }

#if defined(__AVX2__) && !defined(__AVX512VBMI__)
  static ZR_INLINE Vectors<2> Strips(const std::uint8_t* p) requires(InTwoBytes<Form> &&
                                                                     !HasUpperBytes<Form>) {
    return {{Pair<0>(p), Pair<2>(p)}};
  }
#endif

 private:
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
  /// The eights of samples `eight` and the next one, and in the second lane those half a block further on.
  template <int eight>
  static ZR_INLINE U8 Pair(const std::uint8_t* p) {
    return PackClipped(As<S16>(Upper<eight>(p) >> 8), As<S16>(Upper<eight + 1>(p) >> 8));
  }
  template <int eight>
  static ZR_INLINE U16 Upper(const std::uint8_t* p) {
    constexpr int kBytes = 8 / Form::kPixels * Form::kBytes;
    return EightSamples<Form, InTurn<0>, LanesOfParts<kBytes, 0, eight, eight + kWidth / 8>>(p);
  }
#endif

  Form mForm;
};

#if defined(__AVX512VBMI__)
/// Green of packed samples in 32-bit sums, for which one instruction adds four products of bytes. Factors
/// are signed bytes, so each pixel has its luma twice. Their multiples of eight and what remains are
/// multiplied apart.
template <class Form, bool lumaFirst>
class PackedGreens {
 public:
  static constexpr int kGroupPixels = 2, kGroupBytes = 4 / Form::kPixels * Form::kBytes, kOverread = 0;

  explicit ZR_INLINE PackedGreens(const KernelArgs& args) : PackedGreens(*args.matrix) {}

  template <class Channel>
  ZR_INLINE Grey<U8> Read(const std::uint8_t* p) const {
    return {JoinQuarters(PackClipped(Half(p), Half(p + 2 * kQuarter)))};
  }

 private:
  static constexpr int kQuarter = kWidth / 4 / kGroupPixels * kGroupBytes;  ///< bytes of a quarter of a block

  explicit ZR_INLINE PackedGreens(const YCbCrMatrix& m)
      : mEighths(ByteFactors(0, 0, m.greenU & 7, m.greenV & 7)),
        mWhole(ByteFactors(m.y / 16, m.y / 8 - m.y / 16, m.greenU >> 3, m.greenV >> 3)),
        mFirst(First(m, m.greenU + m.greenV, 1)) {}

  /// Two pixels.
  struct Group {
    static constexpr int kBytes = kGroupBytes, kResult = 8;
    static constexpr int At(int j) { return j; }
  };

  /// Luma twice, cb and cr of the first and of the second pixel: their upper eight bits.
  struct Fields {
    static constexpr int At(int i) {
      constexpr int chroma = lumaFirst ? 1 : 0;
      const int sample = i % 4 < 2 ? i % 8 / 4 * 2 + 1 - chroma : (i % 4 - 2) * 2 + chroma;
      return Form::kBits * (sample + 1) - 8;
    }
  };

  static ZR_INLINE U8 ByteFactors(int first, int second, int cb, int cr) {
    const auto byte = [](int x, int at)
                          ZR_ALWAYS { return (static_cast<std::uint32_t>(x) & 0xFF) << 8 * at; };
    return As<U8>(Splat32(byte(first, 0) | byte(second, 1) | byte(cb, 2) | byte(cr, 3)));
  }

  static ZR_INLINE S32 AddProducts(S32 sum, U8 samples, U8 factors) {
    return As<S32>(_mm512_dpbusd_epi32(As<Native>(sum), As<Native>(samples), As<Native>(factors)));
  }

  /// 128 times the values.
  ZR_INLINE S32 Quarter(const std::uint8_t* p) const {
    const U8 samples = As<U8>(_mm512_multishift_epi64_epi8(As<Native>(Constant<Fields>::Get()),
                                                           As<Native>(Spread<Group>::Read(p))));
    return AddProducts(AddProducts(mFirst, samples, mEighths) >> 3, samples, mWhole);
  }

  ZR_INLINE S16 Half(const std::uint8_t* p) const {
    return PackSigned(Quarter(p), Quarter(p + kQuarter)) >> 7;
  }

  U8 mEighths, mWhole;
  S32 mFirst;
};
#endif

/// 4:1:1: six bytes of four pixels are spread to luma and chroma in turn, as 4:2:2 has them.
template <class Order>
struct Samples411 {
  static constexpr int kGroupPixels = 4, kGroupBytes = 6;
  static constexpr int kOverread = Spread<Order>::kOverread, kHalf = kWidth / 8 * 6;
  static constexpr bool kSpread = false;

  explicit ZR_INLINE Samples411(const KernelArgs&) {}

  template <bool spread>
  ZR_INLINE U8 Half(const std::uint8_t* p) const {
    const U8 samples = Spread<Order>::Read(p);
    return spread ? SpreadHalves(samples) : samples;
  }

#if defined(__AVX2__) && !defined(__AVX512VBMI__)
  static ZR_INLINE Vectors<2> Strips(const std::uint8_t* p) {
    return {{Strip<0>(p), Strip<1>(p)}};
  }

 private:
  /// The eight pixels `eight`, and in the second lane those half a block further on.
  template <int eight>
  static ZR_INLINE U8 Strip(const std::uint8_t* p) {
    struct Bytes {
      static constexpr int At(int i) { return i / 8 * Order::kBytes + Order::At(i % 8); }
    };
    return LanesOfParts<2 * Order::kBytes, 0, eight, eight + 2>::template Shuffled<Bytes>(p);
  }
#endif
};

#if !defined(__SSSE3__)
/// Three bytes and an alpha of 0xFF from sums.
template <bool blueFirst>
struct SumsToFourBytes {
  using Channel = Sums<true>;
  static constexpr int kStep = 4;

  explicit ZR_INLINE SumsToFourBytes(const KernelArgs&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    const Channel first = First<blueFirst>(block), third = First<!blueFirst>(block);
    Put(p, first.a, block.Green().a, third.a);
    Put(p + 2 * kWidth, first.b, block.Green().b, third.b);
  }

 private:
  static ZR_INLINE void Put(std::uint8_t* p, S16 first, S16 second, S16 third) {
    const U16 low = (Doubled(first) >> 8 | (Doubled(second) & Splat16(0xFF00))) ^ Splat16(0x8080);
    const U16 high = Doubled(third) >> 8 ^ Splat16(0xFF80);
    Store(p, UnpackLow16(As<U8>(low), As<U8>(high)));
    Store(p + kWidth, UnpackHigh16(As<U8>(low), As<U8>(high)));
  }
};
#endif

#if !defined(__SSSE3__)
/// The words of RGB565p from sums.
struct SumsTo565 {
  using Channel = Sums<false>;
  static constexpr int kStep = 2;

  explicit ZR_INLINE SumsTo565(const KernelArgs&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    Store(p, Word(block.Red().a, block.Green().a, block.Blue().a));
    Store(p + kWidth, Word(block.Red().b, block.Green().b, block.Blue().b));
  }

 private:
  static ZR_INLINE U16 Word(S16 red, S16 green, S16 blue) {
    return ((Doubled(red) & Splat16(0xF800)) | ((Doubled(green) >> 5) & Splat16(0x07E0)) |
            Doubled(blue) >> 11) ^
           Splat16(0x8410);
  }
};
#endif

#if defined(__AVX512VBMI__)
/// Only green is converted, for which words take fewer instructions.
struct SumsToMono8 {
  using Channel = Sums<false>;
  static constexpr int kStep = 1;

  explicit ZR_INLINE SumsToMono8(const KernelArgs&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    Store(p, JoinHalves(SharedMatrix::Pack(block.Green().a, block.Green().b)));
  }
};
#endif

/// The writer that takes the place of another, for all of YCbCr ...
template <class Writer>
struct PairWriter {
  using Type = Writer;
};
#if defined(__SSSE3__) && !defined(__AVX512VBMI__)
template <bool blueFirst>
struct PairWriter<ThreeBytesWriter<blueFirst, false>> {
  using Type = PairsToThreeBytes<blueFirst>;
};
template <bool blueFirst>
struct PairWriter<FourBytesWriter<blueFirst, false>> {
  using Type = PairsToFourBytes<blueFirst>;
};
template <bool blueFirst>
struct PairWriter<ThreeWordsWriter<blueFirst>> {
  using Type = PairsToThreeWords<blueFirst>;
};
template <>
struct PairWriter<PlanarWriter<8, false>> {
  using Type = PairsToPlanes;
};
template <>
struct PairWriter<RGB565Writer<false>> {
  using Type = PairsTo565;
};
#endif

/// ... where pixels share chroma ...
template <class Writer>
struct SharedWriter : PairWriter<Writer> {};
#if defined(__AVX512VBMI__)
template <bool blueFirst>
struct SharedWriter<FourBytesWriter<blueFirst, false>> {
  using Type = PairsToFourBytes<blueFirst>;
};
template <>
struct SharedWriter<MonoWriter<8>> {
  using Type = SumsToMono8;
};
template <>
struct SharedWriter<RGB565Writer<false>> {
  using Type = PairsTo565;
};
#elif defined(__SSSE3__)
template <>
struct SharedWriter<MonoWriter<8>> {
  using Type = PairsToMono8;
};
#else
template <bool blueFirst>
struct SharedWriter<FourBytesWriter<blueFirst, false>> {
  using Type = SumsToFourBytes<blueFirst>;
};
template <>
struct SharedWriter<RGB565Writer<false>> {
  using Type = SumsTo565;
};
#endif

/// ... and where they do not.
template <class Writer>
struct SingleWriter : PairWriter<Writer> {};
#if defined(__SSSE3__) && !defined(__AVX512VBMI__)
template <int depth>
struct SingleWriter<MonoWriter<depth>> {
  using Type = PairsToMonoWords<depth>;
};
template <>
struct SingleWriter<MonoWriter<8>> {
  using Type = PairsToMono8;
};
template <int depth>
struct SingleWriter<PlanarWriter<depth, false>> {
  using Type = PairsToWordPlanes<depth>;
};
template <>
struct SingleWriter<PlanarWriter<8, false>> {
  using Type = PairsToPlanes;
};
#endif

template <class Samples, bool lumaFirst = true>
struct SharedLines {
  using Source = SharedReader<Samples, lumaFirst>;

  template <BlockWriter Writer>
  static void Run(const LineBlock& lines, const KernelArgs& args) {
    Lines<Source>::template Run<typename SharedWriter<Writer>::Type>(lines, args);
  }
};

/// The same of packed samples, whose green alone may be read in another way.
template <class Form, bool lumaFirst>
struct PackedLines : SharedLines<SamplesPacked<Form>, lumaFirst> {
#if defined(__AVX512VBMI__)
  template <BlockWriter Writer>
  static void Run(const LineBlock& lines, const KernelArgs& args) {
    if constexpr (std::is_same_v<Writer, MonoWriter<8>> && requires { Form::kBits; })
      Lines<PackedGreens<Form, lumaFirst>>::template Run<Writer>(lines, args);
    else
      SharedLines<SamplesPacked<Form>, lumaFirst>::template Run<Writer>(lines, args);
  }
#endif
};

template <class Reader>
struct SingleLines {
  using Source = Reader;

  template <BlockWriter Writer>
  static void Run(const LineBlock& lines, const KernelArgs& args) {
    Lines<Source>::template Run<typename SingleWriter<Writer>::Type>(lines, args);
  }
};

struct YYCbYYCr {
  static constexpr int kBytes = 6, kResult = 8;
  static constexpr int At(int j) {
    constexpr int from[8] = {0, 2, 1, 5, 3, 2, 4, 5};
    return from[j];
  }
};

struct CbYYCrYY {
  static constexpr int kBytes = 6, kResult = 8;
  static constexpr int At(int j) {
    constexpr int from[8] = {1, 0, 2, 3, 4, 0, 5, 3};
    return from[j];
  }
};

constexpr KernelRow kRows[] = {
#if defined(ZR_READS_FOURS)
    Row<SourceReader::YCbCr, SingleLines<SingleReader<SingleBytes, 1, 0, 2>>>(),
    Row<SourceReader::CbYCr, SingleLines<SingleReader<SingleBytes, 0, 1, 2>>>(),
#else
    Row<SourceReader::YCbCr, Lines<SumReader<WordsOfBytes<1, 0, 2>>>>(),
    Row<SourceReader::CbYCr, Lines<SumReader<WordsOfBytes<0, 1, 2>>>>(),
#endif
#if defined(__AVX512VBMI__)
    Row<SourceReader::CbYCr16, Lines<SumReader<WordsOfPacked<16>>>>(),
    Row<SourceReader::CbYCr10p, Lines<SumReader<WordsOfPacked<10>>>>(),
    Row<SourceReader::CbYCr12p, Lines<SumReader<WordsOfPacked<12>>>>(),
#elif defined(__AVX2__)
    Row<SourceReader::CbYCr16, SingleLines<SingleReader<SingleWords, 0, 1, 2>>>(),
    Row<SourceReader::CbYCr10p, SingleLines<SingleReader<SinglePacked<Form10p>, 0, 1, 2>>>(),
    Row<SourceReader::CbYCr12p, SingleLines<SingleReader<SinglePacked<Form12p>, 0, 1, 2>>>(),
#else
    {SourceReader::CbYCr16, {}},
    {SourceReader::CbYCr10p, {}},
    {SourceReader::CbYCr12p, {}},
#endif
    Row<SourceReader::YCbYCr8, SharedLines<Samples8, true>>(),
    Row<SourceReader::YCbYCr16, SharedLines<Samples16, true>>(),
    Row<SourceReader::YCbYCr10p, PackedLines<Form10p, true>>(),
    Row<SourceReader::YCbYCr12p, PackedLines<Form12p, true>>(),
    Row<SourceReader::YCbYCr10pCsi2, PackedLines<Form10pCsi2, true>>(),
    Row<SourceReader::CbYCrY8, SharedLines<Samples8, false>>(),
    Row<SourceReader::CbYCrY16, SharedLines<Samples16, false>>(),
    Row<SourceReader::CbYCrY10p, PackedLines<Form10p, false>>(),
    Row<SourceReader::CbYCrY12p, PackedLines<Form12p, false>>(),
    Row<SourceReader::CbYCrY10pCsi2, PackedLines<Form10pCsi2, false>>(),
    Row<SourceReader::YYCbYYCr, SharedLines<Samples411<YYCbYYCr>>>(),
    Row<SourceReader::CbYYCrYY, SharedLines<Samples411<CbYYCrYY>>>(),
};

}  // namespace

ZR_EXPORT_KERNELS(kYCbCrKernels)

}  // namespace ZrConvertersLib::simd
