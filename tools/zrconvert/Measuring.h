// What the samples of a file's first frame are like.
#pragma once

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/Measure.h>

#include <string>

#include "FrameFit.h"

namespace zrconvert {

ZrConvertersLib::MeasureOptions MeasureOptionsOf(const ZrConvertersLib::FrameOptions& frame);

// Throws UsageError for standard input, which is read only once, and Failure when there is no frame.
ZrConvertersLib::FrameStatistics MeasureFirstFrame(const std::string& file, const FrameFit& fit,
                                                   const ZrConvertersLib::MeasureOptions& options);

// Numbers of each channel, and the settings that follow from them.
void PrintStatistics(const ZrConvertersLib::FrameStatistics& statistics);

// Curves of all channels over the scale of the samples, as a .png.
void DrawHistogram(const ZrConvertersLib::FrameStatistics& statistics, const std::string& output);

}  // namespace zrconvert
