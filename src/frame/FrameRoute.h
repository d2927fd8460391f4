#pragma once

#include <ZrConvertersLib/FrameConverter.h>
#include <ZrUtilsLib/Result.h>

#include <memory>
#include <optional>

#include "develop/DirectionalDemosaic.h"
#include "develop/Grading.h"
#include "develop/StripDevelopment.h"
#include "frame/FramePlan.h"
#include "frame/FrameScratch.h"

namespace ZrConvertersLib {

/// The way a frame takes to its picture, with all memory it needs: by raw calls into the picture, through the
/// directional demosaic, or in strips that are developed.
class FrameRoute {
 public:
  /// Chooses the way. Throws std::bad_alloc.
  ZrUtilsLib::Result Take(const FramePlan& plan, const FrameOptions& options);

  /// Converts a band: columns of the region, any of its lines. The plan is the one that Take was given.
  ZrUtilsLib::Result Run(const FramePlan& plan, const SourceLines& source, const PictureMemory& picture,
                         const Rect& band);

 private:
  ZrUtilsLib::Result TakeGrading(const FramePlan& plan, const Development& development);
  ZrUtilsLib::Result TakeStrips(const FramePlan& plan, const FrameOptions& options, bool yCbCrDepth);

  std::unique_ptr<Grading> mGrading;         ///< null where nothing is asked for
  std::unique_ptr<MosaicTileBuffers> mTile;  ///< of the directional demosaic
  std::unique_ptr<StripDevelopment> mStrips;
  std::optional<FrameScratch> mScratch;  ///< of raw calls
};

}  // namespace ZrConvertersLib
