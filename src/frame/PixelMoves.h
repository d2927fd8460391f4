#pragma once

#include <cstdint>

#include "frame/FramePlan.h"

namespace ZrConvertersLib {

/// Copies `pixels` pixels of `pixelBytes` bytes each in reverse order. The buffers do not overlap.
void CopyMirrored(const std::uint8_t* from, std::uint8_t* to, std::int64_t pixels, std::int64_t pixelBytes,
                  Mirror mirror) noexcept;

}  // namespace ZrConvertersLib
