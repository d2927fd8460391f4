#include "converters/MonoPackedTo.h"
#include "converters/MonoTo.h"
#include "converters/Registration.h"
#include "core/TypeCreator.h"

namespace ZrConvertersLib {
namespace {

const MonoCreator sMonoCreator;

ZR_CONVERTERS(Mono8, MonoBytesTo)
ZR_CONVERTERS(Mono8s, Mono8sTo)
ZR_CONVERTERS(Mono10, MonoWordsTo)
ZR_CONVERTERS(Mono12, MonoWordsTo)
ZR_CONVERTERS(Mono14, MonoWordsTo)
ZR_CONVERTERS(Mono16, MonoWordsTo)
ZR_CONVERTERS(Mono32, Mono32To)

ZR_CONVERTERS(Mono10p, Mono10pTo)
ZR_CONVERTERS(Mono12p, Mono12pTo)
ZR_CONVERTERS(Mono14p, Mono14pTo)
ZR_CONVERTERS(Mono10Packed, MonoPackedTo)
ZR_CONVERTERS(Mono12Packed, MonoPackedTo)
ZR_CONVERTERS(Mono1p, MonoPTo)
ZR_CONVERTERS(Mono2p, MonoPTo)
ZR_CONVERTERS(Mono4p, MonoPTo)

}  // namespace
}  // namespace ZrConvertersLib
