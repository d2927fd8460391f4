#include "BandConverter.h"

#include <ZrConvertersLib/FrameErrors.h>

#include <algorithm>
#include <string>
#include <thread>

#include "Error.h"

namespace zrconvert {

namespace zr = ZrConvertersLib;

BandConverter::BandConverter(const Job& job) : mJob(job), mConverters(std::max(1U, job.threads)) {
  for (zr::FrameConverter& converter : mConverters) {
    const auto result = converter.Configure(job.source, job.destination, job.width, job.height, job.options);
    if (result.GetCode() == zr::FrameError::InvalidTone) {
      throw UsageError(
          "tone out of range: --gamma is above 0, factors are 0 or more, and --black is less than --white");
    }
    if (!result.IsSuccess()) throw UsageError(std::string(zr::ResultText(result)));
  }
}

BandConverter::Band BandConverter::BandOf(std::size_t index) const {
  const auto line = [&](std::size_t i) {
    return static_cast<std::uint32_t>(std::uint64_t{Height()} * i / mConverters.size());
  };
  return {line(index), line(index + 1) - line(index)};
}

void BandConverter::Convert(const std::vector<std::uint8_t>& frame, std::vector<std::uint8_t>& picture) {
  const auto source = zr::SourceView::Of(frame, mJob.width, mJob.height, mJob.stride);
  const auto destination = zr::DestinationView::Of(picture, Width(), Height());
  std::vector<ZrUtilsLib::Result> results(mConverters.size());
  const auto run = [&](std::size_t i) {
    const Band band = BandOf(i);
    if (band.count > 0) results[i] = mConverters[i].ConvertLines(band.first, band.count, source, destination);
  };
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 1; i < mConverters.size(); ++i) threads.emplace_back(run, i);
    run(0);
  }
  for (const ZrUtilsLib::Result& result : results) {
    if (!result.IsSuccess()) throw Failure("the conversion failed: " + std::string(zr::ResultText(result)));
  }
}

}  // namespace zrconvert
