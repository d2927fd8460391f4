// Converts one frame on several threads. The library starts no threads itself, but any split of a frame into
// bands gives the same bytes.
#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/PixelTypes.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <thread>
#include <vector>

using namespace ZrConvertersLib;

int main() {
  constexpr std::uint32_t kWidth = 2000;
  constexpr std::uint32_t kHeight = 1501;
  const unsigned threads = std::max(2u, std::thread::hardware_concurrency());

  FrameOptions options;
  options.pattern = MosaicPattern::RGGB;
  options.demosaic = Demosaic::Interpolate;

  // One object per thread, configured once.
  std::vector<FrameConverter> converters(threads);
  for (FrameConverter& converter : converters) {
    if (!converter.Configure(PixelTypeIds::Bayer12, PixelTypeIds::RGB8, kWidth, kHeight, options).IsSuccess())
      return 1;
  }

  std::vector<std::uint16_t> frame(std::size_t{kWidth} * kHeight);
  for (std::size_t i = 0; i < frame.size(); ++i) frame[i] = static_cast<std::uint16_t>(i * 7 % 4096);
  std::vector<std::uint8_t> picture(converters[0].DestinationLayout().frameBytes);
  const SourceView source = SourceView::Of(frame, kWidth, kHeight);
  const DestinationView destination = DestinationView::Of(picture, kWidth, kHeight);

  std::atomic<bool> failed = false;
  {
    std::vector<std::jthread> workers;
    for (unsigned i = 0; i < threads; ++i) {
      workers.emplace_back([&, i] {
        const auto line = [&](unsigned part) {
          return static_cast<std::uint32_t>(std::uint64_t{kHeight} * part / threads);
        };
        const auto result = converters[i].ConvertLines(line(i), line(i + 1) - line(i), source, destination);
        if (!result.IsSuccess()) failed = true;
      });
    }
  }

  std::vector<std::uint8_t> whole(picture.size());
  const auto result = converters[0].Convert(source, DestinationView::Of(whole, kWidth, kHeight));
  const bool same = result.IsSuccess() && !failed && picture == whole;
  std::printf("%u bands %s the whole frame\n", threads, same ? "equal" : "differ from");
  return same ? 0 : 1;
}
