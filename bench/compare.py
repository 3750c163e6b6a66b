#!/usr/bin/env python3
"""Prints the program's speed as ratios to the same work by ecCodes' tools, measured side by side in one run.

Usage: compare.py BUILD_FOLDER DATA_FOLDER
"""

import shutil
import sys
import tempfile
from pathlib import Path

from timing import best_of_both, is_missing, report, run


def chart_a(program, source, root):
    return [
        program, "-fp", f"{root}/share/zav", "-me", "none", "-ft", "h120", "-le", "500", "-va", "hght", "-pl", "ln",
        "-in", "60", "-pd", "ps:90:-100,45,-100,61,45,1.2", "-de", "p,z500.ps", source,
    ]  # fmt: skip


GRADS_SCRIPT = """'sdfopen t850.nc'
'set display color white'
'set mproj nps'
'set lon -150 -50'
'set lat 15 75'
'set mpdset mres'
'set gxout shaded'
'set cint 4'
'd tmp-273.15'
'gxprint grads.ps'
'quit'
"""

GMT_SCRIPT = """set -e
gmt begin gmt ps
gmt grdmath t850.nc 273.15 SUB = celsius.nc
gmt makecpt -Cpolar -T-40/40/4
gmt grdimage celsius.nc -R-150/-50/15/75 -JS-100/90/20c
gmt coast -W0.5p -N1 -N2 -Dl
gmt end
"""


def chart_b(program, source, root, device="p,t850.ps,color"):
    return [
        program, "-fp", f"{root}/share/zav", "-me", "none", "-ft", "h120", "-le", "850", "-va", "temp:C:cf:in=4",
        "-pd", "ps:90:-100,45,-100,61,45,1.2", "-pp", "bar", "-de", device, source,
    ]  # fmt: skip


def compare_chart_b(program, source, root, folder):
    """The filled chart with its map beside GrADS and GMT, which draw the same field from a netCDF copy of it."""
    if is_missing("chart B", "cdo"):
        return True
    field = Path(folder) / "t850.grib2"
    run(["grib_copy", "-w", "shortName=t,level=850,typeOfLevel=isobaricInhPa", source, field], folder)
    run(["cdo", "-s", "--reduce_dim", "-f", "nc", "-chname,t,tmp", field, "t850.nc"], folder)
    (Path(folder) / "b.gs").write_text(GRADS_SCRIPT)
    (Path(folder) / "b_png.gs").write_text(GRADS_SCRIPT.replace("grads.ps", "grads.png x1000 y750 white"))
    (Path(folder) / "b.sh").write_text(GMT_SCRIPT)
    page = chart_b(program, source, root)
    picture = chart_b(program, source, root, "t850.png,1000x750")
    peers = (
        ("chart B, whole run", "grads", page, ["grads", "-lbc", "run b.gs"], 0.5),
        ("chart B to PNG, whole run", "grads", picture, ["grads", "-lbc", "run b_png.gs"], 0.5),
        ("chart B, whole run", "gmt", page, ["bash", "b.sh"], 0.2),
    )
    good = True
    for what, name, command, peer_command, limit in peers:
        if is_missing(f"{what} / {name}", name):
            continue
        ours, peer = best_of_both(command, peer_command, folder)
        good &= report(f"{what} / {name}", ours, peer, limit)
    return good


def search_growth(build, source, folder):
    """Finding the last field of the file concatenated 10 and 100 times: time in proportion, memory below 64 MB."""
    times = {}
    peak = 0.0
    content = source.read_bytes()
    for copies in (10, 100):
        joined = Path(folder) / "joined.grib2"
        with joined.open("wb") as out:
            for _ in range(copies):
                out.write(content)
        command = [build / "bench" / "last_field", joined]
        times[copies] = min(run(command, folder)[0] for _ in range(3))
        peak = max(peak, run(command, folder)[1])
        joined.unlink()
    growth = times[100] / times[10] / 10
    verdict = "ok" if growth <= 1.5 and peak < 64 else "OVER"
    print(f"{'last field, 100 copies over 10 times 10':44s} {times[100] * 1000:9.1f} ms / 10 x {times[10] * 1000:5.1f} ms "
          f"= {growth:6.3f}, peak {peak:.1f} MB (below 64) {verdict}")  # fmt: skip
    return verdict == "ok"


def main():
    build, data = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    root = Path(__file__).resolve().parent.parent
    source = data / "gfs_2p5deg_f120.grib2"
    if not source.exists():
        sys.exit(f"bench: no {source}: name the folder of the real files, or set ZAV_TEST_DATA")
    missing = [tool for tool in ("grib_ls", "grib_get") if shutil.which(tool) is None]
    if missing:
        sys.exit(f"bench: not installed: {' '.join(missing)}")
    with tempfile.TemporaryDirectory() as folder:
        chart = best_of_both(chart_a(build / "zavoria", source, root), ["grib_ls", source], folder)
        decode = best_of_both(
            [build / "bench" / "decode_all", source], ["grib_get", "-p", "min,max", source], folder
        )
        good = report("chart A, whole run / grib_ls", *chart, 0.25)
        good &= report("decode every field / grib_get -p min,max", *decode, 0.33)
        good &= search_growth(build, source, folder)
        good &= compare_chart_b(build / "zavoria", source, root, folder)
    sys.exit(0 if good else 1)


if __name__ == "__main__":
    main()
