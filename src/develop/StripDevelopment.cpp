#include "develop/StripDevelopment.h"

#include <algorithm>

#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

using ZrUtilsLib::Result;

/// Columns that go through the later stages at a time.
constexpr std::int64_t kTile = simd::kTilePixels - 64;

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
    const std::int64_t width = std::min(kTile, mRegion.Width() - x);
    for (std::int64_t line = 0; line < count; line += PlaneBuffers::kLines) {
      const std::int64_t lines = std::min(PlaneBuffers::kLines, count - line);
      for (std::int64_t slot = 0; slot < lines; ++slot) SplitLine(line + slot, x, width, slot);
      if (grading != nullptr) grading->Apply(*mBuffers, lines, (width + 1) / 2);
      picture.Write({mBuffers->Half(0, 0, 0), mRegion.x0 + x, y + line, width, lines});
    }
  }
}

/// A single plane stands for all three.
void StripDevelopment::SplitLine(std::int64_t line, std::int64_t x, std::int64_t width, std::int64_t slot) {
  for (std::int64_t plane = 0; plane < 3; ++plane) {
    const std::uint8_t* const words = mStrips.Pixels(mStrips.Planes() == 1 ? 0 : plane, line) + 2 * x;
    simd::CurrentLevel().demosaic->split({words, mBuffers->Half(slot, plane, 0),
                                          mBuffers->Half(slot, plane, 1), static_cast<std::size_t>(width),
                                          0});
  }
}

}  // namespace ZrConvertersLib
