// A file, a pipe or standard input that is read byte for byte and no further than asked, so that another
// program can go on where this one stopped.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "Descriptor.h"

namespace zrconvert {

class InputFile {
 public:
  // "-" is standard input, from where it stands. Throws Failure when the file cannot be opened.
  explicit InputFile(const std::string& path);

  // Fills the span, or less of it at the end of the file; gives the number of bytes. Throws Failure.
  std::size_t Read(std::span<std::uint8_t> bytes);

  // Passes over so many bytes; false when there are not as many.
  bool Skip(std::uint64_t count);

 private:
  std::string mPath;
  Descriptor mDescriptor;
};

// Bytes from where reading begins to the end; nothing when that is unknown, as for pipes.
std::optional<std::uint64_t> BytesIn(const std::string& path);

// "standard input", or the path in quotes.
std::string NameOfInput(const std::string& path);

}  // namespace zrconvert
