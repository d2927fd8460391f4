// The library's refusals as exceptions, for the tool and for the languages and frameworks that the library is
// bound to.
#pragma once

#include <ZrConvertersLib/FrameErrors.h>
#include <ZrUtilsLib/Result.h>

#include <stdexcept>
#include <string>

namespace zrcommon {

/// What the library refused, in its words; detail names the value that it refused.
class Refusal : public std::runtime_error {
 public:
  explicit Refusal(const std::string& text, ZrUtilsLib::Result result = {})
      : std::runtime_error(text), mResult(result) {}

  /// The library's result; success where the refusal is not the library's own.
  ZrUtilsLib::Result Result() const { return mResult; }

 private:
  ZrUtilsLib::Result mResult;
};

/// Throws Refusal, or std::bad_alloc when the library had no memory.
inline void Require(ZrUtilsLib::Result result, const std::string& detail = {}) {
  if (result.IsSuccess()) return;
  if (result.GetCode() == ZrConvertersLib::FrameError::OutOfMemory) throw std::bad_alloc();
  throw Refusal((detail.empty() ? "" : detail + ": ") + std::string(ZrConvertersLib::ResultText(result)),
                result);
}

}  // namespace zrcommon
