#!/usr/bin/python3
"""Frames per second from Python and in a GStreamer pipeline, beside the C++ call and what other packages do.

bench/bindings.py ZRFRAME [ROUNDS], with PYTHONPATH and GST_PLUGIN_PATH as the tests have them. The candidates take
turns in short bursts on one thread, and the fastest frame of all bursts counts, since other programs only ever make a
frame slower.
"""
import subprocess
import sys
import time

import cv2
import gi
import numpy

gi.require_version("Gst", "1.0")
from gi.repository import Gst  # noqa: E402

import zrconverters as zr  # noqa: E402

CALLS = 10


class Cpp:
    """The checked interface from C++, in a process of its own that waits between bursts."""

    def __init__(self, program, source, width, height):
        command = [program, source, "RGB8", str(width), str(height), str(CALLS)]
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def __call__(self):
        self.process.stdin.write("\n")
        self.process.stdin.flush()
        return float(self.process.stdout.readline())


def fastest(call):
    times = []
    for _ in range(CALLS):
        begin = time.perf_counter()
        call()
        times.append(time.perf_counter() - begin)
    return min(times)


def with_numpy_and_opencv(frame, width, height):
    """Two 12-bit samples in three bytes, unpacked to 16 bits, reduced to 8 and put through OpenCV's bilinear demosaic."""
    low, middle, high = frame.reshape(height, width // 2, 3).astype(numpy.uint16).transpose(2, 0, 1)
    samples = numpy.empty((height, width), numpy.uint16)
    samples[:, 0::2] = low | (middle & 15) << 8
    samples[:, 1::2] = middle >> 4 | high << 4
    return cv2.cvtColor((samples >> 4).astype(numpy.uint8), cv2.COLOR_BayerBG2RGB)


class Pipeline:
    """The least time between two frames that arrive at the end of a pipeline, which runs in one thread."""

    def __init__(self, caps, frame_bytes, elements):
        self.launch = f"appsrc name=source max-bytes=0 caps={caps} ! {elements} ! fakesink name=sink"
        self.frame = b"\x5a" * frame_bytes

    def __call__(self):
        pipeline = Gst.parse_launch(self.launch)
        source, sink = pipeline.get_by_name("source"), pipeline.get_by_name("sink")
        buffer = Gst.Buffer.new_wrapped(self.frame)
        for _ in range(CALLS + 1):
            source.emit("push-buffer", buffer.copy())  # the copies share the frame's memory
        source.emit("end-of-stream")
        arrivals = []

        def arrive(*_):
            arrivals.append(time.perf_counter())
            return Gst.PadProbeReturn.OK

        sink.get_static_pad("sink").add_probe(Gst.PadProbeType.BUFFER, arrive)
        pipeline.set_state(Gst.State.PLAYING)
        wanted = Gst.MessageType.EOS | Gst.MessageType.ERROR
        message = pipeline.get_bus().timed_pop_filtered(Gst.CLOCK_TIME_NONE, wanted)
        pipeline.set_state(Gst.State.NULL)
        assert message.type == Gst.MessageType.EOS, message.parse_error()
        return min(later - earlier for earlier, later in zip(arrivals, arrivals[1:]))


def candidates(program, width, height):
    packed = numpy.full(width * height * 3 // 2, 0x5A, numpy.uint8)
    converter = zr.Converter("BayerRG12p", "RGB8", width, height)
    out = numpy.empty(converter.shape, converter.dtype)
    size = f"width={width},height={height},framerate=0/1"
    octets = "application/octet-stream," + size
    bayer = "video/x-bayer,format=rggb," + size
    return {
        "C++, Bayer12p": Cpp(program, "BayerRG12p", width, height),
        "Python, Bayer12p, with out=": lambda: fastest(lambda: converter.convert(packed, out)),
        "Python, Bayer12p, new array": lambda: fastest(lambda: converter.convert(packed)),
        "numpy and OpenCV, Bayer12p": lambda: fastest(lambda: with_numpy_and_opencv(packed, width, height)),
        "identity, Bayer12p": Pipeline(octets, packed.size, "identity"),
        "zrconvert, Bayer12p": Pipeline(octets, packed.size,
                                        "zrconvert source-format=BayerRG12p ! video/x-raw,format=RGB"),
        "C++, Bayer8": Cpp(program, "BayerRG8", width, height),
        "zrconvert, Bayer8": Pipeline(bayer, width * height, "zrconvert ! video/x-raw,format=RGB"),
        "bayer2rgb and videoconvert, Bayer8": Pipeline(bayer, width * height,
                                                       "bayer2rgb ! videoconvert ! video/x-raw,format=RGB"),
    }


def main():
    Gst.init(None)
    cv2.setNumThreads(1)
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 5
    for width, height in ((1920, 1080), (4096, 3000)):
        measured = candidates(sys.argv[1], width, height)
        best = dict.fromkeys(measured, 1e9)
        for _ in range(rounds):
            for name, measure in measured.items():
                best[name] = min(best[name], measure())
        print(f"\n{width}x{height} to RGB8, one thread\n")
        for name, seconds in best.items():
            print(f"| {name} | {1000 * seconds:.2f} ms | {1 / seconds:.0f} |")


if __name__ == "__main__":
    main()
