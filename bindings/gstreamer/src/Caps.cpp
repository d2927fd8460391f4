#include "Caps.h"

#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameErrors.h>

#include <algorithm>
#include <array>
#include <cctype>

#include "common/Refusal.h"
#include "common/Words.h"

namespace zrgstreamer {

namespace zr = ZrConvertersLib;
using zrcommon::Refusal;
using zrcommon::Require;

namespace {

// Where two formats differ in alpha only, the one without comes first: the library's alpha is always opaque.
constexpr std::array kRawFormats{
    RawFormat{GST_VIDEO_FORMAT_RGB, "RGB8", ""},
    RawFormat{GST_VIDEO_FORMAT_BGR, "BGR8", ""},
    RawFormat{GST_VIDEO_FORMAT_RGBx, "RGBa8", ""},
    RawFormat{GST_VIDEO_FORMAT_BGRx, "BGRa8", ""},
    RawFormat{GST_VIDEO_FORMAT_RGBA, "RGBa8", ""},
    RawFormat{GST_VIDEO_FORMAT_BGRA, "BGRa8", ""},
    RawFormat{GST_VIDEO_FORMAT_RGBP, "RGB8_Planar", ""},
    RawFormat{GST_VIDEO_FORMAT_RGBA64_LE, "RGBa16", "RGB16"},
    RawFormat{GST_VIDEO_FORMAT_BGRA64_LE, "BGRa16", "BGR16"},
    RawFormat{GST_VIDEO_FORMAT_GRAY8, "Mono8", ""},
    RawFormat{GST_VIDEO_FORMAT_GRAY16_LE, "Mono16", ""},
    RawFormat{GST_VIDEO_FORMAT_RGB16, "RGB565p", ""},
    RawFormat{GST_VIDEO_FORMAT_BGR16, "BGR565p", ""},
    RawFormat{GST_VIDEO_FORMAT_YUY2, "YCbCr422_8", ""},
    RawFormat{GST_VIDEO_FORMAT_UYVY, "YCbCr422_8_CbYCrY", ""},
    RawFormat{GST_VIDEO_FORMAT_v308, "YCbCr8", ""},
    RawFormat{GST_VIDEO_FORMAT_IYU2, "YCbCr8_CbYCr", ""},
    RawFormat{GST_VIDEO_FORMAT_IYU1, "YCbCr411_8_CbYYCrYY", ""},
};

bool IsSource(const RawFormat& row) {
  const zr::FormatInfo* info = zr::FindFormatInfo(row.name);
  return info && info->isSource;
}

bool IsDestination(const RawFormat& row) {
  return row.Destination() != nullptr;
}

// Caps of all such formats in all sizes.
CapsPointer RawCaps(bool (*isTaken)(const RawFormat&)) {
  std::vector<GstVideoFormat> formats;
  for (const RawFormat& row : kRawFormats) {
    if (isTaken(row)) formats.push_back(row.format);
  }
  return CapsPointer(gst_video_make_raw_caps(formats.data(), static_cast<guint>(formats.size())));
}

// A mosaic's caps name: the pattern, the depth unless it is 8, and the byte order of words, "rggb12le".
std::string BayerCapsName(zr::MosaicPattern pattern, const zr::FormatInfo& format) {
  std::string name(zr::PatternName(pattern));
  std::ranges::transform(name, name.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return format.depth == 8 ? name : name + std::to_string(format.depth) + "le";
}

template <typename Action>
void ForEachBayerName(Action&& action) {
  for (const zr::FormatInfo& format : zr::Formats()) {
    if (format.family != zr::FormatFamily::Bayer || format.packing != zr::Packing::Plain || !format.isSource)
      continue;
    for (auto pattern :
         {zr::MosaicPattern::BGGR, zr::MosaicPattern::GBRG, zr::MosaicPattern::GRBG, zr::MosaicPattern::RGGB})
      action(BayerCapsName(pattern, format), pattern, format);
  }
}

CapsPointer BayerCaps() {
  GValue names = G_VALUE_INIT;
  g_value_init(&names, GST_TYPE_LIST);
  ForEachBayerName([&](const std::string& name, zr::MosaicPattern, const zr::FormatInfo&) {
    GValue value = G_VALUE_INIT;
    g_value_init(&value, G_TYPE_STRING);
    g_value_set_string(&value, name.c_str());
    gst_value_list_append_and_take_value(&names, &value);
  });
  CapsPointer caps(gst_caps_from_string("video/x-bayer, width=" GST_VIDEO_SIZE_RANGE
                                        ", height=" GST_VIDEO_SIZE_RANGE ", framerate=" GST_VIDEO_FPS_RANGE));
  gst_structure_take_value(gst_caps_get_structure(caps.get(), 0), "format", &names);
  return caps;
}

void ReadBayer(const GstStructure* structure, SourceFrame& frame) {
  const char* wanted = gst_structure_get_string(structure, "format");
  ForEachBayerName([&](const std::string& name, zr::MosaicPattern pattern, const zr::FormatInfo& format) {
    if (!wanted || name != wanted) return;
    frame.format = &format;
    frame.options.pattern = pattern;
  });
}

zr::ColourMatrix MatrixOf(const GstVideoColorimetry& colorimetry) {
  const bool full = colorimetry.range == GST_VIDEO_COLOR_RANGE_0_255;
  if (colorimetry.matrix == GST_VIDEO_COLOR_MATRIX_BT601)
    return full ? zr::ColourMatrix::Jpeg : zr::ColourMatrix::Bt601;
  if (colorimetry.matrix == GST_VIDEO_COLOR_MATRIX_BT709 && !full) return zr::ColourMatrix::Bt709;
  throw Refusal("the caps' colorimetry is none of BT.601 in video or full range and BT.709 in video range");
}

void ReadRaw(const GstCaps* caps, SourceFrame& frame) {
  GstVideoInfo info;
  if (!gst_video_info_from_caps(&info, caps)) return;
  const RawFormat* row = FindRawFormat(GST_VIDEO_INFO_FORMAT(&info));
  if (!row) return;
  frame.format = zr::FindFormatInfo(row->name);
  frame.stride = static_cast<std::size_t>(GST_VIDEO_INFO_PLANE_STRIDE(&info, 0));
  if (GST_VIDEO_INFO_IS_YUV(&info)) frame.options.matrix = MatrixOf(GST_VIDEO_INFO_COLORIMETRY(&info));
}

void ReadWord(const std::string& word, SourceFrame& frame) {
  Require(zr::ReadFormat(word, frame.choice), "'" + word + "'");
  frame.format = zr::FindFormatInfo(frame.choice.id);
  frame.options.SetFlags(frame.choice.flags);
}

// Producers of mosaics begin lines at multiples of four bytes, as of raw video.
void RoundStrideOfBayer(SourceFrame& frame) {
  zr::FrameLayout layout;
  Require(zr::DescribeFrame(frame.format->id, frame.width, frame.height, 0, layout));
  frame.stride = static_cast<std::size_t>((layout.bytesPerLine + 3) / 4 * 4);
}

std::uint32_t Side(const GstStructure* structure, const char* name, std::uint32_t otherwise) {
  gint side = 0;
  return gst_structure_get_int(structure, name, &side) && side > 0 ? static_cast<std::uint32_t>(side)
                                                                   : otherwise;
}

}  // namespace

const zr::FormatInfo* RawFormat::Destination() const {
  const zr::FormatInfo* info = zr::FindFormatInfo(madeFrom.empty() ? name : madeFrom);
  // YCbCr is the destination of nothing but its own packed layouts.
  return info && info->isDestination && info->family != zr::FormatFamily::YCbCr ? info : nullptr;
}

const RawFormat* FindRawFormat(GstVideoFormat format) {
  const auto* found = std::ranges::find(kRawFormats, format, &RawFormat::format);
  return found == kRawFormats.end() ? nullptr : found;
}

CapsPointer SinkCaps(bool anyFormat) {
  CapsPointer caps = BayerCaps();
  gst_caps_append(caps.get(), RawCaps(&IsSource).release());
  if (anyFormat)
    gst_caps_append(caps.get(), gst_caps_from_string("video/x-raw; video/x-bayer; application/octet-stream"));
  return caps;
}

CapsPointer SourceCaps() {
  return RawCaps(&IsDestination);
}

std::vector<const RawFormat*> BestFirst(const zr::FormatInfo& source) {
  const bool grey = source.family == zr::FormatFamily::Mono;
  const bool deep = source.depth > 8;
  // Lower is better: colour that is lost, then bits that are lost, then bytes that are moved for nothing.
  const auto cost = [&](const RawFormat* row) {
    const zr::FormatInfo& info = *row->Destination();
    const bool losesColour = !grey && info.family == zr::FormatFamily::Mono;
    const bool losesBits =
        info.depth < 8 || (deep && info.depth <= 8 && (grey || source.family == zr::FormatFamily::Rgb));
    const bool wastes =
        (grey && info.family != zr::FormatFamily::Mono) || (!losesBits && info.depth > 8 && !deep);
    return losesColour * 1000U + losesBits * 500U + wastes * 200U + info.bitsPerPixel;
  };
  std::vector<const RawFormat*> rows;
  for (const RawFormat& row : kRawFormats) {
    if (IsDestination(row)) rows.push_back(&row);
  }
  std::ranges::stable_sort(rows, {}, cost);
  return rows;
}

SourceFrame ReadSource(const GstCaps* caps, const std::string& word, std::uint32_t width,
                       std::uint32_t height, std::size_t stride) {
  const GstStructure* structure = gst_caps_get_structure(caps, 0);
  const bool bayer = gst_structure_has_name(structure, "video/x-bayer");
  SourceFrame frame;
  frame.width = Side(structure, "width", width);
  frame.height = Side(structure, "height", height);
  if (!word.empty())
    ReadWord(word, frame);
  else if (bayer)
    ReadBayer(structure, frame);
  else
    ReadRaw(caps, frame);
  if (!frame.format)
    throw Refusal("caps without source-format: " +
                  std::string(zr::ResultText(zr::FrameError::UnknownFormat)));
  if (bayer && word.empty()) RoundStrideOfBayer(frame);
  if (stride > 0) frame.stride = stride;
  return frame;
}

}  // namespace zrgstreamer
