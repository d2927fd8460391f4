#include "Cases.h"

#include <ZrConvertersLib/ComplexConverter.h>
#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/PixelTypeFactory.h>

#include <algorithm>

namespace Bench {
namespace {

using namespace ZrConvertersLib;

bool Contains(std::string_view name, std::string_view part) {
  return name.find(part) != std::string_view::npos;
}

/// "Mono8:RGB8", "Mono8:" for all destinations, ":RGB8" for all sources.
bool IsNamed(const FormatInfo& source, const FormatInfo& destination, std::string_view pair) {
  const std::size_t colon = std::min(pair.find(':'), pair.size());
  const std::string_view from = pair.substr(0, colon), to = pair.substr(std::min(colon + 1, pair.size()));
  return (from.empty() || from == source.name) && (to.empty() || to == destination.name);
}

bool IsSelected(const FormatInfo& source, const FormatInfo& destination, const Selection& selection) {
  return Contains(source.name, selection.source) && Contains(destination.name, selection.destination) &&
         (selection.pairs.empty() ||
          std::any_of(selection.pairs.begin(), selection.pairs.end(),
                      [&](const std::string& pair) { return IsNamed(source, destination, pair); }));
}

bool HasOrder(const FormatInfo& source, BitOrder order) {
  if (order == BitOrder::Named) return true;
  if (order == BitOrder::GigEVision) return source.packing == Packing::Pair;
  if (source.packing != Packing::Dense) return false;
  const bool hasSite = source.family == FormatFamily::Mono || source.family == FormatFamily::Bayer;
  if (hasSite) return source.depth == 10 || source.depth == 12 || source.depth == 14;
  return source.family == FormatFamily::YCbCr && source.bitsPerPixel == 20;
}

bool IsMosaic(const FormatInfo& format) {
  return format.family == FormatFamily::Bayer || format.family == FormatFamily::Scf1 ||
         format.family == FormatFamily::BiColor;
}

void AddVariants(std::vector<Case>& cases, Case one, const Selection& selection) {
  for (const bool filtered : {false, true}) {
    if (filtered ? !selection.filtered || !one.destination->takesFilter : !selection.plain) continue;
    one.filtered = filtered;
    cases.push_back(one);
  }
}

void AddPair(std::vector<Case>& cases, const FormatInfo& source, const FormatInfo& destination,
             BitOrder order, const Selection& selection) {
  Case one{&source, &destination, PixelTypeFactory::GetConverter(source.id, destination.id)};
  one.order = order;
  // Bayer to Bayer only unpacks.
  if (!IsMosaic(source) || IsMosaic(destination)) {
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
  if (order != BitOrder::Named) name += order == BitOrder::Csi2 ? ", CSI-2" : ", GigE Vision";
  if (demosaic == Demosaic::Interpolate) name += ", interpolated";
  if (filtered) name += ", filtered";
  return name;
}

std::vector<Case> RegisteredCases(const Selection& selection) {
  std::vector<Case> cases;
  for (const BitOrder order : {BitOrder::Named, BitOrder::GigEVision, BitOrder::Csi2}) {
    if (order != BitOrder::Named && !selection.bitOrders) break;
    for (const FormatInfo& source : Formats())
      for (const FormatInfo& destination : Formats())
        if (HasOrder(source, order) && IsSelected(source, destination, selection) &&
            PixelTypeFactory::HasConverter(source.id, destination.id))
          AddPair(cases, source, destination, order, selection);
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
