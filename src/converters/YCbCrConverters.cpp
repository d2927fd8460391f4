#include "core/TypeCreator.h"

namespace ZrConvertersLib {

static const YCbCrCreator sYCbCrCreator;

}  // namespace ZrConvertersLib
