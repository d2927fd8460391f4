#include "converters/MonoPackedTo.h"
#include "converters/MonoTo.h"
#include "converters/Registration.h"
#include "core/TypeCreator.h"

namespace ZrConvertersLib {
namespace {

const MonoCreator sMonoCreator;

#define ZR_OBJECT(type, source, destination) \
  const type s##source##To##destination{FormatOf(PixelTypeIds::source)};
#define ZR_BYTES(source, destination) \
  const MonoTo<unsigned char, Output##destination> s##source##To##destination{FormatOf(PixelTypeIds::source)};
#define ZR_WORDS(source, destination)                                           \
  const MonoTo<unsigned short, Output##destination> s##source##To##destination{ \
      FormatOf(PixelTypeIds::source)};
#define ZR_SIGNED(source, destination) ZR_OBJECT(Mono8sTo<Output##destination>, source, destination)
#define ZR_DOUBLE_WORDS(source, destination) ZR_OBJECT(Mono32To<Output##destination>, source, destination)
#define ZR_10P(source, destination) ZR_OBJECT(Mono10pTo<Output##destination>, source, destination)
#define ZR_12P(source, destination) ZR_OBJECT(Mono12pTo<Output##destination>, source, destination)
#define ZR_14P(source, destination) ZR_OBJECT(Mono14pTo<Output##destination>, source, destination)
#define ZR_PACKED(source, destination) ZR_OBJECT(MonoPackedTo<Output##destination>, source, destination)
#define ZR_SUB_BYTE(source, destination) ZR_OBJECT(MonoPTo<Output##destination>, source, destination)

ZR_FOR_EACH_DESTINATION(ZR_BYTES, Mono8)
ZR_FOR_EACH_DESTINATION(ZR_SIGNED, Mono8s)
ZR_FOR_EACH_DESTINATION(ZR_WORDS, Mono10)
ZR_FOR_EACH_DESTINATION(ZR_WORDS, Mono12)
ZR_FOR_EACH_DESTINATION(ZR_WORDS, Mono14)
ZR_FOR_EACH_DESTINATION(ZR_WORDS, Mono16)
ZR_FOR_EACH_DESTINATION(ZR_DOUBLE_WORDS, Mono32)

ZR_FOR_EACH_DESTINATION(ZR_10P, Mono10p)
ZR_FOR_EACH_DESTINATION(ZR_12P, Mono12p)
ZR_FOR_EACH_DESTINATION(ZR_14P, Mono14p)
ZR_FOR_EACH_DESTINATION(ZR_PACKED, Mono10Packed)
ZR_FOR_EACH_DESTINATION(ZR_PACKED, Mono12Packed)
ZR_FOR_EACH_DESTINATION(ZR_SUB_BYTE, Mono1p)
ZR_FOR_EACH_DESTINATION(ZR_SUB_BYTE, Mono2p)
ZR_FOR_EACH_DESTINATION(ZR_SUB_BYTE, Mono4p)

}  // namespace
}  // namespace ZrConvertersLib
