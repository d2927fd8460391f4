"""Frames and pictures lie where the caller has them: strides, refusals, and no copies."""
import mmap
import tracemalloc

import numpy
import pytest

import zrconverters as zr
from conftest import HEIGHT, WIDTH, noise


def padded(shape, dtype, fill=0xAB):
    """An array whose lines are followed by guard items; returns it and the whole memory."""
    *planes, height, width = shape if len(shape) < 3 or shape[0] == 3 else (shape[0], shape[1] * shape[2])
    memory = numpy.full((*planes, height, width + 5), fill, dtype)
    view = memory[..., :width]
    return (view if view.shape == shape else numpy.lib.stride_tricks.as_strided(
        view, shape, (view.strides[0], shape[2] * view.itemsize, view.itemsize))), memory


@pytest.mark.parametrize("destination", ["Mono8", "Mono12", "RGB565p", "RGB8", "RGB16", "RGB8_Planar", "RGB16_Planar"])
def test_lines_of_the_output_may_be_padded(destination):
    converter = zr.Converter("Mono12", destination, WIDTH, HEIGHT)
    frame = noise("Mono12")
    out, memory = padded(converter.shape, converter.dtype)
    guards = memory[..., -5:].copy()
    assert converter.convert(frame, out) is out
    assert (out == converter.convert(frame)).all()
    assert (memory[..., -5:] == guards).all()


@pytest.mark.parametrize("source", ["Mono12", "Bayer12p", "RGB8"])
def test_lines_of_the_frame_may_be_padded(source):
    converter = zr.Converter(source, "RGB8", WIDTH, HEIGHT)
    lines = noise(source).reshape(HEIGHT, -1)
    wide = numpy.pad(lines, ((0, 0), (0, 7)), constant_values=255)
    expected = converter.convert(lines)
    assert (converter.convert(wide) == expected).all()
    assert (converter.convert(wide[:, :lines.shape[1]]) == expected).all()
    assert (converter.convert(wide.tobytes(), stride=wide.shape[1]) == expected).all()


def test_outputs_without_a_shape():
    converter = zr.Converter("Mono8", "RGB8", WIDTH, HEIGHT)
    out = bytearray(converter.destination_layout.frame_bytes)
    assert converter(noise("Mono8"), out) is out
    assert out == converter(noise("Mono8")).tobytes()


GREY = numpy.zeros((HEIGHT, WIDTH), numpy.uint8)
COLOUR = numpy.zeros((HEIGHT, WIDTH, 3), numpy.uint8)


@pytest.mark.parametrize("frame, out, error, words", [
    (GREY[:-1], None, ValueError, "shape"),
    (GREY.ravel()[1:], None, ValueError, "smaller than the frame"),
    (GREY[::-1], None, ValueError, "follow one another"),
    (numpy.broadcast_to(GREY[:1], GREY.shape), None, ValueError, "follow one another"),
    (numpy.zeros((HEIGHT, 2 * WIDTH), numpy.uint8)[:, ::2], None, ValueError, "without gaps"),
    (GREY.ravel()[::2], None, ValueError, "not contiguous"),
    (COLOUR, None, ValueError, "shape"),
    (GREY.astype(float), None, TypeError, "integers"),
    (GREY.astype(">u2"), None, TypeError, "integers"),
    (GREY.astype(numpy.int64), None, TypeError, "items of 8 bytes"),
    ([1, 2, 3], None, TypeError, "buffer protocol"),
    (GREY, bytes(COLOUR.nbytes), ValueError, "read-only"),
    (GREY, bytearray(COLOUR.nbytes - 1), ValueError, "smaller than the picture"),
    (GREY, COLOUR.astype(numpy.uint16), TypeError, "items of 1 byte"),
    (GREY, COLOUR.astype(numpy.int8), TypeError, "unsigned"),
    (GREY, numpy.zeros((HEIGHT, WIDTH, 4), numpy.uint8), ValueError, "shape"),
    (GREY, COLOUR.transpose(1, 0, 2), ValueError, "shape"),
])
def test_refused_buffers(frame, out, error, words):
    converter = zr.Converter("Mono8", "RGB8", WIDTH, HEIGHT)
    with pytest.raises(error, match=words):
        converter.convert(frame, out)


def test_overlap_is_refused_and_nothing_is_written():
    memory = numpy.arange(WIDTH * HEIGHT * 2, dtype=numpy.uint8)
    before = memory.copy()
    frame, out = memory[:WIDTH * HEIGHT], memory[WIDTH * HEIGHT - 1:-1]
    with pytest.raises(ValueError, match="share memory"):
        zr.convert(frame, "Mono8", "Mono8", WIDTH, HEIGHT, out=out)
    assert (memory == before).all()


@pytest.mark.parametrize("arguments, options, error, words", [
    (("Mono9", "RGB8", 8, 8), {}, ValueError, "no pixel format"),
    (("RGB8", "Bayer8", 8, 8), {}, ValueError, "no conversion"),
    (("YCbCr422_8", "RGB8", 7, 8), {}, ValueError, "groups"),
    (("Mono8", "RGB8", 0, 8), {}, ValueError, "at least 1"),
    (("Mono8", "RGB8", 8, 8), {"region": (4, 4, 8, 8)}, ValueError, "region"),
    (("Bayer8", "RGB8", 8, 8), {"pattern": "RGBG2"}, ValueError, "RGBG2"),
    (("Bayer8", "RGB8", 8, 8), {"demosaick": "fast"}, TypeError, "demosaick"),
    (("Bayer8", "RGB8", 8, 8), {"threads": "two"}, TypeError, "threads"),
    (("Bayer8", 1.5, 8, 8), {}, TypeError, "format"),
    (("Mono8", "RGB8", 8.5, 8), {}, TypeError, ""),
])
def test_refused_conversions(arguments, options, error, words):
    with pytest.raises(error, match=words):
        zr.Converter(*arguments, **options)


def test_no_memory_is_a_memory_error():
    converter = zr.Converter("Mono8", "RGB8", 1 << 24, 1 << 24)
    with pytest.raises(MemoryError):
        converter.convert(b"")


def test_neither_frame_nor_picture_is_copied(tmp_path):
    # 16 GiB of holes in a file, mapped read-only: a copy would need more memory than there is.
    side = 1 << 17
    with open(tmp_path / "huge", "w+b") as file:
        file.truncate(side * side)
        file.seek(100 * side + 100)
        file.write(b"\x7f")
        file.flush()
        with mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as memory:
            converter = zr.Converter("Mono8", "RGB8", side, side, region=(96, 96, 2048, 2048))
            out = numpy.zeros(converter.shape, converter.dtype)
            address = out.ctypes.data
            tracemalloc.start()
            converter.convert(memory, out)
            peak = tracemalloc.get_traced_memory()[1]
            tracemalloc.stop()
    assert peak < 4096
    assert out.ctypes.data == address and out[4, 4].tolist() == [0x7F] * 3


def test_a_frame_is_held_while_it_is_converted_and_no_longer():
    frame, out = bytearray(noise("Mono8")), bytearray(WIDTH * HEIGHT)
    zr.convert(frame, "Mono8", "Mono8", WIDTH, HEIGHT, out=out)
    frame.clear(), out.clear()  # a buffer that is still exported cannot be resized
    with pytest.raises(ValueError):
        zr.convert(noise("Mono8"), "Mono8", "Mono8", WIDTH, HEIGHT, out=out)
