#include "simd/Line.h"
#include "simd/Spread.h"

/// Readings of YCbCr. All arithmetic is on 8-bit samples, in 32 bits and exact.

namespace ZrConvertersLib::simd {
namespace {

/// One line's matrix. A 32-bit element takes one pixel: luma in its low half and a chroma sample in its high
/// half, so that a sum of products is one instruction. The offsets of luma and chroma are part of the first
/// summand.
class Matrix {
 public:
  explicit ZR_INLINE Matrix(const YCbCrMatrix& m)
      : mRed(Pair(m.y, m.redV)),
        mBlue(Pair(m.y, m.blueU)),
        mGreenCr(Pair(m.y, m.greenV)),
        mGreenCb(Pair(0, m.greenU)),
        mRedFirst(First(m, m.redV)),
        mBlueFirst(First(m, m.blueU)),
        mGreenFirst(First(m, m.greenU + m.greenV)) {}

  /// Of kWidth / 4 pixels, as 32-bit values that are not clipped yet.
  ZR_INLINE Colour<S32> Convert(S16 lumaCb, S16 lumaCr) const {
    return {MultiplyAddPairs(mRedFirst, lumaCr, mRed) >> 10,
            MultiplyAddPairs(MultiplyAddPairs(mGreenFirst, lumaCr, mGreenCr), lumaCb, mGreenCb) >> 10,
            MultiplyAddPairs(mBlueFirst, lumaCb, mBlue) >> 10};
  }

 private:
  static ZR_INLINE S16 Pair(int low, int high) {
    return As<S16>(
        Splat32((static_cast<std::uint32_t>(high) << 16) | (static_cast<std::uint32_t>(low) & 0xFFFF)));
  }

  static ZR_INLINE S32 First(const YCbCrMatrix& m, int chroma) {
    return As<S32>(Splat32(static_cast<std::uint32_t>(512 - m.yOffset * m.y - 128 * chroma)));
  }

  S16 mRed, mBlue, mGreenCr, mGreenCb;
  S32 mRedFirst, mBlueFirst, mGreenFirst;
};

/// Four vectors of 32-bit values to one of bytes, clipped to 0..255, natural order.
ZR_INLINE U8 Clip(S32 a, S32 b, S32 c, S32 d) {
  return JoinQuarters(PackClipped(PackSigned(a, b), PackSigned(c, d)));
}

/// A line whose groups LumaCb and LumaCr spread to words of luma and chroma in turn, a pair of words a pixel.
template <int groupPixels, int groupBytes, class LumaCb, class LumaCr>
struct Source {
  static constexpr int kGroupPixels = groupPixels, kGroupBytes = groupBytes;
  static constexpr int kOverread = Spread<LumaCb>::kOverread;

  explicit ZR_INLINE Source(const LineJob& job) : mMatrix(*job.matrix) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    constexpr int kQuarter = kWidth / 4 / groupPixels * groupBytes;
    const auto quarter = [&](int i) ZR_ALWAYS {
      const std::uint8_t* const at = p + i * kQuarter;
      return mMatrix.Convert(As<S16>(Spread<LumaCb>::Read(at)), As<S16>(Spread<LumaCr>::Read(at)));
    };
    const Colour<S32> a = quarter(0), b = quarter(1), c = quarter(2), d = quarter(3);
    return {Clip(a.red, b.red, c.red, d.red), Clip(a.green, b.green, c.green, d.green),
            Clip(a.blue, b.blue, c.blue, d.blue)};
  }

 private:
  Matrix mMatrix;
};

/// Where a group's samples stand: `luma` of each pixel, and one chroma sample they share.
template <int bytes, int chroma, int... luma>
struct Pairs {
  static constexpr int kBytes = bytes, kResult = 4 * sizeof...(luma);
  static constexpr int At(int j) {
    constexpr int at[] = {luma...};
    return j % 4 == 0 ? at[j / 4] : j % 4 == 2 ? chroma : -1;
  }
};

/// The same for two groups of one pixel at once.
template <int luma, int chroma>
struct PairsOf444 {
  static constexpr int kBytes = 6, kResult = 8;
  static constexpr int At(int j) {
    return j % 4 == 0 ? j / 4 * 3 + luma : j % 4 == 2 ? j / 4 * 3 + chroma : -1;
  }
};

constinit const LineFunction kRows[][kWritings] = {
    ZR_ROW(Lines, Source<1, 3, PairsOf444<0, 1>, PairsOf444<0, 2>>),                // Y Cb Cr
    ZR_ROW(Lines, Source<1, 3, PairsOf444<1, 0>, PairsOf444<1, 2>>),                // Cb Y Cr
    ZR_ROW(Lines, Source<2, 4, Pairs<4, 1, 0, 2>, Pairs<4, 3, 0, 2>>),              // Y Cb Y Cr
    ZR_ROW(Lines, Source<2, 4, Pairs<4, 0, 1, 3>, Pairs<4, 2, 1, 3>>),              // Cb Y Cr Y
    ZR_ROW(Lines, Source<4, 6, Pairs<6, 2, 0, 1, 3, 4>, Pairs<6, 5, 0, 1, 3, 4>>),  // Y Y Cb Y Y Cr
    ZR_ROW(Lines, Source<4, 6, Pairs<6, 0, 1, 2, 4, 5>, Pairs<6, 3, 1, 2, 4, 5>>),  // Cb Y Y Cr Y Y
};

}  // namespace

extern const FamilyKernels ZR_AT_LEVEL(kYCbCrKernels);
constinit const FamilyKernels ZR_AT_LEVEL(kYCbCrKernels) = {Reading::YCbCr, sizeof kRows / sizeof kRows[0],
                                                            kRows};

}  // namespace ZrConvertersLib::simd
