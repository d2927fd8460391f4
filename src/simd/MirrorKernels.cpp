#include <utility>

#include "simd/Line.h"

namespace ZrConvertersLib::simd {
namespace {

using Block = std::uint8_t __attribute__((vector_size(16)));
constexpr std::size_t kBlockBytes = 16;

/// Pixels of `Bytes` bytes, as many as a block holds whole.
template <std::size_t Bytes>
struct MirrorShape {
  static constexpr std::size_t kPixels = kBlockBytes / Bytes;
  /// Bytes of a block that hold no whole pixel. Mirrored they come first, where the next block, or the pixels
  /// after the last block, are stored over them.
  static constexpr std::size_t kRest = kBlockBytes - kPixels * Bytes;

  /// Which byte of the block comes to byte `at` of the mirrored one.
  static constexpr int From(std::size_t at) {
    if (at < kRest) return 0;
    const std::size_t byte = at - kRest;
    return static_cast<int>((kPixels - 1 - byte / Bytes) * Bytes + byte % Bytes);
  }
};

template <std::size_t Bytes, std::size_t... I>
ZR_INLINE Block Mirrored(Block block, std::index_sequence<I...>) {
  return __builtin_shufflevector(block, block, MirrorShape<Bytes>::From(I)...);
}

template <std::size_t Bytes>
ZR_INLINE void MirrorPixels(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels) {
  using Shape = MirrorShape<Bytes>;
  // If a block ends with bytes of an incomplete pixel, its store needs one more pixel of space.
  constexpr std::size_t kReach = Shape::kPixels + (Shape::kRest != 0 ? 1 : 0);
  std::size_t x = 0;
  for (; x + kReach <= pixels; x += Shape::kPixels) {
    Block block;
    std::memcpy(&block, source + x * Bytes, kBlockBytes);
    block = Mirrored<Bytes>(block, std::make_index_sequence<kBlockBytes>());
    std::memcpy(destination + (pixels - x - Shape::kPixels) * Bytes - Shape::kRest, &block, kBlockBytes);
  }
  for (; x < pixels; ++x) std::memcpy(destination + (pixels - 1 - x) * Bytes, source + x * Bytes, Bytes);
}

void Mirror(std::uint8_t* destination, const std::uint8_t* source, std::size_t pixels,
            std::size_t pixelBytes) {
  switch (pixelBytes) {
    case 1:
      return MirrorPixels<1>(destination, source, pixels);
    case 2:
      return MirrorPixels<2>(destination, source, pixels);
    case 3:
      return MirrorPixels<3>(destination, source, pixels);
    case 4:
      return MirrorPixels<4>(destination, source, pixels);
    case 6:
      return MirrorPixels<6>(destination, source, pixels);
    default:
      for (std::size_t x = 0; x < pixels; ++x)
        std::memcpy(destination + (pixels - 1 - x) * pixelBytes, source + x * pixelBytes, pixelBytes);
  }
}

}  // namespace

extern const MirrorFunction ZR_AT_LEVEL(kMirror);
constinit const MirrorFunction ZR_AT_LEVEL(kMirror) = Mirror;

}  // namespace ZrConvertersLib::simd
