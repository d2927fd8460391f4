#pragma once

#include "simd/Products.h"
#include "simd/Writers.h"

/// Colours of YCbCr with blue and red side by side, for destinations of bytes. A word of a source vector has
/// luma in one byte and one chroma sample in the other, so that one instruction multiplies and adds both and
/// gives a word of blue or of red.

namespace ZrConvertersLib::simd {
namespace {

#if defined(__SSSE3__)

/// The products of neighbouring bytes, signed ones and factors of up to 255, added within -32768 and 32767.
ZR_INLINE S16 MultiplyAddBytes(U8 x, U16 factors) {
#if defined(__AVX512VBMI__)
  return As<S16>(_mm512_maddubs_epi16(As<Native>(factors), As<Native>(x)));
#elif defined(__AVX2__)
  return As<S16>(_mm256_maddubs_epi16(As<Native>(factors), As<Native>(x)));
#else
  return As<S16>(_mm_maddubs_epi16(As<Native>(factors), As<Native>(x)));
#endif
}

/// Byte i of every 16 is byte Map::At(i) of the same 16, or 0 where that is negative.
template <class Map>
ZR_INLINE U8 ShuffleSixteens(U8 x) {
  struct Index {
    static constexpr int At(int i) { return Map::At(i % 16) < 0 ? 0xFF : Map::At(i % 16); }
  };
  constexpr bool kMoves = [] {
    for (int i = 0; i < 16; ++i)
      if (Map::At(i) != i) return true;
    return false;
  }();
  if constexpr (kMoves)
    return ShuffleBytes(x, Constant<Index>::Get());
  else
    return x;
}

/// Where eight pixels of a lane of 16 bytes stand: Blue and Red give bytes, Green gives words.
struct LanesOfGroups {  ///< of shared chroma: blue of even and red of odd pixels, then the others
  static constexpr int Blue(int pixel) { return pixel % 2 == 0 ? pixel : 7 + pixel; }
  static constexpr int Red(int pixel) { return pixel % 2 == 0 ? 9 + pixel : pixel; }
  static constexpr int Green(int pixel) { return pixel; }
};
struct LanesOfPixels {  ///< of 4:4:4: green of the two halves in turn
  static constexpr int Blue(int pixel) { return 2 * pixel; }
  static constexpr int Red(int pixel) { return 2 * pixel + 1; }
  static constexpr int Green(int pixel) { return pixel % 4 * 2 + pixel / 4; }
};

/// Half a block in words of 128 times the value and a fraction, below 0 where it is to be clipped: two
/// vectors of blue and red in turn, and one of green.
struct HalfOfPairs {
  S16 first, second, green;
};

/// Blue and red as bytes, where the pixels' order has them.
ZR_INLINE U8 BlueRed(const HalfOfPairs& half) {
  return PackClipped(half.first >> 7, half.second >> 7);
}

/// The same with the upper five bits of blue, which products shift further than red.
ZR_INLINE U8 FiveBitBlueRed(const HalfOfPairs& half) {
  const S16 factors = As<S16>(Splat32(0x02000040));
  return PackClipped(MultiplyUpper(half.first, factors), MultiplyUpper(half.second, factors));
}

template <class Lanes>
struct ColourPairs {
  using Order = Lanes;
  HalfOfPairs a, b;
};

/// Green alone, in the order of the pixels.
struct HalfOfGreens {
  S16 green;
};

struct Greens {
  struct Order {
    static constexpr int Green(int pixel) { return pixel; }
  };
  HalfOfGreens a, b;
};

/// Which pixels the lanes of a block have. Where a lane is a vector there is one answer.
enum class Placing {
  Natural,   ///< eight in turn
  Quarters,  ///< of half a block, two quarters in turn in the halves of the lanes: the first in both lower
             ///< ones
  Strips     ///< 16 in turn, in a lane of a and in the same lane of b
};

/// What a writer that takes pairs asks for.
template <Placing placing>
struct AsPairs {
  static constexpr Placing kPlacing = placing;
};

/// The same for destinations of green alone.
template <Placing placing>
struct AsGreens : AsPairs<placing> {
  static constexpr bool kGreenOnly = true;
};

template <class To, class Order>
ZR_INLINE const ColourPairs<Order>& In(const ColourPairs<Order>& block) {
  return block;
}
template <class To>
ZR_INLINE const Greens& In(const Greens& block) {
  return block;
}

/// The lower words of a and the upper ones of b in 32-bit elements.
ZR_INLINE U8 LowerAndUpper(U8 a, U8 b) {
  struct IsUpper {
    static constexpr bool At(int i) { return i % 4 >= 2; }
  };
  return BlendWords<IsUpper>(a, b);
}

/// The matrix on words of luma and chroma, lumaFirst as the lower byte. Factors are in 1/128, which luma's
/// are without a fraction. Of those of chroma the integers are multiplied with luma, and the rest, in
/// eighths, apart. A sum that stopped at either end of the range stays beyond what is clipped, since what is
/// added then is small or has the sign that it takes.
template <bool lumaFirst>
class PairMatrix {
 public:
  explicit ZR_INLINE PairMatrix(const YCbCrMatrix& m)
      : mBlueRed(As<U16>(Splat32(Pair(m, m.blueU) | (Pair(m, m.redV) << 16)))),
        mRest(Factors(32 * Rest(m.blueU), 32 * Rest(m.redV))),
        mLuma(static_cast<unsigned>(m.y) / 8),
        mGreen(Factors(32 * m.greenU, 32 * m.greenV)),
        mOffset(As<S16>(Splat16(static_cast<unsigned>((512 + (128 - m.yOffset) * m.y) / 8)))) {}

  /// Of kWidth / 2 pixels of which two share chroma: words of luma with cb and with cr in turn.
  ZR_INLINE HalfOfPairs Shared(U8 samples) const {
    const U8 centred = samples ^ Splat8(0x80), exchanged = ShuffleSixteens<LumaExchanged>(centred);
    const S16 chroma = Chroma(centred), rest = ChromaRest(chroma);
    const S16 green = Twice<false>(As<S16>(MultiplyAddPairs(S32{}, chroma, mGreen)));
    return {Outer(centred, rest), Outer(exchanged, rest), Green(centred, green)};
  }

  /// Of twice kWidth / 4 pixels: luma with cb and the same luma with cr.
  ZR_INLINE HalfOfPairs Single(U8 first, U8 second) const {
    const U8 a = first ^ Splat8(0x80), b = second ^ Splat8(0x80);
    const S16 chromaA = Chroma(a), chromaB = Chroma(b);
    const S16 green = As<S16>(
        JoinUpper(MultiplyAddPairs(S32{}, chromaA, mGreen), MultiplyAddPairs(S32{}, chromaB, mGreen)));
    return {Outer(a, ChromaRest(chromaA)), Outer(b, ChromaRest(chromaB)), Green(LowerAndUpper(a, b), green)};
  }

 private:
  struct LumaExchanged {
    static constexpr int At(int i) { return i % 2 == (lumaFirst ? 0 : 1) ? i ^ 2 : i; }
  };

  static constexpr int Whole(int factor) { return factor / 8 < 255 ? factor / 8 : 255; }
  static constexpr int Rest(int factor) { return factor - 8 * Whole(factor); }

  static ZR_INLINE std::uint32_t Pair(const YCbCrMatrix& m, int chroma) {
    const int luma = m.y / 8, whole = Whole(chroma);
    return static_cast<std::uint32_t>(lumaFirst ? luma | whole << 8 : whole | luma << 8);
  }

  /// 256 times the chroma samples.
  static ZR_INLINE S16 Chroma(U8 centred) {
    return As<S16>(lumaFirst ? As<U16>(centred) & Splat16(0xFF00) : As<U16>(centred) << 8);
  }

  ZR_INLINE S16 ChromaRest(S16 chroma) const { return MultiplyUpper(chroma, mRest) + mOffset; }

  /// Blue and red.
  ZR_INLINE S16 Outer(U8 centred, S16 rest) const {
    return AddClipped(MultiplyAddBytes(centred, mBlueRed), rest);
  }

  ZR_INLINE S16 Green(U8 centred, S16 chroma) const {
    return AddClipped(AddClipped(MultiplyBytes<lumaFirst>(centred, mLuma), chroma), mOffset);
  }

  U16 mBlueRed;
  S16 mRest;
  unsigned mLuma;
  S16 mGreen, mOffset;
};

/// Green in the order of the pixels, not less than 0.
template <class Order, class Half>
ZR_INLINE S16 GreenWords(const Half& half) {
  struct InOrder {
    static constexpr int At(int i) { return 2 * Order::Green(i / 2) + i % 2; }
  };
  const S16 green = As<S16>(ShuffleSixteens<InOrder>(As<U8>(half.green)));
  return green > S16{} ? green : S16{};
}

/// Blue and red, or red and blue, in the order of the pixels.
template <class Order, bool blueFirst>
ZR_INLINE U8 OuterBytes(U8 blueRed) {
  struct InOrder {
    static constexpr int At(int i) {
      return i % 2 == (blueFirst ? 0 : 1) ? Order::Blue(i / 2) : Order::Red(i / 2);
    }
  };
  return ShuffleSixteens<InOrder>(blueRed);
}

/// Three bytes and an alpha of 0xFF.
template <bool blueFirst>
struct PairsToFourBytes {
  using Channel = AsPairs<Placing::Quarters>;
  static constexpr int kStep = 4;

  explicit ZR_INLINE PairsToFourBytes(const KernelArgs&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    Put<typename Block::Order>(p, block.a);
    Put<typename Block::Order>(p + 2 * kWidth, block.b);
  }

 private:
  template <class Order>
  static ZR_INLINE void Put(std::uint8_t* p, const HalfOfPairs& half) {
    const U8 outer = OuterBytes<Order, blueFirst>(BlueRed(half));
    const U8 inner = As<U8>(As<U16>(GreenWords<Order>(half) >> 7) | Splat16(0xFF00));
    Store(p, UnpackLow8(outer, inner));
    Store(p + kWidth, UnpackHigh8(outer, inner));
  }
};

/// The words of RGB565p.
struct PairsTo565 {
  using Channel = AsPairs<Placing::Natural>;
  static constexpr int kStep = 2;

  explicit ZR_INLINE PairsTo565(const KernelArgs&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    Store(p, Word<typename Block::Order>(block.a));
    Store(p + kWidth, Word<typename Block::Order>(block.b));
  }

 private:
  template <class Order>
  static ZR_INLINE U16 Word(const HalfOfPairs& half) {
    const U8 blueRed = OuterBytes<Order, true>(FiveBitBlueRed(half));
    const U16 green = As<U16>(GreenWords<Order>(half)) >> 4;
    return As<U16>(Select(As<U8>(Splat16(0x07E0)), As<U8>(green), blueRed));
  }
};

#if !defined(__AVX512VBMI__)
/// The green of a block as bytes, each lane of a followed by the same lane of b.
template <class Block>
ZR_INLINE U8 GreenBytes(const Block& block) {
  return PackClipped(block.a.green >> 7, block.b.green >> 7);
}

/// Byte of GreenBytes of a pixel in a strip.
template <class Order>
constexpr int GreenByte(int pixel) {
  return pixel / 8 * 8 + Order::Green(pixel % 8);
}

template <class Order>
struct GreenInOrder {
  static constexpr int At(int i) { return GreenByte<Order>(i); }
};

/// Byte i of lane `part` of a strip as three elements of `size` bytes a pixel -> byte of GreenBytes, or -1.
template <class Order, int size, int part>
struct GreenOfStrip {
  static constexpr int At(int i) {
    const int at = (16 * part + i) / size;
    return i % size == size - 1 && at % 3 == 1 ? GreenByte<Order>(at / 3) : -1;
  }
};

/// The same -> byte of blueRed of half a block, or -1.
template <class Order, int size, int part, bool blueFirst, int half>
struct OuterOfStrip {
  static constexpr int At(int i) {
    const int at = (16 * part + i) / size, pixel = at / 3 - 8 * half;
    if (i % size != size - 1 || at % 3 == 1 || pixel < 0 || pixel >= 8) return -1;
    return at % 3 == (blueFirst ? 0 : 2) ? Order::Blue(pixel) : Order::Red(pixel);
  }
};

/// The vectors of lanes `part` of all strips, of three elements a pixel whose upper bytes are the values.
template <int size, bool blueFirst, int part, class Order>
ZR_INLINE U8 StripPart(const ColourPairs<Order>& block, U8 green) {
  constexpr int kHalf = 3 * size / 2;  // lanes of the pixels in half a block, rounded down
  U8 x = ShuffleSixteens<GreenOfStrip<Order, size, part>>(green);
  if constexpr (2 * part < 3 * size)
    x |= ShuffleSixteens<OuterOfStrip<Order, size, part, blueFirst, 0>>(BlueRed(block.a));
  if constexpr (part >= kHalf)
    x |= ShuffleSixteens<OuterOfStrip<Order, size, part, blueFirst, 1>>(BlueRed(block.b));
  return x;
}

/// Three bytes a pixel.
template <bool blueFirst>
struct PairsToThreeBytes {
  using Channel = AsPairs<Placing::Strips>;
  static constexpr int kStep = 3;

  explicit ZR_INLINE PairsToThreeBytes(const KernelArgs&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    const U8 green = GreenBytes(block);
    StoreLanes3(p,
                ForEach<3>([&](auto part) ZR_ALWAYS { return StripPart<1, blueFirst, part>(block, green); }));
  }
};

/// Three words a pixel.
template <bool blueFirst>
struct PairsToThreeWords {
  using Channel = AsPairs<Placing::Strips>;
  static constexpr int kStep = 6;

  explicit ZR_INLINE PairsToThreeWords(const KernelArgs&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    const U8 green = GreenBytes(block);
    Unrolled<3>([&](auto i) ZR_ALWAYS {
      Put(p + 32 * i, StripPart<2, blueFirst, 2 * i>(block, green),
          StripPart<2, blueFirst, 2 * i + 1>(block, green));
    });
  }

 private:
  /// Two lanes of each strip.
  static ZR_INLINE void Put(std::uint8_t* p, U8 first, U8 second) {
#if defined(__AVX2__)
    const auto a = As<Native>(first), b = As<Native>(second);
    Store(p, _mm256_permute2x128_si256(a, b, 0x20));
    Store(p + 3 * kWidth, _mm256_permute2x128_si256(a, b, 0x31));
#else
    Store(p, first);
    Store(p + kWidth, second);
#endif
  }
};

/// A vector for each channel of a block in strips.
template <class Order>
ZR_INLINE Colour<U8> Channels(const ColourPairs<Order>& block) {
  struct Apart {
    static constexpr int At(int i) { return i < 8 ? Order::Blue(i) : Order::Red(i - 8); }
  };
  const U8 a = ShuffleSixteens<Apart>(BlueRed(block.a)), b = ShuffleSixteens<Apart>(BlueRed(block.b));
  return {UnpackHigh64(a, b), ShuffleSixteens<GreenInOrder<Order>>(GreenBytes(block)), UnpackLow64(a, b)};
}

/// Planes of bytes.
struct PairsToPlanes {
  using Channel = AsPairs<Placing::Strips>;
  static constexpr int kStep = 1;

  explicit ZR_INLINE PairsToPlanes(const KernelArgs& args) : mPlane(args.planeDistance) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    const Colour<U8> channels = Channels(block);
    Store(p, channels.red);
    Store(p + mPlane, channels.green);
    Store(p + 2 * mPlane, channels.blue);
  }

 private:
  std::ptrdiff_t mPlane;
};

/// Values of green as words of `depth` bits.
template <int depth, class Order, class Half>
ZR_INLINE U16 GreenSamples(const Half& half) {
  const U16 green = As<U16>(GreenWords<Order>(half));
  return depth == 16 ? (green << 1) & Splat16(0xFF00) : (green >> 7) << (depth - 8);
}

/// Planes of words of `depth` bits.
template <int depth>
struct PairsToWordPlanes {
  using Channel = AsPairs<Placing::Natural>;
  static constexpr int kStep = 2;

  explicit ZR_INLINE PairsToWordPlanes(const KernelArgs& args) : mPlane(args.planeDistance) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    Put<typename Block::Order>(p, block.a);
    Put<typename Block::Order>(p + kWidth, block.b);
  }

 private:
  template <class Order>
  ZR_INLINE void Put(std::uint8_t* p, const HalfOfPairs& half) const {
    const U16 blueRed = As<U16>(OuterBytes<Order, true>(BlueRed(half)));
    Store(p, depth == 16 ? blueRed & Splat16(0xFF00) : (blueRed >> 8) << (depth - 8));
    Store(p + mPlane, GreenSamples<depth, Order>(half));
    Store(p + 2 * mPlane, (blueRed << 8) >> (16 - depth));
  }

  std::ptrdiff_t mPlane;
};

/// Green as words of `depth` bits.
template <int depth>
struct PairsToMonoWords {
  using Channel = AsGreens<Placing::Natural>;
  static constexpr int kStep = 2;

  explicit ZR_INLINE PairsToMonoWords(const KernelArgs&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    using Order = typename Block::Order;
    Store(p, GreenSamples<depth, Order>(block.a));
    Store(p + kWidth, GreenSamples<depth, Order>(block.b));
  }
};

/// Green as bytes.
struct PairsToMono8 {
  using Channel = AsGreens<Placing::Strips>;
  static constexpr int kStep = 1;

  explicit ZR_INLINE PairsToMono8(const KernelArgs&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    Store(p, ShuffleSixteens<GreenInOrder<typename Block::Order>>(GreenBytes(block)));
  }
};
#endif

#else
/// There is no instruction for it.
template <bool lumaFirst>
struct PairMatrix {
  explicit ZR_INLINE PairMatrix(const YCbCrMatrix&) {}
};
#endif

}  // namespace
}  // namespace ZrConvertersLib::simd
