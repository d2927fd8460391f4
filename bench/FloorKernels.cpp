// What a conversion cannot be faster than: loops that load and store its bytes and compute nothing. Compiled
// once per CPU level, as the kernels of the library are.
#include <algorithm>
#include <array>

#include "Floor.h"
#include "simd/Line.h"

namespace Bench {
namespace {

using ZrConvertersLib::simd::kWidth;
using ZrConvertersLib::simd::Load;
using ZrConvertersLib::simd::Native;
using ZrConvertersLib::simd::Store;
using ZrConvertersLib::simd::U8;
using ZrConvertersLib::simd::Unrolled;

/// Bytes that sources are called into the caches ahead of the loads; farther ahead gains nothing.
constexpr int kAhead = 1024;
constexpr int kCacheLine = 64;

/// A load that is made although nobody uses its result.
ZR_INLINE U8 LoadForSure(const unsigned char* p) {
  const U8 x = Load(p);
#if defined(__AVX512F__)
  asm volatile("" : : "v"(x));
#elif defined(__x86_64__)
  asm volatile("" : : "x"(x));
#else
  asm volatile("" : : "w"(x));
#endif
  return x;
}

template <int n>
U8 LoadRun(const unsigned char* p) {
  U8 x{};
  Unrolled<n>([&](auto i) ZR_ALWAYS {
    constexpr int kAt = i * kWidth;
    if constexpr (kAt % kCacheLine == 0) __builtin_prefetch(p + kAt + kAhead);
    x = LoadForSure(p + kAt);
  });
  return x;
}

template <int n>
void StoreRun(unsigned char* p, U8 x) {
  Unrolled<n>([&](auto i) ZR_ALWAYS { Store(p + i * kWidth, x); });
}

using Loads = U8 (*)(const unsigned char*);
using Stores = void (*)(unsigned char*, U8);
template <class Run>
using Runs = std::array<Run, kMostVectors + 1>;  ///< by the number of vectors

template <int... n>
constexpr Runs<Loads> LoadRuns(std::integer_sequence<int, n...>) {
  return {LoadRun<n>...};
}

template <int... n>
constexpr Runs<Stores> StoreRuns(std::integer_sequence<int, n...>) {
  return {StoreRun<n>...};
}

using Numbers = std::make_integer_sequence<int, kMostVectors + 1>;
constexpr Runs<Loads> kLoads = LoadRuns(Numbers{});
constexpr Runs<Stores> kStores = StoreRuns(Numbers{});

/// What pieces leave of a plane, vector by vector from `begin` on; the last vector overlaps the one before
/// it.
template <class F>
ZR_INLINE void ForRest(std::size_t begin, std::size_t bytes, F move) {
  constexpr std::size_t kVector = kWidth;
  for (std::size_t at = begin; at < bytes; at += kVector)
    move(bytes < kVector ? 0 : std::min(at, bytes - kVector));
}

ZR_INLINE void Move(const FloorFrame& f, const Runs<Stores>& stores) {
  const std::size_t sourcePiece = f.loads * kWidth, destinationPiece = f.stores * kWidth;
  const std::size_t pieces = std::min(f.sourceBytes / sourcePiece, f.destinationBytes / destinationPiece);
  const Loads load = kLoads[f.loads];
  const Stores store = stores[f.stores];
  U8 x{};
  for (std::size_t i = 0; i < pieces; ++i) {
    for (std::size_t p = 0; p < f.sourcePlanes; ++p) x = load(f.source + p * f.sourceBytes + i * sourcePiece);
    for (std::size_t p = 0; p < f.destinationPlanes; ++p)
      store(f.destination + p * f.destinationBytes + i * destinationPiece, x);
  }
  for (std::size_t p = 0; p < f.sourcePlanes; ++p)
    ForRest(pieces * sourcePiece, f.sourceBytes,
            [&](std::size_t at) { x = LoadForSure(f.source + p * f.sourceBytes + at); });
  for (std::size_t p = 0; p < f.destinationPlanes; ++p)
    ForRest(pieces * destinationPiece, f.destinationBytes,
            [&](std::size_t at) { Store(f.destination + p * f.destinationBytes + at, x); });
}

void MoveOrdinarily(const FloorFrame& frame) {
  Move(frame, kStores);
}

#if defined(__x86_64__)

ZR_INLINE void StoreStreaming(unsigned char* p, U8 x) {
  const auto value = ZrConvertersLib::simd::As<Native>(x);
#if defined(__AVX512VBMI__)
  _mm512_stream_si512(reinterpret_cast<Native*>(p), value);
#elif defined(__AVX2__)
  _mm256_stream_si256(reinterpret_cast<Native*>(p), value);
#else
  _mm_stream_si128(reinterpret_cast<Native*>(p), value);
#endif
}

template <int n>
void StreamRun(unsigned char* p, U8 x) {
  Unrolled<n>([&](auto i) ZR_ALWAYS { StoreStreaming(p + i * kWidth, x); });
}

template <int... n>
constexpr Runs<Stores> StreamRuns(std::integer_sequence<int, n...>) {
  return {StreamRun<n>...};
}

constexpr Runs<Stores> kStreams = StreamRuns(Numbers{});

void MoveStreaming(const FloorFrame& frame) {
  Move(frame, kStreams);
  _mm_sfence();
}

#else

constexpr FloorFunction MoveStreaming = nullptr;

#endif

}  // namespace

extern const FloorFunctions ZR_AT_LEVEL(kFloor);
constinit const FloorFunctions ZR_AT_LEVEL(kFloor) = {MoveOrdinarily, MoveStreaming};

}  // namespace Bench
