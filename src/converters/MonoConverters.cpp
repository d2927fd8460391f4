#include "core/TypeCreator.h"

namespace ZrConvertersLib {

static const MonoCreator sMonoCreator;

}  // namespace ZrConvertersLib
