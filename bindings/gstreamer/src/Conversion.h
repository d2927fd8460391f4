// What the element does to frames, apart from being an element.
#pragma once

#include <gst/video/video.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Caps.h"
#include "common/BandedConverter.h"

namespace zrgstreamer {

/// The element's properties.
struct Settings {
  std::string sourceFormat;  ///< empty: as the caps say
  std::uint32_t width = 0;   ///< where caps have none
  std::uint32_t height = 0;
  std::uint32_t stride = 0;  ///< 0: as the caps or the format say
  std::optional<ZrConvertersLib::MosaicPattern> pattern;
  std::optional<ZrConvertersLib::ColourMatrix> matrix;
  std::optional<ZrConvertersLib::PackingOrder> packing;
  ZrConvertersLib::Demosaic demosaic = ZrConvertersLib::Demosaic::Fast;
  double black = 0.0;  ///< counts of the source's samples
  double white = 0.0;  ///< the same; 0: the largest sample
  double redGain = 1.0;
  double greenGain = 1.0;
  double blueGain = 1.0;
  ZrConvertersLib::ToneCurve curve = ZrConvertersLib::ToneCurve::Linear;
  double gamma = 2.2;
  std::vector<double> colorMatrix;  ///< nine numbers, row by row, or none
  std::vector<double> curvePoints;  ///< input and output of each point, or none: as curve says
  bool flipHorizontal = false;
  bool flipVertical = false;
  bool automatic = false;  ///< levels and gains from the first frame instead of the above
  unsigned threads = 1;
};

/// Settings may be read and changed by any thread; everything else belongs to the streaming thread.
class Conversion {
 public:
  Settings GetSettings() const;

  /// Takes effect with the next frame.
  void SetSettings(const Settings& settings);

  /// The source frame that fixed caps stand for under the present settings. Throws Refusal.
  SourceFrame SourceOf(const GstCaps* caps) const;

  /// Prepares for frames of such caps. Throws Refusal or std::bad_alloc, with the words for the user.
  void Negotiate(const GstCaps* source, const GstCaps* destination);

  /// Converts a frame. Throws as Negotiate.
  void Convert(GstBuffer* frame, GstBuffer* picture);

 private:
  void Configure();
  void Measure(const ZrConvertersLib::SourceView& frame);

  mutable std::mutex mMutex;  // guards the two below
  Settings mSettings;
  bool mChanged = false;

  CapsPointer mSourceCaps;
  SourceFrame mSource;
  std::optional<ZrConvertersLib::Development> mMeasured;  // what the first frame has told
  GstVideoInfo mPicture{};
  const RawFormat* mFormat = nullptr;
  std::unique_ptr<zrcommon::BandedConverter> mConverter;
  std::vector<std::uint8_t> mScratch;  // a picture that cannot be written in place
};

}  // namespace zrgstreamer
