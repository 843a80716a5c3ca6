#!/usr/bin/env python3
"""Measures the ledger: codes per second beside a bare loop of the same INSERTs and beside other ways to number, where the
time of a code goes, how the cost grows with the codes stored, what the audit of all of them takes, and the memory that a
long file takes. Ends with 1 when a target is missed.

usage: ledger.py [--codes N] [--largest N] [--proof] [--engine sqlite|postgres] [--part rates|peers|parts|growth|memory]

--codes    codes that each program issues (300), in the fast policy 2000 at least
--largest  codes stored when the growth is measured last, and audited (1000000)
--proof    checks as well that no code was issued twice, lost or, in the gapless policy, left out
--engine   only that one
--part     only that one

The programs of build/x86 are measured unless KESTREL_BUILD names another build; the component must be registered. Of
several rounds the middle one counts, or the best where a cost is measured; of the audit the processor's time is
shown as well, which for a server's database is that of its client only.
"""
import argparse
import json
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tests" / "support"))
sys.path.insert(0, str(ROOT / "tests" / "ledger"))

import rules  # noqa: E402 (found through the path above)
from databases import PostgresDatabase, PostgresServer, SqliteFile  # noqa: E402 (likewise)
from windows_program import command, path, run, taken  # noqa: E402 (likewise)

PROGRAMS = (1, 2, 4, 8)
GROWTH = (1_000, 10_000, 100_000, 1_000_000)
RATE_ROUNDS = 5
FAST_CODES = 2000  # of each program: fewer take hardly longer than it takes to begin
GROWTH_CODES = 500
GROWTH_ROUNDS = 8
FILL_LEASE = 1000
NUMBER_DIGITS = 9
OF_BARE = {"SQLite": 0.8, "PostgreSQL": 0.7}  # gapless, one program
FAST_OF_GAPLESS = {"PostgreSQL": 10.0}  # one program
LARGEST_GROWTH = 1.2
AUDIT_SECONDS, AUDIT_MEGABYTES = 60, 200
FEW_RECORDS = 10_000
LARGEST_MEMORY = 1.1  # of what issuing by a file of few records takes
MISSED = []


WAYS = ("counter", "lock", "sequence")
PART_NAMES = {"component": "the component", "begin": "BEGIN", "reading": "reading", "writing": "INSERT and UPDATE",
              "commit": "COMMIT", "rest": "all else"}


def verdict(what, measured, limit, target):
    """As the other benchmarks print theirs (bench/Measure.h)."""
    met = measured <= target if limit == "at most" else measured >= target
    print(f"  {what:76} {measured:8.2f}  {limit} {target:5.2f}  {'met' if met else 'MISSED'}", flush=True)
    if not met:
        MISSED.append(what)


class Bench:
    def __init__(self, database, codes, proof):
        self.engine = {"SqliteFile": "SQLite", "PostgresDatabase": "PostgreSQL"}[type(database).__name__]
        self.database, self.codes, self.proof = database, codes, proof
        self.folder = pathlib.Path(tempfile.mkdtemp())
        (self.folder / "rule.rule").write_bytes(rules.numbered(digits=NUMBER_DIGITS).encode())

    def close(self):
        self.database.close()
        shutil.rmtree(self.folder)

    def kledger(self, *arguments):
        result = run("kledger", "--database", self.database.name, *arguments, timeout=3600)
        if result.returncode != 0:
            sys.exit(result.stderr)
        return result.stdout

    def import_rule(self, name, policy, *more):
        self.kledger("rule", "import", path(self.folder / "rule.rule"), "--name", name, "--policy", policy, *more)

    def records(self, count):
        file = self.folder / f"{count}.csv"
        file.write_text("Year\n" + "2024\n" * count)
        return path(file)

    def at_once(self, lines):
        """Runs programs at once; what each printed."""
        running = [subprocess.Popen(line, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, encoding="utf-8")
                   for line in lines]
        outputs = [process.communicate()[0] for process in running]
        if any(process.returncode != 0 for process in running):
            sys.exit("a program failed")
        return outputs

    def issue(self, name, policy, programs):
        """Codes per second of all programs together."""
        self.import_rule(name, policy)
        codes = max(self.codes, FAST_CODES) if policy == "fast" else self.codes
        line = command("kledger", ["--database", self.database.name, "--json", "--patience", "600", "issue",
                                   self.records(codes), "--rule", name])
        outputs = [[json.loads(text) for text in output.splitlines()] for output in self.at_once([line] * programs)]
        if self.proof:
            self.check(name, policy, [entry["code"] for output in outputs for entry in output[:-1]])
        return programs * codes / max(output[-1]["seconds"] for output in outputs)

    def check(self, name, policy, printed):
        stored = sorted(row[0] for row in self.database.query(
            f"SELECT code FROM kestrel_codes WHERE rule_id = (SELECT id FROM kestrel_rules WHERE name = '{name}')"))
        if sorted(printed) != stored or len(set(printed)) != len(printed):
            sys.exit(f"{name}: {len(printed)} codes printed, {len(set(printed))} different ones, {len(stored)} stored")
        whole = [f"2024-{number:0{NUMBER_DIGITS}}" for number in range(1, len(stored) + 1)]
        if policy == "gapless" and stored != whole:
            sys.exit(f"{name}: the numbers have gaps")
        print(f"    {name}: {len(printed)} codes printed, all different, all stored"
              + (", no gap" if policy == "gapless" else ""))

    def inserts(self, name, programs):
        lines = [command("ledger_inserts", [self.database.name, f"{name}-{index}-", self.codes])
                 for index in range(programs)]
        return programs * self.codes / max(float(output) for output in self.at_once(lines))

    def rates(self):
        """The three in turn; the middle of what the turns gave, for the disk is now quick and now slow."""
        print("programs   bare/s   gapless/s  of bare     fast/s  of gapless")
        for programs in PROGRAMS:
            rounds = [(self.inserts(f"bare{programs}-{turn}", programs),
                       self.issue(f"gapless{programs}-{turn}", "gapless", programs),
                       self.issue(f"fast{programs}-{turn}", "fast", programs)) for turn in range(RATE_ROUNDS)]
            bare, gapless, fast = (statistics.median(rates) for rates in zip(*rounds))
            of_bare = statistics.median(gapless / bare for bare, gapless, _ in rounds)
            of_gapless = statistics.median(fast / gapless for _, gapless, fast in rounds)
            print(f"{programs:8} {bare:8.0f} {gapless:11.0f} {of_bare:8.2f} {fast:10.0f} {of_gapless:11.1f}", flush=True)
            if programs == 1:
                verdict(f"{self.engine}: gapless to the bare loop of the same INSERTs", of_bare, "at least",
                        OF_BARE[self.engine])
                if self.engine in FAST_OF_GAPLESS:
                    verdict(f"{self.engine}: fast to gapless", of_gapless, "at least", FAST_OF_GAPLESS[self.engine])

    def other(self, way, programs):
        """Codes per second of programs that number in another way."""
        lines = [command("ledger_peers", [self.database.name, way, self.codes])] * programs
        return programs * self.codes / max(float(output) for output in self.at_once(lines))

    def peers(self):
        """All in turn; the middle of what the turns gave."""
        for way in WAYS:
            self.at_once([command("ledger_peers", [self.database.name, way, "prepare"])])
        print("programs " + "".join(f"{name:>14}" for name in (*WAYS, "gapless", "fast")) + "   (codes per second)")
        cells = []
        for programs in PROGRAMS:
            rounds = [[*(self.other(way, programs) for way in WAYS),
                       *(self.issue(f"{policy}-peer{programs}-{turn}", policy, programs) for policy in ("gapless", "fast"))]
                      for turn in range(RATE_ROUNDS)]
            middle = [statistics.median(rates) for rates in zip(*rounds)]
            print(f"{programs:8} " + "".join(f"{rate:14.0f}" for rate in middle), flush=True)
            ratios = [statistics.median(rates[ours] / rates[way] for rates in rounds)
                      for ours in (len(WAYS), len(WAYS) + 1) for way in range(len(WAYS))]
            cells.append(f"peers: {programs} | " + " | ".join(f"{ratio:.2f}" for ratio in ratios))
        print("\n".join(cells))

    def parts(self):
        """Where the time of a code goes, in each policy, as shares of all of it."""
        shares = {}
        for policy in ("gapless", "fast"):
            self.import_rule(f"parts-{policy}", policy)
            runs = [self.at_once([command("ledger_parts", [self.database.name, f"parts-{policy}", self.codes])])[0]
                    for _ in range(RATE_ROUNDS)]
            seconds = [{name: float(value) for name, value in map(str.split, run.splitlines())} for run in runs]
            quickest = min(seconds, key=lambda parts: sum(parts.values()))
            shares[policy] = {name: value / sum(quickest.values()) for name, value in quickest.items()}
        for name, shown in PART_NAMES.items():
            print(f"parts: {self.engine} | {shown} | " + " | ".join(f"{shares[policy][name]:.2f}" for policy in shares))

    def hold(self, codes):
        """Issues so many codes by one rule, the quick way, and lets it go on in the gapless policy."""
        self.import_rule("growth", "fast", "--lease", FILL_LEASE)
        begin = time.monotonic()
        self.kledger("issue", self.records(codes), "--rule", "growth")
        print(f"  {codes} codes issued in {time.monotonic() - begin:.0f} s", flush=True)
        self.import_rule("growth", "gapless")

    def cost(self):
        """Milliseconds per code that goes to the codes held."""
        output = self.kledger("--json", "issue", self.records(GROWTH_CODES), "--rule", "growth")
        return 1000 * json.loads(output.splitlines()[-1])["seconds"] / GROWTH_CODES

    def taken(self, *arguments):
        return taken("kledger", "--database", self.database.name, *arguments)


def with_one(work):
    """A part that is measured on one database."""
    def measured(make_database, options):
        bench = Bench(make_database(), options.codes, options.proof)
        try:
            work(bench)
        finally:
            bench.close()
    return measured


def measure_growth(make_database, options):
    """A database for each size, measured in turn and the best of it kept: a machine that is slower for a while is so for all."""
    sizes = [size for size in GROWTH if size <= options.largest]
    benches = []
    try:
        for size in sizes:
            benches.append(Bench(make_database(), options.codes, options.proof))
            benches[-1].hold(size)
        os.sync()  # what filling has left for the disk to write is nobody's cost
        rounds = [[bench.cost() for bench in benches] for _ in range(GROWTH_ROUNDS)]
        best = [min(costs) for costs in zip(*rounds)]
        seconds, processor, megabytes = benches[-1].taken("audit")
    finally:
        for bench in benches:
            bench.close()
    print(f"  codes stored  ms per code  of the first  (gapless, best of {GROWTH_ROUNDS} times {GROWTH_CODES} codes)")
    for size, cost in zip(sizes, best):
        print(f"{size:14} {cost:12.3f} {cost / best[0]:13.2f}", flush=True)
    engine = benches[0].engine
    verdict(f"{engine}: a code when {sizes[-1]:,} are stored to one when {sizes[0]:,} are", best[-1] / best[0], "at most",
            LARGEST_GROWTH)
    print(f"  audit of {sizes[-1]} codes: {seconds:.1f} s, {processor:.1f} s of the processor, {megabytes:.0f} MB")
    verdict(f"{engine}: audit of {sizes[-1]:,} codes to {AUDIT_SECONDS} s", seconds / AUDIT_SECONDS, "at most", 1)
    verdict(f"{engine}: its memory to {AUDIT_MEGABYTES} MB", megabytes / AUDIT_MEGABYTES, "at most", 1)


def measure_memory(make_database, options):
    """Issuing by a file in the fast policy: what is in memory does not depend on how long the file is."""
    bench = Bench(make_database(), options.codes, options.proof)
    try:
        bench.import_rule("file", "fast", "--lease", FILL_LEASE)
        few = bench.taken("issue", bench.records(FEW_RECORDS), "--rule", "file")[2]
        seconds, _, many = bench.taken("issue", bench.records(options.largest), "--rule", "file")
    finally:
        bench.close()
    print(f"  a file of {FEW_RECORDS} records: {few:.0f} MB, of {options.largest}: {many:.0f} MB, {seconds:.0f} s")
    verdict(f"{bench.engine}: memory for {options.largest:,} records to that for {FEW_RECORDS:,}", many / few,
            "at most", LARGEST_MEMORY)


PARTS = {"rates": with_one(Bench.rates), "peers": with_one(Bench.peers), "parts": with_one(Bench.parts),
         "growth": measure_growth, "memory": measure_memory}
ONLY = {"peers": "PostgreSQL"}  # what is written for one engine


def measure(title, make_database, options):
    print(f"== {title}, {options.codes} codes per program")
    for name, part in PARTS.items():
        if options.part in (None, name) and ONLY.get(name, title) == title:
            part(make_database, options)


def measure_postgres(options):
    server = PostgresServer(in_memory=False)
    try:
        measure("PostgreSQL", lambda: PostgresDatabase(server), options)
    finally:
        server.close()


ENGINES = {"sqlite": lambda options: measure("SQLite", SqliteFile, options), "postgres": measure_postgres}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--codes", type=int, default=300)
    parser.add_argument("--largest", type=int, default=1_000_000)
    parser.add_argument("--proof", action="store_true")
    parser.add_argument("--engine", choices=ENGINES)
    parser.add_argument("--part", choices=PARTS)
    options = parser.parse_args()
    for name, engine in ENGINES.items():
        if options.engine in (None, name):
            engine(options)
    return 1 if MISSED else 0


if __name__ == "__main__":
    sys.exit(main())
