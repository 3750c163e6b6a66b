#!/usr/bin/env python3
"""Milliseconds that contourpy's serial algorithm takes for the lines of a field and for its bands, as "lines N fill N".

The field is one record of a SERVICE file (cdo -f srv -b F32); its range is divided by 20 as bench_zav's "contour" does.
Usage: contour_peer.py FILE
"""

import statistics
import sys
import time
from pathlib import Path

import contourpy
import numpy

HEADER = 8  # integers of 4 bytes between two marks of 4: code, level, date, time, nx, ny and two unused
ROUNDS = 5


def read_field(path):
    content = Path(path).read_bytes()
    nx, ny = numpy.frombuffer(content, "i4", HEADER, 4)[4:6]
    return numpy.frombuffer(content, "f4", nx * ny, 4 * (HEADER + 3)).reshape(ny, nx).astype(float)


def milliseconds(work):
    times = []
    for _ in range(ROUNDS):
        start = time.perf_counter()
        work()
        times.append(time.perf_counter() - start)
    return 1000 * statistics.median(times)


def main():
    field = read_field(sys.argv[1])
    step = (field.max() - field.min()) / 20
    first = numpy.floor(field.min() / step) * step
    levels = [first + step * i for i in range(int((field.max() - first) / step) + 2)]
    contours = contourpy.contour_generator(z=field, name="serial")
    lines = milliseconds(lambda: [contours.lines(level) for level in levels])
    fill = milliseconds(lambda: [contours.filled(low, high) for low, high in zip(levels, levels[1:])])
    print(f"lines {lines} fill {fill}")


if __name__ == "__main__":
    main()
