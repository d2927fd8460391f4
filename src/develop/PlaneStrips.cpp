#include "develop/PlaneStrips.h"

#include <algorithm>

#include "core/YCbCrMatrix.h"
#include "frame/BandConversion.h"
#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

using ZrUtilsLib::Result;

/// About what stays in the second-level cache beside the buffers of the later stages.
constexpr std::int64_t kStripBytes = 128 * 1024;
constexpr std::int64_t kLeastLines = 4, kMostLines = 32;

/// What kernels may read or write beyond a line of words: blocks of 64 pixels of three words.
constexpr std::int64_t kSlack = 64 * 3 * 2;

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

PlaneStrips::PlaneStrips(const FramePlan& planes, bool yCbCrDepth)
    : mPlan(planes),
      mYCbCrDepth(yCbCrDepth),
      mPlanes(planes.destination->planes),
      mStride(planes.pixelBytes * planes.RegionWidth() + kSlack) {
  const std::int64_t fitting = kStripBytes / (mStride * mPlanes);
  mLines = std::clamp(RoundDown(fitting, kLeastLines), kLeastLines, kMostLines);
  mPlan.region.y1 = std::min(mPlan.region.y1, mPlan.region.y0 + mLines);
  mStrip = Take(mLines * mPlanes * mStride + kSlack);
  if (!yCbCrDepth) {
    mScratch.emplace(mPlan);
    return;
  }
  mSamples = Take(3 * (mStride + kSlack));
  // A pixel that shares its chroma with one before the region takes it along.
  mSkipped = mPlan.region.x0 % UnitOf(mPlan.source->order).pixels * mPlan.pixelBytes;
}

Result PlaneStrips::Make(const SourceLines& source, std::int64_t y, std::int64_t count) {
  mPlan.region.y0 = y;
  mPlan.region.y1 = y + count;
  if (mYCbCrDepth) {
    ConvertSamples(source, y, count);
    return {};
  }
  BandConversion run(mPlan, *mScratch, source.data, source.stride, mStrip.get(), mStride);
  return run.Convert(mPlan.region);
}

/// Samples from the last pixel before the region that begins a whole number of bytes.
void PlaneStrips::ConvertSamples(const SourceLines& source, std::int64_t y, std::int64_t count) {
  const SampleUnit unit = UnitOf(mPlan.source->order);
  const auto samplesOf = [&](std::int64_t pixels) { return pixels * unit.samples / unit.pixels; };
  const SampleLines samples(*mPlan.source, mPlan.flags);
  const Rect& region = mPlan.region;
  const std::int64_t first = RoundDown(region.x0, SampleLines::kStep);
  const std::int64_t end = std::min(RoundUp(region.x1, SampleLines::kStep), mPlan.width);
  const std::int64_t from = RoundDown(region.x0, unit.pixels);
  const auto convert = KernelOf(mPlan.source->order);
  for (std::int64_t line = 0; line < count; ++line) {
    samples.Read(source, y + line, 1, samplesOf(first), samplesOf(end), mSamples.get(), 0);
    simd::YCbCrDepthArgs args{};
    args.words = mSamples.get() + 2 * samplesOf(from - first);
    for (std::int64_t plane = 0; plane < mPlanes; ++plane) args.planes[plane] = Line(plane, line);
    args.pixels = static_cast<std::size_t>(region.x1 - from);
    args.matrix = &MatrixOf(mPlan.flags);
    convert(args);
  }
}

std::uint8_t* PlaneStrips::Line(std::int64_t plane, std::int64_t line) const {
  return mStrip.get() + (plane * mPlan.RegionHeight() + line) * mStride;
}

}  // namespace ZrConvertersLib
