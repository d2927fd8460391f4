// Times pipelines for bench/bindings.py: zrpipeline CAPS BYTES ELEMENTS CALLS
// For each line of standard input it sends CALLS frames of that many bytes through the elements, which run in
// one thread, and prints the least seconds from the end of one frame to the end of the next. Pads are watched
// from here, since a callback into Python after megabytes of pixels finds its code in no cache and takes 30
// microseconds.
#include <gst/gst.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

struct Unref {
  void operator()(gpointer object) const { gst_object_unref(object); }
  void operator()(GstMessage* message) const { gst_message_unref(message); }
};
template <typename Type>
using Pointer = std::unique_ptr<Type, Unref>;

class Arrivals {
 public:
  static GstPadProbeReturn Note(GstPad*, GstPadProbeInfo*, gpointer self) {
    static_cast<Arrivals*>(self)->NoteOne();
    return GST_PAD_PROBE_OK;
  }

  double LeastGap() const { return mLeast.count(); }

 private:
  using Clock = std::chrono::steady_clock;

  void NoteOne() {
    const auto now = Clock::now();
    if (mLast != Clock::time_point()) mLeast = std::min<std::chrono::duration<double>>(mLeast, now - mLast);
    mLast = now;
  }

  Clock::time_point mLast;
  std::chrono::duration<double> mLeast = std::chrono::hours(1);
};

// The frames share the memory of one.
void PushFrames(GstElement* source, const std::vector<std::uint8_t>& frame, int count) {
  GstFlowReturn flow = GST_FLOW_OK;
  for (int i = 0; i < count; ++i) {
    GstBuffer* buffer =
        gst_buffer_new_wrapped_full(GST_MEMORY_FLAG_READONLY, const_cast<std::uint8_t*>(frame.data()),
                                    frame.size(), 0, frame.size(), nullptr, nullptr);
    g_signal_emit_by_name(source, "push-buffer", buffer, &flow);
    gst_buffer_unref(buffer);
  }
  g_signal_emit_by_name(source, "end-of-stream", &flow);
}

bool RunToItsEnd(GstElement* pipeline) {
  gst_element_set_state(pipeline, GST_STATE_PLAYING);
  const Pointer<GstBus> bus(gst_element_get_bus(pipeline));
  const Pointer<GstMessage> message(gst_bus_timed_pop_filtered(
      bus.get(), GST_CLOCK_TIME_NONE, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR)));
  gst_element_set_state(pipeline, GST_STATE_NULL);
  return GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_EOS;
}

// Seconds, 0 when the pipeline fails.
double FastestOf(const std::string& launch, const std::vector<std::uint8_t>& frame, int calls) {
  const Pointer<GstElement> pipeline(gst_parse_launch(launch.c_str(), nullptr));
  if (!pipeline) return 0.0;
  const Pointer<GstElement> source(gst_bin_get_by_name(GST_BIN(pipeline.get()), "source"));
  const Pointer<GstElement> sink(gst_bin_get_by_name(GST_BIN(pipeline.get()), "sink"));
  const Pointer<GstPad> pad(gst_element_get_static_pad(sink.get(), "sink"));
  Arrivals arrivals;
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_BUFFER, &Arrivals::Note, &arrivals, nullptr);
  PushFrames(source.get(), frame, calls + 1);
  return RunToItsEnd(pipeline.get()) ? arrivals.LeastGap() : 0.0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 5) return 2;
  gst_init(nullptr, nullptr);
  const std::string launch = std::string("appsrc name=source max-bytes=0 caps=") + arguments[1] + " ! " +
                             arguments[3] + " ! fakesink name=sink";
  const std::vector<std::uint8_t> frame(std::stoul(arguments[2]), 0x5A);
  const int calls = std::stoi(arguments[4]);
  for (std::string line; std::getline(std::cin, line);) {
    const double seconds = FastestOf(launch, frame, calls);
    if (seconds == 0.0) return 1;
    std::printf("%.9f\n", seconds);
    std::fflush(stdout);
  }
  return 0;
}
