#include "simd/DevelopKernels.h"
#include "simd/Line.h"
#include "simd/Saturate.h"

/// The directional demosaic: green along the direction in which the mosaic changes less, then red and blue by
/// their difference to green. Every function here sees columns of one parity only, so a vector holds sites of
/// one colour.

namespace ZrConvertersLib::simd {
namespace {

ZR_INLINE U16 LoadSites(const std::uint8_t* p) {
  return As<U16>(Load(p));
}

/// A line in natural order to its even and its odd columns.
void Split(const SplitArgs& args) {
  for (std::size_t x = 0; x < args.pixels; x += kWidth) {
    const Words words = LoadWords(args.samples + 2 * x);
    const U32 a = As<U32>(words.a), b = As<U32>(words.b);
    Store(args.even + x, ShiftRight(NarrowHigh(a << 16, b << 16), args.shift));
    Store(args.odd + x, ShiftRight(NarrowHigh(a, b), args.shift));
  }
}

/// The same from bytes.
void SplitBytes(const SplitArgs& args) {
  for (std::size_t x = 0; x < args.pixels; x += kWidth) {
    const U16 both = As<U16>(Load(args.samples + x));
    Store(args.even + x, ShiftLeft(both & Splat16(0xFF), args.shift));
    Store(args.odd + x, ShiftLeft(both >> 8, args.shift));
  }
}

/// A site and its neighbours along one direction.
struct Neighbours {
  U16 near[2], far[2];
};

/// Two sites of a colour and the green there.
struct Pair {
  U16 sample[2], green[2];
};

/// Samples on a scale of 14 bits, results on one of 16. Saturating subtractions of unsigned words keep the
/// positive and the negative part of a difference apart, so that nothing needs a seventeenth bit.
struct Fourteen {
  /// One direction's green, complemented, and how much the mosaic changes along it.
  struct Estimate {
    U16 complement, change;
  };

  static ZR_INLINE Estimate Along(U16 twice, const Neighbours& n) {
    const U16 far = n.far[0] + n.far[1];
    const U16 rise = SubtractClipped(twice, far), fall = SubtractClipped(far, twice);
    const U16 mean = (n.near[0] + n.near[1]) << 1;
    const U16 green = SubtractClipped(AddClipped(mean, rise), fall);
    return {~green, Distance(n.near[0], n.near[1]) + (rise | fall)};
  }

  /// Means of complements round up, which is down for the values themselves.
  static ZR_INLINE U16 Green(U16 site, const Neighbours& across, const Neighbours& down) {
    const U16 twice = site + site;
    const Estimate h = Along(twice, across), v = Along(twice, down);
    const U16 mean = MeanUp(h.complement, v.complement);
    const U16 nearer = SelectLess(h.change, v.change, h.complement, v.complement);
    const U16 less = Min16(h.change, v.change), more = Max16(h.change, v.change);
    const U16 found = SelectLess(less, MeanUp(more, U16{}), nearer, MeanUp(nearer, mean));
    return ~SelectLess(less, more, found, mean);
  }

  static ZR_INLINE U16 Full(U16 sample) { return sample << 2; }

  /// base + samples - greens, the two means of what they name, clipped.
  static ZR_INLINE U16 Shifted(U16 base, U16 samples, U16 greens) {
    const U16 rise = SubtractClipped(samples, greens), fall = SubtractClipped(greens, samples);
    return SubtractClipped(AddClipped(base, rise), fall);
  }

  static ZR_INLINE U16 FromTwo(U16 base, const Pair& pair) {
    const U16 sum = pair.sample[0] + pair.sample[1];
    return Shifted(base, sum + sum, MeanUp(pair.green[0], pair.green[1]));
  }

  /// The mean of four greens rounded up once: the means of two must not both round up.
  static ZR_INLINE U16 FromFour(U16 base, const Pair& a, const Pair& b) {
    const U16 bothOdd = (a.green[0] ^ a.green[1]) & (b.green[0] ^ b.green[1]) & Splat16(1);
    const U16 greens = MeanUp(MeanUp(a.green[0], a.green[1]) - bothOdd, MeanUp(b.green[0], b.green[1]));
    return Shifted(base, (a.sample[0] + a.sample[1]) + (b.sample[0] + b.sample[1]), greens);
  }
};

/// Samples of 16 bits: sums take 18 bits and a sign, so each half of a vector is worked on in 32-bit
/// elements.
struct Sixteen {
  static ZR_INLINE U16 Green(U16 site, const Neighbours& across, const Neighbours& down) {
    return Halves(
        [](const S32* x) ZR_ALWAYS {
          const Estimate h = Along(x[0], x + 1), v = Along(x[0], x + 5);
          const S32 sum = h.green + v.green;
          const S32 nearH = (sum + h.green + h.green) >> 2, nearV = (sum + v.green + v.green) >> 2;
          const S32 hLess = h.change < v.change, vLess = v.change < h.change;
          const S32 hMuchLess = h.change + h.change < v.change, vMuchLess = v.change + v.change < h.change;
          const S32 close = Choose(hLess, nearH, Choose(vLess, nearV, sum >> 1));
          return Choose(hMuchLess, h.green, Choose(vMuchLess, v.green, close));
        },
        site, across.near[0], across.near[1], across.far[0], across.far[1], down.near[0], down.near[1],
        down.far[0], down.far[1]);
  }

  static ZR_INLINE U16 Full(U16 sample) { return sample; }

  static ZR_INLINE U16 FromTwo(U16 base, const Pair& p) {
    return Halves([](const S32* x) ZR_ALWAYS { return Clip16(x[0] + ((x[1] + x[2] - x[3] - x[4]) >> 1)); },
                  base, p.sample[0], p.sample[1], p.green[0], p.green[1]);
  }

  static ZR_INLINE U16 FromFour(U16 base, const Pair& a, const Pair& b) {
    return Halves(
        [](const S32* x) ZR_ALWAYS {
          const S32 samples = x[1] + x[2] + x[3] + x[4], greens = x[5] + x[6] + x[7] + x[8];
          return Clip16(x[0] + ((samples - greens) >> 2));
        },
        base, a.sample[0], a.sample[1], b.sample[0], b.sample[1], a.green[0], a.green[1], b.green[0],
        b.green[1]);
  }

 private:
  struct Estimate {
    S32 green, change;
  };

  /// Of the near and then the far neighbours.
  static ZR_INLINE Estimate Along(S32 site, const S32* n) {
    const S32 bend = site + site - n[2] - n[3], sum = n[0] + n[1];
    return {Clip16((sum + sum + bend) >> 2), Magnitude(n[0] - n[1]) + Magnitude(bend)};
  }

  static ZR_INLINE S32 Choose(S32 mask, S32 a, S32 b) { return (mask & a) | (~mask & b); }
  static ZR_INLINE S32 Magnitude(S32 x) { return (x ^ (x >> 31)) - (x >> 31); }
  static ZR_INLINE S32 Clip16(S32 x) {
    const S32 full = S32{} + 0xFFFF;
    return Choose(x > full, full, x & ~(x >> 31));
  }

  /// f of all elements of words, in 32 bits: the order in which halves are taken apart is that in which they
  /// are put together.
  template <class F, class... Word>
  static ZR_INLINE U16 Halves(F f, Word... words) {
    const S32 low[] = {As<S32>(UnpackLow16(As<U8>(words), U8{}))...};
    const S32 high[] = {As<S32>(UnpackHigh16(As<U8>(words), U8{}))...};
    const S32 offset = S32{} + 0x8000;
    return As<U16>(PackSigned(f(low) - offset, f(high) - offset)) ^ Splat16(0x8000);
  }
};

template <class Scale>
void Green(const GreenArgs& args) {
  for (std::size_t at = 0; at < 2 * args.sites; at += kWidth) {
    const Neighbours across{{LoadSites(args.west + at), LoadSites(args.east + at)},
                            {LoadSites(args.site + at - 2), LoadSites(args.site + at + 2)}};
    const Neighbours down{{LoadSites(args.north + at), LoadSites(args.south + at)},
                          {LoadSites(args.farNorth + at), LoadSites(args.farSouth + at)}};
    Store(args.green + at, Scale::Green(LoadSites(args.site + at), across, down));
  }
}

ZR_INLINE Pair LoadPair(const Sites& a, const Sites& b, std::ptrdiff_t atA, std::ptrdiff_t atB) {
  return {{LoadSites(a.sample + atA), LoadSites(b.sample + atB)},
          {LoadSites(a.green + atA), LoadSites(b.green + atB)}};
}

/// The pixels of a line whose own colour is in even (0) or odd (1) columns.
template <class Scale, int own>
ZR_INLINE void PlanesOf(const ColourArgs& args) {
  constexpr std::ptrdiff_t kOwn = own * std::ptrdiff_t{kHalfBytes}, kBetween = kHalfBytes - kOwn;
  // From a green site to the site of the other half on its left, and from one of the own colour.
  constexpr std::ptrdiff_t kLeft = own == 0 ? 0 : -2, kCornerLeft = own == 0 ? -2 : 0;
  const Sites line = args.own, above = args.above, below = args.below;
  const std::uint8_t* const greenSite = args.greenSite;
  std::uint8_t *const first = args.planes[0], *const green = args.planes[1], *const other = args.planes[2];
  const auto bytes = static_cast<std::ptrdiff_t>(2 * args.sites);
  for (std::ptrdiff_t at = 0; at < bytes; at += kWidth) {
    const U16 found = LoadSites(line.green + at);
    const Pair left = LoadPair(above, below, at + kCornerLeft, at + kCornerLeft);
    const Pair right = LoadPair(above, below, at + kCornerLeft + 2, at + kCornerLeft + 2);
    Store(first + kOwn + at, Scale::Full(LoadSites(line.sample + at)));
    Store(green + kOwn + at, found);
    Store(other + kOwn + at, Scale::FromFour(found, left, right));
    const U16 sample = Scale::Full(LoadSites(greenSite + at));
    Store(first + kBetween + at, Scale::FromTwo(sample, LoadPair(line, line, at + kLeft, at + kLeft + 2)));
    Store(green + kBetween + at, sample);
    Store(other + kBetween + at, Scale::FromTwo(sample, own == 0 ? right : left));
  }
}

template <class Scale>
void Planes(const ColourArgs& args) {
  args.ownIsOdd ? PlanesOf<Scale, 1>(args) : PlanesOf<Scale, 0>(args);
}

template <class Scale>
void GreenOnly(const ColourArgs& args) {
  std::uint8_t* const own = args.planes[1] + (args.ownIsOdd ? kHalfBytes : 0);
  std::uint8_t* const between = args.planes[1] + (args.ownIsOdd ? 0 : kHalfBytes);
  for (std::size_t at = 0; at < 2 * args.sites; at += kWidth) {
    Store(own + at, LoadSites(args.own.green + at));
    Store(between + at, Scale::Full(LoadSites(args.greenSite + at)));
  }
}

}  // namespace

extern const DemosaicKernels ZR_AT_LEVEL(kDemosaicKernels);
constinit const DemosaicKernels ZR_AT_LEVEL(kDemosaicKernels) = {&Split,
                                                                 &SplitBytes,
                                                                 {&Green<Fourteen>, &Green<Sixteen>},
                                                                 {&Planes<Fourteen>, &Planes<Sixteen>},
                                                                 {&GreenOnly<Fourteen>, &GreenOnly<Sixteen>}};

}  // namespace ZrConvertersLib::simd
