"""What people do with kledger every day: codes in a row, lists, dry runs, looking codes up, wrong words."""
import csv
import io
import json
import pathlib
import re
import subprocess
import unittest

import rules
from databases import OnPostgres, OnSqlite
from ledger_case import LedgerCase
from windows_program import BUILD, ROOT, command, path, run, taken

TABLES = ("rules", "definitions", "codes", "numbers", "leases", "journal")


class DailyTests:
    def contents(self):
        return [sorted(map(str, self.database.query(f"SELECT * FROM kestrel_{table}"))) for table in TABLES]

    def piped(self, text, *arguments):
        """A command with a text as its standard input."""
        return subprocess.run(command("kledger", ["--database", self.database.name, *arguments]), input=text,
                              capture_output=True, timeout=120, check=False)

    def test_many_codes_for_one_record(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(digits=2), "--policy", policy, name=policy)
            lines = self.done("issue", "--rule", policy, "--count", "3", "-f", "Year=2024", "--quiet")
            self.assertEqual(lines, ["2024-01", "2024-02", "2024-03"])
        result = self.kledger("issue", "--rule", "gapless", "-n", "99", "-f", "Year=2024")
        self.assertEqual((result.returncode, len(result.stdout.splitlines())), (3, 96), result.stderr)
        self.assertIn("line 97: series 2024-??: full, 99 was the last number", result.stderr)
        self.assertIn("not tried: 2 more", result.stderr)
        self.assertIn("--count is for codes of one record without a key",
                      self.refused("issue", "--rule", "fast", "-n", "2", "-f", "Year=2024", "--key", "K"))

    def test_a_dry_run_shows_all_and_stores_nothing(self):
        records = self.file("records.csv", "Year,Key\n2024,a\n24,b\n2024,c\n2023,d\n2024,c\n2023,c\n")
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
            self.done("issue", "--rule", policy, "-f", "Year=2024", "--key", "a")
            before = self.contents()
            arguments = ("issue", records, "--rule", policy, "--key-column", "Key", "--keep")
            dry = self.kledger(*arguments, "--dry-run")
            self.assertEqual(self.contents(), before)
            self.assertIn("a dry run: nothing was stored", dry.stderr)
            real = self.kledger(*arguments)
            self.assertEqual((dry.returncode, dry.stdout), (real.returncode, real.stdout))
            refusals = [line for line in real.stderr.splitlines() if line.startswith("line ")]
            self.assertEqual([line for line in dry.stderr.splitlines() if line.startswith("line ")], refusals)
            self.assertEqual(len([line for line in refusals if "has code" in line or "expected" in line]), 3, refusals)

    def filled(self):
        """Two rules with codes of every state, stored at known times."""
        self.import_rule(rules.numbered(), name="first")
        self.done("issue", self.file("a.csv", "Year,Town\n2023,Bonn\n2024,\"Köln, \"\"Süd\"\"\"\n2024,Bonn\n"), "--keep",
                  "--rule", "first")
        self.done("void", "2024-000002", "--reason", "wrong town", "--rule", "first")
        self.import_rule(rules.lettered(), name="second")
        self.done("issue", "-f", "Text=abc", "--key", "K 7", "--rule", "second")
        self.done("adopt", self.file("old.csv", "Code\nxyz007\n"), "--rule", "second")
        for code, at in (("2023-000001", "2023-05-31T23:59:59Z"), ("2024-000001", "2023-06-01T00:00:00Z"),
                         ("2024-000002", "2024-02-29T12:30:00Z")):
            self.database.query(f"UPDATE kestrel_codes SET stored_at = '{at}' WHERE code = '{code}'")

    def listed(self, *wish, verb="list"):
        return [code["code"] for code in self.objects("codes", verb, *wish)]

    def test_codes_are_listed_by_what_is_known_of_them(self):
        self.filled()
        everything = ["2023-000001", "2024-000001", "2024-000002", "abc001", "xyz007"]
        for wish, expected in (
                ((), everything), (("--rule", "second"), everything[3:]),
                (("--series", "2024-??????"), everything[1:3]), (("--state", "void"), everything[2:3]),
                (("--state", "issued"), everything[:2] + everything[3:4]), (("--state", "adopted"), everything[4:]),
                (("--until", "2023-05"), everything[:1]), (("--until", "2023-05-31"), everything[:1]),
                (("--since", "2023-06", "--until", "2024-02-29"), everything[1:3]),
                (("--since", "2024-02-29T12:30:00Z"), everything[2:]), (("--until", "2023"), everything[:2]),
                (("-f", "Town=Bonn"), ["2023-000001", "2024-000002"]),
                (("-f", "Town=Bonn", "-f", "Year=2023"), everything[:1]), (("--ticket", "K 7"), everything[3:4]),
                (("--rule", "second", "--state", "void"), [])):
            with self.subTest(wish=wish):
                self.assertEqual(self.listed(*wish), expected)
        for pattern, expected in (("2024*", everything[1:3]), ("??????", everything[3:]), ("*1", everything[:2] + ["abc001"]),
                                  ("abc001", ["abc001"]), ("*-0*2", ["2024-000002"])):
            with self.subTest(pattern=pattern):
                self.assertEqual(self.listed(pattern, verb="find"), expected)
        self.assertIn('no code fits "abc"', self.refused("codes", "find", "abc"))
        self.assertEqual(self.done("codes", "list", "--state", "void"),
                         ["2024-000002\tfirst\tvoid\t2024-02-29T12:30:00Z\tYear=2024\tTown=Bonn\tvoid because: wrong town"])
        void = self.objects("codes", "list", "--state", "void")[0]
        self.assertEqual((void["reason"], void["fields"]), ("wrong town", {"Year": "2024", "Town": "Bonn"}))

    def test_an_export_is_whole_or_not_there(self):
        self.filled()
        out = self.folder / "codes.csv"
        self.done("codes", "export", "--out", path(out), "--rule", "first")
        rows = list(csv.DictReader(io.StringIO(out.read_bytes().decode(), newline="")))
        self.assertEqual([(row["code"], row["state"], row["Town"]) for row in rows],
                         [("2023-000001", "issued", "Bonn"), ("2024-000001", "issued", 'Köln, "Süd"'),
                          ("2024-000002", "void", "Bonn")])
        self.assertEqual([row["void because"] for row in rows], ["", "", "wrong town"])
        self.assertEqual(self.piped(b"", "codes", "export", "--rule", "first").stdout, out.read_bytes())
        self.done("--json", "codes", "export", "--out", path(self.folder / "codes.json"))
        lines = (self.folder / "codes.json").read_text(encoding="utf-8").splitlines()
        self.assertEqual([json.loads(line)["code"] for line in lines], self.listed())
        before = out.read_bytes()
        self.database.query("DELETE FROM kestrel_definitions WHERE rule_id = 2")
        self.refused("codes", "export", "--out", path(out), "--rule", "second")
        self.refused("codes", "export", "--out", path(self.folder / "none" / "x.csv"))
        self.assertEqual(out.read_bytes(), before)
        self.assertEqual([file.name for file in self.folder.glob("*.new")], [])

    def test_a_rule_is_renamed_and_keeps_its_codes(self):
        self.import_rule(rules.numbered(), "--policy", "fast", name="old")
        self.issue("2024")
        self.done("audit", "--write-heads", path(self.folder / "heads"))
        self.assertEqual(self.done("rule", "rename", "old", "new name"), ['rule "new name": renamed from "old"'])
        self.assertEqual([rule["rule"] for rule in self.objects("rule", "list")], ["new name"])
        self.assertEqual(self.issue("2024"), "2024-000002")
        self.assertEqual(self.done("audit", "--against", path(self.folder / "heads"))[-1], "2 codes, 0 findings")
        acts = [act for act in self.objects("rule", "history") if act.get("what") == "settings"]
        self.assertRegex(acts[-1]["detail"], "^renamed, policy fast.*, rule new name$")
        self.assertIn('there is no rule "old"', self.refused("rule", "rename", "old", "x"))
        self.import_rule(rules.lettered(), name="other")
        self.assertIn('there is a rule "other" already', self.refused("rule", "rename", "new name", "other"))
        for name, cause in (("", "1 to 120 characters"), ("n" * 121, "1 to 120 characters"), ("a\tb", "control character")):
            self.assertIn(cause, self.refused("rule", "rename", "other", name))
        self.database.query("UPDATE kestrel_rules SET name = 'secret' WHERE name = 'other'")
        self.assertEqual([line["finding"] for line in self.objects("audit", code=4) if "finding" in line], ["settings"])
        self.done("audit", "--repair")
        self.assertEqual([rule["rule"] for rule in self.objects("rule", "list")], ["new name", "other"])

    def test_a_rule_is_copied_without_its_codes(self):
        self.import_rule(rules.numbered(), "--policy", "fast", "--lease", "7", name="first")
        self.issue("2024")
        self.done("rule", "copy", "first", "second")
        listed = {rule.pop("rule"): rule for rule in self.objects("rule", "list")}
        self.assertEqual(listed["second"], listed["first"] | {"codes": 0})
        self.assertEqual(self.done("issue", "--rule", "second", "-f", "Year=2024", "-q"), ["2024-000001"])
        self.assertIn('there is a rule "second" already', self.refused("rule", "copy", "first", "second"))
        self.assertEqual(self.done("audit")[-1], "2 codes, 0 findings")

    def test_a_rule_is_removed_or_retired(self):
        self.import_rule(rules.numbered(), name="used")
        self.import_rule(rules.lettered(), name="unused")
        self.issue_of("used")
        self.assertEqual(self.done("rule", "remove", "unused"), ['rule "unused": removed'])
        for table in TABLES[1:]:
            self.assertEqual(self.database.query(f"SELECT rule_id FROM kestrel_{table} WHERE rule_id = 2"), [])
        self.assertEqual(self.done("audit")[-1], "1 code, 0 findings")
        self.assertTrue(self.done("rule", "remove", "used")[0].startswith('rule "used": retired'))
        before = self.contents()
        for arguments in (("issue", "-f", "Year=2024"), ("issue", "-f", "Year=2024", "--dry-run"), ("adopt", "2024-000009")):
            self.assertIn("retired", self.refused(*arguments))
        self.assertIn('rule "used" is retired already', self.refused("rule", "remove", "used"))
        self.assertIn("is empty", self.refused("rule", "remove", ""))
        self.assertEqual(self.contents(), before)
        self.assertTrue(self.objects("rule", "list")[0]["retired"])
        self.assertEqual(self.objects("explain", "2024-000001")[0]["state"], "issued")
        self.assertEqual(self.done("audit")[-1], "1 code, 0 findings")
        self.done("rule", "restore", "used")
        self.assertIn("is not retired", self.refused("rule", "restore", "used"))
        self.assertEqual(self.issue("2024"), "2024-000002")
        self.assertEqual(self.done("audit")[-1], "2 codes, 0 findings")

    def test_retired_rules_are_not_offered(self):
        for name in "abc":
            self.done("rule", "new", name, name + "{#}")
        self.done("issue", "--rule", "b")
        self.done("rule", "remove", "b")
        self.assertTrue(self.refused("issue").endswith("name the rule with --rule; there are: a, c"))

    def issue_of(self, rule):
        self.done("issue", "--rule", rule, "-f", "Year=2024")

    def test_adopting_codes_by_name(self):
        self.import_rule(rules.numbered())
        self.assertEqual(self.done("adopt", "2024-000001", "2024-000007")[-1], "2 codes adopted, 0 foreign, 0 duplicate")
        result = self.kledger("adopt", "odl.csv")
        self.assertEqual(result.returncode, 3)
        self.assertIn("there is no file \"odl.csv\" either", result.stdout + result.stderr)
        self.assertEqual(self.codes(), ["2024-000001", "2024-000007"])
        self.assertEqual(self.piped(b"Code\n2024-000009\n", "adopt", "-").returncode, 0)

    def test_only_what_stores_codes_or_rules_makes_a_ledger(self):
        for arguments in (("rule", "list"), ("audit",), ("codes", "list"), ("preview",), ("explain", "X"), ("doctor",),
                          ("find", "--ticket", "X"), ("void", "X", "--reason", "y"), ("issue", "--dry-run")):
            with self.subTest(arguments=arguments):
                self.assertIn("there is no ledger", self.refused(*arguments))
                self.assertFalse(self.has_ledger())
        self.import_rule(rules.numbered())
        self.assertTrue(self.has_ledger())


class ReadingTests:
    """How words, files and standard input are read, which is done before any engine sees them: one is enough."""

    def test_a_field_is_given_by_the_file_or_beside_it(self):
        self.import_rule(rules.numbered())
        records = self.file("records.csv", "Year\n2024\n")
        self.assertIn("field Year stands in the file and in --field; leave one of them out",
                      self.refused("issue", records, "-f", "Year=2023"))
        self.assertEqual(self.contents()[2], [])

    def test_a_list_gets_a_code_for_each_line(self):
        self.import_rule(rules.numbered())
        file = self.file("names.txt", "Ann, the \"first\r\n\r\nBo\n")
        self.assertEqual(self.done("issue", file, "-f", "Year=2024"),
                         ['2024-000001\t2024\tAnn, the "first', "2024-000002\t2024\tBo"])
        self.assertEqual(self.objects("explain", "2024-000002")[0]["stored"], {"Year": "2024", "Line": "Bo"})
        self.assertIn("no column is named like a field", self.refused("issue", file.replace("names", "names")))
        result = self.piped(b"Cy\nDi\n", "issue", "-", "-f", "Year=2024", "--quiet")
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, b"2024-000003\n2024-000004\n", b""))
        result = self.piped(b"Year\n2025\n", "issue", "-")
        self.assertEqual(result.stdout, b"2025-000001\t2025\n")
        result = self.piped(b"Year\n\xff\n", "issue", "-")
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertIn(b'"standard input" is not UTF-8 (line 2)', result.stderr)

    def test_a_field_is_given_once(self):
        self.import_rule(rules.numbered())
        for command_name in ("issue", "preview"):
            self.assertIn('field "Year" is given twice, as "2023" and as "2024"; give it once',
                          self.refused(command_name, "-f", "Year=2023", "-f", "Year=2024"))

    def test_wishes_that_make_no_sense_are_refused(self):
        self.filled()
        for wish, cause in (
                (("--since", "31.5.2024"), '--since "31.5.2024" is no time; expected a date such as 2024-05-31'),
                (("--until", "2024-13"), '--until "2024-13" is no time'), (("--until", "2024-1"), "is no time"),
                (("--state", "gone"), '--state "gone" is none; expected issued, adopted or void'),
                (("--rule", "third"), 'there is no rule "third"'), (("-f", "Town"), '"Town" is no field')):
            with self.subTest(wish=wish):
                self.assertIn(cause, self.refused("codes", "list", *wish))

    def test_adopting_a_file_that_names_no_columns(self):
        self.done("rule", "new", "k", "K{#####}")
        self.assertEqual(self.done("adopt", self.file("old.txt", "K00001\nK00002\n"))[-1], "2 codes adopted, 0 foreign, 0 duplicate")
        self.assertEqual(self.piped(b"K00003\r\nK00004\r\n", "adopt", "-").returncode, 0)
        self.assertEqual(self.codes(), ["K00001", "K00002", "K00003", "K00004"])
        lines = self.objects("adopt", self.file("bad.txt", "X0005\nK00005\n"), code=3)
        self.assertEqual([(line["line"], line["result"]) for line in lines[:-1]], [(1, "foreign"), (2, "adopted")])
        self.assertIn('line 1: "K00006" is a code of the rule where a line with the columns\' names is expected',
                      self.refused("adopt", self.file("two.csv", "K00006,Miller\nK00007,Smith\n")))
        self.done("adopt", self.file("named.csv", "Who,code\nMiller,K00006\n"))
        self.done("adopt", self.file("named.txt", "Number\nK00007\n"), "--column", "Number")
        self.assertEqual(self.codes(), [f"K0000{number}" for number in range(1, 8)])
        self.assertEqual(self.objects("explain", "K00006")[0]["stored"], {"Who": "Miller"})

    def test_next_and_last_read_dates_as_they_are_written(self):
        self.done("rule", "new", "d", "{Date:yyyymmdd}{##}")
        self.done("issue", "-f", "Date=2026-06-30")
        date = ("d", "--date-format", "dd.mm.yyyy", "-f", "Date=30.06.2026")
        self.assertEqual(self.done("next", *date), ["20260630??\tNumber\t2"])
        self.assertEqual(self.done("last", *date)[0].split("\t")[-1], "2026063001")
        self.assertIn("is no date, dd.mm.yyyy expected", self.refused("next", *date[:-1], "Date=2026-06-30"))


class Sqlite(OnSqlite, DailyTests, ReadingTests, LedgerCase):
    def has_ledger(self):
        return self.database.file.exists()

    def test_adopt_makes_a_ledger_too(self):
        self.assertIn("the database has no rules yet; make one with: kledger rule new NAME PATTERN, or", self.refused("adopt", "X"))
        self.assertTrue(self.has_ledger())

    def test_an_export_needs_no_more_memory_for_more_codes(self):
        self.import_rule(rules.numbered(), "--policy", "fast")

        def megabytes(more):
            with (self.folder / "records.csv").open("w") as records:
                records.write("Year,Note\n")
                records.writelines(f"2024,{'long ' * 200}\n" for _ in range(more))
            self.done("issue", path(self.folder / "records.csv"), "--keep", "--quiet")
            return taken("kledger", "--database", self.database.name, "codes", "export", "--out",
                         path(self.folder / "codes.csv"))[2]

        few, many = megabytes(2_000), megabytes(10_000)  # several of the pieces that are read at once
        self.assertGreater((self.folder / "codes.csv").stat().st_size, 10_000_000)
        self.assertLess(many, few * 1.1)

    def test_an_empty_pattern_does_not_open_the_designer(self):
        self.done("rule", "new", "other", "X{#}")
        self.assertIn("the pattern is empty; write one such as", self.refused("rule", "new", "r", ""))

    def test_the_designer_needs_a_display(self):
        self.import_rule(rules.numbered())
        words = command("kledger", ["--database", self.database.name, "design"], display=False)
        result = subprocess.run(words, stdin=subprocess.DEVNULL, capture_output=True, timeout=60, check=False, encoding="utf-8")
        self.assertEqual(result.returncode, 1, result.stderr)
        self.assertIn("there is no display to open the designer on; use \"kledger rule new NAME PATTERN\"", result.stderr)


class Postgres(OnPostgres, DailyTests, LedgerCase):
    def has_ledger(self):
        return bool(self.database.query("SELECT 1 FROM pg_tables WHERE tablename LIKE 'kestrel%'"))


class CommandLine(unittest.TestCase):
    def test_the_version_is_the_projects(self):
        result = run("kledger", "--version")
        version = re.search(r"project\(Kestrel VERSION ([\d.]+)", (ROOT / "CMakeLists.txt").read_text()).group(1)
        self.assertEqual((result.returncode, result.stdout), (0, f"kledger {version}\n"))
        manifest = BUILD / "Kestrel.manifest"
        self.assertIn(f'name="Kestrel" version="{version}.0"', manifest.read_text())

    def test_unknown_words_name_the_nearest(self):
        for arguments, text in (
                (("isseu",), '"isseu" is no command; did you mean issue?'),
                (("rule", "lst"), '"lst" is no command; did you mean list?'),
                (("import", "x"), '"import" is no command; did you mean rule import?'),
                (("issue", "--cuont", "3"), '"--cuont" is no option here; did you mean --count?'),
                (("issue", "--databse=x"), '"--databse=x" is no option here; did you mean --database?'),
                (("zzzzzzzz",), '"zzzzzzzz" is no command; try'),
                (("rule", "list", "x"), '"x" is one argument too many')):
            with self.subTest(arguments=arguments):
                result = run("kledger", *arguments)
                self.assertEqual((result.returncode, result.stdout), (2, ""))
                self.assertIn(text, result.stderr)
                self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)


if __name__ == "__main__":
    unittest.main()
