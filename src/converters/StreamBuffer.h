#pragma once

#include <cstddef>
#include <cstdint>

#include "core/PointerOffset.h"
#include "simd/LineKernel.h"

namespace ZrConvertersLib {

/// The lines that a kernel makes at a time, up to two of up to three planes, on their way past the caches.
/// They are made piece by piece in the first-level cache, as far into a cache line there as in the
/// destination, so that all but their ends is stored by whole cache lines. What a piece does not fill of its
/// last one waits for the next piece.
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

  /// Bytes of a line's next piece: `most` or, if that can be, less by as few times `step` as let the first
  /// line go on with a cache line, but `least`.
  std::size_t PieceToCacheLine(std::size_t step, std::size_t least, std::size_t most) const;

  /// Makes room for a piece of so many bytes a line.
  void Reserve(std::size_t bytes);

  /// After a piece of so many bytes a line has been made: stores what whole cache lines it fills.
  void Advance(std::size_t bytes);

  /// Stores all that is left.
  void Finish();

 private:
  static constexpr std::size_t kCacheLine = 64, kMostLines = 2, kMostPlanes = 3;

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
