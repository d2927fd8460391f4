#!/usr/bin/python3
"""Converts a directory of raw frames to PNG on many machines: as archive_to_png.py, with [--scheduler ADDRESS]

Without a scheduler's address this starts a process for each core of this machine. Elsewhere start `dask-scheduler` on
one machine and `dask-worker ADDRESS --nworkers auto --nthreads 1` on all; the directories must be shared by them.
A worker that dies loses the frame it had in hand, which another one converts. Debian: python3-distributed.
"""
import os
import sys

from dask.distributed import Client, LocalCluster, as_completed

import archive_to_png


def convert_archive(client, raw_directory, png_directory, source, width, height, options, report=print):
    """Converts what is missing; returns the number of pictures made. Raises what a worker raised."""
    os.makedirs(png_directory, exist_ok=True)
    client.run(sys.path.append, os.path.dirname(os.path.abspath(__file__)))
    archive_to_png.remove_parts(png_directory)
    files = archive_to_png.missing(raw_directory, png_directory)
    futures = client.map(archive_to_png.convert_file, files, png_directory=png_directory, source=source, width=width,
                         height=height, options=options, retries=2, pure=False)
    for future in as_completed(futures):
        report(future.result())
    archive_to_png.remove_parts(png_directory)
    return len(files)


def main():
    parser = archive_to_png.parser("Converts a directory of raw frames to PNG on many machines.")
    parser.add_argument("--scheduler", help="address of a dask scheduler, tcp://HOST:8786")
    arguments = parser.parse_args()
    options = {"demosaic": arguments.demosaic, "pattern": arguments.pattern}
    cluster = arguments.scheduler or LocalCluster(n_workers=os.cpu_count(), threads_per_worker=1)
    with Client(cluster) as client:
        made = convert_archive(client, arguments.raw_directory, arguments.png_directory, arguments.format,
                               arguments.width, arguments.height, options)
    print(f"{made} pictures")


if __name__ == "__main__":
    main()
