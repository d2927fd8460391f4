// The library's refusals as exceptions, for the languages and frameworks that the library is bound to.
#pragma once

#include <ZrConvertersLib/FrameErrors.h>
#include <ZrUtilsLib/Result.h>

#include <stdexcept>
#include <string>

namespace zrbindings {

/// What the library refused, in its words; detail names the value that it refused.
class Refusal : public std::runtime_error {
 public:
  explicit Refusal(const std::string& text) : std::runtime_error(text) {}
};

/// Throws Refusal, or std::bad_alloc when the library had no memory.
inline void Require(ZrUtilsLib::Result result, const std::string& detail = {}) {
  if (result.IsSuccess()) return;
  if (result.GetCode() == ZrConvertersLib::FrameError::OutOfMemory) throw std::bad_alloc();
  throw Refusal((detail.empty() ? "" : detail + ": ") + std::string(ZrConvertersLib::ResultText(result)));
}

}  // namespace zrbindings
