#include "Buffers.h"

#include <cstring>

#include "common/Refusal.h"

namespace zrgstreamer {

namespace zr = ZrConvertersLib;
using zrcommon::Refusal;

namespace {

// The library's planes follow one another without a gap.
void RequirePlanesInOrder(const GstVideoMeta& meta, const SourceFrame& frame) {
  for (gsize plane = 1; plane < frame.format->planes && plane < meta.n_planes; ++plane) {
    const gsize expected = meta.offset[0] + plane * static_cast<gsize>(meta.stride[0]) * frame.height;
    if (meta.offset[plane] != expected || meta.stride[plane] != meta.stride[0])
      throw Refusal("the frame's planes must follow one another without a gap");
  }
}

}  // namespace

MappedSource::MappedSource(GstBuffer* buffer, const SourceFrame& frame)
    : mBuffer(buffer), mFrame(frame), mMap() {
  if (!gst_buffer_map(buffer, &mMap, GST_MAP_READ)) throw Refusal("the frame's buffer cannot be mapped");
}

MappedSource::~MappedSource() {
  gst_buffer_unmap(mBuffer, &mMap);
}

zr::SourceView MappedSource::View() const {
  zr::SourceView view{mMap.data, mMap.size, mFrame.stride, mFrame.width, mFrame.height};
  zr::FrameLayout layout;
  const auto describe = [&] {
    return zr::DescribeFrame(mFrame.format->id, view.width, view.height, view.stride, layout);
  };
  if (const GstVideoMeta* meta = gst_buffer_get_video_meta(mBuffer); meta && meta->offset[0] < mMap.size) {
    RequirePlanesInOrder(*meta, mFrame);
    view.data = mMap.data + meta->offset[0];
    view.size = mMap.size - meta->offset[0];
    view.stride = static_cast<std::size_t>(meta->stride[0]);
  } else if (describe().IsSuccess() && layout.leastBytes > view.size) {
    // Lines are rounded up by convention only; many cameras' are not.
    view.stride = 0;
    if (!describe().IsSuccess() || layout.frameBytes != view.size) view.stride = mFrame.stride;
  }
  return view;
}

MappedPicture::MappedPicture(GstBuffer* buffer, const GstVideoInfo& info) : mFrame() {
  if (!gst_video_frame_map(&mFrame, &info, buffer, GST_MAP_WRITE))
    throw Refusal("the picture's buffer cannot be mapped");
}

MappedPicture::~MappedPicture() {
  gst_video_frame_unmap(&mFrame);
}

std::uint8_t* MappedPicture::Line(unsigned plane, unsigned y) {
  return static_cast<std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&mFrame, plane)) +
         std::size_t{y} * static_cast<std::size_t>(GST_VIDEO_FRAME_PLANE_STRIDE(&mFrame, plane));
}

bool MappedPicture::IsDirect(const RawFormat& format) const {
  if (!format.madeFrom.empty()) return false;
  const auto stride = GST_VIDEO_FRAME_PLANE_STRIDE(&mFrame, 0);
  const auto planeBytes = static_cast<std::ptrdiff_t>(stride) * GST_VIDEO_FRAME_HEIGHT(&mFrame);
  const auto* first = static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&mFrame, 0));
  for (unsigned plane = 1; plane < GST_VIDEO_FRAME_N_PLANES(&mFrame); ++plane) {
    if (mFrame.meta && mFrame.map[plane].memory != mFrame.map[0].memory) return false;
    if (GST_VIDEO_FRAME_PLANE_STRIDE(&mFrame, plane) != stride) return false;
    if (GST_VIDEO_FRAME_PLANE_DATA(&mFrame, plane) != first + planeBytes * plane) return false;
  }
  return stride > 0;
}

zr::DestinationView MappedPicture::View() {
  std::uint8_t* first = Line(0, 0);
  const auto before = static_cast<std::size_t>(first - mFrame.map[0].data);
  return {first, mFrame.map[0].size - before,
          static_cast<std::size_t>(GST_VIDEO_FRAME_PLANE_STRIDE(&mFrame, 0)),
          static_cast<std::uint32_t>(GST_VIDEO_FRAME_WIDTH(&mFrame)),
          static_cast<std::uint32_t>(GST_VIDEO_FRAME_HEIGHT(&mFrame))};
}

void MappedPicture::CopyFrom(const std::vector<std::uint8_t>& picture, const RawFormat& format) {
  if (format.madeFrom.empty())
    CopyPlanes(picture.data());
  else
    AddAlpha(picture.data());
}

void MappedPicture::CopyPlanes(const std::uint8_t* picture) {
  const auto height = static_cast<unsigned>(GST_VIDEO_FRAME_HEIGHT(&mFrame));
  for (unsigned plane = 0; plane < GST_VIDEO_FRAME_N_PLANES(&mFrame); ++plane) {
    const auto bytes = static_cast<std::size_t>(GST_VIDEO_FRAME_COMP_WIDTH(&mFrame, plane) *
                                                GST_VIDEO_FRAME_COMP_PSTRIDE(&mFrame, plane));
    for (unsigned y = 0; y < height; ++y, picture += bytes) std::memcpy(Line(plane, y), picture, bytes);
  }
}

// Three words of 16 bits become four, of which the last is all ones.
void MappedPicture::AddAlpha(const std::uint8_t* picture) {
  constexpr std::size_t kColour = 6;
  constexpr std::size_t kWithAlpha = 8;
  const auto width = static_cast<unsigned>(GST_VIDEO_FRAME_WIDTH(&mFrame));
  const auto height = static_cast<unsigned>(GST_VIDEO_FRAME_HEIGHT(&mFrame));
  for (unsigned y = 0; y < height; ++y) {
    std::uint8_t* to = Line(0, y);
    for (unsigned x = 0; x < width; ++x, to += kWithAlpha, picture += kColour) {
      std::memcpy(to, picture, kColour);
      std::memset(to + kColour, 0xFF, kWithAlpha - kColour);
    }
  }
}

}  // namespace zrgstreamer
