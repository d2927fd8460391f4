#pragma once

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/PixelTypes.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/Destinations.h"

/// @file
/// The properties of every format, in one table: all other parts of the library take them from here.
///
/// Static assertions check the table. A row that deviates from the rule of its family on purpose has a trait
/// for it.

namespace ZrConvertersLib {

/// The high byte of a type ID.
enum class Family : std::uint8_t { Rgb = 1, Mono = 2, YCbCr = 3, Bayer = 4, Scf1 = 5, BiColor = 6 };

/// The smallest whole number of pixels that fills whole bytes (of one plane).
struct Group {
  std::uint8_t pixels;
  std::uint8_t bytes;
};

/// Intended deviations from the rules.
enum Trait : std::uint8_t {
  kRegular = 0,
  kOddBits = 1,   ///< registers other bits per pixel than its family's rule gives
  kOddBytes = 2,  ///< registers other bytes per pixel
  kSigned = 4,    ///< two's complement samples
};

struct FormatRow {
  long id;
  std::string_view name;  ///< of the class, and what people call it
  std::uint16_t bits;     ///< bits per pixel as registered
  std::uint16_t bytes;    ///< bytes per pixel as registered
  Family family;
  ChannelOrder order;
  std::uint8_t depth;      ///< significant bits of a sample (565: of red and blue; green has one more)
  std::uint8_t container;  ///< bits a sample takes in memory; those of the whole pixel for Word and V1Packed
  Packing packing;
  Group group;
  std::uint8_t planes;
  std::uint8_t traits;  ///< of Trait
};

// clang-format off
/// The pixel types, family by family, each in the order of registration.
inline constexpr auto kFormats = [] {
  namespace Ids = PixelTypeIds;
  using F = Family;
  using C = ChannelOrder;
  using P = Packing;
  return std::array{
      // ID, name, bits, bytes registered, family, order, depth, container, packing, group, planes, traits
      // RGB and BGR
      FormatRow{Ids::RGB565p,             "RGB565p",             16,  2, F::Rgb,     C::Rgb,       5, 16, P::Word,     {1,  2}, 1, kRegular},
      FormatRow{Ids::BGR565p,             "BGR565p",             16,  2, F::Rgb,     C::Bgr,       5, 16, P::Word,     {1,  2}, 1, kRegular},
      FormatRow{Ids::RGB8,                "RGB8",                24,  3, F::Rgb,     C::Rgb,       8,  8, P::Plain,    {1,  3}, 1, kRegular},
      FormatRow{Ids::BGR8,                "BGR8",                24,  3, F::Rgb,     C::Bgr,       8,  8, P::Plain,    {1,  3}, 1, kRegular},
      FormatRow{Ids::RGBa8,               "RGBa8",               32,  4, F::Rgb,     C::RgbA,      8,  8, P::Plain,    {1,  4}, 1, kRegular},
      FormatRow{Ids::BGRa8,               "BGRa8",               32,  4, F::Rgb,     C::BgrA,      8,  8, P::Plain,    {1,  4}, 1, kRegular},
      FormatRow{Ids::RGB10,               "RGB10",               10,  6, F::Rgb,     C::Rgb,      10, 16, P::Plain,    {1,  6}, 1, kOddBits},
      FormatRow{Ids::RGB10p,              "RGB10p",              30,  4, F::Rgb,     C::Rgb,      10, 10, P::Dense,    {4, 15}, 1, kRegular},
      FormatRow{Ids::RGBa10,              "RGBa10",              64,  8, F::Rgb,     C::RgbA,     10, 16, P::Plain,    {1,  8}, 1, kRegular},
      FormatRow{Ids::RGBa10p,             "RGBa10p",             40,  5, F::Rgb,     C::RgbA,     10, 10, P::Dense,    {1,  5}, 1, kRegular},
      FormatRow{Ids::RGB12,               "RGB12",               12,  6, F::Rgb,     C::Rgb,      12, 16, P::Plain,    {1,  6}, 1, kOddBits},
      FormatRow{Ids::RGB12p,              "RGB12p",              36,  5, F::Rgb,     C::Rgb,      12, 12, P::Dense,    {2,  9}, 1, kRegular},
      FormatRow{Ids::RGBa12,              "RGBa12",              64,  8, F::Rgb,     C::RgbA,     12, 16, P::Plain,    {1,  8}, 1, kRegular},
      FormatRow{Ids::RGBa12p,             "RGBa12p",             48,  6, F::Rgb,     C::RgbA,     12, 12, P::Dense,    {1,  6}, 1, kRegular},
      FormatRow{Ids::RGBa14,              "RGBa14",              64,  8, F::Rgb,     C::RgbA,     14, 16, P::Plain,    {1,  8}, 1, kRegular},
      FormatRow{Ids::BGRa14,              "BGRa14",               8,  8, F::Rgb,     C::BgrA,     14, 16, P::Plain,    {1,  8}, 1, kOddBits},
      FormatRow{Ids::RGB14,               "RGB14",               48,  6, F::Rgb,     C::Rgb,      14, 16, P::Plain,    {1,  6}, 1, kRegular},
      FormatRow{Ids::BGR14,               "BGR14",               48,  6, F::Rgb,     C::Bgr,      14, 16, P::Plain,    {1,  6}, 1, kRegular},
      FormatRow{Ids::RGB16,               "RGB16",               48,  6, F::Rgb,     C::Rgb,      16, 16, P::Plain,    {1,  6}, 1, kRegular},
      FormatRow{Ids::BGR16,               "BGR16",               48,  6, F::Rgb,     C::Bgr,      16, 16, P::Plain,    {1,  6}, 1, kRegular},
      FormatRow{Ids::RGBa16,              "RGBa16",              64,  8, F::Rgb,     C::RgbA,     16, 16, P::Plain,    {1,  8}, 1, kRegular},
      FormatRow{Ids::BGRa16,              "BGRa16",              64,  8, F::Rgb,     C::BgrA,     16, 16, P::Plain,    {1,  8}, 1, kRegular},
      FormatRow{Ids::RGB10V1Packed,       "RGB10V1Packed",       32,  4, F::Rgb,     C::Rgb,      10, 32, P::V1Packed, {1,  4}, 1, kRegular},
      FormatRow{Ids::RGB10p32,            "RGB10p32",            32,  4, F::Rgb,     C::Rgb,      10, 32, P::Word,     {1,  4}, 1, kRegular},
      FormatRow{Ids::RGB12V1Packed,       "RGB12V1Packed",       36,  5, F::Rgb,     C::Rgb,      12, 36, P::V1Packed, {2,  9}, 1, kRegular},
      FormatRow{Ids::RGB8_Planar,         "RGB8_Planar",         24,  3, F::Rgb,     C::Rgb,       8,  8, P::Planar,   {1,  1}, 3, kRegular},
      FormatRow{Ids::RGB10_Planar,        "RGB10_Planar",        30,  6, F::Rgb,     C::Rgb,      10, 16, P::Planar,   {1,  2}, 3, kOddBits},
      FormatRow{Ids::RGB12_Planar,        "RGB12_Planar",        36,  6, F::Rgb,     C::Rgb,      12, 16, P::Planar,   {1,  2}, 3, kOddBits},
      FormatRow{Ids::RGB16_Planar,        "RGB16_Planar",        48,  6, F::Rgb,     C::Rgb,      16, 16, P::Planar,   {1,  2}, 3, kRegular},
      // Monochrome
      FormatRow{Ids::Mono8,               "Mono8",                8,  1, F::Mono,    C::Mono,      8,  8, P::Plain,    {1,  1}, 1, kRegular},
      FormatRow{Ids::Mono8s,              "Mono8s",               8,  1, F::Mono,    C::Mono,      8,  8, P::Plain,    {1,  1}, 1, kSigned},
      FormatRow{Ids::Mono10,              "Mono10",              10,  2, F::Mono,    C::Mono,     10, 16, P::Plain,    {1,  2}, 1, kRegular},
      FormatRow{Ids::Mono10Packed,        "Mono10Packed",        10,  2, F::Mono,    C::Mono,     10, 12, P::Pair,     {2,  3}, 1, kRegular},
      FormatRow{Ids::Mono12,              "Mono12",              12,  2, F::Mono,    C::Mono,     12, 16, P::Plain,    {1,  2}, 1, kRegular},
      FormatRow{Ids::Mono12Packed,        "Mono12Packed",        12,  2, F::Mono,    C::Mono,     12, 12, P::Pair,     {2,  3}, 1, kRegular},
      FormatRow{Ids::Mono14,              "Mono14",              14,  2, F::Mono,    C::Mono,     14, 16, P::Plain,    {1,  2}, 1, kRegular},
      FormatRow{Ids::Mono16,              "Mono16",              16,  2, F::Mono,    C::Mono,     16, 16, P::Plain,    {1,  2}, 1, kRegular},
      FormatRow{Ids::Mono1p,              "Mono1p",               1,  1, F::Mono,    C::Mono,      1,  1, P::Dense,    {8,  1}, 1, kRegular},
      FormatRow{Ids::Mono2p,              "Mono2p",               2,  1, F::Mono,    C::Mono,      2,  2, P::Dense,    {4,  1}, 1, kRegular},
      FormatRow{Ids::Mono4p,              "Mono4p",               4,  1, F::Mono,    C::Mono,      4,  4, P::Dense,    {2,  1}, 1, kRegular},
      FormatRow{Ids::Mono10p,             "Mono10p",             10,  2, F::Mono,    C::Mono,     10, 10, P::Dense,    {4,  5}, 1, kRegular},
      FormatRow{Ids::Mono12p,             "Mono12p",             12,  2, F::Mono,    C::Mono,     12, 12, P::Dense,    {2,  3}, 1, kRegular},
      FormatRow{Ids::Mono14p,             "Mono14p",             14,  2, F::Mono,    C::Mono,     14, 14, P::Dense,    {4,  7}, 1, kRegular},
      FormatRow{Ids::Mono32,              "Mono32",              32,  4, F::Mono,    C::Mono,     32, 32, P::Plain,    {1,  4}, 1, kRegular},
      // YCbCr
      FormatRow{Ids::YCbCr422_8,          "YCbCr422_8",          16,  2, F::YCbCr,   C::YCbYCr,    8,  8, P::Plain,    {2,  4}, 1, kRegular},
      FormatRow{Ids::YCbCr422_10,         "YCbCr422_10",         32,  4, F::YCbCr,   C::YCbYCr,   10, 16, P::Plain,    {2,  8}, 1, kRegular},
      FormatRow{Ids::YCbCr422_10p,        "YCbCr422_10p",        20,  3, F::YCbCr,   C::YCbYCr,   10, 10, P::Dense,    {2,  5}, 1, kRegular},
      FormatRow{Ids::YCbCr422_12,         "YCbCr422_12",         32,  4, F::YCbCr,   C::YCbYCr,   12, 16, P::Plain,    {2,  8}, 1, kRegular},
      FormatRow{Ids::YCbCr422_12p,        "YCbCr422_12p",        24,  3, F::YCbCr,   C::YCbYCr,   12, 12, P::Dense,    {2,  6}, 1, kRegular},
      FormatRow{Ids::YCbCr422_8_CbYCrY,   "YCbCr422_8_CbYCrY",   16,  2, F::YCbCr,   C::CbYCrY,    8,  8, P::Plain,    {2,  4}, 1, kRegular},
      FormatRow{Ids::YCbCr422_10_CbYCrY,  "YCbCr422_10_CbYCrY",  32,  4, F::YCbCr,   C::CbYCrY,   10, 16, P::Plain,    {2,  8}, 1, kRegular},
      FormatRow{Ids::YCbCr422_10p_CbYCrY, "YCbCr422_10p_CbYCrY", 20,  3, F::YCbCr,   C::CbYCrY,   10, 10, P::Dense,    {2,  5}, 1, kRegular},
      FormatRow{Ids::YCbCr422_12_CbYCrY,  "YCbCr422_12_CbYCrY",  32,  4, F::YCbCr,   C::CbYCrY,   12, 16, P::Plain,    {2,  8}, 1, kRegular},
      FormatRow{Ids::YCbCr422_12p_CbYCrY, "YCbCr422_12p_CbYCrY", 24,  3, F::YCbCr,   C::CbYCrY,   12, 12, P::Dense,    {2,  6}, 1, kRegular},
      FormatRow{Ids::YCbCr8,              "YCbCr8",              24,  3, F::YCbCr,   C::YCbCr,     8,  8, P::Plain,    {1,  3}, 1, kRegular},
      FormatRow{Ids::YCbCr8_CbYCr,        "YCbCr8_CbYCr",        24,  3, F::YCbCr,   C::CbYCr,     8,  8, P::Plain,    {1,  3}, 1, kRegular},
      FormatRow{Ids::YCbCr10_CbYCr,       "YCbCr10_CbYCr",       48,  6, F::YCbCr,   C::CbYCr,    10, 16, P::Plain,    {1,  6}, 1, kRegular},
      FormatRow{Ids::YCbCr10p_CbYCr,      "YCbCr10p_CbYCr",      30,  4, F::YCbCr,   C::CbYCr,    10, 10, P::Dense,    {4, 15}, 1, kRegular},
      FormatRow{Ids::YCbCr12_CbYCr,       "YCbCr12_CbYCr",       48,  6, F::YCbCr,   C::CbYCr,    12, 16, P::Plain,    {1,  6}, 1, kRegular},
      FormatRow{Ids::YCbCr12p_CbYCr,      "YCbCr12p_CbYCr",      36, 40, F::YCbCr,   C::CbYCr,    12, 12, P::Dense,    {2,  9}, 1, kOddBytes},
      FormatRow{Ids::YCbCr411_8,          "YCbCr411_8",          12,  2, F::YCbCr,   C::YYCbYYCr,  8,  8, P::Plain,    {4,  6}, 1, kRegular},
      FormatRow{Ids::YCbCr411_8_CbYYCrYY, "YCbCr411_8_CbYYCrYY", 12,  2, F::YCbCr,   C::CbYYCrYY,  8,  8, P::Plain,    {4,  6}, 1, kRegular},
      // Bayer mosaics
      FormatRow{Ids::Bayer8,              "Bayer8",               8,  1, F::Bayer,   C::Bayer,     8,  8, P::Plain,    {1,  1}, 1, kRegular},
      FormatRow{Ids::Bayer10,             "Bayer10",             10,  2, F::Bayer,   C::Bayer,    10, 16, P::Plain,    {1,  2}, 1, kRegular},
      FormatRow{Ids::Bayer10Packed,       "Bayer10Packed",       10,  2, F::Bayer,   C::Bayer,    10, 12, P::Pair,     {2,  3}, 1, kRegular},
      FormatRow{Ids::Bayer12,             "Bayer12",             12,  2, F::Bayer,   C::Bayer,    12, 16, P::Plain,    {1,  2}, 1, kRegular},
      FormatRow{Ids::Bayer12Packed,       "Bayer12Packed",       12,  2, F::Bayer,   C::Bayer,    12, 12, P::Pair,     {2,  3}, 1, kRegular},
      FormatRow{Ids::Bayer16,             "Bayer16",             16,  2, F::Bayer,   C::Bayer,    16, 16, P::Plain,    {1,  2}, 1, kRegular},
      FormatRow{Ids::Bayer10p,            "Bayer10p",            10,  2, F::Bayer,   C::Bayer,    10, 10, P::Dense,    {4,  5}, 1, kRegular},
      FormatRow{Ids::Bayer12p,            "Bayer12p",            12,  2, F::Bayer,   C::Bayer,    12, 12, P::Dense,    {2,  3}, 1, kRegular},
      FormatRow{Ids::Bayer14,             "Bayer14",             14,  2, F::Bayer,   C::Bayer,    14, 16, P::Plain,    {1,  2}, 1, kRegular},
      FormatRow{Ids::Bayer14p,            "Bayer14p",            14,  2, F::Bayer,   C::Bayer,    14, 14, P::Dense,    {4,  7}, 1, kRegular},
      // Sparse colour filter mosaics
      FormatRow{Ids::SCF18,               "SCF18",                8,  1, F::Scf1,    C::Scf1,      8,  8, P::Plain,    {1,  1}, 1, kRegular},
      FormatRow{Ids::SCF110,              "SCF110",              10,  2, F::Scf1,    C::Scf1,     10, 16, P::Plain,    {1,  2}, 1, kRegular},
      FormatRow{Ids::SCF110p,             "SCF110p",             10,  2, F::Scf1,    C::Scf1,     10, 10, P::Dense,    {4,  5}, 1, kRegular},
      FormatRow{Ids::SCF112,              "SCF112",              12,  2, F::Scf1,    C::Scf1,     12, 16, P::Plain,    {1,  2}, 1, kRegular},
      FormatRow{Ids::SCF112p,             "SCF112p",             12,  2, F::Scf1,    C::Scf1,     12, 12, P::Dense,    {2,  3}, 1, kRegular},
      FormatRow{Ids::SCF114,              "SCF114",              14,  2, F::Scf1,    C::Scf1,     14, 16, P::Plain,    {1,  2}, 1, kRegular},
      FormatRow{Ids::SCF116,              "SCF116",              16,  2, F::Scf1,    C::Scf1,     16, 16, P::Plain,    {1,  2}, 1, kRegular},
      // BiColor mosaics
      FormatRow{Ids::BiColor8,            "BiColor8",            16,  2, F::BiColor, C::BiColor,   8,  8, P::Plain,    {1,  2}, 1, kRegular},
      FormatRow{Ids::BiColor10,           "BiColor10",           32,  4, F::BiColor, C::BiColor,  10, 16, P::Plain,    {1,  4}, 1, kRegular},
      FormatRow{Ids::BiColor12,           "BiColor12",           32,  4, F::BiColor, C::BiColor,  12, 16, P::Plain,    {1,  4}, 1, kRegular},
      FormatRow{Ids::BiColor10p,          "BiColor10p",          20,  3, F::BiColor, C::BiColor,  10, 10, P::Dense,    {2,  5}, 1, kRegular},
      FormatRow{Ids::BiColor12p,          "BiColor12p",          24,  3, F::BiColor, C::BiColor,  12, 12, P::Dense,    {1,  3}, 1, kRegular},
  };
}();

/// Layouts that converters read although no pixel type is registered for them; bits and bytes are those of
/// the memory.
inline constexpr auto kUntypedFormats = [] {
  namespace Ids = PixelTypeIds;
  using F = Family;
  using C = ChannelOrder;
  using P = Packing;
  return std::array{
      FormatRow{Ids::BGR10,               "BGR10",               48,  6, F::Rgb,     C::Bgr,      10, 16, P::Plain,    {1,  6}, 1, kRegular},
      FormatRow{Ids::BGR10p,              "BGR10p",              30,  4, F::Rgb,     C::Bgr,      10, 10, P::Dense,    {4, 15}, 1, kRegular},
      FormatRow{Ids::BGRa10,              "BGRa10",              64,  8, F::Rgb,     C::BgrA,     10, 16, P::Plain,    {1,  8}, 1, kRegular},
      FormatRow{Ids::BGRa10p,             "BGRa10p",             40,  5, F::Rgb,     C::BgrA,     10, 10, P::Dense,    {1,  5}, 1, kRegular},
      FormatRow{Ids::BGR12,               "BGR12",               48,  6, F::Rgb,     C::Bgr,      12, 16, P::Plain,    {1,  6}, 1, kRegular},
      FormatRow{Ids::BGR12p,              "BGR12p",              36,  5, F::Rgb,     C::Bgr,      12, 12, P::Dense,    {2,  9}, 1, kRegular},
      FormatRow{Ids::BGRa12,              "BGRa12",              64,  8, F::Rgb,     C::BgrA,     12, 16, P::Plain,    {1,  8}, 1, kRegular},
      FormatRow{Ids::BGRa12p,             "BGRa12p",             48,  6, F::Rgb,     C::BgrA,     12, 12, P::Dense,    {1,  6}, 1, kRegular},
  };
}();
// clang-format on

/// The row of a type ID, the untyped layouts included; null for an ID that names nothing.
constexpr const FormatRow* FindFormat(long id) {
  for (const FormatRow& row : kFormats) {
    if (row.id == id) return &row;
  }
  for (const FormatRow& row : kUntypedFormats) {
    if (row.id == id) return &row;
  }
  return nullptr;
}

/// Whether the ID names a row and that row passes `test`. For checks when compiling: under
/// UndefinedBehaviorSanitizer GCC takes no comparison of a row's address with null for a constant.
template <class Test>
constexpr bool FormatSatisfies(long id, Test test) {
  const auto passes = [&](const FormatRow& row) { return row.id == id && test(row); };
  return std::any_of(kFormats.begin(), kFormats.end(), passes) ||
         std::any_of(kUntypedFormats.begin(), kUntypedFormats.end(), passes);
}

/// The row of an ID known when compiling; does not compile for one that names nothing.
consteval const FormatRow& FormatOf(long id) {
  return *FindFormat(id);
}

/// A number of pixels that share samples, and the number of these samples.
struct SampleUnit {
  std::uint8_t samples;
  std::uint8_t pixels;
};

constexpr SampleUnit UnitOf(ChannelOrder order) {
  switch (order) {
    case ChannelOrder::Mono:
    case ChannelOrder::Bayer:
    case ChannelOrder::Scf1:
      return {1, 1};
    case ChannelOrder::BiColor:
      return {2, 1};
    case ChannelOrder::Rgb:
    case ChannelOrder::Bgr:
    case ChannelOrder::YCbCr:
    case ChannelOrder::CbYCr:
      return {3, 1};
    case ChannelOrder::RgbA:
    case ChannelOrder::BgrA:
      return {4, 1};
    case ChannelOrder::YCbYCr:
    case ChannelOrder::CbYCrY:
      return {4, 2};
    case ChannelOrder::YYCbYYCr:
    case ChannelOrder::CbYYCrYY:
      return {6, 4};
  }
  return {0, 1};
}

/// Bits per pixel that the format takes in memory, all planes together: unlike the registered figure never
/// rounded.
constexpr unsigned BitsInMemory(const FormatRow& row) {
  return row.group.bytes * 8u * row.planes / row.group.pixels;
}

/// Bytes of `width` pixels in one plane, the last byte filled up.
constexpr std::uint64_t LineBytes(const FormatRow& row, std::uint32_t width) {
  return (std::uint64_t{width} * row.group.bytes * 8 / row.group.pixels + 7) / 8;
}

struct DestinationRow {
  long id;
  std::string_view name;     ///< of the writer, without its prefix
  std::string_view chained;  ///< in the names of packed colour chains
  std::uint8_t bytes;        ///< per pixel, in each plane
  std::uint8_t planes;
  std::uint8_t depth;  ///< bits of a channel that the writer keeps (565: before it packs them)
  bool colour;         ///< takes red, green and blue; otherwise one value
  bool filtered;       ///< passes each channel through the colour filter
};

/// What every family converts to.
inline constexpr auto kDestinations = [] {
  constexpr bool Grey = false, Colour = true;
#define ZR_ROW(name, type, chained, bytes, planes, depth, channels, path)                   \
  DestinationRow{PixelTypeIds::type,       #name, #chained, bytes, planes, depth, channels, \
                 (channels) && (path) == 8},
  return std::array{ZR_DESTINATIONS(ZR_ROW)};
#undef ZR_ROW
}();

/// The row of a destination's type ID, or null.
constexpr const DestinationRow* FindDestination(long id) {
  for (const DestinationRow& row : kDestinations) {
    if (row.id == id) return &row;
  }
  return nullptr;
}

namespace FormatChecks {

constexpr std::size_t CountOf(Family family) {
  std::size_t count = 0;
  for (const FormatRow& row : kFormats) count += row.family == family ? 1 : 0;
  return count;
}

constexpr bool IdsAndNamesAreUnique() {
  std::array<const FormatRow*, kFormats.size() + kUntypedFormats.size()> rows{};
  std::size_t n = 0;
  for (const FormatRow& row : kFormats) rows[n++] = &row;
  for (const FormatRow& row : kUntypedFormats) rows[n++] = &row;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (rows[i]->id == rows[j]->id || rows[i]->name == rows[j]->name) return false;
    }
  }
  return true;
}

/// The high byte of the ID is the family.
constexpr bool IdFitsFamily(const FormatRow& row) {
  return row.id >> 8 == static_cast<long>(row.family);
}

/// The group holds just the samples its pixels have, and is the smallest that does.
constexpr bool GroupFits(const FormatRow& row) {
  const SampleUnit unit = UnitOf(row.order);
  const unsigned bits = row.group.bytes * 8u;
  if (row.packing == Packing::Word || row.packing == Packing::V1Packed)
    return bits == row.container * row.group.pixels;
  if (row.packing == Packing::Planar) return row.planes == 3 && bits == row.container * row.group.pixels;
  return row.planes == 1 && row.group.pixels % unit.pixels == 0 &&
         bits * unit.pixels == unsigned{row.container} * unit.samples * row.group.pixels;
}

constexpr bool DepthFits(const FormatRow& row) {
  if (row.packing == Packing::Dense) return row.container == row.depth;
  if (row.packing == Packing::Pair) return row.container == 12 && row.depth > 8 && row.depth <= 12;
  return row.depth <= row.container;
}

/// One sample per pixel: its depth. Several: the bits of the pixel in memory.
constexpr unsigned RegularBits(const FormatRow& row) {
  const SampleUnit unit = UnitOf(row.order);
  return unit.samples == 1 && unit.pixels == 1 ? row.depth : BitsInMemory(row);
}

constexpr bool SizesFit(const FormatRow& row) {
  const bool bitsFit = row.bits == RegularBits(row);
  const bool bytesFit = row.bytes == (RegularBits(row) + 7) / 8;
  return bitsFit != ((row.traits & kOddBits) != 0) && bytesFit != ((row.traits & kOddBytes) != 0);
}

constexpr bool RowFits(const FormatRow& row) {
  return IdFitsFamily(row) && GroupFits(row) && DepthFits(row) && SizesFit(row);
}

constexpr bool DestinationFits(const DestinationRow& row) {
  return FormatSatisfies(row.id, [&row](const FormatRow& format) {
    return format.group.pixels == 1 && format.group.bytes == row.bytes && format.planes == row.planes &&
           row.filtered == (row.colour && row.depth == 8);
  });
}

static_assert(kFormats.size() == 84 && kUntypedFormats.size() == 8 && kDestinations.size() == 16);
static_assert(CountOf(Family::Rgb) == 29 && CountOf(Family::Mono) == 15 && CountOf(Family::YCbCr) == 18);
static_assert(CountOf(Family::Bayer) == 10 && CountOf(Family::Scf1) == 7 && CountOf(Family::BiColor) == 5);
static_assert(IdsAndNamesAreUnique());
static_assert(std::all_of(kFormats.begin(), kFormats.end(), [](const FormatRow& r) { return RowFits(r); }));
static_assert(std::all_of(kUntypedFormats.begin(), kUntypedFormats.end(),
                          [](const FormatRow& r) { return RowFits(r); }));
static_assert(std::all_of(kDestinations.begin(), kDestinations.end(),
                          [](const DestinationRow& r) { return DestinationFits(r); }));

}  // namespace FormatChecks

}  // namespace ZrConvertersLib
