#pragma once

#include "simd/Line.h"
#include "simd/Mean.h"
#include "simd/Packed.h"
#include "simd/Saturate.h"

/// Samples of two-colour lines. A pixel is two samples, green and one of red and blue in turn from pixel to
/// pixel. Samples are held as they are cheapest: those of 8 bits in bytes, deeper ones in words of the 16-bit
/// scale.

namespace ZrConvertersLib::simd {
namespace {

/// The operations on samples that are held as bytes or as words.
template <class Held>
struct Form;

template <>
struct Form<U8> {
  static constexpr int kBytes = 1;
  static constexpr PixelWriter kRow = PixelWriter::Mono8;

  /// The form of a colour for a writer's channel.
  template <class Channel>
  using Out = Channel;

  static ZR_INLINE U8 Read(const std::uint8_t* p) { return Load(p); }
  static ZR_INLINE void Put(std::uint8_t* p, U8 x) { Store(p, x); }

  /// Elements of even, or odd, places twice.
  static ZR_INLINE U8 EvenTwice(U8 x) { return As<U8>((As<U16>(x) & Splat16(0xFF)) | (As<U16>(x) << 8)); }
  static ZR_INLINE U8 OddTwice(U8 x) { return As<U8>((As<U16>(x) >> 8) | (As<U16>(x) & Splat16(0xFF00))); }

  template <class Channel>
  static ZR_INLINE Channel Mean(U8 a, U8 b) {
    return MeanOfTwo<Channel>::Get(a, b);
  }

  /// Bits of b where those of mask are set, else of a.
  static ZR_INLINE U8 Choose(U8 a, U8 b, U8 mask) { return Select(mask, b, a); }
};

template <>
struct Form<Words> {
  static constexpr int kBytes = 2;
  static constexpr PixelWriter kRow = PixelWriter::Mono16;
  template <class>
  using Out = Words;

  static ZR_INLINE Words Read(const std::uint8_t* p) { return LoadWords(p); }
  static ZR_INLINE void Put(std::uint8_t* p, const Words& x) {
    Store(p, x.a);
    Store(p + kWidth, x.b);
  }

  static ZR_INLINE Words EvenTwice(const Words& x) { return {EvenTwice(x.a), EvenTwice(x.b)}; }
  static ZR_INLINE Words OddTwice(const Words& x) { return {OddTwice(x.a), OddTwice(x.b)}; }

  /// Samples of less than 16 bits leave bit 0 clear, so nothing is rounded.
  template <class>
  static ZR_INLINE Words Mean(const Words& a, const Words& b) {
    return {MeanUp(a.a, b.a), MeanUp(a.b, b.b)};
  }

  static ZR_INLINE Words Choose(const Words& a, const Words& b, U8 mask) {
    return {Choose(a.a, b.a, mask), Choose(a.b, b.b, mask)};
  }

 private:
  static ZR_INLINE U16 EvenTwice(U16 x) {
    return As<U16>((As<U32>(x) & Splat32(0xFFFF)) | (As<U32>(x) << 16));
  }
  static ZR_INLINE U16 OddTwice(U16 x) {
    return As<U16>((As<U32>(x) >> 16) | (As<U32>(x) & Splat32(0xFFFF0000)));
  }
  static ZR_INLINE U16 Choose(U16 a, U16 b, U8 mask) { return As<U16>(Select(mask, As<U8>(b), As<U8>(a))); }
};

/// The samples of a block of pixels: the one that is red or blue, and green.
template <class Held>
struct TwoColours {
  Held colour, green;
};

/// Samples of `size` bytes of two vectors told apart by colour.
template <int size>
class ColourSplit {
 public:
#if defined(__AVX512VBMI__)
  explicit ZR_INLINE ColourSplit(const KernelArgs& args)
      : mColour(Constant<First>::Get() + Splat8(args.greenFirst ? size : 0)),
        mGreen(Constant<First>::Get() + Splat8(args.greenFirst ? 0 : size)) {}

  ZR_INLINE TwoColours<U8> operator()(U8 a, U8 b) const {
    return {Of(mColour, a, b), Of(mGreen, a, b)};
  }

 private:
  /// Of half a vector of pixels.
  struct First {
    static constexpr int At(int i) { return i % 32 / size * 2 * size + i % size; }
  };

  static ZR_INLINE U8 Of(U8 from, U8 a, U8 b) {
    const Native low = _mm512_permutexvar_epi8(As<Native>(from), As<Native>(a));
    return As<U8>(_mm512_mask_permutexvar_epi8(low, 0xFFFFFFFF00000000, As<Native>(from), As<Native>(b)));
  }

  U8 mColour, mGreen;
#elif !defined(__x86_64__) || defined(__SSSE3__)
  explicit ZR_INLINE ColourSplit(const KernelArgs& args)
      : mFrom(args.greenFirst ? Constant<Halves<true>>::Get() : Constant<Halves<false>>::Get()) {}

  ZR_INLINE TwoColours<U8> operator()(U8 a, U8 b) const {
    const U8 first = ShuffleBytes(a, mFrom), second = ShuffleBytes(b, mFrom);
    return {JoinHalves(UnpackLow64(first, second)), JoinHalves(UnpackHigh64(first, second))};
  }

 private:
  /// In each lane red and blue, then green.
  template <bool greenFirst>
  struct Halves {
    static constexpr int At(int i) {
      const bool second = greenFirst == (i % 16 < 8);
      return i % 8 / size * 2 * size + (second ? size : 0) + i % size;
    }
  };

  U8 mFrom;
#else
  explicit ZR_INLINE ColourSplit(const KernelArgs& args) : mGreenFirst(Splat8(args.greenFirst ? 0xFF : 0)) {}

  ZR_INLINE TwoColours<U8> operator()(U8 a, U8 b) const {
    const U8 first = Firsts(a, b), second = Seconds(a, b);
    return {Select(mGreenFirst, second, first), Select(mGreenFirst, first, second)};
  }

 private:
  static ZR_INLINE U8 Firsts(U8 a, U8 b) {
    if constexpr (size == 1)
      return NarrowLow(Words{As<U16>(a), As<U16>(b)});
    else
      return As<U8>(NarrowHigh(As<U32>(a) << 16, As<U32>(b) << 16));
  }
  static ZR_INLINE U8 Seconds(U8 a, U8 b) {
    if constexpr (size == 1)
      return NarrowHigh(Words{As<U16>(a), As<U16>(b)});
    else
      return As<U8>(NarrowHigh(As<U32>(a), As<U32>(b)));
  }

  U8 mGreenFirst;
#endif
};

/// The colours of a block in words, of which `split` gives half a block.
template <class F>
ZR_INLINE TwoColours<Words> TwoHalves(F split) {
  const TwoColours<U8> first = split(0), second = split(1);
  return {{As<U16>(first.colour), As<U16>(second.colour)}, {As<U16>(first.green), As<U16>(second.green)}};
}

/// Samples in bytes.
struct ByteSamples {
  using Held = U8;
  static constexpr int kGroupPixels = 2, kGroupBytes = 4, kOverread = 0;

  explicit ZR_INLINE ByteSamples(const KernelArgs& args) : mSplit(args) {}

  ZR_INLINE TwoColours<U8> Read(const std::uint8_t* p) const { return mSplit(Load(p), Load(p + kWidth)); }

  /// A vector's worth of samples as in memory, on the 16-bit scale.
  ZR_INLINE Words Scaled(const std::uint8_t* p) const { return WidenHigh(Load(p)); }

 private:
  ColourSplit<1> mSplit;
};

/// Samples in words, brought to the 16-bit scale by a left shift.
struct WordSamples {
  using Held = Words;
  static constexpr int kGroupPixels = 2, kGroupBytes = 8, kOverread = 0;

  explicit ZR_INLINE WordSamples(const KernelArgs& args) : mSplit(args), mShift(args.shift) {}

  ZR_INLINE TwoColours<Words> Read(const std::uint8_t* p) const {
    return TwoHalves([&](int half) ZR_ALWAYS {
      const Words pixels = Scaled(p + 2 * half * kWidth);
      return mSplit(As<U8>(pixels.a), As<U8>(pixels.b));
    });
  }

  ZR_INLINE Words Scaled(const std::uint8_t* p) const {
    const Words x = LoadWords(p);
    return {ShiftLeft(x.a, mShift), ShiftLeft(x.b, mShift)};
  }

 private:
  ColourSplit<2> mSplit;
  std::uint32_t mShift;
};

#if defined(__AVX2__)

/// Packed samples of two vectors told apart by colour as they are unpacked.
template <class Packing>
class PackedSplit {
 public:
  static constexpr int kPair = 4 / Packing::kPixels * Packing::kBytes, kTaken = kPair * kWidth / 4;

  explicit ZR_INLINE PackedSplit(const KernelArgs& args)
      : mFrom(args.greenFirst ? Groups<true>::Index() : Groups<false>::Index()),
        mColour(Factors(args.greenFirst ? 1 : 0)),
        mGreen(Factors(args.greenFirst ? 0 : 1)) {}

  /// Of half a block from its first byte.
  ZR_INLINE TwoColours<U8> operator()(const std::uint8_t* p) const {
#if defined(__AVX512VBMI__)
    const U8 a = Halves(Groups<true>::LoadGroups(p)), b = Halves(Groups<true>::LoadGroups(p + kTaken / 2));
    const U8 colour = JoinHalves(UnpackLow64(a, b)), green = JoinHalves(UnpackHigh64(a, b));
#else
    // With every second lane in one vector, unpacking gives natural order.
    const U8 a = Halves(Groups<true>::template LoadGroups<2>(p));
    const U8 b = Halves(Groups<true>::template LoadGroups<2>(p + kTaken / 4));
    const U8 colour = UnpackLow64(a, b), green = UnpackHigh64(a, b);
#endif
    return {Scaled(colour, mColour), Scaled(green, mGreen)};
  }

 private:
  /// Two pairs of pixels to a lane: red and blue, then green, each in the two bytes from its first one on.
  template <bool greenFirst>
  struct ByColour {
    static constexpr int kBytes = 2 * kPair, kResult = 16;
    static constexpr int At(int j) {
      const int sample = j % 4 / 2 * 2 + (greenFirst == (j < 8) ? 1 : 0);
      return j % 8 / 4 * kPair + Packing::kBits * sample / 8 + j % 2;
    }
  };
  template <bool greenFirst>
  using Groups = Spread<ByColour<greenFirst>>;

  ZR_INLINE U8 Halves(U8 groups) const {
#if defined(__AVX512VBMI__)
    return As<U8>(_mm512_permutexvar_epi8(As<Native>(mFrom), As<Native>(groups)));
#else
    return ShuffleBytes(groups, mFrom);
#endif
  }

  /// Bring the samples of two pixels, first or second ones, to the top of their words.
  static ZR_INLINE U16 Factors(unsigned sample) {
    return As<U16>(Splat32(FactorOf(sample) | FactorOf(sample + 2) << 16));
  }
  static constexpr unsigned FactorOf(unsigned sample) {
    constexpr unsigned kBits = Packing::kBits;
    return 1U << (16 - kBits - kBits * sample % 8);
  }

  static ZR_INLINE U8 Scaled(U8 words, U16 factors) {
    return As<U8>((As<U16>(words) * factors) & Splat16(0xFFFFU << (16 - Packing::kBits)));
  }

  U8 mFrom;
  U16 mColour, mGreen;
};

#else

template <class Packing>
class PackedSplit {
 public:
  static constexpr int kTaken = Packed<Packing>::kTaken;

  explicit ZR_INLINE PackedSplit(const KernelArgs& args) : mSplit(args) {}

  ZR_INLINE TwoColours<U8> operator()(const std::uint8_t* p) const {
    const Words pixels = Packed<Packing>::Read(Packing{}, p);
    return mSplit(As<U8>(pixels.a), As<U8>(pixels.b));
  }

 private:
  ColourSplit<2> mSplit;
};

#endif

/// Packed samples.
template <class Packing>
struct PackedSamples {
  using Held = Words;
  static constexpr int kGroupPixels = 2, kGroupBytes = 4 / Packing::kPixels * Packing::kBytes;
  static constexpr int kOverread = Packed<Packing>::kOverread;

  explicit ZR_INLINE PackedSamples(const KernelArgs& args) : mSplit(args) {}

  ZR_INLINE TwoColours<Words> Read(const std::uint8_t* p) const {
    return TwoHalves([&](int half) ZR_ALWAYS { return mSplit(p + half * mSplit.kTaken); });
  }

  /// A vector's worth of samples as in memory.
  ZR_INLINE Words Scaled(const std::uint8_t* p) const { return Packed<Packing>::Read(Packing{}, p); }

 private:
  PackedSplit<Packing> mSplit;
};

}  // namespace
}  // namespace ZrConvertersLib::simd
