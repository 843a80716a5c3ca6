"""The kinds of numbers in data/cases: each is made by its commands and gives the codes that it must."""
import itertools
import json
import pathlib
import shlex
import unittest

from databases import OnSqlite
from ledger_case import LedgerCase
from windows_program import run

CASES = pathlib.Path(__file__).resolve().parent / "data" / "cases"


def read_cases():
    """The steps of each case, by its title: pairs of a word and what stands behind it, files with their lines."""
    cases = {}
    for line in CASES.read_text(encoding="utf-8").splitlines():
        if line.startswith("#") or not line.strip():
            continue
        if line.startswith("    "):
            steps[-1][1] += line[4:] + "\n"
            continue
        word, rest = line.split(":", 1)
        if word == "case":
            steps = cases.setdefault(rest.strip(), [])
        else:
            steps.append([word, rest.strip() + ("\n" if word == "file" else "")])
    return cases


class CasesTest(OnSqlite, LedgerCase):
    def kledger(self, *arguments):
        return run("kledger", "--database", self.database.name, *arguments, cwd=self.folder)

    def record(self, text):
        """The options of an issue, and what is expected of it."""
        fields, expected = text.rsplit(":", 1) if text.count(" : ") == 0 else text.rsplit(" : ", 1)
        options = [option for field in fields.split(";") if field.strip() for option in ("-f", field.strip())]
        return options, expected.strip()

    def write_file(self, text):
        name, lines = text.split("\n", 1)
        (self.folder / name).write_text(lines, encoding="utf-8")

    def get_codes(self, rule, options, records):
        """One command for records that have the same fields: a table, or so many codes of one record without fields."""
        columns, expected = records[0][0], [code for _, code in records]
        if not columns:
            arguments = ("--count", len(records))
        else:
            names = [field.split("=", 1)[0] for field in columns[1::2]]
            rows = [[field.split("=", 1)[1] for field in record[1::2]] for record, _ in records]
            self.file("records.csv", "\n".join(",".join(row) for row in [names, *rows]) + "\n")
            arguments = ("records.csv",)
        got = self.done("issue", "--rule", rule, "--warn", 0, *arguments, *options)
        self.assertEqual([line.split("\t")[0] for line in got], expected)

    def run_case(self, rule, steps):
        options = []
        kind = lambda step: (step[0], [field.split("=")[0] for field in self.record(step[1])[0]] if step[0] == "get" else id(step))
        for (word, _), group in itertools.groupby(steps, kind):
            texts = [text for _, text in group]
            if word == "get":
                self.get_codes(rule, options, [self.record(text) for text in texts])
            elif word == "file":
                self.write_file(texts[0])
            elif word == "with":
                options = texts[0].split()
            elif word == "do":
                self.done(*[argument.replace("RULE", rule) for argument in shlex.split(texts[0])])
            else:
                self.assertEqual(word, "no")
                fields, cause = self.record(texts[0])
                self.assertIn(cause, self.refused("issue", "--rule", rule, *fields, *options))

    def test_every_case_gives_its_codes(self):
        cases = read_cases()
        self.assertGreaterEqual(len(cases), 80)
        for number, (title, steps) in enumerate(cases.items()):
            with self.subTest(title):
                self.assertIn("get", [word for word, _ in steps])
                self.run_case(f"c{number}", steps)
        found = [json.loads(line) for line in self.kledger("--json", "audit", "--warn", "0").stdout.splitlines()]
        before = {"K????? misses 1 to 40", "2025/???? misses 1 to 816", "2026/???? misses 1 to 2"}  # of another system
        self.assertEqual({line["text"].removesuffix(" in band Number") for line in found if "text" in line}, before)


if __name__ == "__main__":
    unittest.main()
