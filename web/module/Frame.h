// The frame on show: its bytes, how they are read, and the picture made of them.
#pragma once

#include <ZrConvertersLib/FrameConverter.h>

#include <array>
#include <cstdint>
#include <vector>

namespace page {

struct Geometry {
  long format = 0;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t stride = 0;  // bytes from one line to the next; 0: lines without a gap
};

// Counts of the picture's red, green and blue values, one after another.
using Histogram = std::array<std::uint32_t, 3 * 256>;

class Frame {
 public:
  // Room for so many bytes of the file, to be written by the caller; null without memory.
  std::uint8_t* Reserve(std::size_t bytes);

  // Converts the reserved bytes into the picture: four bytes a pixel, red, green, blue and 255. The options'
  // development must outlive the call.
  ZrUtilsLib::Result Convert(const Geometry& geometry, const ZrConvertersLib::FrameOptions& options);

  const std::vector<std::uint8_t>& Bytes() const { return mBytes; }
  const std::uint8_t* Picture() const { return mPicture.data(); }
  const Geometry& Shape() const { return mGeometry; }
  const ZrConvertersLib::FrameOptions& Options() const { return mOptions; }
  Histogram Count() const;

 private:
  std::vector<std::uint8_t> mBytes;
  std::vector<std::uint8_t> mPicture;
  Geometry mGeometry;
  ZrConvertersLib::FrameOptions mOptions;
};

// A view of the geometry's frame at the beginning of the bytes.
ZrConvertersLib::SourceView ViewOf(const Geometry& geometry, const std::vector<std::uint8_t>& bytes);

}  // namespace page
