#!/usr/bin/env python3
"""Makes the stroke fonts in share/zav from the Hershey fonts.

Source: the .jhf files of Debian's package hershey-fonts-data, in /usr/share/hershey-fonts. The Hershey fonts were
originally created by Dr. A. V. Hershey while working at the U. S. National Bureau of Standards; the format of the
source files was originally created by James Hurt, Cognition, Inc. They may be used by anyone for any purpose and
converted into any format but that of the U. S. NTIS, with this acknowledgement, which goes into share/zav/fonts.txt.

Usage: make_fonts.py [source folder [target folder]]
"""

import pathlib
import sys

# Name in the font list, file, source, and a description. The first font is
# the default.
FONTS = [
    ("modern", "modern.fnt", "futural", "one stroke, without serifs"),
    ("duplex", "duplex.fnt", "futuram", "two strokes, without serifs"),
    ("simplex", "simplex.fnt", "rowmans", "one stroke, roman proportions"),
    ("roman", "roman.fnt", "rowmand", "two strokes, roman proportions"),
    ("triplex", "triplex.fnt", "rowmant", "three strokes, roman proportions"),
    ("complex", "complex.fnt", "timesr", "with serifs"),
    ("bold", "bold.fnt", "timesrb", "with serifs, bold"),
    ("italic", "italic.fnt", "timesi", "with serifs, italic"),
    ("bitalic", "bitalic.fnt", "timesib", "with serifs, bold italic"),
    ("script", "script.fnt", "scripts", "handwriting, one stroke"),
    ("cscript", "cscript.fnt", "scriptc", "handwriting, two strokes"),
    ("greek", "greek.fnt", "greeks", "Greek letters, one stroke"),
    ("cgreek", "cgreek.fnt", "greekc", "Greek letters with serifs"),
    ("cyrillic", "cyrillic.fnt", "cyrillic", "Cyrillic letters"),
    ("gothic", "gothic.fnt", "gothiceng", "black letter, English"),
    ("german", "german.fnt", "gothicger", "black letter, German"),
    ("italian", "italian.fnt", "gothicita", "black letter, Italian"),
    ("symbol", "symbol.fnt", "symbolic", "symbols"),
    ("math", "math.fnt", "mathlow", "mathematical signs"),
    ("marker", "marker.fnt", "markers", "plot markers"),
    ("weather", "weather.fnt", "meteorology", "weather signs"),
]

# Font units: a capital letter is 105 units high and 21 source units.
SCALE = 5
BASELINE = 35
SOURCE_BASELINE = 9  # y of the baseline in source units, downward
MAX_X = 125  # with the pen-up bit, 126 and 127 would be end marks
MAX_Y = 253
BLANK_GAP = 12  # left bearing that the space between characters covers, in font units
FIRST_CHAR = 32
PEN_UP = 128
END_OF_CHAR = 255
END_OF_DATA = 254
DATA_LIMIT = 15000
DEGREE_SIGN = 176


def read_records(path):
    """Glyphs of a source file: a number in five columns, a count of pairs in three, and the pairs, over one or more
    lines."""
    text = path.read_text(encoding="latin-1").split("\n")
    line = 0
    while line < len(text) and text[line].strip():
        record = text[line]
        count = int(record[5:8])
        data = record[8:]
        while len(data) < 2 * count:
            line += 1
            data += text[line]
        yield data[: 2 * count]
        line += 1


def strokes_of(data):
    """Left bound and strokes of a glyph, each stroke a list of (x, y) in source units."""
    value = lambda char: ord(char) - ord("R")
    left = value(data[0])
    strokes = [[]]
    for i in range(2, len(data), 2):
        if data[i : i + 2] == " R":
            strokes.append([])
        else:
            strokes[-1].append((value(data[i]), value(data[i + 1])))
    return left, [stroke for stroke in strokes if stroke]


def encode(left, strokes):
    """The strokes as font data."""
    points = [point for stroke in strokes for point in stroke]
    low = min(x for x, _ in points)
    high = max(x for x, _ in points)
    shift = max(0, SCALE * (low - left) - BLANK_GAP)
    width = SCALE * (high - low)
    shift = min(shift, max(0, MAX_X - width))
    factor = min(1.0, (MAX_X - shift) / width) if width else 1.0
    data = []
    for stroke in strokes:
        # A point without extent is drawn as a line of its own.
        for i, (x, y) in enumerate(stroke if len(stroke) > 1 else stroke * 2):
            font_x = shift + round(SCALE * (x - low) * factor)
            font_y = min(max(BASELINE + round(SCALE * (SOURCE_BASELINE - y)), 0), MAX_Y)
            data += [font_x + (PEN_UP if i == 0 else 0), font_y]
    return data + [END_OF_CHAR]


def circle(center_x, center_y, radius):
    """A closed figure of twelve sides, in source units."""
    unit = [(2, 0), (1.73, 1), (1, 1.73), (0, 2), (-1, 1.73), (-1.73, 1)]
    unit += [(-x, -y) for x, y in unit] + unit[:1]
    return [(center_x + x * radius / 2, center_y + y * radius / 2) for x, y in unit]


def make_font(source):
    data = [END_OF_CHAR]
    index = [-1] * 256
    glyphs = {FIRST_CHAR + i: strokes_of(record) for i, record in enumerate(read_records(source))}
    glyphs = {char: glyph for char, glyph in glyphs.items() if char < 127}
    glyphs[DEGREE_SIGN] = (-5, [circle(0, -9, 3)])
    for char, (left, strokes) in sorted(glyphs.items()):
        if strokes:
            index[char] = len(data)
            data += encode(left, strokes)
    if len(data) > DATA_LIMIT:
        sys.exit(f"{source}: {len(data)} bytes are more than a font holds")
    return data, index


def write_numbers(file, numbers):
    for i in range(0, len(numbers), 20):
        file.write(" ".join(str(number) for number in numbers[i : i + 20]) + "\n")


def main():
    source = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "/usr/share/hershey-fonts")
    root = pathlib.Path(__file__).resolve().parent.parent
    target = pathlib.Path(sys.argv[2]) if len(sys.argv) > 2 else root / "share" / "zav"
    target.mkdir(parents=True, exist_ok=True)
    for _, file_name, glyphs, _ in FONTS:
        data, index = make_font(source / f"{glyphs}.jhf")
        with open(target / file_name, "w", encoding="ascii") as file:
            write_numbers(file, data + [END_OF_DATA])
            write_numbers(file, index)
    with open(target / "zav.fnl", "w", encoding="ascii") as file:
        for name, file_name, _, _ in FONTS:
            file.write(f"{name:<9} {file_name}\n")
    with open(target / "fonts.txt", "w", encoding="ascii") as file:
        file.write(__doc__.split("\n\n")[1].replace(", which goes into share/zav/fonts.txt", "") + "\n\n")
        file.write("Fonts, in the order of the font list:\n\n")
        for number, (name, file_name, glyphs, text) in enumerate(FONTS, 1):
            file.write(f"{number:3} {name:<9} {file_name:<13} {text} ({glyphs})\n")


if __name__ == "__main__":
    main()
