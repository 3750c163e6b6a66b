#!/usr/bin/env python3
"""Prints the speed of image files, and the size of GIF, as ratios to ImageMagick's, measured side by side in one run.

Usage: compare_image.py BUILD_FOLDER PICTURE.png
"""

import sys
import tempfile
from pathlib import Path

from timing import best_of_both, is_missing, report, run


def main():
    build, picture = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    if is_missing("images / ImageMagick", "convert"):
        return
    convert = build / "bench" / "image_convert"
    with tempfile.TemporaryDirectory() as folder:
        # A palette for both: choosing one isn't measured.
        run(["convert", picture, "-strip", "+dither", "-colors", "200", "PNG8:x.png"], folder)
        ours, peer = best_of_both([convert, "x.png", "ours.gif"], ["convert", "x.png", "peer.gif"], folder)
        good = report("PNG to GIF, whole run / convert", ours, peer, 0.5)
        sizes = [(Path(folder) / name).stat().st_size for name in ("ours.gif", "peer.gif")]
        good &= report("size of the GIF / convert", *sizes, 1.05, "KB", 0.001)
        for kind in ("gif", "png"):
            file = "peer.gif" if kind == "gif" else "x.png"
            ours, peer = best_of_both([convert, file], ["convert", file, "null:"], folder)
            good &= report(f"{kind.upper()} read, whole run / convert", ours, peer, 1.0)
    sys.exit(0 if good else 1)


if __name__ == "__main__":
    main()
