// The sizes that the type catalogue registers, which differ from what a pixel takes in memory for some
// formats.
#pragma once

#include <string>

namespace zrconvert {

struct PixelSizes {
  std::string bits;  // "-" when no type is registered under the ID
  std::string bytes;
};

PixelSizes RegisteredSizes(long id);

}  // namespace zrconvert
