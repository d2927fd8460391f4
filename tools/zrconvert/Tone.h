// From the tone options of the command line to the library's filter.
#pragma once

#include <ZrConvertersLib/RGBFilter.h>
#include <ZrConvertersLib/ToneSettings.h>

namespace zrconvert {

// The black level in `tone` is in counts of samples of `depth` bits. Throws UsageError for settings without
// meaning.
void SetTone(ZrConvertersLib::RGBFilter& filter, ZrConvertersLib::ToneSettings tone, unsigned depth);

}  // namespace zrconvert
