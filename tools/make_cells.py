#!/usr/bin/env python3
"""Works out the contour lines of single cells with fractions, for the tests: tests/data/plot/cells.tsv on standard output.

A level crosses a side at the fraction where the straight course from corner to corner reaches it. Of four crossings, the
saddle's measure tells which belong together. Cells with two or more corners on the level are listed by hand.
"""

import random
from fractions import Fraction

HEADER = "# Cells: what, values at the lower left, lower right, upper left and upper right corner and the level, the level's lines"
BY_HAND = """all on the level|5 5 5 5 5|
touch corner 0|5 7 8 9 5|
touch corner 1|7 5 8 9 5|
touch corner 2|7 9 5 8 5|
touch corner 3|7 9 8 5 5|
diagonal 0 to 3|5 9 9 5 5|0,0 1,1;
diagonal 1 to 2|9 5 5 9 5|0,1 1,0;
flat bottom|5 5 9 7 5|0,0 1,0;
flat left|5 9 5 7 5|0,0 0,1;
flat top|9 7 5 5 5|0,1 1,1;
flat right|9 5 7 5 5|1,0 1,1;
corner 0 and the opposite side|5 9 1 9 5|0,0 0.5,1;
saddle exactly in the middle|10 0 0 10 5|0,0.5 0.5,1;0.5,0 1,0.5;
saddle below the middle|10 0 0 10 8|0,0.2 0.2,0;0.8,1 1,0.8;"""
CORNERS = [(0, 0), (1, 0), (0, 1), (1, 1)]
SIDES = [(0, 1), (0, 2), (2, 3), (1, 3)]


def lines(values, level):
    """The lines as pairs of points; None for a cell that must be listed by hand."""
    on_level = [corner for corner in range(4) if values[corner] == level]
    if len(on_level) > 1:
        return None
    crossings = {}
    for side, (a, b) in enumerate(SIDES):
        if (values[a] - level) * (values[b] - level) < 0:
            part = Fraction(level - values[a]) / (values[b] - values[a])
            crossings[side] = tuple(p + part * (q - p) for p, q in zip(CORNERS[a], CORNERS[b]))
    if len(crossings) == 4:
        parts = [Fraction(level - values[a]) / (values[b] - values[a]) for a, b in SIDES]
        about_1_and_2 = parts[0] + parts[1] + 2 - parts[2] - parts[3] >= 2
        pairs = [(3, 0), (2, 1)] if about_1_and_2 else [(2, 3), (0, 1)]
        return sorted(tuple(sorted((crossings[a], crossings[b]))) for a, b in pairs)
    points = list(crossings.values())
    if len(points) == 1:
        points.append(CORNERS[on_level[0]])
    return [tuple(sorted(points))] if points else []


def point(place):
    return ",".join("%.4g" % float(coordinate) for coordinate in place)


def main():
    random.seed(6)
    print(HEADER)
    print(BY_HAND.replace("|", "\t"))
    count = 0
    while count < 400:
        values = random.sample(range(-8, 9), 4) if count % 2 else [random.randint(-4, 4) for _ in range(4)]
        level = Fraction(random.randint(-15, 15), 2) if count % 3 else Fraction(values[count % 4])
        found = lines(values, level)
        if found is None:
            continue
        count += 1
        text = "".join(f"{point(a)} {point(b)};" for a, b in found)
        print(f"cell {count}\t{' '.join(map(str, values))} {float(level):g}\t{text}")


main()
