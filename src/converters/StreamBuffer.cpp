#include "converters/StreamBuffer.h"

#include <cstring>

namespace ZrConvertersLib {

namespace {

std::ptrdiff_t Distance(const std::uint8_t* from, const std::uint8_t* to) {
  return static_cast<std::ptrdiff_t>(reinterpret_cast<std::uintptr_t>(to) -
                                     reinterpret_cast<std::uintptr_t>(from));
}

}  // namespace

StreamBuffer::StreamBuffer(const Shape& shape, std::uint8_t* const* destinations, simd::StreamFunction stream)
    : mShape(shape),
      mStream(stream),
      mRoom(kRoom / (shape.lines * shape.planes) / kCacheLine * kCacheLine),
      mPlaneDistance(static_cast<std::ptrdiff_t>(
          mRoom + kCacheLine + static_cast<std::size_t>(shape.planeDistance) % kCacheLine)) {
  for (std::size_t line = 0; line < shape.lines; ++line) {
    std::uint8_t* const destination = simd::LoadedSingly(destinations[line]);
    mNext[line] = Begin(line) + InCacheLine(destination);
    for (std::size_t plane = 0; plane < shape.planes; ++plane) {
      const auto i = static_cast<std::ptrdiff_t>(plane);
      std::uint8_t* const staged = mNext[line] + i * mPlaneDistance;
      mRest[line][plane] = {staged, Distance(staged, OffsetBy(destination, i * shape.planeDistance))};
    }
  }
}

/// Calls `f` with each plane of each line, and with the end of its converted bytes.
template <class F>
void StreamBuffer::EachPlane(F f) {
  for (std::size_t line = 0; line < mShape.lines; ++line)
    for (std::size_t plane = 0; plane < mShape.planes; ++plane)
      f(mRest[line][plane], mNext[line] + static_cast<std::ptrdiff_t>(plane) * mPlaneDistance);
}

std::size_t StreamBuffer::PieceToCacheLine(std::size_t step, std::size_t least, std::size_t most) const {
  // After so many steps the offsets in a cache line repeat.
  for (std::size_t i = 0, bytes = most; i < kCacheLine && bytes >= least; ++i, bytes -= step)
    if (InCacheLine(mNext[0] + bytes) == 0) return bytes;
  return most;
}

void StreamBuffer::Reserve(std::size_t bytes) {
  if (static_cast<std::size_t>(mNext[0] - Begin(0)) + bytes <= mRoom) return;
  EachPlane([&](Rest& rest, const std::uint8_t* end) { StoreBefore(end, rest); });
  // What is left of each plane is less than a cache line and moves to where the first piece began.
  for (std::size_t line = 0; line < mShape.lines; ++line)
    mNext[line] = Begin(line) + InCacheLine(mNext[line]);
  EachPlane([&](Rest& rest, std::uint8_t* end) {
    std::uint8_t* const staged = end - InCacheLine(end);
    if (end != staged) std::memcpy(staged, rest.staged, kCacheLine);
    rest.distance += Distance(staged, rest.staged);
    rest.staged = staged;
  });
}

void StreamBuffer::Advance(std::size_t bytes) {
  for (std::size_t line = 0; line < mShape.lines; ++line) mNext[line] += bytes;
  EachPlane([&](Rest& rest, const std::uint8_t* end) { StoreBefore(end, rest); });
}

void StreamBuffer::Finish() {
  EachPlane([&](Rest& rest, const std::uint8_t* end) {
    StoreBefore(end, rest);
    std::memcpy(rest.Destination(), rest.staged, static_cast<std::size_t>(end - rest.staged));
  });
}

/// Copies the bytes before `end` except an incomplete last cache line. An incomplete first cache line is
/// copied separately.
void StreamBuffer::StoreBefore(const std::uint8_t* end, Rest& rest) const {
  const auto size = static_cast<std::size_t>(end - rest.staged);
  const std::size_t toCacheLine = (kCacheLine - InCacheLine(rest.staged)) % kCacheLine;
  if (size < toCacheLine + kCacheLine) return;
  const std::size_t whole = (size - toCacheLine) / kCacheLine * kCacheLine;
  if (toCacheLine != 0) std::memcpy(rest.Destination(), rest.staged, toCacheLine);
  mStream(rest.Destination() + toCacheLine, rest.staged + toCacheLine, whole);
  rest.staged += toCacheLine + whole;
}

}  // namespace ZrConvertersLib
