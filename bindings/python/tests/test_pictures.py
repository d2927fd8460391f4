"""Pictures are those of the tool, for every source and for recorded frames, whatever holds the frame."""
import array
import ctypes
import mmap
import os

import numpy
import pytest

import zrconverters as zr
from conftest import HEIGHT, WIDTH, noise, recorded_frames

# Under a sanitizer the tool takes much longer to start.
SOURCES = [format.name for format in zr.formats() if format.is_source][::int(os.environ.get("ZR_THINNING", 1))]


@pytest.mark.parametrize("source", SOURCES)
def test_every_source_to_every_destination(tool, source):
    path = tool.chart(source)
    frame = numpy.fromfile(path, numpy.uint8)
    for destination in zr.find_format(source).destinations:
        # The tool keeps the depth of YCbCr by itself where the destination can hold it.
        picture = zr.convert(frame, source, destination, WIDTH, HEIGHT, full_depth=destination.depth > 8)
        assert picture.tobytes() == tool.convert(path, source, destination.name), destination


@pytest.mark.parametrize("options, arguments", [
    ({"pattern": "BGGR", "demosaic": "interpolate"}, ["-p", "BGGR", "-d", "interpolate"]),
    ({"flip_vertical": True, "flip_horizontal": True}, ["--flip", "--flip-horizontal"]),
    ({"region": (5, 3, 21, 17)}, ["-r", "5,3,21,17"]),
    ({"threads": 3}, []),
    ({"demosaic": "directional"}, ["-d", "directional"]),
    ({"demosaic": "directional", "black": 20, "gain": (1.5, 1, 2), "gamma": 2.2},
     ["-d", "directional", "--black", "20", "--gain", "1.5,1,2", "--gamma", "2.2"]),
])
def test_options_are_those_of_the_tool(tool, options, arguments):
    path = tool.chart("Bayer12p")
    picture = zr.convert(path.read_bytes(), "Bayer12p", "RGB8", WIDTH, HEIGHT, **options)
    assert picture.tobytes() == tool.convert(path, "Bayer12p", "RGB8", WIDTH, HEIGHT, *arguments)


@pytest.mark.parametrize("path, width, height, source, pattern, matrix", recorded_frames())
def test_recorded_frames(tool, path, width, height, source, pattern, matrix):
    options = {"pattern": pattern} if pattern else {"matrix": matrix} if matrix else {}
    arguments = ["-p", pattern] if pattern else ["-m", matrix] if matrix else []
    picture = zr.convert(path.read_bytes(), source, "RGB8", width, height, **options)
    assert picture.tobytes() == tool.convert(path, source, "RGB8", width, height, *arguments)


def test_formats_have_names_and_codes():
    frame = noise("Bayer12p")
    expected = zr.convert(frame, "Bayer12p", "RGB8", WIDTH, HEIGHT, pattern="RGGB")
    for word in ("BayerRG12p", 0x010C0059, "0x010C0059"):
        assert (zr.convert(frame, word, "RGB8", WIDTH, HEIGHT) == expected).all()
    fourcc = int.from_bytes(b"YUYV", "little")  # V4L2_PIX_FMT_YUYV
    assert zr.find_format(fourcc) is zr.find_format("YCbCr422_8")
    with pytest.raises(ValueError, match="says another pattern"):
        zr.convert(frame, "BayerRG12p", "RGB8", WIDTH, HEIGHT, pattern="GRBG")


def test_the_order_of_packed_bits():
    frame = noise("Bayer12p", WIDTH, HEIGHT)
    expected = zr.convert(frame, "SRGGB12P", "RGB16", WIDTH, HEIGHT)
    by_option = zr.convert(frame, "Bayer12p", "RGB16", WIDTH, HEIGHT, pattern="RGGB", packing="csi2")
    assert (by_option == expected).all()
    mono = [zr.convert(frame, "Mono12Packed", "Mono12", WIDTH, HEIGHT, packing=order) for order in ("type", "gige-vision")]
    assert (mono[0] != mono[1]).any() and (mono[0] >> 4 == mono[1] >> 4).all()


def test_development_and_measuring():
    frame = numpy.linspace(100, 3000, WIDTH * HEIGHT).astype(numpy.uint16)
    statistics = zr.measure(frame, "Mono12", WIDTH, HEIGHT)
    grey, = statistics.channels
    assert (grey.minimum, grey.maximum, grey.count, statistics.depth) == (100, 3000, frame.size, 12)
    assert (grey.histogram == numpy.bincount(frame, minlength=4096)).all()
    options = zr.automatic(statistics)
    picture = zr.convert(frame, "Mono12", "Mono16", WIDTH, HEIGHT, **options)
    scaled = (frame - options["black"]) / (options["white"] - options["black"])
    assert abs(picture.ravel() - 65535 * scaled.clip(0, 1)).max() <= 16
    with pytest.raises(ValueError, match="tone"):
        zr.convert(frame, "Mono12", "Mono16", WIDTH, HEIGHT, gamma=-1)
    with pytest.raises(TypeError, match="gain"):
        zr.convert(frame, "Mono12", "Mono16", WIDTH, HEIGHT, gain=(1, 2))


def test_colour_is_developed_in_the_documented_order():
    frame = numpy.full((2, 2, 3), (1000, 2000, 3000), numpy.uint16)
    options = {"black": (0, 1000, 1000), "gain": (1, 2, 0.5), "color_matrix": ((0, 1, 0), (1, 0, 0), (0, 0, 1))}
    picture = zr.convert(frame, "RGB12", "RGB16", **options)
    light = numpy.array([1000 / 4095, 1000 / 3095 * 2, 2000 / 3095 * 0.5])
    assert abs(picture[0, 0] - 65535 * light[[1, 0, 2]]).max() <= 16


def test_a_curve_of_points():
    frame = numpy.arange(4096, dtype=numpy.uint16).reshape(64, 64)
    for points in (((0.25, 0.5), (0.5, 0.25)), numpy.array([[0.25, 0.5], [0.5, 0.25]])):
        picture = zr.convert(frame, "Mono12", "Mono16", curve=points)
        expected = numpy.interp(frame / 4095, (0.25, 0.5), (0.5, 0.25)) * 65535
        assert abs(picture - expected).max() <= 17
    with pytest.raises(ValueError, match="tone"):
        zr.convert(frame, "Mono12", "Mono16", curve=[])
    with pytest.raises(TypeError, match="curve"):
        zr.convert(frame, "Mono12", "Mono16", curve=[(0, 0, 0)])


def test_a_filter_of_8_bit_colour():
    frame = numpy.arange(256, dtype=numpy.uint8).repeat(3).reshape(1, 256, 3)
    assert zr.find_format("RGB8").takes_filter and not zr.find_format("RGB16").takes_filter
    for tables in (zr.RGBFilter(gamma=2.2, black=8, balance=(2, 1, 1.5), offset=(0, 3, 0)),
                   zr.RGBFilter.multipliers((2, 1, 0.5), (-10, 0, 10))):
        values = numpy.arange(256)
        assert (tables.tables != values).any()
        converter = zr.Converter("RGB8", "BGR8", 256, 1, filter=tables)
        expected = tables.tables[::-1].T[None]
        del tables  # the converter keeps it
        assert (converter.convert(frame) == expected).all()
    halved = zr.RGBFilter.multipliers((0.5, 1, 1)).tables
    assert (halved[0] == (values + 1) // 2).all() and (halved[1:] == values).all()
    with pytest.raises(ValueError, match="tone"):
        zr.RGBFilter(gamma=0)
    with pytest.raises(TypeError, match="filter"):
        zr.convert(frame, "RGB8", "BGR8", filter="none")


def holders(frame):
    memory = mmap.mmap(-1, len(frame))
    memory[:] = frame
    words = numpy.frombuffer(frame, numpy.uint8)
    return [frame, bytearray(frame), memoryview(frame), memory, array.array("B", frame),
            (ctypes.c_ubyte * len(frame)).from_buffer_copy(frame), words.view(numpy.int16), words.view("u4"),
            words.reshape(HEIGHT, -1)]


def test_whatever_holds_the_frame():
    frame = noise("Mono12p").tobytes()
    pictures = {zr.convert(holder, "Mono12p", "Mono8", WIDTH, HEIGHT).tobytes() for holder in holders(frame)}
    assert len(pictures) == 1


@pytest.mark.parametrize("destination, shape, dtype", [
    ("Mono8", (HEIGHT, WIDTH), "u1"), ("Mono10", (HEIGHT, WIDTH), "u2"), ("Mono16", (HEIGHT, WIDTH), "u2"),
    ("RGB565p", (HEIGHT, WIDTH), "u2"), ("RGB8", (HEIGHT, WIDTH, 3), "u1"), ("BGRa8", (HEIGHT, WIDTH, 4), "u1"),
    ("RGB16", (HEIGHT, WIDTH, 3), "u2"), ("RGB8_Planar", (3, HEIGHT, WIDTH), "u1"),
    ("RGB12_Planar", (3, HEIGHT, WIDTH), "u2"), ("Bayer16", (HEIGHT, WIDTH), "u2"),
])
def test_pictures_have_their_natural_shape(destination, shape, dtype):
    picture = zr.convert(noise("Bayer12p"), "Bayer12p", destination, WIDTH, HEIGHT)
    assert (picture.shape, picture.dtype) == (shape, numpy.dtype(dtype))


def test_every_destination_fills_its_array():
    for destination in zr.find_format("Mono12").destinations:
        converter = zr.Converter("Mono12", destination, WIDTH, HEIGHT)
        picture = numpy.empty(converter.shape, converter.dtype)
        assert picture.nbytes == converter.destination_layout.frame_bytes, destination


def test_an_array_tells_its_size():
    grey = noise("Mono12").view(numpy.uint16).reshape(HEIGHT, WIDTH)
    assert zr.convert(grey, "Mono12", "RGB8").shape == (HEIGHT, WIDTH, 3)
    colour = noise("RGB8").reshape(HEIGHT, WIDTH, 3)
    assert (zr.convert(colour, "RGB8", "BGR8") == colour[..., ::-1]).all()
    with pytest.raises(ValueError, match="width and height"):
        zr.convert(noise("Bayer12p").reshape(HEIGHT, -1), "Bayer12p", "RGB8")


def test_the_pattern_of_a_picture_that_is_a_mosaic():
    flipped = zr.Converter("BayerRG12p", "Bayer16", WIDTH, HEIGHT, flip_horizontal=True)
    assert flipped.pattern == "GRBG"
    assert zr.Converter("BayerRG12p", "RGB8", WIDTH, HEIGHT).pattern is None
