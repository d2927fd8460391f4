#include "simd/Line.h"
#include "simd/Spread.h"

/// Readings of YCbCr. All arithmetic is on 8-bit samples and exact: with luma and chroma moved 6 bits up, the
/// rounded 32-bit sums of products have their results, -289 to 546, in the upper halves, and packing clips
/// them.

namespace ZrConvertersLib::simd {
namespace {

/// One line's matrix with its coefficients paired as the 32-bit sums want them.
class Matrix {
 public:
  explicit ZR_INLINE Matrix(const YCbCrMatrix& m)
      : mOffset(Splat16(static_cast<unsigned>(m.yOffset) << 6)),
        mLumaRed(Pair(m.y, m.redV)),
        mLumaBlue(Pair(m.y, m.blueU)),
        mLumaGreen(Pair(m.y, m.greenV)),
        mGreenFromCb(Pair(0, m.greenU)),
        mLumaEven(Pair(m.y, 0)),
        mLumaOdd(Pair(0, m.y)),
        mRedFromCr(Pair(0, m.redV)),
        mGreen(Pair(m.greenU, m.greenV)),
        mBlueFromCb(Pair(m.blueU, 0)) {}

  /// 4:4:4. Words of y, cb, cr (0 to 255) to words of red, green and blue, not clipped.
  ZR_INLINE Colour<U16> PerPixel(U16 y, U16 cb, U16 cr) const {
    const U16 luma = Luma(y), u = Chroma(cb), v = Chroma(cr);
    const S16 evenV = EvenPair(luma, v), oddV = OddPair(luma, v);
    const S16 evenU = EvenPair(luma, u), oddU = OddPair(luma, u);
    return {Join(Sum(evenV, mLumaRed), Sum(oddV, mLumaRed)),
            Join(MultiplyAddPairs(Sum(evenV, mLumaGreen), evenU, mGreenFromCb),
                 MultiplyAddPairs(Sum(oddV, mLumaGreen), oddU, mGreenFromCb)),
            Join(Sum(evenU, mLumaBlue), Sum(oddU, mLumaBlue))};
  }

  /// Chroma shared by two pixels. y: words of luma; chroma: words of cb and cr in turn.
  ZR_INLINE Colour<U16> PerPair(U16 y, U16 chroma) const {
    const S16 luma = As<S16>(Luma(y)), uv = As<S16>(Chroma(chroma));
    const S32 even = Sum(luma, mLumaEven), odd = Sum(luma, mLumaOdd);
    return {Join(MultiplyAddPairs(even, uv, mRedFromCr), MultiplyAddPairs(odd, uv, mRedFromCr)),
            Join(MultiplyAddPairs(even, uv, mGreen), MultiplyAddPairs(odd, uv, mGreen)),
            Join(MultiplyAddPairs(even, uv, mBlueFromCb), MultiplyAddPairs(odd, uv, mBlueFromCb))};
  }

 private:
  static ZR_INLINE S16 Pair(int low, int high) {
    const std::uint32_t pair =
        (static_cast<std::uint32_t>(high) << 16) | (static_cast<std::uint32_t>(low) & 0xFFFF);
    return As<S16>(Splat32(pair));
  }

  ZR_INLINE U16 Luma(U16 y) const { return (y << 6) - mOffset; }
  static ZR_INLINE U16 Chroma(U16 c) { return (c << 6) - Splat16(128 << 6); }

  static ZR_INLINE S32 Sum(S16 a, S16 b) { return MultiplyAddPairs(As<S32>(Splat32(512 << 6)), a, b); }

  /// (first, second) of the even, or of the odd pixels.
  static ZR_INLINE S16 EvenPair(U16 first, U16 second) {
    return As<S16>((As<U32>(first) & Splat32(0xFFFF)) | (As<U32>(second) << 16));
  }
  static ZR_INLINE S16 OddPair(U16 first, U16 second) {
    return As<S16>((As<U32>(first) >> 16) | (As<U32>(second) & Splat32(0xFFFF0000)));
  }

  /// The upper halves of the sums of even and odd pixels, in the order of the pixels.
  static ZR_INLINE U16 Join(S32 even, S32 odd) {
    return As<U16>((As<U32>(even) >> 16) | (As<U32>(odd) & Splat32(0xFFFF0000)));
  }

  U16 mOffset;
  S16 mLumaRed, mLumaBlue, mLumaGreen, mGreenFromCb;
  S16 mLumaEven, mLumaOdd, mRedFromCr, mGreen, mBlueFromCb;
};

/// Two halves of results to clipped bytes; `join` restores what packing in lanes does to the order.
template <class F>
ZR_INLINE Colour<U8> Clip(const Colour<U16>& a, const Colour<U16>& b, F join) {
  return {join(PackClipped(As<S16>(a.red), As<S16>(b.red))),
          join(PackClipped(As<S16>(a.green), As<S16>(b.green))),
          join(PackClipped(As<S16>(a.blue), As<S16>(b.blue)))};
}

/// 4:4:4 from one vector of bytes a channel. Widening and packing both work within lanes, so the order stays.
ZR_INLINE Colour<U8> Convert444(const Matrix& matrix, U8 y, U8 cb, U8 cr) {
  const auto low = [](U8 x) ZR_ALWAYS { return As<U16>(UnpackLow8(x, U8{})); };
  const auto high = [](U8 x) ZR_ALWAYS { return As<U16>(UnpackHigh8(x, U8{})); };
  return Clip(matrix.PerPixel(low(y), low(cb), low(cr)), matrix.PerPixel(high(y), high(cb), high(cr)),
              [](U8 x) ZR_ALWAYS { return x; });
}

/// Samples of 10 or 12 bits in words, cut to their upper 8.
ZR_INLINE U8 Reduced(const std::uint8_t* p, std::uint32_t shift) {
  const Words x = LoadWords(p);
  return NarrowLow({ShiftRight(x.a, shift), ShiftRight(x.b, shift)});
}

/// Three samples a pixel, luma first or second.
template <bool lumaFirst>
struct Source444 {
  static constexpr int kGroupPixels = 1, kGroupBytes = 3, kOverread = 0;

  explicit ZR_INLINE Source444(const LineJob& job) : mMatrix(*job.matrix) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    return FromBytes(LoadVectors<3>(p));
  }

 protected:
  ZR_INLINE Colour<U8> FromBytes(const Vectors<3>& memory) const {
    const Vectors<3> x = Deinterleave3<1>(memory);
    if constexpr (lumaFirst)
      return Convert444(mMatrix, x.v[0], x.v[1], x.v[2]);
    else
      return Convert444(mMatrix, x.v[1], x.v[0], x.v[2]);
  }

 private:
  Matrix mMatrix;
};

/// The same with samples in words.
struct Source444Words : Source444<false> {
  static constexpr int kGroupBytes = 6;

  explicit ZR_INLINE Source444Words(const LineJob& job) : Source444<false>(job), mShift(job.shift) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    return FromBytes(ForEach<3>([&](auto i) ZR_ALWAYS { return Reduced(p + i * 2 * kWidth, mShift); }));
  }

 private:
  std::uint32_t mShift;
};

/// Words of luma and chroma, cb and cr in turn, to colours: what 4:2:2 is, and what 4:1:1 is brought to.
class PairConverter {
 public:
  explicit ZR_INLINE PairConverter(const LineJob& job) : mMatrix(*job.matrix) {}

  template <bool lumaFirst>
  ZR_INLINE Colour<U8> Convert(U8 a, U8 b) const {
    return Clip(Half<lumaFirst>(As<U16>(a)), Half<lumaFirst>(As<U16>(b)),
                [](U8 x) ZR_ALWAYS { return JoinHalves(x); });
  }

 private:
  template <bool lumaFirst>
  ZR_INLINE Colour<U16> Half(U16 x) const {
    const U16 low = x & Splat16(0xFF), high = x >> 8;
    if constexpr (lumaFirst)
      return mMatrix.PerPair(low, high);
    else
      return mMatrix.PerPair(high, low);
  }

  Matrix mMatrix;
};

/// 4:2:2 with samples in bytes.
template <bool lumaFirst>
struct Source422 {
  static constexpr int kGroupPixels = 2, kGroupBytes = 4, kOverread = 0;

  explicit ZR_INLINE Source422(const LineJob& job) : mConverter(job) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    return mConverter.template Convert<lumaFirst>(Load(p), Load(p + kWidth));
  }

 private:
  PairConverter mConverter;
};

/// 4:2:2 with samples in words.
template <bool lumaFirst>
struct Source422Words {
  static constexpr int kGroupPixels = 2, kGroupBytes = 8, kOverread = 0;

  explicit ZR_INLINE Source422Words(const LineJob& job) : mConverter(job), mShift(job.shift) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    return mConverter.template Convert<lumaFirst>(Reduced(p, mShift), Reduced(p + 2 * kWidth, mShift));
  }

 private:
  PairConverter mConverter;
  std::uint32_t mShift;
};

/// 4:1:1: six bytes of four pixels are spread to luma and chroma in turn, as 4:2:2 has them.
template <class Order>
struct Source411 {
  static constexpr int kGroupPixels = 4, kGroupBytes = 6;
  static constexpr int kOverread = Spread<Order>::kOverread;

  explicit ZR_INLINE Source411(const LineJob& job) : mConverter(job) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    return mConverter.template Convert<true>(Spread<Order>::Read(p), Spread<Order>::Read(p + kWidth / 8 * 6));
  }

 private:
  PairConverter mConverter;
};

struct YYCbYYCr {
  static constexpr int kBytes = 6;
  static constexpr int At(int j) {
    constexpr int from[8] = {0, 2, 1, 5, 3, 2, 4, 5};
    return from[j];
  }
};

struct CbYYCrYY {
  static constexpr int kBytes = 6;
  static constexpr int At(int j) {
    constexpr int from[8] = {1, 0, 2, 3, 4, 0, 5, 3};
    return from[j];
  }
};

constinit const LineFunction kRows[][kWritings] = {
    ZR_ROW(Line, Source444<true>),       ZR_ROW(Line, Source444<false>),
    ZR_ROW(Line, Source444Words),        ZR_ROW(Line, Source422<true>),
    ZR_ROW(Line, Source422Words<true>),  ZR_ROW(Line, Source422<false>),
    ZR_ROW(Line, Source422Words<false>), ZR_ROW(Line, Source411<YYCbYYCr>),
    ZR_ROW(Line, Source411<CbYYCrYY>),
};

}  // namespace

extern const FamilyKernels ZR_AT_LEVEL(kYCbCrKernels);
constinit const FamilyKernels ZR_AT_LEVEL(kYCbCrKernels) = {Reading::YCbCr8, sizeof kRows / sizeof kRows[0],
                                                            kRows};

}  // namespace ZrConvertersLib::simd
