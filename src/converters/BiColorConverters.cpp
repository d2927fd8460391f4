#include "core/TypeCreator.h"

namespace ZrConvertersLib {

static const BiColorCreator sBiColorCreator;

}  // namespace ZrConvertersLib
