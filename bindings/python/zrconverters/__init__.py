"""Converts the pixel formats of industrial cameras.

    import zrconverters as zr

    picture = zr.convert(frame, "BayerRG12p", "RGB8", width=1920, height=1080, demosaic="interpolate")

    converter = zr.Converter("BayerRG12p", "BGR8", 1920, 1080)     # made once, called at frame rate
    picture = numpy.empty(converter.shape, converter.dtype)
    converter.convert(frame, out=picture)

Frames
    A frame is any object with the buffer protocol whose items are integers: bytes, bytearray, memoryview, mmap, a
    camera's buffer, a numpy array. It is read where it lies and never copied.

    - Without a shape (one dimension) it is the frame's bytes from the first line on; `stride` says how many bytes
      lie from one line to the next if lines are padded. Bytes after the last line are not looked at.
    - With a shape the lines count first, (h, ...), after the planes if the format has planes, (planes, h, ...).
      The step from line to line is the array's own, so that padded lines and views such as `frame[:, :1920]`
      need no copy. Pixels within a line must lie without gaps.

Pictures
    Results have the destination's natural shape and type: (h, w) for grey, for an unpacked mosaic and for RGB565p,
    (h, w, 3) and (h, w, 4) for interleaved colour, (3, h, w) for planes; uint8 for samples of 8 bits and uint16 for
    deeper ones and for RGB565p. Samples keep their depth: 0 to 4095 for Mono12.

    `out` takes a writable array of that shape, whose lines may be padded, or a writable buffer without a shape,
    such as a bytearray. Its memory must not be the frame's.

Formats
    A format is a Format, a name or a code as text ("Bayer12p", "BayerRG12p", "0x010C0059") or the 32-bit code that a
    camera or V4L2 reports, as a number. A name or code that says a mosaic's pattern or a YCbCr matrix sets that option.

Development
    Levels, gains, a colour matrix and a tone curve act at the full depth of the source: see Converter. measure() counts
    a frame's samples, and automatic() makes options of them.

Errors
    ValueError, in the library's words, where the library refuses a format, a size or an option, and for shapes,
    read-only outputs and buffers that overlap; TypeError for objects without a buffer, items that are no integers
    and options that do not exist; MemoryError. A refused call writes nothing.

Threads
    The interpreter lock is released while a frame is converted. Threads that share one Converter take turns; give
    each a Converter of its own, or let `threads` spread every frame over several.
"""

from ._zrconverters import (
    ChannelStatistics,
    Converter,
    Format,
    FrameLayout,
    FrameStatistics,
    RGBFilter,
    convert,
    describe_frame,
    find_format,
    formats,
    measure,
)

__all__ = [
    "ChannelStatistics", "Converter", "Format", "FrameLayout", "FrameStatistics", "RGBFilter", "automatic",
    "convert", "describe_frame", "find_format", "formats", "measure",
]


def automatic(statistics):
    """Options that stretch a frame's levels and, of colour, balance its white: convert(..., **automatic(measure(...)))."""
    black, white = statistics.levels()
    return {"black": black, "white": white, "gain": statistics.grey_world_gains(black)}
