#include "converters/LinePlan.h"

#include <ZrConvertersLib/RGBFilter.h>

#include <algorithm>
#include <cstring>

#include "converters/StagedLines.h"
#include "core/OutputWriters.h"
#include "core/PointerOffset.h"

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

namespace ZrConvertersLib {

using simd::Reading;
using simd::Writing;

namespace {

/// The most a level's block takes: pixels, source bytes a pixel, bytes beyond the line that a reading may
/// touch.
constexpr std::size_t kLargestBlock = 64, kLargestPixel = 8, kSlack = 64;

/// Bytes of a frame that are converted at a time when it is written past the caches: so few that the
/// processor's write buffers empty while the next ones are made, and two blocks of the longest pixels.
constexpr std::size_t kPiece = 1536;

/// How far ahead of the bytes that are read memory is asked for the next ones, in frames larger than the
/// caches.
constexpr std::ptrdiff_t kAhead = 2048;

/// Entries of a filter's table of bytes.
constexpr std::size_t kTableSize = 256;

/// Lines a reading takes and gives, and the columns beside a block that it looks at.
struct Lines {
  std::uint8_t sources, destinations, margin;
};

constexpr Lines LinesOf(Reading reading) {
  switch (reading) {
    case Reading::BayerFast8:
    case Reading::BayerFast16:
    case Reading::BayerFast10p:
    case Reading::BayerFast12p:
    case Reading::BayerFast14p:
    case Reading::BayerFastPacked:
      return {2, 2, 0};
    case Reading::BayerBilinear:
      return {6, 2, 1};
    default:
      return {1, 1, 0};
  }
}

/// The reading of packed samples that takes the place of a reading of bytes, if there is one.
constexpr std::optional<Reading> FusedReading(Reading bytes, Reading samples) {
  struct Fused {
    Reading bytes, samples, both;
  };
  constexpr Fused all[] = {
      {Reading::BayerFast8, Reading::Mono10p, Reading::BayerFast10p},
      {Reading::BayerFast8, Reading::Mono12p, Reading::BayerFast12p},
      {Reading::BayerFast8, Reading::Mono14p, Reading::BayerFast14p},
      {Reading::BayerFast8, Reading::MonoPacked, Reading::BayerFastPacked},
      {Reading::BayerInverted8, Reading::Mono10p, Reading::BayerInverted10p},
      {Reading::BayerInverted8, Reading::Mono12p, Reading::BayerInverted12p},
      {Reading::BayerInverted8, Reading::Mono14p, Reading::BayerInverted14p},
      {Reading::BayerInverted8, Reading::MonoPacked, Reading::BayerInvertedPacked},
      {Reading::YCbYCr8, Reading::Mono10p, Reading::YCbYCr10p},
      {Reading::YCbYCr8, Reading::Mono12p, Reading::YCbYCr12p},
      {Reading::CbYCrY8, Reading::Mono10p, Reading::CbYCrY10p},
      {Reading::CbYCrY8, Reading::Mono12p, Reading::CbYCrY12p},
  };
  for (const Fused& fused : all) {
    if (fused.bytes == bytes && fused.samples == samples) return fused.both;
  }
  return std::nullopt;
}

/// The writing with the caller's tables, for destinations that a filter acts on.
constexpr Writing Filtered(std::uint8_t destination) {
  auto place = static_cast<std::uint8_t>(Writing::FilteredRGB8);
  for (std::size_t i = 0; i < destination; ++i)
    place = static_cast<std::uint8_t>(place + kDestinations[i].filtered);
  return static_cast<Writing>(place);
}

static_assert(kDestinations.size() == static_cast<std::size_t>(Writing::FilteredRGB8));
static_assert(kDestinations[5].name == "RGB8" && Filtered(5) == Writing::FilteredRGB8);
static_assert(kDestinations[11].name == "RGB565p" && Filtered(11) == Writing::FilteredRGB565p);
static_assert(kDestinations[12].name == "Planar8" && Filtered(12) == Writing::FilteredPlanar8);

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
    : mJob{}, mGroup(recipe.group) {
  const DestinationRow& row = kDestinations[recipe.destination];
  const simd::Level& level = simd::CurrentLevel();
  const bool filtered = row.filtered && !IsIdentity(context.mFilter);
  const auto writing = filtered ? Filtered(recipe.destination) : static_cast<Writing>(recipe.destination);
  mFunction = level.Find(recipe.reading, writing);
  const bool large = ExceedsCaches(context, row.planes);
  mStream = large && !recipe.throughCaches ? *level.stream : nullptr;
  mBlock = level.blockPixels;
  mPixelBytes = row.bytes;
  mPlanes = row.planes;
  const Lines lines = LinesOf(recipe.reading);
  mSources = lines.sources;
  mDestinations = lines.destinations;
  mMargin = lines.margin;

  mJob.lines = 1;
  mJob.ahead = large ? kAhead : 0;
  mJob.planeDistance = PlaneDistance(context);
  mJob.shift = recipe.shift;
  mJob.flip = recipe.flip;
  mJob.matrix = recipe.matrix;
  if (filtered) SetTables(*context.mFilter);
}

/// One table where all are equal, which kernels can tell by its address.
void LinePlan::SetTables(const RGBFilter& filter) {
  const std::uint8_t* const red = filter.GetRed();
  const auto orRed = [&](const std::uint8_t* table) {
    return std::memcmp(table, red, kTableSize) == 0 ? red : table;
  };
  mJob.tables[0] = red;
  mJob.tables[1] = orRed(filter.GetGreen());
  mJob.tables[2] = orRed(filter.GetBlue());
}

Strip Strip::Line(std::size_t line) const {
  const auto down = static_cast<std::ptrdiff_t>(line);
  Strip one{{}, {}, pixels};
  for (std::size_t i = 0; i < std::size(source); ++i)
    one.source[i] = OffsetBy(simd::Alone(source[i]), down * sourceStep);
  for (std::size_t i = 0; i < std::size(destination); ++i)
    one.destination[i] = OffsetBy(simd::Alone(destination[i]), down * destinationStep);
  return one;
}

bool ReadSamplesDirectly(LineRecipe& recipe, const SampleRecipe& samples) {
  const auto fused = FusedReading(recipe.reading, samples.reading);
  if (!fused) return false;
  recipe.reading = *fused;
  // A group becomes as long as both have it whole.
  const std::uint32_t count = std::max<std::uint32_t>(recipe.group.bytes, samples.group.pixels);
  recipe.group = {static_cast<std::uint8_t>(count * recipe.group.pixels / recipe.group.bytes),
                  static_cast<std::uint8_t>(count / samples.group.pixels * samples.group.bytes)};
  recipe.shift = samples.shift;
  return true;
}

LinePlan::LinePlan(const PixelConverterContext& context, const SampleRecipe& recipe)
    : LinePlan(context, LineRecipe{.reading = recipe.reading,
                                   .group = recipe.group,
                                   .destination = OutputMono8::kIndex,
                                   .shift = recipe.shift,
                                   .throughCaches = true}) {}

void LinePlan::Run(const Strip& strip) const {
  if (strip.pixels == 0 || strip.lines == 0) return;
  if (mStream == nullptr && strip.pixels >= mBlock && !BlockPlanesOverlap(strip.pixels))
    return RunWhole(strip);
  for (std::size_t i = 0; i < strip.lines; ++i) RunLine(strip.Line(i));
}

void LinePlan::RunLine(const Strip& strip) const {
  if (mStream != nullptr && strip.pixels >= mBlock && !BlockPlanesOverlap(strip.pixels))
    RunStaged(strip);
  else
    RunPadded(strip);
}

void LinePlan::Finish() const {
#if defined(__x86_64__)
  if (mStream != nullptr) _mm_sfence();
#endif
}

void LinePlan::RunWhole(const Strip& strip) const {
  simd::LineJob job = mJob;
  for (std::size_t i = 0; i < std::size(job.source); ++i) job.source[i] = simd::Alone(strip.source[i]);
  for (std::size_t i = 0; i < std::size(job.destination); ++i)
    job.destination[i] = simd::Alone(strip.destination[i]);
  job.width = strip.pixels;
  job.lines = strip.lines;
  job.sourceStep = strip.sourceStep;
  job.destinationStep = strip.destinationStep;
  mFunction(job);
}

/// Whether a short line's pixels reach into the next plane, as the last group of an image of one line may. In
/// a line longer than a block such pixels are written last anyway.
bool LinePlan::BlockPlanesOverlap(std::size_t pixels) const {
  return pixels <= kLargestBlock && !PlanesApart(pixels);
}

bool LinePlan::PlanesApart(std::size_t pixels) const {
  const auto distance =
      static_cast<std::size_t>(mJob.planeDistance < 0 ? -mJob.planeDistance : mJob.planeDistance);
  return mPlanes == 1 || DestinationBytes(pixels) <= distance;
}

/// Lines shorter than a block: the kernel works on copies that are as long as one.
void LinePlan::RunPadded(const Strip& strip) const {
  constexpr std::size_t kSource = kLargestBlock * kLargestPixel + 2 * kSlack;
  constexpr std::ptrdiff_t kPlane = 2 * kLargestBlock;
  alignas(64) std::uint8_t sources[6][kSource];
  alignas(64) std::uint8_t staged[2][3 * kPlane];
  simd::LineJob job = mJob;
  for (std::size_t i = 0; i < mSources; ++i) {
    std::memset(sources[i], 0, kSource);
    std::memcpy(sources[i] + kSlack - mMargin, strip.source[i] - mMargin,
                SourceBytes(strip.pixels) + 2 * mMargin);
    job.source[i] = sources[i] + kSlack;
  }
  for (std::size_t i = 0; i < mDestinations; ++i) job.destination[i] = staged[i];
  job.planeDistance = kPlane;
  job.width = std::max(mBlock, strip.pixels);
  mFunction(job);
  for (std::size_t line = 0; line < mDestinations; ++line) {
    const std::size_t i = mJob.redBelow ? 1 - line : line;  // the upper line first, as kernels do
    CopyOut(staged[i], kPlane, strip.destination[i], strip.pixels);
  }
}

/// Pixel by pixel where planes overlap, so that they come out as if each pixel had been stored in turn.
void LinePlan::CopyOut(const std::uint8_t* staged, std::ptrdiff_t stagedPlane, std::uint8_t* destination,
                       std::size_t pixels) const {
  const std::size_t step = BlockPlanesOverlap(pixels) ? 1 : pixels;
  for (std::size_t x = 0; x < pixels; x += step) {
    for (std::ptrdiff_t plane = 0; plane < mPlanes; ++plane) {
      std::memcpy(destination + plane * mJob.planeDistance + DestinationBytes(x),
                  staged + plane * stagedPlane + DestinationBytes(x), DestinationBytes(step));
    }
  }
}

/// Pieces of a line converted in the first-level cache and copied from there past all caches.
void LinePlan::RunStaged(const Strip& strip) const {
  StagedLines staged({mDestinations, mPlanes, mJob.planeDistance}, strip.destination, mStream);
  const std::size_t longest =
      kPiece / (std::size_t{mPixelBytes} * mPlanes * mDestinations) / kLargestBlock * kLargestBlock;
  simd::LineJob job = mJob;
  job.planeDistance = staged.PlaneDistance();
  // Pieces begin with whole groups, and in mosaics with whole tiles.
  const std::size_t unit = std::max<std::size_t>(mGroup.pixels, 2);
  job.width = staged.PieceToCacheLine(DestinationBytes(unit), DestinationBytes(kLargestBlock),
                                      DestinationBytes(longest)) /
              mPixelBytes;
  for (std::size_t x = 0; x < strip.pixels; x += job.width, job.width = longest) {
    const std::size_t left = strip.pixels - x;
    // The rest after a piece must not be shorter than a block.
    if (left <= longest)
      job.width = left;
    else if (left < job.width + kLargestBlock)
      job.width = longest - kLargestBlock;
    staged.Reserve(DestinationBytes(job.width));
    for (std::size_t i = 0; i < mSources; ++i) job.source[i] = simd::Alone(strip.source[i]) + SourceBytes(x);
    for (std::size_t i = 0; i < mDestinations; ++i) job.destination[i] = simd::Alone(staged.Next(i));
    mFunction(job);
    staged.Advance(DestinationBytes(job.width));
  }
  staged.Finish();
}

}  // namespace ZrConvertersLib
