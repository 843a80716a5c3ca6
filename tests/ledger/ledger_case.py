"""What the tests of kledger's commands share."""
import json
import pathlib
import shutil
import tempfile
import unittest

from windows_program import path, run


class LedgerCase(unittest.TestCase):
    """A ledger of its own for each test, and shorthands for its commands."""

    def setUp(self):
        self.database = self.make_database()
        self.folder = pathlib.Path(tempfile.mkdtemp())

    def tearDown(self):
        self.database.close()
        shutil.rmtree(self.folder)

    def kledger(self, *arguments):
        return run("kledger", "--database", self.database.name, *arguments)

    def done(self, *arguments, code=0):
        """The lines that a command prints that ends with the code."""
        result = self.kledger(*arguments)
        self.assertEqual(result.returncode, code, result.stderr)
        return result.stdout.splitlines()

    def objects(self, *arguments, code=0):
        return [json.loads(line) for line in self.done("--json", *arguments, code=code)]

    def refused(self, *arguments, code=1):
        """The one line that a command reports that does nothing."""
        result = self.kledger(*arguments)
        self.assertEqual((result.returncode, result.stdout), (code, ""), result.stderr)
        self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
        return result.stderr.rstrip("\n")

    def file(self, name, text):
        data = text if isinstance(text, bytes) else text.encode("utf-8")
        (self.folder / name).write_bytes(data)
        return path(self.folder / name)

    def import_rule(self, definition, *arguments, name="rule"):
        return self.done("rule", "import", self.file(f"{name}.rule", definition), *arguments)

    def issue(self, value, field="Year"):
        return self.done("issue", "--field", f"{field}={value}")[0].split("\t")[0]

    def codes(self):
        return sorted(row[0] for row in self.database.query("SELECT code FROM kestrel_codes"))
