#pragma once

#include <cstddef>
#include <cstdint>

/// @file
/// The list of source readers. Plain data that baseline code and kernels share; static assertions compare the
/// rows of the kernel files with it.

/// Calls row(name, pixels, bytes, lines [, of, unpacker [, deeper]]) for each reader:
///  pixels, bytes  of its smallest group that fills whole bytes
///  lines          source and destination lines of one step, see ReaderLines
///  of, unpacker   for a reader that unpacks samples itself, so that a line is gone through once: the two
///                 readers whose work it does. The unpacker writes bytes to a buffer, and `of` reads them
///                 from there.
///  deeper         the reader of words that it stands for as well
/// CbYCr16 and what unpacks 4:4:4 have kernels from x86-64-v3 on only, to keep the library small.
/// BayerBilinear takes the rows that the Split readers make of mosaic lines; these write Mono8 only.
// clang-format off
#define ZR_SOURCE_READERS(row) \
  row(Mono8,                1, 1, kOneLine)                                 \
  row(Mono16,               1, 2, kOneLine)                                 \
  row(Mono32,               1, 4, kOneLine)                                 \
  row(Mono10p,              4, 5, kOneLine)                                 \
  row(Mono12p,              2, 3, kOneLine)                                 \
  row(Mono14p,              4, 7, kOneLine)                                 \
  row(MonoPacked,           2, 3, kOneLine)                                 \
  row(Mono10pCsi2,          4, 5, kOneLine)                                 \
  row(Mono12pCsi2,          2, 3, kOneLine)                                 \
  row(Mono14pCsi2,          4, 7, kOneLine)                                 \
  row(Mono10Gige,           2, 3, kOneLine)                                 \
  row(Mono12Gige,           2, 3, kOneLine)                                 \
  row(Mono1p,               8, 1, kOneLine)                                 \
  row(Mono2p,               4, 1, kOneLine)                                 \
  row(Mono4p,               2, 1, kOneLine)                                 \
  row(BayerFast8,           1, 1, kPairOfLines)                             \
  row(BayerFast16,          1, 2, kPairOfLines)                             \
  row(BayerFast10p,         4, 5, kPairOfLines, BayerFast8, Mono10p)        \
  row(BayerFast12p,         2, 3, kPairOfLines, BayerFast8, Mono12p)        \
  row(BayerFast14p,         4, 7, kPairOfLines, BayerFast8, Mono14p)        \
  row(BayerFastPacked,      2, 3, kPairOfLines, BayerFast8, MonoPacked)     \
  row(BayerFast10pCsi2,     4, 5, kPairOfLines, BayerFast8, Mono10pCsi2)    \
  row(BayerFast12pCsi2,     2, 3, kPairOfLines, BayerFast8, Mono12pCsi2)    \
  row(BayerFast14pCsi2,     4, 7, kPairOfLines, BayerFast8, Mono14pCsi2)    \
  row(BayerFast10Gige,      2, 3, kPairOfLines, BayerFast8, Mono10Gige)     \
  row(BayerFast12Gige,      2, 3, kPairOfLines, BayerFast8, Mono12Gige)     \
  row(BayerBilinear,        2, 2, kFourRowsTwice)                           \
  row(BayerSplit8,          1, 1, kTwoRows)                                 \
  row(BayerSplit16,         1, 2, kTwoRows)                                 \
  row(BayerSplit10p,        4, 5, kTwoRows, BayerSplit8, Mono10p)           \
  row(BayerSplit12p,        2, 3, kTwoRows, BayerSplit8, Mono12p)           \
  row(BayerSplit14p,        4, 7, kTwoRows, BayerSplit8, Mono14p)           \
  row(BayerSplitPacked,     2, 3, kTwoRows, BayerSplit8, MonoPacked)        \
  row(BayerSplit10pCsi2,    4, 5, kTwoRows, BayerSplit8, Mono10pCsi2)       \
  row(BayerSplit12pCsi2,    2, 3, kTwoRows, BayerSplit8, Mono12pCsi2)       \
  row(BayerSplit14pCsi2,    4, 7, kTwoRows, BayerSplit8, Mono14pCsi2)       \
  row(BayerSplit10Gige,     2, 3, kTwoRows, BayerSplit8, Mono10Gige)        \
  row(BayerSplit12Gige,     2, 3, kTwoRows, BayerSplit8, Mono12Gige)        \
  row(RGB8,                 1, 3, kOneLine)                                 \
  row(BGR8,                 1, 3, kOneLine)                                 \
  row(RGBa8,                1, 4, kOneLine)                                 \
  row(BGRa8,                1, 4, kOneLine)                                 \
  row(RGB16,                1, 6, kOneLine)                                 \
  row(BGR16,                1, 6, kOneLine)                                 \
  row(RGBa16,               1, 8, kOneLine)                                 \
  row(BGRa16,               1, 8, kOneLine)                                 \
  row(RGB10p32,             1, 4, kOneLine)                                 \
  row(RGB565p,              1, 2, kOneLine)                                 \
  row(BGR565p,              1, 2, kOneLine)                                 \
  row(RGB10V1Packed,        1, 4, kOneLine)                                 \
  row(RGB12V1Packed,        2, 9, kOneLine)                                 \
  row(RGBPlanar8,           1, 1, kThreePlanes)                             \
  row(RGBPlanar16,          1, 2, kThreePlanes)                             \
  row(RGB10p,               4, 15, kOneLine, RGB8, Mono10p, RGB16)          \
  row(BGR10p,               4, 15, kOneLine, BGR8, Mono10p, BGR16)          \
  row(RGB12p,               2, 9, kOneLine, RGB8, Mono12p, RGB16)           \
  row(BGR12p,               2, 9, kOneLine, BGR8, Mono12p, BGR16)           \
  row(RGBa10p,              1, 5, kOneLine, RGBa8, Mono10p, RGBa16)         \
  row(BGRa10p,              1, 5, kOneLine, BGRa8, Mono10p, BGRa16)         \
  row(RGBa12p,              1, 6, kOneLine, RGBa8, Mono12p, RGBa16)         \
  row(BGRa12p,              1, 6, kOneLine, BGRa8, Mono12p, BGRa16)         \
  row(YCbCr,                1, 3, kOneLine)                                 \
  row(CbYCr,                1, 3, kOneLine)                                 \
  row(CbYCr16,              1, 6, kOneLine, CbYCr, Mono16)                  \
  row(CbYCr10p,             4, 15, kOneLine, CbYCr, Mono10p)                \
  row(CbYCr12p,             2, 9, kOneLine, CbYCr, Mono12p)                 \
  row(YCbYCr8,              2, 4, kOneLine)                                 \
  row(YCbYCr16,             2, 8, kOneLine)                                 \
  row(YCbYCr10p,            2, 5, kOneLine, YCbYCr8, Mono10p)               \
  row(YCbYCr12p,            2, 6, kOneLine, YCbYCr8, Mono12p)               \
  row(YCbYCr10pCsi2,        2, 5, kOneLine, YCbYCr8, Mono10pCsi2)           \
  row(CbYCrY8,              2, 4, kOneLine)                                 \
  row(CbYCrY16,             2, 8, kOneLine)                                 \
  row(CbYCrY10p,            2, 5, kOneLine, CbYCrY8, Mono10p)               \
  row(CbYCrY12p,            2, 6, kOneLine, CbYCrY8, Mono12p)               \
  row(CbYCrY10pCsi2,        2, 5, kOneLine, CbYCrY8, Mono10pCsi2)           \
  row(YYCbYYCr,             4, 6, kOneLine)                                 \
  row(CbYYCrYY,             4, 6, kOneLine)                                 \
  row(BiColorFast8,         2, 4, kOneLine)                                 \
  row(BiColorFast16,        2, 8, kOneLine)                                 \
  row(BiColorFast10p,       2, 5, kOneLine)                                 \
  row(BiColorFast12p,       2, 6, kOneLine)                                 \
  row(BiColorSplit8,        2, 4, kTwoRows)                                 \
  row(BiColorSplit16,       2, 8, kTwoRows)                                 \
  row(BiColorSplit10p,      2, 5, kTwoRows)                                 \
  row(BiColorSplit12p,      2, 6, kTwoRows)                                 \
  row(BiColorBilinear8,     1, 1, kFromRowsOfBytes)                         \
  row(BiColorBilinear16, 1, 2, kFromRowsOfWords)
// clang-format on

namespace ZrConvertersLib::simd {

/// How the pixels of a source line are read. Each reader has one implementation for all destinations.
enum class SourceReader : std::uint8_t {
#define ZR_NAME(name, ...) name,
  ZR_SOURCE_READERS(ZR_NAME)
#undef ZR_NAME
      None  ///< also the number of readers
};

/// Source lines that one step of a reader reads, destination lines that it writes, and the bytes to either
/// side of a block that it reads.
struct ReaderLines {
  std::uint8_t sources, destinations, margin;
};

inline constexpr ReaderLines kOneLine{1, 1, 0}, kThreePlanes{3, 1, 0}, kPairOfLines{2, 2, 0},
    kFourRowsTwice{8, 2, 2}, kTwoRows{1, 2, 0}, kFromRowsOfBytes{2, 1, 1}, kFromRowsOfWords{2, 1, 2};

/// The smallest whole number of pixels that fills whole bytes.
struct ReaderGroup {
  std::uint8_t pixels, bytes;
};

struct ReaderFacts {
  ReaderGroup group;
  ReaderLines lines;
  /// Of readers that take packed samples themselves.
  SourceReader of = SourceReader::None, unpacker = SourceReader::None, deeper = SourceReader::None;
};

/// The facts of all readers, in the order of the enumeration.
inline constexpr auto kSourceReaders = [] {
  using enum SourceReader;
  struct All {
    ReaderFacts of[static_cast<std::size_t>(None)];
  };
#define ZR_FACTS(name, pixels, bytes, lines, ...) {{pixels, bytes}, lines __VA_OPT__(, ) __VA_ARGS__},
  return All{{ZR_SOURCE_READERS(ZR_FACTS)}};
#undef ZR_FACTS
}();

constexpr const ReaderFacts& FactsOf(SourceReader reader) {
  return kSourceReaders.of[static_cast<std::size_t>(reader)];
}

}  // namespace ZrConvertersLib::simd
