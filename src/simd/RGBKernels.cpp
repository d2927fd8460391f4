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

constexpr KernelRow kRows[] = {
    Row<SourceReader::RGB8, Lines<BytesReader<3, false>>>(),
    Row<SourceReader::BGR8, Lines<BytesReader<3, true>>>(),
    Row<SourceReader::RGBa8, Lines<BytesReader<4, false>>>(),
    Row<SourceReader::BGRa8, Lines<BytesReader<4, true>>>(),
    Row<SourceReader::RGB16, Lines<WordsReader<3, false>>>(),
    Row<SourceReader::BGR16, Lines<WordsReader<3, true>>>(),
    Row<SourceReader::RGBa16, Lines<WordsReader<4, false>>>(),
    Row<SourceReader::BGRa16, Lines<WordsReader<4, true>>>(),
};

}  // namespace

ZR_EXPORT_KERNELS(kRGBKernels)

}  // namespace ZrConvertersLib::simd
