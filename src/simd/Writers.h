#pragma once

#include "simd/Blocks.h"
#include "simd/Interleave.h"
#include "simd/Lookup.h"

/// The sixteen writings: four shapes. A writer is made once a line from the job and stores blocks; kStep is
/// the bytes from a pixel to the next (in each plane), Channel the form of block it takes.

namespace ZrConvertersLib::simd {
namespace {

/// The filter of the 8-bit colour writers, or nothing at all when it is the identity.
template <bool filtered>
class Tone;

template <>
class Tone<false> {
 public:
  explicit ZR_INLINE Tone(const LineJob&) {}

  template <class Block>
  ZR_INLINE const Block& operator()(const Block& block) const {
    return block;
  }
};

template <>
class Tone<true> {
 public:
  explicit ZR_INLINE Tone(const LineJob& job)
      : mRed(job.tables[0]), mGreen(job.tables[1]), mBlue(job.tables[2]) {}

  template <class Block>
  ZR_INLINE Colour<U8> operator()(const Block& block) const {
    return {mRed(block.Red()), mGreen(block.Green()), mBlue(block.Blue())};
  }

 private:
  Lookup mRed, mGreen, mBlue;
};

/// Stores one channel at `depth` bits: a byte, or the low bits of a 16-bit word.
template <int depth>
struct Sample {
  using Channel = Words;
  static constexpr int kStep = 2;

  static ZR_INLINE void Put(std::uint8_t* p, const Words& x) {
    Store(p, x.a >> (16 - depth));
    Store(p + kWidth, x.b >> (16 - depth));
  }
};

template <>
struct Sample<8> {
  using Channel = U8;
  static constexpr int kStep = 1;

  static ZR_INLINE void Put(std::uint8_t* p, U8 x) { Store(p, x); }
};

/// Mono: the green channel.
template <int depth>
struct MonoWriter : Sample<depth> {
  explicit ZR_INLINE MonoWriter(const LineJob&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    this->Put(p, block.Green());
  }
};

/// Red, green and blue planes, one after the other.
template <int depth, bool filtered = false>
struct PlanarWriter : Sample<depth> {
  explicit ZR_INLINE PlanarWriter(const LineJob& job) : mTone(job), mPlane(job.planeDistance) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    const auto toned = mTone(block);
    this->Put(p, toned.Red());
    this->Put(p + mPlane, toned.Green());
    this->Put(p + 2 * mPlane, toned.Blue());
  }

 private:
  Tone<filtered> mTone;
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

/// Three bytes a pixel.
template <bool blueFirst, bool filtered = false>
struct ThreeBytesWriter {
  using Channel = U8;
  static constexpr int kStep = 3;

  explicit ZR_INLINE ThreeBytesWriter(const LineJob& job) : mTone(job) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    const auto toned = mTone(block);
    Store3<1>(p, {{First<blueFirst>(toned), toned.Green(), First<!blueFirst>(toned)}});
  }

 private:
  Tone<filtered> mTone;
};

/// Three 16-bit words a pixel.
template <bool blueFirst>
struct ThreeWordsWriter {
  using Channel = Words;
  static constexpr int kStep = 6;

  explicit ZR_INLINE ThreeWordsWriter(const LineJob&) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    const Words first = First<blueFirst>(block), second = block.Green(), third = First<!blueFirst>(block);
    Store3<2>(p, {{As<U8>(first.a), As<U8>(second.a), As<U8>(third.a)}});
    Store3<2>(p + 3 * kWidth, {{As<U8>(first.b), As<U8>(second.b), As<U8>(third.b)}});
  }
};

/// Three bytes and an alpha of 0xFF.
template <bool blueFirst, bool filtered = false>
struct FourBytesWriter {
  using Channel = U8;
  static constexpr int kStep = 4;

  explicit ZR_INLINE FourBytesWriter(const LineJob& job) : mTone(job) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    const auto toned = mTone(block);
    Store4(p, {{First<blueFirst>(toned), toned.Green(), First<!blueFirst>(toned)}});
  }

 private:
  Tone<filtered> mTone;
};

/// Word: red in bits 15..11, green in 10..5, blue in 4..0.
template <bool filtered = false>
struct RGB565Writer {
  using Channel = U8;
  static constexpr int kStep = 2;

  explicit ZR_INLINE RGB565Writer(const LineJob& job) : mTone(job) {}

  template <class Block>
  ZR_INLINE void Write(std::uint8_t* p, const Block& block) const {
    const auto toned = mTone(block);
    const U8 green = toned.Green();
    // Shifted as words: the bits that come from the neighbouring byte are those that are not selected.
    const U8 high = Select(Splat8(0xF8), toned.Red(), As<U8>(As<U16>(green) >> 5));
    const U8 low = Select(Splat8(0xE0), As<U8>(As<U16>(green) << 3), As<U8>(As<U16>(toned.Blue()) >> 3));
    const Words words = InterleaveBytes(low, high);
    Store(p, words.a);
    Store(p + kWidth, words.b);
  }

 private:
  Tone<filtered> mTone;
};

}  // namespace
}  // namespace ZrConvertersLib::simd
