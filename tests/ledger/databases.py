"""The databases that the ledger is tested on: an SQLite file, and servers of the test's own."""
import collections
import pathlib
import shutil
import sqlite3
import tempfile

from rig.mariadb import GaleraCluster, MariaDbServer, connection_string
from rig.postgres import PostgresServer
from windows_program import BITS

# Texts are written and joined as in standard SQL.
SQL_MODE = "ANSI,STRICT_ALL_TABLES,NO_BACKSLASH_ESCAPES"


class SqliteFile:
    """A database file in a folder of its own."""

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.file = self.folder / "ledger.db"
        self.name = "Z:" + str(self.file).replace("/", "\\")

    def query(self, sql):
        connection = sqlite3.connect(self.file)
        try:
            rows = connection.execute(sql).fetchall()
            connection.commit()
            return rows
        finally:
            connection.close()

    def close(self):
        shutil.rmtree(self.folder)


class PostgresDatabase:
    """A database of its own on a server that several tests share."""

    count = 0

    def __init__(self, server):
        PostgresDatabase.count += 1
        self.server = server
        self.database = f"ledger{PostgresDatabase.count}"
        server.create_database(self.database)
        self.name = server.connection_string(self.database)

    def query(self, sql):
        return self.server.query(self.database, sql)

    def close(self):
        self.server.query("postgres", f"DROP DATABASE {self.database} WITH (FORCE)")


class MariaDbDatabase:
    """A database of its own on a server or a cluster that several tests share; each program is led to the next of its
    nodes, and knows the others as well."""

    count = 0

    def __init__(self, cluster):
        MariaDbDatabase.count += 1
        self.cluster = cluster
        self.database = f"ledger{MariaDbDatabase.count}"
        cluster.create_database(self.database)
        self.ports = collections.deque(node.port for node in cluster.servers)

    @property
    def name(self):
        self.ports.rotate()
        return connection_string(list(self.ports), self.database, BITS)

    def query(self, sql):
        return self.cluster.query(self.database, f"SET sql_mode = '{SQL_MODE}';\n{sql}")

    def close(self):
        self.cluster.query("mysql", f"DROP DATABASE {self.database}")


class OnSqlite:
    """Of a test case: each test has a file of its own."""

    def make_database(self):
        return SqliteFile()


class OnPostgres:
    """Of a test case: one server for all its tests, a database of its own for each."""

    @classmethod
    def setUpClass(cls):
        cls.server = PostgresServer()

    @classmethod
    def tearDownClass(cls):
        cls.server.close()

    def make_database(self):
        return PostgresDatabase(self.server)


class OnServers:
    """Of a test case: one cluster for all its tests, a database of its own for each."""

    @classmethod
    def setUpClass(cls):
        cls.cluster = cls.make_cluster()

    @classmethod
    def tearDownClass(cls):
        cls.cluster.close()

    def make_database(self):
        return MariaDbDatabase(self.cluster)


class OnMariaDb(OnServers):
    make_cluster = MariaDbServer


class OnGalera(OnServers):
    make_cluster = GaleraCluster
