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

// What the options of a frame point to: the tone options in the library's terms.
struct ToneTables {
  ToneOptions tone;
  ZrConvertersLib::RGBFilter filter;
  ZrConvertersLib::Development development;
};

// Throws UsageError when the options have no meaning together. The tables are set as the tone options say,
// and must outlive the plan.
Plan PlanOf(const ConvertOptions& options, ToneTables& tables);

// Names such as BayerRG8 and YCbCr709_422_8 state a pattern or matrix, but a conversion does not change
// these. Throws UsageError if the picture has another one than the destination's name states.
void RequireTrueName(const ConvertOptions& options, const Plan& plan, const BandConverter& converter);

}  // namespace zrconvert
