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
  std::vector<std::string> notes;  // what the tool took upon itself, one sentence each
};

// Throws UsageError when the options have no meaning together. The filter is set as the tone options say, and
// must outlive the plan.
Plan PlanOf(const ConvertOptions& options, ZrConvertersLib::RGBFilter& filter);

// Throws UsageError unless what the destination's word says beside the layout is true of the picture: names
// as BayerRG8 and YCbCr709_422_8 do not change a pattern or a matrix.
void RequireTrueName(const ConvertOptions& options, const Plan& plan, const BandConverter& converter);

}  // namespace zrconvert
