#!/usr/bin/python3
"""Pictures of the image components that harvesters, a GenTL consumer in Python, hands out.

A component has width and height in pixels, the camera's name of its format in data_format, its bytes or words in the
one-dimensional numpy array data, and the bytes after each line in x_padding:

    with image_acquirer.fetch() as buffer:
        picture = converters.picture_of(buffer.payload.components[0])
"""
import types

import numpy

import zrconverters as zr


class Converters:
    """Keeps a converter for every kind of frame that has come in."""

    def __init__(self, destination, **options):
        self.destination = destination
        self.options = options
        self.known = {}

    def picture_of(self, component, out=None):
        """The component's picture; the component's buffer may be queued again afterwards."""
        key = component.data_format, component.width, component.height
        if key not in self.known:
            self.known[key] = zr.Converter(key[0], self.destination, *key[1:], **self.options)
        converter = self.known[key]
        stride = converter.source_layout.bytes_per_line + component.x_padding if component.x_padding else 0
        return converter.convert(component.data, out, stride)


def main():
    frame = numpy.random.default_rng().integers(0, 256, 1080 * 1920 * 3 // 2, numpy.uint8)
    component = types.SimpleNamespace(width=1920, height=1080, data_format="BayerRG12p", data=frame, x_padding=0)
    print(Converters("BGR8", demosaic="interpolate").picture_of(component).shape)


if __name__ == "__main__":
    main()
