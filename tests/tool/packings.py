#!/usr/bin/python3
"""Packs the chart's samples with numpy as cameras do: packings.py ZRCONVERT

The chart in the plain 16-bit format gives the samples. Packed here and packed by the tool they must be the same bytes,
and both must convert to the picture of the plain frame, byte for byte.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

try:
    import numpy as np
except ImportError:
    print("python3-numpy is not installed")
    sys.exit(77)

SIZE = (96, 50)


def gige_vision(samples, low):
    """Two samples in three bytes; the first one's low bits are the lower ones of the middle byte."""
    first, second = samples[..., 0::2], samples[..., 1::2]
    mask = (1 << low) - 1
    return np.stack([first >> low, (first & mask) | (second & mask) << 4, second >> low], axis=-1)


def csi2_10(samples):
    p = samples.reshape(samples.shape[0], -1, 4)
    return np.concatenate([p >> 2, ((p & 3) << [0, 2, 4, 6]).sum(axis=-1, keepdims=True)], axis=-1)


def csi2_12(samples):
    p = samples.reshape(samples.shape[0], -1, 2)
    return np.concatenate([p >> 4, ((p & 15) << [0, 4]).sum(axis=-1, keepdims=True)], axis=-1)


def csi2_14(samples):
    p = samples.reshape(samples.shape[0], -1, 4)
    word = ((p & 63) << [0, 6, 12, 18]).sum(axis=-1, keepdims=True)
    return np.concatenate([p >> 6, word >> [0, 8, 16]], axis=-1)


# Plain format, packed format with its words, packer. Names of cameras stand beside the option.
CASES = [
    ("Mono10", "Mono10Packed --packing gige-vision", lambda s: gige_vision(s, 2)),
    ("Mono12", "0x010C0006", lambda s: gige_vision(s, 4)),
    ("BayerGB10", "BayerGB10Packed", lambda s: gige_vision(s, 2)),
    ("BayerRG12", "0x010C002B", lambda s: gige_vision(s, 4)),
    ("Mono10", "Y10P", csi2_10),
    ("Mono12", "Mono12p --packing csi2", csi2_12),
    ("Mono14", "Y14P", csi2_14),
    ("SRGGB10", "pRAA", csi2_10),
    ("SGRBG12", "pgCC", csi2_12),
    ("SBGGR14", "SBGGR14P", csi2_14),
    ("YCbCr601_422_10", "YCbCr601_422_10p --packing csi2", csi2_10),
    ("YCbCr709_422_10_CbYCrY", "YCbCr709_422_10p_CbYCrY --packing csi2", csi2_10),
]


def main(tool):
    size = f"{SIZE[0]}x{SIZE[1]}"

    def run(*words):
        subprocess.run([tool, *words, "-s", size], check=True, capture_output=True)

    def convert(frame, words, target):
        run("convert", frame, "out.raw", "-t", target, "-f", *words.split())
        return pathlib.Path("out.raw").read_bytes()

    for plain, packed, pack in CASES:
        run("chart", "plain.raw", "-f", plain)
        run("chart", "chart.raw", "-f", *packed.split())
        samples = np.fromfile("plain.raw", "<u2").astype(np.int64).reshape(SIZE[1], -1)
        (pack(samples) & 255).astype(np.uint8).tofile("numpy.raw")
        assert pathlib.Path("chart.raw").read_bytes() == pathlib.Path("numpy.raw").read_bytes(), packed
        for target in ("RGB8", "RGB16"):
            picture = convert("numpy.raw", packed, target)
            assert picture == convert("chart.raw", packed, target), (packed, target)
            assert picture == convert("plain.raw", plain, target), (packed, target)
        print(f"{packed}: the same bytes as {plain} packed by numpy, and the same pictures")


with tempfile.TemporaryDirectory() as directory:
    program = str(pathlib.Path(sys.argv[1]).resolve())
    os.chdir(directory)
    main(program)
