#pragma once

#include "simd/LineKernel.h"
#include "simd/Vec.h"

/// What goes from a reading to a writing: one block of kWidth pixels, a channel held either as bytes (bits 8
/// to 15 of the 16-bit scale) or as words (the whole scale). Each writing names the form it wants; readings
/// give the form they have cheapest.

namespace ZrConvertersLib::simd {
namespace {

template <class Channel>
struct Grey {
  Channel value;

  ZR_INLINE Channel Red() const { return value; }
  ZR_INLINE Channel Green() const { return value; }
  ZR_INLINE Channel Blue() const { return value; }
};

template <class Channel>
struct Colour {
  Channel red, green, blue;

  ZR_INLINE Channel Red() const { return red; }
  ZR_INLINE Channel Green() const { return green; }
  ZR_INLINE Channel Blue() const { return blue; }
};

template <class Channel>
Grey(Channel) -> Grey<Channel>;
template <class Channel>
Colour(Channel, Channel, Channel) -> Colour<Channel>;

template <class Channel>
struct Cast;

template <>
struct Cast<U8> {
  static ZR_INLINE U8 From(U8 x) { return x; }
  static ZR_INLINE U8 From(const Words& x) { return NarrowHigh(x); }
};

template <>
struct Cast<Words> {
  static ZR_INLINE Words From(U8 x) { return WidenHigh(x); }
  static ZR_INLINE Words From(const Words& x) { return x; }
};

template <class To, class From>
ZR_INLINE Grey<To> In(const Grey<From>& block) {
  return {Cast<To>::From(block.value)};
}

template <class To, class From>
ZR_INLINE Colour<To> In(const Colour<From>& block) {
  return {Cast<To>::From(block.red), Cast<To>::From(block.green), Cast<To>::From(block.blue)};
}

}  // namespace
}  // namespace ZrConvertersLib::simd
