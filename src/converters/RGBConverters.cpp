#include "converters/FusedChain.h"
#include "converters/InterleavedTo.h"
#include "converters/MonoPackedTo.h"
#include "converters/Registration.h"
#include "core/TypeCreator.h"

namespace ZrConvertersLib {
namespace {

const RGBCreator sRGBCreator;

ZR_CONVERTERS(RGB8, RGB8To)
ZR_CONVERTERS(BGR8, BGR8To)
ZR_CONVERTERS(RGBa8, RGBa8To)
ZR_CONVERTERS(BGRa8, BGRa8To)

ZR_CONVERTERS(RGB10, RGB16To)
ZR_CONVERTERS(BGR10, BGR16To)
ZR_CONVERTERS(RGBa10, RGBa16To)
ZR_CONVERTERS(BGRa10, BGRa16To)

ZR_CONVERTERS(RGB12, RGB16To)
ZR_CONVERTERS(BGR12, BGR16To)
ZR_CONVERTERS(RGBa12, RGBa16To)
ZR_CONVERTERS(BGRa12, BGRa16To)

ZR_CONVERTERS(RGB14, RGB16To)
ZR_CONVERTERS(BGR14, BGR16To)
ZR_CONVERTERS(RGBa14, RGBa16To)
ZR_CONVERTERS(BGRa14, BGRa16To)

ZR_CONVERTERS(RGB16, RGB16To)
ZR_CONVERTERS(BGR16, BGR16To)
ZR_CONVERTERS(RGBa16, RGBa16To)
ZR_CONVERTERS(BGRa16, BGRa16To)

ZR_CONVERTERS(RGB565p, RGB565pTo)
ZR_CONVERTERS(BGR565p, BGR565pTo)
ZR_CONVERTERS(RGB10p32, RGB10p32To)
ZR_CONVERTERS(RGB10V1Packed, RGB10V1PackedTo)
ZR_CONVERTERS(RGB12V1Packed, RGB12V1PackedTo)
ZR_CONVERTERS(RGB8_Planar, RGBPlanarBytesTo)
ZR_CONVERTERS(RGB10_Planar, RGBPlanarWordsTo)
ZR_CONVERTERS(RGB12_Planar, RGBPlanarWordsTo)
ZR_CONVERTERS(RGB16_Planar, RGBPlanarWordsTo)

/// Chains by way of the 8-bit and of the 16-bit type of the same channels. Their unpackers are no pairs of
/// the registry: packed types convert to those types by chains.
// NOLINTBEGIN(bugprone-macro-parentheses): the name of a template cannot stand in parentheses
#define ZR_PACKED(source, unpacker, channels, samplesPerPixel)                                            \
  unpacker<OutputMono8> s##source##Samples8{FormatOf(PixelTypeIds::source), PixelTypeIds::channels##8,    \
                                            false, samplesPerPixel};                                      \
  unpacker<OutputMono16> s##source##Samples16{FormatOf(PixelTypeIds::source), PixelTypeIds::channels##16, \
                                              false, samplesPerPixel};                                    \
  ZR_DESTINATIONS(ZR_PACKED_CHAIN, source, channels)
// NOLINTEND(bugprone-macro-parentheses)
#define ZR_PACKED_CHAIN(name, type, chained, bytes, planes, depth, kind, path, source, channels) \
  FusedChain s##source##To##chained{&s##source##Samples##path, &s##channels##path##To##name};

ZR_PACKED(RGB10p, Mono10pTo, RGB, 3)
ZR_PACKED(BGR10p, Mono10pTo, BGR, 3)
ZR_PACKED(RGBa10p, Mono10pTo, RGBa, 4)
ZR_PACKED(BGRa10p, Mono10pTo, BGRa, 4)
ZR_PACKED(RGB12p, Mono12pTo, RGB, 3)
ZR_PACKED(BGR12p, Mono12pTo, BGR, 3)
ZR_PACKED(RGBa12p, Mono12pTo, RGBa, 4)
ZR_PACKED(BGRa12p, Mono12pTo, BGRa, 4)

}  // namespace
}  // namespace ZrConvertersLib
