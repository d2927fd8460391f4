// Reads the words of the command line. Everything here throws UsageError with a sentence that says what is
// wrong and what would be right.
#pragma once

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/ToneSettings.h>

#include <cstdint>
#include <string>

namespace zrconvert {

struct Size {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

// A format with what its word settled beside the layout: "BayerRG12p" names the mosaic's pattern too.
struct Format {
  const ZrConvertersLib::FormatInfo* info = nullptr;
  unsigned flags = 0;
  bool settled = false;
  std::string word;
};

Size ReadSize(const std::string& text);                       // "640x480"
ZrConvertersLib::Region ReadRegion(const std::string& text);  // "8,16,320,240"
ZrConvertersLib::MosaicPattern ReadPattern(const std::string& text);
ZrConvertersLib::ColourMatrix ReadMatrix(const std::string& text);
ZrConvertersLib::Demosaic ReadDemosaic(const std::string& text);
Format ReadFormat(const std::string& text);  // a name, a PFNC name or a PFNC code
double ReadNumber(const std::string& text);
std::uint64_t ReadCount(const std::string& text);

// "1.9,1,1.4", or one number for all three.
ZrConvertersLib::ToneSettings::Channels ReadChannels(const std::string& text);

std::string ToText(Size size);  // "640x480"

}  // namespace zrconvert
