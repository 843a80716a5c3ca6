"""A program whose transaction the server ends, for the sake of another one, goes on by itself, at once; and stores all that
belongs together, or nothing."""
import subprocess
import time
import unittest

import rules
from databases import OnMariaDb
from ledger_case import LedgerCase
from rig.server import LOOPBACK
from watched_case import WatchedCase
from windows_program import command

SOON = 15  # seconds; a statement that is never answered takes half of the patience
PATIENCE = 60
ROLLBACK = b"\x09\0\0\0\x03ROLLBACK"  # as a client sends it
HEAVY = 2000  # rows that the other transaction has changed: the server ends the one that has changed less


class MariaDb(OnMariaDb, LedgerCase):
    def query(self, sql):
        return self.database.query(sql)

    def wait_for(self, condition):
        end = time.monotonic() + SOON
        while self.query(f"SELECT COUNT(*) FROM {condition}") == [("0",)]:
            self.assertLess(time.monotonic(), end, condition)
            time.sleep(0.2)  # the server itself looks at its transactions no more often than ten times a second

    def tearDown(self):
        self.doCleanups()  # before the database goes, which would wait for what holds it
        super().tearDown()

    def client(self, sql):
        """A connection that lives as long as its statements, or until it is ended."""
        client = subprocess.Popen(["mariadb", "--no-defaults", "-h", LOOPBACK, "-P", str(self.cluster.port), "-u",
                                   "ledger", "-e", sql, self.database.database], stdin=subprocess.DEVNULL,
                                  stdout=subprocess.DEVNULL)
        self.addCleanup(self.end, client)
        return client

    @staticmethod
    def end(client):
        client.kill()
        client.wait()

    def begin_other(self):
        """A transaction that holds the journal and has changed so much that the server rather ends another one; when the
        first of the two clients ends, it wants the rule as well."""
        self.query(f"CREATE TABLE heavy (x INTEGER PRIMARY KEY); INSERT INTO heavy SELECT seq FROM seq_1_to_{HEAVY}")
        stops = self.client("SELECT GET_LOCK('go', 0); SELECT SLEEP(600)")
        self.wait_for("DUAL WHERE IS_USED_LOCK('go') IS NOT NULL")
        other = self.client("BEGIN; UPDATE heavy SET x = x + 1000000; SELECT * FROM kestrel_journal FOR UPDATE; "
                            "SELECT GET_LOCK('go', 600); UPDATE kestrel_rules SET turn = turn + 1; COMMIT")
        self.wait_for("information_schema.processlist WHERE info LIKE 'SELECT GET_LOCK%'")
        return stops, other

    def test_an_adoption_that_was_ended_is_done_all_the_same(self):
        self.import_rule(rules.numbered())
        records = self.file("a.csv", "Code\n1999-000001\n")
        stops, other = self.begin_other()
        begin = time.monotonic()
        program = subprocess.Popen(command("kledger", ["--database", self.database.name, "--patience", PATIENCE, "adopt",
                                                       records, "--rule", "rule"]), stdin=subprocess.DEVNULL)
        self.wait_for("information_schema.innodb_trx WHERE trx_state = 'LOCK WAIT'")
        self.end(stops)
        self.assertEqual(other.wait(PATIENCE), 0, "the other transaction was ended, not the program's")
        self.assertEqual(program.wait(PATIENCE), 0)
        self.assertLess(time.monotonic() - begin, SOON)
        self.assertEqual(self.codes(), ["1999-000001"])


class Silence(OnMariaDb, WatchedCase):
    """The server ends a transaction and tells nobody, as nodes of clusters do now and then: the program's next statements
    begin another one. Here a ROLLBACK takes the place of a statement whose answer says nothing."""

    replaced = None  # how that statement begins

    def before(self, frame, statement):
        if self.replaced is None or not (statement or "").startswith(self.replaced):
            return frame
        self.replaced = None
        return ROLLBACK

    def ended_at(self, statement, *arguments):
        self.replaced = statement
        lines = self.done_through(*arguments)
        self.assertIsNone(self.replaced, "no such statement")
        return lines

    def test_an_import_is_stored_whole(self):
        self.import_rule(rules.numbered())
        for number, (statement, dash) in enumerate((("INSERT INTO kestrel_definitions", "/"),
                                                    ("INSERT INTO kestrel_journal", ".")), start=2):
            self.ended_at(statement, "rule", "import", self.file("next.rule", rules.numbered(dash=dash)), "--name", "rule")
            self.assertEqual(self.database.query("SELECT COUNT(*), MAX(number) FROM kestrel_definitions"),
                             [(str(number), str(number))])
        self.assertEqual(self.done("audit")[-1], "0 codes, 0 findings")

    def test_a_code_is_stored_whole(self):
        for policy, table in (("gapless", "numbers"), ("fast", "codes"), ("fast", "numbers")):
            name = f"{policy} {table}"
            self.import_rule(rules.numbered(), "--policy", policy, "--name", name)
            lines = self.ended_at(f"INSERT INTO kestrel_{table}", "issue", "-f", "Year=2024", "--rule", name, "--quiet")
            self.assertEqual(lines, ["2024-000001"], name)
        self.assertEqual(self.codes(), ["2024-000001"] * 3)
        self.assertEqual(self.done("audit")[-1], "3 codes, 0 findings")



if __name__ == "__main__":
    unittest.main()
