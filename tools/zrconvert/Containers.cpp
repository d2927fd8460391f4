#include "Containers.h"

#include <algorithm>
#include <array>

#include "File.h"
#include "Names.h"

namespace zrconvert {
namespace {

struct ContainerFacts {
  std::string_view name;
  Container container;
  bool holdsSequences;
  void (*write)(const std::string&, const Picture&);
};

constexpr std::array cContainers{
    ContainerFacts{"bmp", Container::Bmp, false, WriteBmp},
    ContainerFacts{"png", Container::Png, false, WritePng},
    ContainerFacts{"pgm", Container::Pgm, true, WritePnm},
    ContainerFacts{"ppm", Container::Ppm, true, WritePnm},
    ContainerFacts{"raw", Container::Raw, true, WriteRaw},
};

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

std::string WhyNot(Container container, const PictureLayout& layout) {
  if (container == Container::Pgm && layout.channels != 1) return "a .pgm picture is grey";
  if (container == Container::Ppm && layout.channels == 1) return "a .ppm picture is in colour";
  return {};
}

bool HoldsSequences(Container container) {
  return FactsOf(container).holdsSequences;
}

void WritePicture(const std::string& path, Container container, const Picture& picture) {
  FactsOf(container).write(path, picture);
}

void WriteRaw(const std::string& path, const Picture& picture) {
  File file(path, "ab");
  file.Write(picture.bytes);
  file.Close();
}

}  // namespace zrconvert
