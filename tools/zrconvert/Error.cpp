#include "Error.h"

#include <cerrno>
#include <system_error>

namespace zrconvert {

void ThrowUnwritable(const std::string& output) {
  const int reason = errno;
  const std::string sentence = "cannot write " + output + ": " + std::generic_category().message(reason);
  if (reason == EPIPE) throw BrokenPipe(sentence);
  throw Failure(sentence);
}

std::string WithSystemReason(const std::string& text) {
  return text + ": " + std::generic_category().message(errno);
}

}  // namespace zrconvert
