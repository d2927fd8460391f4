#include "simd/DevelopKernels.h"
#include "simd/Line.h"

/// Levels, gains, colour matrix and curve, in 32-bit floats. Sums and products are rounded one by one on
/// every CPU, so that all give the same bytes.

namespace ZrConvertersLib::simd {
namespace {

using F32 [[gnu::vector_size(kWidth)]] = float;

constexpr float kFull = 65535.0F;

ZR_INLINE F32 Splat(float x) {
  return F32{} + x;
}

ZR_INLINE F32 Limited(F32 x, F32 least, F32 most) {
#if defined(__AVX512VBMI__)
  return _mm512_min_ps(_mm512_max_ps(x, least), most);
#elif defined(__AVX2__)
  return _mm256_min_ps(_mm256_max_ps(x, least), most);
#elif defined(__x86_64__)
  return _mm_min_ps(_mm_max_ps(x, least), most);
#elif defined(__wasm_simd128__)
  return As<F32>(wasm_f32x4_min(wasm_f32x4_max(As<Native>(x), As<Native>(least)), As<Native>(most)));
#else
  return vminq_f32(vmaxq_f32(x, least), most);
#endif
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
    const F32 inside = Limited(x, mLeast, Splat(kFull));
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
  return __builtin_convertvector(As<S32>(half == 0 ? UnpackLow16(words, zero) : UnpackHigh16(words, zero)),
                                 F32);
}

/// Rounded, with 32768 taken off.
ZR_INLINE S32 Rounded(F32 x) {
  const F32 inside = Limited(x, F32{}, Splat(kFull));
  return __builtin_convertvector(inside + Splat(0.5F), S32) - (S32{} + 0x8000);
}

template <int kind>
class Grading {
 public:
  static constexpr bool kMixes = (kind & kGradeMixes) != 0, kCurve = (kind & kGradeCurve) != 0;
  static constexpr bool kGreenOnly = (kind & kGradeGreenOnly) != 0;

  /// Results are made for these channels, from these.
  static constexpr int kFirst = kGreenOnly ? 1 : 0, kLast = kGreenOnly ? 1 : 2;
  static constexpr int kFirstRead = kMixes ? 0 : kFirst, kLastRead = kMixes ? 2 : kLast;

  static void Run(const GradeArgs& given) {
    const GradeArgs args = given;
    const Curve curve(*args.curve);
    for (std::size_t at = 0; at < 2 * args.words; at += kWidth) {
      U16 in[3] = {};
      for (int i = kFirstRead; i <= kLastRead; ++i) in[i] = As<U16>(Load(args.planes[i] + at));
      S32 low[3], high[3];
      Half<0>(args, curve, in, low);
      Half<1>(args, curve, in, high);
      for (int i = kFirst; i <= kLast; ++i)
        Store(args.planes[i] + at, As<U16>(PackSigned(low[i], high[i])) ^ Splat16(0x8000));
    }
  }

 private:
  template <int half>
  static ZR_INLINE void Half(const GradeArgs& args, const Curve& curve, const U16 (&in)[3], S32 (&out)[3]) {
    F32 light[3];
    for (int i = kFirstRead; i <= kLastRead; ++i) light[i] = Widened<half>(in[i]) - Splat(args.black[i]);
    for (int i = kFirst; i <= kLast; ++i) {
      const float(&factors)[3] = args.factors[i];
      F32 x = light[i] * Splat(factors[i]);
      if constexpr (kMixes)
        x = light[0] * Splat(factors[0]) + light[1] * Splat(factors[1]) + light[2] * Splat(factors[2]);
      if constexpr (kCurve) x = curve(x);
      out[i] = Rounded(x);
    }
  }
};

}  // namespace

extern const GradeKernels ZR_AT_LEVEL(kGradeKernels);
constinit const GradeKernels ZR_AT_LEVEL(kGradeKernels) = {
    {&Grading<0>::Run, &Grading<1>::Run, &Grading<2>::Run, &Grading<3>::Run, &Grading<4>::Run,
     &Grading<5>::Run, &Grading<6>::Run, &Grading<7>::Run}};

}  // namespace ZrConvertersLib::simd
