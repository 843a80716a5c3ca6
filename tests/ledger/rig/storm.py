"""Programs that issue, import, void, adopt and audit at once, while connections are cut, programs killed and servers
restarted; it goes on until everything has happened as often as wanted."""
import collections
import dataclasses
import random
import signal
import subprocess
import threading
import time

import rules
from rig import checks
from rig.proxy import Chances, Cut, Kind
from rig.requests import Book
from rig.server import Place
from rig.stages import STAGES
from windows_program import command, path, run

CUT_KINDS = (Kind.BEFORE, Kind.DURING, Kind.AFTER, Kind.LATE)
GAPLESS, FAST = ("gapless1", "gapless2"), ("fast1", "fast2")
PROBABILITY = 0.5  # of a cut at a COMMIT
LATEST = 3.0  # seconds that a COMMIT is late by
DASHES = "-/.:"
YEARS = ("2023", "2024")
PATIENCE = 40  # seconds that a program is told to wait
MOST_TROUBLES = 100  # after which there is nothing to wait for any more
HUNG_AFTER = PATIENCE + 40
FILE_RECORDS = {"gapless": 60, "fast": 400}
ADOPTED_AT_ONCE = 5
IMPORTS_AT_ONCE = 2
FILE_TAKES = 60  # seconds at the very most
CHANGED = "was changed meanwhile; start again"
ENDS_WITHIN = 100  # seconds for what is under way when all has happened


@dataclasses.dataclass
class Numbers:
    """How often each is to happen."""

    cuts: int = 0
    kills: int = 0
    restarts: int = 0
    failovers: int = 0
    imports: int = 0
    voids: int = 0
    adoptions: int = 0
    audits: int = 0


class Storm:
    """One run on one stage. After run(), `findings` holds what is wrong, and `figures` what happened."""

    def __init__(self, engine, numbers, programs=6, seed=1, limit=240, with_keys=True):
        self.engine = engine
        self.numbers = numbers
        self.programs = programs
        self.seed = seed
        self.limit = limit
        self.with_keys = with_keys
        self.book = Book()
        self.lock = threading.Lock()
        self.running = {}  # program -> whether it was killed by us
        self.done = collections.Counter()
        self.troubles = []
        self.over = threading.Event()
        self.place = Place()
        self.folder = self.place.folder
        each, more = divmod(numbers.cuts, len(CUT_KINDS))
        wanted = {kind: each + (number < more) for number, kind in enumerate(CUT_KINDS)}
        self.plan = Chances({kind: count for kind, count in wanted.items() if count}, PROBABILITY, seed, LATEST)
        self.raging = False
        self.figures = {}
        self.findings = {}

    def run(self):
        begin = time.monotonic()
        try:
            with STAGES[self.engine](self._cut) as self.stage:
                self._import_all()
                if not self.troubles:
                    self._rage()
                    self._conclude()
        finally:
            self.place.close()
        self.findings["troubles"] = self.troubles
        self.figures["seconds"] = round(time.monotonic() - begin)

    # Programs

    def kledger(self, *arguments, database=0):
        """Runs a command to its end, through the way that also the others take."""
        name = self.stage.databases[database % len(self.stage.databases)]
        try:
            return run("kledger", "--database", name, "--patience", PATIENCE, *arguments, timeout=HUNG_AFTER)
        except subprocess.TimeoutExpired:
            return subprocess.CompletedProcess(arguments, "hung", "", f"no end after {HUNG_AFTER} seconds")

    def must(self, *arguments, database=0):
        """A command that has to succeed, whatever happens meanwhile."""
        result = self.kledger(*arguments, database=database)
        if result.returncode != 0:
            self.troubles.append(f"{' '.join(map(str, arguments[:2]))}: {result.returncode} {result.stderr.strip()[-300:]}")
        return result

    def _import(self, rule, dash, file_name):
        file = self.folder / file_name
        file.write_bytes(rules.numbered(dash=dash).encode())
        policy = "gapless" if rule in GAPLESS else "fast"
        return self.must("rule", "import", path(file), "--name", rule, "--policy", policy, "--lease", "50")

    def _import_all(self):
        """Before anything is cut: without its rules nothing can be shown."""
        for rule in GAPLESS + FAST:
            self._import(rule, DASHES[0], "first.rule")

    # Threads

    def _cut(self):
        return self.plan() if self.raging else Cut(Kind.PASS)

    def _rage(self):
        self.raging = True
        workers = [threading.Thread(target=self._work, args=(number,)) for number in range(self.programs)]
        others = [threading.Thread(target=self._repeat, args=(name, act)) for name, act in (
            ("kills", self._kill), ("restarts", self._restart), ("failovers", self._fail_over), ("imports", self._change),
            ("voids", self._void), ("adoptions", self._adopt), ("audits", self._audit))]
        for thread in workers + others:
            thread.start()
        self._wait_for_all(others)
        self.over.set()
        for thread in workers + others:
            thread.join()

    def _wait_for_all(self, others):
        end = time.monotonic() + self.limit
        while any(thread.is_alive() for thread in others) or not self.plan.is_done():
            if time.monotonic() > end or len(self.troubles) > MOST_TROUBLES:
                break
            time.sleep(0.1)
        self.plan.stop()

    def _repeat(self, name, act):
        """As often as wanted; each call says how often it happened. A failure of the test itself is trouble as well."""
        generator = random.Random(f"{self.seed} {name}")
        while self.done[name] < getattr(self.numbers, name) and not self.over.is_set():
            try:
                self.done[name] += act(self.done[name], generator)
            except (RuntimeError, OSError, subprocess.SubprocessError) as error:
                self.troubles.append(f"{name}: {error}")
                return
            time.sleep(0.05)

    # One file of records after the other, each asked for again and again until it is done.
    def _work(self, number):
        rule = (GAPLESS + FAST)[number % len(GAPLESS + FAST)]
        policy = "gapless" if rule in GAPLESS else "fast"
        while not self.over.is_set():
            keys = self.book.new_requests(rule, FILE_RECORDS[policy])
            end = None
            while not self._issue(number, rule, keys):
                end = end or (time.monotonic() + ENDS_WITHIN if self.over.is_set() else None)
                if (end and time.monotonic() > end) or len(self.troubles) > MOST_TROUBLES:
                    self.troubles.append(f"the records of {rule} were not done in time")
                    return

    def _issue(self, number, rule, keys):
        """One program for the records; whether it did all of them."""
        if not self.with_keys:
            keys = self.book.unanswered(keys)
        records, out, error = (self.folder / f"{number}.{suffix}" for suffix in ("csv", "out", "err"))
        records.write_text("Year,Key,Note\n" + "".join(
            f"{YEARS[index % len(YEARS)]},{key},{key}\n" for index, key in enumerate(keys)))
        key_column = ["--key-column", "Key"] if self.with_keys else []
        with open(out, "wb") as out_stream, open(error, "wb") as error_stream:
            program = subprocess.Popen(
                command("kledger", ["--database", self.stage.databases[number % len(self.stage.databases)], "--json",
                                    "--patience", PATIENCE, "issue", path(records), "--rule", rule, "--keep", *key_column]),
                stdin=subprocess.DEVNULL, stdout=out_stream, stderr=error_stream)
        code = self._wait(program)
        self.book.read(out.read_text(encoding="utf-8"), keys)
        if code == 0:
            return True
        said = error.read_text(encoding="utf-8").strip()
        if code is not None and CHANGED not in said:
            self.troubles.append(f"issue: {code} {said[-300:]}")
        return False

    def _wait(self, program):
        """The exit code; None for one that was killed."""
        with self.lock:
            self.running[program] = False
        try:
            code = program.wait(HUNG_AFTER + FILE_TAKES)
        except subprocess.TimeoutExpired:
            program.kill()
            program.wait()
            code = "hung"
        with self.lock:
            return None if self.running.pop(program) and code != 0 else code

    # What happens to them

    def _kill(self, _, generator):
        time.sleep(generator.uniform(0.0, 0.4))
        with self.lock:
            alive = [program for program, killed in self.running.items() if not killed and program.poll() is None]
            if not alive:
                return 0
            program = generator.choice(alive)
            self.running[program] = True
            program.send_signal(signal.SIGKILL)
        return 1

    def _restart(self, number, generator):
        time.sleep(generator.uniform(1.0, 2.0))
        self.stage.restart(number)
        return 1

    def _fail_over(self, number, generator):
        time.sleep(generator.uniform(2.0, 4.0))
        self.stage.fail_over(number)
        return 1

    def _change(self, number, generator):
        time.sleep(generator.uniform(0.5, 2.0))
        rule = generator.choice(GAPLESS + FAST)
        both = [threading.Thread(target=self._import, args=(rule, DASHES[(number + more) % len(DASHES)], f"{more}.rule"))
                for more in range(IMPORTS_AT_ONCE)]
        for thread in both:
            thread.start()
        for thread in both:
            thread.join()
        return IMPORTS_AT_ONCE

    def _void(self, number, generator):
        rule = generator.choice(GAPLESS + FAST)
        codes = [code for code in self.book.answered_codes(rule) if (rule, code) not in self.book.voided]
        if not codes:
            time.sleep(0.2)
            return 0
        code, reason = generator.choice(codes), f"reason {number}"
        self.book.voided[rule, code] = reason
        self.must("void", code, "--rule", rule, "--reason", reason, database=number)
        return 1

    def _adopt(self, number, _):
        """Codes of a year that nobody issues in, in the order of their numbers."""
        rule = GAPLESS[number % len(GAPLESS)]
        first = ADOPTED_AT_ONCE * (number // len(GAPLESS)) + 1
        codes = [f"1999-{at:06}" for at in range(first, first + ADOPTED_AT_ONCE)]
        file = self.folder / "adopted.csv"
        file.write_text("Code\n" + "".join(f"{code}\n" for code in codes))
        self.book.adopted.update(((rule, code), number) for code in codes)
        self.must("adopt", path(file), "--rule", rule, database=number)
        return 1

    def _audit(self, number, _):
        rule = (GAPLESS + FAST)[number % len(GAPLESS + FAST)]
        self.troubles += [f"audit meanwhile: {line}" for line in self._findings_of_the_audit(rule, number)]
        return 1

    def _findings_of_the_audit(self, rule, database=0):
        audit = self.kledger("audit", "--rule", rule, database=database)
        return [] if audit.returncode == 0 else (audit.stdout + audit.stderr).splitlines()

    # The end

    def _conclude(self):
        self.stage.settle()
        rows = checks.stored_rows(self.stage)
        self.findings = checks.findings(self.book, rows, GAPLESS, self.with_keys)
        self.findings["findings of the audit"] = [line for rule in GAPLESS + FAST
                                                  for line in self._findings_of_the_audit(rule)]
        self.findings["not done in time"] = [
            f"{name} {self.done[name]} of {wanted}" for name, wanted in dataclasses.asdict(self.numbers).items()
            if name != "cuts" and self.done[name] < wanted]
        made, stored = (self.stage.counts(of) for of in ("made", "stored")) if self.stage.proxies else ({}, {})
        if sum(made.values()) < self.numbers.cuts:
            self.findings["not done in time"].append(f"cuts {sum(made.values())} of {self.numbers.cuts}")
        self.figures = {"requests": len(self.book.rules), "codes": len(rows)}
        self.figures.update({f"cut {kind.value}": made.get(kind, 0) for kind in CUT_KINDS})
        self.figures["of them stored"] = sum(stored.values())
        self.figures.update({name: self.done[name] for name in dataclasses.asdict(self.numbers) if name != "cuts"})
