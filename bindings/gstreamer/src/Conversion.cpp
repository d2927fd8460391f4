#include "Conversion.h"

#include <ZrConvertersLib/FrameErrors.h>
#include <ZrConvertersLib/Measure.h>

#include <algorithm>
#include <utility>

#include "Buffers.h"
#include "common/Refusal.h"
#include "common/Words.h"

namespace zrgstreamer {

namespace zr = ZrConvertersLib;
using zrcommon::Refusal;
using zrcommon::Require;

namespace {

zr::Development DevelopmentOf(const Settings& settings) {
  zr::Development development;
  development.black = {settings.black, settings.black, settings.black};
  development.white = settings.white;
  development.gain = {settings.redGain, settings.greenGain, settings.blueGain};
  development.curve = settings.curve;
  development.gamma = settings.gamma;
  if (!settings.curvePoints.empty()) development.curve = zr::ToneCurve::Points;
  if (settings.colorMatrix.empty()) return development;
  if (settings.colorMatrix.size() != development.matrix.size())
    throw Refusal("color-matrix takes nine numbers");
  std::ranges::copy(settings.colorMatrix, development.matrix.begin());
  return development;
}

std::vector<zr::CurvePoint> PointsOf(const Settings& settings) {
  const auto& numbers = settings.curvePoints;
  if (numbers.size() % 2 != 0) throw Refusal("curve-points takes pairs of input and output");
  std::vector<zr::CurvePoint> points;
  for (std::size_t i = 0; i < numbers.size(); i += 2) points.push_back({numbers[i], numbers[i + 1]});
  return points;
}

bool AsksForTone(const Settings& settings) {
  const Settings neutral;
  return settings.automatic || settings.black != neutral.black || settings.white != neutral.white ||
         settings.redGain != neutral.redGain || settings.greenGain != neutral.greenGain ||
         settings.blueGain != neutral.blueGain || settings.curve != neutral.curve ||
         !settings.colorMatrix.empty() || !settings.curvePoints.empty();
}

}  // namespace

Settings Conversion::GetSettings() const {
  const std::lock_guard lock(mMutex);
  return mSettings;
}

void Conversion::SetSettings(const Settings& settings) {
  const std::lock_guard lock(mMutex);
  mSettings = settings;
  mChanged = true;
}

SourceFrame Conversion::SourceOf(const GstCaps* caps) const {
  const Settings settings = GetSettings();
  SourceFrame frame =
      ReadSource(caps, settings.sourceFormat, settings.width, settings.height, settings.stride);
  frame.options.pattern = settings.pattern.value_or(frame.options.pattern);
  frame.options.matrix = settings.matrix.value_or(frame.options.matrix);
  frame.options.packing = settings.packing.value_or(frame.options.packing);
  frame.options.demosaic = settings.demosaic;
  frame.options.flipHorizontal = settings.flipHorizontal;
  frame.options.flipVertical = settings.flipVertical;
  zrcommon::RefuseContradiction(frame.choice, frame.options);
  return frame;
}

void Conversion::Negotiate(const GstCaps* source, const GstCaps* destination) {
  mMeasured.reset();
  mSourceCaps.reset(gst_caps_copy(source));
  const bool isRaw = gst_video_info_from_caps(&mPicture, destination);
  mFormat = isRaw ? FindRawFormat(GST_VIDEO_INFO_FORMAT(&mPicture)) : nullptr;
  if (!mFormat || !mFormat->Destination()) Require(zr::FrameError::UnknownFormat);
  Configure();
}

void Conversion::Configure() {
  {
    const std::lock_guard lock(mMutex);
    mChanged = false;
  }
  const Settings settings = GetSettings();
  if (!settings.automatic) mMeasured.reset();
  mSource = SourceOf(mSourceCaps.get());
  mSource.options.fullDepth = mFormat->Destination()->depth > 8 || AsksForTone(settings);
  mConverter = std::make_unique<zrcommon::BandedConverter>(
      zrcommon::Conversion{.source = mSource.format->id,
                           .destination = mFormat->Destination()->id,
                           .width = mSource.width,
                           .height = mSource.height,
                           .options = mSource.options,
                           .development = mMeasured ? *mMeasured : DevelopmentOf(settings),
                           .points = PointsOf(settings),
                           .threads = settings.threads});
}

// The darkest and the lightest thousandth of the samples may be noise and reflections.
void Conversion::Measure(const zr::SourceView& frame) {
  constexpr double kShare = 0.001;
  const zr::FrameOptions& options = mSource.options;
  zr::FrameStatistics statistics;
  Require(zr::MeasureFrame(mSource.format->id, frame,
                           {options.pattern, options.matrix, options.packing, {}, 1}, statistics));
  const zr::Levels levels = zr::LevelsOf(statistics, kShare, 1.0 - kShare);
  mMeasured = DevelopmentOf(GetSettings());
  mMeasured->black = {levels.black, levels.black, levels.black};
  mMeasured->white = levels.white;
  mMeasured->gain = zr::GreyWorldGains(statistics, levels.black);
  Configure();
}

void Conversion::Convert(GstBuffer* frame, GstBuffer* picture) {
  if (std::unique_lock lock(mMutex); mChanged) {
    lock.unlock();
    Configure();
  }
  const MappedSource source(frame, mSource);
  if (GetSettings().automatic && !mMeasured) Measure(source.View());
  MappedPicture destination(picture, mPicture);
  if (destination.IsDirect(*mFormat)) return mConverter->Convert(source.View(), destination.View());
  const zr::FrameConverter& facts = mConverter->Facts();
  mScratch.resize(static_cast<std::size_t>(facts.DestinationLayout().frameBytes));
  mConverter->Convert(source.View(), zr::DestinationView::Of(mScratch, facts.Width(), facts.Height()));
  destination.CopyFrom(mScratch, *mFormat);
}

}  // namespace zrgstreamer
