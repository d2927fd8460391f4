#include "core/TypeCreator.h"

namespace ZrConvertersLib {

static const RGBCreator sRGBCreator;

}  // namespace ZrConvertersLib
