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

    def test_the_files_of_the_guide_are_found(self):
        files = {step: lines for steps in read_recipes().values() for step, lines in steps if not step.startswith("kledger ")}
        self.assertEqual(sorted(files), ["accounts.csv", "branches.csv", "categories.csv"])
        self.assertEqual(files["branches.csv"], ["Branch code,Branch", "MUC,Munich", "HAM,Hamburg"])


if __name__ == "__main__":
    unittest.main()
