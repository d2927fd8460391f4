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

/// Cache lines that the destination fills whole go past the caches; its first and last part do not.
void Stream(std::uint8_t* destination, const std::uint8_t* source, std::size_t size) {
  constexpr std::size_t kCacheLine = 64;
  const std::size_t toLine = (0 - reinterpret_cast<std::uintptr_t>(destination)) % kCacheLine;
  if (toLine >= size) {
    std::memcpy(destination, source, size);
    return;
  }
  std::memcpy(destination, source, toLine);
  std::size_t at = toLine;
  for (; at + kCacheLine <= size; at += kCacheLine)
    for (std::size_t i = 0; i < kCacheLine; i += kWidth)
      StoreStreaming(destination + at + i, Load(source + at + i));
  std::memcpy(destination + at, source + at, size - at);
}

constexpr StreamFunction kFunction = Stream;

#else

constexpr StreamFunction kFunction = nullptr;

#endif

}  // namespace

extern const StreamFunction ZR_AT_LEVEL(kStream);
constinit const StreamFunction ZR_AT_LEVEL(kStream) = kFunction;

}  // namespace ZrConvertersLib::simd
