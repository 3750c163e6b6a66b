"""Where the levels of the map databases come from: shores of GSHHG and provinces of Natural Earth, as plain lists.

A ring is a list of (longitude, latitude) in degrees, its last point not repeated, with longitudes that go on beyond 180
degrees where it crosses the date line. A line is such a list, open.
"""

import collections
import re
import sqlite3
import struct
import subprocess


# ---- GSHHG, as packed in Debian's gmt-gshhg-high: segments in bins of 2 degrees


def netcdf_arrays(path, names):
    """Variables of a netCDF file as lists of numbers, read by `ncdump` (Debian: netcdf-bin)."""
    dump = subprocess.run(["ncdump", "-v", ",".join(names), path], capture_output=True, text=True, check=True).stdout
    arrays = {}
    for match in re.finditer(r"\n (\w+) =([^;]*);", dump[dump.index("\ndata:") :]):
        arrays[match[1]] = [0 if word == "_" else int(word) for word in match[2].replace(",", " ").split()]
    return arrays


BINS, FIRST, COUNT = 180, "Id_of_first_segment_in_a_bin", "N_segments_in_a_bin"
INFO, POINT = "Embedded_npts_levels_exit_entry_for_a_segment", "Id_of_first_point_in_a_segment"
RING = "Id_of_GSHHS_ID"
EAST, NORTH = "Relative_longitude_from_SW_corner_of_bin", "Relative_latitude_from_SW_corner_of_bin"
BIN_UNITS = 65535  # across a bin
TURN = BINS * BIN_UNITS
GROUNDING_LINE = 6  # level of Antarctica without its ice shelves, an alternative to its ice front


def shore_segments(path):
    """(level, ring number, points in units of a bin) of every segment."""
    data = netcdf_arrays(path, [FIRST, COUNT, INFO, POINT, RING, EAST, NORTH])
    for number, (first, count) in enumerate(zip(data[FIRST], data[COUNT])):
        west, south = number % BINS * BIN_UNITS, (BINS // 2 - 1 - number // BINS) * BIN_UNITS
        for segment in range(first, first + (count & 0xFFFF)):
            info, start = data[INFO][segment] & 0xFFFFFFFF, data[POINT][segment]
            where = slice(start, start + (info >> 9))
            points = [
                (west + (x & 0xFFFF), south + (y & 0xFFFF)) for x, y in zip(data[EAST][where], data[NORTH][where])
            ]
            yield info >> 6 & 7, data[RING][segment], points


def chained(segments):
    """Closed rings out of segments that meet at their ends, whichever way each of them runs."""

    def key(point):
        return point[0] % TURN, point[1]

    at = collections.defaultdict(list)
    for number, points in enumerate(segments):
        at[key(points[0])].append(number)
        at[key(points[-1])].append(number)
    used = set()
    for number, points in enumerate(segments):
        if number in used:
            continue
        used.add(number)
        ring = list(points)
        while key(ring[-1]) != key(ring[0]):
            follower = next((n for n in at[key(ring[-1])] if n not in used), None)
            if follower is None:
                break
            used.add(follower)
            piece = segments[follower]
            if key(piece[0]) != key(ring[-1]):
                piece = piece[::-1]
            turn = ring[-1][0] - piece[0][0]
            ring += [(x + turn, y) for x, y in piece[1:]]
        yield ring


def shores(path):
    """Rings of land and of islands in lakes, and rings of lakes. A ring round the pole is closed along it."""
    by_ring = collections.defaultdict(list)
    for level, ring, points in shore_segments(path):
        if level != GROUNDING_LINE:
            by_ring[level, ring].append(points)
    land, lakes = [], []
    for (level, _), segments in by_ring.items():
        for ring in chained(segments):
            degrees = [(x * 2.0 / BIN_UNITS, y * 2.0 / BIN_UNITS - 90.0) for x, y in ring]
            turn = degrees[-1][0] - degrees[0][0]
            degrees = degrees + [(degrees[-1][0], -90.0), (degrees[0][0], -90.0)] if abs(turn) > 1 else degrees[:-1]
            middle = sum(lon for lon, _ in degrees) / len(degrees)
            shift = -360.0 if middle > 180.0 else 0.0
            if len(degrees) > 2:
                (lakes if level in (2, 4) else land).append([(lon + shift, lat) for lon, lat in degrees])
    return land, lakes


# ---- provinces of Natural Earth 1:10m, as packed in QGIS's world map


def package_polygons(blob):
    """Rings of a MultiPolygon of a GeoPackage: a head whose envelope is passed over, then well-known binary."""
    envelope = (0, 32, 48, 48, 64)[blob[3] >> 1 & 7]
    place = 8 + envelope
    (parts,) = struct.unpack_from("<I", blob, place + 5)
    place += 9
    for _ in range(parts):
        (rings,) = struct.unpack_from("<I", blob, place + 5)
        place += 9
        for _ in range(rings):
            (count,) = struct.unpack_from("<I", blob, place)
            numbers = struct.unpack_from(f"<{2 * count}d", blob, place + 4)
            place += 4 + 16 * count
            yield list(zip(numbers[0::2], numbers[1::2]))


def provinces(path):
    """Rings of the provinces, as (country, province number, ring), rings closed by their first point."""
    database = sqlite3.connect(path)
    for number, country, blob in database.execute("select fid, adm0_a3, geom from states_provinces order by fid"):
        for ring in package_polygons(blob):
            yield country, number, [(round(lon, 7), round(lat, 7)) for lon, lat in ring]


def inner_borders(rings):
    """Lines that two provinces of one country share: sides that occur twice, joined where no third line ends."""
    owners = collections.defaultdict(set)
    for country, province, ring in rings:
        for a, b in zip(ring, ring[1:]):
            if a != b:
                owners[min(a, b), max(a, b)].add((country, province))
    following = collections.defaultdict(list)
    for (a, b), sides in owners.items():
        if len(sides) == 2 and len({country for country, _ in sides}) == 1:
            following[a].append(b)
            following[b].append(a)
    used = set()
    starts = [p for p in following if len(following[p]) != 2] + list(following)
    for start in starts:
        for second in following[start]:
            if (start, second) in used:
                continue
            line = [start, second]
            used |= {(start, second), (second, start)}
            while len(following[line[-1]]) == 2 and line[-1] != start:
                after = next((p for p in following[line[-1]] if (line[-1], p) not in used), None)
                if after is None:
                    break
                used |= {(line[-1], after), (after, line[-1])}
                line.append(after)
            yield line
