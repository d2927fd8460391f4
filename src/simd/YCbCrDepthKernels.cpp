#include "simd/DevelopKernels.h"
#include "simd/Interleave.h"
#include "simd/Line.h"
#include "simd/Products.h"
#include "simd/Saturate.h"

/// YCbCr at full depth: words of the 16-bit scale to three planes of words, in exact arithmetic.

namespace ZrConvertersLib::simd {
namespace {

constexpr int kHalfScale = 32768;

/// Largest result: 255 in units of 256.
constexpr unsigned kMost = 255U << 8;

ZR_INLINE S32 Summand(int x) {
  return S32{} + x;
}

/// The matrix on samples less 32768. That makes luma signed and takes the offset of chroma off.
class DeepMatrix {
 public:
  explicit ZR_INLINE DeepMatrix(const YCbCrMatrix& m)
      : mRed(Factors(m.y, m.redV)),
        mBlue(Factors(m.y, m.blueU)),
        mGreenCr(Factors(m.y, m.greenV)),
        mGreenCb(Factors(0, m.greenU)),
        mFirst(Summand(m.y * (kHalfScale - 256 * m.yOffset))) {}

  /// Of elements with luma in the lower and a chroma sample in the upper half. Less 32768, so that they can
  /// be packed.
  ZR_INLINE Colour<S32> Convert(U32 lumaCb, U32 lumaCr) const {
    const S16 cb = As<S16>(lumaCb ^ Splat32(0x80008000)), cr = As<S16>(lumaCr ^ Splat32(0x80008000));
    const auto scaled = [](S32 sum) ZR_ALWAYS { return (sum >> 10) - Summand(kHalfScale); };
    return {scaled(MultiplyAddPairs(mFirst, cr, mRed)),
            scaled(MultiplyAddPairs(MultiplyAddPairs(mFirst, cr, mGreenCr), cb, mGreenCb)),
            scaled(MultiplyAddPairs(mFirst, cb, mBlue))};
  }

 private:
  S16 mRed, mBlue, mGreenCr, mGreenCb;
  S32 mFirst;
};

ZR_INLINE U16 Clipped(S32 a, S32 b) {
  return Min16(As<U16>(PackSigned(a, b)) ^ Splat16(0x8000), Splat16(kMost));
}

ZR_INLINE U64 Splat64(std::uint64_t x) {
  return U64{} + x;
}

/// Two pixels with one cb and one cr, in 64 bits.
template <bool lumaFirst>
ZR_INLINE Colour<S32> ConvertShared(const DeepMatrix& matrix, U64 x) {
  constexpr std::uint64_t kLow = 0xFFFF, kLows = 0x0000FFFF0000FFFF;
  const U64 luma = (lumaFirst ? x : x >> 16) & Splat64(kLows);
  const U64 cb = (lumaFirst ? x >> 16 : x) & Splat64(kLow);
  const U64 cr = lumaFirst ? x >> 48 : (x >> 32) & Splat64(kLow);
  return matrix.Convert(As<U32>(luma | (cb << 16) | (cb << 48)), As<U32>(luma | (cr << 16) | (cr << 48)));
}

template <bool lumaFirst>
void Shared(const YCbCrDepthArgs& args) {
  const DeepMatrix matrix(*args.matrix);
  for (std::size_t at = 0; at < 2 * args.pixels; at += kWidth) {
    const std::uint8_t* const from = args.words + 2 * at;
    const Colour<S32> a = ConvertShared<lumaFirst>(matrix, As<U64>(Load(from)));
    const Colour<S32> b = ConvertShared<lumaFirst>(matrix, As<U64>(Load(from + kWidth)));
    Store(args.planes[0] + at, JoinHalves(As<U8>(Clipped(a.red, b.red))));
    Store(args.planes[1] + at, JoinHalves(As<U8>(Clipped(a.green, b.green))));
    Store(args.planes[2] + at, JoinHalves(As<U8>(Clipped(a.blue, b.blue))));
  }
}

/// Cb, Y, Cr of every pixel.
void Apart(const YCbCrDepthArgs& args) {
  const DeepMatrix matrix(*args.matrix);
  for (std::size_t at = 0; at < 2 * args.pixels; at += kWidth) {
    const Vectors<3> x = Deinterleave3<2>(LoadVectors<3>(args.words + 3 * at));
    const U8 cb = x.v[0], luma = x.v[1], cr = x.v[2];
    const Colour<S32> a = matrix.Convert(As<U32>(UnpackLow16(luma, cb)), As<U32>(UnpackLow16(luma, cr)));
    const Colour<S32> b = matrix.Convert(As<U32>(UnpackHigh16(luma, cb)), As<U32>(UnpackHigh16(luma, cr)));
    Store(args.planes[0] + at, Clipped(a.red, b.red));
    Store(args.planes[1] + at, Clipped(a.green, b.green));
    Store(args.planes[2] + at, Clipped(a.blue, b.blue));
  }
}

}  // namespace

extern const YCbCrDepthKernels ZR_AT_LEVEL(kYCbCrDepthKernels);
constinit const YCbCrDepthKernels ZR_AT_LEVEL(kYCbCrDepthKernels) = {&Shared<true>, &Shared<false>, &Apart};

}  // namespace ZrConvertersLib::simd
