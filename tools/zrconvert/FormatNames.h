// The words by which a user names a format.
#pragma once

#include <ZrConvertersLib/Format.h>

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

// A name of the library, of PFNC or of V4L2, in any case, or a code of the latter two. Throws UsageError for
// others, with the names that are near.
Format ReadFormat(const std::string& text);

// Every name that ReadFormat takes, each once; without the fourccs of V4L2, which differ by case alone.
std::vector<std::string_view> AllFormatNames();

}  // namespace zrconvert
