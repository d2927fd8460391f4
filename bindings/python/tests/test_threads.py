"""The interpreter runs on while a frame is converted; threads and processes may share converters."""
import multiprocessing
import threading

import numpy
import pytest

import zrconverters as zr
from conftest import noise

BIG = (4096, 3000)


@pytest.fixture(scope="module")
def frame():
    return noise("Bayer12p", *BIG)


def seen_half_done(converter, frame):
    """Whether this thread looked at the picture while another thread was converting it."""
    out = numpy.zeros(converter.shape, converter.dtype)
    first, last = out[0, :64], out[-1, -64:]
    thread = threading.Thread(target=converter.convert, args=(frame, out))
    thread.start()
    half = False
    while thread.is_alive() and not half:
        half = bool(first.any()) and not last.any()
    thread.join()
    return half


def test_other_threads_run_while_a_frame_is_converted(frame):
    converter = zr.Converter("Bayer12p", "RGB16", *BIG, demosaic="interpolate")
    assert any(seen_half_done(converter, frame) for _ in range(50))


@pytest.mark.parametrize("source, options", [("Bayer12p", {"demosaic": "interpolate"}), ("Mono10p", {}),
                                             ("YCbCr422_8", {"flip_vertical": True})])
def test_threads_give_the_same_picture(source, options):
    frame = noise(source, 320, 243)
    expected = zr.convert(frame, source, "RGB8", 320, 243, **options)
    for threads in (0, 2, 3, 400):
        converter = zr.Converter(source, "RGB8", 320, 243, threads=threads, **options)
        assert all((converter.convert(frame) == expected).all() for _ in range(3)), threads


def test_threads_may_share_a_converter():
    frames = [numpy.roll(noise("Bayer12p", 640, 480), i) for i in range(4)]
    converter = zr.Converter("Bayer12p", "RGB8", 640, 480, threads=2)
    expected = [converter.convert(frame) for frame in frames]
    wrong = []

    def work(index):
        for _ in range(20):
            if (converter.convert(frames[index]) != expected[index]).any():
                wrong.append(index)

    threads = [threading.Thread(target=work, args=(i,)) for i in range(len(frames))]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not wrong


def _convert(connection, converter, frame):
    connection.send_bytes(converter.convert(frame).tobytes())


def test_a_forked_process_has_threads_of_its_own():
    frame = noise("Mono8", 64, 64)
    converter = zr.Converter("Mono8", "RGB8", 64, 64, threads=2)
    expected = converter.convert(frame).tobytes()
    context = multiprocessing.get_context("fork")
    ours, theirs = context.Pipe()
    child = context.Process(target=_convert, args=(theirs, converter, frame))
    child.start()
    assert ours.poll(60) and ours.recv_bytes() == expected
    child.join(60)
    assert child.exitcode == 0
