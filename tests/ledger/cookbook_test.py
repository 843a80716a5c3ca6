"""docs/numbering.md: every recipe's commands are run in an empty folder and give the codes that stand below them."""
import os
import pathlib
import re
import shlex
import shutil
import tempfile
import unittest

from windows_program import ROOT, run

GUIDE = ROOT / "docs" / "numbering.md"
FILE = re.compile(r"[Tt]he\s+file `(\S+)`:$")


def read_recipes():
    """By its title: the steps of each recipe, a file with its text or a command with the codes below it."""
    recipes, said = {}, ""
    for line in GUIDE.read_text(encoding="utf-8").splitlines():
        if line.startswith("## "):
            steps = recipes.setdefault(line[3:], [])
        elif line.startswith("    kledger "):
            steps.append([line[4:], []])
        elif line.startswith("    "):
            if named := FILE.search(said):
                steps.append([named.group(1), []])
            steps[-1][1].append(line[4:])
        if line.startswith("    ") or not line:
            said = "" if line else said
        else:
            said += "\n" + line
    return recipes


class CookbookTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        environment = {name: value for name, value in os.environ.items() if name != "KLEDGER_DATABASE"}
        self.options = {"cwd": self.folder, "env": environment}

    def tearDown(self):
        shutil.rmtree(self.folder)

    def done(self, *arguments):
        result = run("kledger", *arguments, **self.options)
        self.assertEqual(result.returncode, 0, (arguments, result.stderr))
        return result.stdout.splitlines()

    def follow(self, steps):
        for step, lines in steps:
            if not step.startswith("kledger "):
                (self.folder / step).write_text("\n".join(lines) + "\n", encoding="utf-8")
                continue
            printed = self.done(*shlex.split(step)[1:])
            if lines or " issue " in step:
                self.assertEqual([line.split("\t")[0] for line in printed], lines, step)

    def test_every_recipe_gives_the_codes_that_it_shows(self):
        recipes = read_recipes()
        self.assertGreaterEqual(len(recipes), 18)
        for title, steps in recipes.items():
            with self.subTest(title):
                self.assertIn(" issue ", "".join(step for step, _ in steps))
                self.follow(steps)
                self.assertRegex(self.done("audit")[-1], r"^\d+ codes, 0 findings$")
            for file in self.folder.iterdir():
                file.unlink()

    def test_the_other_periods_begin_anew(self):
        """The patterns that stand in sentences, with the last day of one period and the first of the next."""
        guide = GUIDE.read_text(encoding="utf-8")
        for pattern, options, *expected in (
                ("{=fiscal(Date end)}-{##}", "--year-begins 4", "2026-03-31 2026-01", "2026-04-01 2027-01"),
                ("{=fiscal(Date start)}-{##}", "--year-begins 4", "2026-03-31 2025-01", "2026-04-01 2026-01"),
                ("{=fiscal(Date)}-{##}", "--year-begins 4 --month-begins 6", "2026-04-05 2025-26-01", "2026-04-06 2026-27-01"),
                ("{Date:yyyymm}/{####}", "", "2026-04-30 202604/0001", "2026-05-01 202605/0001"),
                ("{Date:yyyy}Q{=quarter(Date)}/{####}", "", "2026-03-31 2026Q1/0001", "2026-04-01 2026Q2/0001"),
                ("{=isoyear(Date)}W{=isoweek(Date)}/{####}", "", "2027-01-03 2026W53/0001", "2027-01-04 2027W01/0001"),
                ("{=year(Date)}W{=week(Date)}/{####}", "--week-begins sunday",
                 "2026-01-03 2026W01/0001", "2026-01-04 2026W02/0001")):
            with self.subTest(pattern, options=options):
                self.assertIn(pattern.removesuffix("-{##}"), guide)
                self.assertIn(options, guide)
                self.done("rule", "new", "periods", pattern, *options.split())
                for day, code in map(str.split, expected):
                    [line] = self.done("issue", "-f", f"Date={day}", "--rule", "periods")
                    self.assertEqual(line.split("\t")[0], code)
                (self.folder / "ledger.db").unlink()

    def test_a_number_counts_over_what_stands_behind_its_stroke(self):
        records = (("MUC", "2026"), ("HAM", "2026"), ("MUC", "2027"))
        for number, expected in (("{##}", "01 01 01"), ("{##/}", "01 02 03"), ("{##/Branch}", "01 01 02")):
            with self.subTest(number):
                self.done("rule", "new", "counts", "{Branch:3}{Year:4}-" + number)
                codes = [self.done("issue", "-f", f"Branch={branch}", "-f", f"Year={year}")[0] for branch, year in records]
                self.assertEqual(" ".join(code.split("\t")[0][-2:] for code in codes), expected)
                (self.folder / "ledger.db").unlink()

    def test_the_files_of_the_guide_are_found(self):
        files = {step: lines for steps in read_recipes().values() for step, lines in steps if not step.startswith("kledger ")}
        self.assertEqual(sorted(files), ["accounts.csv", "branches.csv", "categories.csv"])
        self.assertEqual(files["branches.csv"], ["Branch code,Branch", "MUC,Munich", "HAM,Hamburg"])


if __name__ == "__main__":
    unittest.main()
