#include "simd/Line.h"

/// Readers of interleaved red, green and blue. Alpha is read past.

namespace ZrConvertersLib::simd {
namespace {

/// Red, green, blue or blue, green, red.
template <bool blueFirst, class Channel>
ZR_INLINE Colour<Channel> Ordered(const Channel& first, const Channel& second, const Channel& third) {
  if constexpr (blueFirst)
    return {third, second, first};
  else
    return {first, second, third};
}

/// Vectors as in memory to one vector each of the first three channels.
template <int size>
ZR_INLINE Vectors<3> Channels(const Vectors<3>& memory) {
  return Deinterleave3<size>(memory);
}

template <int size>
ZR_INLINE Vectors<3> Channels(const Vectors<4>& memory) {
  return Deinterleave4<size>(memory);
}

/// One byte a channel.
template <int channels, bool blueFirst>
struct BytesReader {
  static constexpr int kGroupPixels = 1, kGroupBytes = channels, kOverread = 0;

  explicit ZR_INLINE BytesReader(const KernelArgs&) {}

  template <class Channel>
  ZR_INLINE Colour<U8> Read(const std::uint8_t* p) const {
    const Vectors<3> x = Channels<1>(LoadVectors<channels>(p));
    return Ordered<blueFirst>(x.v[0], x.v[1], x.v[2]);
  }
};

/// One little-endian word a channel, brought to the 16-bit scale by a left shift.
template <int channels, bool blueFirst>
struct WordsReader {
  static constexpr int kGroupPixels = 1, kGroupBytes = 2 * channels, kOverread = 0;

  explicit ZR_INLINE WordsReader(const KernelArgs& args) : mShift(args.shift) {}

  template <class Channel>
  ZR_INLINE Colour<Channel> Read(const std::uint8_t* p) const {
    if constexpr (sizeof(Channel) == sizeof(U8))
      return ReadBytes(p);
    else
      return ReadWords(p);
  }

 private:
  ZR_INLINE U16 Scale(U8 x) const { return ShiftLeft(As<U16>(x), mShift); }

  ZR_INLINE Colour<Words> ReadWords(const std::uint8_t* p) const {
    const Vectors<3> a = Channels<2>(LoadVectors<channels>(p));
    const Vectors<3> b = Channels<2>(LoadVectors<channels>(p + channels * kWidth));
    const auto words = [&](unsigned i) ZR_ALWAYS { return Words{Scale(a.v[i]), Scale(b.v[i])}; };
    return Ordered<blueFirst>(words(0), words(1), words(2));
  }

  /// For 8-bit writers the samples are narrowed as they lie, which halves what is to be sorted by channel.
  ZR_INLINE Colour<U8> ReadBytes(const std::uint8_t* p) const {
    const auto narrowed = [&](auto i) ZR_ALWAYS {
      const Words x = LoadWords(p + i * 2 * kWidth);
      return NarrowHigh({Scale(As<U8>(x.a)), Scale(As<U8>(x.b))});
    };
    const Vectors<3> x = Channels<1>(ForEach<channels>(narrowed));
    return Ordered<blueFirst>(x.v[0], x.v[1], x.v[2]);
  }

  std::uint32_t mShift;
};

/// One 32-bit little-endian word a pixel, whose fields a layout knows.
template <class Layout>
struct PixelWordReader {
  static constexpr int kGroupPixels = 1, kGroupBytes = 4, kOverread = 0;

  explicit ZR_INLINE PixelWordReader(const KernelArgs&) {}

  template <class Channel>
  ZR_INLINE Colour<Channel> Read(const std::uint8_t* p) const {
    if constexpr (sizeof(Channel) == sizeof(U8)) {
      const Vectors<3> x = Deinterleave4<1>(
          ForEach<4>([&](auto i) ZR_ALWAYS { return As<U8>(Layout::UpperBits(Pixels(p, i))); }));
      return {x.v[0], x.v[1], x.v[2]};
    } else {
      return {Join(p, Layout::Red), Join(p, Layout::Green), Join(p, Layout::Blue)};
    }
  }

 private:
  static ZR_INLINE U32 Pixels(const std::uint8_t* p, int quarter) {
    return As<U32>(Load(p + quarter * kWidth));
  }

  /// The upper halves of the words that `channel` makes.
  template <class F>
  static ZR_INLINE Words Join(const std::uint8_t* p, F channel) {
    return {NarrowHigh(channel(Pixels(p, 0)), channel(Pixels(p, 1))),
            NarrowHigh(channel(Pixels(p, 2)), channel(Pixels(p, 3)))};
  }
};

/// Red in bits 9..0, green in 19..10, blue in 29..20; bits 31..30 are unused.
struct RGB10p32Layout {
  static ZR_INLINE U32 Red(U32 x) { return (x << 22) & Splat32(0xFFC00000); }
  static ZR_INLINE U32 Green(U32 x) { return (x << 12) & Splat32(0xFFC00000); }
  static ZR_INLINE U32 Blue(U32 x) { return (x << 2) & Splat32(0xFFC00000); }

  /// The upper 8 bits of red, green and blue in bytes 0, 1 and 2.
  static ZR_INLINE U32 UpperBits(U32 x) {
    return ((x >> 2) & Splat32(0xFF)) | ((x >> 4) & Splat32(0xFF00)) | ((x >> 6) & Splat32(0xFF0000));
  }
};

constexpr KernelRow kRows[] = {
    Row<SourceReader::RGB8, Lines<BytesReader<3, false>>>(),
    Row<SourceReader::BGR8, Lines<BytesReader<3, true>>>(),
    Row<SourceReader::RGBa8, Lines<BytesReader<4, false>>>(),
    Row<SourceReader::BGRa8, Lines<BytesReader<4, true>>>(),
    Row<SourceReader::RGB16, Lines<WordsReader<3, false>>>(),
    Row<SourceReader::BGR16, Lines<WordsReader<3, true>>>(),
    Row<SourceReader::RGBa16, Lines<WordsReader<4, false>>>(),
    Row<SourceReader::BGRa16, Lines<WordsReader<4, true>>>(),
    Row<SourceReader::RGB10p32, Lines<PixelWordReader<RGB10p32Layout>>>(),
};

}  // namespace

ZR_EXPORT_KERNELS(kRGBKernels)

}  // namespace ZrConvertersLib::simd
