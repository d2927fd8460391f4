#include "FrameCase.h"

#include <ZrConvertersLib/PixelTypes.h>

#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>

#include "matrix/Cases.h"
#include "matrix/Filters.h"
#include "model/Converter.h"
#include "support/Pattern.h"

namespace FrameTest {

using namespace ZrConvertersLib;

namespace {

/// More than any overrun of a group, in bytes.
constexpr std::uint32_t kModelPadding = 64;

FrameLayout LayoutOf(long format, std::uint32_t width, std::uint32_t height, std::uint32_t padding) {
  FrameLayout tight;
  FrameLayout padded;
  if (!DescribeFrame(format, width, height, 0, tight).IsSuccess() ||
      !DescribeFrame(format, width, height, tight.bytesPerLine + padding, padded).IsSuccess())
    throw std::logic_error("a case has sizes that its format does not allow");
  return padded;
}

std::uint32_t OutWidth(const Case& frame) {
  const Region& region = frame.options.region;
  return region.width != 0 ? region.width : frame.width - region.x;
}

std::uint32_t OutHeight(const Case& frame) {
  const Region& region = frame.options.region;
  return region.height != 0 ? region.height : frame.height - region.y;
}

FrameLayout SourceLayout(const Case& frame) {
  return LayoutOf(frame.source, frame.width, frame.height, frame.sourcePadding);
}

FrameLayout DestinationLayout(const Case& frame) {
  return LayoutOf(frame.destination, OutWidth(frame), OutHeight(frame), frame.destinationPadding);
}

bool IsMosaicToColour(const Case& frame) {
  return FindFormatInfo(frame.source)->family == FormatFamily::Bayer &&
         FindFormatInfo(frame.destination)->family != FormatFamily::Bayer;
}

/// Sides below this hold no whole pattern of colours.
std::uint32_t LeastSide(const Case& frame) {
  const FormatFamily family = FindFormatInfo(frame.source)->family;
  if (family == FormatFamily::Scf1) return 4;
  return family == FormatFamily::BiColor || IsMosaicToColour(frame) ? 2 : 1;
}

/// CSI-2 has the low bits of a group behind its last sample, so its lines are whole groups.
std::uint32_t WidthMultiple(const Case& frame) {
  const FormatInfo& format = *FindFormatInfo(frame.source);
  const bool csi2 = frame.options.packing == PackingOrder::Csi2;
  return csi2 && !PackingLayout(frame.source, PackingOrder::Csi2).empty() ? format.groupPixels
                                                                          : format.widthMultiple;
}

std::uint32_t RandomSide(TestSupport::Random& random, bool tall) {
  switch (random.Below(8)) {
    case 0:
      return 60 + random.Below(80);
    case 1:
      return tall ? 200 + random.Below(500) : 1 + random.Below(3);
    default:
      return 1 + random.Below(24);
  }
}

/// A part [start, start + count) of a side; 0, 0 is all of it.
void RandomPart(TestSupport::Random& random, std::uint32_t side, std::uint32_t multiple, std::uint32_t& start,
                std::uint32_t& count) {
  if (random.Below(3) == 0) return;
  start = random.Below(side) / multiple * multiple;
  if (random.Below(4) == 0) return;
  count = (1 + random.Below(side - start) + multiple - 1) / multiple * multiple;
}

/// The model's picture of the whole, unflipped frame.
class WholePicture {
 public:
  explicit WholePicture(const Case& frame)
      : mPair(Model::FindPair(frame.source, frame.destination).value()),
        mCall(CallOf(frame)),
        mStride(Model::DestinationStride(mPair, mCall)),
        mPlane(std::size_t{mStride} * frame.height),
        mBytes(0, mPlane * 3 + kModelPadding) {
    Model::Memory source(0, std::size_t{Model::SourceStride(mPair, mCall)} * (3 * frame.height + 1));
    CopyLines(frame, source);
    Model::Convert(mPair, mCall, source, mBytes);
  }

  std::uint8_t Byte(unsigned plane, std::uint32_t x, std::uint32_t y, unsigned pixelBytes, unsigned byte) {
    return mBytes.Read(static_cast<std::ptrdiff_t>(plane * mPlane + std::size_t{y} * mStride +
                                                   std::size_t{x} * pixelBytes + byte));
  }

 private:
  static Model::Call CallOf(const Case& frame) {
    Model::Call call;
    call.sourceWidth = call.destinationWidth = call.width = frame.width;
    call.sourceHeight = call.destinationHeight = call.height = frame.height;
    call.flags = frame.options.GetFlags();
    if (IsMosaicToColour(frame)) call.flags |= Model::kSingleLastLine | Model::kRealBelow;
    call.sourcePadding = call.destinationPadding = kModelPadding;
    call.filter = &Matrix::GetFilter(frame.filter).tables;
    return call;
  }

  /// The lines of all planes, which follow one another in both.
  void CopyLines(const Case& frame, Model::Memory& to) {
    const FrameLayout layout = SourceLayout(frame);
    const std::vector<std::uint8_t> bytes = SourceOf(frame);
    const std::size_t stride = Model::SourceStride(mPair, mCall);
    for (std::size_t y = 0; y < std::size_t{layout.planes} * frame.height; ++y) {
      std::memcpy(to.All().data() + y * stride, bytes.data() + y * layout.stride, layout.bytesPerLine);
    }
  }

  Model::Pair mPair;
  Model::Call mCall;
  std::uint32_t mStride;
  std::size_t mPlane;
  Model::Memory mBytes;
};

/// Whether that byte of a pixel is the chroma that it shares with its neighbour.
bool IsSharedChroma(long format, unsigned byte) {
  if (format == PixelTypeIds::YCbCr422_8) return byte == 1;
  return format == PixelTypeIds::YCbCr422_8_CbYCrY && byte == 0;
}

}  // namespace

std::string Describe(const Case& frame) {
  const Region& region = frame.options.region;
  std::ostringstream text;
  text << FindFormatInfo(frame.source)->name << " to " << FindFormatInfo(frame.destination)->name << ", "
       << frame.width << "x" << frame.height << ", region " << region.x << "," << region.y << " "
       << region.width << "x" << region.height << ", flags 0x" << std::hex << frame.options.GetFlags()
       << std::dec << (frame.options.flipVertical ? ", flipped vertically" : "")
       << (frame.options.flipHorizontal ? ", flipped horizontally" : "") << ", filter " << frame.filter
       << ", paddings " << frame.sourcePadding << " and " << frame.destinationPadding << ", source at "
       << TestSupport::NameOf(frame.sourcePlace.at) << ", destination at "
       << TestSupport::NameOf(frame.destinationPlace.at);
  return text.str();
}

Case CaseOf(long source, long destination, unsigned number) {
  Case frame;
  frame.source = source;
  frame.destination = destination;
  frame.seed = TestSupport::Hash(
      {static_cast<std::uint64_t>(source), static_cast<std::uint64_t>(destination), number});
  TestSupport::Random random(frame.seed);
  FrameOptions& options = frame.options;
  options.SetFlags(Matrix::DrawFlags(Model::FindPair(source, destination).value(), random));
  options.flipVertical = random.Below(3) == 0;
  options.flipHorizontal = random.Below(4) == 0;

  const std::uint32_t multiple = WidthMultiple(frame);
  const std::uint32_t least = LeastSide(frame);
  frame.width = (std::max(RandomSide(random, false), least) + multiple - 1) / multiple * multiple;
  frame.height = std::max(RandomSide(random, frame.width < 12), least);
  const std::uint32_t together = FindFormatInfo(destination)->widthMultiple;
  RandomPart(random, frame.width, together, options.region.x, options.region.width);
  RandomPart(random, frame.height, 1, options.region.y, options.region.height);
  frame.filter = random.Below(Matrix::kFilters);
  options.filter = Matrix::GetFilter(frame.filter).object.get();

  frame.sourcePadding = Matrix::DrawPadding(random);
  frame.destinationPadding = Matrix::DrawPadding(random);
  frame.sourcePlace = Matrix::DrawPlacement(random);
  frame.destinationPlace = Matrix::DrawPlacement(random);
  return frame;
}

std::vector<std::uint8_t> SourceOf(const Case& frame) {
  std::vector<std::uint8_t> bytes(SourceLayout(frame).leastBytes);
  TestSupport::Fill(bytes, TestSupport::Content::Noise, frame.seed);
  return bytes;
}

std::vector<std::uint8_t> BlankOf(const Case& frame) {
  std::vector<std::uint8_t> bytes(DestinationLayout(frame).leastBytes);
  TestSupport::Fill(bytes, TestSupport::Content::Noise, ~frame.seed);
  return bytes;
}

std::vector<std::uint8_t> ExpectedOf(const Case& frame) {
  const FrameLayout layout = DestinationLayout(frame);
  const std::uint32_t width = OutWidth(frame);
  const std::uint32_t height = OutHeight(frame);
  const auto pixelBytes = static_cast<unsigned>(layout.bytesPerLine / width);
  const Region& region = frame.options.region;
  WholePicture whole(frame);
  std::vector<std::uint8_t> bytes = BlankOf(frame);
  for (unsigned plane = 0; plane < layout.planes; ++plane) {
    for (std::uint32_t y = 0; y < height; ++y) {
      const std::uint32_t fromY = region.y + (frame.options.flipVertical ? height - 1 - y : y);
      for (std::uint32_t x = 0; x < width; ++x) {
        const std::uint32_t fromX = region.x + (frame.options.flipHorizontal ? width - 1 - x : x);
        for (unsigned byte = 0; byte < pixelBytes; ++byte) {
          const bool shared = IsSharedChroma(frame.destination, byte);
          bytes[plane * layout.bytesPerPlane + y * layout.stride + x * pixelBytes + byte] =
              whole.Byte(plane, shared ? fromX / 2 * 2 + x % 2 : fromX, fromY, pixelBytes, byte);
        }
      }
    }
  }
  return bytes;
}

SourceView ViewOf(const Case& frame, std::span<const std::uint8_t> bytes) {
  return SourceView::Of(bytes, frame.width, frame.height, SourceLayout(frame).stride);
}

DestinationView ViewOf(const Case& frame, std::span<std::uint8_t> bytes) {
  return DestinationView::Of(bytes, OutWidth(frame), OutHeight(frame), DestinationLayout(frame).stride);
}

}  // namespace FrameTest
