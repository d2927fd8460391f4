#include "Floor.h"

#include <ZrConvertersLib/Format.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <string>

namespace Bench {

extern const FloorFunctions kFloorBaseline, kFloorV2, kFloorV3, kFloorV4, kFloorNeon;

namespace {

struct LevelFloor {
  std::string_view level;
  const FloorFunctions* functions;
};

constexpr LevelFloor kFloors[] = {
#if defined(ZR_LEVEL_BASELINE)
    {"x86-64", &kFloorBaseline},
#endif
#if defined(ZR_LEVEL_V2)
    {"x86-64-v2", &kFloorV2},
#endif
#if defined(ZR_LEVEL_V3)
    {"x86-64-v3", &kFloorV3},
#endif
#if defined(ZR_LEVEL_V4)
    {"x86-64-v4", &kFloorV4},
#endif
#if defined(ZR_LEVEL_NEON)
    {"neon", &kFloorNeon},
#endif
};

/// Long runs of loads and of stores are faster than short ones: caches and memory like one direction at a
/// time.
constexpr std::size_t kVectorsOfPiece = 64;

}  // namespace

const FloorFunctions& FloorOf(std::string_view level) {
  for (const LevelFloor& one : kFloors)
    if (one.level == level) return *one.functions;
  throw std::logic_error("no floor for the level " + std::string(level));
}

FloorFrame FloorFrameOf(const Case& what, Size size, const unsigned char* source,
                        unsigned char* destination) {
  const std::size_t sourcePlanes = what.source->planes, destinationPlanes = what.destination->planes;
  const std::size_t sourceBits = what.source->bitsPerPixel / sourcePlanes;
  const std::size_t destinationBits = what.destination->bitsPerPixel / destinationPlanes;
  const std::size_t divisor = std::gcd(sourceBits, destinationBits);
  const std::size_t loads = sourceBits / divisor, stores = destinationBits / divisor;
  const std::size_t repeats =
      std::max<std::size_t>(1, std::min(kVectorsOfPiece / (loads * sourcePlanes + stores * destinationPlanes),
                                        kMostVectors / std::max(loads, stores)));
  return {source,
          FrameBytes(*what.source, size) / sourcePlanes,
          sourcePlanes,
          loads * repeats,
          destination,
          FrameBytes(*what.destination, size) / destinationPlanes,
          destinationPlanes,
          stores * repeats};
}

bool CanStream(const Case& what, Size size) {
  constexpr std::size_t kCacheLine = 64;
  return what.destination->planes == 1 ||
         FrameBytes(*what.destination, size) / what.destination->planes % kCacheLine == 0;
}

}  // namespace Bench
