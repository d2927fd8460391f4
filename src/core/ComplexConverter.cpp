#include <ZrConvertersLib/ComplexConverter.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>

#include "core/PointerOffset.h"

namespace ZrConvertersLib {

using ZrUtilsLib::Result;
using ZrUtilsLib::ResultCode;

static_assert(sizeof(ComplexConverter) == 72);

namespace {

/// Lines on each side of a band that a second stage may look at.
constexpr std::uint32_t kBorderLines = 2;

/// Converters write whole groups of up to this many pixels, also where the last one reaches past the width.
constexpr std::uint32_t kLongestGroup = 8;

constexpr std::uint32_t kLargestCapacity = std::numeric_limits<std::uint32_t>::max();

/// The larger of two counts that divide one another, otherwise their product.
std::uint32_t Combine(std::uint32_t a, std::uint32_t b) {
  const auto [low, high] = std::minmax(a, b);
  return low == 0 || high % low == 0 ? high : a * b;
}

/// The lines of the intermediate image.
struct Band {
  std::uint32_t above;  ///< lines before the first one that the second stage converts
  std::uint32_t lines;  ///< lines that the first stage converts
};

Band BandOf(std::uint32_t flags, std::uint32_t height) {
  constexpr std::uint32_t kEnds = PixelConverter::FLAG_BAND_FIRST | PixelConverter::FLAG_BAND_LAST;
  const bool middle = (flags & PixelConverter::FLAG_BAND_MIDDLE) != 0;
  const std::uint32_t ends = flags & kEnds;
  Band band{0, height};
  if (middle) {
    band = {kBorderLines, height + 2 * kBorderLines};
  } else if (ends == PixelConverter::FLAG_BAND_LAST) {
    band = {kBorderLines, height + kBorderLines};
  }
  if (ends == PixelConverter::FLAG_BAND_FIRST) band.lines = height + (middle ? 6 : 2);
  return band;
}

/// The intermediate buffer.
struct Layout {
  std::size_t front;     ///< bytes before the first line: what a flipped first stage writes there
  std::size_t lines;     ///< bytes of the band's lines
  std::size_t capacity;  ///< bytes in all; more than 32 bits when the intermediate image is too large
};

/// `samples` is the width that the first stage works with, `height` that of the frame without its border.
Layout LayoutOf(const PixelConverter& first, const Band& band, std::uint32_t samples, std::uint32_t height,
                bool flipVertical) {
  const std::size_t stride = first.GetDestinationByteSize(samples);
  const std::size_t block = first.GetLinesPerConvert();
  const std::size_t rest = band.lines % block;
  // Blocks that do not fill the band reach past it; flipped ones, and single lines after them, go on below
  // its start.
  const std::size_t frontLines = flipVertical && rest != 0 ? 2 * block : 0;
  const std::size_t lines = frontLines + band.lines + (rest != 0 ? block - rest : 0);
  if (stride != 0 && lines > kLargestCapacity / stride) return {0, 0, std::size_t{kLargestCapacity} + 1};

  const std::size_t lastGroup = first.GetDestinationByteSize((0 - samples) % kLongestGroup);
  const std::size_t promised = first.GetDestinationByteSize((height + 2 * kBorderLines) * samples);
  return {frontLines * stride, band.lines * stride, std::max(lines * stride + lastGroup, promised)};
}

/// Makes the buffer at least as large as asked for. Without memory it is left empty.
void Reserve(unsigned char*& buffer, std::uint32_t& size, std::uint32_t wanted) {
  if (buffer != nullptr && size >= wanted) return;
  delete[] buffer;
  buffer = nullptr;
  size = 0;
  buffer = new unsigned char[wanted];
  size = wanted;
}

/// What a caller asks of both stages together.
struct Frame {
  const unsigned char* source;
  std::uint32_t sourceWidth;
  std::uint32_t sourceHeight;
  unsigned char* destination;
  std::uint32_t destinationWidth;
  std::uint32_t destinationHeight;
  std::uint32_t width;
  std::uint32_t height;
  std::uint32_t flags;
  std::uint32_t destinationPadding;
  std::uint32_t sourcePadding;
  bool flipVertical;
  const RGBFilter* filter;
};

/// `source` moved back by the lines above the band.
const unsigned char* BandSource(const PixelConverter& first, const Frame& frame, const Band& band) {
  const std::uint32_t stride =
      first.GetSourceByteSize(frame.sourceWidth * first.GetWidthMultiplier()) + frame.sourcePadding;
  return OffsetBy(frame.source, -static_cast<std::ptrdiff_t>(std::size_t{band.above} * stride));
}

/// Converts through `intermediate`, which holds the band's lines.
Result RunStages(const PixelConverter& first, const PixelConverter& second, const Frame& frame,
                 const Band& band, unsigned char* intermediate) {
  const std::uint32_t width = frame.sourceWidth;
  const Result result = first.Convert(BandSource(first, frame, band), width, band.lines, intermediate, width,
                                      band.lines, width, band.lines, frame.flags, 0, nullptr, nullptr,
                                      frame.sourcePadding, frame.flipVertical, nullptr);
  if (!result.IsSuccess()) return result;
  const std::size_t above = std::size_t{band.above} * second.GetSourceByteSize(width);
  return second.Convert(intermediate + above, width, frame.sourceHeight, frame.destination,
                        frame.destinationWidth, frame.destinationHeight, frame.width, frame.height,
                        frame.flags, frame.destinationPadding, nullptr, nullptr, 0, false, frame.filter);
}

}  // namespace

ComplexConverter::ComplexConverter(PixelConverter* first, PixelConverter* second)
    : PixelConverter(first->GetSourceType(), second->GetDestinationType(), first->GetSourceByteSize(),
                     second->GetDestinationByteSize(),
                     Combine(first->GetPipeliningSize(), second->GetPipeliningSize()),
                     Combine(first->GetLinesPerConvert(), second->GetLinesPerConvert()), true),
      mBuffer(nullptr),
      mBufferSize(0),
      mFirst(first),
      mSecond(second) {}

ComplexConverter::~ComplexConverter() {
  delete[] mBuffer;
  mBuffer = nullptr;
  mBufferSize = 0;
  mFirst = nullptr;
  mSecond = nullptr;
}

std::uint32_t ComplexConverter::GetSourceByteSize(std::uint32_t width) const {
  return mFirst->GetSourceByteSize(width);
}

std::uint32_t ComplexConverter::GetDestinationByteSize(std::uint32_t width) const {
  return mSecond->GetDestinationByteSize(width);
}

Result ComplexConverter::Convert(const unsigned char* source, std::uint32_t sourceWidth,
                                 std::uint32_t sourceHeight, unsigned char* destination,
                                 std::uint32_t destinationWidth, std::uint32_t destinationHeight,
                                 std::uint32_t width, std::uint32_t height, std::uint32_t flags,
                                 std::uint32_t destinationPadding, unsigned char** pipelineBuffer,
                                 std::uint32_t* pipelineBufferSize, std::uint32_t sourcePadding,
                                 bool flipVertical, const RGBFilter* filter) const {
  const Band band = BandOf(flags, sourceHeight);
  const Layout layout =
      LayoutOf(*mFirst, band, sourceWidth * mFirst->GetWidthMultiplier(), sourceHeight, flipVertical);
  if (layout.capacity > kLargestCapacity) return ResultCode::NotSupported;

  const bool own = pipelineBuffer == nullptr || pipelineBufferSize == nullptr;
  unsigned char*& buffer = own ? mBuffer : *pipelineBuffer;
  Reserve(buffer, own ? mBufferSize : *pipelineBufferSize, static_cast<std::uint32_t>(layout.capacity));

  // A second stage that works in pairs of lines may look past the band: let it find the same there every
  // time.
  const std::size_t end = layout.front + layout.lines;
  std::memset(buffer + end, 0, layout.capacity - end);

  const Frame frame{
      source, sourceWidth, sourceHeight, destination,        destinationWidth, destinationHeight,
      width,  height,      flags,        destinationPadding, sourcePadding,    flipVertical,
      filter};
  return RunStages(*mFirst, *mSecond, frame, band, buffer + layout.front);
}

}  // namespace ZrConvertersLib
