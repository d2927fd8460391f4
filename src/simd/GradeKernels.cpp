#include "simd/DevelopKernels.h"
#include "simd/Floats.h"
#include "simd/Line.h"

/// Levels, gains, colour matrix and curve, in 32-bit floats. Sums and products are rounded one by one on
/// every CPU, so that all give the same bytes.

namespace ZrConvertersLib::simd {
namespace {

constexpr float kFull = 65535.0F;

/// Results are made less this, so that packing to signed words limits them.
constexpr float kCentre = 32768.0F;

ZR_INLINE F32 Splat(float x) {
  return F32{} + x;
}

/// The value at 0 and the slope of some pieces.
struct Piece {
  F32 value, slope;
};

/// A piece is loaded as a whole, since loads are what this takes longest for.
ZR_INLINE Piece PiecesAt(const float* pieces, U32 index) {
#if defined(__AVX512VBMI__)
  const auto at = As<Native>(index);
  const __m512i low = _mm512_i32gather_epi64(_mm512_castsi512_si256(at), pieces, 8);
  const __m512i high = _mm512_i32gather_epi64(_mm512_extracti64x4_epi64(at, 1), pieces, 8);
  const __m512i first = _mm512_setr_epi32(0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
  const __m512i second = _mm512_setr_epi32(1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23, 25, 27, 29, 31);
  return {As<F32>(_mm512_permutex2var_epi32(low, first, high)),
          As<F32>(_mm512_permutex2var_epi32(low, second, high))};
#elif defined(__AVX2__)
  const auto at = As<Native>(index);
  const auto* const from = reinterpret_cast<const double*>(pieces);
  const __m256 low = _mm256_castpd_ps(_mm256_i32gather_pd(from, _mm256_castsi256_si128(at), 8));
  const __m256 high = _mm256_castpd_ps(_mm256_i32gather_pd(from, _mm256_extracti128_si256(at, 1), 8));
  return {As<F32>(JoinHalves(As<U8>(_mm256_shuffle_ps(low, high, 0x88)))),
          As<F32>(JoinHalves(As<U8>(_mm256_shuffle_ps(low, high, 0xDD))))};
#else
  Piece found{};
  for (unsigned i = 0; i < kWidth / 4; ++i) {
    found.value[i] = pieces[2 * index[i]];
    found.slope[i] = pieces[2 * index[i] + 1];
  }
  return found;
#endif
}

class Curve {
 public:
  explicit ZR_INLINE Curve(const CurveTable& table)
      : mPieces(table.pieces),
        mLeast(Splat(table.least)),
        mShift(Splat(table.shift)),
        mFirst(Splat32(table.firstBits)),
        mDown(table.down) {}

  ZR_INLINE F32 operator()(F32 x) const {
    const F32 inside = Smaller(Larger(x, mLeast), Splat(kFull));
    const Piece piece = PiecesAt(mPieces, (As<U32>(inside + mShift) >> mDown) - mFirst);
    return piece.value + piece.slope * inside;
  }

 private:
  const float* mPieces;
  F32 mLeast, mShift;
  U32 mFirst;
  std::uint32_t mDown;
};

/// Half a vector of words.
template <int half>
ZR_INLINE F32 Widened(U16 x) {
  const U8 words = As<U8>(x), zero{};
  return ToFloat(As<U32>(half == 0 ? UnpackLow16(words, zero) : UnpackHigh16(words, zero)));
}

template <int kind>
class Grading {
 public:
  static void Run(const GradeArgs& args) {
    const Grading grading(args);
    std::uint8_t* planes[3];
    for (int i = 0; i < 3; ++i) planes[i] = LoadedSingly(args.planes[i]);
    const std::size_t bytes = 2 * args.words;
    for (std::size_t at = 0; at < bytes; at += kWidth) {
      U16 in[3] = {};
      Unrolled<3>([&](auto i) ZR_ALWAYS {
        if constexpr (IsRead(i)) in[i] = As<U16>(Load(planes[i] + at));
      });
      S32 low[3], high[3];
      grading.Half<0>(in, low);
      grading.Half<1>(in, high);
      Unrolled<3>([&](auto i) ZR_ALWAYS {
        if constexpr (IsMade(i))
          Store(planes[i] + at, As<U16>(PackSigned(low[i], high[i])) ^ Splat16(0x8000));
      });
    }
  }

 private:
  static constexpr bool kMixes = (kind & kGradeMixes) != 0, kCurve = (kind & kGradeCurve) != 0;

  static constexpr bool IsMade(int channel) { return (kind & kGradeGreenOnly) == 0 || channel == 1; }
  static constexpr bool IsRead(int channel) { return kMixes || IsMade(channel); }

  explicit ZR_INLINE Grading(const GradeArgs& args) : mCurve(*args.curve) {
    Unrolled<3>([&](auto to) ZR_ALWAYS {
      mOffset[to] = Splat(kCurve ? args.offset[to] : args.offset[to] - kCentre);
      Unrolled<3>([&](auto from) ZR_ALWAYS { mFactor[to][from] = Splat(args.factors[to][from]); });
    });
  }

  template <int half>
  ZR_INLINE void Half(const U16 (&in)[3], S32 (&out)[3]) const {
    F32 light[3] = {};
    Unrolled<3>([&](auto i) ZR_ALWAYS {
      if constexpr (IsRead(i)) light[i] = Widened<half>(in[i]);
    });
    Unrolled<3>([&](auto i) ZR_ALWAYS {
      if constexpr (IsMade(i)) out[i] = RoundToIntegers(Result<i>(light));
    });
  }

  /// What overflows below becomes the least integer, which packing limits as it does others.
  template <int to>
  ZR_INLINE F32 Result(const F32 (&light)[3]) const {
    const F32(&factor)[3] = mFactor[to];
    F32 x = light[to] * factor[to] + mOffset[to];
    if constexpr (kMixes)
      x = light[0] * factor[0] + light[1] * factor[1] + (light[2] * factor[2] + mOffset[to]);
    if constexpr (kCurve) return mCurve(x);
    return Smaller(x, Splat(kFull - kCentre));
  }

  Curve mCurve;
  F32 mOffset[3], mFactor[3][3];
};

}  // namespace

extern const GradeKernels ZR_AT_LEVEL(kGradeKernels);
constinit const GradeKernels ZR_AT_LEVEL(kGradeKernels) = {
    {&Grading<0>::Run, &Grading<1>::Run, &Grading<2>::Run, &Grading<3>::Run, &Grading<4>::Run,
     &Grading<5>::Run, &Grading<6>::Run, &Grading<7>::Run}};

}  // namespace ZrConvertersLib::simd
