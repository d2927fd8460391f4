#include "simd/Line.h"
#include "simd/Mean.h"
#include "simd/Packed.h"

/// Readers of colour filter mosaics, a pair of lines at a time. All arithmetic is on 8-bit samples. A 16-bit
/// lane holds two neighbouring columns, the even one in its low byte.

namespace ZrConvertersLib::simd {
namespace {

#if !defined(__x86_64__) || defined(__SSSE3__)

/// Bytes of pairs chosen by a table that is made once a line: the same byte of each pair, twice.
class Phase {
 public:
  explicit ZR_INLINE Phase(const KernelArgs& args)
      : mRed(Constant<Even>::Get() + Splat8(args.redAtEvenColumn ? 0 : 1)), mBlue(mRed ^ Splat8(1)) {}

  ZR_INLINE U8 AtRed(U8 pairs) const { return ShuffleBytes(pairs, mRed); }
  ZR_INLINE U8 BesideRed(U8 pairs) const { return ShuffleBytes(pairs, mBlue); }

 private:
  struct Even {
    static constexpr int At(int i) { return i % 16 / 2 * 2; }
  };

  U8 mRed, mBlue;
};

#else

/// Bytes of pairs: the one in the column that red has in its line, or the other one, twice.
class Phase {
 public:
  explicit ZR_INLINE Phase(const KernelArgs& args) : mUp(args.redAtEvenColumn ? 8 : 0) {}

  ZR_INLINE U8 AtRed(U8 pairs) const { return Twice(ShiftLeft(As<U16>(pairs), mUp)); }
  ZR_INLINE U8 BesideRed(U8 pairs) const { return Twice(ShiftLeft(As<U16>(pairs), 8 - mUp)); }

 private:
  static ZR_INLINE U8 Twice(U16 inHighByte) {
    return As<U8>((inHighByte >> 8) | (inHighByte & Splat16(0xFF00)));
  }

  std::uint32_t mUp;
};

#endif

/// Mosaic samples in bytes.
struct ByteSamples {
  static constexpr int kGroupPixels = 1, kGroupBytes = 1, kOverread = 0;

  explicit ZR_INLINE ByteSamples(const KernelArgs&) {}

  ZR_INLINE U8 Read(const std::uint8_t* p) const { return Load(p); }
};

/// Mosaic samples in words: shifted down, then cut to 8 bits.
struct WordSamples {
  static constexpr int kGroupPixels = 1, kGroupBytes = 2, kOverread = 0;

  explicit ZR_INLINE WordSamples(const KernelArgs& args) : mShift(args.shift) {}

  ZR_INLINE U8 Read(const std::uint8_t* p) const {
    const Words samples = LoadWords(p);
    return NarrowLow({ShiftRight(samples.a, mShift), ShiftRight(samples.b, mShift)});
  }

 private:
  std::uint32_t mShift;
};

/// Packed mosaic samples, cut to 8 bits.
template <class Form>
struct PackedSamples {
  static constexpr int kGroupPixels = Form::kPixels, kGroupBytes = Form::kBytes;
  static constexpr int kOverread = Packed<Form>::kOverread;

  explicit ZR_INLINE PackedSamples(const KernelArgs& args) : mForm{args.shift} {}

  ZR_INLINE U8 Read(const std::uint8_t* p) const { return Packed<Form>::ReadHigh(mForm, p); }

 private:
  Form mForm;
};

/// Fast demosaic: one colour for the four pixels of a tile, green the mean of its two. Source 0 is the line
/// with red, source 1 the line with blue; both destination lines get the same pixels.
template <class Samples>
struct FastLines {
  using Source = Samples;

  template <BlockWriter Writer>
  static void Run(const LineBlock& lines, const KernelArgs& args) {
    using Channel = typename Writer::Channel;
    const Samples samples(args);
    const Phase phase(args);
    const Writer writer(args);
    BlockBytes<Samples> redBytes, blueBytes;
    EachLine<2, 2>(lines, args.ahead, [&](const auto& line) ZR_ALWAYS {
      constexpr int kGroup = Samples::kGroupPixels > 2 ? Samples::kGroupPixels : 2;
      EachBlock<Writer::kStep, kGroup>(line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
        const U8 withRed = samples.Read(redBytes.At(line, 0, x));
        const U8 withBlue = samples.Read(blueBytes.At(line, 1, x));
        const Colour<Channel> block = {
            Cast<Channel>::From(phase.AtRed(withRed)),
            MeanOfTwo<Channel>::Get(phase.BesideRed(withRed), phase.AtRed(withBlue)),
            Cast<Channel>::From(phase.BesideRed(withBlue))};
        writer.Write(line.destination[0] + x * Writer::kStep, block);
        writer.Write(line.destination[1] + x * Writer::kStep, block);
      });
    });
  }
};

/// Sums of samples in 16-bit lanes, 2^bits samples each.
template <int bits>
struct Sums {
  U16 sum;

  /// The mean as a byte in the lower or in the upper half of its lane, or on the 16-bit scale, which keeps
  /// the fraction.
  ZR_INLINE U16 LowByte() const { return sum >> bits; }
  ZR_INLINE U16 HighByte() const { return bits == 0 ? sum << 8 : (sum << (8 - bits)) & Splat16(0xFF00); }
  ZR_INLINE U16 Scaled() const { return sum << (8 - bits); }
};

/// One channel of a line: its values in even and in odd columns.
template <int evenBits, int oddBits>
struct Columns {
  Sums<evenBits> even;
  Sums<oddBits> odd;
};

template <int low, int high>
ZR_INLINE U8 BytesOf(Sums<low> inLow, Sums<high> inHigh) {
#if defined(__AVX512VBMI__)
  struct Offset {
    static constexpr int At(int i) { return i % 8 / 2 * 16 + high; }
  };
  return As<U8>(_mm512_mask_multishift_epi64_epi8(As<Native>(inLow.LowByte()), 0xAAAAAAAAAAAAAAAA,
                                                  As<Native>(Constant<Offset>::Get()),
                                                  As<Native>(inHigh.sum)));
#else
  return As<U8>(inLow.LowByte() | inHigh.HighByte());
#endif
}

template <class Channel>
struct Join;

template <>
struct Join<U8> {
  template <int even, int odd>
  static ZR_INLINE U8 Of(const Columns<even, odd>& x) {
    return BytesOf(x.even, x.odd);
  }
};

template <>
struct Join<Words> {
  template <int even, int odd>
  static ZR_INLINE Words Of(const Columns<even, odd>& x) {
    return InterleaveWords(x.even.Scaled(), x.odd.Scaled());
  }
};

template <class Writer, class Red, class Green, class Blue>
ZR_INLINE void WriteColumns(const Writer& writer, std::uint8_t* p, const Red& red, const Green& green,
                            const Blue& blue) {
  using To = Join<typename Writer::Channel>;
  writer.Write(p, Colour<typename Writer::Channel>{To::Of(red), To::Of(green), To::Of(blue)});
}

/// Three bytes a pixel as three words for two pixels, which are easier to interleave.
template <bool blueFirst, class Red, class Green, class Blue>
ZR_INLINE void WriteColumns(const ThreeBytesWriter<blueFirst>&, std::uint8_t* p, const Red& red,
                            const Green& green, const Blue& blue) {
  if constexpr (blueFirst)
    WriteColumns(ThreeBytesWriter<false>(KernelArgs{}), p, blue, green, red);
  else
    Store3<2>(p,
              {{BytesOf(red.even, green.even), BytesOf(blue.even, red.odd), BytesOf(green.odd, blue.odd)}});
}

#if !defined(__AVX512VBMI__)
/// A word of five, six and five bits, straight from the sums. With wide vectors bytes select bits faster.
template <int redBits, int greenBits, int blueBits>
ZR_INLINE U16 WordOf565(Sums<redBits> red, Sums<greenBits> green, Sums<blueBits> blue) {
  const U16 middle = (green.sum << (3 - greenBits)) & Splat16(0x07E0);
  return (red.Scaled() & Splat16(0xF800)) | middle | (blue.sum >> (3 + blueBits));
}

template <class Red, class Green, class Blue>
ZR_INLINE void WriteColumns(const RGB565Writer<false>&, std::uint8_t* p, const Red& red, const Green& green,
                            const Blue& blue) {
  const Words words =
      InterleaveWords(WordOf565(red.even, green.even, blue.even), WordOf565(red.odd, green.odd, blue.odd));
  Store(p, words.a);
  Store(p + kWidth, words.b);
}
#endif

/// Bilinear demosaic of a pair of lines. In each line sites of its own colour and green ones alternate; the
/// lines above and below have green and the third colour, which is the other line's own. Lines come as rows
/// of 16-bit samples of even and of odd columns; these may be read one sample to either side. Rows 0 to 3 are
/// the line above the pair, the pair and the line below. `ownOdd`: the upper line has its own colour in odd
/// columns, and the lower one in even columns.
template <bool ownOdd>
class BilinearPair {
 public:
  /// Odd columns are equally far from even ones in all rows, so half of the pointers are enough.
  template <class Line>
  explicit ZR_INLINE BilinearPair(const Line& line, std::size_t x)
      : mRow{line.source[0] + x, line.source[2] + x, line.source[4] + x, line.source[6] + x},
        mToOdd(line.source[1] - line.source[0]),
        mInUpper(Beside<1, !ownOdd>()),
        mInLower(Beside<2, ownOdd>()) {}

  /// The upper line's own colour, in either line.
  ZR_INLINE auto UpperOwn() const { return Join<ownOdd>(Sums<0>{At<1, ownOdd>()}, Sums<1>{mInUpper}); }
  ZR_INLINE auto UpperOwnBelow() const {
    const U16 corners = mInUpper + Beside<3, !ownOdd>();
    return Join<!ownOdd>(Sums<2>{corners}, Sums<1>{At<1, ownOdd>() + At<3, ownOdd>()});
  }
  /// The lower line's own colour, in either line.
  ZR_INLINE auto LowerOwn() const { return Join<!ownOdd>(Sums<0>{At<2, !ownOdd>()}, Sums<1>{mInLower}); }
  ZR_INLINE auto LowerOwnAbove() const {
    const U16 corners = Beside<0, ownOdd>() + mInLower;
    return Join<ownOdd>(Sums<2>{corners}, Sums<1>{At<0, !ownOdd>() + At<2, !ownOdd>()});
  }
  /// Green of a line: row 1 or 2.
  template <int row>
  ZR_INLINE auto Green() const {
    constexpr bool kOwnOdd = ownOdd == (row == 1);
    const U16 edges = Beside<row, kOwnOdd>() + (At<row - 1, kOwnOdd>() + At<row + 1, kOwnOdd>());
    return Join<kOwnOdd>(Sums<2>{edges}, Sums<0>{At<row, !kOwnOdd>()});
  }

 private:
  /// Samples in the even, or in the odd, columns of a block.
  template <int row, bool odd>
  ZR_INLINE U16 At() const {
    return As<U16>(Load(mRow[row] + (odd ? mToOdd : 0)));
  }
  /// The sums of their neighbours to the left and to the right.
  template <int row, bool odd>
  ZR_INLINE U16 Beside() const {
    const std::uint8_t* const left = odd ? mRow[row] : mRow[row] + mToOdd - 2;
    return As<U16>(Load(left)) + As<U16>(Load(left + 2));
  }

  template <bool ownIsOdd, int own, int green>
  static ZR_INLINE auto Join(Sums<own> atOwn, Sums<green> atGreen) {
    if constexpr (ownIsOdd)
      return Columns<green, own>{atGreen, atOwn};
    else
      return Columns<own, green>{atOwn, atGreen};
  }

  const std::uint8_t* mRow[4];
  std::ptrdiff_t mToOdd;
  U16 mInUpper, mInLower;  ///< sums that both lines need
};

template <bool ownOdd, bool upperRed, class Writer>
void InterpolatePairs(const LineBlock& lines, const KernelArgs& args) {
  const Writer writer(args);
  EachLine<8, 2>(lines, args.ahead, [&](const auto& line) ZR_ALWAYS {
    EachBlock<Writer::kStep, 2>(line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
      const BilinearPair<ownOdd> pixels(line, x);
      std::uint8_t* const upper = line.destination[0] + x * Writer::kStep;
      std::uint8_t* const lower = line.destination[1] + x * Writer::kStep;
      const auto own = pixels.UpperOwn();
      const auto third = pixels.LowerOwnAbove();
      const auto green = pixels.template Green<1>();
      const auto ownBelow = pixels.LowerOwn();
      const auto thirdBelow = pixels.UpperOwnBelow();
      const auto greenBelow = pixels.template Green<2>();
      if constexpr (upperRed) {
        WriteColumns(writer, upper, own, green, third);
        WriteColumns(writer, lower, thirdBelow, greenBelow, ownBelow);
      } else {
        WriteColumns(writer, upper, third, green, own);
        WriteColumns(writer, lower, ownBelow, greenBelow, thirdBelow);
      }
    });
  });
}

/// Lookups take much code. They stand here once, for both lines and whichever colour is the upper line's own.
template <bool ownOdd, class Writer>
void InterpolateThroughTables(const LineBlock& lines, const KernelArgs& args) {
  const Writer writer(args);
  const int red = args.redInLine ? 0 : 2;
  EachLine<8, 2>(lines, args.ahead, [&](const auto& line) ZR_ALWAYS {
    EachBlock<Writer::kStep, 2>(line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
      const BilinearPair<ownOdd> pixels(line, x);
      using To = Join<U8>;
      const U8 channels[2][3] = {
          {To::Of(pixels.UpperOwn()), To::Of(pixels.template Green<1>()), To::Of(pixels.LowerOwnAbove())},
          {To::Of(pixels.UpperOwnBelow()), To::Of(pixels.template Green<2>()), To::Of(pixels.LowerOwn())}};
      for (int i = 0; i < 2; ++i) {
        const U8* const at = channels[i];
        writer.Write(line.destination[i] + x * Writer::kStep, Colour<U8>{at[red], at[1], at[2 - red]});
      }
    });
  });
}

/// Whether a writer takes no channel but green.
template <class Writer>
inline constexpr bool kGreenOnly = false;
template <int depth>
inline constexpr bool kGreenOnly<MonoWriter<depth>> = true;

/// Whether a writer looks its bytes up.
template <class Writer>
inline constexpr bool kLooksUp = false;
template <bool blueFirst>
inline constexpr bool kLooksUp<ThreeBytesWriter<blueFirst, true>> = true;
template <bool blueFirst>
inline constexpr bool kLooksUp<FourBytesWriter<blueFirst, true>> = true;
template <>
inline constexpr bool kLooksUp<RGB565Writer<true>> = true;
template <int depth>
inline constexpr bool kLooksUp<PlanarWriter<depth, true>> = true;

/// Sources 0 to 7 are rows of even and of odd columns in turn, of four lines that follow one another.
struct BilinearLines {
  template <BlockWriter Writer>
  static void Run(const LineBlock& lines, const KernelArgs& args) {
    args.redAtEvenColumn == args.redInLine ? RunPairs<false, Writer>(lines, args)
                                           : RunPairs<true, Writer>(lines, args);
  }

 private:
  template <bool ownOdd, class Writer>
  static ZR_INLINE void RunPairs(const LineBlock& lines, const KernelArgs& args) {
    if constexpr (kLooksUp<Writer>)
      InterpolateThroughTables<ownOdd, Writer>(lines, args);
    else if constexpr (kGreenOnly<Writer>)  // blue is as good as red
      InterpolatePairs<ownOdd, true, Writer>(lines, args);
    else
      args.redInLine ? InterpolatePairs<ownOdd, true, Writer>(lines, args)
                     : InterpolatePairs<ownOdd, false, Writer>(lines, args);
  }
};

/// Mosaic lines to rows of 8-bit samples in 16-bit words: those of even columns to destination 0, of odd
/// columns to destination 1. The samples before an odd last one are read first, those of the last block from
/// an odd column on then.
template <class Samples>
void SplitLines(const LineBlock& lines, const KernelArgs& args) {
  const Samples samples(args);
  BlockBytes<Samples> block;
  EachLine<1, 2>(lines, args.ahead, [&](const auto& line) ZR_ALWAYS {
    const auto split = [&](std::size_t x, std::uint8_t* first, std::uint8_t* second) ZR_ALWAYS {
      const U16 pairs = As<U16>(samples.Read(block.At(line, 0, x)));
      Store(first, pairs & Splat16(0xFF));
      Store(second, pairs >> 8);
    };
    constexpr int kGroup = Samples::kGroupPixels > 2 ? Samples::kGroupPixels : 2;
    EachBlock<1, kGroup>(line.width - line.width % 2, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
      split(x, line.destination[0] + x, line.destination[1] + x);
    });
    if (const std::size_t x = line.width - kWidth; Samples::kGroupPixels == 1 && x % 2 != 0)
      split(x, line.destination[1] + x - 1, line.destination[0] + x + 1);
  });
}

/// A row of which only Mono8 exists.
template <SourceReader reader, class Samples>
constexpr KernelRow SplitRow() {
  KernelRow row{reader, {}};
  row.with[static_cast<std::size_t>(PixelWriter::Mono8)] = &SplitLines<Samples>;
  return row;
}

/// Pairs of samples in three bytes, of which the first and the last one hold the upper eight bits. The bits
/// below are cut off, so packings that differ in them share their kernels.
using FormPairs = Form12Gige;

constexpr KernelRow kRows[] = {
    Row<SourceReader::BayerFast8, FastLines<ByteSamples>>(),
    Row<SourceReader::BayerFast16, FastLines<WordSamples>>(),
    Row<SourceReader::BayerFast10p, FastLines<PackedSamples<Form10p>>>(),
    Row<SourceReader::BayerFast12p, FastLines<PackedSamples<Form12p>>>(),
    Row<SourceReader::BayerFast14p, FastLines<PackedSamples<Form14p>>>(),
    Row<SourceReader::BayerFastPacked, FastLines<PackedSamples<FormPairs>>>(),
    Row<SourceReader::BayerFast10pCsi2, FastLines<PackedSamples<Form10pCsi2>>>(),
    Row<SourceReader::BayerFast12pCsi2, FastLines<PackedSamples<Form12pCsi2>>>(),
    Row<SourceReader::BayerFast14pCsi2, FastLines<PackedSamples<Form14pCsi2>>>(),
    Row<SourceReader::BayerFast10Gige, FastLines<PackedSamples<FormPairs>>>(),
    Row<SourceReader::BayerFast12Gige, FastLines<PackedSamples<FormPairs>>>(),
    Row<SourceReader::BayerBilinear, BilinearLines>(),
    SplitRow<SourceReader::BayerSplit8, ByteSamples>(),
    SplitRow<SourceReader::BayerSplit16, WordSamples>(),
    SplitRow<SourceReader::BayerSplit10p, PackedSamples<Form10p>>(),
    SplitRow<SourceReader::BayerSplit12p, PackedSamples<Form12p>>(),
    SplitRow<SourceReader::BayerSplit14p, PackedSamples<Form14p>>(),
    SplitRow<SourceReader::BayerSplitPacked, PackedSamples<FormPairs>>(),
    SplitRow<SourceReader::BayerSplit10pCsi2, PackedSamples<Form10pCsi2>>(),
    SplitRow<SourceReader::BayerSplit12pCsi2, PackedSamples<Form12pCsi2>>(),
    SplitRow<SourceReader::BayerSplit14pCsi2, PackedSamples<Form14pCsi2>>(),
    SplitRow<SourceReader::BayerSplit10Gige, PackedSamples<FormPairs>>(),
    SplitRow<SourceReader::BayerSplit12Gige, PackedSamples<FormPairs>>(),
};

}  // namespace

ZR_EXPORT_KERNELS(kBayerKernels)

}  // namespace ZrConvertersLib::simd
