"""The servers of the other tests: they start, stop, come back with their data, and go with whoever started them."""
import os
import pathlib
import subprocess
import sys
import time
import unittest

from rig.mariadb import MariaDbServer
from rig.postgres import PostgresPair, PostgresServer
from rig.server import LOOPBACK

FOLDER = pathlib.Path(__file__).resolve().parent
TIMED_OUT = 124  # of timeout
ORPHANS = """
import sys
sys.path.insert(0, sys.argv[1])
from rig.mariadb import MariaDbServer
server = MariaDbServer()
print(server.place.folder, server.process.pid, flush=True)
sys.stdin.read()
"""


class EnginesTest(unittest.TestCase):
    def check_single(self, make, *stops):
        with make() as server:
            server.create_database("numbers")
            server.query("numbers", "CREATE TABLE t (x INTEGER)")
            for number, stop in enumerate(stops):
                server.query("numbers", f"INSERT INTO t VALUES ({number})")
                stop(server)
                self.assertFalse(server.runs())
                with self.assertRaises(RuntimeError):
                    server.query("numbers", "SELECT x FROM t")
                server.start()
            self.assertEqual(server.query("numbers", "SELECT x, 'a b' FROM t ORDER BY x"),
                             [(str(number), "a b") for number in range(len(stops))])
            with self.assertRaisesRegex(RuntimeError, "none"):
                server.query("numbers", "SELECT * FROM none")
            folder = server.place.folder
        self.assertFalse(folder.exists())
        self.assertFalse(server.runs())

    def test_postgres(self):
        self.check_single(PostgresServer, lambda server: server.stop("fast"), lambda server: server.stop("immediate"),
                          lambda server: server.kill())

    def test_mariadb(self):
        self.check_single(MariaDbServer, lambda server: server.stop(), lambda server: server.kill())

    def test_a_synchronous_standby_takes_over_again_and_again(self):
        with PostgresPair() as pair:
            pair.create_database("numbers")
            pair.query("numbers", "CREATE TABLE t (x INTEGER)")
            for number in range(2):
                pair.query("numbers", f"INSERT INTO t VALUES ({number})")
                with self.assertRaisesRegex(RuntimeError, "read-only"):
                    pair.standby.query("numbers", "INSERT INTO t VALUES (9)")
                ports = {node.port for node in pair.servers}
                pair.fail_over()
                pair.rejoin()
                self.assertEqual({node.port for node in pair.servers}, ports)
            self.assertEqual(pair.query("numbers", "SELECT x FROM t ORDER BY x"), [("0",), ("1",)])

    def test_a_commit_waits_for_a_synchronous_standby_alone(self):
        for synchronous in (True, False):
            with PostgresPair(synchronous) as pair:
                pair.standby.kill()
                client = subprocess.run(["timeout", "1", "psql", "-h", LOOPBACK, "-p", str(pair.primary.port), "-U",
                                         "postgres", "-X", "-q", "-c", "CREATE TABLE t (x INTEGER)"], check=False)
                self.assertEqual(client.returncode, TIMED_OUT if synchronous else 0)

    def test_servers_go_with_a_program_that_is_killed(self):
        program = subprocess.Popen([sys.executable, "-c", ORPHANS, str(FOLDER)], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, encoding="utf-8")
        folder, process = program.stdout.readline().split()
        self.assertTrue(pathlib.Path(folder).exists())
        program.kill()
        program.communicate()
        end = time.monotonic() + 20
        while (pathlib.Path(folder).exists() or pathlib.Path(f"/proc/{process}").exists()) and time.monotonic() < end:
            time.sleep(0.05)
        self.assertFalse(pathlib.Path(folder).exists())
        with self.assertRaises(ProcessLookupError):
            os.kill(int(process), 0)


if __name__ == "__main__":
    unittest.main()
