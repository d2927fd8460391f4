#pragma once

#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/RGBFilter.h>

#include <cstddef>

#include "core/PointerOffset.h"

namespace ZrConvertersLib {

/// The arguments of a whole-image conversion, in the order in which PixelConverter::Convert takes them.
struct FrameCall {
  const unsigned char* source;
  std::uint32_t sourceWidth, sourceHeight;
  unsigned char* destination;
  std::uint32_t destinationWidth, destinationHeight;
  std::uint32_t width, height;
  std::uint32_t flags;
  std::uint32_t destinationPadding;
  unsigned char** pipelineBuffer;
  std::uint32_t* pipelineBufferSize;
  std::uint32_t sourcePadding;
  bool flipVertical;
  const RGBFilter* filter;
};

/// Lines of an image: where line 0 begins, and the bytes from one to the next.
struct SourceLines {
  const std::uint8_t* first;
  std::ptrdiff_t step;

  const std::uint8_t* At(std::ptrdiff_t line) const { return OffsetBy(first, line * step); }
  SourceLines From(std::ptrdiff_t line) const { return {At(line), step}; }
};

/// Walks the lines of a frame. Only this class decides on the order of blocks, flips and single last lines.
class LineDriver {
 public:
  LineDriver(const PixelConverter& converter, const FrameCall& call)
      : mLines(converter.GetLinesPerConvert()),
        mWidth(call.width * converter.GetWidthMultiplier()),
        mHeight(call.height),
        mFlip(call.flipVertical),
        mFinishSingly((call.flags & PixelConverter::FLAG_BAND_LAST) != 0) {
    const std::uint32_t multiplier = converter.GetWidthMultiplier();
    mContext.mFilter = call.filter != nullptr ? call.filter : &sRGBFilter;
    mContext.mFlags =
        (call.flags & kBayerOrders) != 0 ? call.flags : call.flags | PixelConverter::FLAG_BAYER_GRBG;
    mContext.mSourceStride = converter.GetSourceByteSize(call.sourceWidth * multiplier) + call.sourcePadding;
    mContext.mSourceHeight = call.sourceHeight;
    mContext.mDestinationStride =
        converter.GetDestinationByteSize(call.destinationWidth * multiplier) + call.destinationPadding;
    mContext.mDestinationHeight = call.destinationHeight;
    mContext.mSource = call.source;
    mContext.mDestination = call.destination;
    if (mFlip) {
      mContext.mDestination =
          OffsetBy(call.destination, LastBlockOffset(mHeight, mLines, mContext.mDestinationStride));
    }
  }

  /// Before Walk: the context of the first block.
  const PixelConverterContext& Context() const { return mContext; }

  /// Pixels of a line, times the width multiplier.
  std::uint32_t Width() const { return mWidth; }

  std::uint32_t Height() const { return mHeight; }

  /// Bytes from one block of lines to the next.
  struct Steps {
    std::ptrdiff_t source, destination;
  };

  Steps BlockSteps() const {
    return {Step(mLines * mContext.mSourceStride),
            (mFlip ? -1 : 1) * Step(mLines * mContext.mDestinationStride)};
  }

  /// How many whole blocks the walk has, and how many lines follow singly.
  std::uint32_t Blocks() const { return BlockLines(mHeight, mLines, mFinishSingly) / mLines; }
  std::uint32_t Singles() const { return mFinishSingly ? mHeight % mLines : 0; }

  SourceLines Source() const { return {mContext.mSource, Step(mContext.mSourceStride)}; }

  /// Calls onBlock(context, width) for each block of lines, then onSingle(context, width) for lines left
  /// over.
  template <class OnBlock, class OnSingle>
  void Walk(OnBlock onBlock, OnSingle onSingle) {
    const Steps block = BlockSteps();
    const std::ptrdiff_t direction = mFlip ? -1 : 1;
    const std::uint32_t blockLines = BlockLines(mHeight, mLines, mFinishSingly);
    for (mContext.mLine = 0; mContext.mLine < blockLines; mContext.mLine += mLines) {
      onBlock(mContext, mWidth);
      Advance(block.source, block.destination);
    }
    if (!mFinishSingly) return;
    for (mContext.mLine = blockLines; mContext.mLine < mHeight; ++mContext.mLine) {
      onSingle(mContext, mWidth);
      Advance(Step(mContext.mSourceStride), direction * Step(mContext.mDestinationStride));
    }
  }

 private:
  static constexpr std::uint32_t kBayerOrders =
      PixelConverter::FLAG_BAYER_GRBG | PixelConverter::FLAG_BAYER_GBRG | PixelConverter::FLAG_BAYER_RGGB |
      PixelConverter::FLAG_BAYER_BGGR;

  /// The step between lines is computed in 32 bits and interpreted as signed.
  static std::ptrdiff_t Step(std::uint32_t bytes) { return static_cast<std::int32_t>(bytes); }

  /// From the start of the destination to its last whole block, where a flipped conversion begins. Without a
  /// whole block that is one block before the start.
  static std::ptrdiff_t LastBlockOffset(std::uint32_t height, std::uint32_t lines, std::uint32_t stride) {
    const std::uint32_t blocks = height / lines;
    if (blocks == 0) return -Step(lines * stride);
    return static_cast<std::ptrdiff_t>((blocks - 1) * lines * stride);
  }

  /// Lines covered by whole blocks: rounded down, so that the rest can follow singly, or up.
  static std::uint32_t BlockLines(std::uint32_t height, std::uint32_t lines, bool roundDown) {
    while (height % lines != 0) height = roundDown ? height - 1 : height + 1;
    return height;
  }

  void Advance(std::ptrdiff_t sourceStep, std::ptrdiff_t destinationStep) {
    mContext.mSource = OffsetBy(mContext.mSource, sourceStep);
    mContext.mDestination = OffsetBy(mContext.mDestination, destinationStep);
  }

  PixelConverterContext mContext;
  std::uint32_t mLines, mWidth, mHeight;
  bool mFlip, mFinishSingly;
};

}  // namespace ZrConvertersLib
