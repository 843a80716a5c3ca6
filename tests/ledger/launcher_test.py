"""The launcher at the root: kledger by its name, from any folder; and what the readme says of the first five commands."""
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import tempfile
import unittest

import rules
from windows_program import BUILD, ROOT, run

LAUNCHER = ROOT / "kledger"


class LauncherTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="a folder "))

    def tearDown(self):
        shutil.rmtree(self.folder)

    def launch(self, *arguments, program=LAUNCHER, **options):
        options.setdefault("input", "")
        return subprocess.run([str(program), *arguments], cwd=self.folder, capture_output=True, timeout=120, check=False,
                              encoding="utf-8", **options)

    def test_paths_of_the_callers_folder_work(self):
        (self.folder / "years.rule").write_bytes(rules.numbered().encode())
        result = self.launch("rule", "import", "years.rule")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertTrue((self.folder / "ledger.db").exists())
        (self.folder / "in").mkdir()
        (self.folder / "in" / "a b.csv").write_text("Year\n2024\n")
        self.assertEqual(self.launch("issue", "in/a b.csv").stdout, "2024-000001\t2024\n")
        result = self.launch("--database", str(self.folder / "ledger.db"), "codes", "export", "--out",
                             str(self.folder / "in" / "out.csv"))
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("2024-000001", (self.folder / "in" / "out.csv").read_text())

    def test_exit_codes_and_streams_are_passed_on(self):
        (self.folder / "r.rule").write_bytes(rules.numbered().encode())
        self.launch("rule", "import", "r.rule")
        result = self.launch("issue", "-", input="Year\n2024\n20\n")
        self.assertEqual((result.returncode, result.stdout), (3, "2024-000001\t2024\n"))
        self.assertIn("line 3: ", result.stderr)
        self.assertEqual(self.launch("nonsense").returncode, 2)

    def test_it_is_found_through_a_link(self):
        link = self.folder / "kledger"
        link.symlink_to(LAUNCHER)
        result = self.launch("--version", program=link)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertTrue(result.stdout.startswith("kledger "))

    @staticmethod
    def readme_blocks():
        """The commands of "The first codes", each without what the page says of it: the first five, and the others."""
        section = (ROOT / "README.md").read_text(encoding="utf-8").split("## The first codes")[1]
        blocks = re.findall(r"\n\n((?: {4}kledger .*\n)+)", section)[:2]
        return [[shlex.split(re.split(r" {2,}", line.strip())[0])[1:] for line in block.splitlines()] for block in blocks]

    def test_the_readmes_first_five_commands(self):
        """From an empty folder to ten codes, one of them explained, and a clean audit."""
        commands = self.readme_blocks()[0]
        self.assertEqual(len(commands), 5)
        results = [self.launch(*command) for command in commands]
        for result in results:
            self.assertEqual((result.returncode, result.stderr.count("error")), (0, 0), result.args)
        _, issued, listed, explained, audited = (result.stdout.splitlines() for result in results)
        codes = [f"INV-2026-{number:04}" for number in range(1, 11)]
        self.assertEqual([line.split("\t")[0] for line in issued], codes)
        self.assertEqual([line.split("\t")[0] for line in listed], codes)
        self.assertTrue(any("Year" in line and "2026" in line for line in explained))
        self.assertEqual(audited[-1], "10 codes, 0 findings")

    def test_the_readmes_commands_of_every_day(self):
        """Where the first five were run, with files of the names that they name."""
        first, others = self.readme_blocks()
        for command in first:
            self.launch(*command)
        (self.folder / "records.csv").write_text("Year\n2026\n2027\n")
        (self.folder / "names.txt").write_text("Ann\nBo\n")
        commands = [command for command in others if "rename|copy|remove" not in command]
        self.assertEqual(len(others) - len(commands), 1)
        printed = {}
        for command in commands:
            result = self.launch(*command)
            self.assertEqual((result.returncode, result.stderr.count("kledger:")), (0, 0), (command, result.stderr))
            printed[" ".join(command)] = result.stdout
        self.assertEqual(printed["issue records.csv --dry-run"], "INV-2026-0011\t2026\nINV-2027-0001\t2027\n")
        self.assertEqual(printed["issue names.txt -f Year=2026"], "INV-2026-0011\t2026\tAnn\nINV-2026-0012\t2026\tBo\n")
        self.assertEqual(len(printed["codes find INV-2026-*"].splitlines()), 13)
        self.assertIn("INV-2026-0013", (self.folder / "codes.csv").read_text())
        self.assertIn("<svg", (self.folder / "report.html").read_text())
        self.assertEqual(printed["audit"].splitlines()[-1], "14 codes, 0 findings")

    def test_the_commands_of_the_documents_are_quoted_for_every_shell(self):
        """The command prompt of Windows knows double quotes alone, and hands single ones on."""
        documents = [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]
        commands = [line for document in documents for line in document.read_text(encoding="utf-8").splitlines()
                    if line.startswith("    kledger ")]
        self.assertGreater(len(commands), 50)
        for command in commands:
            self.assertNotIn("'", re.sub(r'"[^"]*"', "", re.split(r" {2,}", command.strip())[0]), command)

    def test_programs_that_tests_start_run_as_by_the_launcher(self):
        """Tests ask it for its words once, and start programs by those."""
        for arguments in (("--version",), ("nonsense",)):
            own = self.launch(str(BUILD / "kledger.exe"), *arguments, program=ROOT / "tools" / "wine.sh")
            done = run("kledger", *arguments)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (own.returncode, own.stdout, own.stderr))

    def test_it_says_what_is_missing(self):
        result = self.launch("--version", env=os.environ | {"KESTREL_WINEPREFIX": str(self.folder / "none")})
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn("run first", result.stderr)


if __name__ == "__main__":
    unittest.main()
