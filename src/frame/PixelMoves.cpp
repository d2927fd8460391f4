#include "frame/PixelMoves.h"

#include <cstddef>
#include <utility>

#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

void CopyMirrored(const std::uint8_t* from, std::uint8_t* to, std::int64_t pixels, std::int64_t pixelBytes,
                  Mirror mirror) noexcept {
  const simd::MirrorFunction copy = *simd::CurrentLevel().mirror;
  const auto count = static_cast<std::size_t>(pixels);
  const auto bytes = static_cast<std::size_t>(pixelBytes);
  if (mirror == Mirror::Pixels) return copy(to, from, count, bytes);
  // Two pixels share their chroma: the pair keeps it, and the lumas change places.
  copy(to, from, count / 2, 2 * bytes);
  const std::size_t sample = bytes / 2;
  const std::size_t first = mirror == Mirror::LumaAtEven ? 0 : sample;
  for (std::size_t at = first; at < count * bytes; at += 4 * sample) {
    for (std::size_t byte = 0; byte < sample; ++byte) std::swap(to[at + byte], to[at + 2 * sample + byte]);
  }
}

}  // namespace ZrConvertersLib
