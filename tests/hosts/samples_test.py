"""The host samples of the documentation: they stand there as they run here."""
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

import rules
from databases import OnPostgres, OnSqlite
from windows_program import ROOT, command, path, run

SAMPLES = ROOT / "hosts" / "samples" / "hosting"
PROGRAMS = 4
CODES = 60  # more than a lease

PROBE = """
On Error Resume Next
Set database = CreateObject("ADODB.Connection")
database.Open WScript.Arguments.Item(0)
database.BeginTrans
Set rows = database.Execute("SELECT 'x' WHERE 1 = 0")
ended = rows.EOF
database.RollbackTrans
If Err.Number <> 0 Then WScript.Echo Err.Description
If Err.Number <> 0 Then WScript.Quit 1
WScript.Quit 0
"""


class DocumentationTest(unittest.TestCase):
    def test_every_block_of_code_stands_in_a_sample(self):
        text = (ROOT / "docs" / "hosting.md").read_text(encoding="utf-8")
        files = ["hosting/host.cpp", "hosting/host.cpp", "hosting/host.cpp", "hosting/host.vbs", "hosting/host.vbs",
                 "sqlserver/tables.sql", "sqlserver/KestrelLedger.cls", "sqlserver/KestrelOrders.bas", "hosting/Host.cs"]
        blocks = re.findall(r"^```\w+\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)
        self.assertEqual(len(blocks), len(files))
        for file, block in zip(files, blocks):
            sample = (SAMPLES.parent / file).read_text(encoding="utf-8")
            self.assertIn(block, sample, f"a block differs from {file}")

    def test_every_program_of_the_clients_is_in_the_table(self):
        text = (ROOT / "docs" / "hosting.md").read_text(encoding="utf-8")
        for file in (SAMPLES.parent / "clients").iterdir():
            self.assertIn(f"`{file.name}`", text)

    def test_a_sample_that_nothing_runs_says_so(self):
        text = (ROOT / "docs" / "hosting.md").read_text(encoding="utf-8")
        untried = re.findall(r"`([\w.]+)`", "".join(line for line in text.splitlines() if "| nobody:" in line))
        for name in [*untried, "tables.sql", "KestrelLedger.cls", "KestrelOrders.bas"]:
            if name == "Kestrel.cs":  # beside the PowerShell sample, and run with those in C# and VB.NET
                continue
            [file] = SAMPLES.parent.rglob(name)
            top = " ".join(file.read_text(encoding="utf-8").split()[:90])
            self.assertIn("Not run by the tests", top, name)


class ModulesTest(unittest.TestCase):
    """The modules for VBA, which nothing here can run."""

    def test_are_imported_as_they_are(self):
        """With the line ends of Windows, in letters that every code page has, under the names of their files."""
        modules = [file for kind in ("bas", "cls") for file in sorted(SAMPLES.parent.rglob(f"*.{kind}"))]
        self.assertEqual(len(modules), 4)
        for module in modules:
            with self.subTest(module.name):
                content = module.read_bytes()
                self.assertEqual(content.count(b"\n"), content.count(b"\r\n"))
                text = content.decode("ascii")
                self.assertTrue(text.startswith("VERSION 1.0 CLASS" if module.suffix == ".cls" else "Attribute VB_Name"))
                self.assertIn(f'Attribute VB_Name = "{module.stem}"', text)

    def test_name_members_that_the_component_has(self):
        library = (ROOT / "tests" / "automation" / "Kestrel.typelib.txt").read_text(encoding="utf-8")
        known = set(re.findall(r"\b(?:method|get|put|putref) .*? (\w+)\(", library))
        for name in ("KestrelIssuer.cls", "KestrelClient.bas", "KestrelLedger.cls", "KestrelOrders.bas", "client_pywin32.py",
                     "client_comtypes.py"):
            [file] = SAMPLES.parent.rglob(name)
            used = set(re.findall(r"\b(?:rule|copy|year)\.(\w+)", file.read_text(encoding="ascii")))
            self.assertEqual(used - known, set(), name)


class RetryingTest(unittest.TestCase):
    def test_the_script_tries_again_only_what_may_succeed(self):
        """With a database that only says what it is told to: the system's own does not work under Wine."""
        with tempfile.TemporaryDirectory() as folder:
            part = pathlib.Path(folder, "part.vbs")
            sample = (SAMPLES / "host.vbs").read_text(encoding="utf-8")
            part.write_text("\n".join(sample.split(f"' [{name}]")[1] for name in ("issue", "event")), encoding="utf-8")
            library = ROOT / "tests" / "scripts" / "lib"
            includes = [option for file in (library / "assert.vbs", library / "kestrel.vbs", part)
                        for option in ("--include", path(file))]
            result = run("kscript", *includes, path(ROOT / "tests" / "hosts" / "retrying.vbs"))
        self.assertEqual((result.returncode, result.stderr), (0, ""), result.stdout)
        self.assertRegex(result.stdout, r"end of script: 43 checks, 0 failed")


class SampleCase(unittest.TestCase):
    def setUp(self):
        self.database = self.make_database()
        self.folder = pathlib.Path(tempfile.mkdtemp())
        (self.folder / "rule.rule").write_bytes(rules.numbered().encode())

    def tearDown(self):
        self.database.close()
        shutil.rmtree(self.folder)

    def run_at_once(self, line):
        """Each program with requests of its own."""
        running = [subprocess.Popen([*line, f"program {number}"], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                    encoding="utf-8") for number in range(PROGRAMS)]
        codes = []
        for process in running:
            out, error = process.communicate(timeout=300)
            self.assertEqual((process.returncode, error), (0, ""), out)
            codes += out.split()
        return codes

    def check(self, policy, printed):
        stored = sorted(row[0] for row in self.database.query("SELECT code FROM codes"))
        self.assertEqual(len(printed), PROGRAMS * CODES)
        self.assertEqual(sorted(printed), stored)
        if policy == "gapless":
            self.assertEqual(stored, [f"2024-{number:06}" for number in range(1, PROGRAMS * CODES + 1)])

    def sample(self, policy, count):
        return [self.database.name, path(self.folder / "rule.rule"), policy, count]


class SampleTests:
    def test_the_program(self):
        for policy in ("gapless", "fast"):
            with self.subTest(policy=policy):
                line = command("hosting_sample", self.sample(policy, CODES))
                printed = self.run_at_once(line)
                self.check(policy, printed)
                self.assertEqual(self.run_at_once(line), printed)  # the same requests again
                self.check(policy, printed)
                self.empty()

    def empty(self):
        for table in ("codes", "numbers", "leases"):
            self.database.query(f"DELETE FROM {table}")


class Sqlite(OnSqlite, SampleTests, SampleCase):
    pass


class Postgres(OnPostgres, SampleTests, SampleCase):
    """The script needs a driver of the system's own, which the embedded engine does without."""

    def test_the_script(self):
        made = run("hosting_sample", *self.sample("gapless", 0), "none")
        self.assertEqual((made.returncode, made.stderr), (0, ""))
        probe = self.folder / "probe.vbs"
        probe.write_text(PROBE)
        result = run("kscript", path(probe), self.database.name)
        if result.returncode != 0:
            self.skipTest(f"ADO does not work here: {result.stdout}{result.stderr}")
        (self.folder / "rule.rule").write_bytes(rules.numbered().encode("utf-16"))
        for policy in ("gapless", "fast"):
            with self.subTest(policy=policy):
                line = command("kscript", [path(SAMPLES / "host.vbs"), self.database.name, *self.sample(policy, CODES)[1:]])
                self.check(policy, self.run_at_once(line))
                self.empty()


if __name__ == "__main__":
    unittest.main()
