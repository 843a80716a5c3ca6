"""--patience bounds every wait: the first connection, a server that says nothing, a lost answer, a lock, a standby."""
import subprocess
import threading
import time
import unittest

import rules
from rig.proxy import Cut, Kind
from rig.server import Place
from rig.stages import MariaDb, Pair, Postgres
from windows_program import path, run

PATIENCE = 3  # seconds
SLACK = 7  # for a program to start and end on a busy machine
DATABASE_FAILED = 5


class PatienceCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.cuts = []
        cls.stage = cls.make_stage(lambda: cls.cuts.pop(0) if cls.cuts else Cut(Kind.PASS))
        cls.place = Place()
        file = cls.place.folder / "rule.rule"
        file.write_bytes(rules.numbered().encode())
        done = run("kledger", "--database", cls.stage.databases[0], "rule", "import", path(file))
        if done.returncode != 0:
            raise RuntimeError(done.stderr)

    @classmethod
    def tearDownClass(cls):
        cls.place.close()
        cls.stage.close()

    def kledger(self, *arguments, patience=PATIENCE):
        return run("kledger", "--database", self.stage.databases[0], "--patience", patience, *arguments, timeout=60)

    def issue(self, key, patience=PATIENCE):
        return self.kledger("issue", "--field", "Year=2024", "--key", key, patience=patience)

    def assert_given_up(self, key):
        """In time, with a line that says so and the exit code for it; never before its time."""
        begin = time.monotonic()
        result = self.issue(key)
        seconds = time.monotonic() - begin
        self.assertEqual((result.returncode, result.stdout), (DATABASE_FAILED, ""), result.stderr)
        self.assertGreaterEqual(seconds, PATIENCE)
        self.assertLess(seconds, PATIENCE + SLACK)
        return result.stderr

    def assert_issued(self, key, **options):
        result = self.issue(key, **options)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout.split("\t")[0].strip()

    def later(self, act, seconds=PATIENCE / 2):
        timer = threading.Timer(seconds, act)
        timer.start()
        self.addCleanup(timer.join)


class OneServerTests:
    def setUp(self):
        self.proxy = self.stage.proxies[0]

    def test_a_server_that_stays_away(self):
        self.proxy.refuse()
        self.addCleanup(self.proxy.listen)
        self.assert_given_up("away")

    def test_a_server_that_comes_in_time(self):
        self.proxy.refuse()
        self.later(self.proxy.listen)
        self.assert_issued("in time", patience=20)

    def test_a_server_that_says_nothing(self):
        self.proxy.mute = True
        self.addCleanup(setattr, self.proxy, "mute", False)
        self.assert_given_up("mute")

    def test_a_lost_answer_to_a_commit(self):
        """What may be stored is named with the command that finds out, and asking again gives the same code."""
        self.cuts.append(Cut(Kind.SILENT))
        told = self.assert_given_up("lost answer")
        self.assertIn("find --ticket", told)
        found = self.kledger("find", "--ticket", "lost answer")
        self.assertEqual(found.returncode, 0, found.stderr)
        self.assertIn(self.assert_issued("lost answer"), found.stdout)

    def test_a_lock_that_another_holds(self):
        holder = subprocess.Popen(self.locking_client(), stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                  stderr=subprocess.DEVNULL, encoding="utf-8")
        try:
            holder.stdin.write(self.LOCK)
            holder.stdin.flush()
            self.assertIn("locked", holder.stdout.readline())
            self.assert_given_up("locked out")
        finally:
            holder.kill()
            holder.communicate()
        self.assert_issued("locked out")


class PostgresPatienceTest(OneServerTests, PatienceCase):
    LOCK = "BEGIN; LOCK TABLE kestrel_codes; SELECT 'locked';\n"
    make_stage = Postgres

    def locking_client(self):
        return ["psql", "-h", "127.0.0.1", "-p", str(self.stage.cluster.port), "-U", "postgres", "-X", "-q", "-A", "-t",
                "ledger"]


class MariaDbPatienceTest(OneServerTests, PatienceCase):
    LOCK = "LOCK TABLES kestrel_codes WRITE; SELECT 'locked';\n"
    make_stage = MariaDb

    def locking_client(self):
        return ["mariadb", "--no-defaults", "-h", "127.0.0.1", "-P", str(self.stage.cluster.port), "-u", "ledger", "-N",
                "-B", "--unbuffered", "ledger"]


class StandbyPatienceTest(PatienceCase):
    make_stage = Pair

    def test_a_standby_that_is_not_promoted_yet_is_waited_for(self):
        pair = self.stage.cluster
        first = self.assert_issued("before")
        self.stage.proxies[pair.servers.index(pair.primary)].refuse()
        self.later(pair.fail_over, seconds=3)
        self.assertEqual(self.assert_issued("before", patience=30), first)
        self.assertNotEqual(self.assert_issued("after"), first)


if __name__ == "__main__":
    unittest.main()
