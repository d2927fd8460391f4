#include "simd/Line.h"
#include "simd/Packed.h"

/// Readers of YCbCr. All arithmetic is on 8-bit samples, in 32 bits and exact.

namespace ZrConvertersLib::simd {
namespace {

ZR_INLINE S16 Pair(int low, int high) {
  return As<S16>(
      Splat32((static_cast<std::uint32_t>(high) << 16) | (static_cast<std::uint32_t>(low) & 0xFFFF)));
}

/// What rounding and the offsets of luma and chroma add to every sum of products.
ZR_INLINE S32 First(const YCbCrMatrix& m, int chroma, int scale) {
  return As<S32>(Splat32(static_cast<std::uint32_t>((512 - m.yOffset * m.y - 128 * chroma) * scale)));
}

/// The matrix for 4:4:4, where each pixel has its own chroma. A 32-bit element takes one pixel: luma in its
/// low half and a chroma sample in its high half, so that a sum of products is one instruction.
class Matrix {
 public:
  explicit ZR_INLINE Matrix(const YCbCrMatrix& m)
      : mRed(Pair(m.y, m.redV)),
        mBlue(Pair(m.y, m.blueU)),
        mGreenCr(Pair(m.y, m.greenV)),
        mGreenCb(Pair(0, m.greenU)),
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

/// The matrix for chroma shared by two pixels. A 32-bit element takes both: products of luma apart, those of
/// chroma added to either. Samples come 6 bits up, so that results are the high halves of the sums.
class SharedMatrix {
 public:
  explicit ZR_INLINE SharedMatrix(const YCbCrMatrix& m)
      : mEven(Pair(m.y, 0)),
        mOdd(Pair(0, m.y)),
        mRed(Pair(0, m.redV)),
        mGreen(Pair(m.greenU, m.greenV)),
        mBlue(Pair(m.blueU, 0)),
        mFirst(First(m, 0, 64)),
        mRedOffset(As<S32>(Splat32(static_cast<std::uint32_t>(-128 * 64 * m.redV)))),
        mGreenOffset(As<S32>(Splat32(static_cast<std::uint32_t>(-128 * 64 * (m.greenU + m.greenV))))),
        mBlueOffset(As<S32>(Splat32(static_cast<std::uint32_t>(-128 * 64 * m.blueU)))) {}

  /// Of kWidth / 2 pixels, as words that are not clipped yet, from words of luma and of cb and cr in turn.
  ZR_INLINE Colour<S16> Convert(S16 luma, S16 chroma) const {
    const S32 even = MultiplyAddPairs(mFirst, luma, mEven), odd = MultiplyAddPairs(mFirst, luma, mOdd);
    const auto channel = [&](S32 offset, S16 factors) ZR_ALWAYS {
      const S32 share = MultiplyAddPairs(offset, chroma, factors);
      return As<S16>(JoinUpper(even + share, odd + share));
    };
    return {channel(mRedOffset, mRed), channel(mGreenOffset, mGreen), channel(mBlueOffset, mBlue)};
  }

 private:
  S16 mEven, mOdd, mRed, mGreen, mBlue;
  S32 mFirst, mRedOffset, mGreenOffset, mBlueOffset;
};

/// Four vectors of 32-bit values to one of bytes, clipped to 0..255, natural order.
ZR_INLINE U8 Clip(S32 a, S32 b, S32 c, S32 d) {
  return JoinQuarters(PackClipped(PackSigned(a, b), PackSigned(c, d)));
}

/// 4:4:4; LumaCb and LumaCr spread pixels to words of luma and chroma in turn.
template <class LumaCb, class LumaCr>
struct YCbCr444Reader {
  static constexpr int kGroupPixels = 1, kGroupBytes = 3;
  static constexpr int kOverread = Spread<LumaCb>::kOverread;

  explicit ZR_INLINE YCbCr444Reader(const KernelArgs& args) : mMatrix(*args.matrix) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    const auto quarter = [&](int i) ZR_ALWAYS {
      const std::uint8_t* const at = p + i * (kWidth / 4 * kGroupBytes);
      return mMatrix.Convert(As<S16>(Spread<LumaCb>::Read(at)), As<S16>(Spread<LumaCr>::Read(at)));
    };
    const Colour<S32> a = quarter(0), b = quarter(1), c = quarter(2), d = quarter(3);
    return {Clip(a.red, b.red, c.red, d.red), Clip(a.green, b.green, c.green, d.green),
            Clip(a.blue, b.blue, c.blue, d.blue)};
  }

 private:
  Matrix mMatrix;
};

/// Two pixels of 4:4:4, luma and one of the chroma samples each.
template <int luma, int chroma>
struct Pairs {
  static constexpr int kBytes = 6, kResult = 8;
  static constexpr int At(int j) {
    return j % 4 == 0 ? j / 4 * 3 + luma : j % 4 == 2 ? j / 4 * 3 + chroma : -1;
  }
};

/// Luma and chroma in turn, with cb and cr in turn, to colours: what 4:2:2 is, and what 4:1:1 is brought to.
template <bool lumaFirst>
class SharedConverter {
 public:
  explicit ZR_INLINE SharedConverter(const KernelArgs& args) : mMatrix(*args.matrix) {}

  ZR_INLINE Colour<U8> Convert(U8 a, U8 b) const {
    const Colour<S16> first = Half(As<U16>(a)), second = Half(As<U16>(b));
    const auto clip = [](S16 low, S16 high) ZR_ALWAYS { return JoinHalves(PackClipped(low, high)); };
    return {clip(first.red, second.red), clip(first.green, second.green), clip(first.blue, second.blue)};
  }

 private:
  /// Words with a sample in either byte: the samples 6 bits up.
  ZR_INLINE Colour<S16> Half(U16 x) const {
    const S16 low = As<S16>((x << 6) & Splat16(0xFF << 6)), high = As<S16>((x >> 2) & Splat16(0xFF << 6));
    if constexpr (lumaFirst)
      return mMatrix.Convert(low, high);
    else
      return mMatrix.Convert(high, low);
  }

  SharedMatrix mMatrix;
};

/// 4:2:2 with samples in bytes.
template <bool lumaFirst>
struct YCbCr422Reader {
  static constexpr int kGroupPixels = 2, kGroupBytes = 4, kOverread = 0;

  explicit ZR_INLINE YCbCr422Reader(const KernelArgs& args) : mConverter(args) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    return mConverter.Convert(Load(p), Load(p + kWidth));
  }

 private:
  SharedConverter<lumaFirst> mConverter;
};

/// 4:2:2 with samples in words, which are cut to their upper 8 bits.
template <bool lumaFirst>
struct YCbCr422WordsReader {
  static constexpr int kGroupPixels = 2, kGroupBytes = 8, kOverread = 0;

  explicit ZR_INLINE YCbCr422WordsReader(const KernelArgs& args) : mConverter(args), mShift(args.shift) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    return mConverter.Convert(Reduced(p), Reduced(p + 2 * kWidth));
  }

 private:
  ZR_INLINE U8 Reduced(const std::uint8_t* p) const {
    const Words x = LoadWords(p);
    return NarrowLow({ShiftRight(x.a, mShift), ShiftRight(x.b, mShift)});
  }

  SharedConverter<lumaFirst> mConverter;
  std::uint32_t mShift;
};

/// 4:2:2 with packed samples, which are cut to their upper 8 bits.
template <bool lumaFirst, class Form>
struct YCbCr422PackedReader {
  static constexpr int kGroupPixels = 2, kGroupBytes = 4 / Form::kPixels * Form::kBytes;
  static constexpr int kOverread = Packed<Form>::kOverread;

  explicit ZR_INLINE YCbCr422PackedReader(const KernelArgs& args) : mConverter(args), mForm{args.shift} {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    return mConverter.Convert(Reduced(p), Reduced(p + Packed<Form>::kTaken));
  }

 private:
  ZR_INLINE U8 Reduced(const std::uint8_t* p) const { return Packed<Form>::ReadHigh(mForm, p); }

  SharedConverter<lumaFirst> mConverter;
  Form mForm;
};

/// 4:1:1: six bytes of four pixels are spread to luma and chroma in turn, as 4:2:2 has them.
template <class Order>
struct YCbCr411Reader {
  static constexpr int kGroupPixels = 4, kGroupBytes = 6;
  static constexpr int kOverread = Spread<Order>::kOverread;

  explicit ZR_INLINE YCbCr411Reader(const KernelArgs& args) : mConverter(args) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    return mConverter.Convert(Spread<Order>::Read(p), Spread<Order>::Read(p + kWidth / 8 * 6));
  }

 private:
  SharedConverter<true> mConverter;
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
    Row<SourceReader::YCbCr, Lines<YCbCr444Reader<Pairs<0, 1>, Pairs<0, 2>>>>(),
    Row<SourceReader::CbYCr, Lines<YCbCr444Reader<Pairs<1, 0>, Pairs<1, 2>>>>(),
    Row<SourceReader::YCbYCr8, Lines<YCbCr422Reader<true>>>(),
    Row<SourceReader::YCbYCr16, Lines<YCbCr422WordsReader<true>>>(),
    Row<SourceReader::YCbYCr10p, Lines<YCbCr422PackedReader<true, Form10p>>>(),
    Row<SourceReader::YCbYCr12p, Lines<YCbCr422PackedReader<true, Form12p>>>(),
    Row<SourceReader::YCbYCr10pCsi2, Lines<YCbCr422PackedReader<true, Form10pCsi2>>>(),
    Row<SourceReader::CbYCrY8, Lines<YCbCr422Reader<false>>>(),
    Row<SourceReader::CbYCrY16, Lines<YCbCr422WordsReader<false>>>(),
    Row<SourceReader::CbYCrY10p, Lines<YCbCr422PackedReader<false, Form10p>>>(),
    Row<SourceReader::CbYCrY12p, Lines<YCbCr422PackedReader<false, Form12p>>>(),
    Row<SourceReader::CbYCrY10pCsi2, Lines<YCbCr422PackedReader<false, Form10pCsi2>>>(),
    Row<SourceReader::YYCbYYCr, Lines<YCbCr411Reader<YYCbYYCr>>>(),
    Row<SourceReader::CbYYCrYY, Lines<YCbCr411Reader<CbYYCrYY>>>(),
};

}  // namespace

ZR_EXPORT_KERNELS(kYCbCrKernels)

}  // namespace ZrConvertersLib::simd
