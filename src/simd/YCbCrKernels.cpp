#include <type_traits>

#include "simd/ColourPairs.h"
#include "simd/Line.h"
#include "simd/Packed.h"
#include "simd/Products.h"

/// Readers of YCbCr. All arithmetic is on 8-bit samples, in 32 bits and exact.

namespace ZrConvertersLib::simd {
namespace {

/// What rounding and the offsets of luma and chroma add to every sum of products.
ZR_INLINE S32 First(const YCbCrMatrix& m, int chroma, int scale) {
  return As<S32>(Splat32(static_cast<std::uint32_t>((512 - m.yOffset * m.y - 128 * chroma) * scale)));
}

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

/// 4:4:4; LumaCb and LumaCr spread pixels to words of luma and chroma in turn, LumaTwice to bytes of luma,
/// cb, luma and cr.
template <class LumaCb, class LumaCr, class LumaTwice>
struct YCbCr444Reader {
  static constexpr int kGroupPixels = 1, kGroupBytes = 3;
  static constexpr int kOverread = Spread<LumaCb>::kOverread;

  explicit ZR_INLINE YCbCr444Reader(const KernelArgs& args) : mMatrix(*args.matrix), mPairs(*args.matrix) {}

  template <class Channel>
  ZR_INLINE auto Read(const std::uint8_t* p) const {
#if defined(__SSSE3__) && !defined(__AVX512VBMI__)
    if constexpr (requires { Channel::kPlacing; })
      return ReadPairs<Channel::kPlacing>(p);
    else
#endif
      return Sums(p);
  }

 private:
#if defined(__SSSE3__) && !defined(__AVX512VBMI__)
  /// Lumas with both chroma samples of four pixels at each of one or two places, counted in fours.
  template <int low, int high>
  static ZR_INLINE U8 Fours(const std::uint8_t* p) {
    return Spread<LumaTwice>::template Read<high - low>(p + 12 * low);
  }

  template <Placing placing>
  ZR_INLINE ColourPairs<LanesOfPixels> ReadPairs(const std::uint8_t* p) const {
    if constexpr (kWidth == 16)
      return {mPairs.Single(Fours<0, 1>(p), Fours<1, 2>(p)), mPairs.Single(Fours<2, 3>(p), Fours<3, 4>(p))};
    else if constexpr (placing == Placing::Strips)
      return {mPairs.Single(Fours<0, 4>(p), Fours<1, 5>(p)), mPairs.Single(Fours<2, 6>(p), Fours<3, 7>(p))};
    else if constexpr (placing == Placing::Quarters)
      return {mPairs.Single(Fours<0, 1>(p), Fours<2, 3>(p)), mPairs.Single(Fours<4, 5>(p), Fours<6, 7>(p))};
    else
      return {mPairs.Single(Fours<0, 2>(p), Fours<1, 3>(p)), mPairs.Single(Fours<4, 6>(p), Fours<5, 7>(p))};
  }
#endif

  ZR_INLINE Colour<U8> Sums(const std::uint8_t* p) const {
    const auto quarter = [&](int i) ZR_ALWAYS {
      const std::uint8_t* const at = p + i * (kWidth / 4 * kGroupBytes);
      return mMatrix.Convert(As<S16>(Spread<LumaCb>::Read(at)), As<S16>(Spread<LumaCr>::Read(at)));
    };
    const Colour<S32> a = quarter(0), b = quarter(1), c = quarter(2), d = quarter(3);
    return {Clip(a.red, b.red, c.red, d.red), Clip(a.green, b.green, c.green, d.green),
            Clip(a.blue, b.blue, c.blue, d.blue)};
  }

  Matrix mMatrix;
  PairMatrix<true> mPairs;
};

/// Two pixels of 4:4:4, luma and one of the chroma samples each.
template <int luma, int chroma>
struct Pairs {
  static constexpr int kBytes = 6, kResult = 8;
  static constexpr int At(int j) {
    return j % 4 == 0 ? j / 4 * 3 + luma : j % 4 == 2 ? j / 4 * 3 + chroma : -1;
  }
};

/// A pixel of 4:4:4, its luma with each of the chroma samples.
template <int luma, int cb, int cr>
struct Twofold {
  static constexpr int kBytes = 3, kResult = 4;
  static constexpr int At(int j) { return j % 2 == 0 ? luma : j == 1 ? cb : cr; }
};

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

 private:
  Form mForm;
};

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
#endif
template <>
struct SharedWriter<RGB565Writer<false>> {
  using Type = SumsTo565;
};

/// ... and where they do not.
template <class Writer>
struct SingleWriter : PairWriter<Writer> {};
#if defined(__SSSE3__) && !defined(__AVX512VBMI__)
template <int depth>
struct SingleWriter<PlanarWriter<depth, false>> {
  using Type = PairsToWordPlanes<depth>;
};
template <>
struct SingleWriter<PlanarWriter<8, false>> {
  using Type = PairsToPlanes;
};
template <>
struct SingleWriter<RGB565Writer<false>> {
  using Type = PairsTo565;
};
#endif

template <class Samples, bool lumaFirst = true>
struct SharedLines {
  using Source = SharedReader<Samples, lumaFirst>;

  template <BlockWriter Writer>
  static void Run(const KernelArgs& args) {
    Lines<Source>::template Run<typename SharedWriter<Writer>::Type>(args);
  }
};

template <class Reader>
struct SingleLines {
  using Source = Reader;

  template <BlockWriter Writer>
  static void Run(const KernelArgs& args) {
    Lines<Source>::template Run<typename SingleWriter<Writer>::Type>(args);
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
    Row<SourceReader::YCbCr, SingleLines<YCbCr444Reader<Pairs<0, 1>, Pairs<0, 2>, Twofold<0, 1, 2>>>>(),
    Row<SourceReader::CbYCr, SingleLines<YCbCr444Reader<Pairs<1, 0>, Pairs<1, 2>, Twofold<1, 0, 2>>>>(),
    Row<SourceReader::YCbYCr8, SharedLines<Samples8, true>>(),
    Row<SourceReader::YCbYCr16, SharedLines<Samples16, true>>(),
    Row<SourceReader::YCbYCr10p, SharedLines<SamplesPacked<Form10p>, true>>(),
    Row<SourceReader::YCbYCr12p, SharedLines<SamplesPacked<Form12p>, true>>(),
    Row<SourceReader::YCbYCr10pCsi2, SharedLines<SamplesPacked<Form10pCsi2>, true>>(),
    Row<SourceReader::CbYCrY8, SharedLines<Samples8, false>>(),
    Row<SourceReader::CbYCrY16, SharedLines<Samples16, false>>(),
    Row<SourceReader::CbYCrY10p, SharedLines<SamplesPacked<Form10p>, false>>(),
    Row<SourceReader::CbYCrY12p, SharedLines<SamplesPacked<Form12p>, false>>(),
    Row<SourceReader::CbYCrY10pCsi2, SharedLines<SamplesPacked<Form10pCsi2>, false>>(),
    Row<SourceReader::YYCbYYCr, SharedLines<Samples411<YYCbYYCr>>>(),
    Row<SourceReader::CbYYCrYY, SharedLines<Samples411<CbYYCrYY>>>(),
};

}  // namespace

ZR_EXPORT_KERNELS(kYCbCrKernels)

}  // namespace ZrConvertersLib::simd
