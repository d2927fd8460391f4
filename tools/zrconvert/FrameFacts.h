// Sizes and colours that several commands work out from the command line in the same way.
#pragma once

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FrameConverter.h>

#include <optional>

#include "Arguments.h"
#include "FormatNames.h"

namespace zrconvert {

// How far apart the lines of a frame lie: by the bytes between them or by the bytes from one to the next.
// Both 0: without a gap.
struct LineSpacing {
  std::size_t padding = 0;
  std::size_t stride = 0;
};

// The bytes of a frame of the format. Throws UsageError with a sentence that says which sizes the format can
// have.
ZrConvertersLib::FrameLayout DescribeOrThrow(const ZrConvertersLib::FormatInfo& format, Size size,
                                             LineSpacing lines);

// Whether each pixel has a part of the colours only, by a pattern.
bool IsMosaic(const ZrConvertersLib::FormatInfo& format);

// Pattern and matrix: from the options, else from what the format's word settled, else the library's own.
// Throws UsageError when options and word contradict one another, and when the format has no such thing.
ZrConvertersLib::FrameOptions ColourOptions(const Format& format,
                                            const std::optional<ZrConvertersLib::MosaicPattern>& pattern,
                                            const std::optional<ZrConvertersLib::ColourMatrix>& matrix);

}  // namespace zrconvert
