#pragma once

/// @file
/// The list of destinations. The writers' enumeration, the destination table, the tags that converters are
/// instantiated with, the rows of kernels and the registered objects all follow from it, in its order, which
/// is the order of registration. A further destination is a row here and a writer of its name in
/// simd/Writers.h.

/// Calls row(name, type, chained, bytes, planes, depth, channels, path, ...) for each destination:
///  name      of the writer, and in the names of converter objects
///  type      the pixel type that it writes
///  chained   its name in the objects of packed colour chains
///  bytes     per pixel, in each plane
///  planes    one after another, each stride x height
///  depth     bits of a channel that the writer keeps (565: before it packs them)
///  channels  Grey: one value a pixel, the green; Colour: red, green and blue
///  path      8 or 16: bits of the samples that a chain or demosaic passes on; 8-bit colours apply the filter
// clang-format off
#define ZR_DESTINATIONS(row, ...)                                                         \
  row(RGB565p,  RGB565p,      RGB565p,  2, 1,  8, Colour,  8 __VA_OPT__(,) __VA_ARGS__)  \
  row(RGB8,     RGB8,         RGB8,     3, 1,  8, Colour,  8 __VA_OPT__(,) __VA_ARGS__)  \
  row(BGR8,     BGR8,         BGR8,     3, 1,  8, Colour,  8 __VA_OPT__(,) __VA_ARGS__)  \
  row(RGBa8,    RGBa8,        RGB32,    4, 1,  8, Colour,  8 __VA_OPT__(,) __VA_ARGS__)  \
  row(BGRa8,    BGRa8,        BGR32,    4, 1,  8, Colour,  8 __VA_OPT__(,) __VA_ARGS__)  \
  row(Mono8,    Mono8,        Mono8,    1, 1,  8, Grey,    8 __VA_OPT__(,) __VA_ARGS__)  \
  row(Mono10,   Mono10,       Mono10,   2, 1, 10, Grey,   16 __VA_OPT__(,) __VA_ARGS__)  \
  row(Mono12,   Mono12,       Mono12,   2, 1, 12, Grey,   16 __VA_OPT__(,) __VA_ARGS__)  \
  row(Mono14,   Mono14,       Mono14,   2, 1, 14, Grey,   16 __VA_OPT__(,) __VA_ARGS__)  \
  row(Mono16,   Mono16,       Mono16,   2, 1, 16, Grey,   16 __VA_OPT__(,) __VA_ARGS__)  \
  row(RGB16,    RGB16,        RGB16,    6, 1, 16, Colour, 16 __VA_OPT__(,) __VA_ARGS__)  \
  row(BGR16,    BGR16,        BGR16,    6, 1, 16, Colour, 16 __VA_OPT__(,) __VA_ARGS__)  \
  row(Planar8,  RGB8_Planar,  Planar8,  1, 3,  8, Colour,  8 __VA_OPT__(,) __VA_ARGS__)  \
  row(Planar10, RGB10_Planar, Planar10, 2, 3, 10, Colour, 16 __VA_OPT__(,) __VA_ARGS__)  \
  row(Planar12, RGB12_Planar, Planar12, 2, 3, 12, Colour, 16 __VA_OPT__(,) __VA_ARGS__)  \
  row(Planar16, RGB16_Planar, Planar16, 2, 3, 16, Colour, 16 __VA_OPT__(,) __VA_ARGS__)
// clang-format on

/// Calls row(name) for the destinations that the colour filter acts on.
#define ZR_FILTERED_DESTINATIONS(row) ZR_DESTINATIONS(ZR_IF_FILTERED, row)
#define ZR_IF_FILTERED(name, type, chained, bytes, planes, depth, channels, path, row) \
  ZR_FILTERED_##channels##_##path(row, name)
#define ZR_FILTERED_Colour_8(row, name) row(name)
#define ZR_FILTERED_Colour_16(row, name)
#define ZR_FILTERED_Grey_8(row, name)
#define ZR_FILTERED_Grey_16(row, name)
