#!/usr/bin/python3
"""Frames of a GenICam camera through Aravis: aravis_camera.py [FORMAT]

Without a camera at hand this takes Aravis's simulated one. Debian: gir1.2-aravis-0.8, python3-gi, python3-numpy.
"""
import sys

import gi

gi.require_version("Aravis", "0.8")
from gi.repository import Aravis  # noqa: E402

import zrconverters as zr  # noqa: E402


def pictures(camera, count, **options):
    """The next `count` frames of the camera as RGB arrays, converted straight from Aravis's buffers."""
    stream = camera.create_stream(None, None)
    for _ in range(4):
        stream.push_buffer(Aravis.Buffer.new_allocate(camera.get_payload()))
    camera.start_acquisition()
    converter = None
    try:
        for _ in range(count):
            buffer = stream.pop_buffer()
            if converter is None:
                _, _, width, height = buffer.get_image_region()
                converter = zr.Converter(buffer.get_image_pixel_format(), "RGB8", width, height, **options)
            yield converter.convert(buffer.get_data())
            stream.push_buffer(buffer)
    finally:
        camera.stop_acquisition()


def open_camera(pixel_format=None):
    Aravis.enable_interface("Fake")
    camera = Aravis.Camera.new("Fake_1")
    if pixel_format:
        camera.set_pixel_format_from_string(pixel_format)
    return camera


def main():
    camera = open_camera(*sys.argv[1:2])
    for number, picture in enumerate(pictures(camera, 3, demosaic="interpolate")):
        print(f"frame {number}: {camera.get_pixel_format_as_string()} to", picture.shape, "mean", picture.mean().round(1))


if __name__ == "__main__":
    main()
