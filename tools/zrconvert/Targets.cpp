#include "Targets.h"

#include <algorithm>

#include "Error.h"
#include "Names.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

bool HasPair(const zr::FormatInfo& source, const zr::FormatInfo& destination) {
  return std::ranges::count(zr::DestinationsOf(source.id), destination.id) > 0;
}

// "Mono12" for a camera of 12 bits; the nearest greater depth for the others.
std::string GreyOf(const zr::FormatInfo& source) {
  for (const unsigned depth : {8U, 10U, 12U, 14U}) {
    if (source.depth <= depth) return "Mono" + std::to_string(depth);
  }
  return "Mono16";
}

// Only interleaved sources hand on more than 8 bits of colour.
std::string ColourOf(const ConvertOptions& options) {
  const zr::FormatInfo& source = *options.source.info;
  const bool deep = source.family == zr::FormatFamily::Rgb && source.depth > 8;
  return deep && !options.tone.offset ? "RGB16" : "RGB8";
}

std::string DefaultTarget(const ConvertOptions& options, Container container, std::uint32_t pictureWidth) {
  const bool grey = options.source.info->family == zr::FormatFamily::Mono && !options.tone.offset;
  switch (container) {
    case Container::Bmp:
      return pictureWidth % 4 == 0 ? "BGR8" : "BGRa8";
    case Container::Pgm:
      return grey ? GreyOf(*options.source.info) : "Mono8";
    case Container::Ppm:
      return ColourOf(options);
    default:
      return grey ? GreyOf(*options.source.info) : ColourOf(options);
  }
}

std::string NamesOfDestinations(const zr::FormatInfo& source) {
  std::vector<std::string_view> names;
  for (const long id : zr::DestinationsOf(source.id)) {
    if (const zr::FormatInfo* info = zr::FindFormatInfo(id)) names.push_back(info->name);
  }
  return Join(names, ", ");
}

void RequirePair(const zr::FormatInfo& source, const zr::FormatInfo& destination) {
  if (HasPair(source, destination)) return;
  const std::string name(source.name);
  const std::string all = NamesOfDestinations(source);
  throw UsageError(
      "there is no converter from " + name + " to " + std::string(destination.name) + ": " +
      (all.empty() ? "the library does not convert from " + name : name + " converts to " + all));
}

void RequireFit(Container container, const zr::FormatInfo& destination, Size picture) {
  if (container == Container::Raw) return;
  const std::string name(destination.name);
  const PictureLayout* layout = FindPictureLayout(destination.name);
  const std::string reason =
      layout ? WhyNot(container, *layout, picture.width, picture.height) : "only a .raw file holds it";
  if (!reason.empty()) {
    throw UsageError("a ." + std::string(NameOf(container)) + " file cannot hold " + name + ": " + reason);
  }
}

void RequireTone(const ConvertOptions& options, const zr::FormatInfo& destination) {
  if (!options.tone.offset || destination.takesFilter) return;
  throw UsageError("--offset acts on 8-bit colour only, not on " + std::string(destination.name));
}

}  // namespace

Container ContainerOf(const ConvertOptions& options) {
  if (options.container) return *options.container;
  const std::string& output = options.files.back();
  if (const auto container = ContainerByEnding(output)) return *container;
  const std::string what = output == "-" ? "standard output" : "'" + output + "'";
  throw UsageError(what + " does not say what to write: give --container, one of " + NamesOfContainers());
}

const zr::FormatInfo& TargetOf(const ConvertOptions& options, Container container, Size picture) {
  const zr::FormatInfo* target = options.destination
                                     ? options.destination->info
                                     : zr::FindFormatInfo(DefaultTarget(options, container, picture.width));
  if (!target) throw Failure("the library does not know the format that this container needs");
  RequirePair(*options.source.info, *target);
  RequireFit(container, *target, picture);
  RequireTone(options, *target);
  return *target;
}

std::string TargetWithoutTone(const ConvertOptions& options, Container container,
                              std::uint32_t pictureWidth) {
  if (options.destination) return std::string(options.destination->info->name);
  ConvertOptions plain = options;
  plain.tone.offset.reset();
  return DefaultTarget(plain, container, pictureWidth);
}

}  // namespace zrconvert
