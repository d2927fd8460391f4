#include "simd/Scf1Kernel.h"

#include "simd/Floats.h"
#include "simd/Line.h"
#include "simd/Saturate.h"

/// Kernels of SCF1 mosaics. A 32-bit element of a row of words is what a cell has in one line: the site of
/// the even column in the lower half, that of the odd one in the upper half. Both are widened where they are,
/// computed and put back without a shuffle.
///
/// The sums of eight samples of up to 12 bits fit words, so the cells of these are summed in words, even and
/// odd columns apart. Such sums lose no bit; means on the 16-bit scale do not either, and the quotient of two
/// sums is that of the two means.

namespace ZrConvertersLib::simd {
namespace {

constexpr std::size_t kElement = 4;  ///< bytes of a cell in a row
constexpr std::size_t kElements = kWidth / kElement;

ZR_INLINE U32 LoadCells(const std::uint8_t* p) {
  return As<U32>(Load(p));
}
/// Of words that are to be shifted to the 16-bit scale.
ZR_INLINE U32 LoadShifted(const std::uint8_t* p, std::uint32_t shift) {
  return As<U32>(ShiftLeft(As<U16>(Load(p)), shift));
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

/// Of each `count` words the one at `place`, as all of them.
template <int count, int place, int... i>
ZR_INLINE U16 RepeatedWord(U16 x, std::integer_sequence<int, i...>) {
  return __builtin_shufflevector(x, x, i / count * count + place...);
}
template <int count, int place>
ZR_INLINE U16 RepeatedWord(U16 x) {
  return RepeatedWord<count, place>(x, std::make_integer_sequence<int, kWidth / 2>());
}

/// The elements of a tile: two sums of coloured sites.
struct WordTile {
  using Sums = U32;

  static ZR_INLINE Sums Sum(const std::uint8_t* upper, const std::uint8_t* lower, std::uint32_t shift) {
    return SumColour(LoadShifted(upper, shift), LoadShifted(lower, shift));
  }
  static ZR_INLINE Sums Second(Sums x) { return As<U32>(As<U64>(x) >> 32); }

  /// The first or the second element as all four pixels.
  template <int element>
  static ZR_INLINE U16 Repeated(Sums x) {
    return RepeatedWord<4, 2 * element>(As<U16>(x));
  }
};

struct ByteTile {
  using Sums = U16;

  static ZR_INLINE Sums Sum(const std::uint8_t* upper, const std::uint8_t* lower, std::uint32_t) {
    return (As<U16>(Load(upper)) >> 8) + (As<U16>(Load(lower)) & Splat16(0xFF));
  }
  static ZR_INLINE Sums Second(Sums x) { return As<U16>(As<U32>(x) >> 16); }

  template <int element>
  static ZR_INLINE U8 Repeated(Sums x) {
    return As<U8>(RepeatedWord<2, element>(x | (x << 8)));
  }
};

/// The colours of tiles in the order of Scf1Tiles::plane.
template <class Pixels>
struct TileColours {
  Pixels v[3];
};

template <class Tile, bool greenFirst>
ZR_INLINE auto ColoursAt(const Scf1Tiles& tiles, std::size_t at) {
  constexpr int kUpperColour = greenFirst ? 1 : 0;
  const auto upper = Tile::Sum(tiles.line[0] + at, tiles.line[1] + at, tiles.shift);
  const auto lower = Tile::Sum(tiles.line[2] + at, tiles.line[3] + at, tiles.shift);
  const auto greens = greenFirst ? upper + Tile::Second(lower) : Tile::Second(upper) + lower;
  return TileColours<decltype(Tile::template Repeated<0>(greens))>{
      {Tile::template Repeated<kUpperColour>(upper >> 1), Tile::template Repeated<0>(greens >> 2),
       Tile::template Repeated<1 - kUpperColour>(lower >> 1)}};
}

/// Asks memory for the bytes of a block of each line, `bytes` for each pixel.
template <int bytes>
ZR_INLINE void PrefetchTiles(const Scf1Tiles& tiles, std::size_t x) {
  Unrolled<4>([&](auto i)
                  ZR_ALWAYS { PrefetchInto<bytes * kWidth, 2>(tiles.line[i] + bytes * x, tiles.prefetch); });
}

template <bool greenFirst>
void RunTiles(const Scf1Tiles& tiles) {
  EachBlock<2, 4>(tiles.pixels, tiles.plane[0], [&](std::size_t x) ZR_ALWAYS {
    PrefetchTiles<2>(tiles, x);
    const auto a = ColoursAt<WordTile, greenFirst>(tiles, 2 * x);
    const auto b = ColoursAt<WordTile, greenFirst>(tiles, 2 * x + kWidth);
    Unrolled<3>([&](auto i) ZR_ALWAYS {
      Store(tiles.plane[i] + 2 * x, a.v[i]);
      Store(tiles.plane[i] + 2 * x + kWidth, b.v[i]);
    });
  });
}

template <bool greenFirst>
void RunTilesToBytes(const Scf1Tiles& tiles) {
  EachBlock<1, 4>(tiles.pixels, tiles.plane[0], [&](std::size_t x) ZR_ALWAYS {
    PrefetchTiles<2>(tiles, x);
    const auto a = ColoursAt<WordTile, greenFirst>(tiles, 2 * x);
    const auto b = ColoursAt<WordTile, greenFirst>(tiles, 2 * x + kWidth);
    Unrolled<3>([&](auto i) ZR_ALWAYS { Store(tiles.plane[i] + x, NarrowHigh(Words{a.v[i], b.v[i]})); });
  });
}

template <bool greenFirst>
void RunByteTiles(const Scf1Tiles& tiles) {
  EachBlock<1, 4>(tiles.pixels, tiles.plane[0], [&](std::size_t x) ZR_ALWAYS {
    PrefetchTiles<1>(tiles, x);
    const auto colours = ColoursAt<ByteTile, greenFirst>(tiles, x);
    Unrolled<3>([&](auto i) ZR_ALWAYS { Store(tiles.plane[i] + x, colours.v[i]); });
  });
}

void Tiles(const Scf1Tiles& tiles) {
  tiles.greenFirst ? RunTiles<true>(tiles) : RunTiles<false>(tiles);
}
void TilesToBytes(const Scf1Tiles& tiles) {
  tiles.greenFirst ? RunTilesToBytes<true>(tiles) : RunTilesToBytes<false>(tiles);
}
void ByteTiles(const Scf1Tiles& tiles) {
  tiles.greenFirst ? RunByteTiles<true>(tiles) : RunByteTiles<false>(tiles);
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

template <bool greenFirst, int... i>
ZR_INLINE U32 Alternating(U32 atGreen, U32 elsewhere, std::integer_sequence<int, i...>) {
  return __builtin_shufflevector(atGreen, elsewhere,
                                 ((i % 2 == 0) == greenFirst ? i : i + int{kElements})...);
}

/// Elements of the one where cells are green, of the other in between.
template <bool greenFirst>
ZR_INLINE U32 Alternating(U32 atGreen, U32 elsewhere) {
  return Alternating<greenFirst>(atGreen, elsewhere, std::make_integer_sequence<int, int{kElements}>());
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

void BytesApart(const Scf1Apart& apart) {
  const Scf1Apart row = apart;  // so that no store can change it
  EachBlock<1, 2>(row.columns, row.white[0], [&](std::size_t x) ZR_ALWAYS {
    Unrolled<2>([&](auto i) ZR_ALWAYS { PrefetchInto<kWidth, 2>(row.line[i] + x, row.prefetch); });
    const U16 upper = LoadWord(row.line[0] + x), lower = LoadWord(row.line[1] + x);
    const U16 white[] = {upper & Splat16(0xFF), lower >> 8};
    Store(row.white[0] + x, white[0]);
    Store(row.white[1] + x, white[1]);
    Store(row.sum[0] + x, (upper >> 8) + (lower & Splat16(0xFF)));
    Store(row.sum[1] + x, white[0] + white[1]);
  });
}

/// The sites of kElements cells in one line, as 32-bit elements on the 12-bit scale.
struct Sites {
  U32 even, odd;

  explicit ZR_INLINE Sites(const std::uint8_t* p, std::uint32_t shift) {
    const U32 both = As<U32>(As<U16>(LoadShifted(p, shift)) >> 4);
    even = Even(both);
    odd = Odd(both);
  }
};

ZR_INLINE U16 JoinWords(U32 a, U32 b) {
  return As<U16>(JoinHalves(As<U8>(PackSigned(As<S32>(a), As<S32>(b)))));
}

void WordsApart(const Scf1Apart& apart) {
  const Scf1Apart row = apart;  // so that no store can change it
  EachBlock<1, 2>(row.columns, row.white[0], [&](std::size_t x) ZR_ALWAYS {
    Unrolled<2>([&](auto i) ZR_ALWAYS { PrefetchInto<2 * kWidth, 2>(row.line[i] + 2 * x, row.prefetch); });
    const auto sites = [&](int line, int vector)
                           ZR_ALWAYS { return Sites(row.line[line] + 2 * x + vector * kWidth, row.shift); };
    const Sites upper[] = {sites(0, 0), sites(0, 1)}, lower[] = {sites(1, 0), sites(1, 1)};
    const U16 white[] = {JoinWords(upper[0].even, upper[1].even), JoinWords(lower[0].odd, lower[1].odd)};
    Store(row.white[0] + x, white[0]);
    Store(row.white[1] + x, white[1]);
    Store(row.sum[0] + x, JoinWords(upper[0].odd + lower[0].even, upper[1].odd + lower[1].even));
    Store(row.sum[1] + x, white[0] + white[1]);
  });
}

template <bool greenFirst>
ZR_INLINE U16 AlternatingWords(U16 atGreen, U16 elsewhere) {
  return [&]<int... i>(std::integer_sequence<int, i...>) ZR_ALWAYS {
    return __builtin_shufflevector(atGreen, elsewhere, ((i % 2 == 0) == greenFirst ? i : i + kWidth / 2)...);
  }
  (std::make_integer_sequence<int, kWidth / 2>());
}

/// The bilinear sums of a row of cells from it and its neighbours: of one, of two or of four cells.
template <bool greenFirst>
ZR_INLINE Three<U16> BilinearSums(const std::uint8_t* const (&row)[3], std::size_t at) {
  constexpr int kCell = 2;
  const std::uint8_t *const above = row[0] + at, *const own = row[1] + at, *const below = row[2] + at;
  const auto vertical = [&](int cell) ZR_ALWAYS {
    return LoadWord(above + kCell * cell) + LoadWord(below + kCell * cell);
  };
  const U16 centre = LoadWord(own), beside = LoadWord(own - kCell) + LoadWord(own + kCell);
  const U16 middle = vertical(0), corners = vertical(-1) + vertical(1);
  return {{AlternatingWords<greenFirst>(beside, centre),
           AlternatingWords<greenFirst>(centre, beside + middle),
           AlternatingWords<greenFirst>(middle, corners)}};
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
    return {As<F32>(UnpackLow16(As<U8>(x), As<U8>(mExponent))) - mOffset,
            As<F32>(UnpackHigh16(As<U8>(x), As<U8>(mExponent))) - mOffset};
  }

 private:
  U16 mExponent;
  F32 mOffset;
};

/// 2^power.
ZR_INLINE F32 PowerOfTwo(int power) {
  return As<F32>(Splat32(static_cast<unsigned>(127 + power) << 23));
}

/// The sums of white that stand for 1 on the 16-bit scale.
template <bool greenFirst>
ZR_INLINE Three<F32> LeastWhite(int depth) {
  const auto least = [depth](int greenCells, int otherCells) ZR_ALWAYS {
    const int shift = depth - 16 + 1;
    return As<F32>(Alternating<greenFirst>(As<U32>(PowerOfTwo(shift + greenCells)),
                                           As<U32>(PowerOfTwo(shift + otherCells))));
  };
  return {{least(1, 0), least(0, 2), least(1, 2)}};
}

/// How much of white each colour is.
template <class To, bool greenFirst>
ZR_INLINE Three<Halves> ApartQuotients(const Scf1CellRow& row, const Three<F32>& least, std::size_t at) {
  const WordScale unscaled(0);
  const Three<U16> colour = BilinearSums<greenFirst>(row.colour, at);
  const Three<U16> white = BilinearSums<greenFirst>(row.white, at);
  Three<Halves> quotient;
  Unrolled<3>([&](auto i) ZR_ALWAYS {
    const Halves c = unscaled(colour.v[i]), w = unscaled(white.v[i]);
    quotient.v[i] = {To::Limited(c.low / Larger(w.low, least.v[i])),
                     To::Limited(c.high / Larger(w.high, least.v[i]))};
  });
  return quotient;
}

/// Four times the white of the pixels of even and of odd columns.
struct FourWhites {
  U16 even, odd;
};

/// Of the upper (0) or of the lower line (1). A coloured site of the upper line has white ones in its own
/// cell and in the next one, and in the lines above and below.
template <int line>
ZR_INLINE FourWhites FourWhitesOf(const Scf1CellRow& row, std::size_t at) {
  constexpr int kNext = line == 0 ? 2 : -2;
  const U16 own = LoadWord(row.line[1 + line] + at);
  const U16 sum = own + LoadWord(row.line[1 + line] + at + kNext) + LoadWord(row.line[line] + at) +
                  LoadWord(row.line[line + 2] + at);
  if constexpr (line == 0) return {own << 2, sum};
  return {sum, own << 2};
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

struct ToWords {
  static constexpr int kScale = 0;

  /// So that products stay below 2^31. White is at least 4 unless it is 0: what this limits exceeds 65535.
  static ZR_INLINE F32 Limited(F32 quotient) { return Smaller(quotient, F32{} + 32767.0F); }

  static ZR_INLINE void Put(std::uint8_t* plane, std::size_t at, const Halves& quotient, const Halves& even,
                            const Halves& odd) {
    const U16 evens = PackUnsigned(Product(quotient.low, even.low), Product(quotient.high, even.high));
    const U16 odds = PackUnsigned(Product(quotient.low, odd.low), Product(quotient.high, odd.high));
    const Words pixels = InterleaveWords(evens, odds);
    Store(plane + 2 * at, pixels.a);
    Store(plane + 2 * at + kWidth, pixels.b);
  }
};

template <class To, bool greenFirst, bool greenOnly>
void RunApartRow(const Scf1CellRow& apart) {
  const Scf1CellRow row = apart;  // so that no store can change it
  const Three<F32> least = LeastWhite<greenFirst>(row.depth);
  const WordScale scale(16 - 2 - row.depth + To::kScale);
  for (std::size_t at = 0; at < 2 * row.cells; at += kWidth) {
    const Three<Halves> quotient = ApartQuotients<To, greenFirst>(row, least, at);
    Unrolled<2>([&](auto line) ZR_ALWAYS {
      const FourWhites white = FourWhitesOf<line>(row, at);
      const Halves even = scale(white.even), odd = scale(white.odd);
      Unrolled<3>([&](auto i) ZR_ALWAYS {
        if constexpr (!greenOnly || i == 1) To::Put(row.plane[line][i], at, quotient.v[i], even, odd);
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
constinit const Scf1Kernels ZR_AT_LEVEL(kScf1Kernels) = {Tiles,      TilesToBytes,      ByteTiles,
                                                         Cells,      CellRow,           BytesApart,
                                                         WordsApart, ApartRow<ToBytes>, ApartRow<ToWords>};

}  // namespace ZrConvertersLib::simd
