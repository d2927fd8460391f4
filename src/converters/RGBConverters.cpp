#include "converters/InterleavedTo.h"
#include "converters/Registration.h"
#include "core/TypeCreator.h"

namespace ZrConvertersLib {
namespace {

const RGBCreator sRGBCreator;

#define ZR_OBJECT(type, source, destination) \
  const type<Output##destination> s##source##To##destination{FormatOf(PixelTypeIds::source)};
#define ZR_RGB8(source, destination) ZR_OBJECT(RGB8To, source, destination)
#define ZR_BGR8(source, destination) ZR_OBJECT(BGR8To, source, destination)
#define ZR_RGBA8(source, destination) ZR_OBJECT(RGBa8To, source, destination)
#define ZR_BGRA8(source, destination) ZR_OBJECT(BGRa8To, source, destination)
#define ZR_RGB16(source, destination) ZR_OBJECT(RGB16To, source, destination)
#define ZR_BGR16(source, destination) ZR_OBJECT(BGR16To, source, destination)
#define ZR_RGBA16(source, destination) ZR_OBJECT(RGBa16To, source, destination)
#define ZR_BGRA16(source, destination) ZR_OBJECT(BGRa16To, source, destination)

ZR_FOR_EACH_DESTINATION(ZR_RGB8, RGB8)
ZR_FOR_EACH_DESTINATION(ZR_BGR8, BGR8)
ZR_FOR_EACH_DESTINATION(ZR_RGBA8, RGBa8)
ZR_FOR_EACH_DESTINATION(ZR_BGRA8, BGRa8)

ZR_FOR_EACH_DESTINATION(ZR_RGB16, RGB10)
ZR_FOR_EACH_DESTINATION(ZR_BGR16, BGR10)
ZR_FOR_EACH_DESTINATION(ZR_RGBA16, RGBa10)
ZR_FOR_EACH_DESTINATION(ZR_BGRA16, BGRa10)
ZR_FOR_EACH_DESTINATION(ZR_RGB16, RGB12)
ZR_FOR_EACH_DESTINATION(ZR_BGR16, BGR12)
ZR_FOR_EACH_DESTINATION(ZR_RGBA16, RGBa12)
ZR_FOR_EACH_DESTINATION(ZR_BGRA16, BGRa12)
ZR_FOR_EACH_DESTINATION(ZR_RGB16, RGB14)
ZR_FOR_EACH_DESTINATION(ZR_BGR16, BGR14)
ZR_FOR_EACH_DESTINATION(ZR_RGBA16, RGBa14)
ZR_FOR_EACH_DESTINATION(ZR_BGRA16, BGRa14)
ZR_FOR_EACH_DESTINATION(ZR_RGB16, RGB16)
ZR_FOR_EACH_DESTINATION(ZR_BGR16, BGR16)
ZR_FOR_EACH_DESTINATION(ZR_RGBA16, RGBa16)
ZR_FOR_EACH_DESTINATION(ZR_BGRA16, BGRa16)

}  // namespace
}  // namespace ZrConvertersLib
