#!/usr/bin/python3
"""Makes docs/performance of what scripts/bench full has measured: report.py RESULTS DIRECTORY"""
import collections
import json
import math
import pathlib
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as pyplot  # noqa: E402
from matplotlib.colors import LogNorm  # noqa: E402

METHOD = """\
# Performance

Written by `scripts/bench full`; `scripts/bench` gives the figures of your machine in two minutes.

Every figure is a ratio: **the time of a conversion divided by the time of a `memcpy` that moves as many bytes**,
which is a copy of half of (source bytes + destination bytes). Below 1.00 is faster than memcpy.

- The bytes counted are those of the pixels, in all planes; packed lines are rounded up to whole bytes. The
  intermediate image of a chain does not count.
- Each conversion is one call of `PixelConverter::Convert` for the whole frame on one thread, with noise as content and
  without line padding. Chains reuse one intermediate buffer from call to call.
- A round times a burst of conversions and then a burst of copies between the same pages. Rounds go over all pairs
  repeatedly, which spreads the runs of a pair over the whole time. The ratio is that of the fastest conversion and the
  fastest copy of all rounds. Short calls are timed several at once. A small frame stays in the caches during a burst,
  for the conversion as for the copy.
- All pages are touched before anything is timed. The frames are aligned to 64 bytes and begin at different offsets in
  their pages.
- Calls of less than a millisecond are timed by the wall clock, longer ones by the thread's processor time, which leaves
  out the time that the thread waits for a processor. Other programs still share the memory and the last-level cache.
  The minimum over the rounds reduces their influence, but single ratios of large frames can be off by a tenth or more.
- "With a filter" means three tables, none of them the identity; only 8-bit colour destinations have a filter.

[pairs.md](pairs.md) and [pairs.csv](pairs.csv) list every pair. [limits.md](limits.md) explains which conversions are
slow and why, and what each optimisation gained.

![Ratios of all pairs](heatmap.png)

![Time by frame size](scaling.png)
"""


def load(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def size_of(measurement):
    return f"{measurement['width']}x{measurement['height']}"


def sizes_of(measurements):
    found = {(m["width"] * m["height"], size_of(m)) for m in measurements}
    return [name for _, name in sorted(found)]


def row_of(measurement):
    """Sources are rows, mosaics one for each demosaic."""
    return measurement["source"] + (", interpolated" if measurement["demosaic"] == "interpolate" else "")


def matrix_of(measurements, size, filtered):
    """Ratios by row and destination."""
    matrix = collections.defaultdict(dict)
    for m in measurements:
        if size_of(m) == size and m["filtered"] == filtered:
            matrix[row_of(m)][m["destination"]] = m["ratio"]
    return matrix


def columns_of(matrix):
    """Destinations that most sources have; the others are what packed formats are unpacked to."""
    counts = collections.Counter(name for row in matrix.values() for name in row)
    common = [name for name, count in counts.items() if count > len(matrix) / 2]
    return common, [name for name in counts if name not in common]


def geometric_mean(values):
    values = list(values)
    return math.exp(sum(map(math.log, values)) / len(values)) if values else float("nan")


def write_table(out, matrix, columns):
    rows = [name for name in matrix if any(column in matrix[name] for column in columns)]
    if not columns or not rows:
        return
    out.write("| Source | " + " | ".join(columns) + " |\n|---" + "|--:" * len(columns) + "|\n")
    for name in rows:
        cells = [f"{matrix[name][column]:.2f}" if column in matrix[name] else "" for column in columns]
        out.write(f"| {name} | " + " | ".join(cells) + " |\n")
    out.write("\n")


def write_pairs(directory, data):
    measurements = data["measurements"]
    with open(directory / "pairs.md", "w", encoding="utf-8") as out:
        out.write("# Time / time of memcpy, pair by pair\n\n")
        out.write(f"{data['run']['Date']}, {data['run']['Processor']}, level {data['run']['Level']}. "
                  "How it was measured: [README.md](README.md). Bayer sources have a row for each demosaic.\n")
        for filtered in (False, True):
            for size in sizes_of(measurements):
                matrix = matrix_of(measurements, size, filtered)
                if not matrix:
                    continue
                common, others = columns_of(matrix)
                out.write(f"\n## {size}{', with a filter' if filtered else ''}\n\n")
                write_table(out, matrix, common)
                write_table(out, matrix, others)


def write_csv(directory, measurements):
    sizes = sizes_of(measurements)
    lines = collections.defaultdict(dict)
    for m in measurements:
        key = (m["source"], m["destination"], m["demosaic"], "filter" if m["filtered"] else "")
        lines[key][size_of(m)] = f"{m['ratio']:.2f}"
    with open(directory / "pairs.csv", "w", encoding="utf-8") as out:
        out.write(",".join(["source", "destination", "demosaic", "filter", *sizes]) + "\n")
        for key, ratios in lines.items():
            out.write(",".join([*key, *(ratios.get(size, "") for size in sizes)]) + "\n")


def draw_panel(axes, matrix, columns, title):
    values = [[matrix[row].get(column, float("nan")) for column in columns] for row in matrix]
    image = axes.imshow(values, norm=LogNorm(0.25, 4), cmap="RdBu_r", aspect="auto", interpolation="nearest")
    axes.set_title(title, fontsize=10)
    axes.set_xticks(range(len(columns)), columns, rotation=90, fontsize=7)
    axes.set_yticks(range(len(matrix)), list(matrix), fontsize=6)
    return image


def draw_heat_map(directory, data):
    sizes = sizes_of(data["measurements"])
    figure, axes = pyplot.subplots(1, len(sizes), figsize=(5 * len(sizes), 11), sharey=True, squeeze=False,
                                   constrained_layout=True)
    for panel, size in zip(axes[0], sizes):
        matrix = matrix_of(data["measurements"], size, False)
        mean = geometric_mean(value for row in matrix.values() for value in row.values())
        image = draw_panel(panel, matrix, columns_of(matrix)[0], f"{size}, geometric mean {mean:.2f}")
    bar = figure.colorbar(image, ax=axes, shrink=0.5, ticks=[0.25, 0.5, 1, 2, 4], extend="both")
    bar.ax.set_yticklabels(["0.25", "0.5", "1", "2", "4"])
    figure.suptitle(f"Time / time of memcpy, level {data['run']['Level']}, {data['run']['Date']}", fontsize=11)
    figure.savefig(directory / "heatmap.png", dpi=90)


def draw_scaling(directory, data):
    figure, (left, right) = pyplot.subplots(1, 2, figsize=(11, 4.5), constrained_layout=True)
    curves = collections.defaultdict(list)
    for m in data["measurements"]:
        if m["demosaic"] != "interpolate":
            curves[f"{m['source']} to {m['destination']}"].append((m["width"] * m["height"], m))
    for name, points in curves.items():
        points.sort(key=lambda point: point[0])
        pixels = [point[0] for point in points]
        left.plot(pixels, [m["seconds"] * 1e9 / n for n, m in points], "o-", markersize=3, label=name)
        right.plot(pixels, [m["ratio"] for _, m in points], "o-", markersize=3, label=name)
    left.set_ylabel("nanoseconds per pixel")
    right.set_ylabel("time / time of memcpy")
    right.axhline(1, color="grey", linewidth=0.8)
    for axes in (left, right):
        axes.set_xscale("log")
        axes.set_yscale("log")
        axes.set_xlabel("pixels of the frame")
        axes.grid(True, which="both", linewidth=0.3)
    left.legend(fontsize=7)
    figure.savefig(directory / "scaling.png", dpi=90)


def write_levels(out, results):
    """Geometric means of all levels that were measured."""
    out.write("\n## CPU levels\n\nGeometric mean (worst) over all pairs without a filter, level forced.\n\n"
              "| Level | Size | Geometric mean | Worst | Which |\n|---|---|--:|--:|---|\n")
    for path in sorted(results.glob("level-*.json")):
        data = load(path)
        for size in sizes_of(data["measurements"]):
            chosen = [m for m in data["measurements"] if size_of(m) == size and not m["filtered"]]
            worst = max(chosen, key=lambda m: m["ratio"])
            out.write(f"| {data['run']['Level']} | {size} | {geometric_mean(m['ratio'] for m in chosen):.2f} | "
                      f"{worst['ratio']:.2f} | {row_of(worst)} to {worst['destination']} |\n")


def write_smallest(out, data):
    """The cost of a call."""
    slowest = sorted(data["measurements"], key=lambda m: -m["seconds"])
    above = sum(1 for m in slowest if m["seconds"] > 1e-6)
    times = sorted(m["seconds"] * 1e9 for m in slowest)
    out.write(f"\n## A frame of 1x1\n\nMedian {times[len(times) // 2]:.0f} ns, slowest {times[-1]:.0f} ns "
              f"({row_of(slowest[0])} to {slowest[0]['destination']}"
              f"{', with a filter' if slowest[0]['filtered'] else ''}); {above} of {len(times)} cases take more "
              "than a microsecond.\n")


def write_scaling(out, data):
    out.write("\n## Frame sizes\n\nNanoseconds per pixel (ratio to memcpy).\n\n")
    sizes = sizes_of(data["measurements"])
    rows = collections.defaultdict(dict)
    for m in data["measurements"]:
        rows[f"{row_of(m)} to {m['destination']}"][size_of(m)] = \
            f"{m['seconds'] * 1e9 / (m['width'] * m['height']):.3f} ({m['ratio']:.2f})"
    out.write("| Pair | " + " | ".join(sizes) + " |\n|---" + "|--:" * len(sizes) + "|\n")
    for name, cells in rows.items():
        out.write(f"| {name} | " + " | ".join(cells.get(size, "") for size in sizes) + " |\n")


def append_file(out, path, title, text=""):
    if not path.exists():
        return
    out.write(f"\n## {title}\n\n{text}")
    out.write(path.read_text(encoding="utf-8"))


def write_page(directory, results):
    with open(directory / "README.md", "w", encoding="utf-8") as out:
        out.write(METHOD)
        append_file(out, results / "summary.md", "The run")
        append_file(out, results / "summary-x86-64-v3.md", "Level x86-64-v3 (AVX2), forced",
                    "The aims are those above times 1.5.\n\n")
        write_levels(out, results)
        write_scaling(out, load(results / "scaling.json"))
        write_smallest(out, load(results / "one.json"))
        append_file(out, results / "start.md", "Start")
        out.write("\n## Instructions per pixel\n\nAll instructions of one call of `Convert`, divided by the pixels of "
                  "the frame, counted by callgrind on x86-64 (which knows no AVX-512) and from the log of executed "
                  "blocks of qemu on aarch64. By `bench/count_instructions.py`.\n")
        for path in sorted(results.glob("instructions-*.md")):
            out.write(f"\n{path.stem.split('-', 1)[1]}\n\n{path.read_text(encoding='utf-8')}")
        append_file(out, results / "mono.md", "Mono8 and Mono12 with Google Benchmark")
        append_file(out, results / "peers.md", "Beside other libraries",
                    "The same run and method for all; both libraries are Debian 12's. Where bytes differ although "
                    "the arithmetic is the same, noise is why: see the last column.\n\n")


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    results, directory = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    directory.mkdir(parents=True, exist_ok=True)
    data = load(results / "full.json")
    write_pairs(directory, data)
    write_csv(directory, data["measurements"])
    draw_heat_map(directory, data)
    draw_scaling(directory, load(results / "scaling.json"))
    write_page(directory, results)


main()
