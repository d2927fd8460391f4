#include "develop/StripDevelopment.h"

#include <algorithm>

#include "core/YCbCrMatrix.h"
#include "frame/BandConversion.h"
#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

using ZrUtilsLib::Result;

/// About what stays in the second-level cache beside the buffers of the later stages.
constexpr std::int64_t kStripBytes = 128 * 1024;
constexpr std::int64_t kMostLines = 32;

/// What kernels may read or write beyond a line of words: blocks of 64 pixels of three words.
constexpr std::int64_t kSlack = 64 * 3 * 2;

/// Columns that go through the later stages at a time.
constexpr std::int64_t kTile = simd::kTilePixels - 64;

std::unique_ptr<std::uint8_t[]> Take(std::int64_t bytes) {
  return std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(bytes));
}

const YCbCrMatrix& MatrixOf(unsigned flags) {
  FrameOptions options;
  options.SetFlags(flags);
  if (options.matrix == ColourMatrix::Jpeg) return kMatrixJPG;
  return options.matrix == ColourMatrix::Bt709 ? kMatrix709 : kMatrix601;
}

auto KernelOf(ChannelOrder order) {
  const simd::YCbCrDepthKernels& kernels = *simd::CurrentLevel().yCbCrDepth;
  if (order == ChannelOrder::YCbYCr) return kernels.yCbYCr;
  return order == ChannelOrder::CbYCrY ? kernels.cbYCrY : kernels.cbYCr;
}

}  // namespace

StripDevelopment::StripDevelopment(const FramePlan& planes, bool yCbCrDepth)
    : mPlan(planes),
      mYCbCrDepth(yCbCrDepth),
      mRegion(planes.region),
      mStride(2 * planes.RegionWidth() + kSlack),
      mPlanes(planes.destination->planes),
      mBuffers(std::make_unique<PlaneBuffers>()) {
  const std::int64_t fitting = kStripBytes / (mStride * mPlanes);
  mLines = std::clamp(RoundDown(fitting, PlaneBuffers::kLines), PlaneBuffers::kLines, kMostLines);
  mPlan.region.y1 = std::min(mRegion.y1, mRegion.y0 + mLines);
  mStrip = Take(mLines * mPlanes * mStride + kSlack);
  if (yCbCrDepth)
    mSamples = Take(3 * (mStride + kSlack));
  else
    mScratch.emplace(mPlan);
}

Result StripDevelopment::Convert(const FramePlan& plan, const Grading* grading, const SourceLines& source,
                                 const PictureMemory& picture, const Rect& band) {
  const PictureLines lines(plan, picture, *mBuffers);
  for (std::int64_t y = band.y0; y < band.y1; y += mLines) {
    const std::int64_t count = std::min(mLines, band.y1 - y);
    const Result result = MakeStrip(source, y, count);
    if (!result.IsSuccess()) return result;
    WriteStrip(grading, lines, y, count);
  }
  return {};
}

Result StripDevelopment::MakeStrip(const SourceLines& source, std::int64_t y, std::int64_t count) {
  mPlan.region = {mRegion.x0, y, mRegion.x1, y + count};
  if (mYCbCrDepth) {
    ConvertSamples(source, y, count);
    return {};
  }
  BandConversion run(mPlan, *mScratch, source.data, source.stride, mStrip.get(), mStride);
  return run.Convert(mPlan.region);
}

/// Pixels from the last one before the region that begins a whole number of bytes.
void StripDevelopment::ConvertSamples(const SourceLines& source, std::int64_t y, std::int64_t count) {
  const SampleUnit unit = UnitOf(mPlan.source->order);
  const auto samplesOf = [&](std::int64_t pixels) { return pixels * unit.samples / unit.pixels; };
  const SampleLines samples(*mPlan.source, mPlan.flags);
  const std::int64_t first = RoundDown(mRegion.x0, SampleLines::kStep);
  const std::int64_t end = std::min(RoundUp(mRegion.x1, SampleLines::kStep), mPlan.width);
  // A pixel that shares its chroma with one before the region takes it along.
  const std::int64_t from = RoundDown(mRegion.x0, unit.pixels);
  const auto convert = KernelOf(mPlan.source->order);
  for (std::int64_t line = 0; line < count; ++line) {
    samples.Read(source, y + line, 1, samplesOf(first), samplesOf(end), mSamples.get(), 0);
    simd::YCbCrDepthArgs args{};
    args.words = mSamples.get() + 2 * samplesOf(from - first);
    for (std::int64_t plane = 0; plane < mPlanes; ++plane) args.planes[plane] = Word(plane, line);
    args.pixels = static_cast<std::size_t>(mRegion.x1 - from);
    args.matrix = &MatrixOf(mPlan.flags);
    convert(args);
  }
}

std::uint8_t* StripDevelopment::Word(std::int64_t plane, std::int64_t line) const {
  return mStrip.get() + (plane * mPlan.RegionHeight() + line) * mStride;
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
  // Where YCbCr pixels begin before the region.
  const std::int64_t skipped = mYCbCrDepth ? mRegion.x0 % UnitOf(mPlan.source->order).pixels : 0;
  for (std::int64_t plane = 0; plane < 3; ++plane) {
    const std::uint8_t* const words = Word(mPlanes == 1 ? 0 : plane, line) + 2 * (x + skipped);
    simd::CurrentLevel().demosaic->split({words, mBuffers->Half(slot, plane, 0),
                                          mBuffers->Half(slot, plane, 1), static_cast<std::size_t>(width),
                                          0});
  }
}

}  // namespace ZrConvertersLib
