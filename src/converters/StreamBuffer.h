#pragma once

#include <cstddef>
#include <cstdint>

#include "core/CacheLimits.h"
#include "core/PointerOffset.h"
#include "simd/LineKernel.h"

namespace ZrConvertersLib {

/// A buffer in the first-level cache from which lines are copied to the destination with non-temporal stores.
/// It holds a piece of each line that a kernel writes at a time: up to two lines of up to three planes. A
/// piece has the same offset in a cache line here as in the destination, so that whole cache lines are copied
/// except at the ends of a line. An incomplete last cache line stays in the buffer and is completed by the
/// next piece.
class StreamBuffer {
 public:
  struct Shape {
    std::size_t lines, planes;
    std::ptrdiff_t planeDistance;  ///< of the destination
  };

  StreamBuffer(const Shape& shape, std::uint8_t* const* destinations, simd::StreamFunction stream);

  /// Where the next piece of a line goes; its planes follow at PlaneDistance().
  std::uint8_t* Next(std::size_t line) const { return mNext[line]; }
  std::ptrdiff_t PlaneDistance() const { return mPlaneDistance; }

  /// Bytes of a line's next piece: `most`, reduced by the smallest multiple of `step` after which the first
  /// line continues at a cache line, but never below `least`.
  std::size_t PieceToCacheLine(std::size_t step, std::size_t least, std::size_t most) const;

  /// Prepares the buffer for a piece of so many bytes per line.
  void Reserve(std::size_t bytes);

  /// Call it when a piece of so many bytes per line is complete: copies the whole cache lines that it fills.
  void Advance(std::size_t bytes);

  /// Copies what is left in the buffer.
  void Finish();

 private:
  static constexpr std::size_t kMostLines = 2, kMostPlanes = 3;

  /// Bytes of all lines, not counting what each has to begin within a cache line.
  static constexpr std::size_t kRoom = std::size_t{12} << 10;

  /// One plane of a line: the first byte that is not stored yet, and how far from there it goes.
  struct Rest {
    std::uint8_t* staged;
    std::ptrdiff_t distance;

    std::uint8_t* Destination() const { return OffsetBy(staged, distance); }
  };

  static std::size_t InCacheLine(const std::uint8_t* p) {
    return reinterpret_cast<std::uintptr_t>(p) % kCacheLine;
  }

  std::uint8_t* Begin(std::size_t line) { return mBytes + line * mShape.planes * (mRoom + 2 * kCacheLine); }
  template <class F>
  void EachPlane(F f);
  void StoreBefore(const std::uint8_t* end, Rest& rest) const;

  Shape mShape;
  simd::StreamFunction mStream;
  std::size_t mRoom;  ///< of a plane of a line
  std::ptrdiff_t mPlaneDistance;
  std::uint8_t* mNext[kMostLines];
  Rest mRest[kMostLines][kMostPlanes];
  alignas(kCacheLine) std::uint8_t mBytes[kRoom + kMostLines * kMostPlanes * 2 * kCacheLine];
};

}  // namespace ZrConvertersLib
