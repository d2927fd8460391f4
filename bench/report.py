#!/usr/bin/python3
"""Makes docs/performance and the figures of README.md of what scripts/bench full has measured.

report.py RESULTS DIRECTORY, run where README.md is.
"""
import collections
import json
import math
import pathlib
import shutil
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as pyplot  # noqa: E402
from matplotlib.colors import LogNorm  # noqa: E402

# The level of most machines first.
LEVELS = ("x86-64-v3", "x86-64-v4")

METHOD = """\
# Performance

Written by `scripts/bench full`, which takes about {minutes} minutes; `scripts/bench` gives the figures of your machine
in three minutes, `scripts/bench --help` lists how to measure chosen pairs.

Every figure is a ratio: **the time of a conversion divided by the floor**, which is the time of the fastest loop that
loads as many source bytes and stores as many destination bytes, in as many planes, and computes nothing. 1.00 means
that the conversion costs nothing beside moving its bytes. The ratio to a `memcpy` of half of (source bytes +
destination bytes) stands beside it in the tables of groups and in [pairs.csv](pairs.csv); it depends on the machine
more than on the code, because a memcpy reads as much as it writes.

- The floor has the vectors of the CPU level (256 bits for x86-64-v3, 512 for x86-64-v4), calls the source into the
  caches 1 KiB ahead, and moves whole planes, since lines follow one another without padding. It is measured with
  ordinary and with non-temporal stores; the faster one counts. Both are faster the longer their runs of loads and
  stores are: up to 48 vectors of a plane at once.
- **In the caches** means that every call gets the same frames. **From memory** means other frames for every call, taken
  in turn from four times the last cache (at most 1 GiB), half of it source, half destination.
- The bytes counted are those of the pixels; packed lines are rounded up to whole bytes. The intermediate image of a
  chain does not count.
- Each conversion is one call of `PixelConverter::Convert` for the whole frame on one thread, with noise as content.
  Chains reuse one intermediate buffer from call to call.
- A round times, for one pair after another, a burst of conversions, of each floor and of memcpys. Rounds go over all
  pairs repeatedly, and the fastest of all rounds counts. A frame of 4096x3000 from memory is converted once in a round.
  The last quarter of the time goes to the twentieth of all pairs with the highest ratios and the one with the lowest,
  which are most likely to have been disturbed. Single ratios of large frames can still be off by a twentieth.
- A floor that took half as long again as the other one in its first round is not measured again.
- Pages are touched before anything is timed. Frames are aligned to 64 bytes; source and destination begin at different
  offsets in their pages.
- Calls of less than a millisecond are timed by the wall clock, longer ones by the thread's processor time, which leaves
  out the time that the thread waits for a processor. Other programs still share the memory and the last cache.
- "With a filter" means three tables of gains and offsets, which are straight lines, unless curves (gammas) are named.
  Only 8-bit colour destinations have a filter.
- "Nanoseconds beside the pixels" of a frame of 64x64 is what the straight line through the times of 64x64 and 64x16
  leaves for a frame without lines. Both lie in the first-level cache.

[pairs.md](pairs.md) (x86-64-v3), [pairs-v4.md](pairs-v4.md) and [pairs.csv](pairs.csv) list every pair,
[peers.md](peers.md) compares with OpenCV and libyuv, [mono.md](mono.md) has Mono8 and Mono12 by Google Benchmark.
[limits.md](limits.md) explains which conversions are slow and why.

![Ratios of all pairs, x86-64-v3](heatmap.png)

![Ratios of all pairs, x86-64-v4](heatmap-v4.png)

![Time by frame size](scaling.png)
"""


def load(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def place_of(measurement):
    """Where frames are when they are converted, as zrbench names it."""
    return f"{measurement['width']}x{measurement['height']}" + (" from memory" if measurement["fromMemory"] else "")


def places_of(measurements):
    found = {(m["fromMemory"], m["width"] * m["height"], place_of(m)) for m in measurements}
    return [name for _, _, name in sorted(found)]


def row_of(measurement):
    """Sources are rows, mosaics one for each demosaic, packed samples one for each order of bits."""
    order = f", {measurement['bitOrder']}" if measurement["bitOrder"] else ""
    return measurement["source"] + order + (", interpolated" if measurement["demosaic"] == "interpolate" else "")


def matrix_of(measurements, place, filtered, value):
    """Values by row and destination."""
    matrix = collections.defaultdict(dict)
    for m in measurements:
        if place_of(m) == place and m["filtered"] == filtered and value(m) is not None:
            matrix[row_of(m)][m["destination"]] = value(m)
    return matrix


def columns_of(matrix):
    """Destinations that most sources have; the others are what packed formats are unpacked to."""
    counts = collections.Counter(name for row in matrix.values() for name in row)
    common = [name for name, count in counts.items() if count > len(matrix) / 2]
    return common, [name for name in counts if name not in common]


def geometric_mean(values):
    values = list(values)
    return math.exp(sum(map(math.log, values)) / len(values)) if values else float("nan")


def write_header(out, *cells):
    """The first column holds words, the others figures."""
    out.write("| " + " | ".join(cells) + " |\n|---" + "|--:" * (len(cells) - 1) + "|\n")


def write_row(out, *cells):
    out.write("| " + " | ".join(cells) + " |\n")


def write_table(out, matrix, columns, digits):
    rows = [name for name in matrix if any(column in matrix[name] for column in columns)]
    if not columns or not rows:
        return
    write_header(out, "Source", *columns)
    for name in rows:
        write_row(out, name, *(f"{matrix[name][column]:.{digits}f}" if column in matrix[name] else ""
                               for column in columns))
    out.write("\n")


def fixed_nanoseconds(measurement):
    seconds = measurement["fixedSeconds"]
    return None if seconds is None else seconds * 1e9


def write_matrix(out, title, matrix, digits):
    if not matrix:
        return
    common, others = columns_of(matrix)
    out.write(f"\n## {title}\n\n")
    write_table(out, matrix, common, digits)
    write_table(out, matrix, others, digits)


def write_pairs(path, data):
    measurements = data["measurements"]
    with open(path, "w", encoding="utf-8") as out:
        out.write(f"# Time / floor, pair by pair, {data['run']['Level']}\n\n")
        out.write(f"{data['run']['Date']}, {data['run']['Processor']}. How it was measured: [README.md](README.md). "
                  "Mosaics have a row for each demosaic. For 64x64 the figures are the nanoseconds that a call takes "
                  "beside its pixels.\n")
        for filtered in (False, True):
            for place in places_of(measurements):
                is_fixed = place == "64x64"
                matrix = matrix_of(measurements, place, filtered,
                                   fixed_nanoseconds if is_fixed else lambda m: m["ratio"])
                title = place + (": nanoseconds beside the pixels" if is_fixed else "")
                write_matrix(out, title + (", with a filter" if filtered else ""), matrix, 0 if is_fixed else 2)


def write_csv(path, runs):
    places = places_of(runs[0]["measurements"])
    lines = collections.defaultdict(dict)
    for data in runs:
        for m in data["measurements"]:
            key = (data["run"]["Level"], m["source"], m["destination"], m["demosaic"],
                   "filter" if m["filtered"] else "")
            lines[key][place_of(m)] = f"{m['ratio']:.2f},{m['copyRatio']:.2f}"
    with open(path, "w", encoding="utf-8") as out:
        out.write("level,source,destination,demosaic,filter," +
                  ",".join(f"{place} / floor,{place} / memcpy" for place in places) + "\n")
        for key, ratios in lines.items():
            out.write(",".join([*key, *(ratios.get(place, ",") for place in places)]) + "\n")


def draw_panel(axes, matrix, columns, title):
    values = [[matrix[row].get(column, float("nan")) for column in columns] for row in matrix]
    image = axes.imshow(values, norm=LogNorm(1, 4), cmap="YlOrRd", aspect="auto", interpolation="nearest")
    axes.set_title(title, fontsize=10)
    axes.set_xticks(range(len(columns)), columns, rotation=90, fontsize=7)
    axes.set_yticks(range(len(matrix)), list(matrix), fontsize=6)
    return image


def draw_heat_map(path, data):
    places = [place for place in places_of(data["measurements"]) if place != "64x64"]
    figure, axes = pyplot.subplots(1, len(places), figsize=(5 * len(places), 14), sharey=True, squeeze=False,
                                   constrained_layout=True)
    for panel, place in zip(axes[0], places):
        matrix = matrix_of(data["measurements"], place, False, lambda m: m["ratio"])
        mean = geometric_mean(value for row in matrix.values() for value in row.values())
        image = draw_panel(panel, matrix, columns_of(matrix)[0], f"{place}, geometric mean {mean:.2f}")
    bar = figure.colorbar(image, ax=axes, shrink=0.5, ticks=[1, 1.4, 2, 2.8, 4], extend="both")
    bar.ax.set_yticklabels(["1", "1.4", "2", "2.8", "4"])
    bar.ax.minorticks_off()
    figure.suptitle(f"Time / floor, level {data['run']['Level']}, {data['run']['Date']}", fontsize=11)
    figure.savefig(path, dpi=80)
    pyplot.close(figure)


def curves_of(data):
    curves = collections.defaultdict(list)
    for m in data["measurements"]:
        if m["demosaic"] != "interpolate":
            curves[f"{m['source']} to {m['destination']}", m["fromMemory"]].append((m["width"] * m["height"], m))
    return curves


def draw_scaling(path, data):
    figure, (left, right) = pyplot.subplots(1, 2, figsize=(11, 4.5), constrained_layout=True)
    colours = {}
    for (name, from_memory), points in curves_of(data).items():
        points.sort(key=lambda point: point[0])
        pixels = [n for n, _ in points]
        style = {"color": colours.setdefault(name, f"C{len(colours)}"), "markersize": 3,
                 "linestyle": "--" if from_memory else "-", "marker": "o", "label": None if from_memory else name}
        left.plot(pixels, [m["seconds"] * 1e9 / n for n, m in points], **style)
        right.plot(pixels, [m["ratio"] for _, m in points], **style)
    left.set_ylabel("nanoseconds per pixel (dashed: from memory)")
    right.set_ylabel("time / floor")
    right.axhline(1, color="grey", linewidth=0.8)
    for axes in (left, right):
        axes.set_xscale("log")
        axes.set_yscale("log")
        axes.set_xlabel("pixels of the frame")
        axes.grid(True, which="both", linewidth=0.3)
    left.legend(fontsize=7)
    figure.suptitle(f"Level {data['run']['Level']}", fontsize=11)
    figure.savefig(path, dpi=90)
    pyplot.close(figure)


def write_aims(out, runs):
    """The aims of all levels side by side."""
    rows = collections.defaultdict(dict)
    for data in runs:
        for aim in data["aims"]:
            verdict = "reached" if aim["reached"] <= aim["limit"] else f"**missed** ({aim['above']} of {aim['count']})"
            rows[aim["what"], aim["frames"]][data["run"]["Level"]] = \
                [f"{aim['limit']:.2f}", f"{aim['reached']:.2f}", verdict]
    out.write("\n## Aims\n\nIn brackets the pairs above the limit; for a mean that is information, not the verdict.\n\n")
    levels = [data["run"]["Level"] for data in runs]
    write_header(out, "What", "Frames", *(cell for level in levels for cell in (f"{level}: at most", "is", "")))
    for (what, frames), found in rows.items():
        write_row(out, what, frames, *(cell for level in levels for cell in found.get(level, ["", "", ""])))


def write_curves(out, paths):
    """Geometric means through tables that are no straight lines."""
    out.write("\nThe aims for filters hold gains. Through gammas, which have to be looked up, the means with fast demosaic "
              "are:\n\n")
    for number, data in enumerate(map(load, paths)):
        places = places_of(data["measurements"])
        if number == 0:
            write_header(out, "Level", *places)
        fast = [m for m in data["measurements"] if m["demosaic"] != "interpolate"]
        write_row(out, data["run"]["Level"], *(f"{geometric_mean(m['ratio'] for m in fast if place_of(m) == place):.2f}"
                                               for place in places))


def write_levels(out, paths):
    """Geometric means of all levels that were measured."""
    out.write("\n## CPU levels\n\nAll pairs with fast demosaic and without a filter, level forced; the floor is that of "
              "the level.\n\n")
    write_header(out, "Level", "Frames", "Time / floor, geometric mean", "Time / memcpy", "Worst", "Which")
    for path in paths:
        data = load(path)
        for place in places_of(data["measurements"]):
            chosen = [m for m in data["measurements"] if place_of(m) == place and not m["filtered"] and
                      m["demosaic"] != "interpolate"]
            worst = max(chosen, key=lambda m: m["ratio"])
            write_row(out, data["run"]["Level"], place, f"{geometric_mean(m['ratio'] for m in chosen):.2f}",
                      f"{geometric_mean(m['copyRatio'] for m in chosen):.2f}", f"{worst['ratio']:.2f}",
                      f"{row_of(worst)} to {worst['destination']}")


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
    out.write(f"\n## Frame sizes, {data['run']['Level']}\n\nNanoseconds per pixel (time / floor).\n\n")
    places = places_of(data["measurements"])
    rows = collections.defaultdict(dict)
    for m in data["measurements"]:
        rows[f"{row_of(m)} to {m['destination']}"][place_of(m)] = \
            f"{m['seconds'] * 1e9 / (m['width'] * m['height']):.3f} ({m['ratio']:.2f})"
    write_header(out, "Pair", *places)
    for name, cells in rows.items():
        write_row(out, name, *(cells.get(place, "") for place in places))


def group_of(conversion):
    words = [conversion["family"], conversion["layout"], conversion["how"],
             "with a filter" if conversion["filtered"] else ""]
    return ", ".join(word for word in words if word)


def write_instructions(out, paths):
    levels = [load(path) for path in paths]
    out.write("""
## Instructions per pixel

Instructions that 1024x8 pixels take more than 1024x4, divided by the pixels: the mean of the group (most). Counted by
`bench/count_instructions.py` from the log of executed blocks of qemu, which knows no AVX-512. Of the last lines the
first one counts instructions of a pixel in loops whose blocks hold no vector register ([limits.md](limits.md) explains
those), the second one all instructions of a call beside those of its pixels: the median (most).

""")
    groups = collections.defaultdict(dict)
    for number, level in enumerate(levels):
        for conversion in level["conversions"]:
            groups[group_of(conversion)].setdefault(number, []).append(conversion["instructions"])
    write_header(out, "Group", "Cases", *(level["level"] for level in levels))
    for group, counts in sorted(groups.items()):
        write_row(out, group, str(len(counts[0])),
                  *(f"{sum(counts[n]) / len(counts[n]):.2f} ({max(counts[n]):.2f})" for n in range(len(levels))))
    scalar = [max(level["conversions"], key=lambda conversion: conversion["scalar"]) for level in levels]
    write_row(out, "Most in scalar loops", "", *(f"{one['scalar']:.2f} {one['pair']}" for one in scalar))
    fixed = [sorted(conversion["fixed"] for conversion in level["conversions"]) for level in levels]
    write_row(out, "Beside the pixels", str(len(fixed[0])), *(f"{one[len(one) // 2]} ({one[-1]})" for one in fixed))


def write_section(out, title, text):
    out.write(f"\n## {title}\n\n{text}")


def write_peers(directory, results):
    """The table goes to a page of its own, what is behind to the main one."""
    table, behind = (results / "peers.md").read_text(encoding="utf-8").split("\nMore than 2 % behind a peer:\n\n")
    with open(directory / "peers.md", "w", encoding="utf-8") as out:
        out.write("# Beside other libraries\n\nTime divided by the peer's time, both in turn in the same run and by the "
                  "method of [README.md](README.md), on one thread; below 1.00 this library is faster. Both peers are "
                  "Debian 12's. Where bytes differ although the arithmetic is the same, noise is why: see the last "
                  "column.\n\n" + table)
    return behind


def write_page(directory, results, runs):
    minutes = round(float((results / "seconds").read_text()) / 60)
    with open(directory / "README.md", "w", encoding="utf-8") as out:
        out.write(METHOD.format(minutes=minutes))
        write_aims(out, runs)
        write_curves(out, [results / f"gammas-{level}.json" for level in LEVELS])
        for level in LEVELS:
            summary = (results / f"summary-{level}.md").read_text(encoding="utf-8")
            write_section(out, f"Level {level}", summary.split("\nAims\n")[0])
        write_levels(out, [results / f"level-{level}.json" for level in ("x86-64", "x86-64-v2", *LEVELS)])
        write_scaling(out, load(results / "scaling.json"))
        write_smallest(out, load(results / "one.json"))
        write_section(out, "Start", (results / "start.md").read_text(encoding="utf-8"))
        write_instructions(out, [results / f"instructions-{level}.json"
                                 for level in ("x86-64", "x86-64-v2", "x86-64-v3", "neon")])
        write_section(out, "Behind a peer by more than 2 %", write_peers(directory, results))


# What the front page shows: name, and source, destination and demosaic.
EXAMPLES = (("Mono8 to RGB8", ("Mono8", "RGB8", "")),
            ("Mono12p to Mono16", ("Mono12p", "Mono16", "")),
            ("RGB8 to BGRa8", ("RGB8", "BGRa8", "")),
            ("YCbCr422_8 to BGRa8", ("YCbCr422_8", "BGRa8", "")),
            ("Bayer12p to RGB8, fast demosaic", ("Bayer12p", "RGB8", "fast")),
            ("Bayer12p to RGB8, interpolating demosaic", ("Bayer12p", "RGB8", "interpolate")))
EXAMPLE_PLACES = ("640x480", "1920x1080", "4096x3000 from memory")


def examples_of(data):
    """A column of cells for each place: the examples, then the mean and the worst of all pairs."""
    for place in EXAMPLE_PLACES:
        plain = [m for m in data["measurements"] if place_of(m) == place and not m["filtered"]]
        ratios = {(m["source"], m["destination"], m["demosaic"]): m["ratio"] for m in plain}
        fast = [m["ratio"] for m in plain if m["demosaic"] != "interpolate"]
        yield [f"{ratios[pair]:.2f}" for _, pair in EXAMPLES] + [f"{geometric_mean(fast):.2f} ({max(fast):.2f})"]


def write_front_page(path, runs):
    """The section between the two comments of the repository's README."""
    text = path.read_text(encoding="utf-8")
    begin, end = "<!-- speed, written by scripts/bench full -->\n", "<!-- end of speed -->"
    before, rest = text.split(begin)
    columns = [column for data in runs for column in examples_of(data)]
    with open(path, "w", encoding="utf-8") as out:
        out.write(before + begin)
        out.write("Time of a conversion divided by the time of the fastest loop that loads and stores the same bytes and\n"
                  "computes nothing; one core of a Xeon, with AVX2 (x86-64-v3) and with AVX-512 (x86-64-v4), in the caches\n"
                  "but for the largest frames. [docs/performance](docs/performance/README.md) has every pair, other sizes,\n"
                  "other CPU levels and the method.\n\n")
        write_header(out, "conversion", *(f"{name}, {place}" for name in ("AVX2", "AVX-512") for place in EXAMPLE_PLACES))
        for number, name in enumerate([example[0] for example in EXAMPLES] + ["all, geometric mean (slowest)"]):
            write_row(out, name, *(column[number] for column in columns))
        out.write(end + rest.split(end)[1])


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    results, directory = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    directory.mkdir(parents=True, exist_ok=True)
    runs = [load(results / f"level-{level}.json") for level in LEVELS]
    for data, suffix in zip(runs, ("", "-v4")):
        write_pairs(directory / f"pairs{suffix}.md", data)
        draw_heat_map(directory / f"heatmap{suffix}.png", data)
    write_csv(directory / "pairs.csv", runs)
    draw_scaling(directory / "scaling.png", load(results / "scaling.json"))
    shutil.copyfile(results / "mono.md", directory / "mono.md")
    write_page(directory, results, runs)
    write_front_page(pathlib.Path("README.md"), runs)


main()
