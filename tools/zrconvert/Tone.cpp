#include "Tone.h"

#include <cmath>
#include <sstream>

#include "Error.h"

namespace zrconvert {

namespace zr = ZrConvertersLib;

void SetTone(zr::RGBFilter& filter, zr::ToneSettings tone, unsigned depth) {
  const int shift = static_cast<int>(depth) - 8;
  tone.black = std::ldexp(tone.black, -shift);
  if (filter.SetTone(tone).IsSuccess()) return;
  std::ostringstream sentence;
  sentence << "--black takes a number from 0 to " << std::ldexp(254.0, shift) << " for samples of " << depth
           << " bits";
  throw UsageError(sentence.str());
}

}  // namespace zrconvert
