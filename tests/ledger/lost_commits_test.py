"""A COMMIT that does not reach the server, whose answer is lost, or that comes late: whoever asked learns what is stored."""
import re
import subprocess
import time
import unittest

import rules
from databases import OnPostgres
from ledger_case import LedgerCase
from rig.postgres import programs
from rig.proxy import Cut, Kind, Proxy
from rig.server import LOOPBACK, free_port
from windows_program import command, run

DATABASE_FAILED = 5
LATE_BY = 0.3  # seconds
WITHIN = 30
LONGEST = 240  # seconds that a program may take on a machine with much else to do
CHANGED = 'kledger: rule "rule" was changed meanwhile; start again'
DASHES = "/.:+,;"


class LostCommitsCase(OnPostgres, LedgerCase):
    """Each command goes through a proxy that cuts one COMMIT of it."""

    def setUp(self):
        super().setUp()
        self.cuts = []
        self.proxy = Proxy("postgres", self.server.port, self.plan)
        self.through = self.server.connection_string(self.database.database, self.proxy.port)

    def tearDown(self):
        self.proxy.close()
        super().tearDown()

    def plan(self):
        return self.cuts.pop(0)() if self.cuts else Cut(Kind.PASS)

    def cut(self, kind, *arguments, patience=WITHIN):
        """The command's result; `kind` is what becomes of the first COMMIT that stores something."""
        self.cuts = [lambda: Cut(kind, LATE_BY)]
        return self.run_through(kind, arguments, patience)

    def run_through(self, kind, arguments, patience):
        before = self.proxy.made[kind]
        result = run("kledger", "--database", self.through, "--patience", patience, *arguments)
        self.proxy.settle()
        self.assertEqual(self.proxy.made[kind], before + 1)
        return result

    def assert_done(self, kind, line, *arguments):
        """The command does what it should, and says so, whatever becomes of its COMMIT."""
        result = self.cut(kind, *arguments)
        self.assertEqual((result.returncode, result.stderr), (0, ""), kind)
        self.assertIn(line, result.stdout.splitlines(), kind)

    def count(self, table, condition):
        return int(self.database.query(f"SELECT COUNT(*) FROM kestrel_{table} WHERE {condition}")[0][0])


class Commands(LostCommitsCase):
    def test_a_void_is_ones_own(self):
        self.import_rule(rules.numbered())
        for kind in (Kind.BEFORE, Kind.AFTER, Kind.LATE):
            code = self.issue("2024")
            self.assert_done(kind, f"void: {code}", "void", code, "--reason", kind.value)
            self.assertEqual(self.objects("explain", code)[0]["reason"], kind.value)
            self.assertEqual(self.count("journal", f"act = 'void' AND subject = '{code}'"), 1)
        self.assertEqual(self.done("audit")[-1], "3 codes, 0 findings")

    def test_an_answer_that_never_comes_is_not_waited_for(self):
        self.import_rule(rules.numbered())
        begin = time.monotonic()
        result = self.cut(Kind.SILENT, "issue", "--field", "Year=2024", patience=4)
        self.assertEqual((result.returncode, result.stdout), (0, "2024-000001\t2024\n"), result.stderr)
        self.assertLess(time.monotonic() - begin, 4 + 5, "its patience, and time to start")
        self.assertEqual(self.codes(), ["2024-000001"])

    def test_an_adoption_is_ones_own(self):
        self.import_rule(rules.numbered())
        for number, kind in enumerate((Kind.BEFORE, Kind.AFTER, Kind.LATE)):
            codes = self.file("old.csv", "Code\n" + "".join(f"202{number}-00000{one}\n" for one in (1, 2)))
            self.assert_done(kind, "2 codes adopted, 0 foreign, 0 duplicate", "adopt", codes)
        self.assertEqual(self.done("audit")[-1], "6 codes, 0 findings")

    def test_an_import_is_ones_own(self):
        for number, kind in enumerate((Kind.BEFORE, Kind.AFTER, Kind.LATE)):
            told = 'rule "{}": 3 bands, codes of 11 characters, policy gapless, definition {}'
            self.assert_done(kind, told.format(kind.value, 1), "rule", "import", self.file("new.rule", rules.numbered()),
                             "--name", kind.value)
            changed = self.file("changed.rule", rules.numbered(dash=DASHES[number]))
            self.assert_done(kind, told.format(kind.value, 2), "rule", "import", changed, "--name", kind.value)
        self.assertEqual((self.count("rules", "1 = 1"), self.count("definitions", "1 = 1")), (3, 6))
        self.assertEqual(self.done("audit")[-1], "0 codes, 0 findings")

    def test_a_closed_lease_is_ones_own(self):
        self.import_rule(rules.numbered(), "--policy", "fast", name="fast")
        records = self.file("many.csv", "Year\n" + "2025\n" * 60_000)
        for kind in (Kind.BEFORE, Kind.AFTER, Kind.LATE):
            with subprocess.Popen(command("kledger", ["--database", self.database.name, "issue", records]),
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE) as process:
                process.stdout.readline()
                process.kill()
            self.wait_until_alone()
            left = self.count("leases", "state = 'open'")
            self.assertGreater(left, 0)
            self.assert_done(kind, f"{left} lease{'s' if left > 1 else ''} closed", "lease", "close")
            self.assertEqual(self.count("leases", "state = 'open'"), 0)

    def wait_until_alone(self):
        """What a killed program had sent is carried out or undone."""
        while self.server.query("postgres", "SELECT COUNT(*) FROM pg_stat_activity WHERE datname = "
                                            f"'{self.database.database}'") != [("0",)]:
            time.sleep(0.02)

    def test_a_repair_is_ones_own(self):
        self.import_rule(rules.numbered())
        self.done("void", self.issue("2024"), "--reason", "twice")
        for kind in (Kind.BEFORE, Kind.AFTER, Kind.LATE):
            self.database.query("UPDATE kestrel_codes SET void_act = 0")
            self.assert_done(kind, "1 row put right", "audit", "--repair")
        self.assertEqual(self.count("journal", "act = 'repair'"), 3)


class SilentAfter(Proxy):
    """Falls silent, for good, when it has passed so many frames on."""

    def __init__(self, port, last):
        self.last = last
        super().__init__("postgres", port)

    @property
    def frames(self):
        return self.passed

    @frames.setter
    def frames(self, passed):
        self.passed = passed
        self.mute = passed >= self.last


class SilentServers(OnPostgres, LedgerCase):
    MOMENTS = 8
    PATIENCE = 2

    def issuing(self, proxy):
        name = self.server.connection_string(self.database.database, proxy.port)
        return subprocess.Popen(command("kledger", ["--database", name, "--patience", self.PATIENCE, "issue", "--field",
                                                    "Year=2024"]), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, encoding="utf-8")

    def test_a_server_that_falls_silent_at_any_moment_is_given_up(self):
        self.import_rule(rules.numbered())
        with SilentAfter(self.server.port, last=1_000_000) as proxy, self.issuing(proxy) as program:
            program.communicate(timeout=LONGEST)
            self.assertEqual(program.returncode, 0)
            frames = proxy.frames
        moments = [1 + frames * moment // self.MOMENTS for moment in range(self.MOMENTS)]
        proxies = [SilentAfter(self.server.port, last) for last in moments]
        try:
            for last, program in zip(moments, [self.issuing(proxy) for proxy in proxies]):
                with program:
                    output, error = program.communicate(timeout=LONGEST)
                    self.assertEqual((program.returncode, output), (DATABASE_FAILED, ""), f"{last} of {frames}: {error}")
                    self.assertIn("the database cannot be reached", error)
        finally:
            for proxy in proxies:
                proxy.close()


class OpenRequests(LostCommitsCase):
    """The server stays away after the COMMIT: what may be stored is named with the way to find out."""

    def stay_away(self, kind):
        self.proxy.target = free_port()  # for the connections that follow
        return Cut(kind)

    def left_open(self, policy, kind, *arguments):
        """The tickets that are named, by line, when the COMMIT that stores codes is cut."""
        self.proxy.target = self.server.port
        first = [lambda: Cut(Kind.PASS)] if policy == "fast" else []  # sets the numbers aside
        self.cuts = [*first, lambda: self.stay_away(kind)]
        result = self.run_through(kind, ("issue", "--rule", policy, *arguments), patience=2)
        self.assertEqual((result.returncode, result.stdout), (DATABASE_FAILED, ""), result.stderr)
        *named, last = result.stderr.splitlines()
        self.assertIn("the database cannot be reached", last)
        found = [re.fullmatch(r'line (\d+): may have a code; find out with: kledger find --ticket "([^"]+)"', line)
                 for line in named]
        self.assertNotIn(None, found, result.stderr)
        return {int(match.group(1)): match.group(2) for match in found}

    def test_records_of_a_file(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
            records = self.file("records.csv", "Year\n2024\n2024\n")
            lines = [2] if policy == "gapless" else [2, 3]
            tickets = self.left_open(policy, Kind.AFTER, records)
            self.assertEqual(sorted(tickets), lines)
            for line, ticket in tickets.items():
                found = self.objects("find", "--rule", policy, "--ticket", ticket)[0]
                self.assertEqual((found["code"], found["rule"]), (f"2024-{line - 1:06}", policy))
            tickets = self.left_open(policy, Kind.BEFORE, records)
            self.assertEqual(sorted(tickets), lines)
            for ticket in tickets.values():
                self.assertIn(f'no code has ticket "{ticket}"', self.refused("find", "--ticket", ticket))

    def test_a_record_with_a_key(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
            request = ("--key", "order 7", "--field", "Year=2024")
            self.assertEqual(self.left_open(policy, Kind.AFTER, *request), {1: "order 7"})
            self.assertEqual(self.objects("find", "--rule", policy, "--ticket", "order 7")[0]["code"], "2024-000001")
            again = self.objects("issue", "--rule", policy, *request)[0]
            self.assertEqual((again["code"], again["before"]), ("2024-000001", True))


class ImportsAtOnce(OnPostgres, LedgerCase):
    """Both have read the rule before either can change it."""

    def import_both(self, name):
        """The results of two imports of different definitions; the one that changed the rule first."""
        with subprocess.Popen([programs() / "psql", "-h", LOOPBACK, "-p", str(self.server.port), "-U", "postgres", "-d",
                               self.database.database, "-X", "-q", "-A", "-t"], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, encoding="utf-8") as holder:
            holder.stdin.write("BEGIN; LOCK TABLE kestrel_codes IN SHARE ROW EXCLUSIVE MODE; SELECT 1;\n")
            holder.stdin.flush()
            holder.stdout.readline()
            imports = [subprocess.Popen(command("kledger", ["--database", self.database.name, "rule", "import", self.file(
                f"{number}.rule", rules.numbered(dash=DASHES[number])), "--name", name]), stdin=subprocess.DEVNULL,
                stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8") for number in range(2)]
            waiting = ("SELECT COUNT(*) FROM pg_locks WHERE NOT granted AND mode = 'ShareRowExclusiveLock' AND relation = "
                       "'kestrel_codes'::regclass")
            end = time.monotonic() + WITHIN
            while self.database.query(waiting) != [("2",)]:
                self.assertLess(time.monotonic(), end, "the imports do not wait")
                time.sleep(0.05)
            holder.stdin.write("COMMIT;\n")
        outputs = [process.communicate(timeout=LONGEST) for process in imports]
        codes = [process.returncode for process in imports]
        self.assertEqual(sorted(codes), [0, 1], outputs)
        loser = codes.index(1)
        self.assertEqual(outputs[loser], ("", CHANGED.replace('"rule"', f'"{name}"') + "\n"))
        return 1 - loser

    def dashes(self):
        """Of the codes, by the definition that made them."""
        return set(self.database.query("SELECT definition, SUBSTR(code, 5, 1) FROM kestrel_codes"))

    def test_one_wins_and_the_other_says_so(self):
        self.import_rule(rules.numbered())
        records = self.file("many.csv", "Year\n" + "2025\n" * 60_000)
        with subprocess.Popen(command("kledger", ["--database", self.database.name, "--patience", WITHIN, "issue", records]),
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              encoding="utf-8") as issuing:
            first = issuing.stdout.readline()
            winner = self.import_both("rule")
            printed = [line.split("\t")[0] for line in [first, *issuing.stdout]]
            self.assertEqual(issuing.wait(), 1)
            self.assertEqual(issuing.stderr.read().splitlines()[-1], CHANGED)
        self.assertEqual(self.codes(), sorted(printed), "who issued by the definition before is stopped")
        self.assertEqual(self.issue("2025")[4], DASHES[winner])
        self.assertEqual(self.dashes(), {("1", "-"), ("2", DASHES[winner])}, "the one that lost is never stored")
        self.assertEqual(self.done("audit")[-1], f"{len(printed) + 1} codes, 0 findings")

    def test_of_a_new_rule(self):
        self.import_rule(rules.numbered(), name="other")  # makes the tables
        self.done("rule", "remove", "other")
        winner = self.import_both("rule")
        self.assertEqual(self.issue("2025")[4], DASHES[winner])
        self.assertEqual(len(self.database.query("SELECT number FROM kestrel_definitions")), 1)


if __name__ == "__main__":
    unittest.main()
