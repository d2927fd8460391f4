#include "converters/FusedChain.h"
#include "converters/Registration.h"
#include "converters/Unpacker.h"
#include "converters/YCbCrTo.h"
#include "core/TypeCreator.h"

namespace ZrConvertersLib {
namespace {

const YCbCrCreator sYCbCrCreator;

#define ZR_OBJECT(type, sample, source, destination) \
  type<sample, Output##destination> s##source##To##destination{FormatOf(PixelTypeIds::source)};
#define ZR_444(source, destination) ZR_OBJECT(YCbCrTo, unsigned char, source, destination)
#define ZR_444_CB(source, destination) ZR_OBJECT(YCbCr_CbYCrTo, unsigned char, source, destination)
#define ZR_444_CB_WORDS(source, destination) ZR_OBJECT(YCbCr_CbYCrTo, unsigned short, source, destination)
#define ZR_422(source, destination) ZR_OBJECT(YCbCr422To, unsigned char, source, destination)
#define ZR_422_WORDS(source, destination) ZR_OBJECT(YCbCr422To, unsigned short, source, destination)
#define ZR_422_CB(source, destination) ZR_OBJECT(YCbCr422_CbYCrYTo, unsigned char, source, destination)
#define ZR_422_CB_WORDS(source, destination) ZR_OBJECT(YCbCr422_CbYCrYTo, unsigned short, source, destination)
#define ZR_411(source, destination) ZR_OBJECT(YCbCr411To, unsigned char, source, destination)
#define ZR_411_CB(source, destination) ZR_OBJECT(YCbCr411_CbYYCrYYTo, unsigned char, source, destination)

ZR_FOR_EACH_DESTINATION(ZR_444, YCbCr8)
ZR_FOR_EACH_DESTINATION(ZR_444_CB, YCbCr8_CbYCr)
ZR_FOR_EACH_DESTINATION(ZR_444_CB_WORDS, YCbCr10_CbYCr)
ZR_FOR_EACH_DESTINATION(ZR_444_CB_WORDS, YCbCr12_CbYCr)
ZR_FOR_EACH_DESTINATION(ZR_422, YCbCr422_8)
ZR_FOR_EACH_DESTINATION(ZR_422_WORDS, YCbCr422_10)
ZR_FOR_EACH_DESTINATION(ZR_422_WORDS, YCbCr422_12)
ZR_FOR_EACH_DESTINATION(ZR_422_CB, YCbCr422_8_CbYCrY)
ZR_FOR_EACH_DESTINATION(ZR_422_CB_WORDS, YCbCr422_10_CbYCrY)
ZR_FOR_EACH_DESTINATION(ZR_422_CB_WORDS, YCbCr422_12_CbYCrY)
ZR_FOR_EACH_DESTINATION(ZR_411, YCbCr411_8)
ZR_FOR_EACH_DESTINATION(ZR_411_CB, YCbCr411_8_CbYYCrYY)

#define ZR_UNPACKER(type, source, destination, samplesPerPixel)                                           \
  type<OutputMono8> s##source##To##destination{FormatOf(PixelTypeIds::source), PixelTypeIds::destination, \
                                               samplesPerPixel};
#define ZR_CHAIN(source, unpacked, name, destination) \
  FusedChain s##source##To##name{&s##source##To##unpacked, &s##unpacked##To##destination};
// clang-format off
#define ZR_PACKED(unpacker, source, unpacked, samplesPerPixel)                                  \
  ZR_UNPACKER(unpacker, source, unpacked, samplesPerPixel)                                      \
  ZR_CHAIN(source, unpacked, RGB8, RGB8) ZR_CHAIN(source, unpacked, BGR8, BGR8)                 \
  ZR_CHAIN(source, unpacked, RGB16, RGB16) ZR_CHAIN(source, unpacked, BGR16, BGR16)             \
  ZR_CHAIN(source, unpacked, RGB32, RGBa8) ZR_CHAIN(source, unpacked, BGR32, BGRa8)             \
  ZR_CHAIN(source, unpacked, RGB565p, RGB565p) ZR_CHAIN(source, unpacked, Mono8, Mono8)         \
  ZR_CHAIN(source, unpacked, Mono10, Mono10) ZR_CHAIN(source, unpacked, Mono12, Mono12)         \
  ZR_CHAIN(source, unpacked, Mono14, Mono14) ZR_CHAIN(source, unpacked, Mono16, Mono16)         \
  ZR_CHAIN(source, unpacked, Planar8, Planar8) ZR_CHAIN(source, unpacked, Planar10, Planar10)   \
  ZR_CHAIN(source, unpacked, Planar12, Planar12) ZR_CHAIN(source, unpacked, Planar16, Planar16)
// clang-format on

ZR_PACKED(Mono10pUnpacker, YCbCr422_10p, YCbCr422_8, 2u)
ZR_PACKED(Mono12pUnpacker, YCbCr422_12p, YCbCr422_8, 2u)
ZR_PACKED(Mono10pUnpacker, YCbCr422_10p_CbYCrY, YCbCr422_8_CbYCrY, 2u)
ZR_PACKED(Mono12pUnpacker, YCbCr422_12p_CbYCrY, YCbCr422_8_CbYCrY, 2u)
ZR_PACKED(Mono10pUnpacker, YCbCr10p_CbYCr, YCbCr8_CbYCr, 3u)
ZR_PACKED(Mono12pUnpacker, YCbCr12p_CbYCr, YCbCr8_CbYCr, 3u)

}  // namespace
}  // namespace ZrConvertersLib
