"""What only ./test-clusters shows: a Galera cluster of the tests' own, the ledger's tests on it, and what a standby is
worth that no commit waits for."""
import itertools
import unittest

import rules
from concurrency_test import ConcurrencyCase, ServedByMariaDb
from databases import OnGalera
from ledger_case import LedgerCase
from ledger_test import LedgerTests
from promises_test import PromiseTests
from rig.mariadb import GaleraCluster
from rig.storm import Numbers, Storm
from watched_case import WatchedCase


class GaleraTest(unittest.TestCase):
    def test_each_node_in_turn_is_killed_and_comes_back_with_all_data(self):
        with GaleraCluster() as cluster:
            cluster.create_database("numbers")
            cluster.query("numbers", "CREATE TABLE t (x INTEGER PRIMARY KEY)")
            for number, node in enumerate(cluster.servers):
                node.query("numbers", f"INSERT INTO t VALUES ({number})")
            everything = [(str(number),) for number in range(len(cluster.servers))]
            for number, node in enumerate(cluster.servers, start=10):
                node.kill()
                cluster.query("numbers", f"INSERT INTO t VALUES ({number})")
                self.assertEqual(cluster.size(), 2)
                node.start()
                self.assertEqual(cluster.size(), 3)
                everything.append((str(number),))
                self.assertEqual(node.query("numbers", "SELECT x FROM t ORDER BY x"), everything)
            folder = cluster.place.folder
        self.assertFalse(folder.exists())
        self.assertFalse(any(node.runs() for node in cluster.servers))


class GaleraLedgerTest(OnGalera, LedgerCase):
    """Of the tests that run on every engine, those that a cluster could see otherwise."""

    test_the_same_key_gets_the_same_code = PromiseTests.test_the_same_key_gets_the_same_code
    test_programs_at_once_with_the_same_keys_share_the_codes = (
        PromiseTests.test_programs_at_once_with_the_same_keys_share_the_codes)
    test_of_two_voids_at_once_one_is_told = PromiseTests.test_of_two_voids_at_once_one_is_told
    test_a_new_definition_counts_the_codes_anew = LedgerTests.test_a_new_definition_counts_the_codes_anew
    issue_keys = PromiseTests.issue_keys


class GaleraEndedTest(OnGalera, WatchedCase):
    """Another node ends the transaction of a program that is between two statements, whichever these are. That the program
    learns of it only at the end, if at all, takes more chance than a test has: see Silence for what it does then."""

    sent = 0  # frames
    at = None  # the one before which the other node acts

    def before(self, frame, _):
        self.sent += 1
        if self.sent == self.at:
            node, other = self.cluster.servers[:2]
            other.query(self.database.database, "UPDATE kestrel_rules SET turn = turn + 1")
            node.query(self.database.database, "SELECT turn FROM kestrel_rules")  # it waits until it has the change
        return frame

    def test_an_import_is_never_stored_in_part(self):
        self.import_rule(rules.numbered())
        dashes = itertools.cycle("/.")

        def change(at=None):
            self.sent, self.at = 0, at
            self.done_through("rule", "import", self.file("next.rule", rules.numbered(dash=next(dashes))), "--name", "rule")
            return self.sent

        for at in range(1, change() + 1):
            change(at)
            self.assertEqual(self.done("audit")[-1], "0 codes, 0 findings", at)


class GaleraConcurrencyTest(OnGalera, ServedByMariaDb, ConcurrencyCase):
    def test_gapless_programs_at_once(self):
        self.issue_at_once("gapless")

    def test_fast_programs_killed(self):
        self.issue_and_kill("fast")


class AsynchronousTest(unittest.TestCase):
    def test_the_proof_finds_what_an_asynchronous_standby_loses(self):
        storm = Storm("asynchronous", Numbers(failovers=2, audits=4), workers=6, seed=1, limit=60, with_keys=True)
        storm.run()
        self.assertEqual(storm.figures["failovers"], 2, storm.findings["troubles"])
        for what in ("codes told to several requests", "answers that are not stored"):
            self.assertTrue(storm.findings[what], what)
        self.assertFalse(storm.findings["not done in time"])


if __name__ == "__main__":
    unittest.main()
