"""The proxy that breaks connections around COMMIT, with clients that know nothing of it."""
import socket
import struct
import subprocess
import threading
import time
import unittest

from rig.mariadb import USER, MariaDbServer
from rig.postgres import PostgresServer
from rig.proxy import Chances, Cut, Kind, Proxy
from rig.server import LOOPBACK
from rig.wire import MariaDbWire, PostgresWire, Transactions

MEANWHILE = 0.3  # seconds in which what should not happen would have happened


class TransactionsTest(unittest.TestCase):
    def stores(self, *statements):
        transactions = Transactions()
        return [transactions.stores(statement) for statement in statements]

    def test_a_commit_after_a_change_stores(self):
        for begin in ("BEGIN", "start transaction", "SET AUTOCOMMIT=0", "set @@session.autocommit = off"):
            self.assertEqual(self.stores(begin, "INSERT INTO t VALUES (1)", " commit;"), [False, False, True], begin)
        self.assertEqual(self.stores("BEGIN; UPDATE t SET x = 1; END"), [True])

    def test_a_commit_without_a_change_stores_nothing(self):
        self.assertEqual(self.stores("BEGIN", "SELECT 1", "COMMIT"), [False] * 3)
        self.assertEqual(self.stores("BEGIN", "DELETE FROM t", "ROLLBACK", "COMMIT"), [False] * 4)
        self.assertEqual(self.stores("BEGIN", "DELETE FROM t", "COMMIT", "COMMIT"), [False, False, True, False])

    def test_a_way_back_to_a_savepoint_leaves_the_transaction_open(self):
        self.assertEqual(self.stores("BEGIN", "DELETE FROM t", "ROLLBACK TO s", "COMMIT"), [False] * 3 + [True])

    def test_a_change_outside_a_transaction_stores_by_itself(self):
        self.assertEqual(self.stores("insert into t values (1)", "SELECT 1", "SET autocommit=0", "DELETE FROM t",
                                     "SET autocommit=1", "DELETE FROM t"), [True, False, False, False, False, True])


def postgres_frame(kind, *texts):
    body = b"".join(text.encode() + b"\0" for text in texts)
    return kind + struct.pack("!I", len(body) + 4) + body


def mariadb_frame(body, number=0):
    return len(body).to_bytes(3, "little") + bytes([number]) + body


class WireCase(unittest.TestCase):
    def assert_frames_in_any_pieces(self, wire, frames):
        for size in (1, 3, 7, 1000):
            reader, found, data = wire(), [], b"".join(frames)
            for begin in range(0, len(data), size):
                found += reader.frames(data[begin:begin + size])
            self.assertEqual(found, frames, size)


class PostgresWireTest(WireCase):
    START = struct.pack("!II", 9, 196608) + b"\0"

    def test_frames(self):
        encryption = struct.pack("!II", 8, 80877103)
        self.assert_frames_in_any_pieces(PostgresWire,
                                         [encryption, encryption, self.START, postgres_frame(b"Q", "COMMIT")])

    def test_what_stores(self):
        wire = PostgresWire()
        frames = [self.START, postgres_frame(b"Q", "BEGIN"), postgres_frame(b"P", "p1", "INSERT INTO t VALUES (1)"),
                  postgres_frame(b"B", "", "p1"), postgres_frame(b"E", ""), postgres_frame(b"Q", "COMMIT")]
        self.assertEqual([wire.stores(frame) for frame in wire.frames(b"".join(frames))], [False] * 5 + [True])

    def test_answers(self):
        done, ready = postgres_frame(b"C", "COMMIT"), postgres_frame(b"Z", "")
        self.assertIsNone(PostgresWire.answer(done))
        self.assertIsNone(PostgresWire.answer((done + ready)[:-1]))
        self.assertTrue(PostgresWire.answer(done + ready))
        self.assertFalse(PostgresWire.answer(postgres_frame(b"C", "ROLLBACK") + ready))
        self.assertFalse(PostgresWire.answer(postgres_frame(b"E", "") + ready))


class MariaDbWireTest(WireCase):
    def query(self, text):
        return mariadb_frame(b"\x03" + text.encode())

    def test_frames(self):
        self.assert_frames_in_any_pieces(MariaDbWire,
                                         [mariadb_frame(b"me", 1), self.query("SELECT 1"), self.query("COMMIT")])

    def test_what_stores(self):
        for number in (7, 8, 9, 0xFFFFFFFF):
            wire = MariaDbWire()
            frames = [mariadb_frame(b"\x03COMMIT", 1), self.query("SET AUTOCOMMIT=0")]
            for told, text in ((7, b"SELECT 1"), (8, b"INSERT INTO t VALUES (?)")):
                self.assertFalse(wire.stores(mariadb_frame(b"\x16" + text)))
                answer = mariadb_frame(b"\0" + struct.pack("<I", told) + bytes(7), 1)
                wire.hear(answer[:6])
                wire.hear(answer[6:])
            frames += [mariadb_frame(b"\x17" + struct.pack("<I", number) + bytes(5)), self.query("COMMIT")]
            self.assertEqual([wire.stores(frame) for frame in frames], [False] * 3 + [number in (8, 0xFFFFFFFF)])

    def test_a_statement_that_the_server_refuses_to_prepare_has_no_number(self):
        wire = MariaDbWire()
        wire.stores(mariadb_frame(b"\x16INSERT INTO nowhere VALUES (?)"))
        wire.hear(mariadb_frame(b"\xff" + struct.pack("<I", 8), 1))
        self.assertFalse(wire.stores(mariadb_frame(b"\x17" + struct.pack("<I", 8) + bytes(5))))

    def test_answers(self):
        self.assertIsNone(MariaDbWire.answer(b"\x07\0\0"))
        self.assertIsNone(MariaDbWire.answer(mariadb_frame(bytes(7))[:-1]))
        self.assertTrue(MariaDbWire.answer(mariadb_frame(bytes(7))))
        self.assertFalse(MariaDbWire.answer(mariadb_frame(b"\xff\x15\x04no")))


class ChancesTest(unittest.TestCase):
    def test_as_many_of_each_kind_as_wanted(self):
        chances = Chances({Kind.BEFORE: 3, Kind.LATE: 2}, 0.5, seed=1, latest=1.0)
        kinds = [chances().kind for _ in range(100)]
        self.assertTrue(chances.is_done())
        self.assertEqual((kinds.count(Kind.BEFORE), kinds.count(Kind.LATE), kinds.count(Kind.PASS)), (3, 2, 95))


class ProxyTests:
    """On a server with a table of its own; the client's transaction stores one number."""

    @classmethod
    def setUpClass(cls):
        cls.server = cls.make_server()
        cls.server.create_database("numbers")
        cls.server.query("numbers", "CREATE TABLE t (x INTEGER)")

    @classmethod
    def tearDownClass(cls):
        cls.server.close()

    def setUp(self):
        self.server.query("numbers", "DELETE FROM t")
        self.cuts = []
        self.proxy = Proxy(self.server.protocol, self.server.port,
                           lambda: self.cuts.pop(0) if self.cuts else Cut(Kind.PASS))

    def tearDown(self):
        self.proxy.close()

    def start(self, text):
        client = subprocess.Popen(self.client_command(self.proxy.port), stdin=subprocess.PIPE, encoding="utf-8",
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        client.stdin.write(text)
        client.stdin.close()
        return client

    def client(self, text):
        """Whether the client heard of a success."""
        with self.start(text) as client:
            return client.wait(10) == 0

    def store(self, number):
        return self.client(f"BEGIN;\nINSERT INTO t VALUES ({number});\nCOMMIT;\n")

    def stored(self):
        return sorted(int(row[0]) for row in self.server.query("numbers", "SELECT x FROM t"))

    def counts(self, kind):
        self.proxy.settle()
        return self.proxy.made[kind], self.proxy.stored[kind]

    def test_without_a_cut(self):
        self.assertTrue(self.store(1))
        self.assertEqual(self.stored(), [1])
        self.assertEqual(sum(self.proxy.made.values()), 0)

    def test_before(self):
        self.cuts = [Cut(Kind.BEFORE)]
        self.assertFalse(self.store(1))
        self.assertTrue(self.store(2))
        self.assertEqual(self.stored(), [2])
        self.assertEqual(self.counts(Kind.BEFORE), (1, 0))

    def test_during(self):
        self.cuts = [Cut(Kind.DURING)]
        self.assertFalse(self.store(1))
        self.assertEqual(self.counts(Kind.DURING), (1, len(self.stored())))

    def test_after(self):
        self.cuts = [Cut(Kind.AFTER)]
        self.assertFalse(self.store(1))
        self.assertEqual(self.stored(), [1])
        self.assertEqual(self.counts(Kind.AFTER), (1, 1))

    def test_late(self):
        self.cuts = [Cut(Kind.LATE, 2.0)]
        begin = time.monotonic()
        self.assertFalse(self.store(1))
        self.assertTrue(self.store(2), "others go on meanwhile")
        self.assertLess(time.monotonic() - begin, 2.0)
        self.assertEqual(self.stored(), [2])
        self.assertEqual(self.counts(Kind.LATE), (1, 1))
        self.assertGreaterEqual(time.monotonic() - begin, 2.0)
        self.assertEqual(self.stored(), [1, 2])

    def test_late_by_what_others_have_sent(self):
        self.cuts = [Cut(Kind.LATE, 60.0, frames=3)]
        self.assertFalse(self.store(1))
        time.sleep(MEANWHILE)
        self.assertEqual(self.stored(), [])
        self.assertTrue(self.store(2))
        self.assertEqual(self.counts(Kind.LATE), (1, 1))
        self.assertEqual(self.stored(), [1, 2])

    def test_silent(self):
        self.cuts = [Cut(Kind.SILENT)]
        client = self.start("BEGIN;\nINSERT INTO t VALUES (1);\nCOMMIT;\n")
        with self.assertRaises(subprocess.TimeoutExpired):
            client.wait(1)
        self.assertEqual(self.stored(), [1])
        client.kill()
        client.wait()
        self.assertEqual(self.counts(Kind.SILENT), (1, 1))

    def test_what_is_stored_without_commit(self):
        self.cuts = [Cut(Kind.AFTER)]
        self.assertFalse(self.client("INSERT INTO t VALUES (1);\n"))
        self.assertEqual(self.stored(), [1])
        self.assertEqual(self.counts(Kind.AFTER), (1, 1))

    def test_a_commit_that_the_server_refuses(self):
        self.cuts = [Cut(Kind.LATE, 1.0)]
        self.assertFalse(self.store(1))
        self.server.kill()
        self.server.start()
        self.assertEqual(self.counts(Kind.LATE), (1, 0))
        self.assertEqual(self.stored(), [])

    def test_refuse_and_listen(self):
        ended = []
        client = self.start(f"SELECT {self.SLEEP};\n")
        waiting = threading.Thread(target=lambda: ended.append(client.wait(10)))
        waiting.start()
        time.sleep(MEANWHILE)
        self.assertEqual(ended, [])
        self.proxy.refuse()
        waiting.join()
        self.assertNotEqual(ended, [0])
        with self.assertRaises(ConnectionRefusedError):
            socket.create_connection((LOOPBACK, self.proxy.port))
        self.proxy.listen()
        self.assertTrue(self.store(1))

    def test_mute(self):
        self.proxy.mute = True
        client = self.start("INSERT INTO t VALUES (1);\n")
        with self.assertRaises(subprocess.TimeoutExpired):
            client.wait(1)
        client.kill()
        client.wait()
        self.proxy.mute = False
        self.assertTrue(self.store(2))
        self.assertEqual(self.stored(), [2])

    def test_another_target(self):
        port, self.proxy.target = self.proxy.target, 1
        self.assertFalse(self.store(1))
        self.proxy.target = port
        self.assertTrue(self.store(2))


class PostgresProxyTest(ProxyTests, unittest.TestCase):
    SLEEP = "pg_sleep(8)"

    @staticmethod
    def make_server():
        return PostgresServer()

    @staticmethod
    def client_command(port):
        return ["psql", "-h", LOOPBACK, "-p", str(port), "-U", "postgres", "-X", "-v", "ON_ERROR_STOP=1", "-f", "-",
                "numbers"]


class MariaDbProxyTest(ProxyTests, unittest.TestCase):
    SLEEP = "SLEEP(8)"

    @staticmethod
    def make_server():
        return MariaDbServer()

    @staticmethod
    def client_command(port):
        return ["mariadb", "--no-defaults", "-h", LOOPBACK, "-P", str(port), "-u", USER, "numbers"]


if __name__ == "__main__":
    unittest.main()
