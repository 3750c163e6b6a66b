#!/usr/bin/env python3
"""Writes the contour level files of share/zav: levels and colours of the fields that are filled most.

The colours are those of share/zav/zav.pal, spread over the levels; of temperature about its middle, 0 degrees.
Usage: make_levels.py FOLDER
"""

import sys
from pathlib import Path

# name: (what it is for, levels, palette)
SCALES = {
    "temp": ("temperature in degrees Celsius", [*range(-44, 45, 4)], "temperature"),
    "rain": ("precipitation in mm", [0.2, 1, 2, 5, 10, 15, 20, 30, 40, 60, 80, 100, 150], "wet"),
    "dbz": ("radar reflectivity in dBZ", [*range(5, 80, 5)], "plasma"),
    "wind": ("wind speed in knots", [50, 60, 70, 80, 90, 100, 110, 120, 130, 140, 150, 170], "viridis"),
    "rhum": ("relative humidity in per cent", [*range(0, 100, 10)], "wet"),
    "vort": ("absolute vorticity in 1e-5 /s", [*range(8, 44, 4)], "heat"),
}


def read_palettes(path):
    lines = (line.split() for line in path.read_text().splitlines())
    return {words[1]: words[2:] for words in lines if words[:1] == ["palette"]}


def colour_at(colours, part):
    """Colour at a fraction of the way through the palette, as #rrggbb."""
    place = part * (len(colours) - 1)
    i = min(int(place), len(colours) - 2)
    rest = place - i
    low, high = ([int(colours[k][n : n + 2], 16) for n in (0, 2, 4)] for k in (i, i + 1))
    return "#" + "".join(f"{round(a + (b - a) * rest):02x}" for a, b in zip(low, high))


def main():
    folder = Path(sys.argv[1])
    palettes = read_palettes(folder / "zav.pal")
    for name, (purpose, levels, palette) in SCALES.items():
        lines = [f"# Contour levels and colours for {purpose}."]
        last = max(len(levels) - 1, 1)
        lines += [f"{level}:{colour_at(palettes[palette], i / last)}" for i, level in enumerate(levels)]
        (folder / f"{name}.lev").write_text("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
