#include "simd/Scf1Kernel.h"

#include "simd/Floats.h"
#include "simd/Line.h"

/// Kernels of SCF1 mosaics. A 32-bit element of a row of words is what a cell has in one line: the site of
/// the even column in the lower half, that of the odd one in the upper half. Both are widened where they are,
/// computed and put back without a shuffle.

namespace ZrConvertersLib::simd {
namespace {

constexpr std::size_t kElement = 4;  ///< bytes of a cell in a row
constexpr std::size_t kElements = kWidth / kElement;

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

/// Of each pair of elements the first or the second one, whose low word becomes all four words.
template <int element, int... i>
ZR_INLINE U16 RepeatedWord(U16 x, std::integer_sequence<int, i...>) {
  return __builtin_shufflevector(x, x, i / 4 * 4 + 2 * element...);
}
template <int element>
ZR_INLINE U16 Repeated(U32 x) {
  return RepeatedWord<element>(As<U16>(x), std::make_integer_sequence<int, kWidth / 2>());
}

/// The second element of each pair in place of the first.
ZR_INLINE U32 Second(U32 x) {
  return As<U32>(As<U64>(x) >> 32);
}

template <bool greenFirst>
void RunTiles(const Scf1Tiles& tiles) {
  constexpr int kUpperColour = greenFirst ? 1 : 0;
  for (std::size_t at = 0; at < 2 * tiles.pixels; at += kWidth) {
    const auto sum = [&](int line) ZR_ALWAYS {
      return SumColour(LoadCells(tiles.line[line] + at), LoadCells(tiles.line[line + 1] + at));
    };
    const U32 upper = sum(0), lower = sum(2);
    const U32 greens = greenFirst ? upper + Second(lower) : Second(upper) + lower;
    Store(tiles.plane[0] + at, Repeated<kUpperColour>(upper >> 1));
    Store(tiles.plane[1] + at, Repeated<0>(greens >> 2));
    Store(tiles.plane[2] + at, Repeated<1 - kUpperColour>(lower >> 1));
  }
}

void Tiles(const Scf1Tiles& tiles) {
  tiles.greenFirst ? RunTiles<true>(tiles) : RunTiles<false>(tiles);
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

}  // namespace

extern const Scf1Kernels ZR_AT_LEVEL(kScf1Kernels);
constinit const Scf1Kernels ZR_AT_LEVEL(kScf1Kernels) = {Tiles, Cells, CellRow};

}  // namespace ZrConvertersLib::simd
