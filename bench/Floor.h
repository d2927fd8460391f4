#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Cases.h"

namespace Bench {

/// The bytes of a frame to load and of a frame to store, for a loop that moves them in pieces. In a piece it
/// loads `loads` vectors from each plane of the source, one after another, and then stores `stores` vectors
/// to each plane of the destination.
struct FloorFrame {
  const unsigned char* source;
  std::size_t sourceBytes;  ///< of a plane
  std::size_t sourcePlanes;
  std::size_t loads;
  unsigned char* destination;  ///< aligned to 64 bytes where stores are non-temporal
  std::size_t destinationBytes;
  std::size_t destinationPlanes;
  std::size_t stores;
};

using FloorFunction = void (*)(const FloorFrame& frame);

/// The loops of one CPU level, with vectors of its native width.
struct FloorFunctions {
  FloorFunction ordinary;
  FloorFunction streaming;  ///< with non-temporal stores; null where the level has none
};

inline constexpr std::size_t kMostVectors = 48;  ///< the most loads or stores of a plane in a piece

/// The loops of the level of that name (see CpuLevel.h).
const FloorFunctions& FloorOf(std::string_view level);

/// How a frame of that pair is moved: whole lines follow one another, so each plane is one run of bytes.
FloorFrame FloorFrameOf(const Case& what, Size size, const unsigned char* source, unsigned char* destination);

/// Non-temporal stores take aligned addresses: all planes of the destination must begin at whole cache lines.
bool CanStream(const Case& what, Size size);

}  // namespace Bench
