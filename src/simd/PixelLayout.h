#pragma once

#include "simd/Gather.h"

/// Pixels whose channels lie side by side in memory, and moving them from one order to another without taking
/// the channels apart.

namespace ZrConvertersLib::simd {
namespace {

/// `channels` elements of `size` bytes: grey; red, green and blue or the reverse; the fourth is alpha.
template <int size, int channels, bool blueFirst>
struct PixelLayout {
  static constexpr int kSize = size, kChannels = channels, kBytes = size * channels;
  static constexpr bool kBlueFirst = blueFirst;
};

template <class A, class B>
concept SameOrder = A::kChannels == B::kChannels&& A::kBlueFirst == B::kBlueFirst;

/// Byte of vector `vector` of a block as To -> byte of the block as From, or -1. Grey goes to all colours and
/// comes from green. Bytes become the upper bytes of words. Alpha comes from alpha or nowhere.
template <class From, class To, int vector>
struct MovedByte {
  static constexpr int kBytes = kWidth * From::kBytes;

  static constexpr int Channel(int channel) {
    if (From::kChannels == 1) return channel < 3 ? 0 : -1;
    if (To::kChannels == 1) return 1;
    if (channel == 3) return From::kChannels == 4 ? 3 : -1;
    return From::kBlueFirst != To::kBlueFirst ? 2 - channel : channel;
  }

  static constexpr int At(int i) {
    const int at = vector * kWidth + i, channel = Channel(at % To::kBytes / To::kSize);
    const int byte = at % To::kSize - (To::kSize - From::kSize);
    if (channel < 0 || byte < 0) return -1;
    return at / To::kBytes * From::kBytes + channel * From::kSize + byte;
  }
};

/// Whether pixels are to be moved from one layout to the other. Where one shuffle reaches a whole vector,
/// grey is as cheap to store and to read by channels; elsewhere more than two loads cost more than that.
template <class From, class To>
concept Moves = kGathers && From::kSize <= To::kSize &&
                ((From::kChannels > 1 && To::kChannels > 1) || kLane == 16) &&
                Gathering<MovedByte<From, To, 0>>::kPossible &&
                (Gathering<MovedByte<From, To, 0>>::kPlan.loads < 3 || kLane == 64);

/// Whether words are to be narrowed as they are moved. Where one shuffle reaches a whole vector, another
/// order is cheaper made of the bytes.
template <class From, class To>
concept MovesNarrowed = Moves<From, PixelLayout<2, To::kChannels, To::kBlueFirst>> && To::kSize == 1 &&
                        (From::kBlueFirst == To::kBlueFirst || kLane == 16);

/// True for the bytes of any vector as To that come from pixels as From.
template <class From, class To>
struct Comes {
  static constexpr bool At(int i) { return MovedByte<From, To, 0>::At(i) >= 0; }
};

template <class To>
struct Alpha {
  static constexpr bool At(int i) { return To::kChannels == 4 && i % To::kBytes / To::kSize == 3; }
};

/// A word a pixel: red in bits 15..11, green in 10..5, blue in 4..0.
struct Word565 {};

/// The same vector with all bits of alpha set.
template <class To>
ZR_INLINE U8 Opaque(U8 x) {
  if constexpr (To::kChannels == 4)
    return x | Where<Alpha<To>>();
  else
    return x;
}

}  // namespace
}  // namespace ZrConvertersLib::simd
