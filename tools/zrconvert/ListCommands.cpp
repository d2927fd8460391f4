// The commands that print lists: formats and pairs.
#include <ZrConvertersLib/FormatCodes.h>

#include <cstdio>
#include <string>
#include <string_view>

#include "Commands.h"
#include "Error.h"
#include "FormatsJson.h"
#include "PixelSizes.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

std::string Direction(const zr::FormatInfo& format) {
  if (format.isSource && format.isDestination) return "from, to";
  if (format.isSource) return "from";
  return format.isDestination ? "to" : "-";
}

void PrintCodes(const zr::FormatInfo& format) {
  std::string line;
  for (const zr::FormatCode& code : zr::FormatCodes()) {
    if (code.id != format.id) continue;
    line += (line.empty() ? "" : ", ") + std::string(code.name) + " " + CodeText(code.code);
  }
  if (!line.empty()) std::printf("    PFNC: %s\n", line.c_str());
}

void PrintFormat(const zr::FormatInfo& format) {
  const PixelSizes sizes = RegisteredSizes(format.id);
  std::printf("%-20s %4ld 0x%03lX %5s %5s  %3u  %s\n", std::string(format.name).c_str(), format.id,
              static_cast<unsigned long>(format.id), sizes.bits.c_str(), sizes.bytes.c_str(),
              format.bitsPerPixel, Direction(format).c_str());
  std::printf("    %s\n", std::string(format.layout).c_str());
  PrintCodes(format);
}

void PrintPair(const zr::FormatInfo& source, long destination) {
  const zr::FormatInfo* info = zr::FindFormatInfo(destination);
  if (info) std::printf("%s -> %s\n", std::string(source.name).c_str(), std::string(info->name).c_str());
}

bool Concerns(const PairsOptions& options, const zr::FormatInfo& source, long destination) {
  return !options.format || options.format->info->id == source.id || options.format->info->id == destination;
}

}  // namespace

void ListFormats(const FormatsOptions& options) {
  if (options.json) return PrintFormatsAsJson();
  if (options.namesOnly) {
    for (const std::string_view name : AllFormatNames()) std::puts(std::string(name).c_str());
    return;
  }
  std::puts("name                   ID    hex  bits bytes  memory converts");
  std::puts("    (bits and bytes as the library registers them; memory: bits that a pixel takes in a frame)");
  for (const zr::FormatInfo& format : zr::Formats()) PrintFormat(format);
}

void ListPairs(const PairsOptions& options) {
  std::size_t count = 0;
  for (const zr::FormatInfo& source : zr::Formats()) {
    for (const long destination : zr::DestinationsOf(source.id)) {
      if (!Concerns(options, source, destination)) continue;
      PrintPair(source, destination);
      ++count;
    }
  }
  if (count == 0) throw Failure("there is no conversion from or to this format");
}

}  // namespace zrconvert
