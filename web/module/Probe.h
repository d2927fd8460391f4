// One pixel of the frame on show: its bytes, its samples and its colour.
#pragma once

#include <string>

#include "Frame.h"

namespace page {

// {"offset": of the first byte in the frame, "bytes": [...], "pixels": that they hold,
//  "samples": [{"name", "value"}], "depth": bits of a sample, "colour": [red, green, blue]}; null outside the
// picture. Pixels that share bytes are told with all of these, and with their own samples where the layout
// gives each pixel its own.
std::string ProbeAsJson(const Frame& frame, std::uint32_t x, std::uint32_t y);

}  // namespace page
