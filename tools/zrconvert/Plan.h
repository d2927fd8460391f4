// What a conversion will do, settled before the first frame is read.
#pragma once

#include <ZrConvertersLib/RGBFilter.h>

#include <string>
#include <vector>

#include "FrameFit.h"
#include "Options.h"
#include "common/BandedConverter.h"

namespace zrconvert {

struct Plan {
  std::vector<std::string> inputs;
  Container container;
  const ZrConvertersLib::FormatInfo* target;
  FrameFit fit;
  zrcommon::Conversion job;
  std::vector<std::string> notes;  // what the tool assumed, one sentence each
};

// Throws UsageError when the options have no meaning together. The filter is set as the tone options say, and
// must outlive the plan.
Plan PlanOf(const ConvertOptions& options, ZrConvertersLib::RGBFilter& filter);

// Names such as BayerRG8 and YCbCr709_422_8 state a pattern or matrix, but a conversion does not change
// these. Throws UsageError if the picture has another one than the destination's name states.
// pattern: of the picture
void RequireTrueName(const ConvertOptions& options, const Plan& plan, ZrConvertersLib::MosaicPattern pattern);

}  // namespace zrconvert
