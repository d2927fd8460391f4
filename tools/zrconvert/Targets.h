// Which container and which destination format a conversion writes.
#pragma once

#include "Options.h"

namespace zrconvert {

// Throws UsageError when neither the option nor the ending of the output names one.
Container ContainerOf(const ConvertOptions& options);

// The option's format, or what suits the source, the container and the picture. Throws UsageError when the
// library has no such conversion, the container cannot hold the picture, or tone options would have no
// effect.
const ZrConvertersLib::FormatInfo& TargetOf(const ConvertOptions& options, Container container, Size picture);

// The name of what TargetOf would give without the tone options.
std::string TargetWithoutTone(const ConvertOptions& options, Container container, std::uint32_t pictureWidth);

}  // namespace zrconvert
