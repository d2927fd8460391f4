// From the tone options of the command line to the library's filter.
#pragma once

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/RGBFilter.h>
#include <ZrConvertersLib/ToneSettings.h>

namespace zrconvert {

// Filters act on 8-bit colour only.
bool TakesTone(const ZrConvertersLib::FormatInfo& destination);

// The black level in `tone` is in counts of samples of `depth` bits. Throws UsageError for settings without
// meaning.
void SetTone(ZrConvertersLib::RGBFilter& filter, ZrConvertersLib::ToneSettings tone, unsigned depth);

}  // namespace zrconvert
