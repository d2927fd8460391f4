#include "Cases.h"

#include <ZrConvertersLib/ComplexConverter.h>
#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/PixelTypeFactory.h>

#include <algorithm>

namespace Bench {
namespace {

using namespace ZrConvertersLib;

/// The destinations whose writers pass colours through the filter: three or more channels of 8 bits, and 565.
bool HasFilter(const FormatInfo& destination) {
  return destination.family == FormatFamily::Rgb && destination.depth <= 8;
}

bool Contains(std::string_view name, std::string_view part) {
  return name.find(part) != std::string_view::npos;
}

bool IsSelected(const FormatInfo& source, const FormatInfo& destination, const Selection& selection) {
  const std::string pair = std::string(source.name).append(":").append(destination.name);
  return Contains(source.name, selection.source) && Contains(destination.name, selection.destination) &&
         (selection.pairs.empty() ||
          std::find(selection.pairs.begin(), selection.pairs.end(), pair) != selection.pairs.end());
}

void AddVariants(std::vector<Case>& cases, Case one, const Selection& selection) {
  for (const bool filtered : {false, true}) {
    if (filtered ? !selection.filtered || !HasFilter(*one.destination) : !selection.plain) continue;
    one.filtered = filtered;
    cases.push_back(one);
  }
}

void AddPair(std::vector<Case>& cases, const FormatInfo& source, const FormatInfo& destination,
             const Selection& selection) {
  Case one{&source, &destination, PixelTypeFactory::GetConverter(source.id, destination.id)};
  // Bayer to Bayer only unpacks.
  if (source.family != FormatFamily::Bayer || destination.family == FormatFamily::Bayer) {
    AddVariants(cases, one, selection);
    return;
  }
  for (const Demosaic demosaic : {Demosaic::Fast, Demosaic::Interpolate}) {
    one.demosaic = demosaic;
    AddVariants(cases, one, selection);
  }
}

}  // namespace

bool Case::IsChain() const {
  return dynamic_cast<const ComplexConverter*>(converter) != nullptr;
}

Kind Case::GetKind() const {
  if (demosaic != Demosaic::None) return demosaic == Demosaic::Fast ? Kind::Fast : Kind::Interpolate;
  return source->family == FormatFamily::YCbCr && destination->family != FormatFamily::YCbCr ? Kind::Matrix
                                                                                             : Kind::Moves;
}

std::string_view Case::Family() const {
  return FamilyName(source->family);
}

std::string Case::Name() const {
  std::string name = std::string(source->name).append(" to ").append(destination->name);
  if (demosaic == Demosaic::Interpolate) name += ", interpolated";
  if (filtered) name += ", filtered";
  return name;
}

std::vector<Case> RegisteredCases(const Selection& selection) {
  std::vector<Case> cases;
  for (const FormatInfo& source : Formats()) {
    for (const FormatInfo& destination : Formats())
      if (IsSelected(source, destination, selection) &&
          PixelTypeFactory::HasConverter(source.id, destination.id))
        AddPair(cases, source, destination, selection);
  }
  return cases;
}

std::string Size::Name() const {
  return std::to_string(width) + "x" + std::to_string(height);
}

std::uint64_t FrameBytes(const FormatInfo& format, Size size) {
  const std::uint64_t bits = std::uint64_t{size.width} * (format.bitsPerPixel / format.planes);
  return (bits + 7) / 8 * size.height * format.planes;
}

}  // namespace Bench
