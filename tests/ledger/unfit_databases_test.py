"""Databases that cannot be used: one clear line, an exit code that says so, and nothing half written."""
import os
import pathlib
import shutil
import sqlite3
import subprocess
import tempfile
import time
import unittest

import rules
from rig.server import free_port
from windows_program import path, run

DATABASE_FAILED = 5
READ_ONLY = "the database takes no changes; check the rights on its file, folder or login"
COUNT = "SELECT COUNT(*) FROM kestrel_codes"


class UnfitDatabasesTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.mounts = []
        self.rule = self.folder / "rule.rule"
        self.rule.write_bytes(rules.numbered().encode())

    def tearDown(self):
        for mount in reversed(self.mounts):
            subprocess.run(["umount", str(mount)], check=True)
        shutil.rmtree(self.folder)

    def kledger(self, database, *arguments):
        name = path(database) if isinstance(database, pathlib.Path) else database
        return run("kledger", "--database", name, "--patience", "1", *arguments)

    def assert_unfit(self, database, *arguments, cause, code=DATABASE_FAILED):
        result = self.kledger(database, *(arguments or ("rule", "list")))
        self.assertEqual((result.returncode, result.stdout), (code, ""), result.stderr)
        self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
        self.assertIn(cause, result.stderr)

    def ledger(self, folder=None):
        file = (folder or self.folder) / "ledger.db"
        result = self.kledger(file, "rule", "import", path(self.rule))
        self.assertEqual(result.returncode, 0, result.stderr)
        return file

    def mount(self, *options):
        """A small file system of the test's own."""
        if os.getuid() != 0:
            self.skipTest("only root can mount a file system")
        folder = self.folder / f"mount{len(self.mounts)}"
        folder.mkdir()
        mounted = subprocess.run(["mount", "-t", "tmpfs", *options, "tmpfs", str(folder)], check=False,
                                 capture_output=True, text=True)
        if mounted.returncode != 0:
            self.skipTest(f"nothing can be mounted here: {mounted.stderr}")
        self.mounts.append(folder)
        return folder

    def codes(self, file):
        connection = sqlite3.connect(file)
        try:
            return connection.execute(COUNT).fetchone()[0]
        finally:
            connection.close()

    def test_a_wrong_connection_string(self):
        self.assert_unfit("Driver=No Such Driver;Database=x", cause="names no driver for PostgreSQL or MariaDB", code=1)
        self.assert_unfit("DSN=none", cause="names no driver for PostgreSQL or MariaDB", code=1)

    def test_a_server_that_is_not_there(self):
        self.assert_unfit(f"Driver={{PostgreSQL Unicode}};Server=127.0.0.1;Port={free_port()};Database=x;Uid=x",
                          cause="the database cannot be reached; check --database and whether its server is running")

    def test_a_file_in_a_folder_that_is_not_there(self):
        self.assert_unfit(self.folder / "none" / "ledger.db", cause="there is no folder", code=1)

    def test_a_file_that_is_no_database(self):
        file = self.folder / "letter.txt"
        file.write_text("Dear Sir or Madam, this is not a database. " * 50)
        self.assert_unfit(file, cause="the file is no database or is damaged; check --database")
        self.assertEqual(file.read_text(), "Dear Sir or Madam, this is not a database. " * 50)

    def test_a_locked_file(self):
        file = self.ledger()
        connection = sqlite3.connect(file)
        connection.execute("BEGIN IMMEDIATE")
        begin = time.monotonic()
        self.assert_unfit(file, "issue", "--field", "Year=2024", cause="another program holds the database; try again")
        self.assertLess(time.monotonic() - begin, 30, "waits no longer than its patience and the driver's two seconds")
        connection.rollback()
        connection.close()
        self.assertEqual(self.codes(file), 0)
        self.assertEqual(self.kledger(file, "issue", "--field", "Year=2024").returncode, 0)

    def test_a_read_only_file_system(self):
        folder = self.mount("-o", "size=4m")
        file = self.ledger(folder)
        sqlite3.connect(file).execute("PRAGMA journal_mode=DELETE").connection.close()
        subprocess.run(["mount", "-o", "remount,ro", str(folder)], check=True)
        self.assert_unfit(file, "issue", "--field", "Year=2024", cause=READ_ONLY)
        self.assertEqual(self.codes(file), 0)

    def test_a_read_only_file(self):
        file = self.ledger(self.mount("-o", "size=4m"))
        sqlite3.connect(file).execute("PRAGMA journal_mode=DELETE").connection.close()
        # Root may write whatever the rights of a file say, but not through a mount that is read-only.
        for options in (("--bind", str(file), str(file)), ("-o", "remount,bind,ro", str(file))):
            subprocess.run(["mount", *options], check=True)
        self.mounts.append(file)
        for arguments in (("issue", "--field", "Year=2024"), ("rule", "import", path(self.rule), "--name", "other")):
            self.assert_unfit(file, *arguments, cause=READ_ONLY)
        self.assertEqual(self.codes(file), 0)

    def test_a_full_disk(self):
        for policy in ("gapless", "fast"):
            folder = self.mount("-o", "size=512k")
            file = self.ledger(folder)
            self.kledger(file, "rule", "import", path(self.rule), "--policy", policy)
            records = self.folder / "records.csv"
            records.write_text("Year,Note\n" + f"2024,{'x' * 1000}\n" * 1000)
            result = self.kledger(file, "issue", path(records), "--keep")
            self.assertEqual(result.returncode, DATABASE_FAILED, result.stderr)
            self.assertIn("no space is left for the database", result.stderr)
            printed = [line.split("\t")[0] for line in result.stdout.splitlines()]
            copy = self.folder / f"{policy}.db"
            for suffix in ("", "-wal"):
                if (source := pathlib.Path(f"{file}{suffix}")).exists():
                    shutil.copy(source, f"{copy}{suffix}")
            connection = sqlite3.connect(copy)
            stored = [row[0] for row in connection.execute("SELECT code FROM kestrel_codes ORDER BY code")]
            numbers = connection.execute("SELECT COUNT(*) FROM kestrel_numbers").fetchone()[0]
            connection.close()
            self.assertEqual(stored, printed, "stored and printed, or neither")
            self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
            self.assertEqual(numbers, len(stored))
            self.assertGreater(len(stored), 0)

    def test_a_disk_that_is_too_full_to_adopt_a_file(self):
        file = self.ledger(self.mount("-o", "size=512k"))
        codes = self.folder / "codes.csv"
        codes.write_text("Code,Note\n" + "".join(f"2024-{number:06},{'x' * 1000}\n" for number in range(1, 1001)))
        self.assert_unfit(file, "adopt", path(codes), cause="no space is left for the database")
        self.assertEqual(self.codes(file), 0, "all of the file or nothing")


if __name__ == "__main__":
    unittest.main()
