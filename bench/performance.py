#!/usr/bin/env python3
"""Runs the benchmarks, prints one table of what they measured against their targets, and writes docs/performance.md.

usage: performance.py [--write] [component|designer|ledger]...

Without names all of them run. --write writes the document, which tells of all of them. Ends with 1 when a target is missed.
"""
import argparse
import datetime
import os
import pathlib
import platform
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
LAUNCHER = ROOT / "tools" / "wine.sh"
DOCUMENT = ROOT / "docs" / "performance.md"
BUILDS = {"x86": "32-bit", "x64": "64-bit"}
VERDICT = re.compile(r"^ +(?P<what>\S.*?) +(?P<measured>\d+\.\d+) +(?P<limit>at most|at least) +(?P<target>\d+\.\d+)"
                     r"  (?P<met>met|MISSED)$")
CASE = re.compile(r" \((?P<case>[^()]*)\)$")


def program(build, name, *arguments):
    return [str(LAUNCHER), str(ROOT / "build" / build / f"{name}.exe"), *arguments]


def script(build):
    return program(build, "kscript", "Z:" + str(ROOT / "bench" / "issuing.vbs").replace("/", "\\"))


def ledger(*arguments):
    return [sys.executable, "-u", str(ROOT / "bench" / "ledger.py"), *arguments]


COMPONENT = [(name, build, program(build, f"bench_{name}"))
             for build in BUILDS for name in ("issuing", "dispatch", "relations", "rule", "loading", "soak")]
SETS = {
    "component": COMPONENT + [("issuing from a script", build, script(build)) for build in BUILDS],
    "designer": [("designer", build, program(build, "bench_designer")) for build in BUILDS],
    # How the cost grows up to a million codes, which takes half an hour, bench/ledger.py shows when it is called itself.
    "ledger": [("ledger", "x86", ledger("--largest", "100000"))],
}


class Row:
    """A line of the table: one thing that was measured by one build."""

    def __init__(self, build, match):
        self.build = BUILDS[build]
        case = CASE.search(match["what"])
        self.case = case["case"] if case else ""
        self.what = CASE.sub("", match["what"])
        self.measured, self.target = float(match["measured"]), float(match["target"])
        self.limit, self.met = match["limit"], match["met"] == "met"

    def distance(self):
        """How near the target; above 1 it is missed."""
        ratio = self.measured / self.target
        return ratio if self.limit == "at most" else 1 / max(ratio, 1e-9)

    def cells(self):
        return [self.what + (f" ({self.case})" if self.case else ""), self.build, f"{self.measured:.2f}",
                f"{self.limit} {self.target:g}", "met" if self.met else "**missed**"]


def worst(rows):
    """Of what was measured in several cases the one that is nearest to its target, or farthest beyond it."""
    found = {}
    for row in rows:
        key = (row.what, row.build)
        if key not in found or row.distance() > found[key].distance():
            found[key] = row
    return list(found.values())


def run(title, build, line):
    """What the benchmark printed, shown as it comes."""
    print(f"== {title} ({BUILDS[build]})", flush=True)
    environment = {**os.environ, "KESTREL_BUILD": str(ROOT / "build" / build), "PYTHONDONTWRITEBYTECODE": "1"}
    lines = []
    with subprocess.Popen(line, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, encoding="utf-8", errors="replace",
                          env=environment) as process:
        for text in process.stdout:
            lines.append(text.rstrip("\r\n"))
            print(lines[-1], flush=True)
    rows = [Row(build, match) for match in map(VERDICT.match, lines) if match]
    missed = any(not row.met for row in rows)
    # A missed target ends a benchmark with 1 as well; any other end is no measurement.
    if not rows or (process.returncode != 0 and not missed):
        sys.exit(f"{title} ({BUILDS[build]}) measured nothing: exit code {process.returncode}")
    return rows, lines


def table(rows, heads):
    lines = [heads, ["---"] * len(heads), *rows]
    return "\n".join("| " + " | ".join(cells) + " |" for cells in lines) + "\n"


def named_lines(lines, name):
    """The cells of the lines that begin with the name, as bench/ledger.py prints them for the document."""
    return [line[len(name) + 1:].strip().split(" | ") for line in lines if line.startswith(name + ":")]


def processor():
    text = pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8")
    found = re.search(r"^model name\s*: (.*)$", text, re.MULTILINE)
    return found[1] if found else platform.machine()


def machine():
    wine = subprocess.run([os.environ.get("WINELOADER", "wine"), "--version"], capture_output=True, text=True, check=False)
    return f"{os.cpu_count()} processors of the kind {processor()}, {platform.system()} and {wine.stdout.strip() or 'Wine'}"


def document(rows, lines):
    text = (ROOT / "bench" / "performance.md.in").read_text(encoding="utf-8")
    values = {
        "DATE": datetime.date.today().isoformat(),
        "MACHINE": machine(),
        "TARGETS": table([row.cells() for row in rows], ["What", "Build", "Measured", "Target", ""]),
        "PARTS": table(named_lines(lines, "parts"), ["Database", "Part", "gapless", "fast"]),
        "PEERS": table(named_lines(lines, "peers"),
                       ["Programs", "gapless / counter", "gapless / lock", "gapless / sequence", "fast / counter",
                        "fast / lock", "fast / sequence"]),
    }
    for name, value in values.items():
        text = text.replace(f"@{name}@", value.rstrip("\n"))
    DOCUMENT.write_text(text, encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--write", action="store_true")
    parser.add_argument("sets", nargs="*", choices=[[], *SETS], metavar="component|designer|ledger")
    options = parser.parse_args()
    if options.write and options.sets:
        parser.error("the document tells of all benchmarks; --write takes no names")
    rows, lines = [], []
    for name in options.sets or SETS:
        for title, build, line in SETS[name]:
            measured, printed = run(title, build, line)
            rows += measured
            lines += printed
    rows = worst(rows)
    print()
    print(table([row.cells() for row in rows], ["What", "Build", "Measured", "Target", ""]))
    if options.write:
        document(rows, lines)
        print(f"written: {DOCUMENT.relative_to(ROOT)}")
    missed = sum(not row.met for row in rows)
    print(f"{len(rows) - missed} met, {missed} missed")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
