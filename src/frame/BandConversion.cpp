#include "frame/BandConversion.h"

#include <ZrConvertersLib/PixelConverter.h>

#include <algorithm>
#include <cstring>

#include "formats/Limits.h"
#include "frame/PixelMoves.h"

namespace ZrConvertersLib {

using ZrUtilsLib::Result;

namespace {

/// A whole frame whose odd last line is made by ConvertLastLine.
constexpr unsigned kWholeFrame = PixelConverter::FLAG_BAND_FIRST | PixelConverter::FLAG_BAND_LAST;

/// The lines that a chain's first stage converts above and below a band with neighbours.
constexpr std::int64_t kBorderLines = 2;

constexpr unsigned kPatterns = 0xF0;

/// The pattern of a mosaic whose lines change places in pairs.
unsigned SwapLines(unsigned flags) noexcept {
  FrameOptions options;
  options.SetFlags(flags);
  options.pattern = static_cast<MosaicPattern>(static_cast<unsigned>(options.pattern) ^ 3u);
  return (flags & ~kPatterns) | (options.GetFlags() & kPatterns);
}

std::uint32_t Raw(std::int64_t value) noexcept {
  return static_cast<std::uint32_t>(value);
}

}  // namespace

struct BandConversion::RawCall {
  const std::uint8_t* source = nullptr;
  std::int64_t sourceStride = 0;
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

/// What raw calls may write in place, even where some of its edge pixels are then made again.
Rect BandConversion::DirectPart(const Rect& band) const noexcept {
  const bool planesTooFar =
      mPlan.destination->planes > 1 && mPictureStride * mPlan.RegionHeight() > kMostCallBytes;
  if (mPlan.flipHorizontal || planesTooFar || (mPlan.interpolate && mPlan.flipVertical)) return {};

  // An odd last column of an unpacked mosaic is the raw call's own.
  const bool oddEnd = mPlan.mosaic && mPlan.source->group.pixels == 1 && band.x1 == mPlan.width;
  const std::int64_t lines = mPlan.mosaic ? 2 : 1;
  Rect part{RoundUp(band.x0, mPlan.unit), RoundUp(band.y0, lines),
            oddEnd ? band.x1 : RoundDown(band.x1, mPlan.unit), RoundDown(band.y1, lines)};
  if (part.x1 - part.x0 < lines) return {};
  if (ReadsBeyond(part)) part.y1 -= lines;
  return part;
}

/// Whether a chain would convert border lines that the frame does not have.
bool BandConversion::ReadsBeyond(const Rect& part) const noexcept {
  return mPlan.interpolate && mPlan.chain && part.y1 < mPlan.height && part.y1 + kBorderLines > mPlan.height;
}

/// The pixels of the direct part that are what the whole frame's conversion gives.
Rect BandConversion::RightPart(const Rect& direct) const noexcept {
  Rect right = direct;
  if (mPlan.interpolate && direct.x0 > 0) ++right.x0;
  if (mPlan.interpolate && direct.x1 < mPlan.width) --right.x1;
  // The line before an odd last line shares that one's pair.
  if (mPlan.mosaic && mPlan.height % 2 != 0) right.y1 = std::min(right.y1, mPlan.height - 2);
  return right;
}

Result BandConversion::ConvertDirect(const Rect& part) {
  const std::int64_t longest = RoundDown(kMostCallBytes / std::max(mSourceStride, mPictureStride), 2);
  const std::int64_t step = std::min(mScratch.directLines, longest);
  Rect call = part;
  for (; call.y0 < part.y1; call.y0 = call.y1) {
    call.y1 = std::min(call.y0 + step, part.y1);
    const Result result = ConvertDirectCall(call);
    if (!result.IsSuccess()) return result;
  }
  return {};
}

Result BandConversion::ConvertDirectCall(const Rect& part) {
  RawCall call;
  call.source = mSource + part.y0 * mSourceStride + mPlan.RawSourceBytes(part.x0);
  call.sourceStride = mSourceStride;
  call.picture = mPicture + PictureLine(part.y0, part.y1) * mPictureStride +
                 (part.x0 - mPlan.region.x0) * mPlan.pixelBytes;
  call.pictureStride = mPictureStride;
  call.planeLines = mPlan.RegionHeight();
  call.width = part.Width();
  call.height = part.Height();
  call.flags = BandFlags(part);
  call.flip = mPlan.flipVertical;
  return CallRaw(call);
}

/// Flags of a call whose lines are [y0, y1) of the frame.
unsigned BandConversion::BandFlags(const Rect& part) const noexcept {
  if (!mPlan.mosaic) return mPlan.flags;
  if (mPlan.interpolate) {
    const bool above = part.y0 > 0;
    const bool below = part.y1 < mPlan.height;
    if (above && below) return mPlan.flags | PixelConverter::FLAG_BAND_MIDDLE;
    if (above) return mPlan.flags | PixelConverter::FLAG_BAND_LAST;
    if (below) return mPlan.flags | PixelConverter::FLAG_BAND_FIRST;
  }
  // A chain flips the mosaic before the colours are made; a direct converter flips pairs of equal lines.
  const bool mosaicIsFlipped = mPlan.chain && mPlan.flipVertical;
  return (mosaicIsFlipped ? SwapLines(mPlan.flags) : mPlan.flags) | kWholeFrame;
}

/// The first picture line of source lines [y0, y1).
std::int64_t BandConversion::PictureLine(std::int64_t y0, std::int64_t y1) const noexcept {
  return mPlan.flipVertical ? mPlan.region.y1 - y1 : y0 - mPlan.region.y0;
}

/// Everything of the band that lies around its right part.
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
  // A mosaic's neighbourhood and pairing may add two lines on each side.
  const std::int64_t step = mPlan.mosaic ? RoundDown(mScratch.lines - 4, 2) : mScratch.lines;
  Rect call = part;
  for (; call.y0 < part.y1; call.y0 = call.y1) {
    call.y1 = std::min(mPlan.mosaic ? RoundDown(call.y0, 2) + step : call.y0 + step, part.y1);
    const Result result = ConvertScratchCall(call);
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
  call.flags = mPlan.mosaic ? mPlan.flags | kWholeFrame : mPlan.flags;
  const Result result = CallRaw(call);
  if (result.IsSuccess()) CopyPicture(part, around, call);
  return result;
}

/// The smallest part of the frame whose conversion as a frame of its own gives the right pixels for `part`.
Rect BandConversion::Surroundings(const Rect& part) const noexcept {
  const std::int64_t near = mPlan.interpolate ? 1 : 0;
  const std::int64_t unit = mPlan.unit;
  Rect around{RoundDown(std::max<std::int64_t>(part.x0 - near, 0), unit), part.y0,
              std::min(RoundUp(part.x1 + near, unit), mPlan.width), part.y1};
  if (!mPlan.mosaic) return around;

  around.y0 = RoundDown(std::max<std::int64_t>(part.y0 - near, 0), 2);
  around.y1 = std::min(RoundUp(part.y1 + near, 2), mPlan.height);
  if (mPlan.height % 2 != 0 && part.y1 > mPlan.height - 2) around.y1 = mPlan.height;
  if (around.Width() < 2) around.x0 -= unit;
  if (around.Height() < 2) around.y0 -= 2;
  return around;
}

/// The source half of a raw call: in place where whole groups lie inside the lines, otherwise copied with the
/// last group filled up.
BandConversion::RawCall BandConversion::SourceOf(const Rect& around) {
  RawCall call;
  const std::int64_t groups = RoundUp(around.Width(), mPlan.source->group.pixels);
  call.width = mPlan.mosaic ? around.Width() : RoundUp(around.Width(), mPlan.unit);
  if (call.width == groups && around.x0 + groups <= mPlan.width) {
    call.source = mSource + around.y0 * mSourceStride + mPlan.RawSourceBytes(around.x0);
    call.sourceStride = mSourceStride;
    return call;
  }
  const std::int64_t pixels = std::max(call.width, groups);
  call.sourceStride = mPlan.RawSourceBytes(pixels);
  CopySource(around, pixels, call.sourceStride);
  call.source = mScratch.source.get();
  return call;
}

void BandConversion::CopySource(const Rect& around, std::int64_t pixels, std::int64_t stride) {
  const std::int64_t offset = mPlan.RawSourceBytes(around.x0);
  const auto lineBytes = static_cast<std::int64_t>(mPlan.sourceLayout.bytesPerLine);
  const std::int64_t bytes = std::min(mPlan.RawSourceBytes(pixels), lineBytes - offset);
  const std::uint8_t* from = mSource + around.y0 * mSourceStride + offset;
  std::uint8_t* to = mScratch.source.get();
  for (std::int64_t y = around.y0; y < around.y1; ++y, from += mSourceStride, to += stride) {
    std::memcpy(to, from, static_cast<std::size_t>(bytes));
    std::memset(to + bytes, 0, static_cast<std::size_t>(stride - bytes));
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
  const std::int64_t sourcePadding = call.sourceStride - mPlan.RawSourceBytes(call.width);
  const std::int64_t picturePadding = call.pictureStride - call.width * mPlan.pixelBytes;
  return mPlan.converter->Convert(call.source, Raw(call.width), Raw(call.height), call.picture,
                                  Raw(call.width), Raw(call.planeLines), Raw(call.width), Raw(call.height),
                                  call.flags, Raw(picturePadding), &mScratch.pipeline.data,
                                  &mScratch.pipeline.bytes, Raw(sourcePadding), call.flip, mPlan.filter);
}

}  // namespace ZrConvertersLib
