#include "Conversion.h"

#include <ZrConvertersLib/FrameErrors.h>

#include <utility>

#include "Buffers.h"
#include "common/Refusal.h"
#include "common/Words.h"

namespace zrgstreamer {

namespace zr = ZrConvertersLib;
using zrbindings::Require;

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
  zrbindings::RefuseContradiction(frame.choice, frame.options);
  return frame;
}

void Conversion::Negotiate(const GstCaps* source, const GstCaps* destination) {
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
  mSource = SourceOf(mSourceCaps.get());
  mConverter = std::make_unique<zrbindings::BandedConverter>(
      zrbindings::Conversion{mSource.format->id, mFormat->Destination()->id, mSource.width, mSource.height,
                             mSource.options, GetSettings().threads});
}

void Conversion::Convert(GstBuffer* frame, GstBuffer* picture) {
  if (std::unique_lock lock(mMutex); mChanged) {
    lock.unlock();
    Configure();
  }
  const MappedSource source(frame, mSource);
  MappedPicture destination(picture, mPicture);
  if (destination.IsDirect(*mFormat)) return mConverter->Convert(source.View(), destination.View());
  const zr::FrameConverter& facts = mConverter->Facts();
  mScratch.resize(static_cast<std::size_t>(facts.DestinationLayout().frameBytes));
  mConverter->Convert(source.View(), zr::DestinationView::Of(mScratch, facts.Width(), facts.Height()));
  destination.CopyFrom(mScratch, *mFormat);
}

}  // namespace zrgstreamer
