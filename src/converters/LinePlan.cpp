#include "converters/LinePlan.h"

#include <ZrConvertersLib/RGBFilter.h>

#include <algorithm>
#include <cstring>

#include "converters/StreamBuffer.h"
#include "core/OutputWriters.h"
#include "core/PointerOffset.h"

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

namespace ZrConvertersLib {

using simd::PixelWriter;
using simd::SourceReader;

namespace {

/// The most a level's block takes: pixels, source bytes a pixel, bytes beyond the line that a reader may
/// touch.
constexpr std::size_t kLargestBlock = 64, kLargestPixel = 8, kSlack = 64;

/// Bytes of a frame that are converted at a time when it is written past the caches: so few that the
/// processor's write buffers empty while the next ones are made, and two blocks of the longest pixels.
constexpr std::size_t kPiece = 1536;

/// How far ahead of the bytes being read memory is asked for the next ones, in frames larger than the
/// caches.
constexpr std::ptrdiff_t kPrefetchDistance = 2048;

/// Entries of a filter's table of bytes.
constexpr std::size_t kTableSize = 256;

/// Lines a reader takes and gives, and the columns beside a block that it looks at.
struct Lines {
  std::uint8_t sources, destinations, margin;
};

constexpr Lines LinesOf(SourceReader reader) {
  switch (reader) {
    case SourceReader::BayerFast8:
    case SourceReader::BayerFast16:
    case SourceReader::BayerFast10p:
    case SourceReader::BayerFast12p:
    case SourceReader::BayerFast14p:
    case SourceReader::BayerFastPacked:
      return {2, 2, 0};
    case SourceReader::BayerBilinear:
      return {6, 2, 1};
    default:
      return {1, 1, 0};
  }
}

/// The reader of packed samples that takes the place of a reader of bytes, if there is one.
constexpr std::optional<SourceReader> FusedReader(SourceReader bytes, SourceReader samples) {
  struct Fused {
    SourceReader bytes, samples, both;
  };
  constexpr Fused all[] = {
      {SourceReader::BayerFast8, SourceReader::Mono10p, SourceReader::BayerFast10p},
      {SourceReader::BayerFast8, SourceReader::Mono12p, SourceReader::BayerFast12p},
      {SourceReader::BayerFast8, SourceReader::Mono14p, SourceReader::BayerFast14p},
      {SourceReader::BayerFast8, SourceReader::MonoPacked, SourceReader::BayerFastPacked},
      {SourceReader::BayerComplement8, SourceReader::Mono10p, SourceReader::BayerComplement10p},
      {SourceReader::BayerComplement8, SourceReader::Mono12p, SourceReader::BayerComplement12p},
      {SourceReader::BayerComplement8, SourceReader::Mono14p, SourceReader::BayerComplement14p},
      {SourceReader::BayerComplement8, SourceReader::MonoPacked, SourceReader::BayerComplementPacked},
      {SourceReader::YCbYCr8, SourceReader::Mono10p, SourceReader::YCbYCr10p},
      {SourceReader::YCbYCr8, SourceReader::Mono12p, SourceReader::YCbYCr12p},
      {SourceReader::CbYCrY8, SourceReader::Mono10p, SourceReader::CbYCrY10p},
      {SourceReader::CbYCrY8, SourceReader::Mono12p, SourceReader::CbYCrY12p},
  };
  for (const Fused& fused : all) {
    if (fused.bytes == bytes && fused.samples == samples) return fused.both;
  }
  return std::nullopt;
}

/// The writer with the caller's tables, for destinations that a filter acts on.
constexpr PixelWriter Filtered(std::uint8_t destination) {
  auto place = static_cast<std::uint8_t>(PixelWriter::FilteredRGB8);
  for (std::size_t i = 0; i < destination; ++i)
    place = static_cast<std::uint8_t>(place + kDestinations[i].filtered);
  return static_cast<PixelWriter>(place);
}

static_assert(kDestinations.size() == static_cast<std::size_t>(PixelWriter::FilteredRGB8));
static_assert(kDestinations[5].name == "RGB8" && Filtered(5) == PixelWriter::FilteredRGB8);
static_assert(kDestinations[11].name == "RGB565p" && Filtered(11) == PixelWriter::FilteredRGB565p);
static_assert(kDestinations[12].name == "Planar8" && Filtered(12) == PixelWriter::FilteredPlanar8);

/// The default filter never changes; any other one may be the identity, too.
bool IsIdentity(const RGBFilter* filter) {
  return filter == nullptr || filter == &sRGBFilter || filter->IsIdentity();
}

/// Bytes from a plane to the next: a 32-bit figure that counts as signed.
std::ptrdiff_t PlaneDistance(const PixelConverterContext& context) {
  return static_cast<std::int32_t>(context.mDestinationStride * context.mDestinationHeight);
}

bool ExceedsCaches(const PixelConverterContext& context, std::size_t planes) {
  const std::size_t source = std::size_t{context.mSourceStride} * context.mSourceHeight;
  const std::size_t destination =
      std::size_t{context.mDestinationStride} * context.mDestinationHeight * planes;
  // In an image of one line the planes of a pair of lines overlap; their order would not be kept.
  return context.mDestinationHeight > 1 && source + destination > simd::StreamingThreshold();
}

}  // namespace

LinePlan::LinePlan(const PixelConverterContext& context, const LineRecipe& recipe)
    : mArgs{}, mGroup(recipe.group) {
  const DestinationRow& row = kDestinations[recipe.destination];
  const simd::Level& level = simd::CurrentLevel();
  const bool filtered = row.filtered && !IsIdentity(context.mFilter);
  const auto writer = filtered ? Filtered(recipe.destination) : static_cast<PixelWriter>(recipe.destination);
  mFunction = level.Find(recipe.reader, writer);
  const bool large = ExceedsCaches(context, row.planes);
  mStream = large && !recipe.throughCaches ? *level.stream : nullptr;
  mBlock = level.blockPixels;
  mPixelBytes = row.bytes;
  mPlanes = row.planes;
  const Lines lines = LinesOf(recipe.reader);
  mSources = lines.sources;
  mDestinations = lines.destinations;
  mMargin = lines.margin;

  mArgs.lines = 1;
  mArgs.prefetch = large ? kPrefetchDistance : 0;
  mArgs.planeDistance = PlaneDistance(context);
  mArgs.shift = recipe.shift;
  mArgs.flip = recipe.flip;
  mArgs.matrix = recipe.matrix;
  if (filtered) SetTables(*context.mFilter);
}

/// One table where all are equal, which kernels can tell by its address.
void LinePlan::SetTables(const RGBFilter& filter) {
  const std::uint8_t* const red = filter.GetRed();
  const auto orRed = [&](const std::uint8_t* table) {
    return std::memcmp(table, red, kTableSize) == 0 ? red : table;
  };
  mArgs.tables[0] = red;
  mArgs.tables[1] = orRed(filter.GetGreen());
  mArgs.tables[2] = orRed(filter.GetBlue());
}

LineBlock LineBlock::Line(std::size_t line) const {
  const auto down = static_cast<std::ptrdiff_t>(line);
  LineBlock one{{}, {}, pixels};
  for (std::size_t i = 0; i < std::size(source); ++i)
    one.source[i] = OffsetBy(simd::LoadedSingly(source[i]), down * sourceStep);
  for (std::size_t i = 0; i < std::size(destination); ++i)
    one.destination[i] = OffsetBy(simd::LoadedSingly(destination[i]), down * destinationStep);
  return one;
}

bool ReadSamplesDirectly(LineRecipe& recipe, const SampleRecipe& samples) {
  const auto fused = FusedReader(recipe.reader, samples.reader);
  if (!fused) return false;
  recipe.reader = *fused;
  // A group becomes as long as both have it whole.
  const std::uint32_t count = std::max<std::uint32_t>(recipe.group.bytes, samples.group.pixels);
  recipe.group = {static_cast<std::uint8_t>(count * recipe.group.pixels / recipe.group.bytes),
                  static_cast<std::uint8_t>(count / samples.group.pixels * samples.group.bytes)};
  recipe.shift = samples.shift;
  return true;
}

LinePlan::LinePlan(const PixelConverterContext& context, const SampleRecipe& recipe)
    : LinePlan(context, LineRecipe{.reader = recipe.reader,
                                   .group = recipe.group,
                                   .destination = OutputMono8::kIndex,
                                   .shift = recipe.shift,
                                   .throughCaches = true}) {}

void LinePlan::Run(const LineBlock& block) const {
  if (block.pixels == 0 || block.lines == 0) return;
  if (mStream == nullptr && block.pixels >= mBlock && !BlockPlanesOverlap(block.pixels))
    return RunWhole(block);
  for (std::size_t i = 0; i < block.lines; ++i) RunLine(block.Line(i));
}

void LinePlan::RunLine(const LineBlock& block) const {
  if (mStream != nullptr && block.pixels >= mBlock && !BlockPlanesOverlap(block.pixels))
    RunStaged(block);
  else
    RunPadded(block);
}

void LinePlan::Finish() const {
#if defined(__x86_64__)
  if (mStream != nullptr) _mm_sfence();
#endif
}

void LinePlan::RunWhole(const LineBlock& block) const {
  simd::KernelArgs args = mArgs;
  for (std::size_t i = 0; i < std::size(args.source); ++i)
    args.source[i] = simd::LoadedSingly(block.source[i]);
  for (std::size_t i = 0; i < std::size(args.destination); ++i)
    args.destination[i] = simd::LoadedSingly(block.destination[i]);
  args.width = block.pixels;
  args.lines = block.lines;
  args.sourceStep = block.sourceStep;
  args.destinationStep = block.destinationStep;
  mFunction(args);
}

/// Whether a short line's pixels reach into the next plane, as the last group of an image of one line may. In
/// a line longer than a block such pixels are written last anyway.
bool LinePlan::BlockPlanesOverlap(std::size_t pixels) const {
  return pixels <= kLargestBlock && !PlanesApart(pixels);
}

bool LinePlan::PlanesApart(std::size_t pixels) const {
  const auto distance =
      static_cast<std::size_t>(mArgs.planeDistance < 0 ? -mArgs.planeDistance : mArgs.planeDistance);
  return mPlanes == 1 || DestinationBytes(pixels) <= distance;
}

/// Lines shorter than a block: the kernel works on copies that are as long as one.
void LinePlan::RunPadded(const LineBlock& block) const {
  constexpr std::size_t kSource = kLargestBlock * kLargestPixel + 2 * kSlack;
  constexpr std::ptrdiff_t kPlane = 2 * kLargestBlock;
  alignas(64) std::uint8_t sources[6][kSource];
  alignas(64) std::uint8_t staged[2][3 * kPlane];
  simd::KernelArgs args = mArgs;
  for (std::size_t i = 0; i < mSources; ++i) {
    std::memset(sources[i], 0, kSource);
    std::memcpy(sources[i] + kSlack - mMargin, block.source[i] - mMargin,
                SourceBytes(block.pixels) + 2 * mMargin);
    args.source[i] = sources[i] + kSlack;
  }
  for (std::size_t i = 0; i < mDestinations; ++i) args.destination[i] = staged[i];
  args.planeDistance = kPlane;
  args.width = std::max(mBlock, block.pixels);
  mFunction(args);
  for (std::size_t line = 0; line < mDestinations; ++line) {
    const std::size_t i = mArgs.redBelow ? 1 - line : line;  // the upper line first, as kernels do
    CopyOut(staged[i], kPlane, block.destination[i], block.pixels);
  }
}

/// Pixel by pixel where planes overlap, so that they come out as if each pixel had been stored in turn.
void LinePlan::CopyOut(const std::uint8_t* staged, std::ptrdiff_t stagedPlane, std::uint8_t* destination,
                       std::size_t pixels) const {
  const std::size_t step = BlockPlanesOverlap(pixels) ? 1 : pixels;
  for (std::size_t x = 0; x < pixels; x += step) {
    for (std::ptrdiff_t plane = 0; plane < mPlanes; ++plane) {
      std::memcpy(destination + plane * mArgs.planeDistance + DestinationBytes(x),
                  staged + plane * stagedPlane + DestinationBytes(x), DestinationBytes(step));
    }
  }
}

/// Pieces of a line converted in the first-level cache and copied from there past all caches.
void LinePlan::RunStaged(const LineBlock& block) const {
  StreamBuffer staged({mDestinations, mPlanes, mArgs.planeDistance}, block.destination, mStream);
  const std::size_t longest =
      kPiece / (std::size_t{mPixelBytes} * mPlanes * mDestinations) / kLargestBlock * kLargestBlock;
  simd::KernelArgs args = mArgs;
  args.planeDistance = staged.PlaneDistance();
  // Pieces begin with whole groups, and in mosaics with whole tiles.
  const std::size_t unit = std::max<std::size_t>(mGroup.pixels, 2);
  args.width = staged.PieceToCacheLine(DestinationBytes(unit), DestinationBytes(kLargestBlock),
                                       DestinationBytes(longest)) /
               mPixelBytes;
  for (std::size_t x = 0; x < block.pixels; x += args.width, args.width = longest) {
    const std::size_t left = block.pixels - x;
    // The rest after a piece must not be shorter than a block.
    if (left <= longest)
      args.width = left;
    else if (left < args.width + kLargestBlock)
      args.width = longest - kLargestBlock;
    staged.Reserve(DestinationBytes(args.width));
    for (std::size_t i = 0; i < mSources; ++i)
      args.source[i] = simd::LoadedSingly(block.source[i]) + SourceBytes(x);
    for (std::size_t i = 0; i < mDestinations; ++i) args.destination[i] = simd::LoadedSingly(staged.Next(i));
    mFunction(args);
    staged.Advance(DestinationBytes(args.width));
  }
  staged.Finish();
}

}  // namespace ZrConvertersLib
