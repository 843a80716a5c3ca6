"""Programs that issue, import, void, adopt and audit at once, while connections are cut, programs killed and servers
restarted; it goes on until everything has happened as often as wanted."""
import collections
import dataclasses
import itertools
import random
import subprocess
import threading
import time

from rig import checks
from rig.happenings import DASHES, Happenings
from rig.programs import GAPLESS, RULES, Programs
from rig.proxy import Chances, Cut, Kind
from rig.requests import Book
from rig.server import Place
from rig.stages import STAGES

CUT_KINDS = (Kind.BEFORE, Kind.DURING, Kind.AFTER, Kind.LATE)
PROBABILITY = 0.5  # of a cut at a COMMIT
LATEST = 3.0  # seconds that a COMMIT is late by
FILE_RECORDS = {"gapless": 60, "fast": 400}
MOST_FRUITLESS = 20  # programs in a row for the same records that answered none of them
MOST_TROUBLES = 100  # after which there is nothing to wait for any more


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
    sets: int = 0
    audits: int = 0

    def happenings(self):
        """All but the cuts, which come by themselves."""
        return {name: count for name, count in dataclasses.asdict(self).items() if name != "cuts"}


def chances(cuts, seed):
    """As many cuts of each kind."""
    each, more = divmod(cuts, len(CUT_KINDS))
    wanted = {kind: each + (number < more) for number, kind in enumerate(CUT_KINDS)}
    return Chances({kind: count for kind, count in wanted.items() if count}, PROBABILITY, seed, LATEST)


class Storm:
    """One run on one engine. After run(), `findings` holds what is wrong, and `figures` what happened."""

    def __init__(self, engine, numbers, workers, seed, limit, with_keys):
        self.engine = engine
        self.numbers = numbers
        self.workers = workers
        self.seed = seed
        self.limit = limit
        self.with_keys = with_keys
        self.book = Book()
        self.plan = chances(numbers.cuts, seed)
        self.raging = False
        self.done = collections.Counter()
        self.over = threading.Event()
        self.figures = {}
        self.findings = {}

    def run(self):
        begin = time.monotonic()
        place = Place()
        try:
            with STAGES[self.engine](self._cut) as self.stage:
                self.programs = Programs(self.stage, place.folder, self.book, self.with_keys)
                for rule in RULES:
                    self.programs.make(rule, DASHES[0])
                if not self.programs.troubles:  # without its rules nothing can be shown
                    self._rage()
                    self._conclude()
        finally:
            place.close()
        self.findings["troubles"] = self.programs.troubles
        self.figures["seconds"] = round(time.monotonic() - begin)

    def _cut(self):
        return self.plan() if self.raging else Cut(Kind.PASS)

    def _rage(self):
        self.raging = True
        happenings = Happenings(self.stage, self.programs, self.book)
        workers = [threading.Thread(target=self._work, args=(number,)) for number in range(self.workers)]
        others = [threading.Thread(target=self._repeat, args=(name, getattr(happenings, name)))
                  for name in self.numbers.happenings()]
        for thread in workers + others:
            thread.start()
        self._wait_for_all(others)
        self.over.set()
        for thread in workers + others:
            thread.join()

    def _wait_for_all(self, others):
        end = time.monotonic() + self.limit
        while any(thread.is_alive() for thread in others) or not self.plan.is_done() or self._unserved():
            if time.monotonic() > end or len(self.programs.troubles) > MOST_TROUBLES:
                break
            time.sleep(0.1)
        self.plan.stop()

    def _unserved(self):
        """The rules for which no file of records is done yet."""
        return set(RULES) - {self.book.rules[key] for key in list(self.book.settled)}

    def _repeat(self, name, happen):
        """As often as wanted. A failure of the test itself is trouble as well."""
        generator = random.Random(f"{self.seed} {name}")
        while self.done[name] < getattr(self.numbers, name) and not self.over.is_set():
            try:
                self.done[name] += happen(self.done[name], generator)
            except (RuntimeError, OSError, subprocess.SubprocessError) as error:
                self.programs.troubles.insert(0, f"{name}: {error}")
                return
            time.sleep(0.05)

    def _work(self, number):
        """One file of records after the other, each for the next rule; two workers at a time have the same."""
        for place in itertools.count(number // 2 * 3):
            if self.over.is_set():
                return
            rule = RULES[place % len(RULES)]
            keys = self.book.new_requests(rule, FILE_RECORDS["gapless" if rule in GAPLESS else "fast"])
            if not self._issue_all(number, rule, keys):
                return
            self.book.settle(keys)

    def _issue_all(self, number, rule, keys):
        """Asks again and again until a program has done all of the records; false when it is of no use."""
        left, fruitless = len(keys), 0
        while not self.programs.issue(number, rule, keys):
            before, left = left, len(self.book.unanswered(keys))
            fruitless = fruitless + 1 if left == before else 0
            if fruitless > MOST_FRUITLESS or len(self.programs.troubles) > MOST_TROUBLES:
                self.programs.troubles.append(f"{left} records of {rule} were given up")
                return False
        return True

    def _conclude(self):
        self.stage.settle()
        rows = checks.stored_rows(self.stage)
        self.findings = checks.findings(self.book, rows, GAPLESS, self.with_keys)
        self.findings["findings of the audit"] = [line for rule in RULES for line in self.programs.audit(0, rule)]
        made, stored = (self.stage.counts(of) for of in ("made", "stored"))
        counts = [("cuts", sum(made.values()), self.numbers.cuts)]
        counts += [(name, self.done[name], wanted) for name, wanted in self.numbers.happenings().items()]
        self.findings["not done in time"] = [f"{name} {done} of {wanted}" for name, done, wanted in counts
                                             if done < wanted] + [f"no file for {rule}" for rule in self._unserved()]
        self.figures = {"requests": len(self.book.rules), "codes": len(rows)}
        self.figures["numbers given again"] = sum(1 for row in rows if row.given_away)
        self.figures.update({f"cut {kind.value}": made[kind] for kind in CUT_KINDS})
        self.figures["of them stored"] = sum(stored.values())
        self.figures.update({name: self.done[name] for name in self.numbers.happenings()})
