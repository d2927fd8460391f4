// The words by which a user names a format.
#pragma once

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FrameConverter.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zrconvert {

// A format with what its word settled beside the layout: "BayerRG12p" names the mosaic's pattern too.
struct Format {
  const ZrConvertersLib::FormatInfo* info = nullptr;
  unsigned flags = 0;
  bool settled = false;
  std::string word;
};

// A name of the library, of PFNC or of V4L2, in any case, a PFNC code, or a fourcc of V4L2 in its own case.
// Throws UsageError for others, with the names that are near.
Format ReadFormat(const std::string& text);

// Every name that ReadFormat takes in any case, each once.
std::vector<std::string_view> AllFormatNames();

// "pRAA"
std::string FourccText(std::uint32_t fourcc);

// What the option --packing calls the order, "gige-vision" for instance.
std::string_view PackingName(ZrConvertersLib::PackingOrder order);

// The order that the flags of a name or code mean.
ZrConvertersLib::PackingOrder PackingOfFlags(unsigned flags);

}  // namespace zrconvert
