#!/usr/bin/python3
"""Counts the instructions of every registered conversion: count_instructions.py ZRCOUNT [--level LEVEL] --json FILE

The program runs under qemu, whose log of executed blocks is summed up; qemu knows no AVX-512, so on x86-64 levels up
to x86-64-v3 can be counted. It converts a frame and one of twice as many lines. Writes, for each conversion, the
instructions of a pixel, which are what the second frame takes more than the first one; those of them in scalar loops,
in blocks that are executed again before any block with a vector register is; and the instructions of a call beside its
pixels.
"""
import argparse
import json
import os
import re
import subprocess
import sys
import tempfile

VECTOR = {"x86_64": re.compile(r"%[xyz]mm\d"), "aarch64": re.compile(r"\b(?:v\d+\.|[qds]\d+\b)")}
LIBRARIES = {"x86_64": "/", "aarch64": "/usr/aarch64-linux-gnu"}


def machine_of(program):
    """What the program was built for, by the machine number in its ELF header."""
    with open(program, "rb") as file:
        number = int.from_bytes(file.read(20)[18:20], "little")
    return {62: "x86_64", 183: "aarch64"}[number]


class Block:
    """Instructions that are executed together, as the log lists them when they are translated."""

    def __init__(self, machine):
        self.vector = VECTOR[machine]
        self.code = bytearray()
        self.listing = []
        self.length = None
        self.is_scalar = True

    def add(self, line):
        """An instruction; lines without a mnemonic hold the last bytes of the one before."""
        fields = re.split(r"\s{2,}", line.split(":", 1)[1].strip(), maxsplit=1)
        self.code += bytes.fromhex(fields[0])
        self.listing += fields[1:]

    def close(self):
        """The log's disassembler does not know some instructions of AVX2 and goes on in their midst."""
        if any(text.startswith(".byte") for text in self.listing) and self.vector is VECTOR["x86_64"]:
            self.listing = disassembled(self.code)
        self.length = len(self.listing)
        self.is_scalar = not any(self.vector.search(text) for text in self.listing)


def disassembled(code):
    """x86-64 instructions by objdump."""
    with tempfile.NamedTemporaryFile() as file:
        file.write(code)
        file.flush()
        listing = subprocess.run(["objdump", "-D", "-b", "binary", "-m", "i386:x86-64", "--no-show-raw-insn", file.name],
                                 check=True, capture_output=True, encoding="utf-8").stdout
    return re.findall(r"^ *[0-9a-f]+:\t(.*)$", listing, re.M)


class Execution:
    """Sums up the instructions of the blocks of one conversion in the order in which they are executed."""

    def __init__(self):
        self.instructions = self.scalar = 0
        self.since_vector = set()

    def add(self, address, block):
        if block.length is None:
            block.close()
        self.instructions += block.length
        if not block.is_scalar:
            self.since_vector.clear()
        elif address in self.since_vector:
            self.scalar += block.length
        else:
            self.since_vector.add(address)


def counts(program, width, height, level):
    """Yields the mark of each conversion and what was executed for the frame and for the one of twice its lines."""
    machine = machine_of(program)
    libraries = os.environ.get("QEMU_LD_PREFIX", LIBRARIES[machine])
    command = [f"qemu-{machine}-static", "-L", libraries, "-cpu", "max", "-d", "in_asm,exec,nochain",
               program, str(width), str(height), *([level] if level else [])]
    process = subprocess.Popen(command, stderr=subprocess.PIPE, encoding="utf-8", errors="replace")
    blocks, block, once, execution = {}, None, None, Execution()
    for line in process.stderr:
        if line.startswith("0x"):
            if block is None:
                block = blocks[line.split(":", 1)[0][2:].zfill(16)] = Block(machine)
            block.add(line)
        elif line.startswith("Trace "):
            address = line.split("/", 2)[1]
            execution.add(address, blocks[address])
        elif line.startswith("IN:"):
            block = None
        elif line.startswith("# begin"):
            execution = Execution()
        elif line.startswith("# once"):
            once = execution
        elif line.startswith("# "):
            yield line[2:].strip("\n"), once, execution
    if process.wait() != 0:
        sys.exit(f"{program} failed under the emulator")


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("program")
    arguments.add_argument("--level", default="")
    arguments.add_argument("--width", type=int, default=1024)
    arguments.add_argument("--height", type=int, default=4)
    arguments.add_argument("--json", required=True)
    options = arguments.parse_args()

    found = []
    for mark, once, twice in counts(options.program, options.width, options.height, options.level):
        family, layout, how, filtered, pair = mark.split("\t")
        pixels = options.width * options.height
        found.append({"family": family, "layout": layout, "how": how, "filtered": bool(filtered), "pair": pair,
                      "instructions": (twice.instructions - once.instructions) / pixels,
                      "scalar": (twice.scalar - once.scalar) / pixels,
                      "fixed": 2 * once.instructions - twice.instructions})
    if not found:
        sys.exit("nothing was counted")
    with open(options.json, "w", encoding="utf-8") as file:
        json.dump({"level": options.level or machine_of(options.program), "conversions": found}, file, indent=0)


main()
