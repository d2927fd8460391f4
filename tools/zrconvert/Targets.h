// Which container and which destination format a conversion writes.
#pragma once

#include "Options.h"

namespace zrconvert {

// Throws UsageError when neither the option nor the ending of the output names one.
Container ContainerOf(const ConvertOptions& options);

// The option's format, or what suits the source, the container and `pictureWidth`. Throws UsageError when the
// library has no such conversion, the container cannot hold the format, or tone options would have no effect.
const ZrConvertersLib::FormatInfo& TargetOf(const ConvertOptions& options, Container container,
                                            std::uint32_t pictureWidth);

}  // namespace zrconvert
