"""What the comparisons share: runs of programs in turns, and rows with their limits."""

import os
import shutil
import statistics
import subprocess
import sys
import time

ROUNDS = 7


class Failed(Exception):
    """A command that ended with a status other than 0."""


def measure(command, folder):
    """Seconds of one run, seconds of processor time, and peak memory in MB."""
    start = time.perf_counter()
    process = subprocess.Popen(command, cwd=folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)  # it has been waited for
    seconds = time.perf_counter() - start
    if status != 0:
        raise Failed(f"status {process.returncode} from: {' '.join(map(str, command))}")
    return seconds, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def run(command, folder):
    """Seconds of one run that has to succeed, and its peak memory in MB."""
    try:
        seconds, _, memory = measure(command, folder)
    except Failed as failure:
        sys.exit(f"bench: {failure}")
    return seconds, memory


def best_of_both(ours, peer, folder):
    """Least time of each of two commands, run in turns so that both meet the same machine."""
    times = [(run(ours, folder)[0], run(peer, folder)[0]) for _ in range(ROUNDS)]
    return min(t[0] for t in times), min(t[1] for t in times)


def medians_of_both(ours, peer, folder):
    """Middle time of each of two commands, run in turns with their files in memory."""
    for command in (ours, peer):
        measure(command, folder)
    times = [(measure(ours, folder)[0], measure(peer, folder)[0]) for _ in range(ROUNDS)]
    return statistics.median(t[0] for t in times), statistics.median(t[1] for t in times)


def report(name, ours, peer, limit, unit="ms", scale=1000):
    ratio = ours / peer
    verdict = "ok" if ratio <= limit else "OVER"
    print(f"{name:44s} {ours * scale:9.1f} {unit} / {peer * scale:9.1f} {unit} = {ratio:6.3f}  (at most {limit}) {verdict}")
    return ratio <= limit


def report_alone(name, ours, limit, unit):
    verdict = "ok" if ours <= limit else "OVER"
    print(f"{name:44s} {ours:9.2f} {unit}  (at most {limit}) {verdict}")
    return ours <= limit


def is_missing(name, *tools):
    """True, with a row that says so, if a program isn't installed."""
    missing = [tool for tool in tools if shutil.which(tool) is None]
    if missing:
        verb = "isn't" if len(missing) == 1 else "aren't"
        print(f"{name:44s} not measured: {' and '.join(missing)} {verb} installed")
    return bool(missing)
