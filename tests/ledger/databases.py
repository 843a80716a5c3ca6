"""The databases that the ledger is tested on: an SQLite file, and a PostgreSQL server of the test's own."""
import pathlib
import shutil
import sqlite3
import tempfile

from rig.postgres import PostgresServer


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
