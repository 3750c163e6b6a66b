#!/usr/bin/env python3
"""Prints the speed of functions of grids, from GRIB file to written field, as ratios to CDO doing the same job.

Usage: compare_calc.py BUILD_FOLDER DATA_FOLDER

Both read the same files: the isobaric fields of the 2.5-degree forecast, each in a message of its own, since CDO doesn't
see the second field of one; and its fields at 850 mb on 1500 by 751 points. Both write fields of 32-bit numbers in their
own raw format. The results are compared before they are timed.
"""

import struct
import sys
from pathlib import Path

from timing import best_of_both, is_missing, report, run

MISSING = -9999.0
LEVEL = 850
LIMIT = 0.5
LCL_STEPS = 3  # the middle of the steps that the program takes on these fields


def saturation_pressure(t):
    return (f"10^(23.832241-5.02808*log10({t})-1.3816e-7*10^(11.344-0.0303998*{t})"
            f"+0.008132801*10^(3.49149-1302.8844/{t})-2949.076/{t})")  # fmt: skip


def saturation_temperature(e):
    return f"38.9114*({e}^0.0915-1.2035)^2+10^(2.4082965+0.0498646455*log10({e}))-7.08475"


def thetae_script():
    """Equivalent potential temperature from t and r, as statements of expr; names with _ in front aren't written."""
    lines = [
        f"_e={saturation_pressure('t')}*min(max(r,2),100)/100",
        f"_td={saturation_temperature('_e')}",
        f"_es={saturation_pressure('_td')}",
        f"_w=622*_es/({LEVEL}-_es)",
        f"_o=t*(1000/{LEVEL})^0.286",
        f"_p0=_o*0+{LEVEL}",
    ]
    for n in range(LCL_STEPS):
        lines += [
            f"_v{n}=_w*_p{n}/(622+_w)",
            f"_d{n}={saturation_temperature(f'_v{n}')}-_o*(_p{n}/1000)^0.286",
            f"_p{n + 1}=_p{n}*2^(0.02*_d{n})",
        ]
    p = f"_p{LCL_STEPS}"
    return ";".join(lines + [
        f"_tl=_o*({p}/1000)^0.286",
        f"_el={saturation_pressure('_tl')}",
        f"thetae=_tl*(1000/{p})^0.286/exp(-2.6518986*622*_el/({p}-_el)/_tl)",
    ])  # fmt: skip


def hold(expression):
    """min and max of expr are of whole fields; those of points are spelled as choices."""
    return expression.replace("min(max(r,2),100)", "((r<2)?2:((r>100)?100:r))")


def avort_script(step):
    return (f"avort=(vr-vl)/(2*{step}*1.11195*cos(rad(clat(vr))))-(ut-ub)/(2*{step}*1.11195)"
            "+14.584*sin(rad(clat(vr)))")  # fmt: skip


def shifted(component, operator, name, source):
    return f"-chname,{component},{name} -{operator} -selname,{component} {source}"


def cdo_avort(source, step, north_first):
    """CDO's vorticity: one run that gets the winds out of the file, and one on them, which is its quickest way."""
    up, down = ("1", "-1") if north_first else ("-1", "1")
    fields = " ".join([shifted("v", "shiftx,-1,cyclic", "vr", "uv.nc"), shifted("v", "shiftx,1,cyclic", "vl", "uv.nc"),
                       shifted("u", f"shifty,{up}", "ut", "uv.nc"), shifted("u", f"shifty,{down}", "ub", "uv.nc")])  # fmt: skip
    return ["bash", "-c", f"set -e; cdo -s -f nc -sellevel,{LEVEL * 100} -selname,u,v {source} uv.nc; "
                          f"cdo -s -f ext -b F32 -expr,'{avort_script(step)}' -merge {fields} peer.ext"]  # fmt: skip


def cdo_thetae(source):
    return ["cdo", "-s", "-f", "ext", "-b", "F32", f"-expr,{hold(thetae_script())}", f"-sellevel,{LEVEL * 100}",
            "-selname,t,r", source, "peer.ext"]  # fmt: skip


def ours(program, root, variable, source):
    return [program, "-fp", f"{root}/share/zav", "-me", "none", "-ba", "-ft", "h120", "-le", str(LEVEL), "-va", variable,
            "-pl", "none", "-dr", "none", "-pf", "over", "-of", "zavb:@ours_%v.grd", source]  # fmt: skip


def our_values(path, points):
    """Values of a native binary file, behind which a line ends."""
    return struct.unpack(f">{points}f", Path(path).read_bytes()[-4 * points - 1 : -1])


def peer_values(path, nx, ny, north_first):
    """Values of a raw file: an integer of its record's length stands before and behind them; rows from the north."""
    content = Path(path).read_bytes()[-4 * nx * ny - 4 : -4]
    order = "<" if struct.unpack("<i", Path(path).read_bytes()[-4:])[0] == 4 * nx * ny else ">"
    values = struct.unpack(f"{order}{nx * ny}f", content)
    if north_first:
        return values
    return [value for row in range(ny - 1, -1, -1) for value in values[row * nx : (row + 1) * nx]]


def check_same(what, one, other, allowed):
    """Both have a value at most points, and the same there."""
    both = [(a, b) for a, b in zip(one, other) if a != MISSING and abs(b) < 1e20 and b != MISSING]
    apart = max((abs(a - b) for a, b in both), default=0.0)
    if len(both) < 0.97 * len(one) or apart > allowed:
        sys.exit(f"bench: {what}: {len(both)} of {len(one)} points compared, apart by up to {apart}")


def compare(program, root, folder, source, nx, ny, step, north_first):
    jobs = (
        ("avort(uwnd,vwnd)", "ours_avort.grd", cdo_avort(source, step, north_first), 0.01),
        ("thetae(temp,rhum)", "ours_thetae.grd", cdo_thetae(source), 0.3),
    )
    good = True
    for variable, written, peer, allowed in jobs:
        command = ours(program, root, variable, source)
        run(command, folder)
        run(peer, folder)
        what = f"{variable} {nx}x{ny}"
        check_same(what, our_values(folder / written, nx * ny), peer_values(folder / "peer.ext", nx, ny, north_first), allowed)
        good &= report(f"{what} / cdo", *best_of_both(command, peer, folder), LIMIT)
    return good


def main():
    build, data = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    root = Path(__file__).resolve().parent.parent
    if is_missing("functions of grids, whole runs", "cdo", "grib_copy"):
        sys.exit(0)
    folder = build / "bench" / "calc"
    folder.mkdir(parents=True, exist_ok=True)
    levels, fine = folder / "levels.grib2", folder / "fine.grib2"
    if not levels.exists():
        run(["grib_copy", "-w", "typeOfLevel=isobaricInhPa", data / "gfs_2p5deg_f120.grib2", levels], folder)
    if not fine.exists():
        run(["cdo", "-s", "-f", "grb2", "-remapbil,r1500x751", f"-sellevel,{LEVEL * 100}", "-selname,u,v,t,r", levels, fine], folder)
    good = compare(build / "zavoria", root, folder, levels, 144, 73, 2.5, True)
    good &= compare(build / "zavoria", root, folder, fine, 1500, 751, 0.24, False)
    sys.exit(0 if good else 1)


if __name__ == "__main__":
    main()
