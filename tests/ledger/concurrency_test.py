"""Many programs issuing by one rule at once, some of them killed, and the server restarted under them.

KESTREL_CODES is the number of codes that each program issues (200).
"""
import os
import pathlib
import random
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

import rules
from databases import OnMariaDb, OnPostgres, OnSqlite
from windows_program import command, path, run

PROGRAMS = 8
CODES = int(os.environ.get("KESTREL_CODES", "200"))
KILLS = 8 if CODES >= 200 else 2  # while others go on, who store the more the longer it takes
MORE_THAN_IS_DONE = 400_000  # records for a program that is killed at work
# Codes that a program is still busy with when the server has gone down twice.
OUTLASTS = {"gapless": 900, "fast": 12_000}
LONGEST = 240 + PROGRAMS * CODES * 0.25  # seconds


class Program:
    """A kledger that issues codes for a file of records; what it prints goes to a file, so that nothing is lost with it."""

    def __init__(self, folder, name, database, records):
        self.out = folder / f"{name}.out"
        self.error = folder / f"{name}.err"
        # Its process id is the program's own: the launcher becomes the program.
        with open(self.out, "wb") as out, open(self.error, "wb") as error:
            self.process = subprocess.Popen(
                command("kledger", ["--database", database, "--patience", "120", "issue", records]),
                stdin=subprocess.DEVNULL, stdout=out, stderr=error)

    def printed(self):
        """The codes of whole lines; the last one may be cut where the program was killed."""
        text = self.out.read_text(encoding="utf-8")
        return [line.split("\t")[0] for line in text[:text.rfind("\n") + 1].splitlines()]

    def wait(self):
        return self.process.wait(timeout=LONGEST)

    def kill(self):
        self.process.send_signal(signal.SIGKILL)
        self.process.wait(timeout=LONGEST)


class ConcurrencyCase(unittest.TestCase):
    def setUp(self):
        self.database = self.make_database()
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.programs = []

    def tearDown(self):
        for program in self.programs:
            if program.process.poll() is None:
                program.kill()
        self.database.close()
        shutil.rmtree(self.folder)

    def prepare(self, policy, codes):
        (self.folder / "rule.rule").write_bytes(rules.numbered().encode())
        result = run("kledger", "--database", self.database.name, "rule", "import", path(self.folder / "rule.rule"),
                     "--policy", policy, "--lease", "50")
        self.assertEqual(result.returncode, 0, result.stderr)
        (self.folder / "records.csv").write_text("Year\n" + "2024\n" * codes)

    def start(self):
        program = Program(self.folder, str(len(self.programs)), self.database.name, path(self.folder / "records.csv"))
        self.programs.append(program)
        return program

    def printed(self):
        return [code for program in self.programs for code in program.printed()]

    def stored(self):
        return sorted(row[0] for row in self.database.query("SELECT code FROM kestrel_codes"))

    def assert_all_done(self, programs):
        for program in programs:
            self.assertEqual(program.wait(), 0, program.error.read_text(encoding="utf-8"))

    def assert_nothing_lost(self, policy):
        """Every printed code is stored, none twice; without gaps where the policy promises it."""
        printed, stored = self.printed(), self.stored()
        self.assertEqual(len(printed), len(set(printed)), "a code was handed out twice")
        self.assertEqual(set(printed) - set(stored), set(), "a code was printed and is not stored")
        if policy == "gapless":
            self.assertEqual(stored, [f"2024-{number:06}" for number in range(1, len(stored) + 1)])
        audit = run("kledger", "--database", self.database.name, "audit")
        self.assertEqual((audit.returncode, audit.stderr), (0, ""), audit.stdout[-2000:])
        return stored

    def issue_at_once(self, policy):
        self.prepare(policy, CODES)
        self.assert_all_done([self.start() for _ in range(PROGRAMS)])
        self.assertEqual(len(self.printed()), PROGRAMS * CODES)
        self.assertEqual(len(self.assert_nothing_lost(policy)), PROGRAMS * CODES)

    def wait_for_work(self, program):
        while not program.printed():
            self.assertIsNone(program.process.poll(), program.error.read_text(encoding="utf-8"))
            time.sleep(0.02)

    def kill_at_work(self, program, delay):
        """Kills a program some time after it has begun to print; it has more to do than it can have done by then."""
        self.wait_for_work(program)
        time.sleep(delay)
        self.assertIsNone(program.process.poll(), "the program was done before it was killed")
        program.kill()

    def issue_and_kill(self, policy):
        """Four programs at work at any time; one after the other is killed at a random moment and replaced."""
        generator = random.Random(1)
        self.prepare(policy, MORE_THAN_IS_DONE)
        working = [self.start() for _ in range(4)]
        for _ in range(KILLS):
            self.kill_at_work(working.pop(generator.randrange(len(working))), generator.uniform(0.0, 0.5))
            working.append(self.start())
        for program in working:
            self.kill_at_work(program, generator.uniform(0.0, 0.5))
        (self.folder / "records.csv").write_text("Year\n" + "2024\n" * CODES)
        self.wait_until_alone()
        before = len(self.stored())
        self.assert_all_done([self.start()])
        self.assertEqual(len(self.assert_nothing_lost(policy)), before + CODES)

    def change_while_issuing(self, policy):
        """Who issues by a definition that is no more is stopped, and what it printed stays."""
        self.prepare(policy, MORE_THAN_IS_DONE)
        program = self.start()
        self.wait_for_work(program)
        (self.folder / "rule.rule").write_bytes(rules.numbered(dash="/").encode())
        result = run("kledger", "--database", self.database.name, "--patience", "120", "rule", "import",
                     path(self.folder / "rule.rule"))
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(program.wait(), 1)
        self.assertEqual(program.error.read_text(encoding="utf-8").splitlines()[-1],
                         'kledger: rule "rule" was changed meanwhile; start again')
        self.assertEqual(set(program.printed()) - set(self.stored()), set(), "a code was printed and is not stored")
        before = len(self.stored())
        (self.folder / "records.csv").write_text("Year\n" + "2024\n" * CODES)
        self.assert_all_done([self.start()])
        self.assertEqual(len(self.stored()), before + CODES)
        audit = run("kledger", "--database", self.database.name, "audit")
        self.assertEqual((audit.returncode, audit.stderr), (0, ""), audit.stdout[-2000:])


class ConcurrencyTests:
    def test_gapless_programs_stop_when_their_rule_changes(self):
        self.change_while_issuing("gapless")

    def test_fast_programs_stop_when_their_rule_changes(self):
        self.change_while_issuing("fast")

    def test_gapless_programs_at_once(self):
        self.issue_at_once("gapless")

    def test_fast_programs_at_once(self):
        self.issue_at_once("fast")

    def test_gapless_programs_killed(self):
        self.issue_and_kill("gapless")

    def test_fast_programs_killed(self):
        self.issue_and_kill("fast")
        lines = run("kledger", "--database", self.database.name, "audit").stdout
        self.assertIn("lease: ", lines, "the leases of killed programs are shown")


class Sqlite(OnSqlite, ConcurrencyTests, ConcurrencyCase):
    def wait_until_alone(self):
        """A program works in the file itself: nothing is under way any more when it has ended."""


class Served:
    def wait_until_alone(self):
        """What a killed program has sent to be committed is still carried out, by the server that it was sent to."""
        end = time.monotonic() + LONGEST
        while self.others() > 0:
            self.assertLess(time.monotonic(), end, "the server is still busy with killed programs")
            time.sleep(0.02)


class ServedByMariaDb(Served):
    def others(self):
        count = f"SELECT COUNT(*) FROM information_schema.processlist WHERE db = '{self.database.database}'"
        return sum(int(node.query("mysql", count)[0][0]) for node in self.cluster.servers)


class MariaDb(OnMariaDb, ServedByMariaDb, ConcurrencyTests, ConcurrencyCase):
    """One server."""


class Postgres(OnPostgres, Served, ConcurrencyTests, ConcurrencyCase):
    def others(self):
        return int(self.server.query("postgres", "SELECT COUNT(*) FROM pg_stat_activity WHERE datname = "
                                                 f"'{self.database.database}'")[0][0])

    def issue_through_restarts(self, policy):
        """The server goes down twice under its clients, once in order and once at once; every record gets its one code."""
        each = max(CODES * (5 if policy == "gapless" else 30), OUTLASTS[policy])
        self.prepare(policy, each)
        programs = [self.start() for _ in range(3)]
        for program in programs:
            self.wait_for_work(program)
        for mode in ("fast", "immediate"):
            before = len(self.printed())
            while len(self.printed()) < before + CODES and any(p.process.poll() is None for p in programs):
                time.sleep(0.05)
            self.assertTrue(any(p.process.poll() is None for p in programs), "all was done before the restart")
            self.server.stop(mode)
            time.sleep(0.5)
            self.server.start()
        self.assert_all_done(programs)
        self.assertEqual(len(self.printed()), 3 * each)
        self.assertEqual(len(self.assert_nothing_lost(policy)), 3 * each)

    def test_gapless_programs_outlast_the_server(self):
        self.issue_through_restarts("gapless")

    def test_fast_programs_outlast_the_server(self):
        self.issue_through_restarts("fast")


if __name__ == "__main__":
    unittest.main()
