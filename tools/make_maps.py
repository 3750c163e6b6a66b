#!/usr/bin/env python3
"""Makes the map databases in share/zav from the TopoJSON files of two npm packages.

Source: world-atlas 2.0.2 (land and countries, from Natural Earth, public domain) and us-atlas 3.0.1 (states, from the
cartographic boundaries of the US Census Bureau, public domain). Fetch them into a folder of their own:

    npm install --prefix FOLDER world-atlas@2.0.2 us-atlas@3.0.1

Usage: make_maps.py FOLDER [target folder]

    zav.map      North America in detail: coasts, borders of countries and states, the US shores of the Great Lakes;
                 the rest of the earth north of 25 S, coarser, as far as a chart of North America can show it
    cont.map     the world's coasts
    country.map  the world's borders
    land.map     the world's land as areas, cut into pieces

A file is a series of records, all big-endian: count of points (16 bits), highest and lowest latitude, highest and
lowest longitude (32-bit floats), an offset (32 bits, 0), and the points as latitude and longitude in degrees (32-bit
floats). A record with the count 0 ends it. No record crosses the date line.
"""

import json
import math
import pathlib
import struct
import sys

LINE_STEP = 1.0  # degrees, longest segment of a line: a border along a parallel bends on most maps
LINE_POINTS = 200  # of a line's record: short records are skipped sooner where they can't be seen
AREA_POINTS = 990  # a reader needs no storage of its own for records below 1000
AREA_TILE = 15.0  # degrees, largest piece of land
AREA_STEP = 2.5  # degrees, longest side of an area, so that cuts follow the map's curves
SPECK = 0.06  # degrees, islands smaller than this are left out

# Longest distance of a point that is left out from the line, in degrees.
WORLD_TOLERANCE = 0.03
AREA_TOLERANCE = 0.05
DETAIL_TOLERANCE = 0.02
AROUND_TOLERANCE = 0.08

DETAIL_BOX = (7.0, 84.0, -172.0, -12.0)  # south, north, west, east of North America
AROUND_SOUTH = -25.0
LAKES_BOX = (41.0, 49.3, -92.5, -76.0)


class Topology:
    """The arcs of a TopoJSON file as lists of (longitude, latitude), and its objects."""

    def __init__(self, path):
        data = json.loads(path.read_text(encoding="utf-8"))
        scale, origin = data["transform"]["scale"], data["transform"]["translate"]
        self.objects = data["objects"]
        self.arcs = []
        for deltas in data["arcs"]:
            x = y = 0
            arc = []
            for dx, dy in deltas:
                x, y = x + dx, y + dy
                lon = min(max(x * scale[0] + origin[0], -180.0), 180.0)
                arc.append((lon, min(max(y * scale[1] + origin[1], -90.0), 90.0)))
            self.arcs.append(unwrapped(arc))

    def polygons(self, name):
        """Polygons of an object, each a list of rings, each a list of arc numbers."""
        found = []
        for shape in self.objects[name]["geometries"]:
            if shape["type"] == "Polygon":
                found.append(shape["arcs"])
            elif shape["type"] == "MultiPolygon":
                found.extend(shape["arcs"])
        return found

    def uses(self, name):
        """How many rings each arc belongs to: 1 on a coast, 2 on a border."""
        count = [0] * len(self.arcs)
        for polygon in self.polygons(name):
            for ring in polygon:
                for arc in ring:
                    count[arc if arc >= 0 else ~arc] += 1
        return count


def unwrapped(points):
    """The line with longitudes that go on beyond 180 degrees where it crosses the date line, so that no segment runs
    round the globe. The sheet's lower frame, at the south pole, stays as it is."""
    out = points[:1]
    turn = 0.0
    for a, b in zip(points, points[1:]):
        if abs(b[0] - a[0]) > 180.0 and max(a[1], b[1]) > -85.0:
            turn += 360.0 if b[0] < a[0] else -360.0
        out.append((b[0] + turn, b[1]))
    return out


def wrapped(lon):
    return lon - 360.0 if lon > 180.0 else lon + 360.0 if lon < -180.0 else lon


def on_sheet(points):
    """Pieces of an unwrapped line between the date lines, each with longitudes from -180 to 180."""
    piece = points[:1]
    pieces = []
    for a, b in zip(points, points[1:]):
        for bound in (-180.0, 180.0):
            if (a[0] - bound) * (b[0] - bound) < 0.0:
                lat = a[1] + (b[1] - a[1]) * (bound - a[0]) / (b[0] - a[0])
                pieces.append(piece + [(bound, lat)])
                piece = [(bound, lat)]
        piece.append(b)
    pieces.append(piece)
    for piece in pieces:
        middle = sum(p[0] for p in piece) / len(piece)
        turn = wrapped(middle) - middle
        if len(piece) > 1:
            yield [(lon + turn, lat) for lon, lat in piece]


def simplify(points, tolerance):
    """Leaves points out by the method of Douglas and Peucker."""
    if len(points) < 3:
        return list(points)
    shrink = max(math.cos(math.radians(points[len(points) // 2][1])), 0.1)
    flat = [(lon * shrink, lat) for lon, lat in points]
    keep = {0, len(points) - 1}
    spans = [(0, len(points) - 1)]
    while spans:
        first, last = spans.pop()
        (x1, y1), (x2, y2) = flat[first], flat[last]
        dx, dy = x2 - x1, y2 - y1
        length = dx * dx + dy * dy
        worst, place = tolerance * tolerance, None
        for i in range(first + 1, last):
            x, y = flat[i][0] - x1, flat[i][1] - y1
            along = min(max((x * dx + y * dy) / length, 0.0), 1.0) if length else 0.0
            gap = (x - along * dx) ** 2 + (y - along * dy) ** 2
            if gap > worst:
                worst, place = gap, i
        if place is not None:
            keep.add(place)
            spans += [(first, place), (place, last)]
    return [points[i] for i in sorted(keep)]


def with_short_sides(points, step):
    """The line with points added on its long segments."""
    out = points[:1]
    for a, b in zip(points, points[1:]):
        count = math.ceil(max(abs(b[0] - a[0]), abs(b[1] - a[1])) / step)
        for i in range(1, count):
            out.append((a[0] + (b[0] - a[0]) * i / count, a[1] + (b[1] - a[1]) * i / count))
        out.append(b)
    return out


def is_frame(a, b):
    """True for a segment that is no coast but closes a polygon along the date line or at the pole."""
    along_date_line = all(abs(abs(p[0]) - 180.0) < 0.01 for p in (a, b))
    return along_date_line or (a[1] < -85.0 and b[1] < -85.0)


def without_frame(points):
    """Pieces of a line that remain without the segments of the sheet's frame."""
    piece = points[:1]
    for a, b in zip(points, points[1:]):
        if is_frame(a, b):
            yield piece
            piece = []
        piece.append(b)
    yield piece


def is_speck(points):
    lons, lats = [p[0] for p in points], [p[1] for p in points]
    shrink = math.cos(math.radians(lats[0]))
    return points[0] == points[-1] and max((max(lons) - min(lons)) * shrink, max(lats) - min(lats)) < SPECK


def inside(point, box):
    return box[0] <= point[1] <= box[1] and box[2] <= point[0] <= box[3]


def pieces_where(points, test):
    """Pieces of a line whose points pass the test."""
    piece = []
    for point in points:
        if test((wrapped(point[0]), point[1])):
            piece.append(point)
            continue
        if piece:
            yield piece
        piece = []
    if piece:
        yield piece


def lines(arcs, tolerance, test=None):
    """Lines for a map file out of arcs."""
    for arc in arcs:
        for whole in without_frame(arc):
            for piece in pieces_where(whole, test) if test else [whole]:
                if len(piece) < 2 or is_speck(piece):
                    continue
                for part in on_sheet(simplify(piece, tolerance)):
                    line = with_short_sides(part, LINE_STEP)
                    for start in range(0, len(line) - 1, LINE_POINTS - 1):
                        yield line[start : start + LINE_POINTS]


def write_map(path, records):
    with open(path, "wb") as file:
        for record in records:
            lons, lats = [p[0] for p in record], [p[1] for p in record]
            file.write(struct.pack(">Hffffi", len(record), max(lats), min(lats), max(lons), min(lons), 0))
            file.write(b"".join(struct.pack(">ff", lat, lon) for lon, lat in record))
        file.write(struct.pack(">Hffffi", 0, 0, 0, 0, 0, 0))
    points = sum(map(len, records))
    print(f"{path.name}: {len(records)} records, {points} points, {path.stat().st_size} bytes")


# ---- areas


def ring_points(arcs, ring):
    points = []
    for arc in ring:
        piece = arcs[arc] if arc >= 0 else arcs[~arc][::-1]
        if points:
            # An arc begins where the one before it ends, a whole turn off where that has crossed the date line.
            turn = 360.0 * round((points[-1][0] - piece[0][0]) / 360.0) if piece[0][1] > -85.0 else 0.0
            piece = [(lon + turn, lat) for lon, lat in piece[1:]]
        points += piece
    return points[:-1]


def area(points):
    return sum(a[0] * b[1] - b[0] * a[1] for a, b in zip(points, points[1:] + points[:1])) / 2.0


def with_hole(outer, hole):
    """The outer ring with a hole joined to it by a double line between their nearest points."""
    if (area(outer) > 0) == (area(hole) > 0):
        hole = hole[::-1]
    _, i, k = min(
        ((a[0] - b[0]) ** 2 + (a[1] - b[1]) ** 2, i, k) for i, a in enumerate(outer) for k, b in enumerate(hole)
    )
    return outer[: i + 1] + hole[k:] + hole[: k + 1] + outer[i:]


def clip(points, axis, bound, above):
    """The part of a polygon on one side of a line of constant longitude (axis 0) or latitude (Sutherland, Hodgman)."""
    kept = []
    for a, b in zip(points[-1:] + points[:-1], points):
        a_in = a[axis] >= bound if above else a[axis] <= bound
        b_in = b[axis] >= bound if above else b[axis] <= bound
        if a_in != b_in:
            part = (bound - a[axis]) / (b[axis] - a[axis])
            other = a[1 - axis] + part * (b[1 - axis] - a[1 - axis])
            kept.append((bound, other) if axis == 0 else (other, bound))
        if b_in:
            kept.append(b)
    return kept


def tiles(points):
    """Pieces of a polygon that are small enough, by cutting the larger side of its box at multiples of the tile's size
    first, then in halves."""
    if len(points) < 3 or abs(area(points)) < 1e-6:
        return
    bounds = [(min(p[axis] for p in points), max(p[axis] for p in points)) for axis in (0, 1)]
    for bound in (-180.0, 180.0):
        if bounds[0][0] < bound - 1e-9 and bounds[0][1] > bound + 1e-9:
            for above in (False, True):
                yield from tiles(clip(points, 0, bound, above))
            return
    axis = 0 if bounds[0][1] - bounds[0][0] >= bounds[1][1] - bounds[1][0] else 1
    low, high = bounds[axis]
    cut = math.floor(low / AREA_TILE + 1e-9) * AREA_TILE + AREA_TILE
    if high <= cut + 1e-9:
        ring = with_short_sides(points + points[:1], AREA_STEP)
        if len(ring) <= AREA_POINTS:
            middle = sum(p[0] for p in ring) / len(ring)
            turn = wrapped(middle) - middle
            yield [(lon + turn, lat) for lon, lat in ring]
            return
        cut = (low + high) / 2.0
    for above in (False, True):
        yield from tiles(clip(points, axis, cut, above))


def land_areas(topology):
    records = []
    arcs = [simplify(arc, AREA_TOLERANCE) for arc in topology.arcs]
    for rings in topology.polygons("land"):
        outer = ring_points(arcs, rings[0])
        if len(outer) < 3 or is_speck(outer + outer[:1]):
            continue
        for ring in rings[1:]:
            hole = ring_points(arcs, ring)
            if len(hole) >= 3:
                outer = with_hole(outer, hole)
        records.extend(tiles(outer))
    return records


# ---- North America


def shared_arcs(topology, name):
    return [arc for arc, uses in zip(topology.arcs, topology.uses(name)) if uses == 2]


def is_detail(point):
    return inside(point, DETAIL_BOX)


def is_around(point):
    return not is_detail(point) and point[1] > AROUND_SOUTH


def is_lake_shore(point):
    """The states' outer line round the Great Lakes; east of it lies the sea's coast, which the land has."""
    lon, lat = point
    return inside(point, LAKES_BOX) and lat < 49.3 and (lon < -79.0 or lat > 42.5)


def north_america(world, folder):
    fine_land = Topology(folder / "world-atlas/land-10m.json")
    fine_countries = Topology(folder / "world-atlas/countries-10m.json")
    states = Topology(folder / "us-atlas/states-10m.json")
    shores = [arc for arc, uses in zip(states.arcs, states.uses("states")) if uses == 1]
    records = list(lines(fine_land.arcs, DETAIL_TOLERANCE, is_detail))
    records += lines(shared_arcs(fine_countries, "countries"), DETAIL_TOLERANCE, is_detail)
    records += lines(shared_arcs(states, "states"), DETAIL_TOLERANCE)
    records += lines(shores, DETAIL_TOLERANCE, is_lake_shore)
    records += lines(world["land"].arcs, AROUND_TOLERANCE, is_around)
    records += lines(shared_arcs(world["countries"], "countries"), AROUND_TOLERANCE, is_around)
    return records


def main():
    folder = pathlib.Path(sys.argv[1]) / "node_modules"
    target = pathlib.Path(sys.argv[2]) if len(sys.argv) > 2 else pathlib.Path(__file__).parent.parent / "share/zav"
    world = {name: Topology(folder / f"world-atlas/{name}-50m.json") for name in ("land", "countries")}
    write_map(target / "cont.map", list(lines(world["land"].arcs, WORLD_TOLERANCE)))
    write_map(target / "country.map", list(lines(shared_arcs(world["countries"], "countries"), WORLD_TOLERANCE)))
    write_map(target / "land.map", land_areas(world["land"]))
    write_map(target / "zav.map", north_america(world, folder))


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    main()
