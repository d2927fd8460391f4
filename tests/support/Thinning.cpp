#include "Thinning.h"

#include <algorithm>
#include <cstdlib>

namespace TestSupport {

unsigned Thinning() {
  const char* const text = std::getenv("ZR_THINNING");
  return text == nullptr ? 1 : std::max(static_cast<unsigned>(std::strtoul(text, nullptr, 10)), 1u);
}

}  // namespace TestSupport
