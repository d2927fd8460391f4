// The commands of the tool. Each throws UsageError or Failure when it cannot do its work.
#pragma once

#include "Options.h"

namespace zrconvert {

void Convert(const ConvertOptions& options);
void WriteChart(const ChartOptions& options);
void TellWhatFileMayBe(const InfoOptions& options);
void ListFormats(const FormatsOptions& options);
void ListPairs(const PairsOptions& options);

}  // namespace zrconvert
