// What a file of raw frames could be, from its size alone.
#include <cstdio>
#include <filesystem>
#include <map>
#include <vector>

#include "Commands.h"
#include "Error.h"
#include "FrameFacts.h"
#include "Measuring.h"
#include "Names.h"
#include "SizeGuess.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

std::uint64_t SizeOrThrow(const std::string& file) {
  std::error_code error;
  const std::uintmax_t bytes = std::filesystem::file_size(file, error);
  if (error) throw Failure("cannot read '" + file + "': " + error.message());
  if (bytes == 0) throw Failure("'" + file + "' is empty");
  return bytes;
}

// Formats whose frames have the same size share a line of the output.
using Table =
    std::map<std::tuple<std::uint64_t, std::uint64_t, std::uint32_t>, std::vector<std::string_view>>;

void Collect(const InfoOptions& options, std::uint64_t bytes, const zr::FormatInfo& format, Table& table) {
  for (const SizeGuess& guess : GuessSizes(bytes, format, options.size)) {
    auto& names = table[{guess.frames, guess.size.width, guess.size.height}];
    if (names.empty() || names.back() != format.name) names.push_back(format.name);
  }
}

Table CollectAll(const InfoOptions& options, std::uint64_t bytes) {
  Table table;
  for (const zr::FormatInfo& format : zr::Formats()) {
    const bool wanted = options.format ? options.format->info->id == format.id : format.isSource;
    if (wanted) Collect(options, bytes, format, table);
  }
  return table;
}

// Several frames are only considered if no single frame has the size of the file.
void Print(const Table& table) {
  const std::uint64_t fewest = std::get<0>(table.begin()->first);
  for (const auto& [key, names] : table) {
    const auto& [frames, width, height] = key;
    if (fewest == 1 && frames > 1) break;
    std::printf("%llu x %llux%u  %s\n", static_cast<unsigned long long>(frames),
                static_cast<unsigned long long>(width), height, Join(names, ", ").c_str());
  }
}

}  // namespace

namespace {

void MeasureFile(const InfoOptions& options) {
  if (!options.format || !options.size) throw UsageError("measuring needs --format and --size");
  const zr::FormatInfo& format = *options.format->info;
  const FrameFit fit{&format, *options.size, DescribeOrThrow(format, *options.size, {}), 0, true};
  zr::FrameOptions frame = ColourOptions(*options.format, options.pattern, options.matrix);
  frame.packing = PackingFor(*options.format, *options.size, options.packing);
  const zr::FrameStatistics statistics = MeasureFirstFrame(options.file, fit, MeasureOptionsOf(frame));
  PrintStatistics(statistics);
  if (!options.histogram.empty()) DrawHistogram(statistics, options.histogram);
}

}  // namespace

void TellWhatFileMayBe(const InfoOptions& options) {
  if (options.measure || !options.histogram.empty()) return MeasureFile(options);
  const std::uint64_t bytes = SizeOrThrow(options.file);
  std::printf("'%s' holds %llu bytes\n", options.file.c_str(), static_cast<unsigned long long>(bytes));
  const Table table = CollectAll(options, bytes);
  if (table.empty()) {
    std::puts("no frames of a common size and a known format fill it; --format and --size narrow the search");
    return;
  }
  std::puts("frames x size  formats");
  Print(table);
}

}  // namespace zrconvert
