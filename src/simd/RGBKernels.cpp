#include "simd/Line.h"
#include "simd/Packed.h"

/// Readers of interleaved red, green and blue. Alpha is ignored.

namespace ZrConvertersLib::simd {
namespace {

/// Red, green, blue or blue, green, red.
template <bool blueFirst, class Channel>
ZR_INLINE Colour<Channel> Ordered(const Channel& first, const Channel& second, const Channel& third) {
  if constexpr (blueFirst)
    return {third, second, first};
  else
    return {first, second, third};
}

/// Vectors as in memory to one vector each of the first three channels.
template <int size>
ZR_INLINE Vectors<3> Channels(const Vectors<3>& memory) {
  return Deinterleave3<size>(memory);
}

template <int size>
ZR_INLINE Vectors<3> Channels(const Vectors<4>& memory) {
  return Deinterleave4<size>(memory);
}

#if defined(__AVX2__)
inline constexpr bool kPacks565 = true;

ZR_INLINE U8 PackWords(U32 a, U32 b) {
#if defined(__AVX512VBMI__)
  return As<U8>(_mm512_packus_epi32(As<Native>(a), As<Native>(b)));
#else
  return As<U8>(_mm256_packus_epi32(As<Native>(a), As<Native>(b)));
#endif
}

/// Vector `vector` of words of five, six and five bits from pixels of 32 bits, of which a layout makes them.
template <class Layout, int vector>
ZR_INLINE U8 Read565Of(const std::uint8_t* p) {
  const auto words = [&](int i) ZR_ALWAYS { return Layout::To565(As<U32>(Load(p + i * kWidth))); };
  return JoinHalves(PackWords(words(2 * vector), words(2 * vector + 1)));
}
#else
inline constexpr bool kPacks565 = false;

template <class Layout, int vector>
U8 Read565Of(const std::uint8_t* p);
#endif

#if defined(__AVX2__) && !defined(__AVX512VBMI__)
inline constexpr bool kSums565 = true;

/// Pixels of four bytes to words of five, six and five bits. The fields stay apart, so sums of products put
/// them together: `bytes` has the factors of the bytes and `words` those of the sums of each two, which give
/// eight times the word.
template <unsigned fields, unsigned bytes, unsigned words>
ZR_INLINE U32 Sum565(U8 pixels) {
  const U8 kept = pixels & As<U8>(Splat32(fields));
  const auto sums = _mm256_maddubs_epi16(As<Native>(kept), As<Native>(Splat32(bytes)));
  return As<U32>(_mm256_madd_epi16(sums, As<Native>(Splat32(words)))) >> 3;
}

template <bool blueFirst>
ZR_INLINE U32 Word565Of(U8 pixels) {
  constexpr unsigned kFields = 0x00F8FCF8;
  if constexpr (blueFirst)
    return Sum565<kFields, 0x00014001, 0x08000001>(pixels);
  else
    return Sum565<kFields, 0x00010240, 0x00010020>(pixels);
}

/// Byte of a vector of four-byte pixels -> byte of the block as From, in the order in which packing two of
/// the vectors gives natural order.
template <class From, int vector>
struct ForPacking {
  using Moved = MovedByte<From, PixelLayout<1, 4, From::kBlueFirst>, 0>;
  static constexpr int kBytes = Moved::kBytes;
  static constexpr int At(int i) {
    const int lane = vector / 2 * 4 + i / kLane * 2 + vector % 2;
    return Moved::At(lane * kLane + i % kLane);
  }
};

/// Vector `vector` of words from bytes of three or four channels.
template <class From, int vector>
ZR_INLINE U8 Read565(const std::uint8_t* p) {
  if constexpr (From::kChannels == 4) {
    const auto words = [&](int i) ZR_ALWAYS { return Word565Of<From::kBlueFirst>(Load(p + i * kWidth)); };
    return JoinHalves(PackWords(words(2 * vector), words(2 * vector + 1)));
  } else {
    return PackWords(Word565Of<From::kBlueFirst>(Gather<ForPacking<From, 2 * vector>>(p)),
                     Word565Of<From::kBlueFirst>(Gather<ForPacking<From, 2 * vector + 1>>(p)));
  }
}
#else
inline constexpr bool kSums565 = false;

template <class From, int vector>
U8 Read565(const std::uint8_t* p);
#endif

/// One byte a channel.
template <int channels, bool blueFirst>
struct BytesReader {
  using Pixel = PixelLayout<1, channels, blueFirst>;
  static constexpr int kGroupPixels = 1, kGroupBytes = channels, kOverread = 0;

  explicit ZR_INLINE BytesReader(const KernelArgs&) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    const Vectors<3> x = Channels<1>(LoadVectors<channels>(p));
    return Ordered<blueFirst>(x.v[0], x.v[1], x.v[2]);
  }

  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const requires(Moves<Pixel, To>) {
    return Opaque<To>(Gather<MovedByte<Pixel, To, vector>>(p));
  }

  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const requires(kSums565&& std::same_as<To, Word565>) {
    return Read565<Pixel, vector>(p);
  }
};

/// One little-endian word a channel, brought to the 16-bit scale by a left shift.
template <int channels, bool blueFirst>
struct WordsReader {
  using Pixel = PixelLayout<2, channels, blueFirst>;
  static constexpr int kGroupPixels = 1, kGroupBytes = 2 * channels, kOverread = 0;

  explicit ZR_INLINE WordsReader(const KernelArgs& args) : mShift(args.shift) {}

  template <class Channel>
  ZR_INLINE Colour<Channel> Read(const std::uint8_t* p) const {
    if constexpr (sizeof(Channel) == sizeof(U8))
      return ReadBytes(p);
    else
      return ReadWords(p);
  }

  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const requires(Moves<Pixel, To>) {
    return As<U8>(Scale(Gather<MovedByte<Pixel, To, vector>>(p)));
  }

  /// Green alone is narrowed after it is taken from the words.
  template <class Channel>
  ZR_INLINE Grey<Words> ReadGreen(const std::uint8_t* p) const requires(channels == 3) {
    return {ReadWords(p).green};
  }

  /// Bytes are narrowed from words in the same order.
  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const requires(MovesNarrowed<Pixel, To>) {
    using Wide = PixelLayout<2, To::kChannels, To::kBlueFirst>;
    return Opaque<To>(NarrowHigh({Scale(Gather<MovedByte<Pixel, Wide, 2 * vector>>(p)),
                                  Scale(Gather<MovedByte<Pixel, Wide, 2 * vector + 1>>(p))}));
  }

 private:
  ZR_INLINE U16 Scale(U8 x) const { return ShiftLeft(As<U16>(x), mShift); }

  ZR_INLINE Colour<Words> ReadWords(const std::uint8_t* p) const {
    const Vectors<3> a = Channels<2>(LoadVectors<channels>(p));
    const Vectors<3> b = Channels<2>(LoadVectors<channels>(p + channels * kWidth));
    const auto words = [&](unsigned i) ZR_ALWAYS { return Words{Scale(a.v[i]), Scale(b.v[i])}; };
    return Ordered<blueFirst>(words(0), words(1), words(2));
  }

  /// For 8-bit writers the samples are narrowed as they lie, which halves what is to be sorted by channel.
  ZR_INLINE Colour<U8> ReadBytes(const std::uint8_t* p) const {
    const auto narrowed = [&](auto i) ZR_ALWAYS {
      const Words x = LoadWords(p + i * 2 * kWidth);
      return NarrowHigh({Scale(As<U8>(x.a)), Scale(As<U8>(x.b))});
    };
    const Vectors<3> x = Channels<1>(ForEach<channels>(narrowed));
    return Ordered<blueFirst>(x.v[0], x.v[1], x.v[2]);
  }

  std::uint32_t mShift;
};

/// Whether samples are moved to the order of To without taking their channels apart.
template <class To>
concept MovesSamples = kGathers && To::kChannels >= 3;

/// Packed samples with the channels of From as a vector of those of To.
template <class Form, class From, class To, int vector>
ZR_INLINE U8 ReadMoved(const std::uint8_t* p) {
  using Moved = MovedSamples<Form, From, To>;
  if constexpr (To::kSize == 1)
    return Opaque<To>(Moved::template ReadHigh<vector>(p));
  else
    return As<U8>(Moved::template ReadWords<vector>(p));
}

/// The pairs of bytes that hold the samples of red, green or blue of half a block.
template <class Form, class From, int vector, int channel>
struct ChannelPairs {
  using Moved = MovedSamples<Form, From, PixelLayout<2, 3, false>>;
  static constexpr int kBytes = Moved::kBytes;
  static constexpr int Element(int i) { return 3 * (vector * kWidth / 2 + i / 2) + channel; }
  static constexpr int At(int i) { return Moved::Byte(Element(i), i % 2); }
};

#if defined(__AVX2__)
/// Words of red, green and blue of half a block of packed samples, four a pixel. Where one shuffle reaches a
/// whole vector, it takes a channel from all loads; elsewhere one sorts the samples of each lane.
template <class Form, class From, int vector>
struct WordsOfFour {
#if defined(__AVX512VBMI__)
  static ZR_INLINE Vectors<3> Read(const std::uint8_t* p) {
    return ForEach<3>([&](auto channel) ZR_ALWAYS {
      using Pairs = ChannelPairs<Form, From, vector, channel>;
      return As<U8>(Form::Scaled(As<U16>(Gather<Pairs>(p)),
                                 As<U16>(Constant<typename Pairs::Moved::template Factors<Pairs>>::Get())));
    });
  }
#else
  static ZR_INLINE Vectors<3> Read(const std::uint8_t* p) {
    const Vectors<4> x = ForEach<4>([&](auto pair) ZR_ALWAYS { return Gather<Sorted<pair>>(p); });
    const U8 low01 = UnpackLow32(x.v[0], x.v[1]), low23 = UnpackLow32(x.v[2], x.v[3]);
    const U8 high01 = UnpackHigh32(x.v[0], x.v[1]), high23 = UnpackHigh32(x.v[2], x.v[3]);
    return {{Scaled<0>(UnpackLow64(low01, low23)), Scaled<1>(UnpackHigh64(low01, low23)),
             Scaled<2>(UnpackLow64(high01, high23))}};
  }

 private:
  /// Two pixels a lane, each of whose channels stands in a 32-bit element.
  template <int pair>
  struct Sorted {
    using Moved = MovedSamples<Form, From, PixelLayout<2, 4, false>>;
    static constexpr int kBytes = Moved::kBytes;
    static constexpr int At(int i) {
      const int pixel = vector * kWidth / 2 + i / kLane * 8 + 2 * pair + i / 2 % 2;
      return Moved::Byte(4 * pixel + i % kLane / 4, i % 2);
    }
  };

  /// A pixel's samples begin with the first of a group or, of two in a group, with an even one.
  template <int channel>
  static ZR_INLINE U8 Scaled(U8 x) {
    constexpr int kPlace = From::kBlueFirst ? 2 - channel : channel;
    return As<U8>(Form::Scaled(As<U16>(x), Splat16(Form::kFactors[kPlace])));
  }
#endif
};

/// Packed samples with the channels of From to words of five, six and five bits.
template <class Form, class From>
struct Packed565 {
  /// Vector `vector` of them.
  template <int vector>
  static ZR_INLINE U8 Read(const std::uint8_t* p) {
#if defined(__AVX512VBMI__)
    const U16 red = AtTop<Channel<vector, 0>>(p), green = AtTop<Channel<vector, 1>>(p),
              blue = AtTop<Channel<vector, 2>>(p);
    const U8 lower = Select(As<U8>(Splat16(0x07E0)), As<U8>(green >> 5), As<U8>(blue >> 11));
    return Select(As<U8>(Splat16(0xF800)), As<U8>(red), lower);
#else
    if constexpr (kFoursInLanes)
      return FromFours<vector>(p);
    else
      return JoinHalves(PackWords(Eight<2 * vector>(p), Eight<2 * vector + 1>(p)));
#endif
  }

 private:
  using Colours = MovedSamples<Form, From, PixelLayout<2, 3, false>>;

  template <int vector, int channel>
  using Channel = ChannelPairs<Form, From, vector, channel>;

  /// Pairs of bytes to words with the samples at their top, and anything below.
  template <class Elements>
  static ZR_INLINE U16 Lifted(U8 pairs) {
    if constexpr (HasUpperBytes<Form>)
      return As<U16>(pairs);
    else
      return As<U16>(pairs) * As<U16>(Constant<typename Elements::Moved::template Factors<Elements>>::Get());
  }

  template <class Elements>
  static ZR_INLINE U16 AtTop(const std::uint8_t* p) {
    return Lifted<Elements>(Gather<Elements>(p));
  }

#if !defined(__AVX512VBMI__)
  /// Sums of products of neighbouring words.
  static ZR_INLINE U32 Sums(Native words, unsigned factors) {
    return As<U32>(_mm256_madd_epi16(words, As<Native>(Splat32(factors))));
  }

  /// Four pixels of four samples, every second lane of a vector from `first` on.
  template <int first>
  struct Fours {
    using Moved = MovedSamples<Form, From, PixelLayout<1, 4, false>>;
    static constexpr int kBytes = Moved::kBytes;
    static constexpr int Element(int i) { return first + i / kLane * kLane + i % kLane / 2; }
    static constexpr int At(int i) { return Moved::Byte(Element(i), i % 2); }
  };

  /// Eight pixels as 32-bit elements: five or six bits of the samples as words, as bytes, and in sums.
  template <int eight>
  static ZR_INLINE U32 Eight(const std::uint8_t* p) {
    const U16 fields = EveryFour<32, 64, 32, 0>();
    const U8 bytes = PackClipped(As<S16>(MultiplyUpper(AtTop<Fours<eight * kWidth>>(p), fields)),
                                 As<S16>(MultiplyUpper(AtTop<Fours<eight * kWidth + kLane / 2>>(p), fields)));
    return Sums(_mm256_maddubs_epi16(As<Native>(bytes), As<Native>(Splat32(0x00010140))), 0x00010020);
  }

  /// Whether one load of a lane reaches all samples of four pixels.
  static constexpr int kFourPixels = Colours::kBytes / (kWidth / 4);
  static constexpr bool kFoursInLanes = kFourPixels < kLane;

  /// Eight pixels as 32-bit elements, so that packing two vectors gives natural order.
  template <int eight>
  struct Spread {
    static constexpr int kBytes = Colours::kBytes;
    static constexpr int Pixel(int i) {
      return eight / 2 * 16 + i / kLane * 8 + eight % 2 * 4 + i % kLane / 4;
    }
  };

  /// The first and the last byte of a lane's pixels, and with it the load of the samples in them.
  template <int eight>
  struct Ends : Spread<eight> {
    static constexpr int At(int i) {
      if (i % kLane > 1) return -1;
      return Spread<eight>::Pixel(i) / 4 * kFourPixels + i % kLane * (kFourPixels - 1);
    }
  };

  template <int eight>
  struct GreenAndBlue : Spread<eight> {
    using Moved = Colours;
    static constexpr int Element(int i) { return 3 * Spread<eight>::Pixel(i) + 1 + i / 2 % 2; }
    static constexpr int At(int i) { return Moved::Byte(Element(i), i % 2); }
  };

  template <int eight>
  struct Red : Spread<eight> {
    static constexpr int At(int i) {
      return i % 4 < 2 ? Colours::Byte(3 * Spread<eight>::Pixel(i), i % 2) : -1;
    }
  };

  template <class Map, int eight>
  static ZR_INLINE U8 GatherInEnds(const std::uint8_t* p) {
    using Load = Gathering<Ends<eight>>;
    struct Index {
      static constexpr int At(int i) {
        return Map::At(i) < 0 ? 0xFF : Map::At(i) - Load::kPlan.at[0].of[i / kLane];
      }
    };
    static_assert(Load::kPlan.loads == 1);
    return ShuffleBytes(Load::template LoadLanes<0>(p), Constant<Index>::Get());
  }

  template <int eight>
  static ZR_INLINE U32 SumsOfEnds(const std::uint8_t* p) {
    const U16 words = Lifted<GreenAndBlue<eight>>(GatherInEnds<GreenAndBlue<eight>, eight>(p));
    return Sums(As<Native>(MultiplyUpper(words, As<U16>(Splat32(0x00200040)))), 0x00010020);
  }

  /// Red needs no shift, so it is packed before it is multiplied.
  template <int vector>
  static ZR_INLINE U8 FromFours(const std::uint8_t* p) {
    const U8 red = PackWords(As<U32>(GatherInEnds<Red<2 * vector>, 2 * vector>(p)),
                             As<U32>(GatherInEnds<Red<2 * vector + 1>, 2 * vector + 1>(p)));
    const U8 others = PackWords(SumsOfEnds<2 * vector>(p), SumsOfEnds<2 * vector + 1>(p));
    return As<U8>(Lifted<Channel<vector, 0>>(red) & Splat16(0xF800)) | others;
  }
#endif
};
#else
template <class Form, class From>
struct Packed565;
#endif

/// The green samples of a block.
template <class Form, class From, class Channel>
ZR_INLINE Channel GreenOf(const std::uint8_t* p) {
  using Green = MovedSamples<Form, From, PixelLayout<2, 1, false>>;
  if constexpr (sizeof(Channel) == sizeof(U8))
    return Green::template ReadHigh<0>(p);
  else
    return {Green::template ReadWords<0>(p), Green::template ReadWords<1>(p)};
}

/// One 32-bit little-endian word a pixel, whose fields a layout knows.
template <class Layout>
struct PixelWordReader {
  using Pixel = PixelLayout<1, 4, false>;
  using Samples = PixelLayout<2, 3, false>;
  static constexpr int kGroupPixels = 1, kGroupBytes = 4, kOverread = 0;

  explicit ZR_INLINE PixelWordReader(const KernelArgs&) {}

  template <class Channel>
  ZR_INLINE Colour<Channel> Read(const std::uint8_t* p) const {
    if constexpr (sizeof(Channel) == sizeof(U8)) {
      const Vectors<3> x = Deinterleave4<1>(
          ForEach<4>([&](auto i) ZR_ALWAYS { return As<U8>(Layout::UpperBits(Pixels(p, i))); }));
      return {x.v[0], x.v[1], x.v[2]};
    } else {
      return {Join(p, Layout::Red), Join(p, Layout::Green), Join(p, Layout::Blue)};
    }
  }

  /// Four bytes in the same order.
  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const requires(std::same_as<To, Pixel>) {
    return Opaque<To>(As<U8>(Layout::UpperBits(Pixels(p, vector))));
  }

  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const
      requires(MovesSamples<To> && !std::same_as<To, Pixel>) {
    return ReadMoved<Layout, Samples, To, vector>(p);
  }

  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const requires(kPacks565&& std::same_as<To, Word565>) {
    return Read565Of<Layout, vector>(p);
  }

  /// Where one shuffle reaches a whole vector, words are cheaper made of the pixels.
  template <class Channel>
  ZR_INLINE Grey<Channel> ReadGreen(const std::uint8_t* p) const
      requires(kGathers && (sizeof(Channel) == sizeof(U8) || kLane == 16)) {
    return {GreenOf<Layout, Samples, Channel>(p)};
  }

 private:
  static ZR_INLINE U32 Pixels(const std::uint8_t* p, int quarter) {
    return As<U32>(Load(p + quarter * kWidth));
  }

  /// The upper halves of the words that `channel` makes.
  template <class F>
  static ZR_INLINE Words Join(const std::uint8_t* p, F channel) {
    return {NarrowHigh(channel(Pixels(p, 0)), channel(Pixels(p, 1))),
            NarrowHigh(channel(Pixels(p, 2)), channel(Pixels(p, 3)))};
  }
};

/// Red in bits 9..0, green in 19..10, blue in 29..20; bits 31..30 are unused.
struct RGB10p32Layout {
  struct Map {
    [[maybe_unused]] static constexpr int kBytes = 4;
    static constexpr int At(int j) { return j / 2 + j % 2; }
  };
  [[maybe_unused]] static constexpr unsigned kFactors[] = {64, 16, 4};
  [[maybe_unused]] static constexpr bool kUpperByte = false;

  static ZR_INLINE U16 Scaled(U16 x, U16 factors) { return (x * factors) & Splat16(0xFFC0); }

  static ZR_INLINE U32 Red(U32 x) { return (x << 22) & Splat32(0xFFC00000); }
  static ZR_INLINE U32 Green(U32 x) { return (x << 12) & Splat32(0xFFC00000); }
  static ZR_INLINE U32 Blue(U32 x) { return (x << 2) & Splat32(0xFFC00000); }

  /// The upper 8 bits of red, green and blue in bytes 0, 1 and 2.
  static ZR_INLINE U32 UpperBits(U32 x) {
    return ((x >> 2) & Splat32(0xFF)) | ((x >> 4) & Splat32(0xFF00)) | ((x >> 6) & Splat32(0xFF0000));
  }

  static ZR_INLINE U32 To565(U32 x) {
    return ((x << 6) & Splat32(0xF800)) | ((x >> 9) & Splat32(0x07E0)) | ((x >> 25) & Splat32(0x001F));
  }
};

/// Byte 0 holds the low two bits: red's in bits 1..0, green's in 3..2, blue's in 5..4. Bytes 1, 2 and 3 are
/// the upper eight bits.
struct RGB10V1PackedLayout {
  struct Map {
    [[maybe_unused]] static constexpr int kBytes = 4;
    static constexpr int At(int j) { return j % 2 == 0 ? 0 : 1 + j / 2; }
  };
  [[maybe_unused]] static constexpr unsigned kFactors[] = {64, 16, 4};
  [[maybe_unused]] static constexpr bool kUpperByte = true;

  static ZR_INLINE U16 Scaled(U16 x, U16 factors) {
    return (x & Splat16(0xFF00)) | ((x * factors) & Splat16(0x00C0));
  }

  static ZR_INLINE U32 Red(U32 x) { return ((x << 16) & Splat32(0xFF000000)) | ((x << 22) & LowBits()); }
  static ZR_INLINE U32 Green(U32 x) { return ((x << 8) & Splat32(0xFF000000)) | ((x << 20) & LowBits()); }
  static ZR_INLINE U32 Blue(U32 x) { return (x & Splat32(0xFF000000)) | ((x << 18) & LowBits()); }

  static ZR_INLINE U32 UpperBits(U32 x) { return x >> 8; }

  static ZR_INLINE U32 To565(U32 x) {
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
    return Sum565<0xF8FCF800, 0x01400100, 0x00010800>(As<U8>(x));
#else
    return (x & Splat32(0xF800)) | ((x >> 13) & Splat32(0x07E0)) | (x >> 27);
#endif
  }

 private:
  static ZR_INLINE U32 LowBits() {
    return Splat32(0x00C00000);
  }
};

/// One 16-bit word a pixel, five, six and five bits from the top: the first channel in 15..11, green
/// in 10..5, the third in 4..0. Their top bits are repeated below, so that full scale becomes 255.
template <bool blueFirst>
struct RGB565Reader {
  using Pixel = Word565;
  static constexpr int kGroupPixels = 1, kGroupBytes = 2, kOverread = 0;

  explicit ZR_INLINE RGB565Reader(const KernelArgs&) {}

  template <class Channel>
  ZR_INLINE auto Read(const std::uint8_t* p) const {
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
    if constexpr (sizeof(Channel) == sizeof(U8))
      return ReadBytes(p);
    else
#endif
      return ReadWords(p);
  }

  /// The same word, or its outer fields exchanged.
  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const requires(std::same_as<To, Word565>) {
    const U8 x = Load(p + vector * kWidth);
    if constexpr (!blueFirst) return x;
    const U16 word = As<U16>(x);
    return As<U8>((word << 11) | (word & Splat16(0x07E0)) | (word >> 11));
  }

 private:
  static ZR_INLINE Colour<Words> ReadWords(const std::uint8_t* p) {
    const Words x = LoadWords(p);
    return Ordered<blueFirst>(Words{Upper(x.a), Upper(x.b)}, Words{Middle(x.a), Middle(x.b)},
                              Words{Lower(x.a), Lower(x.b)});
  }

  static ZR_INLINE U16 Upper(U16 x) {
    return (x & Splat16(0xF800)) | ((x >> 5) & Splat16(0x0700));
  }
  static ZR_INLINE U16 Middle(U16 x) {
    return ((x << 5) & Splat16(0xFC00)) | ((x >> 1) & Splat16(0x0300));
  }
  static ZR_INLINE U16 Lower(U16 x) {
    return (x << 11) | ((x << 6) & Splat16(0x0700));
  }

#if defined(__AVX2__) && !defined(__AVX512VBMI__)
  /// Bytes as products: 8.25 times five bits, 4.0625 times six, rounded down.
  static ZR_INLINE Colour<U8> ReadBytes(const std::uint8_t* p) {
    // With every second lane in one vector, packing gives natural order.
    const U16 a = As<U16>(LoadLanes(p, p + 2 * kLane)), b = As<U16>(LoadLanes(p + kLane, p + 3 * kLane));
    const auto channel = [&](auto bytes)
                             ZR_ALWAYS { return PackClipped(As<S16>(bytes(a)), As<S16>(bytes(b))); };
    return Ordered<blueFirst>(
        channel([](U16 x) ZR_ALWAYS { return MultiplyUpper(x & Splat16(0xF800), 264); }),
        channel([](U16 x) ZR_ALWAYS { return MultiplyUpper(x & Splat16(0x07E0), 8320); }),
        channel([](U16 x) ZR_ALWAYS { return MultiplyUpper(x << 11, 264); }));
  }
#endif
};

/// Packed samples, three or four a pixel.
template <class Form, int channels, bool blueFirst>
struct PackedChannelsReader {
  using Pixel = PixelLayout<2, channels, blueFirst>;

  /// Samples of the smallest number of pixels that fill whole groups.
  static constexpr int kGroupPixels = Form::kPixels / (channels == 4 ? Form::kPixels : 1);
  static constexpr int kGroupBytes = kGroupPixels * channels / Form::kPixels * Form::kBytes;
  static constexpr int kOverread = Packed<Form>::kOverread;

  explicit ZR_INLINE PackedChannelsReader(const KernelArgs&) {}

  template <class Channel>
  ZR_INLINE Colour<Channel> Read(const std::uint8_t* p) const {
    constexpr Form form{};
    if constexpr (sizeof(Channel) == sizeof(U8)) {
      const Vectors<3> x = Channels<1>(ForEach<channels>(
          [&](auto i) ZR_ALWAYS { return Packed<Form>::ReadHigh(form, p + i * Packed<Form>::kTaken); }));
      return Ordered<blueFirst>(x.v[0], x.v[1], x.v[2]);
#if defined(__AVX2__)
    } else if constexpr (channels == 4) {
      const Vectors<3> a = WordsOfFour<Form, Pixel, 0>::Read(p), b = WordsOfFour<Form, Pixel, 1>::Read(p);
      const auto words = [&](unsigned i) ZR_ALWAYS { return Words{As<U16>(a.v[i]), As<U16>(b.v[i])}; };
      return Colour<Words>{words(0), words(1), words(2)};
#endif
    } else {
      // A vector of words is half of what Packed takes at a time.
      const auto half = [&](int first) ZR_ALWAYS {
        return Channels<2>(ForEach<channels>(
            [&](auto i) ZR_ALWAYS { return As<U8>(form.Scale(p + (first + i) * Packed<Form>::kHalf)); }));
      };
      const Vectors<3> a = half(0), b = half(channels);
      const auto words = [&](unsigned i) ZR_ALWAYS { return Words{As<U16>(a.v[i]), As<U16>(b.v[i])}; };
      return Ordered<blueFirst>(words(0), words(1), words(2));
    }
  }

  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const requires(MovesSamples<To> && !SameOrder<Pixel, To>) {
    return ReadMoved<Form, Pixel, To, vector>(p);
  }

  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const
      requires(kPacks565 && (kLane == 16 || channels == 4 || Form::kPixels == 4) &&
               std::same_as<To, Word565>) {
    return Packed565<Form, Pixel>::template Read<vector>(p);
  }

  template <class Channel>
  ZR_INLINE Grey<Channel> ReadGreen(const std::uint8_t* p) const requires(kGathers) {
    return {GreenOf<Form, Pixel, Channel>(p)};
  }

  /// Samples that keep their order.
  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const requires(SameOrder<Pixel, To>) {
    constexpr Form form{};
    if constexpr (To::kSize == 1)
      return Opaque<To>(Packed<Form>::ReadHigh(form, p + vector * Packed<Form>::kTaken));
    else
      return As<U8>(form.Scale(p + vector * Packed<Form>::kHalf));
  }
};

/// Three planes of bytes or words, red, green and blue.
template <class Samples>
struct PlanarLines {
  using Source = Samples;

  template <BlockWriter Writer>
  static void Run(const LineBlock& lines, const KernelArgs& args) {
    using Channel = typename Writer::Channel;
    const Samples samples(args);
    const Writer writer(args);
    EachLine<3, 1>(lines, args.ahead, [&](const auto& line) ZR_ALWAYS {
      EachBlock<Writer::kStep, 1>(line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
        const auto channel = [&](int plane) ZR_ALWAYS {
          const std::uint8_t* const p = line.source[plane] + x * Samples::kGroupBytes;
          Prefetch<kWidth * Samples::kGroupBytes>(p, line.ahead);
          return Cast<Channel>::From(samples.Read(p));
        };
        std::uint8_t* const to = line.destination[0] + x * Writer::kStep;
        if constexpr (requires { Writer::kGreenOnly; })
          writer.Write(to, Grey<Channel>{channel(1)});
        else
          writer.Write(to, Colour<Channel>{channel(0), channel(1), channel(2)});
      });
    });
  }
};

struct PlaneOfBytes {
  static constexpr int kGroupPixels = 1, kGroupBytes = 1;

  explicit ZR_INLINE PlaneOfBytes(const KernelArgs&) {}

  ZR_INLINE U8 Read(const std::uint8_t* p) const { return Load(p); }
};

/// Words, brought to the 16-bit scale by a left shift.
struct PlaneOfWords {
  static constexpr int kGroupPixels = 1, kGroupBytes = 2;

  explicit ZR_INLINE PlaneOfWords(const KernelArgs& args) : mShift(args.shift) {}

  ZR_INLINE Words Read(const std::uint8_t* p) const {
    const Words x = LoadWords(p);
    return {ShiftLeft(x.a, mShift), ShiftLeft(x.b, mShift)};
  }

 private:
  std::uint32_t mShift;
};

constexpr KernelRow kRows[] = {
    Row<SourceReader::RGB8, Lines<BytesReader<3, false>>>(),
    Row<SourceReader::BGR8, Lines<BytesReader<3, true>>>(),
    Row<SourceReader::RGBa8, Lines<BytesReader<4, false>>>(),
    Row<SourceReader::BGRa8, Lines<BytesReader<4, true>>>(),
    Row<SourceReader::RGB16, Lines<WordsReader<3, false>>>(),
    Row<SourceReader::BGR16, Lines<WordsReader<3, true>>>(),
    Row<SourceReader::RGBa16, Lines<WordsReader<4, false>>>(),
    Row<SourceReader::BGRa16, Lines<WordsReader<4, true>>>(),
    Row<SourceReader::RGB10p32, Lines<PixelWordReader<RGB10p32Layout>>>(),
    Row<SourceReader::RGB565p, Lines<RGB565Reader<false>>>(),
    Row<SourceReader::BGR565p, Lines<RGB565Reader<true>>>(),
    Row<SourceReader::RGB10V1Packed, Lines<PixelWordReader<RGB10V1PackedLayout>>>(),
    Row<SourceReader::RGB12V1Packed, Lines<PackedChannelsReader<Form12Gige, 3, false>>>(),
    Row<SourceReader::RGBPlanar8, PlanarLines<PlaneOfBytes>>(),
    Row<SourceReader::RGBPlanar16, PlanarLines<PlaneOfWords>>(),
    Row<SourceReader::RGB10p, Lines<PackedChannelsReader<Form10p, 3, false>>>(),
    Row<SourceReader::BGR10p, Lines<PackedChannelsReader<Form10p, 3, true>>>(),
    Row<SourceReader::RGB12p, Lines<PackedChannelsReader<Form12p, 3, false>>>(),
    Row<SourceReader::BGR12p, Lines<PackedChannelsReader<Form12p, 3, true>>>(),
    Row<SourceReader::RGBa10p, Lines<PackedChannelsReader<Form10p, 4, false>>>(),
    Row<SourceReader::BGRa10p, Lines<PackedChannelsReader<Form10p, 4, true>>>(),
    Row<SourceReader::RGBa12p, Lines<PackedChannelsReader<Form12p, 4, false>>>(),
    Row<SourceReader::BGRa12p, Lines<PackedChannelsReader<Form12p, 4, true>>>(),
};

}  // namespace

ZR_EXPORT_KERNELS(kRGBKernels)

}  // namespace ZrConvertersLib::simd
