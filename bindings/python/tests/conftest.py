"""Frames for the tests: charts as cameras send them, and recorded frames where ZR_FRAMES names their directory."""
import os
import pathlib
import re
import subprocess

import numpy
import pytest

import zrconverters as zr

TOOL = os.environ.get("ZRCONVERT")
WIDTH, HEIGHT = 48, 34


def is_demosaiced(source, destination):
    mosaics = ("Bayer", "BiColor", "SCF1")
    return source.startswith(mosaics) and not destination.startswith(mosaics)


class Tool:
    """The command-line tool, whose output the module's must equal byte for byte."""

    def __init__(self, directory):
        self.directory = directory

    def run(self, *arguments):
        subprocess.run([TOOL, *map(str, arguments)], check=True, capture_output=True)

    def chart(self, word, width=WIDTH, height=HEIGHT):
        path = self.directory / f"{word}.raw"
        self.run("chart", path, "-f", word, "-s", f"{width}x{height}")
        return path

    def convert(self, path, word, destination, width=WIDTH, height=HEIGHT, *options):
        """With the library's default for mosaics, which is not the tool's."""
        if is_demosaiced(word, destination) and "-d" not in options:
            options = (*options, "-d", "fast")
        picture = self.directory / "picture.raw"
        size = f"{width}x{height}"
        self.run("convert", path, picture, "-c", "raw", "-f", word, "-s", size, "-t", destination, "-q", *options)
        return picture.read_bytes()


@pytest.fixture
def tool(tmp_path):
    if not TOOL:
        pytest.skip("ZRCONVERT names no tool")
    return Tool(tmp_path)


def recorded_frames():
    """(path, width, height, format, pattern, matrix) of files such as rose_768x512_Bayer12p_RGGB.raw."""
    for path in sorted(pathlib.Path(os.environ.get("ZR_FRAMES", "/nonexistent")).glob("*.raw")):
        match = re.match(r".*_(\d+)x(\d+)_(.+?)(?:_(RGGB|BGGR|GRBG|GBRG))?(_fullrange)?\.raw", path.name)
        if match:
            yield (path, int(match[1]), int(match[2]), match[3], match[4], "jpeg" if match[5] else None)


def noise(source, width=WIDTH, height=HEIGHT):
    size = zr.describe_frame(source, width, height).frame_bytes
    return numpy.random.default_rng(7).integers(0, 256, size, numpy.uint8)
