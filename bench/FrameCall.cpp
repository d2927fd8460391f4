// Times the checked interface for bench/bindings.py: zrframe SOURCE DESTINATION WIDTH HEIGHT CALLS
// For each line of standard input it converts a frame CALLS times and prints the seconds of the fastest.
#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameConverter.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

namespace {

namespace zr = ZrConvertersLib;

double FastestOf(int calls, zr::FrameConverter& converter, const zr::SourceView& source,
                 const zr::DestinationView& destination) {
  using Clock = std::chrono::steady_clock;
  std::chrono::duration<double> fastest = std::chrono::hours(1);
  for (int i = 0; i < calls; ++i) {
    const auto begin = Clock::now();
    if (!converter.Convert(source, destination).IsSuccess()) std::abort();
    fastest = std::min<std::chrono::duration<double>>(fastest, Clock::now() - begin);
  }
  return fastest.count();
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 6) return 2;
  zr::FormatChoice source;
  zr::FormatChoice destination;
  const auto width = static_cast<std::uint32_t>(std::stoul(arguments[3]));
  const auto height = static_cast<std::uint32_t>(std::stoul(arguments[4]));
  if (!zr::ReadFormat(arguments[1], source).IsSuccess()) return 1;
  if (!zr::ReadFormat(arguments[2], destination).IsSuccess()) return 1;
  zr::FrameOptions options;
  options.SetFlags(source.flags);
  zr::FrameConverter converter;
  if (!converter.Configure(source.id, destination.id, width, height, options).IsSuccess()) return 1;
  const std::vector<std::uint8_t> frame(converter.SourceLayout().frameBytes, 0x5A);
  std::vector<std::uint8_t> picture(converter.DestinationLayout().frameBytes);
  const int calls = std::stoi(arguments[5]);
  for (std::string line; std::getline(std::cin, line);) {
    std::printf("%.9f\n", FastestOf(calls, converter, zr::SourceView::Of(frame, width, height),
                                    zr::DestinationView::Of(picture, width, height)));
    std::fflush(stdout);
  }
  return 0;
}
