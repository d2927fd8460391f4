#include "simd/BiColorSamples.h"

#if !defined(__x86_64__) || defined(__SSSE3__)
#include "simd/BiColorPairs.h"
#endif

/// Readers of two-colour lines. Means keep what the destination has room for.

namespace ZrConvertersLib::simd {
namespace {

#if defined(__x86_64__) && !defined(__SSSE3__)

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

template <class Samples>
using FastLines = Lines<FastReader<Samples>>;

#else

/// Whether a writer takes no channel but green.
template <class Writer>
inline constexpr bool kGreenOnly = false;
template <int depth>
inline constexpr bool kGreenOnly<MonoWriter<depth>> = true;

/// One colour for pixels 2k and 2k + 1 by way of pairs: straight to the destination, or to blocks for the
/// writers of those.
template <class Samples>
struct FastLines {
  using Source = Samples;

  template <BlockWriter Writer>
  static void Run(const LineBlock& lines, const KernelArgs& args) {
    if constexpr (kGreenOnly<Writer>)
      Convert<Writer>(lines, args, ByGreens<Writer>(args));
    else if constexpr (requires { PairsWriter<Writer>::kSize; })
      Convert<Writer>(lines, args, Direct<Writer>(args));
    else
      Convert<Writer>(lines, args, ByBlocks<Writer>(args));
  }

 private:
  template <class Writer, class F>
  static ZR_INLINE void Convert(const LineBlock& lines, const KernelArgs& args, const F& convert) {
    BlockBytes<Samples> block;
    EachLine<1, 1>(lines, args.ahead, [&](const auto& line) ZR_ALWAYS {
      EachBlock<Writer::kStep, 2>(line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
        convert(block.At(line, 0, x), line.destination[0] + x * Writer::kStep);
      });
    });
  }

  template <class Writer>
  static constexpr int kChannelSize = std::is_same_v<typename Writer::Channel, U8> ? 1 : 2;

  template <class Writer>
  struct ByGreens {
    Greens<Samples, kChannelSize<Writer>> greens;
    Writer writer;

    explicit ZR_INLINE ByGreens(const KernelArgs& args) : greens(args), writer(args) {}

    ZR_INLINE void operator()(const std::uint8_t* from, std::uint8_t* to) const {
      const U8 first = greens.Read(from);
      if constexpr (kChannelSize<Writer> == 1)
        writer.Write(to, Grey<U8>{first});
      else
        writer.Write(to, Grey<Words>{{As<U16>(first), As<U16>(greens.Read(from + greens.kTaken))}});
    }
  };

  template <class Writer>
  struct Direct {
    static constexpr int kSize = PairsWriter<Writer>::kSize;
    Pairs<Samples, kSize> pairs;
    PairsWriter<Writer> writer;

    explicit ZR_INLINE Direct(const KernelArgs& args) : pairs(args), writer(pairs.Places()) {}

    ZR_INLINE void operator()(const std::uint8_t* from, std::uint8_t* to) const {
      Unrolled<kSize>([&](auto i) ZR_ALWAYS {
        writer.Write(to + i * (Writer::kStep * kWidth / kSize), pairs.Read(from + i * pairs.kTaken));
      });
    }
  };

  template <class Writer>
  struct ByBlocks {
    static constexpr int kSize = kChannelSize<Writer>;
    Pairs<Samples, kSize> pairs;
    TwiceColours<kSize> twice;
    Writer writer;

    explicit ZR_INLINE ByBlocks(const KernelArgs& args) : pairs(args), twice(pairs.Places()), writer(args) {}

    ZR_INLINE void operator()(const std::uint8_t* from, std::uint8_t* to) const {
      const Colour<U8> first = twice(pairs.Read(from));
      if constexpr (kSize == 1)
        writer.Write(to, first);
      else
        writer.Write(to, WordsOf(first, twice(pairs.Read(from + pairs.kTaken))));
    }
  };
};

#endif

/// Samples to two rows, red and blue in destination 0, green in destination 1.
template <class Samples>
void SplitLines(const LineBlock& lines, const KernelArgs& args) {
  using Held = Form<typename Samples::Held>;
  const Samples samples(args);
  BlockBytes<Samples> block;
  EachLine<1, 2>(lines, args.ahead, [&](const auto& line) ZR_ALWAYS {
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

/// Red and blue of pixels that hold the one and lack the other: the own colour stands where its column does.
template <class Channel>
class OwnAndMissing;

template <>
class OwnAndMissing<U8> {
 public:
  explicit ZR_INLINE OwnAndMissing(const KernelArgs& args)
      : mRed(As<U8>(Splat16(args.redAtEvenColumn ? 0xFF : 0xFF00))) {}

  ZR_INLINE Colour<U8> Order(U8 own, U8 green, U8 missing) const {
    return {Select(mRed, own, missing), green, Select(mRed, missing, own)};
  }

 private:
  U8 mRed;
};

template <>
class OwnAndMissing<Words> {
 public:
  explicit ZR_INLINE OwnAndMissing(const KernelArgs& args)
      : mRed(As<U8>(Splat32(args.redAtEvenColumn ? 0xFFFF : 0xFFFF0000))) {}

  ZR_INLINE Colour<Words> Order(const Words& own, const Words& green, const Words& missing) const {
    return {Chosen(own, missing), green, Chosen(missing, own)};
  }

 private:
  ZR_INLINE Words Chosen(const Words& red, const Words& blue) const {
    return {As<U16>(Select(mRed, As<U8>(red.a), As<U8>(blue.a))),
            As<U16>(Select(mRed, As<U8>(red.b), As<U8>(blue.b)))};
  }

  U8 mRed;
};

/// The mean of two samples of a row, in the form of channel that is asked for.
template <class Channel>
ZR_INLINE Channel MeanOf(U8 a, U8 b) {
  if constexpr (std::is_same_v<Channel, U8>) {
    return MeanOfBytes(a, b);
  } else {
    const Words x = WidenHigh(a), y = WidenHigh(b);
    return {MeanUp(x.a, y.a), MeanUp(x.b, y.b)};
  }
}
template <class Channel>
ZR_INLINE Channel MeanOf(const Words& a, const Words& b) {
  return Cast<Channel>::From(Words{MeanUp(a.a, b.a), MeanUp(a.b, b.b)});
}

/// Own green, own red or blue, and the mean of the neighbours' for the missing colour. Source 0 is the row of
/// red and blue, which may be read one pixel to either side, source 1 that of green.
template <class Sample>
struct BilinearLines {
  template <BlockWriter Writer>
  static void Run(const LineBlock& lines, const KernelArgs& args) {
    using Held = Form<Sample>;
    using Channel = typename Writer::Channel;
    const OwnAndMissing<Channel> order(args);
    const Writer writer(args);
    EachLine<2, 1>(lines, args.ahead, [&](const auto& line) ZR_ALWAYS {
      EachBlock<Writer::kStep, 2>(line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
        const std::uint8_t* const own = line.source[0] + Held::kBytes * x;
        writer.Write(
            line.destination[0] + x * Writer::kStep,
            order.Order(Cast<Channel>::From(Held::Read(own)),
                        Cast<Channel>::From(Held::Read(line.source[1] + Held::kBytes * x)),
                        MeanOf<Channel>(Held::Read(own - Held::kBytes), Held::Read(own + Held::kBytes))));
      });
    });
  }
};

constexpr KernelRow kRows[] = {
    Row<SourceReader::BiColorFast8, FastLines<ByteSamples>>(),
    Row<SourceReader::BiColorFast16, FastLines<WordSamples>>(),
    Row<SourceReader::BiColorFast10p, FastLines<PackedSamples<Form10p>>>(),
    Row<SourceReader::BiColorFast12p, FastLines<PackedSamples<Form12p>>>(),
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
