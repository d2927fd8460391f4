// Reads frames one after another from files or standard input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "File.h"

namespace zrconvert {

struct FrameRange {
  std::uint64_t first = 0;
  std::optional<std::uint64_t> count;  // all when empty
};

// Each input holds whole frames of `frameBytes` one after another; a last frame may lack the padding after
// its last line, so `neededBytes` may be smaller. Bytes after the last whole frame are left over.
class FrameReader {
 public:
  FrameReader(std::vector<std::string> inputs, std::size_t frameBytes, std::size_t neededBytes,
              FrameRange range);

  // How many frames Next will give; unknown while one of the inputs is a pipe.
  std::optional<std::uint64_t> FrameCount() const;

  // Fills the frame, which gets frameBytes bytes; false after the last one. Throws Failure when an input
  // cannot be read or is shorter than one frame.
  bool Next(std::vector<std::uint8_t>& frame);

  // Bytes after the last whole frame of the inputs, pipes left aside.
  std::uint64_t LeftOver() const;

 private:
  bool ReadFrame(std::vector<std::uint8_t>& frame);
  bool OpenNext();
  [[noreturn]] void ThrowTooShort(std::uint64_t found) const;

  std::vector<std::string> mInputs;
  std::size_t mFrameBytes;
  std::size_t mNeededBytes;
  FrameRange mRange;
  std::size_t mNextInput = 0;
  std::unique_ptr<File> mFile;
  std::uint64_t mFramesOfInput = 0;
  std::uint64_t mFramesRead = 0;
};

}  // namespace zrconvert
