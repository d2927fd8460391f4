#pragma once

#include "simd/Blocks.h"

/// The mean of two samples of 8 bits, in the form of channel that is asked for.

namespace ZrConvertersLib::simd {
namespace {

template <class Channel>
struct MeanOfTwo;

/// Rounded down, as bytes.
template <>
struct MeanOfTwo<U8> {
  static ZR_INLINE U8 Get(U8 a, U8 b) { return (a & b) + (As<U8>(As<U16>(a ^ b) >> 1) & Splat8(0x7F)); }
};

/// On the 16-bit scale, which keeps the half that a byte cannot hold.
template <>
struct MeanOfTwo<Words> {
  static ZR_INLINE Words Get(U8 a, U8 b) { return InterleaveBytes((a ^ b) << 7, MeanOfTwo<U8>::Get(a, b)); }
};

}  // namespace
}  // namespace ZrConvertersLib::simd
