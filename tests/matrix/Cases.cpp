#include "Cases.h"

#include <ZrConvertersLib/PixelConverter.h>

#include <algorithm>
#include <array>
#include <cstdio>

#include "Filters.h"
#include "model/BiColor.h"
#include "model/Demosaic.h"
#include "model/Readers.h"
#include "model/Scf1.h"
#include "support/Thinning.h"

namespace Matrix {
namespace {

using TestSupport::Placement;
using TestSupport::Random;

/// Around the sizes of vectors of 16 to 64 bytes and of blocks of 16 to 64 pixels, and of several of them.
constexpr std::array kWidths = {0u,   1u,   2u,   3u,   4u,   5u,   6u,   7u,  8u,   9u,   11u,
                                15u,  16u,  17u,  18u,  24u,  31u,  32u,  33u, 34u,  47u,  48u,
                                63u,  64u,  65u,  66u,  67u,  95u,  96u,  97u, 127u, 128u, 129u,
                                130u, 131u, 160u, 191u, 192u, 200u, 256u, 257u};

Model::Meaning MeaningOf(const Model::Pair& pair) {
  return pair.back().source.meaning;
}
bool HasMosaic(const Model::Pair& pair) {
  return MeaningOf(pair) == Model::Meaning::Mosaic;
}
bool IsChain(const Model::Pair& pair) {
  return pair.size() > 1;
}

unsigned BorderBits(Random& random) {
  return random.OneOf({0u, 0u, Model::kSingleLastLine | Model::kRealBelow, Model::kSingleLastLine,
                       Model::kRealBelow, Model::kRealAround, Model::kRealAround | Model::kSingleLastLine,
                       Model::kRealAround | Model::kRealBelow, 0x07000000u});
}

/// Mostly one of four patterns, whose flags are neighbouring bits.
unsigned PatternFlags(Random& random, unsigned lowest) {
  return lowest * random.OneOf({1u, 2u, 4u, 8u, 1u, 2u, 4u, 8u, 0u, 6u, 15u});
}

unsigned MatrixFlags(Random& random) {
  return random.OneOf(
      {0u, Model::kJpegMatrix, Model::k709Matrix, Model::kJpegMatrix | Model::k709Matrix, 0x20000u});
}

/// Flags that the family of the source looks at, and what is drawn of them.
struct FamilyFlags {
  unsigned mask, drawn;
};

FamilyFlags DrawFamilyFlags(const Model::Pair& pair, Random& random) {
  using enum Model::Meaning;
  const unsigned interpolate = random.Below(2) ? Model::kInterpolate | Model::kInterpolateBiColor : 0;
  switch (MeaningOf(pair)) {
    case YCbCr:
      return {0x70000, MatrixFlags(random)};
    case Mosaic:
      return {0x1F0, PatternFlags(random, Model::kGrbg) | (interpolate & Model::kInterpolate)};
    case BiColor:
      return {0xF200, PatternFlags(random, Model::kRgbg) | (interpolate & Model::kInterpolateBiColor)};
    case Scf1:
      return {0xF0000100, PatternFlags(random, Model::kWgwr) | (interpolate & Model::kInterpolate)};
    default:
      return {};
  }
}

unsigned PackingFlags(Random& random) {
  return random.OneOf({0u, 0u, Model::kGigEVisionPacking, Model::kCsi2Packing,
                       Model::kGigEVisionPacking | Model::kCsi2Packing});
}

/// Flags of other families must not matter.
unsigned Flags(const Model::Pair& pair, Random& random) {
  const FamilyFlags own = DrawFamilyFlags(pair, random);
  unsigned others = 0;
  for (const unsigned family : {0xF000FE00u, 0x70000u, 0x1F0u})
    if (random.Below(4) == 0) others |= family;
  return own.drawn | (others & ~own.mask) | BorderBits(random) | PackingFlags(random);
}

/// Of tiles of 4x4: heights of several, and images that are higher than what is converted. An image with real
/// lines below it is a band of a frame, which has whole tiles.
void DrawHeightsOfTiles(Model::Call& call, Random& random) {
  call.height += random.OneOf({0u, 3u, 6u});
  call.sourceHeight = call.height + random.OneOf({0u, 0u, 0u, 1u, 5u});
  if (Model::LinesBelowAreReal(call.flags)) call.sourceHeight = (call.sourceHeight + 3) / 4 * 4;
}

Model::Call RandomCall(const Model::Pair& pair, std::uint32_t width, Random& random) {
  Model::Call call;
  call.width = width;
  call.height = random.OneOf({1u, 2u, 3u, 4u, 5u, 2u, 3u, 4u, 5u, 6u, 7u, 0u});
  call.sourceHeight = call.height;
  call.sourceWidth = width + random.OneOf({0u, 0u, 0u, 0u, 1u, 3u});
  call.destinationWidth = width + random.OneOf({0u, 0u, 0u, 0u, 1u, 2u, 9u});
  // A single last line goes back by one: before the intermediate image of a chain there is nothing to go back
  // to.
  if (call.height > 1 || !IsChain(pair)) call.sourceHeight += random.OneOf({0u, 0u, 0u, 0u, 1u});
  // Planes of a destination that is said to be lower than what is converted overlap.
  call.destinationHeight = random.OneOf(
      {call.height, call.height, call.height, call.height, call.height + 1, call.height / 2, 1u});
  call.flags = Flags(pair, random);
  call.sourcePadding = DrawPadding(random);
  call.destinationPadding = DrawPadding(random);
  call.flip = random.Below(3) == 0;
  if (MeaningOf(pair) == Model::Meaning::Scf1) DrawHeightsOfTiles(call, random);
  return call;
}

Case RandomCase(const Model::Pair& pair, std::uint32_t width, std::uint64_t seed) {
  Random random(seed);
  Case conversion;
  conversion.call = RandomCall(pair, width, random);
  conversion.filter =
      random.OneOf<unsigned>({kNoFilter, kNoFilter, kIdentityFilter, kNoiseFilter, kNoiseFilter, kGainFilter,
                              kBrighterFilter, kAlmostIdentityFilter});
  using enum TestSupport::Content;
  conversion.content = random.OneOf({Noise, Noise, Noise, Noise, Zeros, Ones, Ramp, Extremes});
  conversion.seed = random.Next();
  conversion.source = DrawPlacement(random);
  conversion.destination = DrawPlacement(random);
  using enum Between;
  conversion.between = random.OneOf({Library, Library, Caller, CallerTooSmall});
  conversion.streaming = random.Below(3) == 0;
  conversion.lineByLine = !IsChain(pair) && random.Below(4) == 0;
  return conversion;
}

/// How often each width comes round. Flags decide much in a mosaic and little elsewhere.
unsigned Rounds(const Model::Pair& pair) {
  const bool plain = MeaningOf(pair) == Model::Meaning::Grey || MeaningOf(pair) == Model::Meaning::Colour;
  const unsigned rounds = HasMosaic(pair) ? 36 : !plain || IsChain(pair) ? 18 : 12;
  return std::max(rounds / TestSupport::Thinning(), 1u);
}

std::uint64_t SeedOf(const Model::Pair& pair) {
  return TestSupport::Hash({static_cast<std::uint64_t>(pair.front().source.id),
                            static_cast<std::uint64_t>(pair.back().destination.id), pair.size()});
}

Case LargeCase(const Model::Pair& pair, std::uint32_t width, std::uint32_t height, std::uint64_t seed) {
  Case conversion = RandomCase(pair, width, seed);
  Model::Call& call = conversion.call;
  call.sourceWidth = call.destinationWidth = width;
  call.height = call.sourceHeight = call.destinationHeight = height;
  if (MeaningOf(pair) == Model::Meaning::Scf1) call.sourceHeight = (height + 3) / 4 * 4;
  return conversion;
}

/// Lines written past the caches go through the first-level cache in parts of 1536 bytes, of all planes and
/// of both lines of a mosaic together; mosaics and BiColor are interpolated in strips of 4096 columns, and
/// the last block of odd widths once more. SCF1 is converted in strips of 4096 or 2048 columns and its
/// samples are read 1024 columns at a time, up to 63 more in the last part.
std::vector<std::uint32_t> WidthsAroundParts(const Model::Pair& pair) {
  const Model::Destination& destination = pair.back().destination;
  const unsigned planes = destination.shape == Model::Shape::Planes ? 3 : 1, lines = HasMosaic(pair) ? 2 : 1;
  const std::uint32_t part = 1536 / (destination.bytes * planes * lines) / 64 * 64;
  std::vector<std::uint32_t> widths = {part - 1,  part,      part + 1,  part + 33,
                                       part + 63, part + 64, part + 65, 2 * part + 7};
  if (HasMosaic(pair) || MeaningOf(pair) == Model::Meaning::BiColor)
    widths.insert(widths.end(), {63, 65, 67, 4095, 4096, 4097, 4098, 4099, 4161, 8193});
  if (MeaningOf(pair) == Model::Meaning::Scf1)
    widths.insert(widths.end(), {1087, 1088, 1089, 1091, 2111, 2113});
  return widths;
}

std::vector<Case> LargeCases(const Model::Pair& pair, std::uint64_t seed) {
  std::vector<Case> cases = {LargeCase(pair, 333, 41, seed), LargeCase(pair, 1030, 18, seed + 1)};
  // More lines than a cache holds of the intermediate image.
  if (IsChain(pair) && TestSupport::Hash({seed}) % TestSupport::Thinning() == 0)
    cases.push_back(LargeCase(pair, 2054, 131, seed + 2));
  for (const std::uint32_t width : WidthsAroundParts(pair)) {
    if (TestSupport::Hash({seed, width}) % 2 != 0) continue;
    cases.push_back(LargeCase(pair, width, 2, seed + width));
    cases.back().streaming = width > 4096 || cases.size() % 2 != 0;
  }
  return cases;
}

}  // namespace

unsigned DrawFlags(const Model::Pair& pair, Random& random) {
  return DrawFamilyFlags(pair, random).drawn | PackingFlags(random);
}

unsigned DrawPadding(Random& random) {
  return random.OneOf({0u, 0u, 0u, 1u, 2u, 3u, 5u, 16u, 33u, 64u});
}

Placement DrawPlacement(Random& random) {
  using enum Placement::At;
  return {random.OneOf({End, End, Begin, Middle}), random.Below(64)};
}

std::string Describe(const Case& conversion) {
  const Model::Call& call = conversion.call;
  char text[512];
  std::snprintf(text, sizeof text,
                "%ux%u of a source %ux%u padding %u, into %ux%u padding %u, flags %08x%s, filter %s, content "
                "%s seed %llx, "
                "source %s (%zu), destination %s (%zu), intermediate %d%s%s",
                call.width, call.height, call.sourceWidth, call.sourceHeight, call.sourcePadding,
                call.destinationWidth, call.destinationHeight, call.destinationPadding, call.flags,
                call.flip ? " flipped" : "", GetFilter(conversion.filter).name, NameOf(conversion.content),
                static_cast<unsigned long long>(conversion.seed), NameOf(conversion.source.at),
                conversion.source.misalignment, NameOf(conversion.destination.at),
                conversion.destination.misalignment, static_cast<int>(conversion.between),
                conversion.streaming ? ", streaming" : "", conversion.lineByLine ? ", line by line" : "");
  return text;
}

Case PlainCase(std::uint32_t width, std::uint32_t height) {
  Case conversion;
  Model::Call& call = conversion.call;
  call.width = call.sourceWidth = call.destinationWidth = width;
  call.height = call.sourceHeight = call.destinationHeight = height;
  return conversion;
}

std::vector<Case> CasesOf(const Model::Pair& pair) {
  const std::uint64_t seed = SeedOf(pair);
  std::vector<Case> cases = LargeCases(pair, seed);
  for (unsigned round = 0; round < Rounds(pair); ++round)
    for (const std::uint32_t width : kWidths)
      cases.push_back(RandomCase(pair, width, TestSupport::Hash({seed, round, width})));
  return cases;
}

}  // namespace Matrix
