// GStreamer's names of formats beside the library's, and caps made of them.
#pragma once

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameConverter.h>
#include <gst/gst.h>
#include <gst/video/video.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zrgstreamer {

struct CapsRelease {
  void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
};
using CapsPointer = std::unique_ptr<GstCaps, CapsRelease>;

/// A video/x-raw format and what the library calls it.
struct RawFormat {
  GstVideoFormat format;
  std::string_view name;      ///< the library's name of the layout
  std::string_view madeFrom;  ///< the destination that the element adds an opaque alpha to; empty: none

  /// The library's destination for it, or null.
  const ZrConvertersLib::FormatInfo* Destination() const;
};

/// The row of a format, or null.
const RawFormat* FindRawFormat(GstVideoFormat format);

/// What the sink pad takes. With a source format of the user's, also frames without a format that GStreamer
/// knows.
CapsPointer SinkCaps(bool anyFormat);

/// What the source pad offers.
CapsPointer SourceCaps();

/// The source pad's formats, the ones that lose least of such a source first.
std::vector<const RawFormat*> BestFirst(const ZrConvertersLib::FormatInfo& source);

/// A source frame as caps, or caps and properties, describe it.
struct SourceFrame {
  const ZrConvertersLib::FormatInfo* format = nullptr;
  ZrConvertersLib::FrameOptions options;  ///< pattern and matrix as the caps or the format's name say
  ZrConvertersLib::FormatChoice choice;   ///< of the user's word, if there is one
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::size_t stride = 0;  ///< bytes from line to line unless a buffer's GstVideoMeta says otherwise
};

/// Reads fixed caps. An empty word means that the caps say the format; width and height count where the caps
/// have none. Throws Refusal when they are no frame that the library knows.
SourceFrame ReadSource(const GstCaps* caps, const std::string& word, std::uint32_t width,
                       std::uint32_t height, std::size_t stride);

}  // namespace zrgstreamer
