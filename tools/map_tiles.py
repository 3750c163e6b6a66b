"""Areas cut into tiles, and the compact form of map files.

The tiles reach a little over their bounds, so that no gap shows between two of them, and cuts never run along a cut
where there is no area: a polygon that a cut divides becomes several.
"""

import math
import struct

from make_maps import area, with_hole, with_short_sides

TILE = 15.0  # degrees, largest tile
CAP = -82.5  # degrees, southward of which the land is one piece: overlaps in longitude come to nothing at the pole
STEP = 2.5  # degrees, longest side, so that cuts follow the map's curves
POINTS = 900  # of an area
OFF_POINTS = 1.234567e-5  # degrees, by which cuts keep off the round coordinates that points have


def half(rings, axis, bound, above):
    """The part of even-odd rings on one side of a line of constant longitude (axis 0) or latitude (axis 1). No point
    may lie on the line. Where chains of points leave that side, they go on along the line to the next crossing that has
    area up to it."""
    kept, chains = [], []
    for ring in rings:
        sides = [(p[axis] > bound) == above for p in ring]
        if all(sides):
            kept.append(ring)
        if all(sides) or not any(sides):
            continue
        first = next(i for i in range(len(ring)) if sides[i] and not sides[i - 1])
        chain = []
        for i in range(first, first + len(ring)):
            a, b = ring[(i - 1) % len(ring)], ring[i % len(ring)]
            a_in, b_in = sides[(i - 1) % len(ring)], sides[i % len(ring)]
            if a_in != b_in:
                other = a[1 - axis] + (bound - a[axis]) / (b[axis] - a[axis]) * (b[1 - axis] - a[1 - axis])
                chain.append((bound, other) if axis == 0 else (other, bound))
            if a_in and not b_in:
                chains.append(chain)
                chain = []
            elif b_in:
                chain.append(b)
    return kept + linked(chains, axis)


def linked(chains, axis):
    """Rings out of chains whose ends lie on one line: sorted along it, the first end is joined to the second, the third
    to the fourth, and so on."""
    ends = sorted((chain[end][1 - axis], number, end) for number, chain in enumerate(chains) for end in (0, -1))
    partner = {}
    for (_, n1, e1), (_, n2, e2) in zip(ends[0::2], ends[1::2]):
        partner[n1, e1], partner[n2, e2] = (n2, e2), (n1, e1)
    rings, left = [], set(range(len(chains)))
    while left:
        start = number = min(left)
        way, ring = -1, []
        while True:
            left.discard(number)
            ring += chains[number] if way == -1 else chains[number][::-1]
            number, met = partner[number, way]
            way = -1 if met == 0 else 0
            if number == start:
                break
        rings.append(ring)
    return rings


def box(rings):
    return [(min(p[axis] for ring in rings for p in ring), max(p[axis] for ring in rings for p in ring)) for axis in (0, 1)]


def tiles(rings, bounds, overlap):
    """Sets of rings, each within a tile that reaches `overlap` degrees of latitude over its bounds."""
    if not rings:
        return
    (west, east), (south, north) = bounds
    size = (east - west, north - south)
    small = max(size) <= TILE + 1e-6 and sum(map(len, rings)) <= POINTS
    if small or max(size) < 8 * overlap:
        yield rings
        return
    axis = 0 if size[0] >= size[1] else 1
    middle = (bounds[axis][0] + bounds[axis][1]) / 2
    shrink = max(math.cos(math.radians((south + north) / 2)), 0.1) if axis == 0 else 1.0
    reach = min(overlap / shrink, size[axis] / 8)
    for above in (False, True):
        cut = middle + (-reach if above else reach) + OFF_POINTS
        part = list(bounds)
        part[axis] = (middle, bounds[axis][1]) if above else (bounds[axis][0], middle)
        yield from tiles(half(rings, axis, cut, above), part, overlap)


def on_globe(rings):
    """The rings and, of those that cross the date line, copies a turn aside."""
    for ring in rings:
        yield ring
        lons = [lon for lon, _ in ring]
        if max(lons) > 180.0:
            yield [(lon - 360.0, lat) for lon, lat in ring]
        if min(lons) < -180.0:
            yield [(lon + 360.0, lat) for lon, lat in ring]


def sides_of(ring):
    return zip(ring[-1:] + ring[:-1], ring)


def is_inside(point, sides):
    inside = False
    x, y = point
    for (x1, y1), (x2, y2) in sides:
        if (y1 > y) != (y2 > y) and x < x1 + (y - y1) / (y2 - y1) * (x2 - x1):
            inside = not inside
    return inside


def polygons(rings):
    """Even-odd rings as single outlines: each outer ring with its holes joined to it."""
    boxes = [box([ring]) for ring in rings]

    def holds(outer, inner):
        """By most of some points: neighbours like Michigan and Huron may share a few."""
        (west, east), (south, north) = boxes[outer]
        some = rings[inner][:: max(1, len(rings[inner]) // 7)]
        near = [p for p in some if west <= p[0] <= east and south <= p[1] <= north]
        if 2 * len(near) <= len(some):
            return False
        return 2 * sum(is_inside(p, sides_of(rings[outer])) for p in near) > len(some)

    around = [[o for o in range(len(rings)) if o != i and holds(o, i)] for i in range(len(rings))]
    for i, ring in enumerate(rings):
        if len(around[i]) % 2 == 1:
            continue
        holes = [rings[h] for h in range(len(rings)) if i in around[h] and len(around[h]) == len(around[i]) + 1]
        outline = ring
        for hole in sorted(holes, key=lambda h: -abs(area(h))):
            outline = with_hole(outline, hole)
        yield outline


def areas(rings, overlap):
    """Outlines for a map file, closed, with short sides."""
    reach = 180.0 + overlap
    sheet = half(half(list(on_globe(rings)), 0, reach + OFF_POINTS, False), 0, -reach - OFF_POINTS, True)
    cap = half(sheet, 1, CAP + overlap + OFF_POINTS, False)
    rest = half(sheet, 1, CAP - overlap + OFF_POINTS, True)
    for tile in [cap, *tiles(rest, [(-180.0, 180.0), (CAP, 90.0)], overlap)]:
        for outline in polygons(tile):
            if abs(area(outline)) > 1e-9:
                yield with_short_sides(outline + outline[:1], STEP)


# ---- the compact form


def zigzag(value):
    """A whole number as octets of 7 bits, the lowest first; the sign is the lowest bit."""
    value = 2 * value if value >= 0 else -2 * value - 1
    octets = bytearray()
    while value > 127:
        octets.append(value & 127 | 128)
        value >>= 7
    octets.append(value)
    return bytes(octets)


def write_compact(path, records, parts):
    """A map file in the compact form, `parts` units to a degree."""
    count = points = 0
    with open(path, "wb") as file:
        file.write(b"ZAVMAP1\n" + struct.pack(">I", parts))
        for record in records:
            whole = [(round(lat * parts), round(lon * parts)) for lon, lat in record]
            whole = whole[:1] + [p for p, before in zip(whole[1:], whole) if p != before]
            if len(whole) < 2:
                continue
            lats, lons = [p[0] for p in whole], [p[1] for p in whole]
            before, octets = (0, 0), b""
            for lat, lon in whole:
                octets += zigzag(lat - before[0]) + zigzag(lon - before[1])
                before = lat, lon
            bounds = [value / parts for value in (max(lats), min(lats), max(lons), min(lons))]
            file.write(struct.pack(">Hffffi", len(whole), *bounds, len(octets)) + octets)
            count, points = count + 1, points + len(whole)
        file.write(struct.pack(">Hffffi", 0, 0, 0, 0, 0, 0))
    print(f"{path.name}: {count} records, {points} points, {path.stat().st_size} bytes")
