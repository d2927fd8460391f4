#include "BandedConverter.h"

#include <unistd.h>

#include <algorithm>

#include "Refusal.h"

namespace zrcommon {

namespace zr = ZrConvertersLib;

namespace {

unsigned BandsOf(const Conversion& conversion) {
  const unsigned wanted = conversion.threads ? conversion.threads : std::thread::hardware_concurrency();
  return std::clamp(wanted, 1U, std::max(1U, conversion.height));
}

}  // namespace

BandedConverter::BandedConverter(const Conversion& conversion) : mConverters(BandsOf(conversion)) {
  zr::FrameOptions options = conversion.options;
  zr::Development development = conversion.development.value_or(zr::Development());
  development.points = conversion.points;
  options.development = conversion.development ? &development : nullptr;
  for (zr::FrameConverter& converter : mConverters) {
    Require(converter.Configure(conversion.source, conversion.destination, conversion.width,
                                conversion.height, options));
  }
}

void BandedConverter::Convert(const zr::SourceView& source, const zr::DestinationView& destination) {
  if (mConverters.size() == 1) return Require(mConverters.front().Convert(source, destination));
  std::vector<ZrUtilsLib::Result> results(mConverters.size());
  WorkersOfThisProcess().Run(
      [&](unsigned index) { results[index] = ConvertBand(index, source, destination); });
  for (const ZrUtilsLib::Result& result : results) Require(result);
}

ZrUtilsLib::Result BandedConverter::ConvertBand(unsigned index, const zr::SourceView& source,
                                                const zr::DestinationView& destination) {
  const auto firstLineOf = [this](std::size_t band) {
    return static_cast<std::uint32_t>(std::uint64_t{Facts().Height()} * band / mConverters.size());
  };
  const std::uint32_t first = firstLineOf(index);
  const std::uint32_t count = firstLineOf(index + 1U) - first;
  return count == 0 ? ZrUtilsLib::Result()
                    : mConverters[index].ConvertLines(first, count, source, destination);
}

Workers& BandedConverter::WorkersOfThisProcess() {
  if (mProcess != getpid()) {
    // The parent's threads do not exist here and cannot be joined, so their object is left alone.
    static_cast<void>(mWorkers.release());
    mWorkers = std::make_unique<Workers>(Threads());
    mProcess = getpid();
  }
  return *mWorkers;
}

}  // namespace zrcommon
