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
  static void Run(const KernelArgs& args) {
    using Channel = typename Writer::Channel;
    const Samples samples(args);
    const Phase phase(args);
    const Writer writer(args);
    BlockBytes<Samples> redBytes, blueBytes;
    EachLine<2, 2>(args, [&](const auto& line) ZR_ALWAYS {
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

/// Values of the pixels of one line: `own` is the line's colour beside green, `other` the one of its
/// neighbours.
template <class Channel>
struct Interpolated {
  Channel own, green, other;
};

/// Bilinear demosaic of one line from the lines above and below, which like itself may be read one column to
/// either side. Own sites and green sites alternate; `ownOdd` says whether own sites are the odd columns.
template <class Channel>
class Bilinear;

/// In bytes, every mean at every site: a vector then holds as many columns as it has bytes, and the sites are
/// chosen at the end. The samples come complemented: processors have a mean of bytes that rounds up, and the
/// inverse of the mean of inverses is the mean rounded down.
template <>
class Bilinear<U8> {
 public:
  explicit ZR_INLINE Bilinear(bool ownOdd) : mOwn(As<U8>(Splat16(ownOdd ? 0xFF00 : 0xFF))) {}

  ZR_INLINE Interpolated<U8> Read(const std::uint8_t* const line[3], std::size_t x) const {
    const std::uint8_t *above = line[0] + x, *here = line[1] + x, *below = line[2] + x;
    const U8 site = LoadOnce(here);
    const Beside sides(LoadOnce(here - 1), LoadOnce(here + 1)), upright(LoadOnce(above), LoadOnce(below));
    const Beside left(LoadOnce(above - 1), LoadOnce(below - 1)),
        right(LoadOnce(above + 1), LoadOnce(below + 1));
    return {SelectComplement(mOwn, site, sides.mean), SelectComplement(mOwn, OfFour(sides, upright), site),
            SelectComplement(mOwn, OfFour(left, right), upright.mean)};
  }

 private:
  /// Two samples: their mean rounded up, and in bit 0 whether rounding changed it.
  struct Beside {
    U8 mean, rounded;

    ZR_INLINE Beside(U8 a, U8 b) : mean(MeanRoundedUp(a, b)), rounded(a ^ b) {}
  };

  /// The mean of four, rounded up once. Where both means of two were rounded, so that a half and a half are
  /// too much, and the mean of these was as well, it is one too large.
  static ZR_INLINE U8 OfFour(const Beside& a, const Beside& b) {
    return MeanRoundedUp(a.mean, b.mean) - (Splat8(1) & a.rounded & b.rounded & (a.mean ^ b.mean));
  }

  U8 mOwn;
};

/// On the 16-bit scale, which keeps the fractions: sums of the columns of one parity in 16-bit lanes.
template <>
class Bilinear<Words> {
 public:
  explicit ZR_INLINE Bilinear(bool ownOdd) : mOwn(ownOdd ? 1 : 0), mOddOwn(Splat16(ownOdd ? 0xFFFF : 0)) {}

  ZR_INLINE Interpolated<Words> Read(const std::uint8_t* const line[3], std::size_t x) const {
    const std::uint8_t *above = line[0] + x + mOwn, *here = line[1] + x + mOwn, *below = line[2] + x + mOwn;
    const U16 aboveLeft = Pair(above - 1), aboveRight = Pair(above + 1);
    const U16 left = Pair(here - 1), right = Pair(here + 1);
    const U16 belowLeft = Pair(below - 1), belowRight = Pair(below + 1);
    const U16 edges = High(aboveLeft) + High(belowLeft) + Low(left) + Low(right);
    const U16 corners = Low(aboveLeft) + Low(aboveRight) + Low(belowLeft) + Low(belowRight);

    const std::size_t green = x + (1 - mOwn);
    const U16 greenLeft = Pair(line[1] + green - 1), greenRight = Pair(line[1] + green + 1);
    const U16 upright = Low(Pair(line[0] + green)) + Low(Pair(line[2] + green));
    return {Merge(High(left) << 8, (Low(greenLeft) + Low(greenRight)) << 7),
            Merge(edges << 6, High(greenLeft) << 8), Merge(corners << 6, upright << 7)};
  }

 private:
  static ZR_INLINE U16 Pair(const std::uint8_t* p) { return As<U16>(Load(p)); }
  static ZR_INLINE U16 Low(U16 pair) { return pair & Splat16(0xFF); }
  static ZR_INLINE U16 High(U16 pair) { return pair >> 8; }

  ZR_INLINE Words Merge(U16 atOwn, U16 atGreen) const {
    const U16 swapped = (atOwn ^ atGreen) & mOddOwn;
    return InterleaveWords(atOwn ^ swapped, atGreen ^ swapped);
  }

  std::size_t mOwn;
  U16 mOddOwn;
};

/// The colours of a line from its own colour and that of its neighbours.
template <bool red, class Channel>
ZR_INLINE Colour<Channel> Ordered(const Interpolated<Channel>& p) {
  return {red ? p.own : p.other, p.green, red ? p.other : p.own};
}

/// Both lines of each pair together. The upper line is written first, which matters where planes of the two
/// lines overlap.
template <bool redBelow, class Writer>
ZR_INLINE void BilinearPairs(const KernelArgs& args) {
  using Channel = typename Writer::Channel;
  const Bilinear<Channel> upper(args.redAtEvenColumn == redBelow), lower(args.redAtEvenColumn != redBelow);
  const Writer writer(args);
  EachLine<6, 2>(args, [&](const auto& line) ZR_ALWAYS {
    EachBlock<Writer::kStep, 2>(line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
      constexpr int kUpper = redBelow ? 1 : 0, kLower = 1 - kUpper;
      writer.Write(line.destination[kUpper] + x * Writer::kStep,
                   Ordered<!redBelow>(upper.Read(line.source + 3 * kUpper, x)));
      writer.Write(line.destination[kLower] + x * Writer::kStep,
                   Ordered<redBelow>(lower.Read(line.source + 3 * kLower, x)));
    });
  });
}

/// Sources 0 to 2 are the line with red between its neighbours, 3 to 5 the line with blue; destination 0
/// takes the former, 1 the latter.
struct BilinearLines {
  template <BlockWriter Writer>
  static void Run(const KernelArgs& args) {
    if (args.redBelow)
      BilinearPairs<true, Writer>(args);
    else
      BilinearPairs<false, Writer>(args);
  }
};

/// Samples to bytes, each complemented, as Bilinear takes them for byte channels.
template <class Samples>
void ComplementLines(const KernelArgs& args) {
  const Samples samples(args);
  BlockBytes<Samples> block;
  EachLine<1, 1>(args, [&](const auto& line) ZR_ALWAYS {
    EachBlock<1, Samples::kGroupPixels>(line.width, line.destination[0], [&](std::size_t x) ZR_ALWAYS {
      Store(line.destination[0] + x, ~samples.Read(block.At(line, 0, x)));
    });
  });
}

/// A row of which only Mono8 exists.
template <SourceReader reader, class Samples>
constexpr KernelRow ComplementRow() {
  KernelRow row{reader, {}};
  row.with[static_cast<std::size_t>(PixelWriter::Mono8)] = &ComplementLines<Samples>;
  return row;
}

constexpr KernelRow kRows[] = {
    Row<SourceReader::BayerFast8, FastLines<ByteSamples>>(),
    Row<SourceReader::BayerFast16, FastLines<WordSamples>>(),
    Row<SourceReader::BayerFast10p, FastLines<PackedSamples<Form10p>>>(),
    Row<SourceReader::BayerFast12p, FastLines<PackedSamples<Form12p>>>(),
    Row<SourceReader::BayerFast14p, FastLines<PackedSamples<Form14p>>>(),
    Row<SourceReader::BayerFastPacked, FastLines<PackedSamples<FormPairPacked>>>(),
    Row<SourceReader::BayerFast10pCsi2, FastLines<PackedSamples<Form10pCsi2>>>(),
    Row<SourceReader::BayerFast12pCsi2, FastLines<PackedSamples<Form12pCsi2>>>(),
    Row<SourceReader::BayerFast14pCsi2, FastLines<PackedSamples<Form14pCsi2>>>(),
    Row<SourceReader::BayerFast10Gige, FastLines<PackedSamples<Form10Gige>>>(),
    Row<SourceReader::BayerFast12Gige, FastLines<PackedSamples<Form12Gige>>>(),
    Row<SourceReader::BayerBilinear, BilinearLines>(),
    ComplementRow<SourceReader::BayerComplement8, ByteSamples>(),
    ComplementRow<SourceReader::BayerComplement16, WordSamples>(),
    ComplementRow<SourceReader::BayerComplement10p, PackedSamples<Form10p>>(),
    ComplementRow<SourceReader::BayerComplement12p, PackedSamples<Form12p>>(),
    ComplementRow<SourceReader::BayerComplement14p, PackedSamples<Form14p>>(),
    ComplementRow<SourceReader::BayerComplementPacked, PackedSamples<FormPairPacked>>(),
    ComplementRow<SourceReader::BayerComplement10pCsi2, PackedSamples<Form10pCsi2>>(),
    ComplementRow<SourceReader::BayerComplement12pCsi2, PackedSamples<Form12pCsi2>>(),
    ComplementRow<SourceReader::BayerComplement14pCsi2, PackedSamples<Form14pCsi2>>(),
    ComplementRow<SourceReader::BayerComplement10Gige, PackedSamples<Form10Gige>>(),
    ComplementRow<SourceReader::BayerComplement12Gige, PackedSamples<Form12Gige>>(),
};

}  // namespace

ZR_EXPORT_KERNELS(kBayerKernels)

}  // namespace ZrConvertersLib::simd
