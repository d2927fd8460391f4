#include "frame/PixelMoves.h"

#include <cstddef>
#include <cstring>
#include <utility>

namespace ZrConvertersLib {

namespace {

/// Blocks of a size known when compiling, so that each is one or two moves.
template <std::size_t Bytes>
void Reverse(const std::uint8_t* from, std::uint8_t* to, std::int64_t blocks) noexcept {
  std::uint8_t* last = to + (blocks - 1) * static_cast<std::int64_t>(Bytes);
  for (std::int64_t i = 0; i < blocks; ++i) {
    std::memcpy(last - i * static_cast<std::int64_t>(Bytes), from + i * static_cast<std::int64_t>(Bytes),
                Bytes);
  }
}

void ReverseAny(const std::uint8_t* from, std::uint8_t* to, std::int64_t blocks,
                std::int64_t bytes) noexcept {
  for (std::int64_t i = 0; i < blocks; ++i) {
    std::memcpy(to + (blocks - 1 - i) * bytes, from + i * bytes, static_cast<std::size_t>(bytes));
  }
}

void ReverseBlocks(const std::uint8_t* from, std::uint8_t* to, std::int64_t blocks,
                   std::int64_t bytes) noexcept {
  switch (bytes) {
    case 1:
      return Reverse<1>(from, to, blocks);
    case 2:
      return Reverse<2>(from, to, blocks);
    case 3:
      return Reverse<3>(from, to, blocks);
    case 4:
      return Reverse<4>(from, to, blocks);
    case 6:
      return Reverse<6>(from, to, blocks);
    default:
      return ReverseAny(from, to, blocks, bytes);
  }
}

}  // namespace

void CopyMirrored(const std::uint8_t* from, std::uint8_t* to, std::int64_t pixels, std::int64_t pixelBytes,
                  Mirror mirror) noexcept {
  if (mirror == Mirror::Pixels) return ReverseBlocks(from, to, pixels, pixelBytes);
  // Two pixels share their chroma: the pair keeps it, and the lumas change places.
  ReverseBlocks(from, to, pixels / 2, 2 * pixelBytes);
  const std::int64_t sample = pixelBytes / 2;
  const std::int64_t first = mirror == Mirror::LumaAtEven ? 0 : sample;
  for (std::int64_t at = first; at < pixels * pixelBytes; at += 4 * sample) {
    for (std::int64_t byte = 0; byte < sample; ++byte) std::swap(to[at + byte], to[at + 2 * sample + byte]);
  }
}

}  // namespace ZrConvertersLib
