"""kledger's commands, on each kind of database."""
import re
import unittest

import rules
from databases import OnMariaDb, OnPostgres, OnSqlite
from ledger_case import LedgerCase
from windows_program import path, run

COMMANDS = (["rule"], ["rule", "import"], ["rule", "export"], ["rule", "list"], ["issue"], ["preview"], ["explain"],
            ["adopt"], ["audit"], ["void"], ["design"], ["find"], ["rule", "history"], ["lease"], ["lease", "close"], ["doctor"],
            ["upgrade"], ["codes"], ["codes", "list"], ["codes", "find"], ["codes", "export"], ["report"],
            ["rule", "rename"], ["rule", "copy"], ["rule", "remove"], ["rule", "restore"])


class LedgerTests:
    def test_import_list_and_export(self):
        self.import_rule(rules.numbered(), "--policy", "fast", "--lease", "20", name="first")
        self.import_rule(rules.lettered(), name="second")
        self.assertEqual(self.objects("rule", "list"), [
            {"rule": "first", "policy": "fast", "lease": 20, "codeLength": 11, "codes": 0, "fields": ["Year"]},
            {"rule": "second", "policy": "gapless", "lease": 100, "codeLength": 6, "codes": 0, "fields": ["Text"]}])
        self.done("rule", "export", "first", "--out", path(self.folder / "out.rule"))
        self.assertEqual((self.folder / "out.rule").read_bytes().decode(), rules.numbered())
        self.assertEqual("\r".join(self.done("rule", "export", "first")), rules.numbered())
        self.import_rule(rules.numbered(), name="first")
        self.assertEqual(self.objects("rule", "list")[0]["policy"], "fast", "kept when it is not given")

    def test_issue_from_a_file_stores_what_it_prints(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
            records = self.file("records.csv", "Year,Note\n2024,a\n2023,\"b, c\"\n2024,d\n")
            self.assertEqual(self.done("issue", records, "--rule", policy, "--keep"),
                             ["2024-000001\t2024\ta", "2023-000001\t2023\tb, c", "2024-000002\t2024\td"])
            shown = self.objects("explain", "2023-000001", "--rule", policy)[0]
            self.assertEqual(shown["stored"], {"Year": "2023", "Note": "b, c"})
            self.assertEqual((shown["state"], shown["fields"]), ("issued", {"Year": "2023"}))
            self.assertEqual(shown["bands"], {"Year": "2023", "Dash": "-", "Number": "000001"})
            self.assertEqual(self.done("audit", "--rule", policy)[-1], "3 codes, 0 findings")

    def test_issue_refuses_bad_records_and_goes_on(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
            records = self.file("records.csv", "Year\n2024\n24\n2024,x\n2024\n")
            result = self.kledger("issue", records, "--rule", policy)
            self.assertEqual(result.returncode, 3)
            self.assertEqual([line.split("\t")[0] for line in result.stdout.splitlines()], ["2024-000001", "2024-000002"])
            self.assertEqual(result.stderr.splitlines()[:2], [
                "line 3: band Year: 2 characters, 4 expected: '24'", "line 4: 2 fields where the first line names 1"])
            self.assertEqual(self.done("audit", "--rule", policy)[-1], "2 codes, 0 findings")

    def test_issue_in_json(self):
        self.import_rule(rules.numbered())
        lines = self.objects("issue", self.file("records.csv", "Year\n2024\nx\n"), code=3)
        self.assertEqual(lines[0], {"code": "2024-000001", "line": 2, "fields": {"Year": "2024"}})
        self.assertEqual(lines[1]["line"], 3)
        self.assertEqual(lines[1]["refused"], "band Year: 1 character, 4 expected: 'x'")
        self.assertEqual((lines[2]["issued"], lines[2]["refused"]), (1, 1))

    def test_one_record_after_the_other(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy)
            first = len(self.codes())
            self.assertEqual(self.issue("2024"), f"2024-{first + 1:06}")
            self.assertEqual(self.issue("2024"), f"2024-{first + 2:06}")
        self.assertEqual(self.done("audit")[-1], "4 codes, 0 findings", "changing the policy leaves no gap")

    def test_a_rule_that_numbers_nothing_issues_a_code_once(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.unnumbered(), "--policy", policy, name=policy)
            records = self.file("records.csv", "Year\n2023\n2024\n2023\n")
            result = self.kledger("issue", records, "--rule", policy)
            self.assertEqual((result.returncode, result.stdout), (3, "2023\t2023\n2024\t2024\n"))
            self.assertIn("line 4: code 2023 is issued already, and no band of the rule numbers it on", result.stderr)

    def test_preview_stores_nothing(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
            self.done("issue", "--rule", policy, "--field", "Year=2024")
            for _ in range(2):
                self.assertEqual(self.done("preview", "--rule", policy, "--field", "Year=2024", "-n", "3"),
                                 ["2024-000002", "2024-000003", "2024-000004"])
        self.assertEqual(self.codes(), ["2024-000001"] * 2)

    def test_void_codes_are_kept_and_not_used_again(self):
        self.import_rule(rules.numbered())
        code = self.issue("2024")
        self.done("void", code, "--reason", "a typing error")
        shown = self.objects("explain", code)[0]
        self.assertEqual((shown["state"], shown["reason"]), ("void", "a typing error"))
        self.assertEqual(self.issue("2024"), "2024-000002")
        self.assertIn("is void already: a typing error", self.refused("void", code, "--reason", "again"))
        self.assertIn("is not in the ledger", self.refused("void", "2024-000009", "--reason", "none"))

    def test_adopt_tells_conforming_foreign_and_duplicate_codes_apart(self):
        self.import_rule(rules.numbered())
        self.issue("2024")
        codes = self.file("old.csv", "Old,Who\n2024-000001,a\n2024-000002,b\n2024-000004,c\n2024_000005,d\n2024-4,e\n"
                          "2024-00000x,f\n2024-000002,g\n")
        lines = self.objects("adopt", codes, code=3)
        self.assertEqual([line["result"] for line in lines[:-1]],
                         ["duplicate", "adopted", "adopted", "foreign", "foreign", "foreign", "duplicate"])
        self.assertEqual(lines[-1], {"adopted": 2, "foreign": 3, "duplicate": 2})
        self.assertEqual(lines[3]["detail"], "band Dash: '_', '-' expected")
        self.assertEqual(self.objects("explain", "2024-000004")[0]["stored"], {"Year": "2024", "Who": "c"})
        self.assertEqual(self.issue("2024"), "2024-000005")

    def test_adopt_refuses_a_second_code_with_the_same_number(self):
        # The number runs on over all years, so two codes of different years cannot share it.
        self.import_rule(rules.numbered(tracks=("Dash",)))
        self.issue("2024")
        lines = self.objects("adopt", self.file("old.csv", "Code\n2023-000001\n2023-000002\n2022-000002\n"), code=3)
        self.assertEqual([line["result"] for line in lines[:-1]], ["duplicate", "adopted", "duplicate"])
        self.assertEqual(lines[0]["detail"], "2024-000001 has its number in band Number")
        self.assertEqual(self.issue("2025"), "2025-000003")

    def test_audit_finds_gaps_room_and_foreign_codes(self):
        self.import_rule(rules.numbered(digits=2))
        self.done("adopt", self.file("old.csv", "Code\n2023-03\n2023-04\n2023-07\n2024-01\n2024-95\n"))
        found = [line for line in self.objects("audit", code=4) if "finding" in line]
        gaps = [(line["series"], line["first"], line["last"]) for line in found if line["finding"] == "gap"]
        self.assertEqual(gaps, [("2023-??", 1, 2), ("2023-??", 5, 6), ("2024-??", 2, 94)])
        room = [line for line in found if line["finding"] == "room"]
        self.assertEqual([(line["band"], line["series"], line["left"]) for line in room], [("Number", "2024-??", 4)])
        self.assertEqual([line for line in self.objects("audit", "--warn", "0", code=4)
                          if line.get("finding") == "room"], [])
        self.database.query("INSERT INTO kestrel_codes SELECT rule_id, '2024_96', 'own', definition, origin, 0, stored_at, "
                            "fields FROM kestrel_codes WHERE code = '2024-95'")
        uncounted = [line for line in self.objects("audit", code=4) if line.get("finding") == "uncounted"]
        self.assertEqual([line["code"] for line in uncounted], ["2024_96"])

    def test_audit_finds_duplicates(self):
        self.import_rule(rules.lettered())
        self.done("issue", self.file("records.csv", "Text\nabc\nABC\nxyz\n"))
        found = [line for line in self.objects("audit", code=4) if "finding" in line]
        self.assertEqual([(line["finding"], line["code"], line["codes"]) for line in found], [("duplicate", "ABC001", 2)],
                         "they differ in letter case only")
        # One series over all years makes one number of two.
        self.import_rule(rules.numbered(), name="years")
        self.done("issue", self.file("years.csv", "Year\n2023\n2024\n2024\n"), "--rule", "years")
        imported = self.objects("rule", "import", self.file("years.rule", rules.numbered(tracks=("Dash",))))[0]
        self.assertEqual((imported["definition"], imported["codes"], imported["sharedNumbers"]), (2, 3, 1))
        self.assertEqual(self.done("audit", "--rule", "years")[-1], "3 codes, 0 findings",
                         "codes are looked at by the definition that made them")

    def test_a_full_series_is_refused(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(digits=2), "--policy", policy, name=policy)
            self.done("adopt", self.file("old.csv", "Code\n2024-98\n"), "--rule", policy)
            records = self.file("records.csv", "Year\n2024\n2024\n2023\n")
            result = self.kledger("issue", records, "--rule", policy)
            self.assertEqual([line.split("\t")[0] for line in result.stdout.splitlines()], ["2024-99", "2023-01"])
            self.assertIn("line 3: series 2024-??: full, 99 was the last number", result.stderr)

    def test_wildcards_in_values_are_ordinary_characters(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.lettered(), "--policy", policy, name=policy)
            texts = ["abc", "a_c", "a%c", "a?c", "???", "%%%", "a\\c", "a'c", "\u00e4\u00f6\u20ac", "abc"]
            lines = self.done("issue", self.file("records.csv", "\n".join(["Text"] + texts)), "--rule", policy)
            expected = [text + "001" for text in texts[:-1]] + ["abc002"]
            self.assertEqual([line.split("\t")[0] for line in lines], expected)
            self.assertEqual(self.done("audit", "--rule", policy)[-1], "10 codes, 0 findings")

    def test_a_new_definition_counts_the_codes_anew(self):
        self.import_rule(rules.numbered(tracks=("Year",)))
        for year in ("2023", "2024", "2024"):
            self.issue(year)
        self.import_rule(rules.numbered(tracks=("Dash",)))
        self.assertEqual(self.issue("2030"), "2030-000003", "one series over all years now")

    def test_a_definition_of_another_code_length_is_refused(self):
        self.import_rule(rules.numbered())
        self.issue("2024")
        longer = self.file("rule.rule", rules.numbered(digits=7))
        self.assert_refused_and_nothing_written(
            "rule", "import", longer, cause='kledger: rule "rule" has issued 1 code of 11 characters and the new definition '
            "makes codes of 12; keep it as a rule of another name")
        self.assertEqual(self.issue("2024"), "2024-000002")
        self.done("rule", "import", longer, "--name", "longer")

    def test_rules_are_found_by_name_code_or_because_there_is_one(self):
        self.assertIn("the database has no rules yet", self.refused("issue", "--field", "Year=2024"))
        self.import_rule(rules.numbered(), name="first")
        self.issue("2024")
        self.import_rule(rules.lettered(), name="second")
        self.assertIn("name the rule with --rule; there are: first, second", self.refused("issue", "--field", "Year=2024"))
        self.assertIn('there is no rule "third"', self.refused("issue", "--rule", "third", "--field", "Year=2024"))
        self.assertEqual(self.objects("explain", "2024-000001")[0]["rule"], "first")

    def assert_refused_and_nothing_written(self, *arguments, cause):
        """One line, exit code 1, and every table as it was."""
        before = self.contents()
        self.assertIn(cause, self.refused(*arguments))
        self.assertEqual(self.contents(), before)

    def contents(self):
        return [sorted(map(str, self.database.query(f"SELECT * FROM kestrel_{table}")))
                for table in ("rules", "definitions", "codes", "numbers", "leases", "journal")]

    def test_other_encodings_and_separators_can_be_named(self):
        self.import_rule(rules.numbered())
        lines = self.done("issue", self.file("a.csv", b"Year;Town\n2024;Z\xfcrich\n"), "--separator", ";", "--code-page",
                          "1252", "--keep")
        self.assertEqual(lines, ["2024-000001\t2024\tZ\u00fcrich"])
        lines = self.done("issue", self.file("b.csv", "\ufeffYear\tTown\n2024\tZ\u00fcrich\n".encode("utf-16-le")),
                          "--separator", "tab", "--keep")
        self.assertEqual(lines, ["2024-000002\t2024\tZ\u00fcrich"])

    def test_a_newer_schema_is_left_alone(self):
        self.import_rule(rules.numbered())
        self.database.query("INSERT INTO kestrel_schema VALUES (9)")
        for arguments in (("rule", "list"), ("issue", "--field", "Year=2024")):
            self.assert_refused_and_nothing_written(
                *arguments, cause="kledger: the database was made by a newer kledger (schema 9, this one knows 3); use that one")


class ReadingTests:
    """What is refused as it is read, before it comes to any engine: one is enough."""

    def test_bad_input_is_one_line_and_changes_nothing(self):
        self.import_rule(rules.numbered())
        self.issue("2024")
        before = self.codes()
        records = self.file("good.csv", "Year\n2024\n")
        for arguments, cause in (
                (("issue", "--field", "Year"), '"Year" is no field; write Name=Value'),
                (("issue", path(self.folder / "none.csv")), "cannot open"),
                (("issue", records, "--rule", "none"), 'there is no rule "none"'),
                (("adopt", self.file("e.csv", "Code,Who\n2024-000009,a\n2024-000010\n")), "line 3: 1 field where"),
                (("adopt", records, "--column", "Code"), 'the file has no column "Code"'),
                (("rule", "import", self.file("f.rule", "#####")), "defines no band"),
                (("rule", "import", path(self.folder / "none.rule")), "cannot open"),
                (("explain", "2024"), "code '2024': 4 characters, 11 expected")):
            with self.subTest(cause=cause):
                self.assertIn(cause, self.refused(*arguments))
        self.assertEqual(self.codes(), before)

    def test_a_file_in_another_encoding_is_refused_as_a_whole(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy)
            for command in ("issue", "adopt"):
                file = self.file("other.csv", b"Year\n2024\nZ\xfcrich\n")
                self.assert_refused_and_nothing_written(
                    command, file, cause=f'"{file}" is not UTF-8 (line 3); save it as UTF-8 or name its code page')

    def test_a_file_with_a_broken_quote_is_refused_as_a_whole(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy)
            for command in ("issue", "adopt"):
                self.assert_refused_and_nothing_written(
                    command, self.file("quote.csv", 'Year\n2024\n"2024\n2024\n'),
                    cause="line 3: a quote is opened and never closed")

    def test_unknown_fields_are_refused_with_those_that_there_are(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy)
            for arguments, cause in (
                    (("--field", "Month=5"), 'the rule has no field or macro "Month"; it has: Year'),
                    ((self.file("a.csv", "Year,Month\n2024,5\n"),),
                     'the rule has no field or macro "Month"; rename the column (the rule has: Year) or keep such columns '
                     "beside the codes with --keep"),
                    ((self.file("b.csv", "Month\n5\n"),),
                     "no column is named like a field or macro of the rule (Year); check the first line and --separator")):
                self.assert_refused_and_nothing_written("issue", *arguments, cause=cause)


class Sqlite(OnSqlite, LedgerTests, ReadingTests, LedgerCase):
    pass


class Postgres(OnPostgres, LedgerTests, LedgerCase):
    def test_the_highest_number_is_found_through_the_key(self):
        """The server itself writes down how it ran each statement."""
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
        self.database.query(
            "INSERT INTO kestrel_numbers SELECT r.id, 'Number', y || '-??????', n, y || TO_CHAR(n, 'FM-000000'), 0, 0, '' "
            "FROM kestrel_rules r, generate_series(2020, 2024) y, generate_series(1, 3000) n")
        self.database.query("ANALYZE")
        for setting in ("session_preload_libraries = auto_explain", "auto_explain.log_min_duration = 0"):
            self.database.query(f"ALTER DATABASE {self.database.database} SET {setting}")
        before = len(self.server.log())
        for policy in ("gapless", "fast"):
            self.assertEqual(self.done("issue", "--rule", policy, "--field", "Year=2024")[0], "2024-003001\t2024")
        self.done("rule", "list")
        log = self.server.log()[before:]
        self.assertIn("Seq Scan on kestrel_rules", log, "plans are written down")
        self.assertGreaterEqual(len(re.findall(r"Index (Only )?Scan .*using kestrel_numbers_pkey", log)), 2, log)
        self.assertNotIn("Seq Scan on kestrel_numbers", log)

    def test_a_database_that_is_not_there(self):
        self.assertIn('database "none" does not exist', self.run_on(self.server.connection_string("none"), code=5))

    def test_a_login_that_is_refused(self):
        name = self.database.name.replace("Uid=postgres", "Uid=nobody")
        self.assertIn('role "nobody" does not exist', self.run_on(name, code=5))

    def run_on(self, database, code):
        """The one line that a command reports on a database that it cannot use."""
        result = run("kledger", "--database", database, "rule", "list")
        self.assertEqual((result.returncode, result.stdout), (code, ""), result.stderr)
        self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
        return result.stderr


class MariaDb(OnMariaDb, LedgerTests, LedgerCase):
    pass


class CommandLine(unittest.TestCase):
    def test_every_command_has_help(self):
        for command in ([], *COMMANDS):
            result = run("kledger", *command, "--help")
            self.assertEqual((result.returncode, result.stderr), (0, ""), command)
            self.assertIn("--help", result.stdout)

    def test_wrong_arguments_end_with_two_and_one_line(self):
        for arguments in ([], ["nonsense"], ["issue", "--nonsense"], ["explain"], ["void", "X"], ["rule"],
                          ["rule", "import", "x", "--policy", "sloppy"], ["issue", "x", "--separator", "ab"],
                          ["--patience", "x", "rule", "list"]):
            result = run("kledger", *arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""), arguments)
            self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)


if __name__ == "__main__":
    unittest.main()
