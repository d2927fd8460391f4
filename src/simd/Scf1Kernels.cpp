#include "simd/Scf1Kernel.h"

#include "simd/Floats.h"
#include "simd/Line.h"
#include "simd/Packed.h"
#include "simd/Saturate.h"

/// Kernels of SCF1 mosaics. A 32-bit element of a row of words is what a cell has in one line: the site of
/// the even column in the lower half, that of the odd one in the upper half. Both are widened where they are,
/// computed and put back without a shuffle.
///
/// Samples of up to 14 bits are interpolated from words, even and odd columns apart: on the 16-bit scale the
/// means of two of them, and of two such means, have no fraction. Rows of cells hold what is missing to
/// 65535, because there is an instruction for means that are rounded up.

namespace ZrConvertersLib::simd {
namespace {

constexpr std::size_t kElement = 4;  ///< bytes of a cell in a row

ZR_INLINE U32 LoadCells(const std::uint8_t* p) {
  return As<U32>(Load(p));
}
ZR_INLINE U32 Even(U32 sites) {
  return sites & Splat32(0xFFFF);
}
ZR_INLINE U32 Odd(U32 sites) {
  return sites >> 16;
}

/// The sums of the coloured sites of cells.
ZR_INLINE U32 SumColour(U32 upper, U32 lower) {
  return Odd(upper) + Even(lower);
}
ZR_INLINE U32 SumWhite(U32 upper, U32 lower) {
  return Even(upper) + Odd(lower);
}

/// Elements of the one in even places, of the other in odd ones.
template <class V>
ZR_INLINE V Alternate(V even, V odd) {
#if !defined(__x86_64__) || defined(__SSE4_1__)
  constexpr int kCount = int{sizeof(V) / sizeof even[0]};
  return [&]<int... i>(std::integer_sequence<int, i...>) ZR_ALWAYS {
    return __builtin_shufflevector(even, odd, (i % 2 == 0 ? i : i + kCount)...);
  }
  (std::make_integer_sequence<int, kCount>());
#else
  struct IsEven {
    static constexpr bool At(int i) { return i / int{sizeof even[0]} % 2 == 0; }
  };
  return As<V>(Select(Where<IsEven>(), As<U8>(even), As<U8>(odd)));
#endif
}

/// Of each `count` words the one at `place`, as all of them.
template <int count, int place, int... i>
ZR_INLINE U16 RepeatedWord(U16 x, std::integer_sequence<int, i...>) {
  return __builtin_shufflevector(x, x, i / count * count + place...);
}
template <int count, int place>
ZR_INLINE U16 RepeatedWord(U16 x) {
  return RepeatedWord<count, place>(x, std::make_integer_sequence<int, kWidth / 2>());
}

/// The colours of the tiles of a block, of which a tile is eight bytes in two vectors of words, or four bytes
/// in one. A colour is on the scale of its plane in word kPlace of its tile.
template <class Values>
struct TileColours {
  static constexpr int kPlace[] = {1, 0, 0};
  Values v[3];
};

/// A vector of coloured sites of two lines to the colours of tiles: of the two lines in which green stands
/// on the left, and of the two others. On the 16-bit scale in the lower half of each cell.
struct SumsOfWords {
  static ZR_INLINE TileColours<U16> Get(U16 greenLeft, U16 greenRight) {
    const U32 a = Even(As<U32>(greenLeft)) + Odd(As<U32>(greenLeft));
    const U32 b = Even(As<U32>(greenRight)) + Odd(As<U32>(greenRight));
    const U32 greens = a + As<U32>(As<U64>(b) >> 32);
    return {{As<U16>(a >> 1), As<U16>(greens >> 2), As<U16>(b >> 1)}};
  }
};

/// The same for samples of up to 12 bits, where no mean has a fraction.
struct ExactMeans {
  static ZR_INLINE U16 OfCells(U16 x) { return MeanUp(x, As<U16>(As<U32>(x) >> 16)); }

  static ZR_INLINE TileColours<U16> Get(U16 greenLeft, U16 greenRight) {
    const U16 a = OfCells(greenLeft), b = OfCells(greenRight);
    return {{a, MeanUp(a, As<U16>(As<U64>(b) >> 32)), b}};
  }
};

/// Lines of words.
struct WordSites {
  using Means = SumsOfWords;
  static constexpr int kPixels = 1, kBytes = 2;
  static constexpr bool kLanesApart = false;

  template <int half>
  static ZR_INLINE U16 Coloured(const std::uint8_t* upper, const std::uint8_t* lower, std::uint32_t shift) {
    return ShiftLeft(Alternate(As<U16>(Load(lower + half * kWidth)), As<U16>(Load(upper + half * kWidth))),
                     shift);
  }
};

/// Lines of packed samples, which are scaled after two lines have become one. With AVX2 each half of a block
/// is every second lane of it.
template <class Form>
struct PackedSites {
  using Means = ExactMeans;
  using Groups = Spread<typename Form::Map>;
  static constexpr int kPixels = Form::kPixels, kBytes = Form::kBytes;
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
  static constexpr bool kLanesApart = true;
#else
  static constexpr bool kLanesApart = false;
#endif

  template <int half>
  static ZR_INLINE U16 Coloured(const std::uint8_t* upper, const std::uint8_t* lower, std::uint32_t) {
    constexpr int kApart = kLanesApart ? 2 : 1, kAt = half * Groups::kTaken / kApart;
    const U16 sites = Alternate(As<U16>(Groups::template Read<kApart>(lower + kAt)),
                                As<U16>(Groups::template Read<kApart>(upper + kAt)));
    constexpr auto& kFactors = Form::kFactors;
    return Form::Scaled(sites, EveryFour<kFactors[0], kFactors[1], kFactors[2], kFactors[3]>());
  }
};

/// Planes of bytes and of words, from vectors of words.
struct BytePlanes {
  static constexpr int kBytes = 1;

  /// The upper bytes of words `place` of the tiles of a and of b, four times each.
  template <int place, bool lanesApart>
  static ZR_INLINE U8 Repeated(U16 a, U16 b) {
#if defined(__x86_64__) && !defined(__SSSE3__)
    return NarrowHigh(Words{RepeatedWord<4, 2 * place>(a), RepeatedWord<4, 2 * place>(b)});
#else
    struct Index {
      static constexpr int At(int i) { return i % (kLane / 2) / 4 * 8 + 4 * place + 1; }
    };
#if defined(__AVX512VBMI__)
    const auto index = As<Native>(Constant<Index>::Get());
    const Native low = _mm512_permutexvar_epi8(index, As<Native>(a));
    return As<U8>(_mm512_mask_permutexvar_epi8(low, 0xFFFFFFFF00000000, index, As<Native>(b)));
#else
    struct Low {
      static constexpr int At(int i) { return i < kLane / 2 ? Index::At(i) : -1; }
    };
    struct High {
      static constexpr int At(int i) { return i < kLane / 2 ? -1 : Index::At(i); }
    };
    const U8 both = ShuffleLanes<Low>(As<U8>(a)) | ShuffleLanes<High>(As<U8>(b));
    return lanesApart ? both : JoinHalves(both);
#endif
#endif
  }

  template <int place, bool lanesApart>
  static ZR_INLINE void Put(std::uint8_t* plane, U16 a, U16 b) {
    Store(plane, Repeated<place, lanesApart>(a, b));
  }
};

struct WordPlanes {
  static constexpr int kBytes = 2;

  template <int place, bool lanesApart>
  static ZR_INLINE void Put(std::uint8_t* plane, U16 a, U16 b) {
    const U16 first = RepeatedWord<4, 2 * place>(a), second = RepeatedWord<4, 2 * place>(b);
    PutLanes<lanesApart>(plane, As<U8>(first), As<U8>(second));
  }

 private:
  template <bool lanesApart>
  static ZR_INLINE void PutLanes(std::uint8_t* plane, U8 a, U8 b) {
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
    if constexpr (lanesApart) {
      Store(plane, _mm256_permute2x128_si256(As<Native>(a), As<Native>(b), 0x20));
      Store(plane + kWidth, _mm256_permute2x128_si256(As<Native>(a), As<Native>(b), 0x31));
      return;
    }
#endif
    Store(plane, a);
    Store(plane + kWidth, b);
  }
};

/// Asks memory for the bytes of a block of each line.
template <class Sites>
ZR_INLINE void PrefetchTiles(const Scf1Tiles& tiles, std::size_t at) {
  constexpr int kBlock = kWidth / Sites::kPixels * Sites::kBytes;
  Unrolled<4>([&](auto i) ZR_ALWAYS { PrefetchInto<kBlock, 2>(tiles.line[i] + at, tiles.prefetch); });
}

/// A copy of the arguments, which no store of pixels can change, with green on the left in the first two
/// lines and the colour beside it in the first plane. Pointers are loaded as they were stored, one by one: a
/// load of two would wait until both stores have reached the cache.
ZR_INLINE Scf1Tiles GreenFirst(const Scf1Tiles& tiles) {
  Scf1Tiles result;
  const int first = tiles.greenFirst ? 0 : 2;
  for (int i = 0; i < 4; ++i) result.line[i] = LoadedSingly(tiles.line[(i + first) % 4]);
  result.plane[0] = LoadedSingly(tiles.plane[first]);
  result.plane[1] = LoadedSingly(tiles.plane[1]);
  result.plane[2] = LoadedSingly(tiles.plane[2 - first]);
  result.pixels = tiles.pixels;
  result.shift = tiles.shift;
  result.prefetch = tiles.prefetch;
  return result;
}

template <class Sites, class Planes, bool greenOnly>
ZR_INLINE void RunTiles(const Scf1Tiles& given) {
  const Scf1Tiles tiles = GreenFirst(given);
  EachBlock<Planes::kBytes, 4>(tiles.pixels, tiles.plane[1], [&](std::size_t x) ZR_ALWAYS {
    const std::size_t at = x / Sites::kPixels * Sites::kBytes;
    PrefetchTiles<Sites>(tiles, at);
    const auto sites = [&](auto half, int line) ZR_ALWAYS {
      return Sites::template Coloured<half>(tiles.line[line] + at, tiles.line[line + 1] + at, tiles.shift);
    };
    const auto colours = [&](auto half)
                             ZR_ALWAYS { return Sites::Means::Get(sites(half, 0), sites(half, 2)); };
    const TileColours<U16> a = colours(std::integral_constant<int, 0>());
    const TileColours<U16> b = colours(std::integral_constant<int, 1>());
    Unrolled<3>([&](auto i) ZR_ALWAYS {
      if constexpr (!greenOnly || i == 1)
        Planes::template Put<TileColours<U16>::kPlace[i], Sites::kLanesApart>(
            tiles.plane[i] + Planes::kBytes * x, a.v[i], b.v[i]);
    });
  });
}

template <class Sites, class Planes>
void Tiles(const Scf1Tiles& tiles) {
  tiles.greenOnly ? RunTiles<Sites, Planes, true>(tiles) : RunTiles<Sites, Planes, false>(tiles);
}

/// Sums of bytes, a word for each cell: 9 bits of the third and the first colour, 10 of green.
ZR_INLINE TileColours<U16> SumsOfBytes(U16 greenLeft, U16 greenRight) {
  const U16 a = (greenLeft >> 8) + (greenLeft & Splat16(0xFF));
  const U16 b = (greenRight >> 8) + (greenRight & Splat16(0xFF));
  return {{a, a + As<U16>(As<U32>(b) >> 16), b}};
}

/// Planes of bytes and of words, from sums of so many bits.
struct BytePlanesOfSums : BytePlanes {
  template <int place, int bits>
  static ZR_INLINE void Put(std::uint8_t* plane, U16 sums) {
    const U16 x = sums >> (bits - 8);
#if defined(__x86_64__) && !defined(__SSSE3__)
    Store(plane, RepeatedWord<2, place>(x | (x << 8)));
#else
    struct Index {
      static constexpr int At(int i) { return i / 4 * 4 + 2 * place; }
    };
    Store(plane, ShuffleLanes<Index>(As<U8>(x)));
#endif
  }
};

struct WordPlanesOfSums : WordPlanes {
  template <int place, int bits>
  static ZR_INLINE void Put(std::uint8_t* plane, U16 sums) {
    const U8 x = SpreadHalves(As<U8>(RepeatedWord<2, place>(sums << (16 - bits))));
    Store(plane, UnpackLow32(x, x));
    Store(plane + kWidth, UnpackHigh32(x, x));
  }
};

struct ByteSites {
  static constexpr int kPixels = 1, kBytes = 1;
};

template <class Planes, bool greenOnly>
ZR_INLINE void RunByteTiles(const Scf1Tiles& given) {
  const Scf1Tiles tiles = GreenFirst(given);
  EachBlock<Planes::kBytes, 4>(tiles.pixels, tiles.plane[1], [&](std::size_t x) ZR_ALWAYS {
    PrefetchTiles<ByteSites>(tiles, x);
    const auto line = [&](int i) ZR_ALWAYS { return As<U16>(Load(tiles.line[i] + x)); };
    const auto sites = [&](int i)
                           ZR_ALWAYS { return (line(i) & Splat16(0xFF00)) | (line(i + 1) & Splat16(0xFF)); };
    const TileColours<U16> sums = SumsOfBytes(sites(0), sites(2));
    Unrolled<3>([&](auto i) ZR_ALWAYS {
      if constexpr (!greenOnly || i == 1)
        Planes::template Put<TileColours<U16>::kPlace[i], i == 1 ? 10 : 9>(
            tiles.plane[i] + Planes::kBytes * x, sums.v[i]);
    });
  });
}

template <class Planes>
void ByteTiles(const Scf1Tiles& tiles) {
  tiles.greenOnly ? RunByteTiles<Planes, true>(tiles) : RunByteTiles<Planes, false>(tiles);
}

/// Packed samples are read where they lie only if nothing beyond them is loaded.
template <class Form, class Planes>
constexpr Scf1TilesFunction PackedTiles() {
  if constexpr (PackedSites<Form>::Groups::kOverread == 0)
    return Tiles<PackedSites<Form>, Planes>;
  else
    return nullptr;
}

void Cells(const Scf1Cells& cells) {
  for (std::size_t at = 0; at < cells.cells * kElement; at += kWidth) {
    const U32 upper = LoadCells(cells.line[0] + at), lower = LoadCells(cells.line[1] + at);
    Store(cells.colour + at, SumColour(upper, lower) >> 1);
    Store(cells.white + at, SumWhite(upper, lower) >> 1);
  }
}

/// One value for each colour: of the one that stands beside green in this row of cells, of green, of the
/// third.
template <class Value>
struct Three {
  Value v[3];
};

/// Elements of the one where cells are green, of the other in between.
template <bool greenFirst, class V>
ZR_INLINE V Alternating(V atGreen, V elsewhere) {
  return greenFirst ? Alternate(atGreen, elsewhere) : Alternate(elsewhere, atGreen);
}

/// The bilinear means of a row of cells from it and its neighbours.
template <bool greenFirst>
ZR_INLINE Three<U32> Means(const std::uint8_t* const (&row)[3], std::size_t at) {
  const std::uint8_t *const above = row[0] + at, *const own = row[1] + at, *const below = row[2] + at;
  const auto sides = [](const std::uint8_t* p)
                         ZR_ALWAYS { return LoadCells(p - kElement) + LoadCells(p + kElement); };
  const U32 centre = LoadCells(own), beside = sides(own);
  const U32 vertical = LoadCells(above) + LoadCells(below);
  const U32 corners = sides(above) + sides(below);
  return {{Alternating<greenFirst>(beside >> 1, centre),
           Alternating<greenFirst>(centre, (beside + vertical) >> 2),
           Alternating<greenFirst>(vertical >> 1, corners >> 2)}};
}

/// How much of white each colour is.
template <bool greenFirst>
ZR_INLINE Three<F32> Quotients(const Scf1CellRow& row, std::size_t at) {
  const Three<U32> colour = Means<greenFirst>(row.colour, at), white = Means<greenFirst>(row.white, at);
  Three<F32> quotient;
  Unrolled<3>([&](auto i) ZR_ALWAYS {
    quotient.v[i] = ToFloat(colour.v[i]) / Larger(ToFloat(white.v[i]), F32{} + 1.0F);
  });
  return quotient;
}

/// White at the pixels of even and of odd columns.
struct White {
  F32 even, odd;
};

ZR_INLINE U32 MeanOfFour(U32 a, U32 b, U32 c, U32 d) {
  return (a + b + c + d) >> 2;
}

/// Of the upper line, where even columns are white.
ZR_INLINE White UpperWhite(const std::uint8_t* const (&line)[4], std::size_t at) {
  const U32 above = LoadCells(line[0] + at), own = LoadCells(line[1] + at), below = LoadCells(line[2] + at);
  const U32 next = LoadCells(line[1] + at + kElement);
  return {ToFloat(Even(own)), ToFloat(MeanOfFour(Even(own), Even(next), Odd(above), Odd(below)))};
}

/// Of the lower line, where odd columns are.
ZR_INLINE White LowerWhite(const std::uint8_t* const (&line)[4], std::size_t at) {
  const U32 above = LoadCells(line[1] + at), own = LoadCells(line[2] + at), below = LoadCells(line[3] + at);
  const U32 previous = LoadCells(line[2] + at - kElement);
  return {ToFloat(MeanOfFour(Odd(previous), Odd(own), Even(above), Even(below))), ToFloat(Odd(own))};
}

ZR_INLINE U32 Limited(F32 x) {
  return CutToIntegers(Smaller(x, F32{} + 65535.0F));
}

template <bool greenOnly>
ZR_INLINE void StorePixels(std::uint8_t* const (&plane)[3], std::size_t at, const Three<F32>& quotient,
                           const White& white) {
  Unrolled<3>([&](auto i) ZR_ALWAYS {
    if constexpr (!greenOnly || i == 1)
      Store(plane[i] + at, Limited(quotient.v[i] * white.even) | (Limited(quotient.v[i] * white.odd) << 16));
  });
}

template <bool greenFirst, bool greenOnly>
void RunCellRow(const Scf1CellRow& cells) {
  const Scf1CellRow row = cells;  // so that no store can change it
  for (std::size_t at = 0; at < row.cells * kElement; at += kWidth) {
    const Three<F32> quotient = Quotients<greenFirst>(row, at);
    StorePixels<greenOnly>(row.plane[0], at, quotient, UpperWhite(row.line, at));
    StorePixels<greenOnly>(row.plane[1], at, quotient, LowerWhite(row.line, at));
  }
}

void CellRow(const Scf1CellRow& row) {
  if (row.greenOnly)
    row.greenFirst ? RunCellRow<true, true>(row) : RunCellRow<false, true>(row);
  else
    row.greenFirst ? RunCellRow<true, false>(row) : RunCellRow<false, false>(row);
}

ZR_INLINE U16 LoadWord(const std::uint8_t* p) {
  return As<U16>(Load(p));
}

/// The sites of a line in even and in odd columns, on the 16-bit scale.
struct Columns {
  U16 even, odd;
};

struct ByteColumns {
  static constexpr int kPixels = 1, kBytes = 1, kGroup = 2;

  static ZR_INLINE Columns Read(const std::uint8_t* p, std::uint32_t) {
    const U16 both = LoadWord(p);
    return {both << 8, both & Splat16(0xFF00)};
  }
};

struct WordColumns {
  static constexpr int kPixels = 1, kBytes = 2, kGroup = 2;

  static ZR_INLINE Columns Read(const std::uint8_t* p, std::uint32_t shift) {
    return Part(ShiftLeft(LoadWord(p), shift), ShiftLeft(LoadWord(p + kWidth), shift));
  }

 private:
  /// Every second word of two vectors from word `odd` on.
  template <int odd>
  struct Words {
    static constexpr int At(int i) { return (2 * (i / 2) + odd) * 2 % kLane + i % 2; }
  };

  static ZR_INLINE Columns Part(U16 a, U16 b) {
#if defined(__AVX512VBMI__)
    return {EverySecond<0>(As<Native>(a), As<Native>(b)), EverySecond<1>(As<Native>(a), As<Native>(b))};
#elif defined(__x86_64__)
    const U8 x = EvenThenOdd(As<U8>(a)), y = EvenThenOdd(As<U8>(b));
    return {As<U16>(JoinHalves(UnpackLow64(x, y))), As<U16>(JoinHalves(UnpackHigh64(x, y)))};
#else
    return [&]<int... i>(std::integer_sequence<int, i...>) ZR_ALWAYS->Columns {
      return {__builtin_shufflevector(a, b, 2 * i...), __builtin_shufflevector(a, b, 2 * i + 1 ...)};
    }
    (std::make_integer_sequence<int, kWidth / 2>());
#endif
  }

#if defined(__AVX512VBMI__)
  template <int odd>
  static ZR_INLINE U16 EverySecond(Native a, Native b) {
    const auto index = As<Native>(Constant<Words<odd>>::Get());
    const Native low = _mm512_permutexvar_epi8(index, a);
    return As<U16>(_mm512_mask_permutexvar_epi8(low, 0xFFFFFFFF00000000, index, b));
  }
#elif defined(__SSSE3__)
  static ZR_INLINE U8 EvenThenOdd(U8 x) {
    struct Index {
      static constexpr int At(int i) { return i < 8 ? Words<0>::At(i) : Words<1>::At(i - 8); }
    };
    return ShuffleLanes<Index>(x);
  }
#elif defined(__x86_64__)
  static ZR_INLINE U8 EvenThenOdd(U8 x) {
    const U16 pairs = __builtin_shufflevector(As<U16>(x), As<U16>(x), 0, 2, 1, 3, 4, 6, 5, 7);
    return As<U8>(__builtin_shufflevector(As<U32>(pairs), As<U32>(pairs), 0, 2, 1, 3));
  }
#endif
};

/// Packed samples, parted as they are spread.
template <class Form>
struct PackedColumns {
  static constexpr int kPixels = Form::kPixels, kBytes = Form::kBytes, kGroup = 4;

  /// Even columns in the first half of each lane, odd ones in the second.
  struct Map {
    static constexpr int kResult = kLane, kBytes = kLane / 8 * Form::Map::kBytes;
    static constexpr int Sample(int i) { return i / 2 * 2 % (kLane / 2) + i / (kLane / 2); }
    static constexpr int At(int i) {
      return Sample(i) / 4 * Form::Map::kBytes + Form::Map::At(Sample(i) % 4 * 2 + i % 2);
    }
  };
  struct Factors {
    static constexpr int At(int i) {
      return static_cast<int>(Form::kFactors[Map::Sample(i % kLane) % 4] >> (i % 2 * 8) & 0xFF);
    }
  };
  using Groups = Spread<Map>;

  static ZR_INLINE Columns Read(const std::uint8_t* p, std::uint32_t) {
#if defined(__AVX512VBMI__)
    const auto a = As<Native>(Scaled(Groups::Read(p))),
               b = As<Native>(Scaled(Groups::Read(p + Groups::kTaken)));
    return {As<U16>(_mm512_shuffle_i64x2(a, b, 0x44)), As<U16>(_mm512_shuffle_i64x2(a, b, 0xEE))};
#else
    // With every second lane of samples in one vector, both halves are in natural order.
    const U8 a = Scaled(Groups::template Read<2>(p)), b = Scaled(Groups::template Read<2>(p + Map::kBytes));
    return {As<U16>(UnpackLow64(a, b)), As<U16>(UnpackHigh64(a, b))};
#endif
  }

 private:
  static ZR_INLINE U8 Scaled(U8 bytes) {
    return As<U8>(Form::Scaled(As<U16>(bytes), As<U16>(Constant<Factors>::Get())));
  }
};

template <class Source>
void TakeApart(const Scf1Apart& apart) {
  const Scf1Apart row = apart;  // so that no store can change it
  EachBlock<1, Source::kGroup>(row.columns, row.white[0], [&](std::size_t x) ZR_ALWAYS {
    const std::size_t at = x / Source::kPixels * Source::kBytes;
    constexpr int kBlock = kWidth / Source::kPixels * Source::kBytes;
    Unrolled<2>([&](auto i) ZR_ALWAYS { PrefetchInto<kBlock, 2>(row.line[i] + at, row.prefetch); });
    const Columns upper = Source::Read(row.line[0] + at, row.shift);
    const Columns lower = Source::Read(row.line[1] + at, row.shift);
    Store(row.white[0] + x, upper.even >> 2);
    Store(row.white[1] + x, lower.odd >> 2);
    Store(row.missing[0] + x, ~MeanUp(upper.odd, lower.even));
    // White of at least 1 in each cell makes all means of cells at least 1 and changes none that is more.
    Store(row.missing[1] + x, ~Max16(MeanUp(upper.even, lower.odd), Splat16(1)));
  });
}

/// Packed samples are read where they lie only if nothing beyond them is loaded.
template <class Form>
constexpr Scf1ApartFunction TakePackedApart() {
  if constexpr (PackedSites<Form>::Groups::kOverread == 0)
    return TakeApart<PackedColumns<Form>>;
  else
    return nullptr;
}

/// The bilinear means of a row of cells from it and its neighbours, all as what is missing to 65535.
template <bool greenFirst>
ZR_INLINE Three<U16> BilinearMeans(const std::uint8_t* const (&row)[3], std::size_t at) {
  constexpr int kCell = 2;
  const std::uint8_t *const above = row[0] + at, *const own = row[1] + at, *const below = row[2] + at;
  const auto vertical = [&](int cell) ZR_ALWAYS {
    return MeanUp(LoadWord(above + kCell * cell), LoadWord(below + kCell * cell));
  };
  const U16 centre = LoadWord(own), beside = MeanUp(LoadWord(own - kCell), LoadWord(own + kCell));
  const U16 middle = vertical(0), corners = MeanUp(vertical(-1), vertical(1));
  return {{Alternating<greenFirst>(beside, centre), Alternating<greenFirst>(centre, MeanUp(beside, middle)),
           Alternating<greenFirst>(middle, corners)}};
}

/// The words of the lower and of the upper half of each lane.
struct Halves {
  F32 low, high;
};

/// Turns words into floating-point numbers, times a power of two: a word is the lower half of the mantissa
/// of a number whose upper half is taken away again.
class WordScale {
 public:
  explicit ZR_INLINE WordScale(int power)
      : mExponent(Splat16(static_cast<unsigned>(127 + 23 + power) << 7)),
        mOffset(As<F32>(As<U32>(mExponent) & Splat32(0xFFFF0000))) {}

  ZR_INLINE Halves operator()(U16 x) const {
    const Halves numbers = WithOffset(x);
    return {numbers.low - mOffset, numbers.high - mOffset};
  }

  /// Of what words miss to 65535.
  ZR_INLINE Halves Missing(U16 x) const {
    const Halves numbers = WithOffset(x);
    const F32 most = As<F32>(As<U32>(mOffset) | Splat32(0xFFFF));
    return {most - numbers.low, most - numbers.high};
  }

 private:
  ZR_INLINE Halves WithOffset(U16 x) const {
    return {As<F32>(UnpackLow16(As<U8>(x), As<U8>(mExponent))),
            As<F32>(UnpackHigh16(As<U8>(x), As<U8>(mExponent)))};
  }

  U16 mExponent;
  F32 mOffset;
};

/// How much of white each colour is.
template <class To, bool greenFirst>
ZR_INLINE Three<Halves> ApartQuotients(const Scf1CellRow& row, std::size_t at) {
  const WordScale scale(0);
  const Three<U16> colour = BilinearMeans<greenFirst>(row.colour, at);
  const Three<U16> white = BilinearMeans<greenFirst>(row.white, at);
  Three<Halves> quotient;
  Unrolled<3>([&](auto i) ZR_ALWAYS {
    const Halves c = scale.Missing(colour.v[i]);
    const Halves w = scale.Missing(white.v[i]);
    quotient.v[i] = {To::Limited(c.low / w.low), To::Limited(c.high / w.high)};
  });
  return quotient;
}

/// White of the pixels of even and of odd columns.
struct Whites {
  Halves even, odd;
};

/// Of the upper (0) or of the lower line (1). A coloured site of the upper line has white ones in its own
/// cell and in the next one, and in the lines above and below. They are on the 14-bit scale, so the sum of
/// four is on the 16-bit scale.
template <class To, int line>
ZR_INLINE Whites WhitesOf(const Scf1CellRow& row, std::size_t at) {
  const WordScale scale(To::kScale), scaleOfOwn(To::kScale + 2);
  constexpr int kNext = line == 0 ? 2 : -2;
  const U16 own = LoadWord(row.line[1 + line] + at);
  const U16 sum = own + LoadWord(row.line[1 + line] + at + kNext) + LoadWord(row.line[line] + at) +
                  LoadWord(row.line[line + 2] + at);
  if constexpr (line == 0) return {scaleOfOwn(own), scale(sum)};
  return {scale(sum), scaleOfOwn(own)};
}

ZR_INLINE S32 Product(F32 quotient, F32 white) {
  return As<S32>(CutToIntegers(quotient * white));
}

/// Words limited to bytes, even[0], odd[0], even[1], odd[1], ...
ZR_INLINE U8 InterleaveClipped(S16 even, S16 odd) {
#if !defined(__x86_64__) || defined(__SSSE3__)
  struct Order {
    static constexpr int At(int i) { return i / 16 * 16 + i % 2 * 8 + i % 16 / 2; }
  };
  return ShuffleLanes<Order>(PackClipped(even, odd));
#else
  const U8 low = UnpackLow16(As<U8>(even), As<U8>(odd)), high = UnpackHigh16(As<U8>(even), As<U8>(odd));
  return PackClipped(As<S16>(low), As<S16>(high));
#endif
}

/// Even and odd columns of a colour put together again, limited to what an element of a plane holds.
struct ToBytes {
  static constexpr int kScale = -8;  ///< from the 16-bit scale, as a power of two

  /// Products stay below 2^24.
  static ZR_INLINE F32 Limited(F32 quotient) { return quotient; }

  static ZR_INLINE void Put(std::uint8_t* plane, std::size_t at, const Halves& quotient, const Halves& even,
                            const Halves& odd) {
    const S16 evens = PackSigned(Product(quotient.low, even.low), Product(quotient.high, even.high));
    const S16 odds = PackSigned(Product(quotient.low, odd.low), Product(quotient.high, odd.high));
    Store(plane + at, InterleaveClipped(evens, odds));
  }
};

/// Words even[0], odd[0], even[1], odd[1], ...
ZR_INLINE void StoreInterleaved(std::uint8_t* p, U16 even, U16 odd) {
#if defined(__AVX2__) && !defined(__AVX512VBMI__)
  // Stores of lanes take no shuffle.
  const auto low = As<Native>(UnpackLow16(As<U8>(even), As<U8>(odd)));
  const auto high = As<Native>(UnpackHigh16(As<U8>(even), As<U8>(odd)));
  Store(p, _mm256_castsi256_si128(low));
  Store(p + 16, _mm256_castsi256_si128(high));
  Store(p + 32, _mm256_extracti128_si256(low, 1));
  Store(p + 48, _mm256_extracti128_si256(high, 1));
#else
  const Words words = InterleaveWords(even, odd);
  Store(p, words.a);
  Store(p + kWidth, words.b);
#endif
}

struct ToWords {
  static constexpr int kScale = 0;

  /// So that products stay below 2^31. Of samples of up to 12 bits white is at least 4 unless it is 0: what
  /// this limits exceeds 65535.
  static ZR_INLINE F32 Limited(F32 quotient) { return Smaller(quotient, F32{} + 32767.0F); }

  static ZR_INLINE void Put(std::uint8_t* plane, std::size_t at, const Halves& quotient, const Halves& even,
                            const Halves& odd) {
    const U16 evens = PackUnsigned(Product(quotient.low, even.low), Product(quotient.high, even.high));
    const U16 odds = PackUnsigned(Product(quotient.low, odd.low), Product(quotient.high, odd.high));
    StoreInterleaved(plane + 2 * at, evens, odds);
  }
};

template <class To, bool greenFirst, bool greenOnly>
void RunApartRow(const Scf1CellRow& apart) {
  const Scf1CellRow row = apart;  // so that no store can change it
  for (std::size_t at = 0; at < 2 * row.cells; at += kWidth) {
    const Three<Halves> quotient = ApartQuotients<To, greenFirst>(row, at);
    Unrolled<2>([&](auto line) ZR_ALWAYS {
      const Whites white = WhitesOf<To, line>(row, at);
      Unrolled<3>([&](auto i) ZR_ALWAYS {
        if constexpr (!greenOnly || i == 1)
          To::Put(row.plane[line][i], at, quotient.v[i], white.even, white.odd);
      });
    });
  }
}

template <class To>
void ApartRow(const Scf1CellRow& row) {
  if (row.greenOnly)
    row.greenFirst ? RunApartRow<To, true, true>(row) : RunApartRow<To, false, true>(row);
  else
    row.greenFirst ? RunApartRow<To, true, false>(row) : RunApartRow<To, false, false>(row);
}

}  // namespace

extern const Scf1Kernels ZR_AT_LEVEL(kScf1Kernels);
constinit const Scf1Kernels ZR_AT_LEVEL(kScf1Kernels) = {
    {{Tiles<WordSites, WordPlanes>, Tiles<WordSites, BytePlanes>},
     {ByteTiles<WordPlanesOfSums>, ByteTiles<BytePlanesOfSums>},
     {PackedTiles<Form10p, WordPlanes>(), PackedTiles<Form10p, BytePlanes>()},
     {PackedTiles<Form12p, WordPlanes>(), PackedTiles<Form12p, BytePlanes>()}},
    Cells,
    CellRow,
    {TakeApart<WordColumns>, TakeApart<ByteColumns>, TakePackedApart<Form10p>(), TakePackedApart<Form12p>()},
    ApartRow<ToBytes>,
    ApartRow<ToWords>};

}  // namespace ZrConvertersLib::simd
