#!/usr/bin/env python3
"""Makes the weather symbol files in share/zav: wx.smb, with the letter codes of METAR and of older North American
reports and the commonest numbers, and ww.smb, with all of WMO code table 4677 (ww, present weather, 00 to 99).

The forms are those of the plotting model in the WMO Manual on the Global Data-processing and Forecasting System, put
together from a few strokes given here by coordinates. Usage: make_symbols.py [target folder]
"""

import math
import pathlib
import sys

MOST_SYMBOLS = 100
MOST_PAIRS = 20


def arc(x, y, r, start, end, steps=8):
    """Points of a circle's arc, angles in degrees from east."""
    angles = [math.radians(start + (end - start) * k / steps) for k in range(steps + 1)]
    return [(x + r * math.cos(a), y + r * math.sin(a)) for a in angles]


# An element is a list of strokes, each a letter (L line, F filled) and points about the origin; 1 is its full width.
LETTER_S = arc(0, 0.22, 0.22, 20, 270, 7) + arc(0, -0.22, 0.22, 90, -160, 7)
ELEMENTS = {
    "dot": [("F", arc(0, 0, 0.42, 0, 360, 12))],
    "comma": [("F", arc(0, 0.1, 0.34, 0, 360, 10)), ("L", [(0.3, 0.1), (0.25, -0.25), (-0.2, -0.6)])],
    "star": [("L", [(math.cos(a), math.sin(a)), (-math.cos(a), -math.sin(a))]) for a in (math.pi / 2, math.pi / 6, -math.pi / 6)],
    "down": [("L", [(-0.6, 0.5), (0.6, 0.5), (0, -0.6), (-0.6, 0.5)])],
    "up": [("L", [(-0.6, -0.5), (0.6, -0.5), (0, 0.6), (-0.6, -0.5)])],
    "hail": [("F", [(-0.6, -0.5), (0.6, -0.5), (0, 0.6), (-0.6, -0.5)])],
    "bar": [("L", [(-0.5, 0), (0.5, 0)])],
    "pole": [("L", [(0, -0.5), (0, 0.5)])],
    "S": [("L", LETTER_S)],
    "thunder": [("L", [(-0.4, -0.5), (-0.4, 0.5), (0.4, 0.5), (0, 0.05), (0.4, -0.5)]),
                ("L", [(0.4, -0.25), (0.4, -0.5), (0.16, -0.44)])],
    "heavy": [("L", [(-0.4, -0.5), (-0.4, 0.5), (0.4, 0.5), (0.05, 0.2), (0.4, -0.05), (0.05, -0.25), (0.4, -0.5)]),
              ("L", [(0.4, -0.28), (0.4, -0.5), (0.16, -0.46)])],
    "wave": [("L", arc(-0.3, 0, 0.3, 230, 0, 8) + arc(0.3, 0, 0.3, 180, 410, 8))],
    "haze": [("L", arc(-0.3, 0, 0.28, 45, 315, 9) + arc(0.3, 0, 0.28, 135, -135, 8) + [(-0.1, 0.2)])],
    "past": [("L", [(-0.3, 0.5), (0.2, 0.5), (0.2, -0.5), (-0.3, -0.5)])],
    "open": [("L", arc(0.4, 0, 0.6, 130, 230))],
    "shut": [("L", arc(-0.4, 0, 0.6, 50, -50))],
    "east": [("L", [(-0.6, 0), (0.6, 0)]), ("L", [(0.35, 0.18), (0.6, 0), (0.35, -0.18)])],
    "west": [("L", [(0.6, 0), (-0.6, 0)]), ("L", [(-0.35, 0.18), (-0.6, 0), (-0.35, -0.18)])],
    "south": [("L", [(0, 0.6), (0, -0.6)]), ("L", [(-0.18, -0.35), (0, -0.6), (0.18, -0.35)])],
    "north": [("L", [(0, -0.6), (0, 0.6)]), ("L", [(-0.18, 0.35), (0, 0.6), (0.18, 0.35)])],
    "bolt": [("L", [(0.3, 0.5), (-0.2, 0.05), (0.3, -0.1), (-0.1, -0.5)]), ("L", [(-0.12, -0.22), (-0.1, -0.5), (0.16, -0.4)])],
    "smoke": [("L", [(-0.5, -0.5), (-0.5, 0.15)] + arc(-0.3, 0.2, 0.2, 180, 0, 6) + arc(0.1, 0.2, 0.2, 180, 360, 6)
               + [(0.5, 0.4)])],
    "squall": [("L", [(-0.5, 0.5), (0, -0.5), (0.5, 0.5)]), ("L", [(-0.28, 0.06), (0.28, 0.06)])],
    "funnel": [("L", arc(-0.7, 0, 0.6, 50, -50)), ("L", arc(0.7, 0, 0.6, 130, 230))],
    "circle": [("L", arc(0, 0, 0.4, 0, 360, 16))],
    "whirl": [("L", [(0, -0.5), (0, -0.35)] + arc(0, -0.2, 0.15, -90, 180, 5) + arc(0.1, 0.1, 0.25, 180, -60, 6)
               + [(-0.1, 0.5)])],
    "prism": [("L", [(-0.6, 0), (0.6, 0)]), ("L", [(-0.35, 0.2), (-0.6, 0), (-0.35, -0.2)]),
              ("L", [(0.35, 0.2), (0.6, 0), (0.35, -0.2)])],
    "question": [("L", arc(0, 0.25, 0.25, 180, -90, 8) + [(0, -0.2)]), ("F", arc(0, -0.42, 0.06, 0, 360, 8))],
}

ONE = [(0.5, 0.5)]
ACROSS = [(0.32, 0.5), (0.68, 0.5)]
UPRIGHT = [(0.5, 0.7), (0.5, 0.3)]
THREE = [(0.5, 0.7), (0.3, 0.33), (0.7, 0.33)]
COLUMN = [(0.5, 0.8), (0.5, 0.5), (0.5, 0.2)]
FOUR = [(0.5, 0.82), (0.22, 0.5), (0.78, 0.5), (0.5, 0.18)]
LAYOUTS = [ONE, ACROSS, UPRIGHT, THREE, COLUMN, FOUR]

SIZES = {"dot": 0.18, "comma": 0.2, "star": 0.13}


def at(name, x, y, size=None):
    return (name, x, y, size if size is not None else SIZES.get(name, 1.0))


def group(name, places):
    return [at(name, x, y) for x, y in places]


def fog(*gaps):
    """Three lines of fog; a number in `gaps` is that line, 0 on top, broken in the middle."""
    parts = []
    for line, y in enumerate((0.7, 0.5, 0.3)):
        parts += [at("bar", 0.28, y, 0.4), at("bar", 0.72, y, 0.4)] if line in gaps else [at("bar", 0.5, y, 0.84)]
    return parts


def showers(*above, bars=0):
    """A triangle with what falls above it; bars across it tell the strength."""
    parts = [at("down", 0.5, 0.32, 0.5)]
    step = 0.85 if len(above) == 1 else 0.92
    for k, name in enumerate(above):
        size = 0.28 if name in ("up", "hail") else None
        parts.append(at(name, 0.5, step - 0.27 * k if len(above) > 1 else 0.78, size))
    return parts + [at("bar", 0.5, 0.45 - 0.13 * k, 0.22 - 0.07 * k) for k in range(bars)]


def past(*parts):
    """Weather of the hour before: moved left, with a bracket on its right."""
    return [(name, 0.02 + 0.75 * x, y, size * (0.75 if size > 0.3 else 1)) for name, x, y, size in parts] + [at("past", 0.86, 0.5, 0.8)]


def storm(*above, kind="thunder"):
    parts = [at(kind, 0.5, 0.36, 0.62)]
    xs = {1: (0.5,), 2: (0.35, 0.65)}.get(len(above), ())
    return parts + [at(name, x, 0.85, 0.22 if name in ("up", "hail") else None) for name, x in zip(above, xs)]


def after_storm(*right):
    """Thunder of the hour before with what falls now."""
    parts = [at("thunder", 0.28, 0.5, 0.55), at("past", 0.6, 0.5, 0.6)]
    ys = (0.5,) if len(right) == 1 else (0.66, 0.34)
    return parts + [at(name, 0.84, y, 0.25 if name in ("up", "hail") else None) for name, y in zip(right, ys)]


def dust(*extra):
    return [at("S", 0.5, 0.5, 0.8), at("east", 0.5, 0.5, 0.75), *extra]


def drift(arrow, bars):
    """Drifting snow: an arrow, low or high, with one or two heads."""
    parts = [at("east", 0.5, 0.5, 0.75), at(arrow, 0.5, 0.5, 0.7)]
    return parts + ([at("east", 0.6, 0.5, 0.75)] if bars > 1 else [])


FOG = fog()
SMALL_TS = [at("thunder", 0.5, 0.5, 0.8)]
WW = {
    0: [at("circle", 0.5, 0.5)],
    1: [at("circle", 0.5, 0.5), at("pole", 0.5, 0.0, 0.2)],
    2: [at("circle", 0.5, 0.5), at("bar", 0.0, 0.5, 0.2), at("bar", 1.0, 0.5, 0.2)],
    3: [at("circle", 0.5, 0.5), at("pole", 0.5, 1.0, 0.2)],
    4: [at("smoke", 0.5, 0.5, 0.8)],
    5: [at("haze", 0.5, 0.5, 0.8)],
    6: [at("S", 0.5, 0.5, 0.8)],
    7: [at("S", 0.5, 0.5, 0.7), at("pole", 0.5, 0.5, 0.9)],
    8: [at("whirl", 0.5, 0.5, 0.9)],
    9: [at("S", 0.5, 0.5, 0.6), at("open", 0.2, 0.5, 0.9), at("shut", 0.8, 0.5, 0.9)],
    10: [at("bar", 0.5, 0.6, 0.84), at("bar", 0.5, 0.4, 0.84)],
    11: [at("bar", 0.28, 0.6, 0.34), at("bar", 0.72, 0.6, 0.34), at("bar", 0.28, 0.4, 0.34)],
    12: [at("bar", 0.5, 0.6, 0.84), at("bar", 0.28, 0.4, 0.4), at("bar", 0.72, 0.4, 0.4)],
    13: [at("bolt", 0.5, 0.5, 0.8)],
    14: [at("dot", 0.5, 0.68), at("south", 0.5, 0.35, 0.35)],
    15: [at("dot", 0.5, 0.5), at("shut", 0.22, 0.5, 0.8), at("open", 0.78, 0.5, 0.8)],
    16: [at("dot", 0.5, 0.5), at("open", 0.22, 0.5, 0.8), at("shut", 0.78, 0.5, 0.8)],
    17: SMALL_TS,
    18: [at("squall", 0.5, 0.5, 0.8)],
    19: [at("funnel", 0.5, 0.5, 0.9)],
    20: past(at("comma", 0.5, 0.5)),
    21: past(at("dot", 0.5, 0.5)),
    22: past(at("star", 0.5, 0.5)),
    23: past(at("dot", 0.5, 0.66), at("star", 0.5, 0.34)),
    24: past(at("wave", 0.5, 0.5, 0.7)),
    25: past(*showers("dot")),
    26: past(*showers("star")),
    27: past(*showers("up")),
    28: past(*FOG),
    29: past(at("thunder", 0.5, 0.5, 0.8)),
    30: dust(at("pole", 0.88, 0.5, 0.4)),
    31: dust(),
    32: dust(at("pole", 0.12, 0.5, 0.4)),
    33: dust(at("pole", 0.88, 0.5, 0.4), at("bar", 0.5, 0.58, 0.75)),
    34: dust(at("bar", 0.5, 0.58, 0.75)),
    35: dust(at("pole", 0.12, 0.5, 0.4), at("bar", 0.5, 0.58, 0.75)),
    36: drift("south", 1),
    37: drift("south", 2),
    38: drift("north", 1),
    39: drift("north", 2),
    40: [*FOG, at("open", 0.03, 0.5, 0.9), at("shut", 0.97, 0.5, 0.9)],
    41: fog(0, 1, 2),
    42: [*fog(0), at("pole", 0.97, 0.5, 0.5)],
    43: [*FOG, at("pole", 0.97, 0.5, 0.5)],
    44: fog(0),
    45: FOG,
    46: [*fog(0), at("pole", 0.03, 0.5, 0.5)],
    47: [*FOG, at("pole", 0.03, 0.5, 0.5)],
    48: [*fog(0), at("pole", 0.5, 0.4, 0.3)],
    49: [*FOG, at("pole", 0.5, 0.4, 0.3)],
    56: [at("wave", 0.5, 0.5), at("comma", 0.28, 0.5)],
    57: [at("wave", 0.5, 0.5), at("comma", 0.22, 0.5), at("comma", 0.78, 0.5)],
    58: [at("comma", 0.5, 0.68), at("dot", 0.5, 0.32)],
    59: [at("comma", 0.5, 0.8), at("dot", 0.5, 0.5), at("dot", 0.5, 0.22)],
    66: [at("wave", 0.5, 0.5), at("dot", 0.28, 0.5)],
    67: [at("wave", 0.5, 0.5), at("dot", 0.22, 0.5), at("dot", 0.78, 0.5)],
    68: [at("dot", 0.5, 0.68), at("star", 0.5, 0.32)],
    69: [at("star", 0.5, 0.8), at("dot", 0.5, 0.5), at("star", 0.5, 0.2)],
    76: [at("prism", 0.5, 0.5, 0.8)],
    77: [at("up", 0.5, 0.5, 0.4), at("bar", 0.5, 0.46, 0.8)],
    78: [at("star", 0.5, 0.5), at("bar", 0.5, 0.5, 0.9)],
    79: [at("up", 0.5, 0.5, 0.8), at("dot", 0.5, 0.42, 0.14)],
    80: showers("dot"),
    81: showers("dot", bars=1),
    82: showers("dot", bars=2),
    83: showers("dot", "star"),
    84: showers("dot", "star", bars=1),
    85: showers("star"),
    86: showers("star", bars=1),
    87: showers("up"),
    88: showers("up", bars=1),
    89: showers("hail"),
    90: showers("hail", bars=1),
    91: after_storm("dot"),
    92: after_storm("dot", "dot"),
    93: after_storm("star"),
    94: after_storm("star", "star"),
    95: storm("dot"),
    96: storm("up"),
    97: storm("dot", kind="heavy"),
    98: [at("thunder", 0.5, 0.36, 0.62), at("S", 0.5, 0.84, 0.32)],
    99: storm("up", kind="heavy"),
}
for tens, element in ((50, "comma"), (60, "dot"), (70, "star")):
    for digit, places in enumerate(LAYOUTS):
        WW[tens + digit] = group(element, places)

# Letter codes; a longer code stands before one that it begins with. Numbers are ww.
LETTERS = {
    "+TSRA": 97, "TSRA": 95, "TSSN": storm("star"), "TSGR": storm("hail"), "TSGS": 96, "TSPL": 96, "TSDU": 98,
    "VCTS": 13, "VCSH": 15, "VCFG": 40, "-FZRA": 66, "+FZRA": 67, "FZRA": 67, "-FZDZ": 56, "+FZDZ": 57, "FZDZ": 57,
    "FZFG": 49, "-SHRA": 80, "+SHRA": 82, "SHRA": 81, "-SHSN": 85, "+SHSN": 86, "SHSN": 86, "SHGR": 90, "SHGS": 88,
    "SHPL": 88, "BLSN": 39, "BLDU": 7, "BLSA": 7, "DRSN": 36, "DRDU": 7, "MIFG": 12, "BCFG": 41, "PRFG": 44,
    "RASN": 69, "SNRA": 69, "-RA": 61, "+RA": 65, "RA": 63, "-SN": 71, "+SN": 75, "SN": 73, "-DZ": 51, "+DZ": 55,
    "DZRA": 58, "DZ": 53, "TS": 17, "PL": 79, "IC": 76, "SG": 77, "GR": 90, "GS": 88, "BR": 10, "FG": 45, "HZ": 5,
    "FU": 4, "VA": 4, "DU": 6, "SA": 6, "SS": 34, "DS": 34, "PO": 8, "SQ": 18, "FC": 19, "UP": [at("question", 0.5, 0.5, 0.8)],
    "TRW": 95, "ZR": 67, "ZL": 57, "IP": 79, "SP": 88, "RW": 81, "SW": 86, "R": 63, "S": 73, "L": 53, "F": 45, "H": 5,
    "K": 4, "D": 6, "A": 90, "T": 17,
}
COMMON = [50, 51, 53, 60, 61, 63, 65, 68, 70, 71, 73, 75, 80, 81, 85, 86, 95, 96]


def strokes(parts):
    for name, x, y, size in parts:
        for kind, points in ELEMENTS[name]:
            yield kind, [(x + size * px, y + size * py) for px, py in points]


def describe(name, parts):
    lines = [name]
    for kind, points in strokes(parts):
        if len(points) > MOST_PAIRS:
            raise ValueError(f"{name}: a stroke of {len(points)} pairs")
        pairs = [f"{x:.3f},{y:.3f}".replace("-0.000", "0.000") for x, y in points]
        for start in range(0, len(pairs), 8):
            tail = f" {kind}" if start + 8 >= len(pairs) else ""
            lines.append("  " + " ".join(pairs[start:start + 8]) + tail)
    return "\n".join(lines) + "\n$\n"


def write(path, symbols):
    if len(symbols) > MOST_SYMBOLS:
        raise ValueError(f"{path}: {len(symbols)} symbols")
    for k, (name, _) in enumerate(symbols):
        for before, _ in symbols[:k]:
            if name.upper().startswith(before.upper()):
                raise ValueError(f"{path}: {name} is hidden by {before}")
    path.write_text("".join(describe(name, parts) for name, parts in symbols))


def main():
    target = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent / "share/zav")
    letters = [(name, WW[code] if isinstance(code, int) else code) for name, code in LETTERS.items()]
    write(target / "wx.smb", letters + [(f"{code:02d}", WW[code]) for code in COMMON])
    write(target / "ww.smb", [(f"{code:02d}", WW[code]) for code in range(100)])


main()
