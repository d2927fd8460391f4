"""The examples run: cameras, displays and archives."""
import os
import pathlib
import signal
import subprocess
import sys
import types

import numpy
import pytest

import zrconverters as zr
from conftest import HEIGHT, WIDTH, noise

EXAMPLES = pathlib.Path(__file__).parents[3] / "examples" / "python"
sys.path.append(str(EXAMPLES))




def test_every_format_of_a_simulated_camera():
    pytest.importorskip("gi")
    import aravis_camera
    camera = aravis_camera.open_camera()
    names = camera.dup_available_pixel_formats_as_strings()
    assert len(names) == 7
    for name in names:
        camera.set_pixel_format_from_string(name)
        picture, = aravis_camera.pictures(camera, 1)
        assert picture.shape[2] == 3 and picture.std() > 10, name


@pytest.mark.parametrize("padding", [0, 6])
def test_buffers_of_harvesters(padding):
    from harvesters_buffers import Converters
    lines = noise("BayerRG12p").reshape(HEIGHT, -1)
    data = numpy.pad(lines, ((0, 0), (0, padding))).ravel()
    component = types.SimpleNamespace(width=WIDTH, height=HEIGHT, data_format="BayerRG12p", data=data,
                                      x_padding=padding)
    expected = zr.convert(lines, "BayerRG12p", "BGR8", WIDTH, HEIGHT)
    assert (Converters("BGR8").picture_of(component) == expected).all()


def make_archive(directory, count, width, height):
    cv2 = pytest.importorskip("cv2")
    directory.mkdir()
    frame = noise("Bayer12p", width, height)
    expected = {}
    for i in range(count):
        numpy.roll(frame, 3 * i).tofile(directory / f"frame_{i:03}.raw")
        picture = zr.convert(numpy.roll(frame, 3 * i), "BayerRG12p", "BGR8", width, height)
        expected[f"frame_{i:03}.png"] = cv2.imencode(".png", picture)[1].tobytes()
    return expected


def contents(directory):
    return {path.name: path.read_bytes() for path in directory.iterdir()}


def test_opencv_writes_a_picture(tmp_path):
    expected = make_archive(tmp_path / "raw", 1, WIDTH, HEIGHT)
    output = tmp_path / "frame_000.png"
    subprocess.run([sys.executable, EXAMPLES / "opencv_display.py", tmp_path / "raw/frame_000.raw", "BayerRG12p",
                    str(WIDTH), str(HEIGHT), output], check=True)
    assert output.read_bytes() == expected[output.name]


def test_an_archive_is_taken_up_again(tmp_path):
    expected = make_archive(tmp_path / "raw", 4, WIDTH, HEIGHT)
    png = tmp_path / "png"
    png.mkdir()
    (png / "frame_000.png").write_bytes(b"made before")
    (png / ".frame_001.png12345.part").write_bytes(b"half")
    subprocess.run([sys.executable, EXAMPLES / "archive_to_png.py", tmp_path / "raw", png, "BayerRG12p", str(WIDTH),
                    str(HEIGHT)], check=True)
    assert contents(png) == expected | {"frame_000.png": b"made before"}


def test_an_archive_survives_a_killed_worker(tmp_path):
    distributed = pytest.importorskip("dask.distributed")
    from archive_with_dask import convert_archive
    expected = make_archive(tmp_path / "raw", 24, 640, 480)
    killed, left = [], []

    def kill_one(_):
        if not killed:
            killed.append(next(iter(client.run(os.getpid).values())))
            os.kill(killed[0], signal.SIGKILL)
            left.append(len(expected) - len(list((tmp_path / "png").glob("frame_*.png"))))

    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as cluster, \
            distributed.Client(cluster) as client:
        made = convert_archive(client, str(tmp_path / "raw"), str(tmp_path / "png"), "BayerRG12p", 640, 480, {}, kill_one)
        assert made == 24 and left[0] > 0
    assert contents(tmp_path / "png") == expected
