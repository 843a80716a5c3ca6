"""PostgreSQL with a standby: what is waited for, what is promised after a failover, and what is not."""
import json
import subprocess
import threading
import time
import unittest

import rules
from ledger_case import LedgerCase
from rig.postgres import PostgresPair, connection_string
from windows_program import command, run

DATABASE = "ledger"
DATABASE_FAILED = 5
AWAY = 2.0  # seconds that no server takes changes for


class PairDatabase:
    """What programs know: both servers."""

    def __init__(self, synchronous):
        self.pair = PostgresPair(synchronous)
        self.pair.create_database(DATABASE)
        self.name = self.pair.connection_string(DATABASE)

    def query(self, sql):
        return self.pair.query(DATABASE, sql)

    def close(self):
        self.pair.close()


class StandbyCase(LedgerCase):
    synchronous = True

    def make_database(self):
        self.made = PairDatabase(self.synchronous)
        self.pair = self.made.pair
        return self.made

    def doctor(self):
        return {line["fact"]: line for line in self.objects("doctor")}

    def issue_with(self, patience, *arguments, database=None):
        return run("kledger", "--database", database or self.database.name, "--patience", patience, "--json", "issue",
                   *arguments)


class SynchronousTest(StandbyCase):
    def test_a_standby_that_is_promoted_in_time_is_waited_for(self):
        """The connection string leads to the standby alone, as an address does that moves with the leading server."""
        self.import_rule(rules.numbered())
        standby = connection_string([self.pair.standby.port], DATABASE)
        promotion = threading.Timer(AWAY, self.pair.fail_over)
        promotion.start()
        begin = time.monotonic()
        result = self.issue_with(20, "--field", "Year=2024", database=standby)
        promotion.join()
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertGreaterEqual(time.monotonic() - begin, AWAY)
        self.assertEqual(self.codes(), ["2024-000001"])

    def test_a_standby_that_stays_one_is_waited_for_as_long_as_asked(self):
        self.import_rule(rules.numbered())
        standby = connection_string([self.pair.standby.port], DATABASE)
        for patience in (1, 4):
            begin = time.monotonic()
            result = self.issue_with(patience, "--field", "Year=2024", database=standby)
            took = time.monotonic() - begin
            self.assertEqual(result.returncode, DATABASE_FAILED, result.stderr)
            self.assertIn("it follows another one or is set read-only", result.stderr)
            self.assertGreaterEqual(took, patience)
            self.assertLess(took, patience + 6)
        self.assertEqual(self.codes(), [])

    def test_a_commit_that_waits_for_a_standby_is_given_up(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
        self.pair.standby.kill()
        for policy in ("gapless", "fast"):
            begin = time.monotonic()
            result = self.issue_with(2, "--rule", policy, "--key", "a", "--field", "Year=2024")
            self.assertEqual((result.returncode, result.stdout), (DATABASE_FAILED, ""), policy)
            self.assertIn('may have a code; find out with: kledger find --ticket "a"', result.stderr)
            self.assertLess(time.monotonic() - begin, 15, policy)

    def test_programs_go_on_when_the_standby_takes_over(self):
        self.import_rule(rules.numbered())
        records = self.file("records.csv", "Key,Year\n" + "".join(f"k{number},2024\n" for number in range(400)))
        program = subprocess.Popen(
            command("kledger", ["--database", self.database.name, "--json", "issue", records, "--key-column", "Key"]),
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, encoding="utf-8")
        first = program.stdout.readline()
        self.pair.fail_over()
        lines = [json.loads(line) for line in (first + program.stdout.read()).splitlines()]
        program.stdout.close()
        self.assertEqual(program.wait(), 0)
        self.assertEqual([line["code"] for line in lines[:-1]], [f"2024-{number:06}" for number in range(1, 401)])
        self.assertEqual(len(self.codes()), 400)

    def test_a_code_that_the_standby_lacks_is_told_to_nobody(self):
        """A server that comes back after a crash shows what it alone has stored; the standby may yet take over."""
        self.import_rule(rules.numbered())
        request = ("--key", "a", "--field", "Year=2024")
        self.pair.standby.kill()
        self.assertEqual(self.issue_with(2, *request).returncode, DATABASE_FAILED)
        self.pair.primary.kill()
        self.pair.primary.start()
        self.assertEqual(self.codes(), ["2024-000001"])
        for policy in ("gapless", "fast"):
            self.database.query(f"SET synchronous_commit = local; UPDATE kestrel_rules SET policy = '{policy}'")
            for arguments in (("issue", *request), ("find", "--ticket", "a")):
                told = run("kledger", "--database", self.database.name, "--patience", 2, *arguments)
                self.assertEqual((told.returncode, told.stdout), (DATABASE_FAILED, ""), (policy, arguments))
        self.pair.standby.start()
        for arguments in (("issue", *request), ("find", "--ticket", "a")):
            self.assertIn("2024-000001", self.done(*arguments)[0])

    def test_an_act_that_the_standby_lacks_is_told_to_nobody(self):
        """Its COMMIT was not answered, and the server that carried it out crashes and comes back without the standby."""
        self.import_rule(rules.numbered())
        code = self.issue("2024")
        self.pair.standby.kill()
        program = subprocess.Popen(
            command("kledger", ["--database", self.database.name, "--patience", "12", "void", code, "--reason", "twice"]),
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")
        time.sleep(AWAY)
        self.pair.primary.kill()
        self.pair.primary.start()
        out, error = program.communicate(timeout=60)
        self.assertEqual((program.returncode, out), (DATABASE_FAILED, ""), error)
        self.assertEqual(self.database.query("SELECT void_act FROM kestrel_codes"), [("2",)])

    def test_doctor_finds_nothing_wrong(self):
        self.import_rule(rules.numbered())
        self.assertNotIn("warning", self.doctor()["standbys"])
        self.assertIn("1, commits wait for *", self.doctor()["standbys"]["value"])

    def test_doctor_tells_that_no_standby_is_there(self):
        self.import_rule(rules.numbered())
        self.pair.standby.kill()
        time.sleep(AWAY)
        standbys = self.doctor()["standbys"]
        self.assertIn("nothing is stored until one is", standbys["warning"])
        self.assertNotIn("losesCommits", standbys)

    def test_doctor_finds_a_standby_that_commits_do_not_wait_for(self):
        self.import_rule(rules.numbered())
        self.database.query(f"ALTER DATABASE {DATABASE} SET synchronous_commit = local")
        standbys = self.doctor()["standbys"]
        self.assertIn("set synchronous_commit to on", standbys["warning"])
        self.assertTrue(standbys["losesCommits"])


class AsynchronousTest(StandbyCase):
    synchronous = False

    def test_doctor_and_issue_warn(self):
        self.import_rule(rules.numbered())
        standbys = self.doctor()["standbys"]
        self.assertIn("may lack codes that were printed, and they come again; name one in", standbys["warning"])
        self.assertTrue(standbys["losesCommits"])
        warned = self.kledger("issue", self.file("records.csv", "Year\n2024\n2024\n"))
        self.assertEqual(warned.stderr.count("gapless is not sure here"), 1, warned.stderr)

    def test_codes_that_the_standby_lacks_come_again(self):
        """It is behind when it takes over: what it never heard of is gone, and only heads kept elsewhere tell."""
        self.import_rule(rules.numbered())
        records = self.file("records.csv", "Year\n" + "2024\n" * 10)
        known = self.done("issue", records)
        self.pair.standby.kill()
        lost = self.done("issue", records)
        heads = self.file("heads", "")
        self.done("audit", "--write-heads", heads)
        self.pair.primary.kill()
        self.pair.standby.start()
        self.pair.fail_over()
        self.assertEqual(self.done("audit")[-1], f"{len(known)} codes, 0 findings")
        self.assertIn("head", {line.get("finding") for line in self.objects("audit", "--against", heads, code=4)})
        self.assertEqual(self.done("issue", records), lost)


if __name__ == "__main__":
    unittest.main()
