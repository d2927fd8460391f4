#include "Measuring.h"

#include <ZrConvertersLib/FrameErrors.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "Error.h"
#include "FrameReader.h"
#include "PictureWriter.h"
#include "Tone.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

constexpr std::array cNames = {"red", "green", "blue"};
constexpr unsigned cWidth = 512;
constexpr unsigned cHeight = 256;

// Samples of one channel by column of the drawing.
std::array<std::uint64_t, cWidth> ColumnsOf(const zr::ChannelStatistics& channel) {
  std::array<std::uint64_t, cWidth> columns{};
  const std::size_t size = channel.histogram.size();
  if (size >= cWidth) {
    for (std::size_t i = 0; i < size; ++i) columns[i * cWidth / size] += channel.histogram[i];
  } else {
    for (std::size_t column = 0; column < cWidth; ++column)
      columns[column] = channel.histogram[column * size / cWidth];
  }
  return columns;
}

// The columns at the two ends often hold everything that is cut off, so the others choose the height.
std::uint64_t TallestOf(const std::vector<std::array<std::uint64_t, cWidth>>& all) {
  std::uint64_t tallest = 1;
  for (const auto& columns : all)
    tallest = std::max(tallest, *std::max_element(columns.begin() + 1, columns.end() - 1));
  return tallest;
}

}  // namespace

zr::MeasureOptions MeasureOptionsOf(const zr::FrameOptions& frame) {
  zr::MeasureOptions options;
  options.pattern = frame.pattern;
  options.matrix = frame.matrix;
  options.packing = frame.packing;
  options.region = frame.region;
  return options;
}

zr::FrameStatistics MeasureFirstFrame(const std::string& file, const FrameFit& fit,
                                      const zr::MeasureOptions& options) {
  if (file == "-") throw UsageError("standard input is read only once, so it cannot be measured first");
  FrameReader reader({file}, fit, {0, 1});
  std::vector<std::uint8_t> frame;
  if (!reader.Next(frame)) throw Failure("'" + file + "' has no frame");
  zr::FrameStatistics statistics;
  const auto source =
      zr::SourceView::Of(frame, fit.size.width, fit.size.height, static_cast<std::size_t>(fit.layout.stride));
  const auto result = zr::MeasureFrame(fit.format->id, source, options, statistics);
  if (!result.IsSuccess()) throw UsageError(std::string(zr::ResultText(result)));
  return statistics;
}

void PrintStatistics(const zr::FrameStatistics& statistics) {
  for (unsigned i = 0; i < statistics.channels; ++i) {
    const zr::ChannelStatistics& channel = statistics.channel[i];
    std::printf("%-6s %llu samples from %u to %u, mean %.2f\n", statistics.channels == 1 ? "grey" : cNames[i],
                static_cast<unsigned long long>(channel.count), channel.minimum, channel.maximum,
                channel.mean);
  }
  std::printf("saturated: %.3f %%\n", 100.0 * zr::SaturatedShare(statistics));
  ToneOptions tone;
  ChooseTone(tone, statistics);
  std::printf("--auto is --black %g --white %g", *tone.black, *tone.white);
  if (statistics.channels == 3)
    std::printf(" --white-balance %.4g,%.4g,%.4g", tone.balance->red, tone.balance->green,
                tone.balance->blue);
  std::puts("");
}

void DrawHistogram(const zr::FrameStatistics& statistics, const std::string& output) {
  std::vector<std::array<std::uint64_t, cWidth>> all;
  for (const zr::ChannelStatistics& channel : statistics.All()) all.push_back(ColumnsOf(channel));
  const auto tallest = static_cast<double>(TallestOf(all));
  std::vector<std::uint8_t> bytes(std::size_t{cWidth} * cHeight * 3);
  for (unsigned y = 0; y < cHeight; ++y) {
    for (unsigned x = 0; x < cWidth; ++x) {
      for (unsigned c = 0; c < 3; ++c) {
        const auto& columns = all[all.size() == 1 ? 0 : c];
        const bool filled = static_cast<double>(columns[x]) / tallest * cHeight > cHeight - 1 - y;
        bytes[(std::size_t{y} * cWidth + x) * 3 + c] = filled ? 0xE0 : 0x20;
      }
    }
  }
  const OverwriteGuard guard({}, Existing::Replace);
  PictureWriter writer(output, Container::Png, {}, guard);
  writer.Write({FindPictureLayout("RGB8"), cWidth, cHeight, bytes}, 0);
  writer.Finish();
}

}  // namespace zrconvert
