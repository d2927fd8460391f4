#include "core/TypeCreator.h"

namespace ZrConvertersLib {

static const ScfCreator sSCF1Creator;

}  // namespace ZrConvertersLib
