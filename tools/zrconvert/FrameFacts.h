// Sizes and colours that several commands work out from the command line in the same way.
#pragma once

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FrameConverter.h>

#include <optional>

#include "Arguments.h"

namespace zrconvert {

// The bytes of a frame of the format with `padding` bytes after each line. Throws UsageError with a sentence
// that says which sizes the format can have.
ZrConvertersLib::FrameLayout DescribeOrThrow(const ZrConvertersLib::FormatInfo& format, Size size,
                                             std::size_t padding);

// Pattern and matrix: from the options, else from what the format's word settled, else the library's own.
// Throws UsageError when options and word contradict one another.
ZrConvertersLib::FrameOptions ColourOptions(const Format& format,
                                            const std::optional<ZrConvertersLib::MosaicPattern>& pattern,
                                            const std::optional<ZrConvertersLib::ColourMatrix>& matrix);

}  // namespace zrconvert
