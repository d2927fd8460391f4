#include "Converter.h"

#include <algorithm>

#include "Demosaic.h"
#include "Readers.h"

namespace Model {
namespace {

/// Strides and their products are 32 bits wide and reach pointers sign-extended.
std::ptrdiff_t SignExtended(std::uint32_t bytes) {
  return static_cast<std::int32_t>(bytes);
}

std::uint32_t StageSourceStride(const Stage& stage, const Call& call) {
  return LineBytes(stage.source, call.sourceWidth * stage.source.multiplier) + call.sourcePadding;
}

std::uint32_t StageDestinationStride(const Stage& stage, const Call& call) {
  return call.destinationWidth * stage.source.multiplier * stage.destination.bytes + call.destinationPadding;
}

/// One conversion without intermediate, walking its lines.
class LineWalk {
 public:
  LineWalk(const Stage& stage, const Call& call, Memory& source, std::ptrdiff_t sourceStart,
           Memory& destination)
      : mStage(stage),
        mCall(call),
        mSource(source),
        mDestination(destination),
        mWidth(call.width * stage.source.multiplier),
        mSourceStride(StageSourceStride(stage, call)),
        mDestinationStride(StageDestinationStride(stage, call)),
        mPlaneDistance(SignExtended(mDestinationStride * call.destinationHeight)),
        mFilter(call.filter ? *call.filter : IdentityTables()),
        mFrom(sourceStart) {}

  void Run() {
    const std::uint32_t lines = LinesPerBlock();
    if (mCall.flip) mTo = SignExtended((mCall.height / lines - 1) * lines * mDestinationStride);
    const std::uint32_t inBlocks = LinesInBlocks();
    for (mLine = 0; mLine < inBlocks; mLine += lines) {
      ConvertBlock();
      Advance(lines);
    }
    for (; mLine < mCall.height; ++mLine) {
      ConvertLastLine();
      Advance(1);
    }
  }

 private:
  bool IsMosaic() const { return mStage.source.meaning == Meaning::Mosaic; }
  std::uint32_t LinesPerBlock() const { return IsMosaic() ? 2 : 1; }

  std::uint32_t LinesInBlocks() const {
    const std::uint32_t rest = mCall.height % LinesPerBlock();
    if (rest == 0) return mCall.height;
    return mCall.flags & kSingleLastLine ? mCall.height - rest : mCall.height - rest + LinesPerBlock();
  }

  void Advance(std::uint32_t lines) {
    mFrom += SignExtended(lines * mSourceStride);
    const std::ptrdiff_t step = SignExtended(lines * mDestinationStride);
    mTo += mCall.flip ? -step : step;
  }

  void ConvertBlock() {
    if (!IsMosaic()) return ConvertPlainLine();
    const SourceLine mosaic = LineAt(mFrom, mLine);
    if (mCall.flags & kInterpolate) {
      InterpolatePair(mosaic);
    } else {
      FastPair(mosaic, mTo);
    }
  }

  /// The line and the one before it, once more, by the fast method.
  void ConvertLastLine() {
    if (mCall.sourceHeight < 2) return;
    FastPair(LineAt(mFrom - SignExtended(mSourceStride), mLine - 1), mTo - SignExtended(mDestinationStride));
  }

  void ConvertPlainLine() {
    const SourceLine line = LineAt(mFrom, mLine);
    const std::uint32_t pixels = OwedPixels(line);
    for (std::uint32_t x = 0; x < pixels; ++x) Put(mTo, x, ReadPixel(line, x));
  }

  SourceLine LineAt(std::ptrdiff_t start, std::uint32_t line) {
    return {&mStage.source, &mSource,           start,  SignExtended(mSourceStride),
            line,           mCall.sourceHeight, mWidth, mCall.flags};
  }

  void FastPair(const SourceLine& mosaic, std::ptrdiff_t to) {
    if (mWidth < 2) return;
    for (std::uint32_t x = 0; x + 1 < mWidth; x += 2) {
      const Value colour = FastTile(mosaic, x);
      PutInBothLines(to, x, colour);
      PutInBothLines(to, x + 1, colour);
    }
    if (mWidth % 2 != 0) PutInBothLines(to, mWidth - 1, LastColumn(mosaic));
  }

  void InterpolatePair(const SourceLine& mosaic) {
    if (mWidth < 2) return;
    for (std::uint32_t line = 0; line < 2; ++line)
      for (std::uint32_t x = 0; x < mWidth; ++x)
        Put(mTo + line * SignExtended(mDestinationStride), x, Interpolated(mosaic, line, x));
  }

  void PutInBothLines(std::ptrdiff_t to, std::uint32_t x, const Value& value) {
    Put(to, x, value);
    Put(to + SignExtended(mDestinationStride), x, value);
  }

  void Put(std::ptrdiff_t line, std::uint32_t x, const Value& value) {
    WritePixel(mStage.destination, mDestination, {line, mPlaneDistance}, x, value, mFilter);
  }

  const Stage& mStage;
  const Call& mCall;
  Memory& mSource;
  Memory& mDestination;
  const std::uint32_t mWidth, mSourceStride, mDestinationStride;
  const std::ptrdiff_t mPlaneDistance;
  const FilterTables& mFilter;
  std::uint32_t mLine = 0;
  std::ptrdiff_t mFrom;    // start of the current source line
  std::ptrdiff_t mTo = 0;  // start of the current destination line
};

/// Lines around the frame that the first of two stages converts for the second.
struct Border {
  std::uint32_t above, all;
};

Border BorderLines(std::uint32_t flags) {
  const std::uint32_t outer = flags & 0x05000000;
  const std::uint32_t above = (flags & kRealAround) || outer == 0x04000000 ? 2 : 0;
  if (outer == 0x01000000) return {above, flags & kRealAround ? 6u : 2u};
  if (flags & kRealAround) return {above, 4};
  return {above, above};
}

Call FirstStageCall(const Call& call, Border border) {
  Call first = call;
  first.sourceHeight = first.destinationHeight = first.height = call.sourceHeight + border.all;
  first.destinationWidth = first.width = call.sourceWidth;
  first.destinationPadding = 0;
  first.filter = nullptr;
  return first;
}

Call SecondStageCall(const Call& call) {
  Call second = call;
  second.sourcePadding = 0;
  second.flip = false;
  return second;
}

void ConvertChain(const Pair& pair, const Call& call, Memory& source, Memory& destination,
                  std::uint8_t stale) {
  const Border border = BorderLines(call.flags);
  const Call first = FirstStageCall(call, border), second = SecondStageCall(call);
  const std::ptrdiff_t line = SignExtended(StageSourceStride(pair[1], second));

  // Room for the overrun of the last group, and for the lines beyond the last that a pair of lines may read.
  Memory between(16, static_cast<std::size_t>(line) * (call.sourceHeight + 10) + 64);
  std::ranges::fill(between.All(), stale);
  LineWalk(pair[0], first, source, -SignExtended(border.above * StageSourceStride(pair[0], call)), between)
      .Run();
  LineWalk(pair[1], second, between, border.above * line, destination).Run();
}

}  // namespace

std::uint32_t SourceStride(const Pair& pair, const Call& call) {
  return StageSourceStride(pair.front(), call);
}
std::uint32_t DestinationStride(const Pair& pair, const Call& call) {
  return StageDestinationStride(pair.back(), call);
}

void Convert(const Pair& pair, const Call& call, Memory& source, Memory& destination, std::uint8_t stale) {
  if (pair.size() == 1) return LineWalk(pair[0], call, source, 0, destination).Run();
  ConvertChain(pair, call, source, destination, stale);
}

}  // namespace Model
