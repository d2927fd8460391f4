#include "converters/FusedChain.h"
#include "converters/Registration.h"
#include "converters/Unpacker.h"
#include "converters/YCbCrTo.h"
#include "core/TypeCreator.h"

namespace ZrConvertersLib {
namespace {

const YCbCrCreator sYCbCrCreator;

ZR_CONVERTERS(YCbCr8, YCbCrBytesTo)
ZR_CONVERTERS(YCbCr8_CbYCr, YCbCr_CbYCrBytesTo)
ZR_CONVERTERS(YCbCr10_CbYCr, YCbCr_CbYCrWordsTo)
ZR_CONVERTERS(YCbCr12_CbYCr, YCbCr_CbYCrWordsTo)
ZR_CONVERTERS(YCbCr422_8, YCbCr422BytesTo)
ZR_CONVERTERS(YCbCr422_10, YCbCr422WordsTo)
ZR_CONVERTERS(YCbCr422_12, YCbCr422WordsTo)
ZR_CONVERTERS(YCbCr422_8_CbYCrY, YCbCr422_CbYCrYBytesTo)
ZR_CONVERTERS(YCbCr422_10_CbYCrY, YCbCr422_CbYCrYWordsTo)
ZR_CONVERTERS(YCbCr422_12_CbYCrY, YCbCr422_CbYCrYWordsTo)
ZR_CONVERTERS(YCbCr411_8, YCbCr411BytesTo)
ZR_CONVERTERS(YCbCr411_8_CbYYCrYY, YCbCr411_CbYYCrYYBytesTo)

/// All destinations by way of the 8-bit type of the same order.
#define ZR_PACKED(source, unpacker, unpacked, samplesPerPixel)                                          \
  unpacker<OutputMono8> s##source##To##unpacked{FormatOf(PixelTypeIds::source), PixelTypeIds::unpacked, \
                                                samplesPerPixel};                                       \
  ZR_COLOUR_CHAINS(source, unpacked, unpacked)

ZR_PACKED(YCbCr422_10p, Mono10pUnpacker, YCbCr422_8, 2u)
ZR_PACKED(YCbCr422_12p, Mono12pUnpacker, YCbCr422_8, 2u)
ZR_PACKED(YCbCr422_10p_CbYCrY, Mono10pUnpacker, YCbCr422_8_CbYCrY, 2u)
ZR_PACKED(YCbCr422_12p_CbYCrY, Mono12pUnpacker, YCbCr422_8_CbYCrY, 2u)
ZR_PACKED(YCbCr10p_CbYCr, Mono10pUnpacker, YCbCr8_CbYCr, 3u)
ZR_PACKED(YCbCr12p_CbYCr, Mono12pUnpacker, YCbCr8_CbYCr, 3u)

}  // namespace
}  // namespace ZrConvertersLib
