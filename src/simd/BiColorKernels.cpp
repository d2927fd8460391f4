#include "simd/Line.h"
#include "simd/Mean.h"
#include "simd/Packed.h"

/// Readers of two-colour lines. A pixel is two samples, green and one of red and blue in turn from pixel to
/// pixel. Samples are held as they are cheapest: those of 8 bits in bytes, deeper ones in words of the 16-bit
/// scale. Means keep what the destination has room for.

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
  static ZR_INLINE U8 Odd() { return As<U8>(Splat16(0xFF00)); }

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
  static ZR_INLINE U8 Odd() { return As<U8>(Splat32(0xFFFF0000)); }

  template <class>
  static ZR_INLINE Words Mean(const Words& a, const Words& b) {
    return {Mean(a.a, b.a), Mean(a.b, b.b)};
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
  static ZR_INLINE U16 Mean(U16 a, U16 b) { return (a & b) + ((a ^ b) >> 1); }
  static ZR_INLINE U16 Choose(U16 a, U16 b, U8 mask) { return As<U16>(Select(mask, As<U8>(b), As<U8>(a))); }
};

/// The samples of a block of pixels: the one that is red or blue, and green.
template <class Held>
struct TwoColours {
  Held colour, green;
};

/// The first and the second samples of pixels, told apart by which of them is green.
class GreenPlace {
 public:
  explicit ZR_INLINE GreenPlace(const KernelArgs& args) : mFirst(Splat8(args.greenFirst ? 0xFF : 0)) {}

  template <class Held>
  ZR_INLINE TwoColours<Held> Sort(const Held& first, const Held& second) const {
    return {Form<Held>::Choose(first, second, mFirst), Form<Held>::Choose(second, first, mFirst)};
  }

  /// From words of samples as in memory.
  ZR_INLINE TwoColours<Words> SortPairs(const Words& low, const Words& high) const {
    return Sort(Words{Lower(low), Lower(high)}, Words{Upper(low), Upper(high)});
  }

 private:
  static ZR_INLINE U16 Upper(const Words& x) { return NarrowHigh(As<U32>(x.a), As<U32>(x.b)); }
  static ZR_INLINE U16 Lower(const Words& x) { return NarrowHigh(As<U32>(x.a) << 16, As<U32>(x.b) << 16); }

  U8 mFirst;
};

/// Samples in bytes.
struct ByteSamples {
  using Held = U8;
  static constexpr int kGroupPixels = 2, kGroupBytes = 4, kOverread = 0;

  explicit ZR_INLINE ByteSamples(const KernelArgs& args) : mGreen(args) {}

  ZR_INLINE TwoColours<U8> Read(const std::uint8_t* p) const {
    const Words pixels = LoadWords(p);
    return mGreen.Sort(NarrowLow(pixels), NarrowHigh(pixels));
  }

 private:
  GreenPlace mGreen;
};

/// Samples in words, brought to the 16-bit scale by a left shift.
struct WordSamples {
  using Held = Words;
  static constexpr int kGroupPixels = 2, kGroupBytes = 8, kOverread = 0;

  explicit ZR_INLINE WordSamples(const KernelArgs& args) : mGreen(args), mShift(args.shift) {}

  ZR_INLINE TwoColours<Words> Read(const std::uint8_t* p) const {
    return mGreen.SortPairs(Scaled(p), Scaled(p + 2 * kWidth));
  }

 private:
  ZR_INLINE Words Scaled(const std::uint8_t* p) const {
    const Words x = LoadWords(p);
    return {ShiftLeft(x.a, mShift), ShiftLeft(x.b, mShift)};
  }

  GreenPlace mGreen;
  std::uint32_t mShift;
};

template <class Packing>
struct PackedSamples {
  using Held = Words;
  static constexpr int kGroupPixels = 2, kGroupBytes = 4 / Packing::kPixels * Packing::kBytes;
  static constexpr int kOverread = Packed<Packing>::kOverread;

  explicit ZR_INLINE PackedSamples(const KernelArgs& args) : mGreen(args) {}

  ZR_INLINE TwoColours<Words> Read(const std::uint8_t* p) const {
    constexpr Packing packing{};
    return mGreen.SortPairs(Packed<Packing>::Read(packing, p),
                            Packed<Packing>::Read(packing, p + Packed<Packing>::kTaken));
  }

 private:
  GreenPlace mGreen;
};

/// Red and blue of pixels whose parity of column tells which of the two each holds.
class RedAndBlue {
 public:
  explicit ZR_INLINE RedAndBlue(const KernelArgs& args)
      : mBlueEven(Splat8(args.redAtEvenColumn ? 0 : 0xFF)) {}

  template <class Channel, class Held>
  ZR_INLINE Colour<Channel> Order(const Held& ofEven, const Channel& green, const Held& ofOdd) const {
    return {Cast<Channel>::From(Form<Held>::Choose(ofEven, ofOdd, mBlueEven)), green,
            Cast<Channel>::From(Form<Held>::Choose(ofOdd, ofEven, mBlueEven))};
  }

 private:
  U8 mBlueEven;
};

/// One colour for pixels 2k and 2k + 1: the red of the one, the blue of the other, the mean of both greens.
template <class Samples>
struct FastReader {
  static constexpr int kGroupPixels = Samples::kGroupPixels, kGroupBytes = Samples::kGroupBytes;
  static constexpr int kOverread = Samples::kOverread;

  explicit ZR_INLINE FastReader(const KernelArgs& args) : mSamples(args), mOrder(args) {}

  template <class Channel>
  ZR_INLINE auto Read(const std::uint8_t* p) const {
    using Held = Form<typename Samples::Held>;
    using Out = typename Held::template Out<Channel>;
    const auto x = mSamples.Read(p);
    const Out green = Held::template Mean<Out>(Held::EvenTwice(x.green), Held::OddTwice(x.green));
    return mOrder.Order<Out>(Held::EvenTwice(x.colour), green, Held::OddTwice(x.colour));
  }

 private:
  Samples mSamples;
  RedAndBlue mOrder;
};

#if defined(__AVX2__) && !defined(__AVX512VBMI__)

/// Pairs of pixels of bytes, a pair a 32-bit element, with the mean of both greens in place of the first one.
class BytePairs {
 public:
  explicit ZR_INLINE BytePairs(const KernelArgs& args)
      : mFirstGreen(As<U8>(Splat32(args.greenFirst ? 0xFF : 0xFF00))),
        mGreen(args.greenFirst ? 0 : 1),
        mRed(1 - mGreen + (args.redAtEvenColumn ? 0 : 2)) {}

  /// Of half a block.
  ZR_INLINE U8 Read(const std::uint8_t* p) const {
    const U8 pairs = Load(p);
    return Select(mFirstGreen, MeanOfTwo<U8>::Get(pairs, As<U8>(As<U32>(pairs) >> 16)), pairs);
  }

  /// The places of the colours' bytes in an element.
  ZR_INLINE unsigned Green() const { return mGreen; }
  ZR_INLINE unsigned Red() const { return mRed; }
  ZR_INLINE unsigned Blue() const { return mRed ^ 2; }

 private:
  U8 mFirstGreen;
  unsigned mGreen, mRed;
};

/// Pairs of pixels of bytes straight to three bytes, or to four, a pixel.
template <int step, bool blueFirst>
class InterleavedPairs {
 public:
  explicit ZR_INLINE InterleavedPairs(const KernelArgs& args) : mPairs(args) {
    const U8 first = Splat8(blueFirst ? mPairs.Blue() : mPairs.Red()), green = Splat8(mPairs.Green());
    const U8 last = Splat8(blueFirst ? mPairs.Red() : mPairs.Blue());
    Unrolled<step>([&](auto i) ZR_ALWAYS {
      mFrom[i] = Constant<Pair<i>>::Get() + (Constant<Is<i, 0>>::Get() & first) +
                 (Constant<Is<i, 1>>::Get() & green) + (Constant<Is<i, 2>>::Get() & last);
    });
  }

  ZR_INLINE void Convert(const std::uint8_t* from, std::uint8_t* to) const {
    const auto a = As<Native>(mPairs.Read(from)), b = As<Native>(mPairs.Read(from + kWidth));
    if constexpr (step == 3) {
      Put<0>(to, _mm256_permute4x64_epi64(a, 0x94));
      Put<1>(to, _mm256_permute2x128_si256(a, b, 0x21));
      Put<2>(to, _mm256_permute4x64_epi64(b, 0xE9));
    } else {
      Put<0>(to, _mm256_permute4x64_epi64(a, 0x50));
      Put<1>(to, _mm256_permute4x64_epi64(a, 0xFA));
      Put<2>(to, _mm256_permute4x64_epi64(b, 0x50));
      Put<3>(to, _mm256_permute4x64_epi64(b, 0xFA));
    }
  }

 private:
  /// The place of the pair of a destination byte in the lane that Convert makes for it; alpha becomes 0.
  template <int vector>
  struct Pair {
    static constexpr int At(int i) {
      constexpr int kFirstOfThree[6] = {0, 2, 4, 8, 10, 12};
      const int lane = 2 * vector + i / 16, byte = vector * kWidth + i;
      if (step == 4 && byte % 4 == 3) return 0x80;
      return 4 * (byte / (2 * step) - (step == 3 ? kFirstOfThree[lane] : 2 * lane));
    }
  };
  template <int vector, int channel>
  struct Is {
    static constexpr int At(int i) { return (vector * kWidth + i) % step == channel ? 0xFF : 0; }
  };

  template <int vector>
  ZR_INLINE void Put(std::uint8_t* to, Native pairs) const {
    const U8 pixels = ShuffleBytes(As<U8>(pairs), mFrom[vector]);
    Store(to + vector * kWidth, step == 4 ? pixels | As<U8>(Splat32(0xFF000000)) : pixels);
  }

  BytePairs mPairs;
  U8 mFrom[static_cast<unsigned>(step)];
};

template <class Writer>
struct Interleaved;
template <bool blueFirst>
struct Interleaved<ThreeBytesWriter<blueFirst>> {
  using Pairs = InterleavedPairs<3, blueFirst>;
};
template <bool blueFirst>
struct Interleaved<FourBytesWriter<blueFirst>> {
  using Pairs = InterleavedPairs<4, blueFirst>;
};

/// The fast method from bytes: three and four bytes a pixel directly, all else by way of blocks.
struct FastByteLines {
  using Source = FastReader<ByteSamples>;

  template <BlockWriter Writer>
  static void Run(const KernelArgs& args) {
    if constexpr (requires { typename Interleaved<Writer>::Pairs; }) {
      const typename Interleaved<Writer>::Pairs pairs(args);
      BlockBytes<Source> block;
      EachLine<1, 1>(args, [&](const auto& line) ZR_ALWAYS {
        EachBlock<Writer::kStep, 2>(line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
          pairs.Convert(block.At(line, 0, x), line.destination[0] + x * Writer::kStep);
        });
      });
    } else {
      Lines<Source>::Run<Writer>(args);
    }
  }
};

#else

using FastByteLines = Lines<FastReader<ByteSamples>>;

#endif

/// Samples to two rows, red and blue in destination 0, green in destination 1.
template <class Samples>
void SplitLines(const KernelArgs& args) {
  using Held = Form<typename Samples::Held>;
  const Samples samples(args);
  BlockBytes<Samples> block;
  EachLine<1, 2>(args, [&](const auto& line) ZR_ALWAYS {
    EachBlock<Held::kBytes, Samples::kGroupPixels>(
        line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
          const auto split = samples.Read(block.At(line, 0, x));
          Held::Put(line.destination[0] + Held::kBytes * x, split.colour);
          Held::Put(line.destination[1] + Held::kBytes * x, split.green);
        });
  });
}

/// A row of kernels that has only the writer of rows.
template <SourceReader reader, class Samples>
constexpr KernelRow SplitRow() {
  KernelRow row{reader, {}};
  row.with[static_cast<std::size_t>(Form<typename Samples::Held>::kRow)] = &SplitLines<Samples>;
  return row;
}

/// Own green, own red or blue, and the mean of the neighbours' for the missing colour. Source 0 is the row of
/// red and blue, which may be read one pixel to either side, source 1 that of green.
template <class Sample>
struct BilinearLines {
  template <BlockWriter Writer>
  static void Run(const KernelArgs& args) {
    using Held = Form<Sample>;
    using Out = typename Held::template Out<typename Writer::Channel>;
    const RedAndBlue order(args);
    const Writer writer(args);
    EachLine<2, 1>(args, [&](const auto& line) ZR_ALWAYS {
      EachBlock<Writer::kStep, 2>(line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
        const std::uint8_t* const own = line.source[0] + Held::kBytes * x;
        const Out here = Cast<Out>::From(Held::Read(own));
        const Out beside =
            Held::template Mean<Out>(Held::Read(own - Held::kBytes), Held::Read(own + Held::kBytes));
        const Out green = Cast<Out>::From(Held::Read(line.source[1] + Held::kBytes * x));
        const U8 odd = Form<Out>::Odd();
        writer.Write(line.destination[0] + x * Writer::kStep,
                     In<typename Writer::Channel>(order.Order<Out>(
                         Form<Out>::Choose(here, beside, odd), green, Form<Out>::Choose(beside, here, odd))));
      });
    });
  }
};

constexpr KernelRow kRows[] = {
    Row<SourceReader::BiColorFast8, FastByteLines>(),
    Row<SourceReader::BiColorFast16, Lines<FastReader<WordSamples>>>(),
    Row<SourceReader::BiColorFast10p, Lines<FastReader<PackedSamples<Form10p>>>>(),
    Row<SourceReader::BiColorFast12p, Lines<FastReader<PackedSamples<Form12p>>>>(),
    SplitRow<SourceReader::BiColorSplit8, ByteSamples>(),
    SplitRow<SourceReader::BiColorSplit16, WordSamples>(),
    SplitRow<SourceReader::BiColorSplit10p, PackedSamples<Form10p>>(),
    SplitRow<SourceReader::BiColorSplit12p, PackedSamples<Form12p>>(),
    Row<SourceReader::BiColorBilinear8, BilinearLines<U8>>(),
    Row<SourceReader::BiColorBilinear16, BilinearLines<Words>>(),
};

}  // namespace

ZR_EXPORT_KERNELS(kBiColorKernels)

}  // namespace ZrConvertersLib::simd
