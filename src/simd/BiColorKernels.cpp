#include "simd/Line.h"
#include "simd/Packed.h"

/// Readers of two-colour lines. A pixel is two samples, green and one of red and blue in turn from pixel to
/// pixel. All arithmetic is on the 16-bit scale.

namespace ZrConvertersLib::simd {
namespace {

/// The samples of a block of pixels: the one that is red or blue, and green.
struct TwoColours {
  Words colour, green;
};

/// Words of first and second samples in turn, taken apart.
class Sorter {
 public:
  explicit ZR_INLINE Sorter(const KernelArgs& args) : mGreenFirst(Splat16(args.greenFirst ? 0xFFFF : 0)) {}

  ZR_INLINE TwoColours Sort(const Words& first, const Words& second) const {
    const U16 a = (first.a ^ second.a) & mGreenFirst, b = (first.b ^ second.b) & mGreenFirst;
    return {{first.a ^ a, first.b ^ b}, {second.a ^ a, second.b ^ b}};
  }

  /// From four vectors of words as in memory.
  ZR_INLINE TwoColours SortPairs(const Words& low, const Words& high) const {
    return Sort({Lower(low), Lower(high)}, {Upper(low), Upper(high)});
  }

 private:
  static ZR_INLINE U16 Upper(const Words& x) { return NarrowHigh(As<U32>(x.a), As<U32>(x.b)); }
  static ZR_INLINE U16 Lower(const Words& x) { return NarrowHigh(As<U32>(x.a) << 16, As<U32>(x.b) << 16); }

  U16 mGreenFirst;
};

/// Samples in bytes.
struct ByteSamples {
  static constexpr int kGroupPixels = 2, kGroupBytes = 4, kOverread = 0;

  explicit ZR_INLINE ByteSamples(const KernelArgs& args) : mSorter(args) {}

  ZR_INLINE TwoColours Read(const std::uint8_t* p) const {
    const Words pixels = LoadWords(p);
    return mSorter.Sort({pixels.a << 8, pixels.b << 8},
                        {pixels.a & Splat16(0xFF00), pixels.b & Splat16(0xFF00)});
  }

 private:
  Sorter mSorter;
};

/// Samples in words, brought to the 16-bit scale by a left shift.
struct WordSamples {
  static constexpr int kGroupPixels = 2, kGroupBytes = 8, kOverread = 0;

  explicit ZR_INLINE WordSamples(const KernelArgs& args) : mSorter(args), mShift(args.shift) {}

  ZR_INLINE TwoColours Read(const std::uint8_t* p) const {
    return mSorter.SortPairs(Scaled(p), Scaled(p + 2 * kWidth));
  }

 private:
  ZR_INLINE Words Scaled(const std::uint8_t* p) const {
    const Words x = LoadWords(p);
    return {ShiftLeft(x.a, mShift), ShiftLeft(x.b, mShift)};
  }

  Sorter mSorter;
  std::uint32_t mShift;
};

template <class Form>
struct PackedSamples {
  static constexpr int kGroupPixels = 2, kGroupBytes = 4 / Form::kPixels * Form::kBytes;
  static constexpr int kOverread = Packed<Form>::kOverread;

  explicit ZR_INLINE PackedSamples(const KernelArgs& args) : mSorter(args) {}

  ZR_INLINE TwoColours Read(const std::uint8_t* p) const {
    constexpr Form form{};
    return mSorter.SortPairs(Packed<Form>::Read(form, p), Packed<Form>::Read(form, p + Packed<Form>::kTaken));
  }

 private:
  Sorter mSorter;
};

/// (a + b) / 2, rounded down.
ZR_INLINE U16 Mean(U16 a, U16 b) {
  return (a & b) + ((a ^ b) >> 1);
}

ZR_INLINE Words Swapped(const Words& a, const Words& b, U16 mask) {
  return {a.a ^ ((a.a ^ b.a) & mask), a.b ^ ((a.b ^ b.b) & mask)};
}

/// Red and blue of pixels whose parity of column tells which of the two each holds.
class RedAndBlue {
 public:
  explicit ZR_INLINE RedAndBlue(const KernelArgs& args)
      : mBlueEven(Splat16(args.redAtEvenColumn ? 0 : 0xFFFF)) {}

  ZR_INLINE Colour<Words> Order(const Words& ofEven, const Words& green, const Words& ofOdd) const {
    return {Swapped(ofEven, ofOdd, mBlueEven), green, Swapped(ofOdd, ofEven, mBlueEven)};
  }

 private:
  U16 mBlueEven;
};

/// One colour for pixels 2k and 2k + 1: the red of the one, the blue of the other, the mean of both greens.
template <class Samples>
struct FastReader {
  static constexpr int kGroupPixels = Samples::kGroupPixels, kGroupBytes = Samples::kGroupBytes;
  static constexpr int kOverread = Samples::kOverread;

  explicit ZR_INLINE FastReader(const KernelArgs& args) : mSamples(args), mOrder(args) {}

  template <class Channel>
  ZR_INLINE Colour<Words> Read(const std::uint8_t* p) const {
    const TwoColours x = mSamples.Read(p);
    const Words evenColour{EvenTwice(x.colour.a), EvenTwice(x.colour.b)};
    const Words oddColour{OddTwice(x.colour.a), OddTwice(x.colour.b)};
    const Words green{Mean(EvenTwice(x.green.a), OddTwice(x.green.a)),
                      Mean(EvenTwice(x.green.b), OddTwice(x.green.b))};
    return mOrder.Order(evenColour, green, oddColour);
  }

 private:
  static ZR_INLINE U16 EvenTwice(U16 x) {
    return As<U16>((As<U32>(x) & Splat32(0xFFFF)) | (As<U32>(x) << 16));
  }
  static ZR_INLINE U16 OddTwice(U16 x) {
    return As<U16>((As<U32>(x) >> 16) | (As<U32>(x) & Splat32(0xFFFF0000)));
  }

  Samples mSamples;
  RedAndBlue mOrder;
};

/// Samples to two rows of words, red and blue in destination 0, green in destination 1.
template <class Samples>
void SplitLines(const KernelArgs& args) {
  const Samples samples(args);
  BlockBytes<Samples> block;
  EachLine<1, 2>(args, [&](const auto& line) ZR_ALWAYS {
    EachBlock<2, Samples::kGroupPixels>(line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
      const TwoColours split = samples.Read(block.At(line, 0, x));
      const auto put = [&](int row, const Words& words) ZR_ALWAYS {
        Store(line.destination[row] + 2 * x, words.a);
        Store(line.destination[row] + 2 * x + kWidth, words.b);
      };
      put(0, split.colour);
      put(1, split.green);
    });
  });
}

/// A row of which only Mono16 exists.
template <SourceReader reader, class Samples>
constexpr KernelRow SplitRow() {
  KernelRow row{reader, {}};
  row.with[static_cast<std::size_t>(PixelWriter::Mono16)] = &SplitLines<Samples>;
  return row;
}

/// Own green, own red or blue, and the mean of the neighbours' for the missing colour. Source 0 is the row of
/// red and blue, which may be read one pixel to either side, source 1 that of green.
struct BilinearLines {
  template <BlockWriter Writer>
  static void Run(const KernelArgs& args) {
    const RedAndBlue order(args);
    const Writer writer(args);
    EachLine<2, 1>(args, [&](const auto& line) ZR_ALWAYS {
      EachBlock<Writer::kStep, 2>(line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
        using Channel = typename Writer::Channel;
        const std::uint8_t* const own = line.source[0] + 2 * x;
        const Words here = LoadWords(own), left = LoadWords(own - 2), right = LoadWords(own + 2);
        const Words beside{Mean(left.a, right.a), Mean(left.b, right.b)};
        const U16 odd = As<U16>(Splat32(0xFFFF0000));
        writer.Write(line.destination[0] + x * Writer::kStep,
                     In<Channel>(order.Order(Swapped(here, beside, odd), LoadWords(line.source[1] + 2 * x),
                                             Swapped(beside, here, odd))));
      });
    });
  }
};

constexpr KernelRow kRows[] = {
    Row<SourceReader::BiColorFast8, Lines<FastReader<ByteSamples>>>(),
    Row<SourceReader::BiColorFast16, Lines<FastReader<WordSamples>>>(),
    Row<SourceReader::BiColorFast10p, Lines<FastReader<PackedSamples<Form10p>>>>(),
    Row<SourceReader::BiColorFast12p, Lines<FastReader<PackedSamples<Form12p>>>>(),
    SplitRow<SourceReader::BiColorSplit8, ByteSamples>(),
    SplitRow<SourceReader::BiColorSplit16, WordSamples>(),
    SplitRow<SourceReader::BiColorSplit10p, PackedSamples<Form10p>>(),
    SplitRow<SourceReader::BiColorSplit12p, PackedSamples<Form12p>>(),
    Row<SourceReader::BiColorBilinear, BilinearLines>(),
};

}  // namespace

ZR_EXPORT_KERNELS(kBiColorKernels)

}  // namespace ZrConvertersLib::simd
