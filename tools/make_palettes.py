#!/usr/bin/env python3
"""Writes share/zav/zav.pal: published palettes, cut to the lightness that black lines stay legible on, with stops set so
that equal steps look equal to every eye.

The distance between two colours is the least of their CIELAB distances (CIE 15) as seen with normal vision and with
full protanopia, deuteranopia and tritanopia, simulated by the matrices of Machado, Oliveira and Fernandes 2009 ("A
physiologically-based model for simulation of color vision deficiency", IEEE Trans. Vis. Comput. Graph. 15). Stops divide
a palette, or each half of one that diverges, into equal distances.

The colours of Crameri's maps, viridis and plasma are read from Debian's package gmt-common.
Usage: tools/make_palettes.py [output file]
"""
import math
import re
import sys
from pathlib import Path

CPT = Path("/usr/share/gmt/cpt")
STOPS = 17
COARSE = 28  # colours taken of a map of 256
FINE = 2000  # points along a palette where it is measured

# ColorBrewer's classes (Cynthia Brewer, colorbrewer2.org), the most of each scheme.
BREWER = {
    "YlGnBu": "ffffd9 edf8b1 c7e9b4 7fcdbb 41b6c4 1d91c0 225ea8 253494 081d58",
    "YlOrRd": "ffffcc ffeda0 fed976 feb24c fd8d3c fc4e2a e31a1c bd0026 800026",
    "RdYlBu": "a50026 d73027 f46d43 fdae61 fee090 ffffbf e0f3f8 abd9e9 74add1 4575b4 313695",
    "RdBu": "67001f b2182b d6604d f4a582 fddbc7 f7f7f7 d1e5f0 92c5de 4393c3 2166ac 053061",
}

# name, where its colours are, lightness at the low end and at the high end; in the middle for those that diverge
PALETTES = [
    ("batlow", "SCM/batlowW", 98, 38, None),
    ("height", "SCM/imola", 32, 98, None),
    ("wet", "YlGnBu", 98, 38, None),
    ("heat", "YlOrRd", 98, 38, None),
    ("viridis", "matplotlib/viridis", 91, 38, None),
    ("plasma", "matplotlib/plasma", 94, 38, None),
    ("temperature", "RdYlBu", 35, 35, 99),
    ("signed", "RdBu", 35, 35, 98),
    ("ink", "matplotlib/viridis", 75, 15, None),
    ("light", "matplotlib/viridis", 40, 91, None),
]

HEAD = """\
# Palettes: the colours of fields that no list, level file or colour table colours.
#
# palette: a name and its colours as hexadecimal red, green, blue, from low values to high in equal steps. Where they
#   come from is told in docs/data.md; tools/make_palettes.py writes this file.
# field: abbreviations of variables, their palette and, for one that diverges, the value of its middle with its unit.
#   "*" stands for the variables that no line names.
# lines: palette of lines, winds and values coloured by band, on paper and on a dark screen.
"""

FIELDS = """\
field temp,vtemp,tmax,tmin,dewp,tsoil,wtmp,aptmp,skt,snot,vegt,uplst,botlst,brtmp,wetblb,wchill,wchill2,heatx temperature 0 C
field uwnd,vwnd,ugust,vgust,vvel,dzdt,avort,rvort,pvort,adiv,diverg,conv,mconv,vconv,adv,lapl,dx,dy,def1,def2,ugeos,vgeos signed 0
field tmpa,presa,hghta,ptend,strf,vpot,li,li4,bli,pli,cin,shtfl,lhtfl,show signed 0
field rhum,shum,mixrat,pwat,apcp,cprcp,lprcp,prate,cprat,tcld,lcld,mcld,hcld,cwat,tcwat,weasd,snod,asnow wet
field hght,gmht,geopt,hgtx,hgty,pres,pmsl,mslma,mslet,theta,thetae,thetav,thick height
field cape,hlcy heat
field wspd,gust,maxgust,spc viridis
field refzr,refzi,refzc,refd,refc,maxref plasma
field * batlow
lines paper ink
lines screen light
"""

# Machado et al. 2009, severity 1
VIEWS = [
    [[1, 0, 0], [0, 1, 0], [0, 0, 1]],
    [[0.152286, 1.052583, -0.204868], [0.114503, 0.786281, 0.099216], [-0.003882, -0.048116, 1.051998]],
    [[0.367322, 0.860646, -0.227968], [0.280085, 0.672501, 0.047413], [-0.011820, 0.042940, 0.968881]],
    [[1.255528, -0.076749, -0.178779], [-0.078411, 0.930809, 0.147602], [0.004733, 0.691367, 0.303900]],
]
# sRGB (IEC 61966-2-1) to CIE XYZ, each row divided by the white point
XYZ = [[0.433953, 0.376219, 0.189828], [0.212673, 0.715152, 0.072175], [0.017756, 0.109478, 0.872766]]


def times(matrix, vector):
    return [sum(a * b for a, b in zip(row, vector)) for row in matrix]


def linear(part):
    return part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4


def lab(rgb):
    """CIELAB of linear components."""
    x, y, z = (t ** (1 / 3) if t > 0.008856 else 7.787 * t + 16 / 116 for t in times(XYZ, rgb))
    return 116 * y - 16, 500 * (x - y), 200 * (y - z)


def seen(rgb):
    """CIELAB of a colour in each view."""
    light = [linear(part) for part in rgb]
    return [lab([min(max(part, 0), 1) for part in times(view, light)]) for view in VIEWS]


def distance(one, two):
    """The least distance in any view of two colours as `seen`."""
    return min(math.dist(p, q) for p, q in zip(one, two))


def lightness(rgb):
    return seen(rgb)[0][0]


def source_colours(name):
    if name in BREWER:
        return [[int(h[i : i + 2], 16) / 255 for i in (0, 2, 4)] for h in BREWER[name].split()]
    lines = (CPT / f"{name}.cpt").read_text().splitlines()
    found = [re.match(r"[\d.+-]+\s+([\d/]+)\s", line) for line in lines]
    colours = [[int(part) / 255 for part in match[1].split("/")] for match in found if match]
    return colours[:: len(colours) // COARSE]  # 8 bits are too coarse for nearer ones


def colour_at(colours, part):
    place = part * (len(colours) - 1)
    i = min(int(place), len(colours) - 2)
    return [a + (b - a) * (place - i) for a, b in zip(colours[i], colours[i + 1])]


def walk(views, step):
    """Places along a path that lie `step` apart each."""
    places = [0]
    for i, view in enumerate(views):
        if distance(views[places[-1]], view) >= step:
            places.append(i)
    return places


def even_stops(path, count):
    """Colours along a fine path, its ends with them, that lie as far apart as `count` of them can."""
    views = [seen(rgb) for rgb in path]
    low, high = 0.0, 100.0
    for _ in range(30):
        middle = (low + high) / 2
        low, high = (middle, high) if len(walk(views, middle)) >= count else (low, middle)
    return [path[i] for i in walk(views, low)[: count - 1]] + [path[-1]]


def between(path, low, high):
    """The part of a path between two lightnesses, from low to high in the sense of its direction."""
    least, most = min(low, high), max(low, high)
    part = [rgb for rgb in path if least <= lightness(rgb) <= most]
    return part if (lightness(part[0]) < lightness(part[-1])) == (low < high) else part[::-1]


def stops(source, low, high, middle):
    path = [colour_at(source_colours(source), i / FINE) for i in range(FINE + 1)]
    if middle is None:
        return even_stops(between(path, low, high), STOPS)
    path.reverse()  # ColorBrewer's go from red to blue
    top = max(range(len(path)), key=lambda i: lightness(path[i]))
    left, right = between(path[: top + 1], low, 100), between(path[top:], 100, high)
    half = STOPS // 2 + 1
    return even_stops(left, half) + even_stops(right, half)[1:]


def main():
    target = Path(sys.argv[1] if len(sys.argv) > 1 else "share/zav/zav.pal")
    lines = []
    for name, *recipe in PALETTES:
        colours = stops(*recipe)
        lines.append(f"palette {name} " + " ".join("".join(f"{round(part * 255):02x}" for part in c) for c in colours))
    target.write_text(HEAD + "\n" + "\n".join(lines) + "\n\n" + FIELDS)


if __name__ == "__main__":
    main()
