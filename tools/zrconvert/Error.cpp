#include "Error.h"

#include <cerrno>
#include <system_error>

namespace zrconvert {

std::string WithSystemReason(const std::string& text) {
  return text + ": " + std::generic_category().message(errno);
}

}  // namespace zrconvert
