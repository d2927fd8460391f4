#include "Tone.h"

#include <cmath>

#include "Error.h"

namespace zrconvert {

namespace zr = ZrConvertersLib;

void SetTone(zr::RGBFilter& filter, zr::ToneSettings tone, unsigned depth) {
  tone.black = std::ldexp(tone.black, 8 - static_cast<int>(depth));
  if (!filter.SetTone(tone).IsSuccess()) {
    throw UsageError(
        "tone out of range: --gamma is above 0, factors are 0 or more, and --black is less than white");
  }
}

}  // namespace zrconvert
