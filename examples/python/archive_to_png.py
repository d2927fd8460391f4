#!/usr/bin/python3
"""Converts a directory of raw frames to PNG: archive_to_png.py RAW_DIRECTORY PNG_DIRECTORY FORMAT WIDTH HEIGHT

Pictures that exist are left alone, so that a run that was interrupted goes on where it stopped. A picture gets its name
when it is complete: whatever happens, no half-written file has it.
"""
import argparse
import os
import pathlib
import tempfile

import cv2
import numpy

import zrconverters as zr

PART = ".part"  # ends the names of pictures that are being written


def picture_path(raw, png_directory):
    return pathlib.Path(png_directory) / (pathlib.Path(raw).stem + ".png")


def convert_file(raw, png_directory, source, width, height, options):
    """Converts one file and returns the picture's path."""
    frame = numpy.memmap(raw, numpy.uint8, "r")
    grey = zr.find_format(source).family == "Mono"
    picture = zr.convert(frame, source, "Mono16" if grey else "BGR8", width, height, **options)
    path = picture_path(raw, png_directory)
    write_whole(path, cv2.imencode(".png", picture)[1])
    return str(path)


def write_whole(path, content):
    """Writes a file under another name and renames it when all of it is on the disk."""
    with tempfile.NamedTemporaryFile(dir=path.parent, prefix="." + path.name, suffix=PART, delete=False) as file:
        try:
            file.write(content)
            file.flush()
            os.fsync(file.fileno())
            os.replace(file.name, path)
        except BaseException:
            os.unlink(file.name)
            raise


def missing(raw_directory, png_directory):
    """The raw files whose picture does not exist yet."""
    files = sorted(pathlib.Path(raw_directory).glob("*.raw"))
    return [str(raw) for raw in files if not picture_path(raw, png_directory).exists()]


def remove_parts(png_directory):
    """What processes that were killed have left. Call it when none is writing."""
    for part in pathlib.Path(png_directory).glob(".*" + PART):
        part.unlink()


def parser(description):
    arguments = argparse.ArgumentParser(description=description)
    arguments.add_argument("raw_directory")
    arguments.add_argument("png_directory")
    arguments.add_argument("format")
    arguments.add_argument("width", type=int)
    arguments.add_argument("height", type=int)
    arguments.add_argument("--demosaic")
    arguments.add_argument("--pattern")
    return arguments


def main():
    arguments = parser("Converts a directory of raw frames to PNG.").parse_args()
    options = {"demosaic": arguments.demosaic, "pattern": arguments.pattern, "threads": 0}
    os.makedirs(arguments.png_directory, exist_ok=True)
    remove_parts(arguments.png_directory)
    for raw in missing(arguments.raw_directory, arguments.png_directory):
        print(convert_file(raw, arguments.png_directory, arguments.format, arguments.width, arguments.height, options))


if __name__ == "__main__":
    main()
