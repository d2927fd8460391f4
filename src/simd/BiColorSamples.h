#pragma once

#include "simd/Line.h"
#include "simd/Mean.h"
#include "simd/Packed.h"

/// Samples of two-colour lines. A pixel is two samples, green and one of red and blue in turn from pixel to
/// pixel. Samples are held as they are cheapest: those of 8 bits in bytes, deeper ones in words of the 16-bit
/// scale.

namespace ZrConvertersLib::simd {
namespace {

/// The operations on samples that are held as bytes or as words.
template <class Held>
struct Form;

template <>
struct Form<U8> {
  static constexpr int kBytes = 1;
  static constexpr PixelWriter kRow = PixelWriter::Mono8;

  /// The form of a colour for a writer's channel.
  template <class Channel>
  using Out = Channel;

  static ZR_INLINE U8 Read(const std::uint8_t* p) { return Load(p); }
  static ZR_INLINE void Put(std::uint8_t* p, U8 x) { Store(p, x); }

  /// Elements of even, or odd, places twice.
  static ZR_INLINE U8 EvenTwice(U8 x) { return As<U8>((As<U16>(x) & Splat16(0xFF)) | (As<U16>(x) << 8)); }
  static ZR_INLINE U8 OddTwice(U8 x) { return As<U8>((As<U16>(x) >> 8) | (As<U16>(x) & Splat16(0xFF00))); }
  static ZR_INLINE U8 Odd() { return As<U8>(Splat16(0xFF00)); }

  template <class Channel>
  static ZR_INLINE Channel Mean(U8 a, U8 b) {
    return MeanOfTwo<Channel>::Get(a, b);
  }

  /// Bits of b where those of mask are set, else of a.
  static ZR_INLINE U8 Choose(U8 a, U8 b, U8 mask) { return Select(mask, b, a); }
};

template <>
struct Form<Words> {
  static constexpr int kBytes = 2;
  static constexpr PixelWriter kRow = PixelWriter::Mono16;
  template <class>
  using Out = Words;

  static ZR_INLINE Words Read(const std::uint8_t* p) { return LoadWords(p); }
  static ZR_INLINE void Put(std::uint8_t* p, const Words& x) {
    Store(p, x.a);
    Store(p + kWidth, x.b);
  }

  static ZR_INLINE Words EvenTwice(const Words& x) { return {EvenTwice(x.a), EvenTwice(x.b)}; }
  static ZR_INLINE Words OddTwice(const Words& x) { return {OddTwice(x.a), OddTwice(x.b)}; }
  static ZR_INLINE U8 Odd() { return As<U8>(Splat32(0xFFFF0000)); }

  template <class>
  static ZR_INLINE Words Mean(const Words& a, const Words& b) {
    return {Mean(a.a, b.a), Mean(a.b, b.b)};
  }

  static ZR_INLINE Words Choose(const Words& a, const Words& b, U8 mask) {
    return {Choose(a.a, b.a, mask), Choose(a.b, b.b, mask)};
  }

 private:
  static ZR_INLINE U16 EvenTwice(U16 x) {
    return As<U16>((As<U32>(x) & Splat32(0xFFFF)) | (As<U32>(x) << 16));
  }
  static ZR_INLINE U16 OddTwice(U16 x) {
    return As<U16>((As<U32>(x) >> 16) | (As<U32>(x) & Splat32(0xFFFF0000)));
  }
  static ZR_INLINE U16 Mean(U16 a, U16 b) { return (a & b) + ((a ^ b) >> 1); }
  static ZR_INLINE U16 Choose(U16 a, U16 b, U8 mask) { return As<U16>(Select(mask, As<U8>(b), As<U8>(a))); }
};

/// The samples of a block of pixels: the one that is red or blue, and green.
template <class Held>
struct TwoColours {
  Held colour, green;
};

/// The first and the second samples of pixels, told apart by which of them is green.
class GreenPlace {
 public:
  explicit ZR_INLINE GreenPlace(const KernelArgs& args) : mFirst(Splat8(args.greenFirst ? 0xFF : 0)) {}

  template <class Held>
  ZR_INLINE TwoColours<Held> Sort(const Held& first, const Held& second) const {
    return {Form<Held>::Choose(first, second, mFirst), Form<Held>::Choose(second, first, mFirst)};
  }

  /// From words of samples as in memory.
  ZR_INLINE TwoColours<Words> SortPairs(const Words& low, const Words& high) const {
    return Sort(Words{Lower(low), Lower(high)}, Words{Upper(low), Upper(high)});
  }

 private:
  static ZR_INLINE U16 Upper(const Words& x) { return NarrowHigh(As<U32>(x.a), As<U32>(x.b)); }
  static ZR_INLINE U16 Lower(const Words& x) { return NarrowHigh(As<U32>(x.a) << 16, As<U32>(x.b) << 16); }

  U8 mFirst;
};

/// Samples in bytes.
struct ByteSamples {
  using Held = U8;
  static constexpr int kGroupPixels = 2, kGroupBytes = 4, kOverread = 0;

  explicit ZR_INLINE ByteSamples(const KernelArgs& args) : mGreen(args) {}

  ZR_INLINE TwoColours<U8> Read(const std::uint8_t* p) const {
    const Words pixels = LoadWords(p);
    return mGreen.Sort(NarrowLow(pixels), NarrowHigh(pixels));
  }

  /// A vector's worth of samples as in memory, on the 16-bit scale.
  ZR_INLINE Words Scaled(const std::uint8_t* p) const { return WidenHigh(Load(p)); }

 private:
  GreenPlace mGreen;
};

/// Samples in words, brought to the 16-bit scale by a left shift.
struct WordSamples {
  using Held = Words;
  static constexpr int kGroupPixels = 2, kGroupBytes = 8, kOverread = 0;

  explicit ZR_INLINE WordSamples(const KernelArgs& args) : mGreen(args), mShift(args.shift) {}

  ZR_INLINE TwoColours<Words> Read(const std::uint8_t* p) const {
    return mGreen.SortPairs(Scaled(p), Scaled(p + 2 * kWidth));
  }

  ZR_INLINE Words Scaled(const std::uint8_t* p) const {
    const Words x = LoadWords(p);
    return {ShiftLeft(x.a, mShift), ShiftLeft(x.b, mShift)};
  }

 private:
  GreenPlace mGreen;
  std::uint32_t mShift;
};

template <class Packing>
struct PackedSamples {
  using Held = Words;
  static constexpr int kGroupPixels = 2, kGroupBytes = 4 / Packing::kPixels * Packing::kBytes;
  static constexpr int kOverread = Packed<Packing>::kOverread;

  explicit ZR_INLINE PackedSamples(const KernelArgs& args) : mGreen(args) {}

  ZR_INLINE TwoColours<Words> Read(const std::uint8_t* p) const {
    return mGreen.SortPairs(Scaled(p), Scaled(p + Packed<Packing>::kTaken));
  }

  ZR_INLINE Words Scaled(const std::uint8_t* p) const { return Packed<Packing>::Read(Packing{}, p); }

 private:
  GreenPlace mGreen;
};

}  // namespace
}  // namespace ZrConvertersLib::simd
