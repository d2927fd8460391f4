// Where the bytes of an output go.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zrconvert {

class ByteSink {
 public:
  virtual ~ByteSink() = default;

  // What the user calls the output, for sentences: "'out.png'" or "standard output".
  virtual std::string Name() const = 0;

  // Takes all bytes or throws Failure.
  virtual void Write(std::span<const std::uint8_t> bytes) = 0;

  void Write(std::string_view text) {
    Write(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
  }
};

}  // namespace zrconvert
