// The element zrconvert by itself: caps, strides, properties that change, and refusals.
#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameConverter.h>
#include <gst/check/gstharness.h>
#include <gst/video/video.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

namespace zr = ZrConvertersLib;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kWidth = 38;
constexpr std::uint32_t kHeight = 21;

class Harness {
 public:
  explicit Harness(const std::string& launch)
      : mHarness(gst_harness_new_parse(("zrconvert " + launch).c_str())) {}
  ~Harness() { gst_harness_teardown(mHarness); }
  Harness(const Harness&) = delete;
  Harness& operator=(const Harness&) = delete;

  GstHarness* operator->() const { return mHarness; }
  GstHarness* Get() const { return mHarness; }

  void SetCaps(const std::string& source, const std::string& sink) {
    gst_harness_set_src_caps_str(mHarness, source.c_str());
    gst_harness_set_sink_caps_str(mHarness, sink.c_str());
  }

  GstFlowReturn Push(const Bytes& frame) {
    GstBuffer* buffer = gst_buffer_new_memdup(frame.data(), frame.size());
    return gst_harness_push(mHarness, buffer);
  }

  // The pixels of the next picture, without the padding of lines.
  Bytes Pull(GstVideoFormat format) {
    GstVideoInfo info;
    gst_video_info_set_format(&info, format, kWidth, kHeight);
    GstBuffer* buffer = gst_harness_pull(mHarness);
    GstVideoFrame frame;
    Bytes pixels;
    if (buffer && gst_video_frame_map(&frame, &info, buffer, GST_MAP_READ)) {
      for (guint plane = 0; plane < GST_VIDEO_FRAME_N_PLANES(&frame); ++plane)
        AppendLines(frame, plane, pixels);
      gst_video_frame_unmap(&frame);
    }
    gst_clear_buffer(&buffer);
    return pixels;
  }

 private:
  static void AppendLines(const GstVideoFrame& frame, guint plane, Bytes& pixels) {
    const auto* line = static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, plane));
    const auto bytes = kWidth * static_cast<unsigned>(GST_VIDEO_FRAME_COMP_PSTRIDE(&frame, plane));
    for (unsigned y = 0; y < kHeight; ++y, line += GST_VIDEO_FRAME_PLANE_STRIDE(&frame, plane))
      pixels.insert(pixels.end(), line, line + bytes);
  }

  GstHarness* mHarness;
};

std::string Sized(const std::string& caps) {
  return caps + ",framerate=30/1,width=" + std::to_string(kWidth) + ",height=" + std::to_string(kHeight);
}

bool CanBeEqual(const std::string& some, const std::string& others) {
  GstCaps* first = gst_caps_from_string(some.c_str());
  GstCaps* second = gst_caps_from_string(others.c_str());
  const bool result = gst_caps_can_intersect(first, second);
  gst_caps_unref(first);
  gst_caps_unref(second);
  return result;
}

// Noise with lines of `stride` bytes.
Bytes Noise(std::size_t stride) {
  Bytes bytes(stride * kHeight);
  std::uint32_t state = 1;
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>((state = state * 1664525 + 1013904223) >> 24);
  return bytes;
}

// What the library makes of the frame itself.
Bytes Expected(const std::string& source, const std::string& destination, const Bytes& frame,
               std::size_t stride, zr::Demosaic demosaic = zr::Demosaic::Fast) {
  zr::FormatChoice choice;
  EXPECT_TRUE(zr::ReadFormat(source, choice).IsSuccess());
  zr::FrameOptions options;
  options.SetFlags(choice.flags);
  options.demosaic = demosaic;
  zr::FrameConverter converter;
  const long id = zr::FindFormatInfo(destination)->id;
  EXPECT_TRUE(converter.Configure(choice.id, id, kWidth, kHeight, options).IsSuccess());
  Bytes picture(converter.DestinationLayout().frameBytes);
  EXPECT_TRUE(converter
                  .Convert(zr::SourceView::Of(frame, kWidth, kHeight, stride),
                           zr::DestinationView::Of(picture, kWidth, kHeight))
                  .IsSuccess());
  return picture;
}

struct Case {
  const char* caps;    // of the frame
  const char* source;  // the library's word for it
  unsigned stride;     // by GStreamer's rule
};

class SourceTest : public ::testing::TestWithParam<Case> {};

TEST_P(SourceTest, BecomesEveryFormatOfTheSourcePad) {
  const Case& row = GetParam();
  const Bytes frame = Noise(row.stride);
  const struct {
    const char* caps;
    GstVideoFormat format;
    const char* name;
  } pictures[] = {
      {"RGB", GST_VIDEO_FORMAT_RGB, "RGB8"},        {"BGRx", GST_VIDEO_FORMAT_BGRx, "BGRa8"},
      {"GRAY8", GST_VIDEO_FORMAT_GRAY8, "Mono8"},   {"GRAY16_LE", GST_VIDEO_FORMAT_GRAY16_LE, "Mono16"},
      {"RGB16", GST_VIDEO_FORMAT_RGB16, "RGB565p"}, {"RGBP", GST_VIDEO_FORMAT_RGBP, "RGB8_Planar"}};
  for (const auto& picture : pictures) {
    Harness harness("");
    const auto sink = Sized(std::string("video/x-raw,format=") + picture.caps);
    harness.SetCaps(Sized(row.caps), sink);
    if (CanBeEqual(Sized(row.caps), sink)) continue;  // passes through
    ASSERT_EQ(harness.Push(frame), GST_FLOW_OK) << picture.caps;
    EXPECT_EQ(harness.Pull(picture.format), Expected(row.source, picture.name, frame, row.stride))
        << picture.caps;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Caps, SourceTest,
    ::testing::Values(Case{"video/x-raw,format=GRAY8", "Mono8", 40},
                      Case{"video/x-raw,format=BGR", "BGR8", 116},
                      Case{"video/x-raw,format=RGB16", "RGB565p", 76},
                      Case{"video/x-raw,format=YUY2,colorimetry=bt709", "YCbCr709_422_8", 76},
                      Case{"video/x-raw,format=UYVY,colorimetry=1:4:0:0", "0x02100043", 76},
                      Case{"video/x-raw,format=RGBA64_LE", "RGBa16", 304},
                      Case{"video/x-bayer,format=rggb", "BayerRG8", 40},
                      Case{"video/x-bayer,format=gbrg12le", "BayerGB12", 76}));

TEST(ElementTest, FramesThatGStreamerHasNoNameFor) {
  const Bytes frame = Noise(kWidth * 3 / 2);
  for (const char* caps : {"application/octet-stream", "video/x-raw", "video/x-raw,format=GRAY8"}) {
    Harness harness("source-format=BayerRG12p demosaic=interpolate");
    harness.SetCaps(Sized(caps), Sized("video/x-raw,format=RGB"));
    ASSERT_EQ(harness.Push(frame), GST_FLOW_OK) << caps;
    EXPECT_EQ(harness.Pull(GST_VIDEO_FORMAT_RGB),
              Expected("BayerRG12p", "RGB8", frame, 0, zr::Demosaic::Interpolate))
        << caps;
  }
}

TEST(ElementTest, SizeAndStrideOfTheProperties) {
  const Bytes frame = Noise(64);
  Harness harness("source-format=Mono12p width=38 height=21 source-stride=64");
  harness.SetCaps("application/octet-stream", "video/x-raw,format=GRAY8");
  ASSERT_EQ(harness.Push(frame), GST_FLOW_OK);
  EXPECT_EQ(harness.Pull(GST_VIDEO_FORMAT_GRAY8), Expected("Mono12p", "Mono8", frame, 64));
}

TEST(ElementTest, SixteenBitColourGetsAnOpaqueAlpha) {
  const Bytes frame = Noise(kWidth * 2);
  Harness harness("source-format=BayerRG12");
  harness.SetCaps(Sized("application/octet-stream"), Sized("video/x-raw,format=RGBA64_LE"));
  ASSERT_EQ(harness.Push(frame), GST_FLOW_OK);
  Bytes expected;
  const Bytes colour = Expected("BayerRG12", "RGB16", frame, 0);
  for (std::size_t i = 0; i < colour.size(); i += 6) {
    expected.insert(expected.end(), &colour[i], &colour[i] + 6);
    expected.insert(expected.end(), 2, 0xFF);
  }
  EXPECT_EQ(harness.Pull(GST_VIDEO_FORMAT_RGBA64_LE), expected);
}

// A buffer whose lines lie further apart than by rule, with a GstVideoMeta that says so.
GstBuffer* PaddedBuffer(const Bytes& bytes, GstVideoFormat format, gsize offset, gint stride) {
  GstBuffer* buffer = gst_buffer_new_memdup(bytes.data(), bytes.size());
  gsize offsets[GST_VIDEO_MAX_PLANES] = {offset};
  gint strides[GST_VIDEO_MAX_PLANES] = {stride};
  gst_buffer_add_video_meta_full(buffer, GST_VIDEO_FRAME_FLAG_NONE, format, kWidth, kHeight, 1, offsets,
                                 strides);
  return buffer;
}

TEST(ElementTest, StridesOfTheFrameAreThoseOfItsMeta) {
  const Bytes frame = Noise(100);
  Harness harness("");
  harness.SetCaps(Sized("video/x-raw,format=GRAY8"), Sized("video/x-raw,format=RGB"));
  Bytes shifted(16);
  shifted.insert(shifted.end(), frame.begin(), frame.end());
  ASSERT_EQ(gst_harness_push(harness.Get(), PaddedBuffer(shifted, GST_VIDEO_FORMAT_GRAY8, 16, 100)),
            GST_FLOW_OK);
  EXPECT_EQ(harness.Pull(GST_VIDEO_FORMAT_RGB), Expected("Mono8", "RGB8", frame, 100));
}

TEST(ElementTest, StridesOfThePictureAreThoseOfDownstreamsPool) {
  const Bytes frame = Noise(40);
  Harness harness("");
  gst_harness_add_propose_allocation_meta(harness.Get(), GST_VIDEO_META_API_TYPE, nullptr);
  GstAllocationParams parameters{};
  parameters.align = 63;
  gst_harness_set_propose_allocator(harness.Get(), nullptr, &parameters);
  harness.SetCaps(Sized("video/x-bayer,format=rggb"), Sized("video/x-raw,format=RGBP"));
  for (int i = 0; i < 3; ++i) ASSERT_EQ(harness.Push(frame), GST_FLOW_OK);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(harness.Pull(GST_VIDEO_FORMAT_RGBP), Expected("BayerRG8", "RGB8_Planar", frame, 40));
}

TEST(ElementTest, PropertiesChangeWhileFramesPass) {
  const Bytes frame = Noise(40);
  Harness harness("");
  harness.SetCaps(Sized("video/x-bayer,format=rggb"), Sized("video/x-raw,format=RGB"));
  harness.Push(frame);
  EXPECT_EQ(harness.Pull(GST_VIDEO_FORMAT_RGB), Expected("BayerRG8", "RGB8", frame, 40));
  gst_harness_set(harness.Get(), "zrconvert", "demosaic", 1, "threads", 3, nullptr);
  harness.Push(frame);
  EXPECT_EQ(harness.Pull(GST_VIDEO_FORMAT_RGB),
            Expected("BayerRG8", "RGB8", frame, 40, zr::Demosaic::Interpolate));
  gst_harness_set(harness.Get(), "zrconvert", "demosaic", 0, "pattern", 3, nullptr);
  harness.Push(frame);
  EXPECT_EQ(harness.Pull(GST_VIDEO_FORMAT_RGB), Expected("BayerBG8", "RGB8", frame, 40));
}

struct Best {
  const char* source;
  const char* offered;
  const char* taken;
};

TEST(ElementTest, TakesTheBestFormatOfDownstream) {
  for (const Best& row :
       {Best{"Mono12p", "{ RGB, GRAY8, GRAY16_LE }", "GRAY16_LE"},
        Best{"Mono8", "{ RGB, GRAY16_LE, GRAY8 }", "GRAY8"},
        Best{"BayerRG8", "{ GRAY8, RGB16, BGRx }", "BGRx"}, Best{"BayerRG8", "{ GRAY8, RGB16 }", "RGB16"},
        Best{"RGB12", "{ RGB, RGBA64_LE }", "RGBA64_LE"}}) {
    Harness harness(std::string("source-format=") + row.source);
    harness.SetCaps(Sized("application/octet-stream"), std::string("video/x-raw,format=") + row.offered);
    harness.Push(Noise(kWidth * 6));
    GstPad* pad = harness->sinkpad;
    GstCaps* caps = gst_pad_get_current_caps(pad);
    ASSERT_NE(caps, nullptr) << row.source;
    EXPECT_STREQ(gst_structure_get_string(gst_caps_get_structure(caps, 0), "format"), row.taken)
        << row.source;
    gst_caps_unref(caps);
  }
}

// The words of the error that the element posts for a frame.
std::string ErrorOf(const std::string& launch, const std::string& caps, std::size_t bytes) {
  Harness harness(launch);
  GstBus* bus = gst_bus_new();
  gst_element_set_bus(harness->element, bus);
  harness.SetCaps(caps, "video/x-raw,format=RGB");
  EXPECT_NE(harness.Push(Bytes(bytes)), GST_FLOW_OK);
  std::string text;
  if (GstMessage* message = gst_bus_pop_filtered(bus, GST_MESSAGE_ERROR)) {
    GError* error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    text = error->message;
    g_error_free(error);
    gst_message_unref(message);
  }
  gst_element_set_bus(harness->element, nullptr);
  gst_object_unref(bus);
  return text;
}

TEST(ElementTest, ErrorsHaveTheLibrarysWords) {
  const auto has = [](const std::string& text, const char* words) {
    return text.find(words) != std::string::npos;
  };
  const std::string octets = Sized("application/octet-stream");
  EXPECT_PRED2(has, ErrorOf("source-format=Mono9", octets, 1000), "no pixel format");
  EXPECT_PRED2(has, ErrorOf("source-format=Mono8", octets, kWidth * kHeight - 1), "smaller than the frame");
  EXPECT_PRED2(has, ErrorOf("source-format=YCbCr411_8", octets, 5000), "groups");
  EXPECT_PRED2(has, ErrorOf("source-format=BayerRG8 pattern=GRBG", octets, 1000), "another pattern");
  EXPECT_PRED2(has, ErrorOf("source-format=RGB8 color-matrix=<1.0,0.0>", octets, 5000), "nine numbers");
  EXPECT_PRED2(has, ErrorOf("source-format=RGB8 curve-points=<0.5,1.0,0.0,0.0>", octets, 5000), "tone");
}

}  // namespace

int main(int count, char** arguments) {
  gst_init(&count, &arguments);
  ::testing::InitGoogleTest(&count, arguments);
  return RUN_ALL_TESTS();
}
