#include "converters/Registration.h"
#include "converters/SCF1To.h"
#include "core/TypeCreator.h"

namespace ZrConvertersLib {
namespace {

const ScfCreator sSCF1Creator;

ZR_CONVERTERS(SCF18, SCF1BytesTo)
ZR_CONVERTERS(SCF110, SCF1WordsTo)
ZR_CONVERTERS(SCF110p, SCF110pTo)
ZR_CONVERTERS(SCF112, SCF1WordsTo)
ZR_CONVERTERS(SCF112p, SCF112pTo)
ZR_CONVERTERS(SCF114, SCF1WordsTo)
ZR_CONVERTERS(SCF116, SCF1WordsTo)

}  // namespace
}  // namespace ZrConvertersLib
