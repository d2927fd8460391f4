#pragma once

#include "simd/LineKernel.h"
#include "simd/Vec.h"

/// What goes from a reader to a writer: one block of kWidth pixels, a channel held either as bytes (bits 8
/// to 15 of the 16-bit scale) or as words (the whole scale). Each writer names the form it wants; readers
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

/// Words of grey whose upper six bits alone count.
struct UpperSix {
  U16 a, b;
};

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

template <>
struct Cast<UpperSix> {
  static ZR_INLINE UpperSix From(U8 x) { return From(InterleaveBytes(x, x)); }
  static ZR_INLINE UpperSix From(const Words& x) { return {x.a, x.b}; }
  static ZR_INLINE UpperSix From(const UpperSix& x) { return x; }
};

template <class To, class From>
ZR_INLINE Grey<To> In(const Grey<From>& block) {
  return {Cast<To>::From(block.value)};
}

template <class To, class From>
ZR_INLINE Colour<To> In(const Colour<From>& block) {
  return {Cast<To>::From(block.red), Cast<To>::From(block.green), Cast<To>::From(block.blue)};
}

/// The words of the first or of the second half of the pixels, as the bytes that they are.
ZR_INLINE Grey<U8> FirstHalf(const Grey<Words>& block) {
  return {As<U8>(block.value.a)};
}
ZR_INLINE Grey<U8> SecondHalf(const Grey<Words>& block) {
  return {As<U8>(block.value.b)};
}
ZR_INLINE Colour<U8> FirstHalf(const Colour<Words>& block) {
  return {As<U8>(block.red.a), As<U8>(block.green.a), As<U8>(block.blue.a)};
}
ZR_INLINE Colour<U8> SecondHalf(const Colour<Words>& block) {
  return {As<U8>(block.red.b), As<U8>(block.green.b), As<U8>(block.blue.b)};
}

}  // namespace
}  // namespace ZrConvertersLib::simd
