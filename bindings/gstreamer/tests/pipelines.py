#!/usr/bin/python3
"""Whole pipelines, from raw frames to PNG, whose pictures must be those of the tool byte for byte."""
import os
import pathlib
import subprocess
import tempfile
import unittest

import cv2
import gi

TOOL = os.environ.get("ZRCONVERT")
WIDTH, HEIGHT = 64, 48


def launch(*words):
    subprocess.run(["gst-launch-1.0", "-q", *words], check=True, timeout=60)


def source(path, source_format, width, height, *options):
    caps = f"application/octet-stream,width={width},height={height},framerate=30/1"
    return ["filesrc", f"location={path}", f"blocksize={path.stat().st_size}", "!", caps, "!", "zrconvert",
            f"source-format={source_format}", *options, "!"]


@unittest.skipUnless(TOOL, "ZRCONVERT names no tool")
class Pipelines(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = pathlib.Path(directory.name)

    def tool(self, *arguments):
        subprocess.run([TOOL, *map(str, arguments)], check=True, capture_output=True)

    def check(self, path, word, width, height, destination="RGB8", caps="RGB", options=(), arguments=()):
        picture, expected = self.directory / "picture.raw", self.directory / "expected.raw"
        # The tool demosaics directionally, and keeps the depth of YCbCr, unless it is told otherwise; the element
        # has the library's defaults.
        if "Bayer" in word and "-d" not in arguments:
            arguments = [*arguments, "-d", "fast"]
        self.tool("convert", path, expected, "-c", "raw", "-f", word, "-s", f"{width}x{height}", "-t", destination, "-q",
                  *arguments)
        launch(*source(path, word, width, height, *options), f"video/x-raw,format={caps}", "!", "filesink",
               f"location={picture}")
        self.assertTrue(picture.read_bytes() == expected.read_bytes(), word)

    def test_sources_of_every_packing(self):
        for word in ("Mono8", "Mono12p", "Mono10Packed", "BayerRG10p", "BayerGB12Packed", "BayerBG16", "RGB10", "BGRa12",
                     "YCbCr422_8", "YCbCr422_10p", "YCbCr411_8"):
            path = self.directory / f"{word}.raw"
            self.tool("chart", path, "-f", word, "-s", f"{WIDTH}x{HEIGHT}")
            for destination, caps in (("RGB8", "RGB"), ("BGRa8", "BGRx"), ("Mono16", "GRAY16_LE"), ("RGB565p", "RGB16")):
                with self.subTest(word=word, caps=caps):
                    self.check(path, word, WIDTH, HEIGHT, destination, caps)

    def test_a_png_file(self):
        path, picture, expected = (self.directory / name for name in ("f.raw", "picture.png", "expected.png"))
        self.tool("chart", path, "-f", "BayerRG12p", "-s", f"{WIDTH}x{HEIGHT}")
        self.tool("convert", path, expected, "-f", "BayerRG12p", "-s", f"{WIDTH}x{HEIGHT}", "-t", "RGB8",
                  "-d", "interpolate", "-q")
        launch(*source(path, "BayerRG12p", WIDTH, HEIGHT, "demosaic=interpolate"), "pngenc", "!", "filesink",
               f"location={picture}")
        self.assertTrue((cv2.imread(str(picture)) == cv2.imread(str(expected))).all())

    def test_demosaic_and_tone(self):
        path = self.directory / "f.raw"
        self.tool("chart", path, "-f", "BayerRG12p", "-s", f"{WIDTH}x{HEIGHT}")
        self.check(path, "BayerRG12p", WIDTH, HEIGHT,
                   options=["demosaic=directional", "black=20", "red-gain=1.5", "blue-gain=2", "curve=gamma"],
                   arguments=["-d", "directional", "--black", "20", "--gain", "1.5,1,2", "--gamma", "2.2"])
        self.check(path, "BayerRG12p", WIDTH, HEIGHT,
                   options=["color-matrix=<0,1,0,1,0,0,0.5,0,0.5>", "curve-points=<0,0,1,1>", "flip-vertical=true",
                            "flip-horizontal=true"],
                   arguments=["--color-matrix", "0,1,0,1,0,0,0.5,0,0.5", "--flip", "--flip-horizontal"])
        self.check(path, "BayerRG12p", WIDTH, HEIGHT, options=["demosaic=directional", "auto=true", "curve=srgb"],
                   arguments=["-d", "directional", "--auto", "--curve", "srgb"])

    def test_recorded_frames(self):
        for path in sorted(pathlib.Path(os.environ.get("ZR_FRAMES", "/nonexistent")).glob("*.raw")):
            _, size, word, *rest = path.stem.split("_", 3)
            width, height = map(int, size.split("x"))
            pattern = rest[0] if rest and rest[0] in ("RGGB", "BGGR", "GRBG", "GBRG") else None
            if word == "YCbCr422":
                word = "YCbCr422_8"
            with self.subTest(path=path.name):
                self.check(path, word, width, height, options=[f"pattern={pattern}"] if pattern else [],
                           arguments=["-p", pattern] if pattern else [])

    def test_a_simulated_camera(self):
        # Only the process that enables Aravis's simulated camera sees it, so this pipeline runs here.
        gi.require_version("Aravis", "0.8")
        gi.require_version("Gst", "1.0")
        from gi.repository import Aravis, Gst
        Aravis.enable_interface("Fake")
        Gst.init(None)
        for caps in ("video/x-raw,format=GRAY8", "video/x-bayer,format=rggb"):
            picture = self.directory / "picture.png"
            pipeline = Gst.parse_launch(f"aravissrc camera-name=Fake_1 num-buffers=2 ! {caps} ! zrconvert ! "
                                        f"pngenc snapshot=true ! filesink location={picture}")
            pipeline.set_state(Gst.State.PLAYING)
            message = pipeline.get_bus().timed_pop_filtered(30 * Gst.SECOND,
                                                            Gst.MessageType.EOS | Gst.MessageType.ERROR)
            pipeline.set_state(Gst.State.NULL)
            self.assertTrue(message and message.type == Gst.MessageType.EOS, caps)
            self.assertGreater(cv2.imread(str(picture)).std(), 5)


if __name__ == "__main__":
    unittest.main()
