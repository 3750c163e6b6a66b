#!/usr/bin/env python3
"""Prints what charts of fine grids cost, beside GrADS, Ghostscript and contourpy, measured side by side in one run.

Usage: compare_fine.py BUILD_FOLDER DATA_FOLDER
"""

import json
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path

from timing import Failed, is_missing, measure, medians_of_both, report, report_alone

ROOT = Path(__file__).resolve().parent.parent
FIELD = "cmc_tmp1_jpeg2000.grib2"  # 1500 x 751 points
LEVELS = range(-44, 45, 4)

GRADS_FILL = """'sdfopen {source}.nc'
'set display color white'
'set mproj latlon'
'set mpdset lowres'
'set gxout shaded'
{colors}'set clevs {levels}'
'set ccols {indices}'
'd tmp-273.15'
'gxprint {output}'
'quit'
"""


def grads_colors():
    """GrADS's definitions of the colours of temp.lev, and their indices, white below the first level."""
    lines = (ROOT / "share/zav/temp.lev").read_text().splitlines()
    colors = [line.split(":#")[1] for line in lines if ":#" in line]
    rgb = [" ".join(str(int(color[i : i + 2], 16)) for i in (0, 2, 4)) for color in colors]
    defined = "".join(f"'set rgb {20 + i} {parts}'\n" for i, parts in enumerate(rgb))
    return defined, " ".join(["0", *(str(20 + i) for i in range(len(colors)))])


def grads(folder, source, output):
    """GrADS's command for the filled field on a map."""
    colors, indices = grads_colors()
    script = GRADS_FILL.format(
        source=source, colors=colors, indices=indices, levels=" ".join(map(str, LEVELS)), output=output
    )
    name = f"{Path(output.split()[0]).name}.gs"
    (folder / name).write_text(script)
    return ["grads", "-lbc", f"run {name}"]


class Bench:
    def __init__(self, build, data, folder):
        self.program = build / "zavoria"
        self.bench = build / "bench" / "bench_zav"
        self.data = data
        self.folder = folder
        self.good = True

    def keep(self, good):
        self.good &= good

    def ours(self, device, *options):
        return [
            self.program, "-fp", ROOT / "share/zav", "-me", "none", "-cocl", "off", "-de", device, *options,
        ]  # fmt: skip

    def fill(self, device):
        return self.ours(device, "-ft", "init", "-le", "1", "-va", "temp:C:cf:cof=temp.lev", self.data / FIELD)

    def middle(self, command, which=0):
        """Middle of several runs: seconds, processor seconds or MB."""
        return statistics.median(measure(command, self.folder)[which] for _ in range(5))

    def draws_pictures(self, name):
        """Whether the program writes a PNG by its ending; a row says so if it doesn't."""
        try:
            measure(self.fill("probe.png"), self.folder)
            drawn = (self.folder / "probe.png").read_bytes()[:4] == b"\x89PNG"
        except (Failed, OSError):
            drawn = False
        if not drawn:
            print(f"{name:44s} not measured: the program has no picture workstation")
        return drawn

    def filled_page(self):
        """A filled field on paper: the whole run, the page's size, and what Ghostscript takes for it."""
        page = self.folder / "fill.ps"
        ours = self.fill("p,fill.ps,color")
        self.keep(report_alone("filled field, peak memory", self.middle(ours, 2), 64, "MB"))
        if is_missing("filled field, whole run / grads", "cdo", "grads"):
            return
        peer = grads(self.folder, "field", "grads.ps")
        self.keep(report("filled field, whole run / grads", *medians_of_both(ours, peer, self.folder), 0.5))
        sizes = [path.stat().st_size / 1e6 for path in (page, self.folder / "grads.ps")]
        self.keep(report("filled field, page / grads's", *sizes, 1, "MB", 1))
        if is_missing("filled field, page in Ghostscript / grads's", "gs"):
            return
        render = ["gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-sDEVICE=png16m", "-r100", "-o", "/dev/null"]
        times = medians_of_both([*render, "fill.ps"], [*render, "grads.ps"], self.folder)
        self.keep(report("filled field, page in Ghostscript / grads's", *times, 1))

    def pictures(self):
        """The same field, and chart B, as PNG of 1000 pixels."""
        if not self.draws_pictures("filled field to PNG, whole run / grads"):
            return
        if is_missing("filled field to PNG, whole run / grads", "cdo", "grads"):
            return
        peer = grads(self.folder, "field", "grads.png x1000 y773 white")
        times = medians_of_both(self.fill("fill.png,1000x773"), peer, self.folder)
        self.keep(report("filled field to PNG, whole run / grads", *times, 0.5))

    def inner(self, pattern):
        """Milliseconds of the inner benchmarks that fit a pattern, by name."""
        command = [self.bench, f"--benchmark_filter={pattern}", "--benchmark_format=json", self.data, ROOT / "share/zav"]
        out = subprocess.run(command, check=True, capture_output=True, text=True).stdout
        return {row["name"]: row["cpu_time"] for row in json.loads(out)["benchmarks"]}

    def inner_loops(self):
        """Lines and bands of the field beside contourpy's, and extremes with a wide radius beside those with a small."""
        extremes = self.inner("extremes")
        wide, narrow = extremes["extremes/radius_40"], extremes["extremes/radius_2"]
        self.keep(report("extremes, radius of 40 points / 2", wide, narrow, 2, scale=1))
        if is_missing("contours, inner loop / contourpy", "cdo"):
            return
        peer = self.contourpy()
        if peer is None:
            print(f"{'contours, inner loop / contourpy':44s} not measured: contourpy isn't installed")
            return
        ours = self.inner("contour")
        self.keep(report("lines, inner loop / contourpy", ours["contour/lines"], peer["lines"], 0.4, scale=1))
        self.keep(report("fill, inner loop / contourpy", ours["contour/fill"], peer["fill"], 0.7, scale=1))

    def contourpy(self):
        """What contourpy takes, by the first Python that has it."""
        for python in (sys.executable, "/usr/bin/python3"):
            command = [python, ROOT / "bench/contour_peer.py", self.folder / "field.srv"]
            process = subprocess.run(command, capture_output=True, text=True)
            if process.returncode == 0:
                words = process.stdout.split()
                return dict(zip(words[::2], map(float, words[1::2])))
        return None

    def streamlines(self):
        name = "streamlines of a 1440 x 721 wind"
        if is_missing(name, "cdo", "grib_copy"):
            return
        source = self.data / "gfs_2p5deg_f120.grib2"
        selection = "shortName=u/v,level=250,typeOfLevel=isobaricInhPa"
        measure(["grib_copy", "-w", selection, source, "coarse.grib2"], self.folder)
        measure(["cdo", "-s", "remapbil,r1440x721", "coarse.grib2", "wind.grib2"], self.folder)
        command = self.ours(
            "p,wind.ps,color", "-ft", "h120", "-le", "250", "-va", "wind<uwnd,vwnd>[m/s:strm]", "wind.grib2"
        )
        self.keep(report_alone(name, self.middle(command, 1), 1, "s of processor time"))

    def copies(self):
        """The copies that the peers read."""
        if is_missing("copies of the fields for the peers", "cdo"):
            return
        measure(["cdo", "-s", "--reduce_dim", "-f", "nc", "-chname,t,tmp", self.data / FIELD, "field.nc"], self.folder)
        measure(["cdo", "-s", "-f", "srv", "-b", "F32", "copy", self.data / FIELD, "field.srv"], self.folder)

    def run(self):
        for step in (self.copies, self.filled_page, self.pictures, self.inner_loops, self.streamlines):
            try:
                step()
            except (Failed, OSError, KeyError, ValueError, subprocess.SubprocessError) as failure:
                print(f"{step.__name__}: not measured: {failure}")
                self.good = False
        return self.good


def main():
    build, data = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    if not (data / FIELD).exists():
        sys.exit(f"bench: no {data / FIELD}: name the folder of the real files, or set ZAV_TEST_DATA")
    with tempfile.TemporaryDirectory() as folder:
        sys.exit(0 if Bench(build, data, Path(folder)).run() else 1)


if __name__ == "__main__":
    main()
