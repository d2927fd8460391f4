#include "converters/PreparedKernel.h"

#include <ZrConvertersLib/RGBFilter.h>

#include <cstring>
#include <iterator>

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

#include "converters/FindStraight.h"
#include "core/CacheLimits.h"
#include "core/FormatTable.h"
#include "simd/CpuLevel.h"

namespace ZrConvertersLib {

using simd::PixelWriter;

namespace {

/// How far ahead of the bytes being read a kernel prefetches: from memory into the second cache at least
/// kFar, and from there into the first one kNext; frames that the second cache holds at least kNear.
constexpr std::size_t kNear = 1024, kNext = 512, kFar = 3072;

/// Frames that the first cache holds need no prefetching.
constexpr std::size_t kFirstCache = 32 * 1024;

/// Bytes of a frame, source and destination together, for which it takes longer to look entries up than to
/// find out whether they can be computed.
constexpr std::size_t kWorthFinding = 65536;

/// Entries of a filter's table of bytes.
constexpr std::size_t kTableSize = 256;

/// The writer with the caller's tables, for destinations that a filter acts on.
PixelWriter WithFilter(PixelWriter writer) {
#define ZR_CASE(name)     \
  case PixelWriter::name: \
    return PixelWriter::Filtered##name;
  switch (writer) {
    ZR_FILTERED_DESTINATIONS(ZR_CASE)
    default:
      return writer;
  }
#undef ZR_CASE
}

/// The default filter never changes; any other one may be the identity, too.
bool IsIdentity(const RGBFilter* filter) {
  return filter == nullptr || filter == &sRGBFilter || filter->IsIdentity();
}

/// Bytes from a plane to the next. It is computed in 32 bits and interpreted as signed.
std::ptrdiff_t PlaneDistance(const PixelConverterContext& context) {
  return static_cast<std::int32_t>(context.mDestinationStride * context.mDestinationHeight);
}

std::size_t FrameBytes(const PixelConverterContext& context, std::size_t planes) {
  return std::size_t{context.mSourceStride} * context.mSourceHeight +
         std::size_t{context.mDestinationStride} * context.mDestinationHeight * planes;
}

/// In an image of one line the planes of a pair of lines overlap; past the caches their order would not be
/// kept.
bool IsStreamed(const PixelConverterContext& context, std::size_t frameBytes) {
  return context.mDestinationHeight > 1 && frameBytes > StreamingThreshold();
}

/// Lines that are read side by side follow whole pairs later; what follows in memory is read already.
std::ptrdiff_t PrefetchDistance(const PixelConverterContext& context, const simd::ReaderLines& lines,
                                std::size_t least) {
  if (lines.sources != 2 || context.mSourceStride == 0) return static_cast<std::ptrdiff_t>(least);
  const std::size_t pair = std::size_t{2} * context.mSourceStride;
  return static_cast<std::ptrdiff_t>((least + pair - 1) / pair * pair);
}

simd::ReadAhead AheadOf(const PixelConverterContext& context, const simd::ReaderLines& lines,
                        std::size_t frameBytes) {
  if (frameBytes <= ReadAheadThreshold()) return {PrefetchDistance(context, lines, kNear), 0};
  return {kNext, PrefetchDistance(context, lines, kFar)};
}

}  // namespace

PreparedKernel::PreparedKernel(const PixelConverterContext& context, const LineRecipe& recipe)
    : reader(simd::FactsOf(recipe.reader)), args{} {
  const DestinationRow& destination = kDestinations[static_cast<std::size_t>(recipe.writer)];
  const simd::Level& level = simd::CurrentLevel();
  const bool filtered = destination.filtered && !IsIdentity(context.mFilter);
  const std::size_t frameBytes = FrameBytes(context, destination.planes);
  function = level.Find(recipe.reader, filtered ? WithFilter(recipe.writer) : recipe.writer);
  stream = !recipe.throughCaches && IsStreamed(context, frameBytes) ? *level.stream : nullptr;
  block = level.blockPixels;
  pixelBytes = destination.bytes;
  planes = destination.planes;

  if (!recipe.fromCaches && !recipe.samples && frameBytes > kFirstCache)
    args.ahead = AheadOf(context, reader.lines, frameBytes);
  args.planeDistance = PlaneDistance(context);
  args.shift = recipe.shift;
  args.flip = recipe.flip;
  args.matrix = recipe.matrix;
  if (filtered) SetTables(*context.mFilter, frameBytes);
}

PreparedKernel::PreparedKernel(simd::KernelFunction kernel, const simd::ReaderFacts& facts,
                               std::size_t destination)
    : function(kernel),
      stream(nullptr),
      block(simd::CurrentLevel().blockPixels),
      reader(facts),
      pixelBytes(kDestinations[destination].bytes),
      planes(kDestinations[destination].planes),
      args{} {}

/// The same pointer three times if all tables are equal, by which kernels recognise it.
void PreparedKernel::SetTables(const RGBFilter& filter, std::size_t frameBytes) {
  const std::uint8_t* const red = filter.GetRed();
  const auto orRed = [&](const std::uint8_t* table) {
    return std::memcmp(table, red, kTableSize) == 0 ? red : table;
  };
  args.tables[0] = red;
  args.tables[1] = orRed(filter.GetGreen());
  args.tables[2] = orRed(filter.GetBlue());
  args.straight = nullptr;
  if (!simd::CurrentLevel().computesTables || frameBytes < kWorthFinding) return;
  for (std::size_t i = 0; i < straight.size(); ++i)
    if (!FindStraight(args.tables[i], straight[i])) return;
  args.straight = straight.data();
}

void OrderStreamedStores() {
#if defined(__x86_64__)
  _mm_sfence();
#endif
}

bool PreparedKernel::PlanesApart(std::size_t pixels) const {
  const auto distance =
      static_cast<std::size_t>(args.planeDistance < 0 ? -args.planeDistance : args.planeDistance);
  return planes == 1 || DestinationBytes(pixels) <= distance;
}

LineBlock simd::LineBlock::Line(std::size_t line) const {
  const auto down = static_cast<std::ptrdiff_t>(line);
  LineBlock one{{}, {}, pixels};
  for (std::size_t i = 0; i < std::size(source); ++i)
    one.source[i] = OffsetBy(LoadedSingly(source[i]), down * sourceStep);
  for (std::size_t i = 0; i < std::size(destination); ++i)
    one.destination[i] = OffsetBy(LoadedSingly(destination[i]), down * destinationStep);
  return one;
}

}  // namespace ZrConvertersLib
