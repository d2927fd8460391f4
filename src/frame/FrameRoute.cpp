#include "frame/FrameRoute.h"

#include "frame/BandConversion.h"

namespace ZrConvertersLib {

namespace {

using ZrUtilsLib::Result;

bool IsMosaic(Family family) {
  return family == Family::Bayer || family == Family::BiColor || family == Family::Scf1;
}

/// Whether raw calls cut the source's samples to 8 bits before they make colours of them.
bool IsReduced(const FramePlan& plan) {
  return plan.source->family == Family::YCbCr || (IsMosaic(plan.source->family) && !plan.directional);
}

bool IsDeepYCbCr(const FormatRow& source) {
  return source.family == Family::YCbCr && source.depth > 8;
}

/// What development begins with: bytes, if these hold all that a conversion makes of a source of 8 bits.
long PlanesOf(const FormatRow& source, bool onePlane) {
  if (source.depth == 8 && !IsMosaic(source.family))
    return onePlane ? PixelTypeIds::Mono8 : PixelTypeIds::RGB8_Planar;
  return onePlane ? PixelTypeIds::Mono16 : PixelTypeIds::RGB16_Planar;
}

}  // namespace

Result FrameRoute::Take(const FramePlan& plan, const FrameOptions& options) {
  const bool asked = options.development != nullptr && AsksForSomething(*options.development);
  const bool isPicture = FindDestination(plan.destination->id) != nullptr;
  if (asked && !isPicture) return FrameError::NoConverter;
  if (asked) {
    const Result result = TakeGrading(plan, *options.development);
    if (!result.IsSuccess()) return result;
  }
  const bool deep = options.fullDepth && isPicture && IsDeepYCbCr(*plan.source);
  if (plan.directional)
    mTile = std::make_unique<MosaicTileBuffers>();
  else if (asked || deep)
    return TakeStrips(plan, options, deep);
  else
    mScratch.emplace(plan);
  return {};
}

Result FrameRoute::TakeGrading(const FramePlan& plan, const Development& development) {
  const Result result = CheckDevelopment(development, *plan.source);
  if (!result.IsSuccess()) return result;
  const bool grey = plan.source->family == Family::Mono;
  const bool greenOnly = !FindDestination(plan.destination->id)->colour;
  mGrading = std::make_unique<Grading>(development, ScaleOf(*plan.source, IsReduced(plan)), grey, greenOnly);
  return {};
}

/// Flips are left to the last stage.
Result FrameRoute::TakeStrips(const FramePlan& plan, const FrameOptions& options, bool yCbCrDepth) {
  const bool greenOnly = !FindDestination(plan.destination->id)->colour;
  const bool onePlane = plan.source->family == Family::Mono ||
                        (greenOnly && !yCbCrDepth && (mGrading == nullptr || !mGrading->Mixes()));
  FrameOptions toPlanes = options;
  toPlanes.filter = nullptr;
  toPlanes.flipVertical = toPlanes.flipHorizontal = false;
  FramePlan planes;
  const Result result =
      MakeFramePlan(plan.source->id, PlanesOf(*plan.source, onePlane), static_cast<std::uint32_t>(plan.width),
                    static_cast<std::uint32_t>(plan.height), toPlanes, planes);
  if (result.IsSuccess()) mStrips = std::make_unique<StripDevelopment>(planes, yCbCrDepth);
  return result;
}

Result FrameRoute::Run(const FramePlan& plan, const SourceLines& source, const PictureMemory& picture,
                       const Rect& band) {
  if (mStrips != nullptr) return mStrips->Convert(plan, mGrading.get(), source, picture, band);
  if (plan.directional) {
    DirectionalDemosaic(plan, mGrading.get(), *mTile, source, picture).Convert(band);
    return {};
  }
  BandConversion run(plan, *mScratch, source.data, source.stride, picture.data, picture.stride);
  return run.Convert(band);
}

}  // namespace ZrConvertersLib
