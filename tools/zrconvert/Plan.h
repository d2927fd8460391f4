// What a conversion will do, settled before the first frame is read.
#pragma once

#include <ZrConvertersLib/RGBFilter.h>

#include <string>
#include <vector>

#include "BandConverter.h"
#include "FrameFit.h"
#include "Options.h"

namespace zrconvert {

struct Plan {
  std::vector<std::string> inputs;
  Container container;
  const ZrConvertersLib::FormatInfo* target;
  FrameFit fit;
  BandConverter::Job job;
  std::vector<std::string> notes;  // what the tool assumed, one sentence each
};

// Throws UsageError when the options contradict one another. Sets the filter from the tone options; it must
// outlive the plan.
Plan PlanOf(const ConvertOptions& options, ZrConvertersLib::RGBFilter& filter);

// Names such as BayerRG8 and YCbCr709_422_8 state a pattern or matrix, but a conversion does not change
// these. Throws UsageError if the picture has another one than the destination's name states.
void RequireTrueName(const ConvertOptions& options, const Plan& plan, const BandConverter& converter);

}  // namespace zrconvert
