#!/usr/bin/python3
"""Counts the instructions of every registered conversion: count_instructions.py ZRCOUNT [--level LEVEL | --emulator]

Under callgrind (x86-64; it knows no AVX-512, so levels up to x86-64-v3), or with --emulator under qemu-aarch64,
whose log of executed blocks is summed up. Prints a line for each group of pairs: instructions per pixel, everything
that one call of Convert executes divided by the frame's pixels.
"""
import argparse
import collections
import glob
import math
import os
import re
import subprocess
import sys
import tempfile


def callgrind_counts(program, size, level):
    """Yields (name, instructions) from the dumps, one for each mark."""
    with tempfile.TemporaryDirectory() as directory:
        subprocess.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={directory}/out", program, *size, level],
                       check=True, stderr=subprocess.DEVNULL)
        for name in glob.glob(f"{directory}/out.*"):
            with open(name, encoding="utf-8") as file:
                text = file.read()
            mark = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.M)
            total = re.search(r"^(?:summary|totals): (\d+)", text, re.M)
            if mark and total:
                yield mark[1], int(total[1])


def emulator_counts(program, size):
    """The same from the log of an emulator: "IN:" lists the instructions of a block when it is translated, "Trace"
    says that a block is executed."""
    library_path = os.environ.get("QEMU_LD_PREFIX", "/usr/aarch64-linux-gnu")
    command = ["qemu-aarch64-static", "-L", library_path, "-d", "in_asm,exec,nochain", program, *size]
    process = subprocess.Popen(command, stderr=subprocess.PIPE, encoding="utf-8", errors="replace")
    lengths, listing, executed = {}, [], collections.Counter()
    for line in process.stderr:
        if line.startswith("0x"):
            listing.append(line.split(":", 1)[0])
        elif line.startswith("Trace "):
            if listing:
                lengths[int(listing[0], 16)] = len(listing)
                listing = []
            executed[line.split("/", 2)[1]] += 1
        elif line.startswith("IN:"):
            if listing:
                lengths[int(listing[0], 16)] = len(listing)
            listing = []
        elif line.startswith("# begin"):
            executed.clear()
        elif line.startswith("# "):
            yield line[2:].strip("\n"), sum(lengths.get(int(pc, 16), 0) * n for pc, n in executed.items())
    if process.wait() != 0:
        sys.exit(f"{program} failed under the emulator")


def group_of(family, pair):
    if family == "Bayer" and not pair.split(" to ")[1].startswith("Bayer"):
        family += ", interpolating" if "interpolated" in pair else ", fast"
    return family + (", filtered" if "filtered" in pair else "")


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("program")
    arguments.add_argument("--level", default="x86-64")
    arguments.add_argument("--emulator", action="store_true")
    arguments.add_argument("--width", type=int, default=1024)
    arguments.add_argument("--height", type=int, default=4)
    options = arguments.parse_args()

    size = [str(options.width), str(options.height)]
    counts = emulator_counts(options.program, size) if options.emulator else \
        callgrind_counts(options.program, size, options.level)
    groups = collections.defaultdict(list)
    for mark, instructions in counts:
        family, pair = mark.split("\t")
        groups[group_of(family, pair)].append((instructions / (options.width * options.height), pair))
    if not groups:
        sys.exit("nothing was counted")

    print("| Group | Cases | Geometric mean | Least | Most | Which |\n|---|--:|--:|--:|--:|---|")
    for group, values in sorted(groups.items()):
        mean = math.exp(sum(math.log(value) for value, _ in values) / len(values))
        most = max(values)
        print(f"| {group} | {len(values)} | {mean:.2f} | {min(values)[0]:.2f} | {most[0]:.2f} | {most[1]} |")


main()
