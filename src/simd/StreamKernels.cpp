#include "simd/Line.h"

namespace ZrConvertersLib::simd {
namespace {

#if defined(__x86_64__)

ZR_INLINE void StoreStreaming(std::uint8_t* p, U8 x) {
#if defined(__AVX512VBMI__)
  _mm512_stream_si512(reinterpret_cast<Native*>(p), As<Native>(x));
#elif defined(__AVX2__)
  _mm256_stream_si256(reinterpret_cast<Native*>(p), As<Native>(x));
#else
  _mm_stream_si128(reinterpret_cast<Native*>(p), As<Native>(x));
#endif
}

/// Whole cache lines.
void Stream(std::uint8_t* destination, const std::uint8_t* source, std::size_t size) {
  for (std::size_t at = 0; at < size; at += kWidth) StoreStreaming(destination + at, Load(source + at));
}

constexpr StreamFunction kFunction = Stream;

#else

constexpr StreamFunction kFunction = nullptr;

#endif

}  // namespace

extern const StreamFunction ZR_AT_LEVEL(kStream);
constinit const StreamFunction ZR_AT_LEVEL(kStream) = kFunction;

}  // namespace ZrConvertersLib::simd
