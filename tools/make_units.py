#!/usr/bin/env python3
"""Writes share/zav/units.lup: every conversion between the unit spellings below, in both directions.

A member of a group is (spellings, scale, offset): a value x in it is scale * x + offset in the group's base unit.
Factors are exact by definition (SI brochure, NIST SP 811) unless a comment says otherwise.

Usage: tools/make_units.py [output file]
"""
import sys
from fractions import Fraction as F
from pathlib import Path

NAME_LENGTH = 14
G = F("9.80665")  # standard gravity, m/s^2
INCH = F("0.0254")
FOOT = 12 * INCH
MILE = 5280 * FOOT
NMI = F(1852)
HOUR = F(3600)
DAY = 24 * HOUR
INHG = F("3386.389")  # inch of mercury at 0 C, Pa (conventional)
MMHG = F("133.322387415")
PER_AREA = ("kg/m**2", "kg/m^2", "kg/m2", "kg_m-2", "kg_m**-2")


def unit(names, scale=1, offset=0):
    return names.split() if isinstance(names, str) else list(names), F(scale), F(offset)


# Groups in which every pair converts.
GROUPS = [
    ("Temperature", [
        unit("K kelvin degK deg_K"),
        unit("C degC deg_C celsius degrees_C", 1, "273.15"),
        unit("F degF deg_F fahrenheit degrees_F", F(5, 9), F("459.67") * F(5, 9)),
    ]),
    ("Temperature difference", [unit("dK dC"), unit("dF", F(5, 9))]),
    ("Speed", [
        unit("m/s m/sec m_s-1 m_s**-1 mps"),
        unit("kt kts kn knot knots", NMI / HOUR),
        unit("mph mi/h mi/hr", MILE / HOUR),
        unit("km/h km/hr kph kmh", 1000 / HOUR),
        unit("ft/s", FOOT),
        unit("cm/s", "0.01"),
    ]),
    ("Pressure", [
        unit("Pa pascal pascals"),
        unit("mb mbar millibar millibars hPa", 100),
        unit("kPa", 1000),
        unit("bar", 100000),
        unit("inHg in_Hg", INHG),
        unit("mmHg mm_Hg torr", MMHG),
        unit("atm", 101325),
    ]),
    ("Pressure tendency and vertical motion", [
        unit("Pa/s Pa_s-1 Pa_s**-1"),
        unit("mb/s hPa/s", 100),
        unit("ub/s ubar/s", "0.1"),
        unit("Pa/h Pa/hr", 1 / HOUR),
        unit("mb/h mb/hr hPa/h hPa/hr", 100 / HOUR),
        unit("mb/3h hPa/3h", 100 / (3 * HOUR)),
        unit("mb/day hPa/day", 100 / DAY),
    ]),
    ("Length, height, depth; geopotential metres count as metres", [
        unit("m meter meters metre metres gpm gp_m"),
        unit("dam dm gpdam gpdm", 10),  # dm as on weather charts: decametres, not the SI's decimetres
        unit("km gpkm", 1000),
        unit("cm", "0.01"),
        unit("mm", "0.001"),
        unit("ft feet foot gpft", FOOT),
        unit("kft", 1000 * FOOT),
        unit("in inch inches", INCH),
        unit("yd yards", 3 * FOOT),
        unit("mi mile miles sm", MILE),
        unit("nmi naut_mi", NMI),
    ]),
    ("Rate of precipitation", [
        unit([name + "/s" for name in PER_AREA[:3]] + ["kg_m-2_s-1", "kg_m**-2_s**-1", "mm/s"]),
        unit("mm/h mm/hr", 1 / HOUR),
        unit("mm/day", 1 / DAY),
        unit("in/h in/hr inch/h inch/hr", 1000 * INCH / HOUR),
        unit("in/day", 1000 * INCH / DAY),
        unit("cm/h cm/hr", 10 / HOUR),
    ]),
    ("Mixing ratio", [
        unit("kg/kg kg_kg-1 kg_kg**-1"),
        unit("g/kg gm/kg g_kg-1 gr/kg", "0.001"),
        unit("mg/kg mg_kg-1", "1e-6"),
    ]),
    ("Fraction, cloud amount, soil moisture", [
        unit("fraction frac proportion (0_-_1) m3/m3 m**3/m**3 m^3/m^3 m3_m-3 m**3_m**-3"),
        unit("% percent pct", "0.01"),
        unit("tenths", "0.1"),
        unit("oktas octas okta eighths", "0.125"),
    ]),
    ("Vorticity, divergence, frequency (1e-5/s is the factor 1e-5 and /s)", [
        unit("/s s-1 s**-1 s^-1 Hz m/s/m"),
        unit("/h /hr", 1 / HOUR),
        unit("/day", 1 / DAY),
    ]),
    ("Horizontal and vertical gradients of temperature", [
        unit("K/m C/m K_m-1 K_m**-1"),
        unit("K/km C/km", "0.001"),
        unit("K/100km C/100km", "1e-5"),
        unit("F/100mi", F(5, 9) / (100 * MILE)),
        unit("F/kft", F(5, 9) / (1000 * FOOT)),
    ]),
    ("Temperature advection and tendency", [
        unit("K/s C/s K_s-1 K_s**-1"),
        unit("K/h K/hr C/h C/hr", 1 / HOUR),
        unit("K/3h C/3h", 1 / (3 * HOUR)),
        unit("K/12h C/12h", 1 / (12 * HOUR)),
        unit("K/day C/day", 1 / DAY),
        unit("F/h F/hr", F(5, 9) / HOUR),
        unit("F/day", F(5, 9) / DAY),
    ]),
    ("Advection of vorticity", [
        unit("/s^2 /s**2 s-2 s^-2 s**-2 /s/s m/s/m/s"),
        unit("/s/h", 1 / HOUR),
        unit("/s/day", 1 / DAY),
    ]),
    ("Advection and convergence of moisture", [
        unit("gm/kg/s g/kg/s"),
        unit("kg/kg/s", 1000),
        unit("gm/kg/h g/kg/h", 1 / HOUR),
        unit("gm/kg/12h g/kg/12h", 1 / (12 * HOUR)),
        unit("gm/kg/day g/kg/day", 1 / DAY),
    ]),
    ("Time", [
        unit("s sec secs second seconds"),
        unit("min minute minutes", 60),
        unit("h hr hrs hour hours", HOUR),
        unit("d day days", DAY),
    ]),
    ("Energy of a mass: CAPE, helicity", [
        unit("J/kg J_kg-1 J_kg**-1"),
        unit("kJ/kg", 1000),
        unit("cal/g", "4184"),  # thermochemical calorie
    ]),
    ("Radiation and heat flux", [
        unit("W/m**2 W/m^2 W/m2 W_m-2 W_m**-2"),
        unit("kW/m**2 kW/m^2 kW/m2", 1000),
        unit("ly/min cal/cm2/min", F(41840, 60)),
        unit("ly/day cal/cm2/day", 41840 / DAY),
    ]),
    ("Accumulated radiation", [
        unit("J/m**2 J/m^2 J/m2 J_m-2 J_m**-2"),
        unit("kJ/m**2 kJ/m^2 kJ/m2", 1000),
        unit("MJ/m**2 MJ/m^2 MJ/m2", 1000000),
        unit("Wh/m**2 Wh/m^2 Wh/m2", HOUR),
        unit("ly langley cal/cm2", 41840),
    ]),
    ("Stress", [unit("N/m**2 N/m^2 N/m2 N_m-2 N_m**-2"), unit("dyn/cm2 dyn/cm**2", "0.1")]),
    ("Angle", [
        unit("deg degree degrees degree_true degrees_true"),
        # pi / 180 is irrational; 20 digits of its inverse
        unit("rad radian radians", "57.295779513082320877"),
    ]),
    ("Density and concentration", [
        unit("kg/m**3 kg/m^3 kg/m3 kg_m-3 kg_m**-3"),
        unit("g/m**3 g/m^3 g/m3", "1e-3"),
        unit("mg/m**3 mg/m^3 mg/m3", "1e-6"),
        unit("ug/m**3 ug/m^3 ug/m3", "1e-9"),
        unit("g/cm**3 g/cm^3 g/cm3", 1000),
    ]),
    ("Potential vorticity", [
        unit("K_m2/kg/s K_m**2/kg/s K*m**2/kg/s K*m^2/kg/s Km^2/kg/s"), unit("PVU", "1e-6")]),
    ("Stream function and velocity potential", [
        unit("m**2/s m^2/s m2/s m2_s-1 m**2_s**-1"), unit("km**2/s km^2/s km2/s", 1000000)]),
    ("Area", [unit("m**2 m^2 m2"), unit("km**2 km^2 km2", 1000000), unit("ha hectares", 10000),
              unit("mi**2 mi^2 mi2", MILE * MILE)]),
    ("Mass", [unit("kg"), unit("g gm", "0.001"), unit("lb lbs", "0.45359237")]),
]

# Pairs of groups that convert into each other, but whose members don't convert among themselves here.
BRIDGES = [
    ("Water on the ground: 1 kg/m^2 is 1 mm", [unit(PER_AREA)],
     [unit("mm"), unit("cm", 10), unit("m", 1000), unit("in inch inches", 1000 * INCH), unit("ft", 1000 * FOOT)]),
    ("Ozone column: 1 Dobson unit is 2.1415e-5 kg/m^2", [unit(PER_AREA)], [unit("DU dobson", "2.1415e-5")]),
    ("Geopotential to height", [unit("m**2/s**2 m^2/s^2 m2/s2 m2_s-2 m**2_s**-2 J/kg")],
     [unit("gpm m meters", G), unit("gpdam dam dm gpdm", 10 * G), unit("km", 1000 * G), unit("ft feet", FOOT * G)]),
]

HEADER = """# Unit conversions, made by tools/make_units.py. A site may add lines of its own, in front or behind.
#
# from  to  *factor[+offset]     no blanks inside a word; "_" stands for a blank in a unit's name
#
# Names fit in any case. The first line that fits counts, in the direction written. A factor in front of a unit, as in
# "1e-5 /s", needs no line of its own. A grid keeps its units where no line holds the pair.
"""


def number(value):
    return "%.9g" % float(value)


def line(name_from, name_to, member_from, member_to):
    factor = member_from[1] / member_to[1]
    offset = (member_from[2] - member_to[2]) / member_to[1]
    rule = "*" + number(factor)
    if offset:
        rule += ("+" if offset > 0 else "") + number(offset)
    return f"{name_from:<14} {name_to:<14} {rule}"


def pairs(members_from, members_to):
    """All lines from the one set of members to the other, two spellings of one unit included."""
    for a in members_from:
        for b in members_to:
            for name_from in a[0]:
                for name_to in b[0]:
                    if name_from.lower() != name_to.lower():
                        yield line(name_from, name_to, a, b)


def main():
    target = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).parents[1] / "share/zav/units.lup"
    sections = [(title, list(pairs(members, members))) for title, members in GROUPS]
    for title, left, right in BRIDGES:
        sections.append((title, list(pairs(left, right)) + list(pairs(right, left))))
    seen = set()
    with target.open("w") as out:
        out.write(HEADER)
        for title, lines in sections:
            out.write(f"\n# {title}\n")
            for text in lines:
                name_from, name_to, _ = text.lower().split()
                assert max(len(name_from), len(name_to)) <= NAME_LENGTH, text
                assert (name_from, name_to) not in seen, text
                seen.add((name_from, name_to))
                out.write(text + "\n")


if __name__ == "__main__":
    main()
