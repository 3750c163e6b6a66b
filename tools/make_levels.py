#!/usr/bin/env python3
"""Writes the contour level files of share/zav: levels and colours of the fields that are filled most.

Each scale runs through a few anchor colours that differ in lightness as well as in hue, so that the order of the bands
can be told in print and by readers who don't tell red from green. Usage: make_levels.py FOLDER
"""

import sys
from pathlib import Path

# name: (what it is for, levels, anchor colours from low to high)
SCALES = {
    "temp": (
        "temperature in degrees Celsius",
        [*range(-44, 45, 4)],
        ["3b0f70", "5e4fa2", "3288bd", "74add1", "abd9e9", "e0f3f8", "ffffbf", "fee090", "fdae61", "f46d43", "d73027", "7f0000"],
    ),
    "rain": (
        "precipitation in mm",
        [0.2, 1, 2, 5, 10, 15, 20, 30, 40, 60, 80, 100, 150],
        ["edf8d9", "c7e9b4", "7fcdbb", "41b6c4", "1d91c0", "225ea8", "253494", "6a2c91", "a01a7d", "4d004b"],
    ),
    "dbz": (
        "radar reflectivity in dBZ",
        [*range(5, 80, 5)],
        ["e5e9f0", "b3cde3", "6baed6", "2b7bba", "08519c", "ffeda0", "feb24c", "fc4e2a", "b10026", "7a0177", "f7c6ee"],
    ),
    "wind": (
        "wind speed in knots",
        [50, 60, 70, 80, 90, 100, 110, 120, 130, 140, 150, 170],
        ["deebf7", "9ecae1", "4292c6", "08519c", "ffeda0", "feb24c", "f03b20", "800026"],
    ),
    "rhum": (
        "relative humidity in per cent",
        [*range(0, 100, 10)],
        ["8c510a", "bf812d", "dfc27d", "f6e8c3", "f5f5f5", "c7eae5", "80cdc1", "35978f", "01665e", "003c30"],
    ),
    "vort": (
        "absolute vorticity in 1e-5 /s",
        [*range(8, 44, 4)],
        ["fff7bc", "fee391", "fec44f", "fe9929", "ec7014", "cc4c02", "993404", "662506"],
    ),
}


def colour_at(anchors, part):
    """Colour at a fraction of the way through the anchors, as #rrggbb."""
    place = part * (len(anchors) - 1)
    i = min(int(place), len(anchors) - 2)
    rest = place - i
    low, high = ([int(anchors[k][n : n + 2], 16) for n in (0, 2, 4)] for k in (i, i + 1))
    return "#" + "".join(f"{round(a + (b - a) * rest):02x}" for a, b in zip(low, high))


def main():
    folder = Path(sys.argv[1])
    for name, (purpose, levels, anchors) in SCALES.items():
        lines = [f"# Contour levels and colours for {purpose}."]
        last = max(len(levels) - 1, 1)
        lines += [f"{level}:{colour_at(anchors, i / last)}" for i, level in enumerate(levels)]
        (folder / f"{name}.lev").write_text("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
