#!/usr/bin/python3
"""Shows a raw frame with OpenCV, or writes it: opencv_display.py FILE FORMAT WIDTH HEIGHT [PICTURE]

OpenCV takes colour as BGR8, (h, w, 3), and grey as Mono8 or Mono16, (h, w).
"""
import sys

import cv2
import numpy

import zrconverters as zr


def main():
    file, source, width, height, *output = sys.argv[1:]
    frame = numpy.memmap(file, numpy.uint8, "r")
    grey = zr.find_format(source).family == "Mono"
    picture = zr.convert(frame, source, "Mono8" if grey else "BGR8", int(width), int(height))
    if output:
        cv2.imwrite(output[0], picture)
    else:
        cv2.imshow(file, picture)
        cv2.waitKey()


if __name__ == "__main__":
    main()
