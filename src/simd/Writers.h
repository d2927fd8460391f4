#pragma once

#include <concepts>
#include <type_traits>

#include "simd/Blocks.h"
#include "simd/Interleave.h"
#include "simd/Lookup.h"
#include "simd/PixelLayout.h"

/// The sixteen writers: four shapes. A writer is made from the arguments of a call and stores blocks; kStep
/// is the bytes from a pixel to the next (in each plane), Channel the form of block it takes, GreyChannel the
/// form in which it can take grey as well. Pixel is how pixels lie in memory where readers may move them
/// there: then Alike says whether all bytes are mapped alike, and Mapped maps them.

namespace ZrConvertersLib::simd {
namespace {

/// The filter of the 8-bit colour writers, or nothing at all when it is the identity.
template <bool filtered>
class FilterTables;

template <>
class FilterTables<false> {
 public:
  explicit ZR_INLINE FilterTables(const KernelArgs&) {}

  template <class Block>
  ZR_INLINE const Block& operator()(const Block& block) const {
    return block;
  }

  ZR_INLINE bool AreOne() const { return true; }

  template <int n>
  ZR_INLINE const Vectors<n>& OfAll(const Vectors<n>& x) const {
    return x;
  }
};

template <>
class FilterTables<true> {
 public:
  explicit ZR_INLINE FilterTables(const KernelArgs& args)
      : mTables(args), mAreOne(args.tables[0] == args.tables[1] && args.tables[0] == args.tables[2]) {}

  ZR_INLINE Colour<U8> operator()(const Colour<U8>& block) const {
    const Vectors<3> x = mTables.Each({{block.red, block.green, block.blue}});
    return {x.v[0], x.v[1], x.v[2]};
  }

  /// Grey stays grey where all channels have one table.
  ZR_INLINE Colour<U8> operator()(const Grey<U8>& block) const {
    if (mAreOne) {
      const U8 grey = mTables.First(Vectors<1>{{block.value}}).v[0];
      return {grey, grey, grey};
    }
    const Vectors<3> x = mTables.All(block.value);
    return {x.v[0], x.v[1], x.v[2]};
  }

  /// Whether all channels have one table, so that they need not be told apart.
  ZR_INLINE bool AreOne() const { return mAreOne; }

  template <int n>
  ZR_INLINE Vectors<n> OfAll(const Vectors<n>& x) const {
    return mTables.First(x);
  }

 private:
  Lookups mTables;
  bool mAreOne;
};

/// Keeps compilers from storing x before the vector at `p`. Where little else is done, two stores that go
/// down in one cache line take up to 1.6 times as long as two that go up. Memory is only read here: had they
/// to assume that it changes, compilers would compute in the loop what stays the same.
ZR_INLINE U16 After([[maybe_unused]] const std::uint8_t* p, U16 x) {
#if defined(__AVX512VBMI__)
  asm("" : "+v"(x) : "m"(*reinterpret_cast<const std::uint8_t(*)[kWidth]>(p)));
#elif defined(__x86_64__)
  asm("" : "+x"(x) : "m"(*reinterpret_cast<const std::uint8_t(*)[kWidth]>(p)));
#elif defined(__aarch64__)
  asm("" : "+w"(x) : "m"(*reinterpret_cast<const std::uint8_t(*)[kWidth]>(p)));
#endif
  return x;
}

/// Stores one channel at `depth` bits: a byte, or the low bits of a 16-bit word.
template <int depth>
struct Sample {
  using Channel = Words;
  static constexpr int kStep = 2;

  static ZR_INLINE void Put(std::uint8_t* p, const Words& x) {
    Store(p, Scaled(x.a));
    Store(p + kWidth, Scaled(x.b));
  }
  static ZR_INLINE void PutUpwards(std::uint8_t* p, const Words& x) {
    Store(p, Scaled(x.a));
    Store(p + kWidth, After(p, Scaled(x.b)));
  }

 private:
  static ZR_INLINE U16 Scaled(U16 x) { return x >> (16 - depth); }
};

template <>
struct Sample<8> {
  using Channel = U8;
  static constexpr int kStep = 1;

  static ZR_INLINE void Put(std::uint8_t* p, U8 x) { Store(p, x); }
  static ZR_INLINE void PutUpwards(std::uint8_t* p, U8 x) { Store(p, x); }
};

/// What writers without tables do with pixels that are moved.
struct Unmapped {
  static constexpr bool kMaps = false;

  ZR_INLINE bool Alike() const { return true; }

  template <int n>
  ZR_INLINE const Vectors<n>& Mapped(const Vectors<n>& x) const {
    return x;
  }
};

/// Mono: the green channel.
template <int depth>
struct MonoWriter : Sample<depth>, Unmapped {
  using Pixel = std::conditional_t<depth % 8 == 0, PixelLayout<depth / 8, 1, false>, void>;
  static constexpr bool kGreenOnly = true;

  explicit ZR_INLINE MonoWriter(const KernelArgs&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    this->PutUpwards(p, block.Green());
  }
};

/// Red, green and blue planes, one after the other.
template <int depth, bool filtered = false>
struct PlanarWriter : Sample<depth> {
  explicit ZR_INLINE PlanarWriter(const KernelArgs& args) : mTables(args), mPlane(args.planeDistance) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    const auto mapped = mTables(block);
    this->Put(p, mapped.Red());
    this->Put(p + mPlane, mapped.Green());
    this->Put(p + 2 * mPlane, mapped.Blue());
  }

 private:
  FilterTables<filtered> mTables;
  std::ptrdiff_t mPlane;
};

/// Channels in memory order, `blueFirst` or red first.
template <bool blueFirst, class Block>
ZR_INLINE auto First(const Block& block) {
  if constexpr (blueFirst)
    return block.Blue();
  else
    return block.Red();
}

/// Elements of `size` bytes, three a pixel.
template <bool blueFirst, int size>
ZR_INLINE void StoreThree(std::uint8_t* p, const Colour<U8>& block) {
  Store3<size>(p, {{First<blueFirst>(block), block.green, First<!blueFirst>(block)}});
}

template <bool blueFirst, int size>
ZR_INLINE void StoreThree(std::uint8_t* p, const Grey<U8>& block) {
  Store3Equal<size>(p, block.value);
}

/// Pixels of four bytes with an alpha of 0xFF.
ZR_INLINE Vectors<4> OpaqueVectors(const Vectors<4>& x) {
  return ForEach<4>([&](auto i) ZR_ALWAYS { return Opaque<PixelLayout<1, 4, false>>(x.v[i]); });
}

/// Bytes, three a pixel and an alpha of 0xFF.
template <bool blueFirst>
ZR_INLINE void StoreFour(std::uint8_t* p, const Colour<U8>& block) {
  Store4(p, {{First<blueFirst>(block), block.green, First<!blueFirst>(block)}});
}

template <bool blueFirst>
ZR_INLINE void StoreFour(std::uint8_t* p, const Grey<U8>& block) {
  Store4Equal(p, block.value);
}

/// Three bytes a pixel.
template <bool blueFirst, bool filtered = false>
struct ThreeBytesWriter {
  using Channel = U8;
  using Pixel = PixelLayout<1, 3, blueFirst>;
  static constexpr int kStep = 3;

  explicit ZR_INLINE ThreeBytesWriter(const KernelArgs& args) : mTables(args) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    StoreThree<blueFirst, 1>(p, mTables(block));
  }

  static constexpr bool kMaps = filtered;

  ZR_INLINE bool Alike() const { return mTables.AreOne(); }

  ZR_INLINE auto Mapped(const Vectors<kStep>& x) const { return mTables.OfAll(x); }

 private:
  FilterTables<filtered> mTables;
};

/// Three 16-bit words a pixel.
template <bool blueFirst>
struct ThreeWordsWriter : Unmapped {
  using Channel = Words;
  using Pixel = PixelLayout<2, 3, blueFirst>;
  static constexpr int kStep = 6;

  explicit ZR_INLINE ThreeWordsWriter(const KernelArgs&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    StoreThree<blueFirst, 2>(p, FirstHalf(block));
    StoreThree<blueFirst, 2>(p + 3 * kWidth, SecondHalf(block));
  }
};

/// Three bytes and an alpha of 0xFF.
template <bool blueFirst, bool filtered = false>
struct FourBytesWriter {
  using Channel = U8;
  using Pixel = PixelLayout<1, 4, blueFirst>;
  static constexpr int kStep = 4;

  explicit ZR_INLINE FourBytesWriter(const KernelArgs& args) : mTables(args) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    StoreFour<blueFirst>(p, mTables(block));
  }

  static constexpr bool kMaps = filtered;

  ZR_INLINE bool Alike() const { return mTables.AreOne(); }

  ZR_INLINE auto Mapped(const Vectors<kStep>& x) const { return OpaqueVectors(mTables.OfAll(x)); }

 private:
  FilterTables<filtered> mTables;
};

/// Words of five, six and five bits.
template <bool filtered = false>
struct RGB565Writer {
  using Channel = U8;
  using GreyChannel = std::conditional_t<filtered, U8, UpperSix>;
  using Pixel = Word565;
  static constexpr int kStep = 2;

  explicit ZR_INLINE RGB565Writer(const KernelArgs& args) : mTables(args) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    const auto mapped = mTables(block);
    const U8 green = mapped.Green();
    // Shifted as words: the bits that come from the neighbouring byte are those that are not selected.
    const U8 high = Select(Splat8(0xF8), mapped.Red(), As<U8>(As<U16>(green) >> 5));
    const U8 low = Select(Splat8(0xE0), As<U8>(As<U16>(green) << 3), As<U8>(As<U16>(mapped.Blue()) >> 3));
    const Words words = InterleaveBytes(low, high);
    Store(p, words.a);
    Store(p + kWidth, words.b);
  }

  ZR_INLINE void Write(std::uint8_t* p, const Grey<UpperSix>& block) const requires(!filtered) {
    Store(p, Grey565(block.value.a));
    Store(p + kWidth, Grey565(block.value.b));
  }

  ZR_INLINE void Write(std::uint8_t* p, const Grey<U8>& block) const requires(!filtered) {
    Write(p, In<UpperSix>(block));
  }

  static constexpr bool kMaps = filtered;

  ZR_INLINE bool Alike() const { return mTables.AreOne(); }

  ZR_INLINE const Vectors<kStep>& Mapped(const Vectors<kStep>& x) const requires(!filtered) { return x; }

 private:
  FilterTables<filtered> mTables;
};

/// What stores a block: kStep bytes from a pixel to the next, channels in the form Channel.
template <class Writer>
concept BlockWriter = std::constructible_from<Writer, const KernelArgs&> &&
    requires(const Writer& writer, std::uint8_t* p, const Grey<typename Writer::Channel>& grey,
             const Colour<typename Writer::Channel>& colour) {
  { Writer::kStep } -> std::convertible_to<int>;
  writer.Write(p, grey);
  writer.Write(p, colour);
};

/// The writer of each destination by its name in the list, with and without the caller's filter.
template <bool>
using Mono8Writer = MonoWriter<8>;
template <bool>
using Mono10Writer = MonoWriter<10>;
template <bool>
using Mono12Writer = MonoWriter<12>;
template <bool>
using Mono14Writer = MonoWriter<14>;
template <bool>
using Mono16Writer = MonoWriter<16>;
template <bool filtered>
using RGB8Writer = ThreeBytesWriter<false, filtered>;
template <bool filtered>
using BGR8Writer = ThreeBytesWriter<true, filtered>;
template <bool filtered>
using RGBa8Writer = FourBytesWriter<false, filtered>;
template <bool filtered>
using BGRa8Writer = FourBytesWriter<true, filtered>;
template <bool>
using RGB16Writer = ThreeWordsWriter<false>;
template <bool>
using BGR16Writer = ThreeWordsWriter<true>;
template <bool filtered>
using RGB565pWriter = RGB565Writer<filtered>;
template <bool filtered>
using Planar8Writer = PlanarWriter<8, filtered>;
template <bool>
using Planar10Writer = PlanarWriter<10>;
template <bool>
using Planar12Writer = PlanarWriter<12>;
template <bool>
using Planar16Writer = PlanarWriter<16>;

#define ZR_CHECK(name, type, chained, bytes, ...) \
  static_assert(BlockWriter<name##Writer<false>> && name##Writer<false>::kStep == bytes);
ZR_DESTINATIONS(ZR_CHECK)
#undef ZR_CHECK

}  // namespace
}  // namespace ZrConvertersLib::simd
