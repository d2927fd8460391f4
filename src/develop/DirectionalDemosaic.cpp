#include "develop/DirectionalDemosaic.h"

#include <algorithm>
#include <cstring>

#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

namespace {

using Buffers = MosaicTileBuffers;

/// Columns to each side of a tile that its pixels depend on by their neighbours' green.
constexpr std::int64_t kSide = 2;

/// From bytes to the scale of 14 bits.
constexpr std::uint32_t kByteShift = 6;

/// Pixels of a tile where a line needs more than one.
constexpr std::int64_t kTile = simd::kTilePixels - 64;
static_assert(kTile + 2 * kSide + 1 <= static_cast<std::int64_t>(simd::kTilePixels));

/// The position inside [0, size) that one outside is reflected to about the first or last position.
std::int64_t Reflected(std::int64_t at, std::int64_t size) {
  const std::int64_t period = 2 * (size - 1);
  const std::int64_t within = ((at % period) + period) % period;
  return within < size ? within : period - within;
}

std::int64_t TileWidth(std::int64_t width) {
  if (width <= kTile) return width;
  const std::int64_t count = (width + kTile - 1) / kTile;
  return RoundUp((width + count - 1) / count, 64);
}

}  // namespace

DirectionalDemosaic::DirectionalDemosaic(const FramePlan& plan, const Grading* grading,
                                         MosaicTileBuffers& buffers, const SourceLines& source,
                                         const PictureMemory& picture)
    : mPlan(plan),
      mGrading(grading),
      mBuffers(buffers),
      mSource(source),
      mKernels(*simd::CurrentLevel().demosaic),
      mSamples(*plan.source, plan.flags),
      mPicture(plan, picture, buffers),
      mGreenOnly(!FindDestination(plan.destination->id)->colour &&
                 (grading == nullptr || !grading->Mixes())) {
  const bool fits = plan.source->depth <= 14;
  mScale = static_cast<std::size_t>(fits ? simd::SampleScale::Fourteen : simd::SampleScale::Sixteen);
  mShift = fits ? 2 : 0;
  FrameOptions options;
  options.SetFlags(plan.flags);
  const MosaicPattern pattern = options.pattern;
  mOddColumnColoured = pattern == MosaicPattern::GRBG || pattern == MosaicPattern::GBRG;
  mRedFirst = pattern == MosaicPattern::GRBG || pattern == MosaicPattern::RGGB;
}

void DirectionalDemosaic::Convert(const Rect& band) {
  const std::int64_t width = TileWidth(band.Width());
  for (std::int64_t x = band.x0; x < band.x1; x += width) {
    mTile = {x, band.y0, std::min(x + width, band.x1), band.y1};
    ConvertTile();
  }
}

void DirectionalDemosaic::ConvertTile() {
  mBase = mTile.x0 > 0 ? mTile.x0 - kSide : 0;
  const std::int64_t end = mTile.x1 < mPlan.width ? mTile.x1 + kSide : mTile.x1;
  mPairs = (end - mBase + 1) / 2;
  mReadFrom = RoundDown(std::max<std::int64_t>(mBase - kSide, 0), SampleLines::kStep);
  mReadEnd = std::min(RoundUp(mBase + 2 * mPairs + kSide, SampleLines::kStep), mPlan.width);
  mLinesRead = mTile.y0 - Buffers::kReach;
  std::int64_t greenFound = mTile.y0 - 1;
  for (std::int64_t y = mTile.y0; y < mTile.y1; y += Buffers::kLines) {
    const std::int64_t count = std::min(Buffers::kLines, mTile.y1 - y);
    ReadLines(y + count + Buffers::kReach);
    for (; greenFound <= y + count; ++greenFound) FindGreen(greenFound);
    for (std::int64_t line = 0; line < count; ++line) MakePlanes(y + line, line);
    if (mGrading != nullptr) mGrading->Apply(mBuffers, count, mPairs);
    mPicture.Write({mBuffers.Half(0, 0, 0) + (mTile.x0 - mBase), mTile.x0, y, mTile.Width(), count});
  }
}

/// Reads the lines before `end` that are not there yet, those outside the frame by their reflections.
void DirectionalDemosaic::ReadLines(std::int64_t end) {
  while (mLinesRead < end) {
    const bool inside = mLinesRead >= 0 && mLinesRead < mPlan.height;
    const std::int64_t count = inside ? std::min(end, mPlan.height) - mLinesRead : 1;
    ReadRun(Reflected(mLinesRead, mPlan.height), mLinesRead, count);
    mLinesRead += count;
  }
}

/// `count` lines of the frame from `from` on as the lines from `line` on.
void DirectionalDemosaic::ReadRun(std::int64_t from, std::int64_t line, std::int64_t count) {
  if (mPlan.source->depth == 8) {
    for (std::int64_t i = 0; i < count; ++i) SplitBytes(mSource.data + (from + i) * mSource.stride, line + i);
    return;
  }
  std::uint8_t* const words = mBuffers.words + simd::kHalfMargin;
  mSamples.Read(mSource, from, count, mReadFrom, mReadEnd, words, Buffers::kWordStride);
  for (std::int64_t i = 0; i < count; ++i) SplitWords(words + i * Buffers::kWordStride, line + i);
}

void DirectionalDemosaic::SplitWords(const std::uint8_t* words, std::int64_t line) {
  mKernels.split({words + 2 * (mBase - mReadFrom), Samples(line, 0), Samples(line, 1),
                  static_cast<std::size_t>(2 * mPairs), mShift});
  Surround(line, std::max<std::int64_t>(mBase, 0), [&](std::int64_t column) {
    std::uint16_t sample;
    std::memcpy(&sample, words + 2 * (column - mReadFrom), sizeof sample);
    return static_cast<std::uint16_t>(sample >> mShift);
  });
}

/// Whole blocks where they lie in the frame, and the rest from a copy, since kernels read whole blocks.
void DirectionalDemosaic::SplitBytes(const std::uint8_t* bytes, std::int64_t line) {
  constexpr std::int64_t kBlock = 64;
  // A region that begins in column 1 has a pair of columns of which one is outside the frame.
  const std::int64_t outside = mBase < 0 ? 2 : 0;
  const std::int64_t pixels = std::min(2 * mPairs, mPlan.width - mBase) - outside;
  const std::int64_t whole = RoundDown(pixels, kBlock);
  const std::uint8_t* const from = bytes + mBase + outside;
  std::uint8_t *const even = Samples(line, 0) + outside, *const odd = Samples(line, 1) + outside;
  mKernels.splitBytes({from, even, odd, static_cast<std::size_t>(whole), kByteShift});
  if (pixels != whole) {
    std::memcpy(mBuffers.words, from + whole, static_cast<std::size_t>(pixels - whole));
    mKernels.splitBytes(
        {mBuffers.words, even + whole, odd + whole, static_cast<std::size_t>(kBlock), kByteShift});
  }
  Surround(line, mBase + outside,
           [&](std::int64_t column) { return static_cast<std::uint16_t>(bytes[column] << kByteShift); });
}

/// Adds the columns before `begin` and after those that are computed, outside the frame by their reflections.
template <class SampleAt>
void DirectionalDemosaic::Surround(std::int64_t line, std::int64_t begin, SampleAt sampleAt) {
  const auto fill = [&](std::int64_t column) {
    const std::uint16_t sample = sampleAt(Reflected(column, mPlan.width));
    const std::int64_t at = column - (mBase - kSide);
    std::memcpy(Samples(line, at % 2) + (at / 2 - kSide / 2) * 2, &sample, sizeof sample);
  };
  const std::int64_t end = mBase + 2 * mPairs;
  for (std::int64_t column = mBase - kSide; column < begin; ++column) fill(column);
  for (std::int64_t column = std::min(end, mPlan.width); column < end + kSide; ++column) fill(column);
}

std::uint8_t* DirectionalDemosaic::Samples(std::int64_t line, std::int64_t half) const {
  const std::int64_t slot = (line - mTile.y0 + Buffers::kReach) % Buffers::kSampleLines;
  return mBuffers.samples[slot][half] + simd::kHalfMargin;
}

std::uint8_t* DirectionalDemosaic::Green(std::int64_t line) const {
  return mBuffers.green[(line - mTile.y0 + 1) % Buffers::kGreenLines] + simd::kHalfMargin;
}

/// The half of a line that is red or blue.
std::int64_t DirectionalDemosaic::ColouredHalf(std::int64_t line) const {
  return (std::int64_t{mOddColumnColoured} + line + mBase) & 1;
}

bool DirectionalDemosaic::IsRed(std::int64_t line) const {
  return mRedFirst == (line % 2 == 0);
}

void DirectionalDemosaic::FindGreen(std::int64_t line) {
  const std::int64_t half = ColouredHalf(line);
  std::uint8_t* const green = Green(line);
  const std::uint8_t* const between = Samples(line, 1 - half);
  const std::ptrdiff_t west = half == 0 ? -2 : 0;
  mKernels.green[mScale]({Samples(line, half), between + west, between + west + 2, Samples(line - 1, half),
                          Samples(line + 1, half), Samples(line - 2, half), Samples(line + 2, half), green,
                          static_cast<std::size_t>(mPairs)});
  // What lies beside the frame's first and last column is reflected.
  const auto fill = [&](std::int64_t column) {
    if (((column - mBase) & 1) != half) return;
    const std::int64_t inside = Reflected(column, mPlan.width);
    std::memcpy(green + (column - mBase - half), green + (inside - mBase - half), 2);
  };
  if (mBase <= 0) fill(-1);
  if (mTile.x1 == mPlan.width) fill(mPlan.width);
}

simd::Sites DirectionalDemosaic::SitesOf(std::int64_t line, std::int64_t half) const {
  return {Samples(line, half), Green(line)};
}

void DirectionalDemosaic::MakePlanes(std::int64_t line, std::int64_t slot) {
  const std::int64_t own = ColouredHalf(line), between = 1 - own;
  simd::ColourArgs args{};
  args.own = SitesOf(line, own);
  args.greenSite = Samples(line, between);
  args.above = SitesOf(line - 1, between);
  args.below = SitesOf(line + 1, between);
  const int first = IsRed(line) ? 0 : 2;
  const int planes[] = {first, 1, 2 - first};
  for (int i = 0; i < 3; ++i) args.planes[i] = mBuffers.Half(slot, planes[i], 0);
  args.sites = static_cast<std::size_t>(mPairs);
  args.ownIsOdd = own == 1;
  (mGreenOnly ? mKernels.greenOnly : mKernels.colour)[mScale](args);
}

}  // namespace ZrConvertersLib
