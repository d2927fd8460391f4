#!/usr/bin/python3
"""Milliseconds per frame from Python and in a GStreamer pipeline, beside the C++ call and what other packages do.

bench/bindings.py DIRECTORY [ROUNDS], with the directory of zrframe and zrpipeline, and PYTHONPATH and GST_PLUGIN_PATH
as the tests have them: "scripts/bench bindings" builds and calls it so. The candidates take turns in short bursts on one
thread, and the fastest frame of all bursts counts, since other programs only ever make a frame slower.
"""
import subprocess
import sys
import time

import cv2
import numpy

import zrconverters as zr

CALLS = 10


class Program:
    """A program that waits between bursts: told to begin one, it prints the seconds of its fastest frame."""

    def __init__(self, *command):
        self.process = subprocess.Popen([*map(str, command), str(CALLS)], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        text=True)

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


def candidates(directory, width, height):
    packed = numpy.full(width * height * 3 // 2, 0x5A, numpy.uint8)
    converter = zr.Converter("BayerRG12p", "RGB8", width, height)
    out = numpy.empty(converter.shape, converter.dtype)
    size = f"width={width},height={height},framerate=0/1"

    def call(source):
        return Program(f"{directory}/zrframe", source, "RGB8", width, height)

    def octets(elements):
        return Program(f"{directory}/zrpipeline", "application/octet-stream," + size, packed.size, elements)

    def bayer(elements):
        return Program(f"{directory}/zrpipeline", "video/x-bayer,format=rggb," + size, width * height, elements)

    return {
        "C++, Bayer12p": call("BayerRG12p"),
        "Python, Bayer12p, with out=": lambda: fastest(lambda: converter.convert(packed, out)),
        "Python, Bayer12p, new array": lambda: fastest(lambda: converter.convert(packed)),
        "numpy and OpenCV, Bayer12p": lambda: fastest(lambda: with_numpy_and_opencv(packed, width, height)),
        "identity, Bayer12p": octets("identity"),
        "zrconvert, Bayer12p": octets("zrconvert source-format=BayerRG12p ! video/x-raw,format=RGB"),
        "C++, Bayer8": call("BayerRG8"),
        "zrconvert, Bayer8": bayer("zrconvert ! video/x-raw,format=RGB"),
        "bayer2rgb and videoconvert, Bayer8": bayer("bayer2rgb ! videoconvert ! video/x-raw,format=RGB"),
    }


def main():
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
            print(f"| {name} | {1000 * seconds:.3f} ms | {1 / seconds:.0f} |")


if __name__ == "__main__":
    main()
