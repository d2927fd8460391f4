// A frame converter spread over threads.
#pragma once

#include <ZrConvertersLib/FrameConverter.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zrconvert {

class BandConverter {
 public:
  struct Job {
    long source = 0;
    long destination = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::size_t stride = 0;
    unsigned threads = 1;
    ZrConvertersLib::FrameOptions options;
  };

  // Throws UsageError when the job is refused.
  explicit BandConverter(const Job& job);

  std::uint32_t Width() const { return mConverters.front().Width(); }
  std::uint32_t Height() const { return mConverters.front().Height(); }
  std::size_t PictureBytes() const { return mConverters.front().DestinationLayout().frameBytes; }
  ZrConvertersLib::MosaicPattern PicturePattern() const { return mConverters.front().DestinationPattern(); }

  // Converts bands of the picture at once, one on each thread. Throws Failure when one is refused.
  void Convert(const std::vector<std::uint8_t>& frame, std::vector<std::uint8_t>& picture);

 private:
  struct Band {
    std::uint32_t first;
    std::uint32_t count;
  };
  Band BandOf(std::size_t index) const;

  Job mJob;
  std::vector<ZrConvertersLib::FrameConverter> mConverters;
};

}  // namespace zrconvert
