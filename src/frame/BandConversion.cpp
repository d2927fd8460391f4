#include "frame/BandConversion.h"

#include <ZrConvertersLib/PixelConverter.h>

#include <algorithm>
#include <cstring>

#include "core/BandFlags.h"
#include "formats/Limits.h"
#include "frame/PixelMoves.h"

namespace ZrConvertersLib {

using ZrUtilsLib::Result;

namespace {

constexpr unsigned kBayerPatterns = 0xF0;

/// The flags for a mosaic in which the two lines of each pair are swapped.
unsigned SwapLines(unsigned flags) noexcept {
  FrameOptions options;
  options.SetFlags(flags);
  options.pattern = static_cast<MosaicPattern>(static_cast<unsigned>(options.pattern) ^ 3u);
  return (flags & ~kBayerPatterns) | (options.GetFlags() & kBayerPatterns);
}

std::uint32_t Raw(std::int64_t value) noexcept {
  return static_cast<std::uint32_t>(value);
}

}  // namespace

struct BandConversion::RawCall {
  const std::uint8_t* source = nullptr;
  std::int64_t sourceStride = 0;
  std::int64_t sourceLines = 0;  ///< strides from one plane to the next
  std::uint8_t* picture = nullptr;
  std::int64_t pictureStride = 0;
  std::int64_t planeLines = 0;  ///< strides from one plane to the next
  std::int64_t width = 0;
  std::int64_t height = 0;
  unsigned flags = 0;
  bool flip = false;
};

BandConversion::BandConversion(const FramePlan& plan, FrameScratch& scratch, const std::uint8_t* source,
                               std::int64_t sourceStride, std::uint8_t* picture,
                               std::int64_t pictureStride) noexcept
    : mPlan(plan),
      mScratch(scratch),
      mSource(source),
      mSourceStride(sourceStride),
      mPicture(picture),
      mPictureStride(pictureStride) {}

Result BandConversion::Convert(const Rect& band) {
  const Rect direct = DirectPart(band);
  if (direct.IsEmpty()) return ConvertViaScratch(band);
  const Result result = ConvertDirect(direct);
  return result.IsSuccess() ? ConvertEdges(band, RightPart(direct)) : result;
}

/// What raw calls may write in place, even if some of its edge pixels are converted again afterwards.
Rect BandConversion::DirectPart(const Rect& band) const noexcept {
  const auto& [tileWidth, tileHeight, reachX, reachY] = mPlan.near;
  // A flip changes the order of line pairs, not of the lines in them.
  const bool pairsTurned = mPlan.linePairs && mPlan.LooksAtLines() && mPlan.flipVertical;
  if (mPlan.flipHorizontal || PlanesTooFar() || pairsTurned || DirectLines() == 0) return {};

  // The converters of mosaics finish a line and a frame themselves, but not groups of packed samples.
  const bool ownsEnd = mPlan.mosaic && !mPlan.chain && band.x1 == mPlan.width;
  const bool ownsBottom = !mPlan.linePairs && band.y1 == mPlan.height;
  Rect part{RoundUp(band.x0, mPlan.unit), RoundUp(band.y0, tileHeight),
            ownsEnd ? band.x1 : RoundDown(band.x1, mPlan.unit),
            ownsBottom ? band.y1 : RoundDown(band.y1, tileHeight)};
  if (ReadsBeyond(part)) part.y1 -= tileHeight;
  return part.Width() < tileWidth || part.Height() < tileHeight ? Rect{} : part;
}

/// Whether a step between planes is more than a raw call takes.
bool BandConversion::PlanesTooFar() const noexcept {
  return (mPlan.destination->planes > 1 && mPictureStride * mPlan.RegionHeight() > kMostCallBytes) ||
         (mPlan.source->planes > 1 && mSourceStride * mPlan.height > kMostCallBytes);
}

/// Lines of one raw call at these strides, so that a rest of less than a tile can go with the last one.
std::int64_t BandConversion::DirectLines() const noexcept {
  const std::int64_t tile = mPlan.near.tileHeight;
  const std::int64_t longest = kMostCallBytes / std::max(mSourceStride, mPictureStride) - (tile - 1);
  return RoundDown(std::min(mScratch.directLines, std::max<std::int64_t>(longest, 0)), tile);
}

/// Whether a call would look at border lines that the frame does not have.
bool BandConversion::ReadsBeyond(const Rect& part) const noexcept {
  const bool allBorders = mPlan.chain || !mPlan.linePairs;
  return mPlan.LooksAtLines() && allBorders && part.y1 < mPlan.height &&
         part.y1 + kBorderLines > mPlan.height;
}

/// The pixels of the direct part that are what the whole frame's conversion gives.
Rect BandConversion::RightPart(const Rect& direct) const noexcept {
  Rect right = direct;
  if (direct.x0 > 0) right.x0 += mPlan.near.reachX;
  if (direct.x1 < mPlan.width) right.x1 -= mPlan.near.reachX;
  // The line before an odd last line shares that one's pair.
  if (mPlan.linePairs && mPlan.height % 2 != 0) right.y1 = std::min(right.y1, mPlan.height - 2);
  return right;
}

Result BandConversion::ConvertDirect(const Rect& part) {
  const std::int64_t step = DirectLines();
  Rect call = part;
  for (; call.y0 < part.y1; call.y0 = call.y1) {
    call.y1 = std::min(call.y0 + step, part.y1);
    if (part.y1 - call.y1 < mPlan.near.tileHeight) call.y1 = part.y1;
    const Result result = ConvertDirectCall(call);
    if (!result.IsSuccess()) return result;
  }
  return {};
}

Result BandConversion::ConvertDirectCall(const Rect& part) {
  RawCall call;
  call.source = mSource + part.y0 * mSourceStride + mPlan.SourceBytes(part.x0);
  call.sourceStride = mSourceStride;
  call.sourceLines = mPlan.source->planes > 1 ? mPlan.height : part.Height();
  call.picture = mPicture + PictureLine(part.y0, part.y1) * mPictureStride +
                 (part.x0 - mPlan.region.x0) * mPlan.pixelBytes;
  call.pictureStride = mPictureStride;
  call.planeLines = mPlan.RegionHeight();
  call.width = part.Width();
  call.height = part.Height();
  call.flags = FlagsOf(part);
  call.flip = mPlan.flipVertical;
  return CallRaw(call);
}

/// Flags of a call whose lines are [y0, y1) of the frame.
unsigned BandConversion::FlagsOf(const Rect& part) const noexcept {
  const bool above = mPlan.LooksAtLines() && part.y0 > 0;
  const bool below = mPlan.LooksAtLines() && part.y1 < mPlan.height;
  // A chain flips the mosaic before the colours are made; a direct converter flips pairs of equal lines.
  const bool mosaicIsFlipped = mPlan.linePairs && mPlan.chain && mPlan.flipVertical;
  return (mosaicIsFlipped ? SwapLines(mPlan.flags) : mPlan.flags) |
         (mPlan.mosaic ? BandFlagsOf(above, below) : 0);
}

/// The first picture line of source lines [y0, y1).
std::int64_t BandConversion::PictureLine(std::int64_t y0, std::int64_t y1) const noexcept {
  return mPlan.flipVertical ? mPlan.region.y1 - y1 : y0 - mPlan.region.y0;
}

/// Everything of the band around the part whose pixels are already right.
Result BandConversion::ConvertEdges(const Rect& band, const Rect& right) {
  const Rect edges[] = {
      {band.x0, band.y0, band.x1, right.y0},
      {band.x0, right.y1, band.x1, band.y1},
      {band.x0, right.y0, right.x0, right.y1},
      {right.x1, right.y0, band.x1, right.y1},
  };
  for (const Rect& edge : edges) {
    const Result result = ConvertViaScratch(edge);
    if (!result.IsSuccess()) return result;
  }
  return {};
}

Result BandConversion::ConvertViaScratch(const Rect& part) {
  if (part.IsEmpty()) return {};
  // What lies around may add a tile's lines above and below.
  const std::int64_t tile = mPlan.near.tileHeight;
  const std::int64_t step = mPlan.mosaic ? RoundDown(mScratch.lines - 2 * tile, tile) : mScratch.lines;
  Rect lines = part;
  for (; lines.y0 < part.y1; lines.y0 = lines.y1) {
    lines.y1 = std::min(RoundDown(lines.y0, tile) + step, part.y1);
    const Result result = ConvertLinesViaScratch(lines);
    if (!result.IsSuccess()) return result;
  }
  return {};
}

/// As many lines as the buffers hold, piece by piece.
Result BandConversion::ConvertLinesViaScratch(const Rect& lines) {
  Rect piece = lines;
  for (; piece.x0 < lines.x1; piece.x0 = piece.x1) {
    piece.x1 = std::min(RoundDown(piece.x0, mPlan.unit) + mScratch.columns, lines.x1);
    const Result result = ConvertScratchCall(piece);
    if (!result.IsSuccess()) return result;
  }
  return {};
}

Result BandConversion::ConvertScratchCall(const Rect& part) {
  const Rect around = Surroundings(part);
  RawCall call = SourceOf(around);
  call.picture = mScratch.picture.get();
  call.pictureStride = call.width * mPlan.pixelBytes;
  call.planeLines = around.Height();
  call.height = around.Height();
  call.flags = mPlan.mosaic ? mPlan.flags | kBandEnds : mPlan.flags;
  const Result result = CallRaw(call);
  if (result.IsSuccess()) CopyPicture(part, around, call);
  return result;
}

/// The smallest part of a side of the frame that gives the right pixels for [begin, end) of it: with the
/// neighbours, whole tiles, and the last whole tile beside a rest that takes its colours from there.
BandConversion::Interval BandConversion::Surroundings(Interval part, std::int64_t side, std::int64_t tile,
                                                      std::int64_t reach, std::int64_t unit) noexcept {
  Interval around{part.begin - reach, RoundUp(part.end + reach, unit)};
  const std::int64_t whole = RoundDown(side, tile);
  if (whole != side && part.end >= whole) around = {std::min(around.begin, whole - tile), side};
  return {RoundDown(std::max<std::int64_t>(around.begin, 0), unit), std::min(around.end, side)};
}

/// The smallest part of the frame whose conversion as a frame of its own gives the right pixels for `part`.
Rect BandConversion::Surroundings(const Rect& part) const noexcept {
  const auto& [tileWidth, tileHeight, reachX, reachY] = mPlan.near;
  const Interval x = Surroundings({part.x0, part.x1}, mPlan.width, tileWidth, reachX, mPlan.unit);
  const Interval y = Surroundings({part.y0, part.y1}, mPlan.height, tileHeight, reachY, tileHeight);
  return {x.begin, y.begin, x.end, y.end};
}

/// The source half of a raw call: in place where whole groups lie inside the lines, otherwise copied with the
/// last group filled up.
BandConversion::RawCall BandConversion::SourceOf(const Rect& around) {
  RawCall call;
  const std::int64_t groups = RoundUp(around.Width(), mPlan.source->group.pixels);
  call.width = mPlan.mosaic ? around.Width() : RoundUp(around.Width(), mPlan.unit);
  const bool fits = call.width == groups && around.x0 + groups <= mPlan.width;
  if (fits && !PlanesTooFar() && around.Height() * mSourceStride <= kMostCallBytes) {
    call.source = mSource + around.y0 * mSourceStride + mPlan.SourceBytes(around.x0);
    call.sourceStride = mSourceStride;
    call.sourceLines = mPlan.source->planes > 1 ? mPlan.height : around.Height();
    return call;
  }
  const std::int64_t pixels = std::max(call.width, groups);
  call.sourceStride = mPlan.SourceBytes(pixels);
  call.sourceLines = around.Height();
  CopySource(around, call.sourceStride);
  call.source = mScratch.source.get();
  return call;
}

void BandConversion::CopySource(const Rect& around, std::int64_t stride) {
  const std::int64_t offset = mPlan.SourceBytes(around.x0);
  const auto lineBytes = static_cast<std::int64_t>(mPlan.sourceLayout.bytesPerLine);
  const std::int64_t bytes = std::min(stride, lineBytes - offset);
  std::uint8_t* to = mScratch.source.get();
  for (std::int64_t plane = 0; plane < mPlan.source->planes; ++plane) {
    const std::uint8_t* from = mSource + (plane * mPlan.height + around.y0) * mSourceStride + offset;
    for (std::int64_t y = around.y0; y < around.y1; ++y, from += mSourceStride, to += stride) {
      std::memcpy(to, from, static_cast<std::size_t>(bytes));
      std::memset(to + bytes, 0, static_cast<std::size_t>(stride - bytes));
    }
  }
}

void BandConversion::CopyPicture(const Rect& part, const Rect& around, const RawCall& call) {
  const std::int64_t column = mPlan.flipHorizontal ? mPlan.region.x1 - part.x1 : part.x0 - mPlan.region.x0;
  const std::int64_t offset = (part.x0 - around.x0) * mPlan.pixelBytes;
  for (std::int64_t plane = 0; plane < mPlan.destination->planes; ++plane) {
    const std::uint8_t* from = call.picture + plane * call.planeLines * call.pictureStride + offset;
    std::uint8_t* to = mPicture + plane * mPlan.RegionHeight() * mPictureStride + column * mPlan.pixelBytes;
    for (std::int64_t y = part.y0; y < part.y1; ++y) {
      CopyLine(from + (y - around.y0) * call.pictureStride, to + PictureLine(y, y + 1) * mPictureStride,
               part.Width());
    }
  }
}

void BandConversion::CopyLine(const std::uint8_t* from, std::uint8_t* to,
                              std::int64_t pixels) const noexcept {
  if (mPlan.flipHorizontal) return CopyMirrored(from, to, pixels, mPlan.pixelBytes, mPlan.mirror);
  std::memcpy(to, from, static_cast<std::size_t>(pixels * mPlan.pixelBytes));
}

Result BandConversion::CallRaw(const RawCall& call) {
  const std::int64_t sourcePadding = call.sourceStride - mPlan.SourceBytes(call.width);
  const std::int64_t picturePadding = call.pictureStride - call.width * mPlan.pixelBytes;
  const bool buffered = mPlan.chain && !mPlan.onePass;
  return mPlan.converter->Convert(
      call.source, Raw(call.width), Raw(call.sourceLines), call.picture, Raw(call.width),
      Raw(call.planeLines), Raw(call.width), Raw(call.height), call.flags, Raw(picturePadding),
      buffered ? &mScratch.pipeline.data : nullptr, buffered ? &mScratch.pipeline.bytes : nullptr,
      Raw(sourcePadding), call.flip, mPlan.filter);
}

}  // namespace ZrConvertersLib
