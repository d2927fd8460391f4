#pragma once

#include <iterator>

#include "simd/Blocks.h"
#include "simd/PixelLayout.h"
#include "simd/Spread.h"

/// Packed samples to words of the 16-bit scale. A form says how many samples and bytes a group has and scales
/// the samples of half a vector from their first byte on. Where two bytes hold a sample, its Map says which
/// ones these are, kFactors what moves the sample (or its low bits) to the top of the word that they make,
/// and Scaled does so. kUpperByte: the second one holds the upper eight bits and nothing else. Top gives
/// words whose upper bytes are those of the samples, with anything below.

namespace ZrConvertersLib::simd {
namespace {

/// A constant vector of words that repeats every four words.
template <unsigned w0, unsigned w1, unsigned w2, unsigned w3>
ZR_INLINE U16 EveryFour() {
  struct Bytes {
    static constexpr int At(int i) {
      constexpr unsigned words[4] = {w0, w1, w2, w3};
      return static_cast<int>(words[i / 2 % 4] >> (8 * (i % 2)) & 0xFF);
    }
  };
  return As<U16>(Constant<Bytes>::Get());
}

/// Sample k of four stands at bits 10k to 10k + 9 of five bytes, least significant bits first.
struct Form10p {
  static constexpr int kPixels = 4, kBytes = 5, kBits = 10;
  struct Map {
    static constexpr int kBytes = 5, kResult = 8;
    static constexpr int At(int j) { return j / 2 + j % 2; }
  };
  static constexpr unsigned kFactors[] = {64, 16, 4, 1};
  static constexpr bool kUpperByte = false;
  std::uint32_t shift;

  static ZR_INLINE U16 Scaled(U16 x, U16 factors) { return (x * factors) & Splat16(0xFFC0); }

  template <int apart = 1>
  ZR_INLINE U16 Scale(const std::uint8_t* p) const {
    return Scaled(As<U16>(Spread<Map>::template Read<apart>(p)), EveryFour<64, 16, 4, 1>());
  }

  /// Words whose upper bytes are those of the samples, of the bytes that Map spreads.
  static ZR_INLINE U16 Lifted(U8 bytes) { return As<U16>(bytes) * EveryFour<64, 16, 4, 1>(); }

  template <int apart = 1>
  static ZR_INLINE U16 Top(const std::uint8_t* p) {
    return Lifted(Spread<Map>::template Read<apart>(p));
  }
};

/// Two samples in three bytes, least significant bits first; two such groups are taken as one.
struct Form12p {
  static constexpr int kPixels = 2, kBytes = 3, kBits = 12;
  struct Map {
    static constexpr int kBytes = 6, kResult = 8;
    static constexpr int At(int j) { return j / 4 * 3 + j % 4 / 2 + j % 2; }
  };
  static constexpr unsigned kFactors[] = {16, 1, 16, 1};
  static constexpr bool kUpperByte = false;
  std::uint32_t shift;

  static ZR_INLINE U16 Scaled(U16 x, U16 factors) { return (x * factors) & Splat16(0xFFF0); }

  template <int apart = 1>
  ZR_INLINE U16 Scale(const std::uint8_t* p) const {
    return Scaled(As<U16>(Spread<Map>::template Read<apart>(p)), EveryFour<16, 1, 16, 1>());
  }

  static ZR_INLINE U16 Lifted(U8 bytes) { return As<U16>(bytes) * EveryFour<16, 1, 16, 1>(); }

  template <int apart = 1>
  static ZR_INLINE U16 Top(const std::uint8_t* p) {
    return Lifted(Spread<Map>::template Read<apart>(p));
  }
};

/// Sample k of four has bits 14k to 14k + 13 of seven bytes, so it lies in up to three bytes. The two bytes
/// up to its top bit are shifted up, and the missing low bits come from the byte before them.
struct Form14p {
  static constexpr int kPixels = 4, kBytes = 7, kBits = 14;
  struct Upper {
    static constexpr int kBytes = 7, kResult = 8;
    static constexpr int At(int j) { return (14 * (j / 2) + 13) / 8 - 1 + j % 2; }
  };
  struct Before {
    static constexpr int kBytes = 7, kResult = 8;
    static constexpr int At(int j) { return j % 2 == 0 && j > 0 ? Upper::At(j) - 1 : -1; }
  };
  using Map = Upper;
  std::uint32_t shift;

  template <int apart = 1>
  ZR_INLINE U16 Scale(const std::uint8_t* p) const {
    const U16 before = (As<U16>(Spread<Before>::template Read<apart>(p)) * Factors()) >> 8;
    return (Top<apart>(p) | before) & Splat16(0xFFFC);
  }

  template <int apart = 1>
  static ZR_INLINE U16 Top(const std::uint8_t* p) {
    return As<U16>(Spread<Upper>::template Read<apart>(p)) * Factors();
  }

 private:
  static ZR_INLINE U16 Factors() { return EveryFour<4, 16, 64, 1>(); }
};

/// Two samples in three bytes: the first and last byte hold the upper eight bits, the middle one the nibbles
/// that are ORed in `shift` bits up (first pixel's nibble high): 4 for 12 bits, or 6 for 10 bits, whose
/// nibbles reach two bits into the upper bytes. Top has the upper six bits only.
struct FormPairPacked {
  static constexpr int kPixels = 2, kBytes = 3;
  struct Map {  // nibbles' byte low, upper bits' byte high
    static constexpr int kBytes = 6, kResult = 8;
    static constexpr int At(int j) { return j / 4 * 3 + (j % 2 == 0 ? 1 : j % 4 - 1); }
  };

  explicit ZR_INLINE FormPairPacked(std::uint32_t shift)
      : mReach(shift != 4),
        mFactors(Pinned(As<U8>(ShiftLeft(EveryFour<1, 16, 1, 16>(), shift - 4)))),
        mNibble(Pinned(As<U8>(ShiftLeft(Splat16(0x0F), shift)))) {}

  template <int apart = 1>
  ZR_INLINE U16 Scale(const std::uint8_t* p) const {
    const U16 x = Top<apart>(p);
    return (x & Splat16(0xFF00)) | ((x * As<U16>(mFactors)) & As<U16>(mNibble));
  }

  template <int apart = 1>
  static ZR_INLINE U16 Top(const std::uint8_t* p) {
    return As<U16>(Spread<Map>::template Read<apart>(p));
  }

  /// The middle bytes of pairs of pixels as upper bytes of words.
  struct Middle {
    static constexpr int kBytes = kWidth / 2 * 3;
    static constexpr int At(int i) { return i % 2 == 0 ? -1 : i / 2 * 3 + 1; }
  };

  /// What those of 10 bits add to upper bytes: bits 7..6 of a middle byte to the first pixel's, 3..2 to the
  /// second one's, which 64 + 1 / 64 times the byte has at their places.
  static ZR_INLINE U8 Reaching(U8 middle) {
    return As<U8>(MultiplyUpper(As<U16>(middle), (64 << 8) + 4) & Splat16(0x0303));
  }

  /// Whether the nibbles reach into the upper bytes.
  ZR_INLINE bool Reach() const { return mReach; }

 private:
  bool mReach;
  U8 mFactors, mNibble;
};

/// Samples whose upper eight bits have a byte of their own and whose low bits share another one, which is
/// moved up by `factors` to where they belong. The bytes of a sample are put together as words, shared byte
/// low.
template <int pixels, int bytes, class Bytes, unsigned mask, unsigned... factors>
struct SharedLowBits {
  static constexpr int kPixels = pixels, kBytes = bytes;
  using Map = Bytes;
  static constexpr unsigned kFactors[] = {factors...};
  static constexpr bool kUpperByte = true;
  std::uint32_t shift;

  static ZR_INLINE U16 Scaled(U16 x, U16 by) { return (x & Splat16(0xFF00)) | ((x * by) & Splat16(mask)); }

  template <int apart = 1>
  ZR_INLINE U16 Scale(const std::uint8_t* p) const {
    return Scaled(Top<apart>(p), EveryFour<factors...>());
  }

  template <int apart = 1>
  static ZR_INLINE U16 Top(const std::uint8_t* p) {
    return As<U16>(Spread<Map>::template Read<apart>(p));
  }
};

/// Twice two samples in three bytes, the shared one in the middle.
struct PairBytes {
  static constexpr int kBytes = 6, kResult = 8;
  static constexpr int At(int j) { return j / 4 * 3 + (j % 2 == 0 ? 1 : j % 4 - 1); }
};

/// GigE Vision, 12 bits: the low bits of the first sample in bits 3..0 of the middle byte, of the second in
/// 7..4.
using Form12Gige = SharedLowBits<2, 3, PairBytes, 0xF0, 16, 1, 16, 1>;

/// GigE Vision, 10 bits: the low bits of the first sample in bits 1..0 of the middle byte, of the second
/// in 5..4.
using Form10Gige = SharedLowBits<2, 3, PairBytes, 0xC0, 64, 4, 64, 4>;

/// MIPI CSI-2, 10 bits: four bytes of upper bits, then one with the low two bits of each sample, the first
/// one's lowest.
struct FourAndOneByte {
  static constexpr int kBytes = 5, kResult = 8;
  static constexpr int At(int j) { return j % 2 == 0 ? 4 : j / 2; }
};
using Form10pCsi2 = SharedLowBits<4, 5, FourAndOneByte, 0xC0, 64, 16, 4, 1>;

/// MIPI CSI-2, 12 bits: two bytes of upper bits, then one with the low four bits of each sample, the first
/// one's lowest; two such groups are taken as one.
struct TwoAndOneByte {
  static constexpr int kBytes = 6, kResult = 8;
  static constexpr int At(int j) { return j / 4 * 3 + (j % 2 == 0 ? 2 : j % 4 / 2); }
};
using Form12pCsi2 = SharedLowBits<2, 3, TwoAndOneByte, 0xF0, 16, 1, 16, 1>;

/// MIPI CSI-2, 14 bits: four bytes of upper bits, then a 24-bit little-endian word with the low six bits of
/// each sample, the first one's lowest. Sample k finds its low bits in the two bytes from bit 6k of that word
/// on; they are brought to bits 7..2.
struct Form14pCsi2 {
  static constexpr int kPixels = 4, kBytes = 7;
  struct Upper {
    static constexpr int kBytes = 7, kResult = 8;
    static constexpr int At(int j) { return j % 2 == 0 ? -1 : j / 2; }
  };
  struct Lower {
    static constexpr int kBytes = 7, kResult = 8;
    static constexpr int At(int j) {
      const int byte = 4 + 6 * (j / 2) / 8 + j % 2;
      return byte < kBytes ? byte : -1;
    }
  };
  using Map = Upper;
  static constexpr bool kUpperByte = true;
  std::uint32_t shift;

  template <int apart = 1>
  ZR_INLINE U16 Scale(const std::uint8_t* p) const {
    const U16 lower = (As<U16>(Spread<Lower>::template Read<apart>(p)) * EveryFour<64, 1, 4, 16>()) >> 4;
    return Top<apart>(p) | (lower & Splat16(0xFC));
  }

  template <int apart = 1>
  static ZR_INLINE U16 Top(const std::uint8_t* p) {
    return As<U16>(Spread<Upper>::template Read<apart>(p));
  }
};

/// Whether the upper eight bits of each sample are a byte.
template <class Form>
concept HasUpperBytes = Form::kUpperByte;

/// Whether that is so but for bits that other bytes may add.
template <class Form>
concept NibblesReachUp = requires {
  typename Form::Middle;
};

/// Whether two bytes hold each sample.
template <class Form>
concept InTwoBytes = kGathers && requires {
  Form::kFactors;
};

/// Samples of `channels` a pixel as From, which may go to another number or order of channels: `To`.
template <class Form, class From, class To>
struct MovedSamples {
  static constexpr int kForms = static_cast<int>(std::size(Form::kFactors));
  static constexpr int kBytes = kWidth * From::kChannels / kForms * Form::Map::kBytes;  ///< of a block

  /// Sample of the block that is its element `element` as To, or -1 for alpha.
  static constexpr int Sample(int element) {
    const int channel = MovedByte<From, To, 0>::Channel(element % To::kChannels);
    return channel < 0 || channel == 3 ? -1 : element / To::kChannels * From::kChannels + channel;
  }

  /// One of the two bytes of an element.
  static constexpr int Byte(int element, int upper) {
    const int sample = Sample(element);
    return sample < 0 ? -1 : sample / kForms * Form::Map::kBytes + Form::Map::At(sample % kForms * 2 + upper);
  }

  /// Elements from `first` on, those of the next lane `apart` elements further on.
  template <int first, int apart>
  struct Pairs {
    static constexpr int kBytes = MovedSamples::kBytes;
    static constexpr int Element(int i) { return first + i / kLane * apart + i % kLane / 2; }
    static constexpr int At(int i) { return Byte(Element(i), i % 2); }
  };

  /// The second byte of each pair only.
  template <class Pairs>
  struct UpperOf : Pairs {
    static constexpr int At(int i) { return i % 2 == 0 ? -1 : Pairs::At(i); }
  };

  template <class Pairs>
  struct Factors {
    static constexpr int At(int i) {
      const int sample = Sample(Pairs::Element(i));
      return sample < 0 ? 0 : static_cast<int>(Form::kFactors[sample % kForms] >> (i % 2 * 8) & 0xFF);
    }
  };

  template <int vector>
  struct Upper {
    static constexpr int kBytes = MovedSamples::kBytes;
    static constexpr int At(int i) { return Byte(vector * kWidth + i, 1); }
  };

  /// A vector of words of the block as To.
  template <int vector>
  static ZR_INLINE U16 ReadWords(const std::uint8_t* p) {
    using Elements = Pairs<vector * kWidth / 2, kLane / 2>;
    return Form::Scaled(As<U16>(Gather<Elements>(p)), As<U16>(Constant<Factors<Elements>>::Get()));
  }

  /// A vector of the upper 8 bits.
  template <int vector>
  static ZR_INLINE U8 ReadHigh(const std::uint8_t* p) {
    if constexpr (HasUpperBytes<Form> && Gathering<Upper<vector>>::kPossible) {
      return Gather<Upper<vector>>(p);
    } else {
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
      // With every second lane of elements in one vector, packing gives natural order.
      const U16 even = AtTop<Pairs<vector * kWidth, kLane>>(p);
      const U16 odd = AtTop<Pairs<vector * kWidth + kLane / 2, kLane>>(p);
      return PackClipped(As<S16>(even >> 8), As<S16>(odd >> 8));
#else
      return NarrowHigh({AtTop<Pairs<vector * kWidth, kLane / 2>>(p),
                         AtTop<Pairs<vector * kWidth + kWidth / 2, kLane / 2>>(p)});
#endif
    }
  }

 private:
  /// Words with the samples at their top, and anything below.
  template <class Elements>
  static ZR_INLINE U16 AtTop(const std::uint8_t* p) {
    if constexpr (HasUpperBytes<Form>)
      return As<U16>(Gather<UpperOf<Elements>>(p));
    else
      return As<U16>(Gather<Elements>(p)) * As<U16>(Constant<Factors<Elements>>::Get());
  }
};

/// A vector's worth of samples, as words.
template <class Form>
struct Packed {
  static constexpr int kHalf = kWidth / 2 / Form::kPixels * Form::kBytes;
  static constexpr int kTaken = 2 * kHalf;  ///< bytes of kWidth samples
  static constexpr int kOverread = Spread<typename Form::Map>::kOverread;

  static ZR_INLINE Words Read(const Form& form, const std::uint8_t* p) {
    return {form.Scale(p), form.Scale(p + kHalf)};
  }

  /// The upper six bits of the samples, and anything below.
  static ZR_INLINE UpperSix ReadTop(const std::uint8_t* p) { return {Form::Top(p), Form::Top(p + kHalf)}; }

  /// The upper 8 bits of the samples.
  static ZR_INLINE U8 ReadHigh(const Form& form, const std::uint8_t* p) {
    if constexpr (kGathers && HasUpperBytes<Form>)
      return Gather<UpperBytes>(p);
    else if constexpr (kGathers && NibblesReachUp<Form>)
      return WithNibbles(form, p);
    else
      return Narrowed(form, p);
  }

 private:
  /// The second bytes of all samples.
  struct UpperBytes {
    static constexpr int kBytes = kTaken;
    static constexpr int At(int i) { return i / 4 * Form::Map::kBytes + Form::Map::At(i % 4 * 2 + 1); }
  };

  static ZR_INLINE U8 WithNibbles(const Form& form, const std::uint8_t* p) {
    const U8 upper = Gather<UpperBytes>(p);
    return form.Reach() ? upper | Form::Reaching(Gather<typename Form::Middle>(p)) : upper;
  }

  static ZR_INLINE U8 Narrowed([[maybe_unused]] const Form& form, const std::uint8_t* p) {
#if defined(__AVX512VBMI__)
    if constexpr (requires { Form::kBits; }) return Fields<Form::kBits>(p);
#endif
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
    using Grey = PixelLayout<1, 1, false>;
    if constexpr (InTwoBytes<Form>) return MovedSamples<Form, Grey, Grey>::template ReadHigh<0>(p);
    // With every second lane of samples in one vector, packing gives natural order.
    const U16 even = Form::template Top<2>(p), odd = Form::template Top<2>(p + kHalf / 2);
    return PackClipped(As<S16>(even >> 8), As<S16>(odd >> 8));
#else
    if constexpr (NibblesReachUp<Form>) return NarrowHigh(Read(form, p));
    return NarrowHigh({Form::Top(p), Form::Top(p + kHalf)});
#endif
  }

#if defined(__AVX512VBMI__)
  /// Four samples that follow one another bit by bit fill whole bytes, which are put into 64 bits.
  struct Four {
    static constexpr int kBytes = 4 / Form::kPixels * Form::kBytes, kResult = 8;
    static constexpr int At(int j) { return j; }
  };

  /// From 64 bits four samples' upper 8 bits, twice.
  template <int bits>
  struct Offsets {
    static constexpr int At(int i) { return bits * (i % 4 + 1) - 8; }
  };

  /// Fours of the first and of the second half of the samples in turn, to natural order.
  struct Halves {
    static constexpr int At(int i) { return i / 4 % 8 * 8 + i / 32 * 4 + i % 4; }
  };

  template <int bits>
  static ZR_INLINE U8 Fields(const std::uint8_t* p) {
    const auto offsets = As<Native>(Constant<Offsets<bits>>::Get());
    const auto first = As<Native>(Spread<Four>::Read(p)), second = As<Native>(Spread<Four>::Read(p + kHalf));
    constexpr std::uint64_t kUpperFour = 0xF0F0F0F0F0F0F0F0;
    const auto fours = _mm512_mask_multishift_epi64_epi8(_mm512_multishift_epi64_epi8(offsets, first),
                                                         kUpperFour, offsets, second);
    return ShuffleLanes<Halves>(As<U8>(fours));
  }
#endif
};

}  // namespace
}  // namespace ZrConvertersLib::simd
