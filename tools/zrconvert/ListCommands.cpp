// The commands that print lists: formats and pairs.
#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/V4l2Formats.h>

#include <cstdio>
#include <span>
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

// One line for a vocabulary's names of a format, with the packing that they mean; all of one format mean the
// same.
template <typename Entry>
void PrintNames(const char* vocabulary, std::span<const Entry> entries, long id,
                std::string (*codeOf)(const Entry&)) {
  std::string names;
  zr::PackingOrder packing{};
  for (const Entry& entry : entries) {
    if (entry.id != id) continue;
    packing = PackingOfFlags(entry.flags);
    names += (names.empty() ? "" : ", ") + std::string(entry.name) + " " + codeOf(entry);
  }
  if (names.empty()) return;
  const bool isTypes = packing == zr::PackingOrder::Type;
  const std::string order = isTypes ? "" : " (packing " + std::string(PackingName(packing)) + ")";
  std::printf("    %s%s: %s\n", vocabulary, order.c_str(), names.c_str());
}

std::string CodeOf(const zr::FormatCode& code) {
  return CodeText(code.code);
}

// In quotes where it ends with a space, as a shell takes it.
std::string FourccOf(const zr::V4l2Format& format) {
  const std::string text = FourccText(format.fourcc);
  return text.back() == ' ' ? "'" + text + "'" : text;
}

void PrintPackings(const zr::FormatInfo& format) {
  for (const zr::PackingOrder order : {zr::PackingOrder::GigEVision, zr::PackingOrder::Csi2}) {
    const std::string layout(zr::PackingLayout(format.id, order));
    if (layout.empty()) continue;
    std::printf("    packing %s: %s\n", std::string(PackingName(order)).c_str(), layout.c_str());
  }
}

void PrintFormat(const zr::FormatInfo& format) {
  const PixelSizes sizes = RegisteredSizes(format.id);
  std::printf("%-20s %4ld 0x%03lX %5s %5s  %3u  %s\n", std::string(format.name).c_str(), format.id,
              static_cast<unsigned long>(format.id), sizes.bits.c_str(), sizes.bytes.c_str(),
              format.bitsPerPixel, Direction(format).c_str());
  std::printf("    %s\n", std::string(format.layout).c_str());
  PrintPackings(format);
  PrintNames("PFNC", zr::FormatCodes(), format.id, CodeOf);
  PrintNames("V4L2", zr::V4l2Formats(), format.id, FourccOf);
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
