"""The databases that the ledger is tested on: an SQLite file, and a PostgreSQL server of the test's own."""
import glob
import os
import pathlib
import pwd
import shutil
import socket
import sqlite3
import subprocess
import tempfile


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


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


class PostgresServer:
    """A server on loopback with data of its own; it refuses to run as root, so then it runs as its package's user."""

    def __init__(self):
        found = sorted(glob.glob("/usr/lib/postgresql/*/bin"))
        if not found:
            raise RuntimeError("PostgreSQL is not installed (tools/packages.sh installs it)")
        self.programs = pathlib.Path(found[-1])
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.prefix = []
        if os.getuid() == 0:
            user = pwd.getpwnam("postgres")
            os.chown(self.folder, user.pw_uid, user.pw_gid)
            self.prefix = ["runuser", "-u", "postgres", "--"]
        self.port = free_port()
        self._run("initdb", "-A", "trust", "-E", "UTF8", "-U", "postgres", "-D", self.folder / "data")
        self.start()

    def _run(self, program, *arguments):
        return subprocess.run([*self.prefix, str(self.programs / program), *map(str, arguments)], check=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              cwd="/").stdout

    def _control(self, *arguments):
        # The log keeps the server from holding this process's own output open.
        self._run("pg_ctl", "-D", self.folder / "data", "-w", "-l", self.folder / "log", *arguments)

    def start(self):
        self._control("-o", f"-p {self.port} -k {self.folder} -c listen_addresses=127.0.0.1", "start")

    def stop(self, mode="fast"):
        self._control("-m", mode, "stop")

    def close(self):
        self.stop("immediate")
        shutil.rmtree(self.folder)

    def log(self):
        return (self.folder / "log").read_text(encoding="utf-8")

    def connection_string(self, database):
        return (f"Driver={{PostgreSQL Unicode}};Server=127.0.0.1;Port={self.port};Database={database};"
                "Uid=postgres")

    def query(self, database, sql):
        text = self._run("psql", "-h", self.folder, "-p", self.port, "-U", "postgres", "-d", database, "-X", "-q", "-A", "-t",
                         "-F", "\t", "-c", sql)
        return [tuple(line.split("\t")) for line in text.splitlines()]


class PostgresDatabase:
    """A database of its own on a server that several tests share."""

    count = 0

    def __init__(self, server):
        PostgresDatabase.count += 1
        self.server = server
        self.database = f"ledger{PostgresDatabase.count}"
        server.query("postgres", f"CREATE DATABASE {self.database}")
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
