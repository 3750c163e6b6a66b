#!/usr/bin/env python3
"""Plants small faults in src, one at a time, and lists those that no test catches.

Usage: mutate.py [N] [SEED] [FOLDER]    N faults (20), in src or in src/FOLDER; without a seed a fresh one is chosen

The same seed gives the same faults as long as the sources stay as they are. The tree is copied to build-mutate/tree and
built there once, -O1, with the units as a shared library. A fault is then one compilation and one link into a library of
its own, which the test programs take in the place of the right one: first the program of the fault's folder, then the
others, the fast ones first, each until its first failing test or its time limit, which counts as caught. A survivor is
listed as soon as it is found. A fault that can't be compiled gives way to the next. Files of headers, the program's
main file and traces aren't touched. Needs only Python's standard library.
"""

import concurrent.futures
import json
import os
import random
import re
import resource
import shlex
import shutil
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
WORK = ROOT / "build-mutate"
TREE = WORK / "tree"
BUILD = WORK / "build"
LIBRARY = "libzav.so"
TESTED = ["plot", "grid", "gks", "image", "program", "var", "map", "calc", "files", "physics", "frame", "e2e", "fuzz"]

# ---------------------------------------------------------------- places of faults

TOKEN = re.compile(
    r"""(?P<skip>//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n\\]|\\.)*|R"\((?:.*?)\)"|"(?:[^"\\\n]|\\.)*"|'(?:[^'\\\n]|\\.)+')
    |(?P<number>\b(?:0[xX][0-9a-fA-F']+|\d[\d']*\.?\d*(?:[eE][+-]?\d+)?)[uUlLfF]*\b|\b\d+\.[fF]?)
    |(?P<word>[A-Za-z_]\w*)
    |(?P<sign><=>|->|::|<<=|>>=|<<|>>|<=|>=|==|!=|&&|\|\||\+\+|--|\+=|-=|\*=|/=|.)
    """,
    re.X | re.S | re.M,
)
CHANGED_SIGNS = {
    "relation": {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="},
    "sign": {"+": "-", "-": "+", "+=": "-=", "-=": "+=", "*": "/", "/": "*"},
    "condition": {"&&": "||", "||": "&&"},
}
OPPOSITES = {"min": "max", "max": "min", "fmin": "fmax", "fmax": "fmin", "true": "false", "false": "true"}
KEYWORDS = {"if", "for", "while", "switch", "return", "sizeof", "catch", "static_assert", "alignof", "decltype", "case"}
TRACE = re.compile(r"\s*MESS_print\((TRACE|0x40000000)")


class Source:
    """The tokens of a file outside of comments, texts and directives."""

    def __init__(self, path):
        self.path = path
        self.text = path.read_text()
        self.tokens = [m for m in TOKEN.finditer(self.text) if not m.group().isspace()]
        # Texts stay as operands; comments and directives go.
        self.tokens = [m for m in self.tokens if m["skip"] is None or m.group()[0] in "\"'R"]
        self.words = [m.group() for m in self.tokens]
        self.partner = {}
        open_at = []
        for i, word in enumerate(self.words):
            if word in ("(", "[", "{"):
                open_at.append(i)
            elif word in (")", "]", "}") and open_at:
                first = open_at.pop()
                self.partner[first], self.partner[i] = i, first

    def span(self, first, last):
        """The text from a token to another."""
        return self.text[self.tokens[first].start() : self.tokens[last].end()]

    def spaced(self, i):
        """A token between blanks: an operator of two operands, not a template's bracket, a pointer or a reference."""
        start, end = self.tokens[i].span()
        return self.text[start - 1] in " \n" and self.text[end : end + 1] in (" ", "\n")

    def line(self, offset):
        return self.text.count("\n", 0, offset) + 1


class Fault:
    """One change of a file: the text from start to end becomes new."""

    def __init__(self, source, kind, start, end, new):
        self.source, self.kind, self.start, self.end, self.new = source, kind, start, end, new

    def text(self):
        return self.source.text[: self.start] + self.new + self.source.text[self.end :]

    def describe(self):
        def line_of(text, start):
            begin = text.rfind("\n", 0, start) + 1
            return " ".join(text[begin : text.find("\n", start)].split())

        place = f"{self.source.path.relative_to(TREE)}:{self.source.line(self.start)}"
        return f"{place}: {self.kind}\n    - {line_of(self.source.text, self.start)}\n    + {line_of(self.text(), self.start)}"


def changed_number(text, doubled):
    """A number one higher or, if wanted, twice as large; None for what isn't one."""
    digits = text.rstrip("uUlLfF") if not text.lower().startswith("0x") else text.rstrip("uUlL")
    suffix = text[len(digits) :]
    digits = digits.replace("'", "")
    try:
        if re.fullmatch(r"\d+|0[xX][0-9a-fA-F]+", digits):
            value = int(digits, 0) if not re.fullmatch(r"0\d+", digits) else int(digits, 8)
            return str(2 * value if doubled and value else value + 1) + suffix
        value = float(digits)
        return repr(2 * value if doubled and value else value + 1) + suffix
    except ValueError:
        return None


def sign_faults(source, i):
    word = source.words[i]
    for kind, table in CHANGED_SIGNS.items():
        # "template <" stands between blanks too.
        if word in table and source.spaced(i) and source.words[i - 1] not in ("template", "operator"):
            yield kind, i, i, table[word]


def number_faults(source, i):
    if source.tokens[i]["number"]:
        for doubled in (False, True):
            new = changed_number(source.words[i], doubled)
            if new is not None:
                yield "constant", i, i, new


def word_faults(source, i):
    word = source.words[i]
    if word in OPPOSITES and (word in ("true", "false") or source.words[i + 1 : i + 2] == ["("]):
        yield ("min for max" if word[-1] in "nx" else "truth"), i, i, OPPOSITES[word]


def condition_faults(source, i):
    if source.words[i] == "if" and source.words[i + 1] == "(" and i + 1 in source.partner:
        last = source.partner[i + 1]
        if ";" not in source.words[i + 1 : last]:
            yield "condition", i + 1, last, "(!" + source.span(i + 1, last) + ")"


def return_faults(source, i):
    if source.words[i] == "return" and source.words[i + 1] not in (";", "{", "true", "false"):
        last = source.words.index(";", i) - 1
        if "{" not in source.words[i:last]:
            yield "return", i + 1, last, "(" + source.span(i + 1, last) + ") + 1"


def call_faults(source, i):
    """A statement that is only a call, and the arguments of any call."""
    if not source.tokens[i]["word"] or source.words[i] in KEYWORDS or source.words[i + 1 : i + 2] != ["("]:
        return
    last = source.partner.get(i + 1)
    if last is None:
        return
    first = i
    while source.words[first - 1] in ("::", ".", "->") and source.tokens[first - 2]["word"]:
        first -= 2
    before = source.words[first - 1]
    if source.tokens[first - 1]["word"] and before not in ("return", "else", "case"):
        return  # a declaration
    if source.words[last + 1 : last + 2] == [";"] and before in (";", "{", "}", ")", "else"):
        yield "call dropped", first, last, "(void)0"
    if source.words[i] in ("min", "max"):
        return  # in either order the same
    starts = [i + 2]
    at = i + 2
    while at < last:
        if source.words[at] == ",":
            starts.append(at + 1)
        at = source.partner[at] + 1 if source.words[at] in ("(", "[", "{") and at in source.partner else at + 1
    ends = [start - 2 for start in starts[1:]] + [last - 1]
    for k in range(len(starts) - 1):
        left = source.span(starts[k], ends[k])
        right = source.span(starts[k + 1], ends[k + 1])
        if left != right:
            yield "arguments swapped", starts[k], ends[k + 1], right + ", " + left


def faults_of(path):
    """All faults that a file may get."""
    source = Source(path)
    makers = (sign_faults, number_faults, word_faults, condition_faults, return_faults, call_faults)
    for i in range(2, len(source.words) - 1):
        for make in makers:
            for kind, first, last, new in make(source, i):
                start, end = source.tokens[first].start(), source.tokens[last].end()
                line = source.text[source.text.rfind("\n", 0, start) + 1 : end]
                if not TRACE.match(line) and "template" not in line and "static_assert" not in line:
                    yield Fault(source, kind, start, end, new)


def sample(folder, seed):
    """All faults in a random order that the seed fixes, no kind more often than another."""
    by_kind = {}
    for path in sorted((TREE / "src" / folder).rglob("*.cpp")):
        if path.name != "main.cpp":
            for fault in faults_of(path):
                by_kind.setdefault(fault.kind, []).append(fault)
    chance = random.Random(seed)
    kinds = sorted(by_kind)
    for kind in kinds:
        chance.shuffle(by_kind[kind])
    while kinds:
        kind = chance.choice(kinds)
        yield by_kind[kind].pop()
        kinds = [one for one in kinds if by_kind[one]]


# ---------------------------------------------------------------- building and testing


def copy_tree():
    """Brings build-mutate/tree up to date; files that didn't change keep their times."""
    listed = subprocess.run(
        ["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=ROOT, capture_output=True, text=True, check=True
    ).stdout.split("\0")
    wanted = {name for name in listed if name and (ROOT / name).is_file()}
    for name in wanted:
        old, new = TREE / name, ROOT / name
        if not old.exists() or old.read_bytes() != new.read_bytes():
            old.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(new, old)
    for old in [path for path in TREE.rglob("*") if path.is_file()]:
        if str(old.relative_to(TREE)) not in wanted:
            old.unlink()


def build():
    """Builds the tree as it is; the folders that have tests."""
    options = [
        "-DCMAKE_BUILD_TYPE=None",
        "-DCMAKE_CXX_FLAGS=-O1",
        "-DBUILD_SHARED_LIBS=ON",
        # A run path that LD_LIBRARY_PATH comes before.
        "-DCMAKE_EXE_LINKER_FLAGS=-Wl,--enable-new-dtags",
        "-DZAV_BENCH=OFF",
    ]
    with open(WORK / "build.log", "w") as log:
        for command in (["cmake", "-G", "Ninja", "-S", TREE, "-B", BUILD, *options], ["cmake", "--build", BUILD]):
            if subprocess.run(command, stdout=log, stderr=log).returncode != 0:
                sys.exit(f"mutate: the tree can't be built, see {WORK / 'build.log'}")
    return [folder for folder in TESTED if (BUILD / "tests" / f"test_{folder}").exists()]


def hold_back():
    """A fault may ask for any amount of memory or file."""
    resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
    resource.setrlimit(resource.RLIMIT_FSIZE, (8 << 30, 8 << 30))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run_test(folder, library, limit, left_out=()):
    """True if the test program of a folder passes with the library of that directory."""
    environment = dict(os.environ, LD_LIBRARY_PATH=str(library))
    process = subprocess.Popen(
        [BUILD / "tests" / f"test_{folder}", "--gtest_fail_fast", f"--gtest_filter=-{':'.join(left_out)}"],
        cwd=library,
        env=environment,
        stdin=subprocess.DEVNULL,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
        start_new_session=True,
        preexec_fn=hold_back,
    )
    try:
        return process.wait(timeout=limit) == 0
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, 9)
        process.wait()
        return False


class Bench:
    """Tries faults: the commands that compile and link, and the test programs with their time limits."""

    def __init__(self, folders):
        self.folders = folders
        self.compile = {Path(one["file"]): one for one in json.loads((BUILD / "compile_commands.json").read_text())}
        commands = subprocess.run(
            ["ninja", "-C", BUILD, "-t", "commands", LIBRARY], capture_output=True, text=True, check=True
        ).stdout
        self.link = commands.strip().splitlines()[-1]
        self.limits = {}
        self.left_out = {}

    def measure(self):
        """What fails without a fault is left out; a program's limit is ten times what it takes."""
        for folder in self.folders:
            start = time.monotonic()
            program = [BUILD / "tests" / f"test_{folder}", "--gtest_brief=1"]
            run = subprocess.run(program, cwd=BUILD, stdin=subprocess.DEVNULL, capture_output=True, errors="replace")
            self.limits[folder] = 10 + 10 * (time.monotonic() - start)
            self.left_out[folder] = sorted(set(re.findall(r"^\[  FAILED  \] (\w[^\s,]*)", run.stdout, re.M)))
            if self.left_out[folder]:
                print(f"mutate: left out, since they fail without a fault: {' '.join(self.left_out[folder])}")
            if not run_test(folder, BUILD, 600, self.left_out[folder]):
                sys.exit(f"mutate: test_{folder} fails without a fault")

    def make(self, fault, place):
        """Compiles the fault and links a library with it into a directory. True on success."""
        shutil.rmtree(place, ignore_errors=True)
        place.mkdir(parents=True)
        changed = place / fault.source.path.name
        changed.write_text(fault.text())
        words = shlex.split(self.compile[fault.source.path]["command"])
        right = words[words.index("-o") + 1]
        words[words.index("-o") + 1] = str(place / "fault.o")
        words[words.index("-c") + 1] = str(changed)
        if subprocess.run([*words, "-w"], cwd=BUILD, capture_output=True).returncode != 0:
            return False
        link = self.link.replace(f" {right} ", f" {place / 'fault.o'} ")
        link = link.replace(f"-o {LIBRARY} ", f"-o {place / LIBRARY} ")
        return subprocess.run(link, shell=True, cwd=BUILD, capture_output=True).returncode == 0

    def catcher(self, fault, place):
        """The folder whose tests catch the fault, "" if none does, None if it can't be compiled."""
        if not self.make(fault, place):
            return None
        own = fault.source.path.relative_to(TREE / "src").parts[0]
        for folder in sorted(self.folders, key=lambda one: (one != own, self.limits[one])):
            if not run_test(folder, place, self.limits[folder], self.left_out[folder]):
                return folder
        return ""


def plant(bench, faults, count, workers):
    """Tries faults until `count` of them could be compiled, and lists those that nothing catches. Planted and caught."""
    planted, caught, tried = 0, 0, 0
    with concurrent.futures.ThreadPoolExecutor(workers) as pool:
        jobs = {}
        while True:
            for fault in faults if planted + len(jobs) < count else ():
                tried += 1
                jobs[pool.submit(bench.catcher, fault, WORK / "faults" / str(tried))] = fault
                if planted + len(jobs) >= count or len(jobs) >= workers:
                    break
            if not jobs:
                break
            for job in concurrent.futures.wait(jobs, return_when=concurrent.futures.FIRST_COMPLETED).done:
                fault, catcher = jobs.pop(job), job.result()
                if catcher is not None:
                    planted += 1
                    caught += catcher != ""
                if catcher == "":
                    print(fault.describe(), flush=True)
                if planted and planted % 10 == 0 and catcher is not None:
                    print(f"mutate: planted {planted}, caught {caught}", flush=True)
    shutil.rmtree(WORK / "faults", ignore_errors=True)
    return planted, caught


def main():
    count = int(sys.argv[1]) if len(sys.argv) > 1 else 20
    seed = int(sys.argv[2]) if len(sys.argv) > 2 else random.SystemRandom().randrange(1000000)
    folder = sys.argv[3] if len(sys.argv) > 3 else ""
    folder = folder.removeprefix("src/")
    if not (ROOT / "src" / folder).is_dir():
        sys.exit(f"mutate: no folder src/{folder}")
    copy_tree()
    bench = Bench(build())
    bench.measure()
    print(f"mutate: {count} faults in src/{folder}, seed {seed}; those that no test catches:", flush=True)
    start = time.monotonic()
    planted, caught = plant(bench, sample(folder, seed), count, os.cpu_count() or 1)
    seconds = (time.monotonic() - start) / max(1, planted)
    print(f"mutate: seed {seed}: planted {planted}, caught {caught}, survived {planted - caught}; {seconds:.1f} s a fault")


if __name__ == "__main__":
    main()
