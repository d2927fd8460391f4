// The keywords of a conversion.
#pragma once

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/ToneSettings.h>
#include <pybind11/pybind11.h>

#include <memory>

#include "common/BandedConverter.h"

namespace zrpython {

/// A format as Python names it: a Format object, a name or code as text, or a code as a number.
/// Throws ValueError or TypeError.
ZrConvertersLib::FormatChoice FormatOf(pybind11::handle word);

/// The format of that ID, which exists.
const ZrConvertersLib::FormatInfo& InfoOf(long id);

/// Three numbers, or one for all channels. Throws TypeError, naming the option.
ZrConvertersLib::ToneSettings::Channels ChannelsOf(const char* name, pybind11::handle value);

/// Fills options and threads from the keywords. Throws TypeError for an unknown keyword or a value of a wrong
/// type, and ValueError for a value that is not allowed.
/// @param settled  the source format, whose word may have settled the pattern or the matrix
void ReadOptions(const ZrConvertersLib::FormatChoice& settled, const pybind11::dict& keywords,
                 zrcommon::Conversion& conversion);

}  // namespace zrpython
