// GStreamer's buffers as the library's views.
#pragma once

#include <ZrConvertersLib/FrameConverter.h>
#include <gst/video/video.h>

#include <cstdint>
#include <vector>

#include "Caps.h"

namespace zrgstreamer {

/// A source buffer mapped for reading.
class MappedSource {
 public:
  /// Throws Refusal when the buffer cannot be mapped.
  MappedSource(GstBuffer* buffer, const SourceFrame& frame);
  ~MappedSource();
  MappedSource(const MappedSource&) = delete;
  MappedSource& operator=(const MappedSource&) = delete;

  /// Lines lie as the buffer's GstVideoMeta says, else as the frame says.
  ZrConvertersLib::SourceView View() const;

 private:
  GstBuffer* mBuffer;
  const SourceFrame& mFrame;
  GstMapInfo mMap;
};

/// A picture buffer mapped for writing, in the strides of its GstVideoMeta.
class MappedPicture {
 public:
  /// Throws Refusal when the buffer cannot be mapped.
  MappedPicture(GstBuffer* buffer, const GstVideoInfo& info);
  ~MappedPicture();
  MappedPicture(const MappedPicture&) = delete;
  MappedPicture& operator=(const MappedPicture&) = delete;

  /// Whether the library can write the picture in place: its format is a destination, and its planes follow
  /// one another as the library lays them out.
  bool IsDirect(const RawFormat& format) const;
  ZrConvertersLib::DestinationView View();

  /// Fills it from a picture without gaps that lies elsewhere, adding alpha to 16-bit colour.
  void CopyFrom(const std::vector<std::uint8_t>& picture, const RawFormat& format);

 private:
  std::uint8_t* Line(unsigned plane, unsigned y);
  void CopyPlanes(const std::uint8_t* picture);
  void AddAlpha(const std::uint8_t* picture);

  GstVideoFrame mFrame;
};

}  // namespace zrgstreamer
