#include "frame/FramePlan.h"

#include <ZrConvertersLib/ComplexConverter.h>
#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelTypeFactory.h>

#include <numeric>

#include "core/ChainFrame.h"
#include "core/Patterns.h"
#include "core/SettledFlags.h"

namespace ZrConvertersLib {

namespace {

using ZrUtilsLib::Result;

Result CheckOptions(const FrameOptions& options, const FramePlan& plan) {
  if (!IsPatternOf(plan.source->family, options.pattern)) return FrameError::InvalidPattern;
  if (options.demosaic > Demosaic::Directional) return FrameError::InvalidDemosaic;
  if (options.matrix > ColourMatrix::Jpeg) return FrameError::InvalidMatrix;
  if (options.packing > PackingOrder::Csi2) return FrameError::InvalidPacking;
  return {};
}

Result FindConverter(long source, long destination, FramePlan& plan) {
  plan.source = FindFormat(source);
  plan.destination = FindFormat(destination);
  if (plan.source == nullptr || plan.destination == nullptr) return FrameError::UnknownFormat;
  const bool known = PixelTypeFactory::HasConverter(source, destination);
  plan.converter = known ? PixelTypeFactory::GetConverter(source, destination) : nullptr;
  return plan.converter != nullptr ? Result() : FrameError::NoConverter;
}

Mirror MirrorOf(ChannelOrder order) {
  if (order == ChannelOrder::YCbYCr) return Mirror::LumaAtEven;
  if (order == ChannelOrder::CbYCrY) return Mirror::LumaAtOdd;
  return Mirror::Pixels;
}

Neighbourhood NeighbourhoodOf(Family family, Demosaic demosaic) {
  const bool interpolates = demosaic != Demosaic::Fast;
  const std::int64_t one = interpolates ? 1 : 0;
  switch (family) {
    case Family::Bayer:
      return {2, 2, one, one};
    case Family::BiColor:
      return {2, 1, one, 0};
    case Family::Scf1:
      // White takes its neighbours, colour those of the next cell of 2 x 2 sites.
      return {4, 4, 2 * one, 2 * one};
    default:
      return {};
  }
}

void FindStages(FramePlan& plan) {
  const auto* chain = dynamic_cast<const ComplexConverter*>(plan.converter);
  plan.chain = chain != nullptr;
  plan.onePass = dynamic_cast<const OnePassChain*>(chain) != nullptr;
  plan.reader = plan.chain ? &FirstStage(*chain) : plan.converter;
}

/// Finds out how the pair's converter reads and writes. Refuses converters of a caller that do so in other
/// ways than the library's own.
Result Classify(const FrameOptions& options, FramePlan& plan) {
  FindStages(plan);
  const bool toMosaic = plan.destination->family == Family::Bayer;
  if (!toMosaic) plan.near = NeighbourhoodOf(plan.source->family, options.demosaic);
  plan.mosaic = plan.near.tileWidth > 1;
  plan.linePairs = plan.near.tileHeight == 2;
  plan.directional = plan.source->family == Family::Bayer && options.demosaic == Demosaic::Directional &&
                     FindDestination(plan.destination->id) != nullptr;
  plan.mirror = MirrorOf(plan.destination->order);
  const Group packed = plan.destination->group;
  if (packed.bytes % packed.pixels != 0 || plan.destination->packing == Packing::Dense)
    return FrameError::NoConverter;
  if (plan.converter->GetLinesPerConvert() != (plan.linePairs ? 2u : 1u)) return FrameError::NoConverter;
  plan.pixelBytes = packed.bytes / packed.pixels;
  plan.unit = std::lcm(std::lcm(plan.source->group.pixels, UnitOf(plan.destination->order).pixels),
                       plan.near.tileWidth);
  return {};
}

Result PlaceRegion(const Region& region, FramePlan& plan) {
  if (region.x >= plan.width || region.y >= plan.height) return FrameError::RegionOutside;
  const std::int64_t width = region.width != 0 ? region.width : plan.width - region.x;
  const std::int64_t height = region.height != 0 ? region.height : plan.height - region.y;
  if (region.x + width > plan.width || region.y + height > plan.height) return FrameError::RegionOutside;
  const std::int64_t together = UnitOf(plan.destination->order).pixels;
  if (region.x % together != 0 || width % together != 0) return FrameError::RegionNotAllowed;
  plan.region = {region.x, region.y, region.x + width, region.y + height};
  return {};
}

Result Measure(FramePlan& plan) {
  const Result source = DescribeFrame(plan.source->id, static_cast<std::uint64_t>(plan.width),
                                      static_cast<std::uint64_t>(plan.height), 0, plan.sourceLayout);
  if (!source.IsSuccess()) return source;
  // The low bits of a group lie behind its last sample.
  const bool csi2 = (plan.flags & PackingFlagOf(*plan.source) & PixelConverter::FLAG_PACKED_CSI2) != 0;
  if (csi2 && plan.width % plan.source->group.pixels != 0) return FrameError::WidthNotAllowed;
  if (plan.width < plan.near.tileWidth || plan.height < plan.near.tileHeight)
    return FrameError::FrameTooSmall;
  // Converters round the bytes of a line down, the layout rounds them up.
  const auto bytes = static_cast<std::int64_t>(plan.sourceLayout.bytesPerLine);
  const std::int64_t counted = plan.SourceBytes(plan.width);
  return counted == bytes || counted + 1 == bytes ? Result() : FrameError::NoConverter;
}

Result MeasurePicture(FramePlan& plan) {
  return DescribeFrame(plan.destination->id, static_cast<std::uint64_t>(plan.RegionWidth()),
                       static_cast<std::uint64_t>(plan.RegionHeight()), 0, plan.destinationLayout);
}

}  // namespace

std::int64_t FramePlan::SourceBytes(std::int64_t pixels) const noexcept {
  return reader->GetSourceByteSize(static_cast<std::uint32_t>(pixels) * reader->GetWidthMultiplier());
}

Result MakeFramePlan(long source, long destination, std::uint32_t width, std::uint32_t height,
                     const FrameOptions& options, FramePlan& plan) {
  FramePlan made;
  made.width = width;
  made.height = height;
  made.flags = options.GetFlags();
  made.filter = options.filter;
  made.flipVertical = options.flipVertical;
  made.flipHorizontal = options.flipHorizontal;
  Result result = FindConverter(source, destination, made);
  if (result.IsSuccess()) result = CheckOptions(options, made);
  if (result.IsSuccess()) result = Classify(options, made);
  if (result.IsSuccess()) result = Measure(made);
  if (result.IsSuccess()) result = PlaceRegion(options.region, made);
  if (result.IsSuccess()) result = MeasurePicture(made);
  if (result.IsSuccess()) plan = made;
  return result;
}

}  // namespace ZrConvertersLib
