"""Builds a wheel of zrconverters with CMake; pip calls it as pyproject.toml says. CMAKE_ARGS in the environment may hold
further definitions for CMake.

The library lies beside the module in the wheel, which therefore depends on nothing but numpy.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile

from wheel.bdist_wheel import get_platform
from wheel.wheelfile import WheelFile

ROOT = pathlib.Path(__file__).resolve().parents[2]
VERSION = re.search(r"project\(ZrConvertersLib VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text())[1]
NAME = f"zrconverters-{VERSION}"
TAG = "cp{0}{1}-cp{0}{1}-".format(*sys.version_info) + get_platform(None).replace("-", "_").replace(".", "_")

METADATA = f"""Metadata-Version: 2.1
Name: zrconverters
Version: {VERSION}
Summary: Converts the pixel formats of industrial cameras
Requires-Python: ==3.{sys.version_info.minor}.*
Requires-Dist: numpy
"""
WHEEL = f"Wheel-Version: 1.0\nGenerator: wheel_builder\nRoot-Is-Purelib: false\nTag: {TAG}\n"


def install_package(build, prefix):
    definitions = {
        "CMAKE_BUILD_TYPE": "Release", "ZR_BUILD_PYTHON": "ON", "ZR_BUILD_TOOLS": "OFF",
        "Python_EXECUTABLE": sys.executable, "CMAKE_INSTALL_RPATH": "$ORIGIN",
        "ZR_PYTHON_INSTALL_DIR": ".", "CMAKE_INSTALL_LIBDIR": "zrconverters",
    }
    options = [f"-D{name}={value}" for name, value in definitions.items()] + os.environ.get("CMAKE_ARGS", "").split()
    subprocess.run(["cmake", "-G", "Ninja", "-S", ROOT, "-B", build, *options], check=True)
    subprocess.run(["cmake", "--build", build, "--target", "zrpython"], check=True)
    for component in ("python", "library"):
        subprocess.run(["cmake", "--install", build, "--prefix", prefix, "--component", component, "--strip"], check=True)
    # A wheel cannot hold links; programs look for the name with the version.
    for path in (prefix / "zrconverters").iterdir():
        if path.is_symlink():
            path.unlink()


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    file_name = f"{NAME}-{TAG}.whl"
    build = os.environ.get("ZR_WHEEL_BUILD_DIRECTORY", str(ROOT / "build" / f"wheel-{sys.version_info.minor}"))
    with tempfile.TemporaryDirectory() as directory:
        install_package(build, pathlib.Path(directory))
        with WheelFile(pathlib.Path(wheel_directory) / file_name, "w") as wheel:
            wheel.write_files(directory)
            wheel.writestr(f"{NAME}.dist-info/METADATA", METADATA)
            wheel.writestr(f"{NAME}.dist-info/WHEEL", WHEEL)
    return file_name


def build_sdist(sdist_directory, config_settings=None):
    file_name = f"{NAME}.tar.gz"
    subprocess.run(["git", "-C", ROOT, "archive", f"--prefix={NAME}/", "-o",
                    pathlib.Path(sdist_directory).resolve() / file_name, "HEAD"], check=True)
    return file_name
