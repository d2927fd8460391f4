#include "converters/BayerTo.h"
#include "converters/FusedChain.h"
#include "converters/Registration.h"
#include "converters/Unpacker.h"
#include "core/TypeCreator.h"

namespace ZrConvertersLib {
namespace {

const BayerCreator sBayerCreator;

ZR_CONVERTERS(Bayer8, BayerBytesTo)
ZR_CONVERTERS(Bayer10, BayerWordsTo)
ZR_CONVERTERS(Bayer12, BayerWordsTo)
ZR_CONVERTERS(Bayer14, BayerWordsTo)
ZR_CONVERTERS(Bayer16, BayerWordsTo)

#define ZR_UNPACKER(type, source, unpacked, writer) \
  type<writer> s##source##To##unpacked{FormatOf(PixelTypeIds::source), PixelTypeIds::unpacked};
#define ZR_PACKED(source, unpacker)                    \
  ZR_UNPACKER(unpacker, source, Bayer8, OutputMono8)   \
  ZR_UNPACKER(unpacker, source, Bayer16, OutputMono16) \
  ZR_CHAINS(source, Bayer8, Bayer16)

ZR_PACKED(Bayer10Packed, MonoPackedUnpacker)
ZR_PACKED(Bayer10p, Mono10pUnpacker)
ZR_PACKED(Bayer12Packed, MonoPackedUnpacker)
ZR_PACKED(Bayer12p, Mono12pUnpacker)
ZR_PACKED(Bayer14p, Mono14pUnpacker)

}  // namespace
}  // namespace ZrConvertersLib
