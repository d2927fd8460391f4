// Whether a file is a whole number of frames.
#pragma once

#include <ZrConvertersLib/Format.h>

#include <cstdint>
#include <string>

#include "Arguments.h"

namespace zrconvert {

struct FrameFit {
  const ZrConvertersLib::FormatInfo* format = nullptr;
  Size size;
  ZrConvertersLib::FrameLayout layout;
  std::uint64_t headerBytes = 0;  // before the first frame of each file
  bool ignoreRest = false;        // bytes after the last whole frame are no error

  // Frames in a file of so many bytes. The last one may lack the padding after its last line.
  std::uint64_t FramesIn(std::uint64_t fileBytes) const;

  // Bytes of such a file after its last whole frame.
  std::uint64_t RestOf(std::uint64_t fileBytes) const;

  // Throws Failure, with the sizes that would fit, unless the file holds at least one frame and, if the rest
  // matters, nothing but whole frames. `name` is the file's in the sentence.
  void Require(const std::string& name, std::uint64_t fileBytes) const;

 private:
  std::uint64_t BytesOfFrames(std::uint64_t fileBytes) const;
  std::string SizesThatFit(std::uint64_t fileBytes) const;
};

}  // namespace zrconvert
