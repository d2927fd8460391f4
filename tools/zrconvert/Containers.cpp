#include "Containers.h"

#include <algorithm>
#include <array>
#include <vector>

#include "Names.h"

namespace zrconvert {
namespace {

struct ContainerFacts {
  std::string_view name;
  Container container;
  bool holdsSequences;
  void (*write)(ByteSink&, const Picture&, const EncoderOptions&);
};

constexpr std::array cContainers{
    ContainerFacts{"bmp", Container::Bmp, false, WriteBmp},
    ContainerFacts{"png", Container::Png, false, WritePng},
    ContainerFacts{"pgm", Container::Pgm, true, WritePnm},
    ContainerFacts{"ppm", Container::Ppm, true, WritePnm},
    ContainerFacts{"pnm", Container::Pnm, true, WritePnm},
    ContainerFacts{"raw", Container::Raw, true, WriteRaw},
};

// Readers of PNG refuse larger ones unless they are told otherwise.
constexpr std::uint64_t cGreatestPngSide = 1000000;

// The header counts the file's bytes in 32 bits.
constexpr std::uint64_t cGreatestBmpPixels = (1U << 30) - 64;

const ContainerFacts& FactsOf(Container container) {
  return *std::ranges::find(cContainers, container, &ContainerFacts::container);
}

}  // namespace

std::optional<Container> ContainerByName(std::string_view name) {
  const auto found = std::ranges::find(cContainers, ToLower(name), &ContainerFacts::name);
  if (found == cContainers.end()) return std::nullopt;
  return found->container;
}

std::optional<Container> ContainerByEnding(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) return std::nullopt;
  return ContainerByName(path.substr(dot + 1));
}

std::string_view NameOf(Container container) {
  return FactsOf(container).name;
}

std::string NamesOfContainers() {
  std::vector<std::string_view> names;
  for (const ContainerFacts& facts : cContainers) names.push_back(facts.name);
  return Join(names, ", ");
}

std::string WhyNot(Container container, const PictureLayout& layout, std::uint64_t width,
                   std::uint64_t height) {
  const std::string here = std::to_string(width) + "x" + std::to_string(height);
  if (container == Container::Pgm && layout.channels != 1) return "a .pgm picture is grey";
  if (container == Container::Ppm && layout.channels == 1) return "a .ppm picture is in colour";
  if (container == Container::Bmp && layout.depth > 8) return "a .bmp picture has 8 bits a sample";
  if (container == Container::Png && std::max(width, height) > cGreatestPngSide) {
    return "a .png picture has at most 1000000 pixels a side, not " + here;
  }
  if (container == Container::Bmp && width * height > cGreatestBmpPixels) {
    return "a .bmp picture has at most 2^30 - 64 pixels, not " + here;
  }
  return {};
}

bool HoldsSequences(Container container) {
  return FactsOf(container).holdsSequences;
}

void WritePicture(ByteSink& sink, Container container, const Picture& picture,
                  const EncoderOptions& options) {
  FactsOf(container).write(sink, picture, options);
}

void WriteRaw(ByteSink& sink, const Picture& picture, const EncoderOptions&) {
  sink.Write(picture.bytes);
}

}  // namespace zrconvert
