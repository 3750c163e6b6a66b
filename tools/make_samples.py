#!/usr/bin/env python3
"""Writes the sample grids of samples/: a mid-latitude wave train that moves east over North America.

The heights are an analytic baroclinic wave; temperature follows from them by the hypsometric equation, the winds by
geostrophic balance (turned and weakened near the ground), humidity, vertical motion and precipitation by the position
in the wave. Nothing is observed or forecast: the fields are there to try and to test the program.

Usage: make_samples.py FOLDER    (needs only Python's standard library, and ncgen for the netCDF file)
"""

import math
import struct
import subprocess
import sys
from pathlib import Path

GRAVITY = 9.80665
GAS_CONSTANT = 287.05
EARTH_RADIUS = 6371220.0
OMEGA = 7.292e-5
RUN = (2026, 1, 15, 12)  # year, month, day, hour of the analysis

# ---------------------------------------------------------------- the atmosphere


def standard_height(p):
    """Height (gpm) of the pressure p (mb) in the ICAO standard atmosphere, troposphere and lower stratosphere."""
    if p >= 226.32:
        return 44330.8 * (1.0 - (p / 1013.25) ** 0.190263)
    return 11000.0 + 6341.6 * math.log(226.32 / p)


def wave(lat, lon, p, hour):
    """The wave's height anomaly (gpm): two trains of different length, tilted westward with height."""
    depth = math.log(1000.0 / p)
    shape = 45.0 + 95.0 * math.sin(min(depth / math.log(1000.0 / 250.0), 1.15) * math.pi / 2)
    band = math.exp(-(((lat - 46.0) / 15.0) ** 2))
    west = lon + 14.0 * depth - 0.52 * hour
    long_wave = math.cos(math.radians(6.0 * (west + 100.0)))
    short_wave = 0.55 * math.cos(math.radians(11.0 * (lon + 9.0 * depth - 0.75 * hour + 96.0)) + 0.05 * (lat - 45.0))
    return -shape * band * (long_wave + short_wave)


def height(lat, lon, p, hour):
    """Geopotential height (gpm) on the pressure surface p (mb)."""
    depth = math.log(1000.0 / p)
    slope = -340.0 * math.tanh((lat - 44.0) / 13.0) * (depth / math.log(2.0)) ** 0.9 if depth > 0 else 0.0
    subtropics = 55.0 * math.exp(-(((lat - 31.0) / 9.0) ** 2)) - 45.0 * math.exp(-(((lat - 62.0) / 9.0) ** 2))
    return standard_height(p) + 100.0 * depth + slope * math.exp(-0.12 * depth) + subtropics + wave(lat, lon, p, hour)


def temperature(lat, lon, p, hour):
    """Temperature (K) from the thickness of a layer around p."""
    low, high = p * 1.03, p / 1.03
    thickness = height(lat, lon, high, hour) - height(lat, lon, low, hour)
    return GRAVITY * thickness / (GAS_CONSTANT * math.log(low / high))


def wind(lat, lon, p, hour):
    """Geostrophic wind (m/s) toward east and north."""
    step = 0.25
    f = 2.0 * OMEGA * math.sin(math.radians(lat))
    metre = math.radians(2.0 * step) * EARTH_RADIUS
    dzdy = (height(lat + step, lon, p, hour) - height(lat - step, lon, p, hour)) / metre
    dzdx = (height(lat, lon + step, p, hour) - height(lat, lon - step, p, hour)) / (metre * math.cos(math.radians(lat)))
    return -GRAVITY / f * dzdy, GRAVITY / f * dzdx


def lift(lat, lon, hour):
    """Measure of ascent, about -1 to 1: positive between a trough and the ridge to its east."""
    west = wave(lat, lon - 5.0, 600.0, hour)
    east = wave(lat, lon + 5.0, 600.0, hour)
    return (east - west) / 170.0


def humidity(lat, lon, p, hour):
    depth = math.log(1000.0 / p)
    return min(100.0, max(4.0, 52.0 + 46.0 * lift(lat, lon, hour) - 9.0 * depth + 6.0 * math.sin(math.radians(5 * lat))))


def vertical_velocity(lat, lon, p, hour):
    profile = math.sin(math.pi * min(1.0, max(0.0, (1000.0 - p) / 900.0)))
    return -0.55 * lift(lat, lon, hour) * profile


def sea_level_pressure(lat, lon, hour):
    """Pa, from the height of the 1000 mb surface."""
    z = height(lat, lon, 1000.0, hour)
    return 100000.0 * math.exp(GRAVITY * z / (GAS_CONSTANT * 280.0))


def surface_temperature(lat, lon, hour):
    daily = 3.0 * math.cos(math.radians(15.0 * (hour + RUN[3] - 20.0) + lon))
    return temperature(lat, lon, 960.0, hour) + 1.5 + daily


def surface_wind(lat, lon, hour):
    """Weakened and turned by 20 degrees toward low pressure."""
    u, v = wind(lat, lon, 1000.0, hour)
    turn = math.radians(20.0)
    return 0.65 * (u * math.cos(turn) - v * math.sin(turn)), 0.65 * (u * math.sin(turn) + v * math.cos(turn))


def rain(lat, lon, start, end):
    """Water (kg/m2) that fell between two forecast hours."""
    total = 0.0
    for hour in range(start, end, 3):
        wet = humidity(lat, lon, 850.0, hour + 1.5) - 72.0
        total += 3.0 * 0.045 * max(0.0, wet) * max(0.0, lift(lat, lon, hour + 1.5))
    return total


LEVELS = (850, 700, 500, 250)

# name: (GRIB 2 discipline, category, parameter; GRIB 1 parameter; decimal digits kept; function of lat, lon, p, hour)
LEVEL_FIELDS = {
    "HGT": ((0, 3, 5), 7, 1, height),
    "TMP": ((0, 0, 0), 11, 2, temperature),
    "UGRD": ((0, 2, 2), 33, 2, lambda *at: wind(*at)[0]),
    "VGRD": ((0, 2, 3), 34, 2, lambda *at: wind(*at)[1]),
    "RH": ((0, 1, 1), 52, 1, humidity),
    "VVEL": ((0, 2, 8), 39, 3, vertical_velocity),
}

# name: (GRIB 2 parameter; GRIB 1 parameter; digits; GRIB 2 surface type, value; GRIB 1 level type, level; function)
SURFACE_FIELDS = {
    "PRMSL": ((0, 3, 1), 2, 0, (101, 0), (102, 0), sea_level_pressure),
    "TMP2M": ((0, 0, 0), 11, 2, (103, 2), (105, 2), surface_temperature),
    "UGRD10M": ((0, 2, 2), 33, 2, (103, 10), (105, 10), lambda *at: surface_wind(*at)[0]),
    "VGRD10M": ((0, 2, 3), 34, 2, (103, 10), (105, 10), lambda *at: surface_wind(*at)[1]),
}

# ---------------------------------------------------------------- grids


class LatLon:
    """Rows from north to south."""

    def __init__(self, north, west, step, nx, ny):
        self.north, self.west, self.step, self.nx, self.ny = north, west, step, nx, ny

    def points(self):
        for j in range(self.ny):
            for i in range(self.nx):
                yield self.north - j * self.step, self.west + i * self.step


class Lambert:
    """Tangent cone at 45 N, on a sphere; rows from south to north, winds along the grid."""

    def __init__(self, lat1, lon1, central, tangent, step, nx, ny):
        self.lat1, self.lon1, self.central, self.tangent = lat1, lon1, central, tangent
        self.step, self.nx, self.ny = step, nx, ny
        self.radius = 6367470.0
        self.cone = math.sin(math.radians(tangent))
        self.scale = (
            math.cos(math.radians(tangent)) * math.tan(math.radians(45 + tangent / 2)) ** self.cone / self.cone
        )
        self.x1, self.y1 = self.forward(lat1, lon1)

    def forward(self, lat, lon):
        rho = self.radius * self.scale / math.tan(math.radians(45 + lat / 2)) ** self.cone
        turn = self.cone * math.radians(lon - self.central)
        return rho * math.sin(turn), -rho * math.cos(turn)

    def inverse(self, x, y):
        rho = math.hypot(x, y)
        turn = math.atan2(x, -y)
        lat = 2 * math.degrees(math.atan((self.radius * self.scale / rho) ** (1 / self.cone))) - 90
        return lat, self.central + math.degrees(turn / self.cone)

    def points(self):
        for j in range(self.ny):
            for i in range(self.nx):
                yield self.inverse(self.x1 + i * self.step, self.y1 + j * self.step)

    def turn(self, lon):
        """Angle (radians) from the grid's x axis to east."""
        return self.cone * math.radians(lon - self.central)


# ---------------------------------------------------------------- packing


def pack_simple(values, digits):
    """Reference value, binary scale 0, decimal scale, bits and packed bytes (WMO simple packing)."""
    factor = 10.0**digits
    scaled = [round(v * factor) for v in values]
    least = min(scaled)
    span = max(scaled) - least
    bits = span.bit_length()
    stream = 0
    for v in scaled:
        stream = (stream << bits) | (v - least)
    total = bits * len(values)
    stream <<= -total % 8
    return float(least), bits, stream.to_bytes((total + 7) // 8, "big") if bits else b""


def sign_magnitude(value, size):
    value = round(value)
    return (abs(value) | ((1 << (8 * size - 1)) if value < 0 else 0)).to_bytes(size, "big")


# ---------------------------------------------------------------- GRIB edition 2


def section(number, body):
    return struct.pack(">IB", len(body) + 5, number) + body


def grid2(grid):
    def micro(degrees):
        return sign_magnitude(degrees * 1e6, 4)

    south = grid.north - (grid.ny - 1) * grid.step
    east = grid.west + (grid.nx - 1) * grid.step
    body = struct.pack(">BIBBH", 0, grid.nx * grid.ny, 0, 0, 0)
    body += struct.pack(">BBIBIBI", 6, 0, 0, 0, 0, 0, 0)
    body += struct.pack(">II", grid.nx, grid.ny) + struct.pack(">Ii", 0, -1)
    body += micro(grid.north) + micro(grid.west % 360) + b"\x30" + micro(south) + micro(east % 360)
    body += micro(grid.step) + micro(grid.step) + b"\x00"
    return section(3, body)


def product2(parameter, surface, hour, start=None):
    fixed = struct.pack(">BBBBB", parameter[1], parameter[2], 2, 255, 96) + struct.pack(">HBB", 0, 0, 1)
    first = hour if start is None else start
    kind, value = surface
    place = struct.pack(">I", first) + struct.pack(">BBI", kind, 0, value) + struct.pack(">BBI", 255, 255, 0xFFFFFFFF)
    if start is None:
        return section(4, struct.pack(">HH", 0, 0) + fixed + place)
    end = end_of(hour)
    statistics = struct.pack(">HBBBBBBI", *end, 0, 0, 1, 0) + struct.pack(">BBBIBI", 1, 2, 1, hour - start, 255, 0)
    return section(4, struct.pack(">HH", 0, 8) + fixed + place + statistics)


def end_of(hour):
    import datetime

    moment = datetime.datetime(*RUN) + datetime.timedelta(hours=hour)
    return moment.year, moment.month, moment.day, moment.hour


def message2(grid, parameter, surface, hour, values, digits, start=None):
    reference, bits, packed = pack_simple(values, digits)
    identification = section(1, struct.pack(">HHBBBHBBBBBBB", 255, 0, 2, 1, 1, *RUN, 0, 0, 2, 1))
    representation = struct.pack(">IHf", len(values), 0, reference)
    representation += sign_magnitude(0, 2) + sign_magnitude(digits, 2) + struct.pack(">BB", bits, 0)
    body = identification + grid2(grid) + product2(parameter, surface, hour, start)
    body += section(5, representation) + section(6, b"\xff") + section(7, packed) + b"7777"
    return b"GRIB\x00\x00" + bytes([parameter[0], 2]) + struct.pack(">Q", len(body) + 16) + body


def edition2(grid, hours):
    points = list(grid.points())
    out = b""
    for hour in hours:
        for p in LEVELS:
            for parameter, _, digits, function in LEVEL_FIELDS.values():
                values = [function(lat, lon, p, hour) for lat, lon in points]
                out += message2(grid, parameter, (100, p * 100), hour, values, digits)
        for parameter, _, digits, surface, _, function in SURFACE_FIELDS.values():
            values = [function(lat, lon, hour) for lat, lon in points]
            out += message2(grid, parameter, surface, hour, values, digits)
        if hour >= 12:
            values = [rain(lat, lon, hour - 12, hour) for lat, lon in points]
            out += message2(grid, (0, 1, 8), (1, 0), hour, values, 2, start=hour - 12)
    return out


# ---------------------------------------------------------------- GRIB edition 1


def ibm_float(value):
    """IBM System/360 single precision, as edition 1 stores its reference value."""
    if value == 0:
        return b"\0\0\0\0"
    sign = 0x80 if value < 0 else 0
    exponent, mantissa = 64, abs(value)
    while mantissa >= 1:
        mantissa, exponent = mantissa / 16, exponent + 1
    while mantissa < 1 / 16:
        mantissa, exponent = mantissa * 16, exponent - 1
    return bytes([sign | exponent]) + int(mantissa * 2**24).to_bytes(3, "big")


def message1(grid, parameter, level, hour, values, digits, start=None):
    reference, bits, packed = pack_simple(values, digits)
    year, month, day, clock = RUN
    time = (hour, 0, 0) if start is None else (start, hour, 4)
    product = bytes([2, 255, 1, 255, 0x80, parameter, level[0]])
    product += struct.pack(">H", level[1]) + bytes([year % 100, month, day, clock, 0, 1, *time])
    product += struct.pack(">HBBB", 0, 0, year // 100 + 1, 0) + sign_magnitude(digits, 2)
    product = (len(product) + 3).to_bytes(3, "big") + product

    def milli(degrees):
        return sign_magnitude(degrees * 1000, 3)

    shape = bytes([0, 255, 3]) + struct.pack(">HH", grid.nx, grid.ny) + milli(grid.lat1) + milli(grid.lon1) + b"\x08"
    shape += milli(grid.central) + int(grid.step).to_bytes(3, "big") * 2 + b"\x00\x40" + milli(grid.tangent) * 2
    shape += milli(-90) + milli(0) + b"\0\0"
    shape = (len(shape) + 3).to_bytes(3, "big") + shape

    data = sign_magnitude(0, 2) + ibm_float(reference) + bytes([bits]) + packed
    if len(data) % 2 == 0:
        data += b"\0"  # the section's whole length is even
    unused = (len(data) - 7) * 8 - bits * len(values)
    data = (len(data) + 4).to_bytes(3, "big") + bytes([unused]) + data
    body = product + shape + data + b"7777"
    return b"GRIB" + (len(body) + 8).to_bytes(3, "big") + b"\x01" + body


def along_grid(grid, points, pairs):
    """Winds toward east and north turned to the grid's axes."""
    turned = []
    for (_, lon), (u, v) in zip(points, pairs):
        a = grid.turn(lon)
        turned.append((u * math.cos(a) + v * math.sin(a), -u * math.sin(a) + v * math.cos(a)))
    return turned


def edition1(grid, hours):
    points = list(grid.points())
    out = b""
    for hour in hours:
        for p in (850, 500):
            winds = along_grid(grid, points, [wind(lat, lon, p, hour) for lat, lon in points])
            for _, parameter, digits, function in LEVEL_FIELDS.values():
                if parameter in (33, 34):
                    values = [pair[parameter - 33] for pair in winds]
                else:
                    values = [function(lat, lon, p, hour) for lat, lon in points]
                out += message1(grid, parameter, (100, p), hour, values, digits)
        values = [sea_level_pressure(lat, lon, hour) for lat, lon in points]
        out += message1(grid, 2, (102, 0), hour, values, 0)
        values = [rain(lat, lon, max(hour - 12, 0), hour) for lat, lon in points]
        if hour >= 12:
            out += message1(grid, 61, (1, 0), hour, values, 2, start=hour - 12)
    return out


# ---------------------------------------------------------------- netCDF, by way of its text form


def netcdf_text(grid, hours):
    """A classic file with the COARDS conventions' axes, in ncgen's language."""
    lats = [grid.north - j * grid.step for j in range(grid.ny)]
    lons = [grid.west + i * grid.step for i in range(grid.nx)]
    points = list(grid.points())

    def numbers(values, form="%g"):
        return ", ".join(form % v for v in values)

    date = "%04d-%02d-%02d %02d:00:00" % RUN
    lines = [
        "netcdf wave {",
        "dimensions:",
        f"  lon = {grid.nx} ; lat = {grid.ny} ; level = 2 ; time = {len(hours)} ;",
        "variables:",
        '  float lon(lon) ; lon:units = "degrees_east" ; lon:long_name = "longitude" ;',
        '  float lat(lat) ; lat:units = "degrees_north" ; lat:long_name = "latitude" ;',
        '  float level(level) ; level:units = "millibar" ; level:long_name = "pressure" ;',
        f'  float time(time) ; time:units = "hours since {date}" ;',
        '  float hgt(time, level, lat, lon) ; hgt:units = "m" ; hgt:long_name = "geopotential height" ;',
        '  float air(time, level, lat, lon) ; air:units = "degK" ; air:long_name = "air temperature" ;',
        '  :title = "Analytic wave train, sample data" ;',
        '  :Conventions = "COARDS" ;',
        "data:",
        f"  lon = {numbers(lons)} ;",
        f"  lat = {numbers(lats)} ;",
        "  level = 850, 500 ;",
        f"  time = {numbers(hours)} ;",
    ]
    for name, function, form in (("hgt", height, "%.1f"), ("air", temperature, "%.2f")):
        values = [function(lat, lon, p, hour) for hour in hours for p in (850, 500) for lat, lon in points]
        lines.append(f"  {name} = {numbers(values, form)} ;")
    return "\n".join(lines) + "\n}\n"


def main():
    folder = Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    wide = LatLon(70.0, -150.0, 1.25, 89, 45)
    name = "%02d%02d%02d%02d" % (RUN[0] % 100, *RUN[1:])
    (folder / f"{name}_wave.grb2").write_bytes(edition2(wide, (0, 12, 24)))
    regional = Lambert(22.0, -118.0, -97.0, 40.0, 90000.0, 57, 42)
    (folder / f"{name}_wavelc.grb").write_bytes(edition1(regional, (0, 24)))
    coarse = LatLon(70.0, -150.0, 2.5, 45, 23)
    text = folder / "wave.cdl"
    text.write_text(netcdf_text(coarse, (0, 24)))
    subprocess.run(["ncgen", "-o", str(folder / f"{name}_wave.cdf"), str(text)], check=True)
    text.unlink()


if __name__ == "__main__":
    main()
