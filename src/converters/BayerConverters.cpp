#include "converters/BayerTo.h"
#include "converters/FusedChain.h"
#include "converters/Registration.h"
#include "converters/Unpacker.h"
#include "core/TypeCreator.h"

namespace ZrConvertersLib {
namespace {

const BayerCreator sBayerCreator;

#define ZR_BYTES(source, destination) \
  BayerTo<unsigned char, Output##destination> s##source##To##destination{FormatOf(PixelTypeIds::source)};
#define ZR_WORDS(source, destination) \
  BayerTo<unsigned short, Output##destination> s##source##To##destination{FormatOf(PixelTypeIds::source)};

ZR_FOR_EACH_DESTINATION(ZR_BYTES, Bayer8)
ZR_FOR_EACH_DESTINATION(ZR_WORDS, Bayer10)
ZR_FOR_EACH_DESTINATION(ZR_WORDS, Bayer12)
ZR_FOR_EACH_DESTINATION(ZR_WORDS, Bayer14)
ZR_FOR_EACH_DESTINATION(ZR_WORDS, Bayer16)

#define ZR_UNPACKER(type, source, unpacked, writer) \
  type<writer> s##source##To##unpacked{FormatOf(PixelTypeIds::source), PixelTypeIds::unpacked};
#define ZR_CHAIN(source, unpacked, destination) \
  FusedChain s##source##To##destination{&s##source##To##unpacked, &s##unpacked##To##destination};
// clang-format off
#define ZR_PACKED(type, source)                                                                          \
  ZR_UNPACKER(type, source, Bayer8, OutputMono8)                                                         \
  ZR_UNPACKER(type, source, Bayer16, OutputMono16)                                                       \
  ZR_CHAIN(source, Bayer8, RGB565p) ZR_CHAIN(source, Bayer8, RGB8) ZR_CHAIN(source, Bayer8, BGR8)        \
  ZR_CHAIN(source, Bayer8, RGBa8) ZR_CHAIN(source, Bayer8, BGRa8) ZR_CHAIN(source, Bayer8, Mono8)        \
  ZR_CHAIN(source, Bayer16, Mono10) ZR_CHAIN(source, Bayer16, Mono12) ZR_CHAIN(source, Bayer16, Mono14)  \
  ZR_CHAIN(source, Bayer16, Mono16) ZR_CHAIN(source, Bayer16, RGB16) ZR_CHAIN(source, Bayer16, BGR16)    \
  ZR_CHAIN(source, Bayer8, Planar8) ZR_CHAIN(source, Bayer16, Planar10)                                  \
  ZR_CHAIN(source, Bayer16, Planar12) ZR_CHAIN(source, Bayer16, Planar16)
// clang-format on

ZR_PACKED(MonoPackedUnpacker, Bayer10Packed)
ZR_PACKED(Mono10pUnpacker, Bayer10p)
ZR_PACKED(MonoPackedUnpacker, Bayer12Packed)
ZR_PACKED(Mono12pUnpacker, Bayer12p)
ZR_PACKED(Mono14pUnpacker, Bayer14p)

}  // namespace
}  // namespace ZrConvertersLib
