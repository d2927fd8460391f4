// Which frames fill a number of bytes.
#pragma once

#include <ZrConvertersLib/Format.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "Arguments.h"

namespace zrconvert {

struct SizeGuess {
  Size size;
  std::uint64_t frames;
};

// The sizes, of those that are common among sensors and screens and of the common ratios of width to height,
// whose frames of the format fill the bytes without a rest; `only` asks for one size alone.
std::vector<SizeGuess> GuessSizes(std::uint64_t bytes, const ZrConvertersLib::FormatInfo& format,
                                  const std::optional<Size>& only = std::nullopt);

}  // namespace zrconvert
