#include "converters/BiColorTo.h"
#include "converters/Registration.h"
#include "core/TypeCreator.h"

namespace ZrConvertersLib {
namespace {

const BiColorCreator sBiColorCreator;

ZR_CONVERTERS(BiColor8, BiColorBytesTo)
ZR_CONVERTERS(BiColor10, BiColorWordsTo)
ZR_CONVERTERS(BiColor12, BiColorWordsTo)
ZR_CONVERTERS(BiColor10p, BiColor10pTo)
ZR_CONVERTERS(BiColor12p, BiColor12pTo)

}  // namespace
}  // namespace ZrConvertersLib
