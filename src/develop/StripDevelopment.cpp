#include "develop/StripDevelopment.h"

#include <algorithm>
#include <cstring>

#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

using ZrUtilsLib::Result;

/// Columns that go through the later stages at a time.
constexpr std::int64_t kTile = simd::kTilePixels - 64;

/// Pixels of the largest block, which take as many bytes of a half.
constexpr std::int64_t kBlock = 64;

}  // namespace

StripDevelopment::StripDevelopment(const FramePlan& planes, bool yCbCrDepth)
    : mRegion(planes.region), mStrips(planes, yCbCrDepth), mBuffers(std::make_unique<PlaneBuffers>()) {}

Result StripDevelopment::Convert(const FramePlan& plan, const Grading* grading, const SourceLines& source,
                                 const PictureMemory& picture, const Rect& band) {
  const PictureLines lines(plan, picture, *mBuffers);
  for (std::int64_t y = band.y0; y < band.y1; y += mStrips.Lines()) {
    const std::int64_t count = std::min(mStrips.Lines(), band.y1 - y);
    const Result result = mStrips.Make(source, y, count);
    if (!result.IsSuccess()) return result;
    WriteStrip(grading, lines, y, count);
  }
  return {};
}

void StripDevelopment::WriteStrip(const Grading* grading, const PictureLines& picture, std::int64_t y,
                                  std::int64_t count) {
  for (std::int64_t x = 0; x < mRegion.Width(); x += kTile) {
    for (std::int64_t line = 0; line < count; line += PlaneBuffers::kLines) {
      const Rect tile = {x, line, std::min(x + kTile, mRegion.Width()),
                         std::min(line + PlaneBuffers::kLines, count)};
      MakeTile(grading, tile);
      picture.Write({mBuffers->Half(0, 0, 0), mRegion.x0 + x, y + line, tile.Width(), tile.Height()});
    }
  }
}

/// Pixels and lines of the strip. A single plane stands for all three.
void StripDevelopment::MakeTile(const Grading* grading, const Rect& tile) {
  const bool equal = mStrips.Planes() == 1 && (grading == nullptr || grading->IsGreenOnly());
  for (std::int64_t plane = equal ? 1 : 0; plane < (equal ? 2 : 3); ++plane) Split(plane, tile);
  if (grading != nullptr) grading->Apply(*mBuffers, tile.Height(), (tile.Width() + 1) / 2);
  if (equal) CopyGreen(tile);
}

void StripDevelopment::Split(std::int64_t plane, const Rect& tile) {
  const simd::DemosaicKernels& kernels = *simd::CurrentLevel().demosaic;
  const bool words = mStrips.PixelBytes() == 2;
  const auto split = words ? kernels.split : kernels.splitBytes;
  for (std::int64_t line = tile.y0; line < tile.y1; ++line) {
    const std::uint8_t* const pixels = mStrips.Pixels(mStrips.Planes() == 1 ? 0 : plane, line);
    const std::int64_t slot = line - tile.y0;
    split({pixels + mStrips.PixelBytes() * tile.x0, mBuffers->Half(slot, plane, 0),
           mBuffers->Half(slot, plane, 1), static_cast<std::size_t>(tile.Width()), words ? 0U : 8U});
  }
}

/// To red and blue, with what kernels may read beyond a line.
void StripDevelopment::CopyGreen(const Rect& tile) {
  const auto bytes = static_cast<std::size_t>(RoundUp(tile.Width(), kBlock));
  for (std::int64_t slot = 0; slot < tile.Height(); ++slot)
    for (const int plane : {0, 2})
      for (int half = 0; half < 2; ++half)
        std::memcpy(mBuffers->Half(slot, plane, half), mBuffers->Half(slot, 1, half), bytes);
}

}  // namespace ZrConvertersLib
