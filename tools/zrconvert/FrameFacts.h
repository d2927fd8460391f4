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

// Whether the format is a mosaic: each pixel has some of the colours only.
bool IsMosaic(const ZrConvertersLib::FormatInfo& format);

// Pattern and matrix: from the options, else from the format's name, else the library's defaults. Throws
// UsageError when option and name contradict one another, and when the format has no pattern or matrix.
ZrConvertersLib::FrameOptions ColourOptions(const Format& format,
                                            const std::optional<ZrConvertersLib::MosaicPattern>& pattern,
                                            const std::optional<ZrConvertersLib::ColourMatrix>& matrix);

// The order of packed samples: from the option, else from what the format's word means. The option may say
// another than the word, for cameras that do not send what they say. Throws UsageError when the format has no
// such order, and when lines of the width do not fill its groups.
ZrConvertersLib::PackingOrder PackingFor(const Format& format, Size size,
                                         const std::optional<ZrConvertersLib::PackingOrder>& option);

}  // namespace zrconvert
