#include "core/TypeCreator.h"

namespace ZrConvertersLib {

static const BayerCreator sBayerCreator;

}  // namespace ZrConvertersLib
