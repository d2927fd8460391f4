#include "Tone.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>

#include "Error.h"

namespace zrconvert {

namespace zr = ZrConvertersLib;

bool TakesTone(const zr::FormatInfo& destination) {
  static constexpr std::array<std::string_view, 6> cFiltered{"RGB8",  "BGR8",    "RGBa8",
                                                             "BGRa8", "RGB565p", "RGB8_Planar"};
  return std::ranges::find(cFiltered, destination.name) != cFiltered.end();
}

void SetTone(zr::RGBFilter& filter, zr::ToneSettings tone, unsigned depth) {
  tone.black = std::ldexp(tone.black, 8 - static_cast<int>(depth));
  if (!filter.SetTone(tone).IsSuccess()) {
    throw UsageError(
        "tone out of range: --gamma is above 0, factors are 0 or more, and --black is less than white");
  }
}

}  // namespace zrconvert
