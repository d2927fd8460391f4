#pragma once

#include <cstdint>

#include "Formats.h"
#include "Memory.h"
#include "Writers.h"

namespace Model {

/// Border bits of the flags.
constexpr unsigned kSingleLastLine =
    0x04000000;  ///< an odd last line on its own; in chains also: real lines above
constexpr unsigned kRealBelow = 0x01000000;
constexpr unsigned kRealAround = 0x02000000;

/// What a caller passes beside the two images.
struct Call {
  std::uint32_t sourceWidth = 0, sourceHeight = 0;
  std::uint32_t destinationWidth = 0, destinationHeight = 0;
  std::uint32_t width = 0, height = 0;
  std::uint32_t flags = 0;
  std::uint32_t destinationPadding = 0, sourcePadding = 0;
  bool flip = false;
  const FilterTables* filter = nullptr;  ///< null: identity
};

/// Bytes between two lines of the caller's images.
std::uint32_t SourceStride(const Pair& pair, const Call& call);
std::uint32_t DestinationStride(const Pair& pair, const Call& call);

/// Converts as the library must, over whatever `destination` holds. `stale` is what an intermediate image
/// holds where no stage has written.
void Convert(const Pair& pair, const Call& call, Memory& source, Memory& destination, std::uint8_t stale = 0);

}  // namespace Model
