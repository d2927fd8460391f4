// Reads frames one after another from files or standard input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "FrameFit.h"
#include "InputFile.h"

namespace zrconvert {

struct FrameRange {
  std::uint64_t first = 0;
  std::optional<std::uint64_t> count;  // all when empty
};

// Each input holds, after its header, whole frames one after another.
class FrameReader {
 public:
  FrameReader(std::vector<std::string> inputs, const FrameFit& fit, FrameRange range);

  // Throws Failure when the size of one of the inputs is known and does not fit.
  void RequireWholeFrames() const;

  // How many frames Next will give; unknown while one of the inputs is a pipe.
  std::optional<std::uint64_t> FrameCount() const;

  // Bytes after the last whole frame of the inputs, pipes left aside.
  std::uint64_t LeftOver() const;

  // Fills the frame with the bytes of one; false after the last one. Throws Failure when an input cannot be
  // read or does not fit.
  bool Next(std::vector<std::uint8_t>& frame);

 private:
  bool ReadFrame(std::vector<std::uint8_t>& frame);
  bool OpenNext();
  std::size_t Fill(std::vector<std::uint8_t>& frame);

  std::vector<std::string> mInputs;
  FrameFit mFit;
  FrameRange mRange;
  std::size_t mNextInput = 0;
  std::optional<InputFile> mFile;
  std::uint64_t mBytesOfInput = 0;
  std::uint64_t mFramesRead = 0;
};

}  // namespace zrconvert
