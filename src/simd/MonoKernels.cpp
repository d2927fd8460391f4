#include "simd/Line.h"
#include "simd/Packed.h"

/// Readers of monochrome lines. A reader of one line says how many bytes a group of pixels takes and gives
/// a block of kWidth pixels from the block's first byte, in the form that is asked for where it can choose.

namespace ZrConvertersLib::simd {
namespace {

struct PlainLine {
  static constexpr int kGroupPixels = 1, kOverread = 0;
};

/// What is read as words is cut to bytes only for writers that take them.
struct LineOfWords : PlainLine {
  static constexpr bool kWordsFirst = true;
};

/// One byte a pixel.
struct Mono8Reader : PlainLine {
  using Pixel = PixelLayout<1, 1, false>;
  static constexpr int kGroupBytes = 1;

  explicit ZR_INLINE Mono8Reader(const KernelArgs& args) : mFlip(Splat8(args.flip)) {}

  template <class Channel>
  ZR_INLINE Grey<U8> Read(const std::uint8_t* p) const {
    return {Load(p) ^ mFlip};
  }

  /// Alpha comes as 0, so that the flip can set it.
  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const requires(Moves<Pixel, To>) {
    return Gather<MovedByte<Pixel, To, vector>>(p) ^ Opaque<To>(mFlip & Where<Comes<Pixel, To>>());
  }

 private:
  U8 mFlip;
};

/// One little-endian word a pixel, brought to the 16-bit scale by a left shift.
struct Mono16Reader : LineOfWords {
  static constexpr int kGroupBytes = 2;

  explicit ZR_INLINE Mono16Reader(const KernelArgs& args) : mShift(args.shift) {}

  template <class Channel>
  ZR_INLINE Grey<Words> Read(const std::uint8_t* p) const {
    const Words x = LoadWords(p);
    return {{ShiftLeft(x.a, mShift), ShiftLeft(x.b, mShift)}};
  }

 private:
  std::uint32_t mShift;
};

/// One 32-bit word a pixel; its upper half is the value.
struct Mono32Reader : LineOfWords {
  static constexpr int kGroupBytes = 4;

  explicit ZR_INLINE Mono32Reader(const KernelArgs&) {}

  template <class Channel>
  ZR_INLINE Grey<Words> Read(const std::uint8_t* p) const {
    return {{Half(p), Half(p + 2 * kWidth)}};
  }

 private:
  static ZR_INLINE U16 Half(const std::uint8_t* p) {
    return NarrowHigh(As<U32>(Load(p)), As<U32>(Load(p + kWidth)));
  }
};

/// A packed line.
template <class Form>
struct PackedReader {
  static constexpr int kGroupPixels = Form::kPixels, kGroupBytes = Form::kBytes;
  static constexpr int kOverread = Packed<Form>::kOverread;
  static constexpr bool kWordsFirst = true;

  explicit ZR_INLINE PackedReader(const KernelArgs& args) : mForm{args.shift} {}

  template <class Channel>
  ZR_INLINE Grey<Channel> Read(const std::uint8_t* p) const {
    if constexpr (std::is_same_v<Channel, U8>)
      return {Packed<Form>::ReadHigh(mForm, p)};
    else if constexpr (std::is_same_v<Channel, UpperSix>)
      return {Packed<Form>::ReadTop(p)};
    else
      return {Packed<Form>::Read(mForm, p)};
  }

 private:
  Form mForm;
};

/// Samples of 1, 2 or 4 bits to bytes, first pixel in the least significant bits; full scale becomes 255.
#if defined(__AVX512VBMI__)

template <int bits>
struct SubByte {
  static constexpr int kOverread = 0;

  static ZR_INLINE U8 Read(const std::uint8_t* p) {
    if constexpr (bits == 1) {
      __mmask64 pixels;
      std::memcpy(&pixels, p, sizeof pixels);
      return As<U8>(_mm512_movm_epi8(pixels));
    } else if constexpr (bits == 2) {
      const U32 four = As<U32>(_mm512_cvtepu8_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))));
      const U32 two = four | (four << 12);
      return Scale(As<U8>((two | (two << 6)) & Splat32(0x03030303)));
    } else {
      const U16 two = As<U16>(_mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p))));
      return Scale(As<U8>((two | (two << 4)) & Splat16(0x0F0F)));
    }
  }

  /// A vector of words of five, six and five bits.
  template <int vector>
  static ZR_INLINE U8 Read565(const std::uint8_t* p) requires(bits == 1) {
    __mmask32 pixels;
    std::memcpy(&pixels, p + vector * sizeof pixels, sizeof pixels);
    return As<U8>(_mm512_movm_epi16(pixels));
  }

 private:
  static ZR_INLINE U8 Scale(U8 samples) {
    struct Scaled {
      static constexpr int At(int i) {
        return i % 16 == (1 << bits) - 1 ? 0xFF : i % 16 << (8 - bits) & 0xFF;
      }
    };
    return ShuffleBytes(Constant<Scaled>::Get(), samples);
  }
};

#elif defined(__AVX2__)

/// Each pixel's byte gets the nibble, or for single bits the byte, that holds the sample, which is then
/// looked up where it stands. Words of five, six and five bits are looked up byte by byte.
template <int bits>
struct SubByte {
  static constexpr int kOverread = 0;

  static ZR_INLINE U8 Read(const std::uint8_t* p) {
    const U8 sample = Constant<Sample>::Get();
    if constexpr (bits == 1)
      return As<U8>((ShuffleBytes(Bits(p), Constant<Repeat>::Get()) & sample) == sample);
    else
      return ShuffleBytes(Constant<Scaled>::Get(), Nibbles<false>(p) & sample);
  }

  /// A vector of words of five, six and five bits.
  template <int vector>
  static ZR_INLINE U8 Read565(const std::uint8_t* p) {
    if constexpr (bits == 1) {
      const U16 bit = As<U16>(Constant<Bit>::Get());
      return As<U8>((As<U16>(ShuffleBytes(Bits(p), Constant<Half<vector>>::Get())) & bit) == bit);
    } else {
      const U8 samples = Nibbles<true>(p) & Constant<Sample>::Get();
      const U8 low = ShuffleBytes(Constant<Byte565<0>>::Get(), samples);
      const U8 high = ShuffleBytes(Constant<Byte565<1>>::Get(), samples);
      return vector == 0 ? UnpackLow8(low, high) : UnpackHigh8(low, high);
    }
  }

 private:
  struct Repeat {
    static constexpr int At(int i) { return i / 8; }
  };

  /// The bits of a pixel's sample.
  struct Sample {
    static constexpr int At(int i) {
      if (bits == 4) return 0x0F;
      return bits == 2 ? 0x03 << i % 2 * 2 : 1 << i % 8;
    }
  };

  /// A bit of a word for each pixel of half a block, whose bytes lie in every 32-bit element.
  struct Bit {
    static constexpr int At(int i) { return (1 << i / 2) >> (8 * (i % 2)) & 0xFF; }
  };
  template <int vector>
  struct Half {
    static constexpr int At(int i) { return 2 * vector + i % 2; }
  };
  static ZR_INLINE U8 Bits(const std::uint8_t* p) {
    std::uint32_t pixels;
    std::memcpy(&pixels, p, sizeof pixels);
    return As<U8>(Splat32(pixels));
  }

  struct Scaled {
    static constexpr int At(int i) {
      const int nibble = i % 16, sample = bits == 2 && nibble % 4 == 0 ? nibble / 4 : nibble;
      return sample == (1 << bits) - 1 ? 0xFF : sample << (8 - bits) & 0xFF;
    }
  };

  /// The low or the high byte of a grey word of five, six and five bits.
  template <int byte>
  struct Byte565 {
    static constexpr int At(int i) {
      const int grey = Scaled::At(i);
      return (grey >> 3 << 11 | grey >> 2 << 5 | grey >> 3) >> (8 * byte) & 0xFF;
    }
  };

  /// The nibbles of four bits a pixel, or twice those of two bits; there is more above them in their bytes.
  /// `spread`: their 64-bit parts as SpreadHalves orders them.
  template <bool spread>
  static ZR_INLINE U8 Nibbles(const std::uint8_t* p) {
    if constexpr (bits == 4) {
      const U16 two = As<U16>(_mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))));
      const U8 nibbles = As<U8>(two | (two << 4));
      return spread ? SpreadHalves(nibbles) : nibbles;
    } else {
      struct Twice {
        static constexpr int At(int i) { return spread ? i / 16 * 4 + i % 16 / 8 * 8 + i % 8 / 2 : i / 2; }
      };
      const __m128i low = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)), high = _mm_srli_epi16(low, 4);
      const __m256i both = _mm256_broadcastsi128_si256(_mm_unpacklo_epi8(low, high));
      return ShuffleBytes(As<U8>(both), Constant<Twice>::Get());
    }
  }
};

#else

template <int bits>
struct SubByte {
  struct Repeat {
    static constexpr int kBytes = bits, kResult = 8;
    static constexpr int At(int j) { return j * bits / 8; }
  };
  static constexpr int kOverread = Spread<Repeat>::kOverread;

  static ZR_INLINE U8 Read(const std::uint8_t* p) {
    const U8 sample = AtTop(Spread<Repeat>::Read(p));
    return sample | (As<U8>(sample == Splat8(kTop)) & Splat8(0xFF & ~kTop));
  }

 private:
  static constexpr unsigned kTop =
      0xFF00U >> bits & 0xFF;  ///< the bits of a sample moved to the top of a byte

  /// Each pixel's sample at the top of its byte, from bytes that hold the samples of all their neighbours.
  static ZR_INLINE U8 AtTop(U8 x) {
    if constexpr (bits == 1) {
      struct Bit {
        static constexpr int At(int i) { return 1 << i % 8; }
      };
      const U8 bit = Constant<Bit>::Get();
      return As<U8>((x & bit) == bit) & Splat8(kTop);
    } else if constexpr (bits == 2) {
      const U32 four = As<U32>(x);
      return As<U8>(((four << 6) & Splat32(0xC0)) | ((four << 4) & Splat32(0xC000)) |
                    ((four << 2) & Splat32(0xC00000)) | (four & Splat32(0xC0000000)));
    } else {
      const U16 two = As<U16>(x);
      return As<U8>(((two << 4) & Splat16(0xF0)) | (two & Splat16(0xF000)));
    }
  }
};

#endif

/// A line of such samples.
template <int bits>
struct SubByteReader {
  static constexpr int kGroupPixels = 8 / bits, kGroupBytes = 1;
  static constexpr int kOverread = SubByte<bits>::kOverread;

  explicit ZR_INLINE SubByteReader(const KernelArgs&) {}

  template <class Channel>
  ZR_INLINE Grey<U8> Read(const std::uint8_t* p) const {
    return {SubByte<bits>::Read(p)};
  }

  template <class To, int vector>
  ZR_INLINE U8 ReadStored(const std::uint8_t* p) const
      requires(std::same_as<To, Word565>&& requires { SubByte<bits>::template Read565<vector>(p); }) {
    return SubByte<bits>::template Read565<vector>(p);
  }
};

constexpr KernelRow kRows[] = {
    Row<SourceReader::Mono8, Lines<Mono8Reader>>(),
    Row<SourceReader::Mono16, Lines<Mono16Reader>>(),
    Row<SourceReader::Mono32, Lines<Mono32Reader>>(),
    Row<SourceReader::Mono10p, Lines<PackedReader<Form10p>>>(),
    Row<SourceReader::Mono12p, Lines<PackedReader<Form12p>>>(),
    Row<SourceReader::Mono14p, Lines<PackedReader<Form14p>>>(),
    Row<SourceReader::MonoPacked, Lines<PackedReader<FormPairPacked>>>(),
    Row<SourceReader::Mono10pCsi2, Lines<PackedReader<Form10pCsi2>>>(),
    Row<SourceReader::Mono12pCsi2, Lines<PackedReader<Form12pCsi2>>>(),
    Row<SourceReader::Mono14pCsi2, Lines<PackedReader<Form14pCsi2>>>(),
    Row<SourceReader::Mono10Gige, Lines<PackedReader<Form10Gige>>>(),
    Row<SourceReader::Mono12Gige, Lines<PackedReader<Form12Gige>>>(),
    Row<SourceReader::Mono1p, Lines<SubByteReader<1>>>(),
    Row<SourceReader::Mono2p, Lines<SubByteReader<2>>>(),
    Row<SourceReader::Mono4p, Lines<SubByteReader<4>>>(),
};

}  // namespace

ZR_EXPORT_KERNELS(kMonoKernels)

}  // namespace ZrConvertersLib::simd
