"""rule new, rule show and rule check: rules in one line, and what is told of rules."""
import re
import unittest

import rules
from databases import OnSqlite
from ledger_case import LedgerCase
from windows_program import ROOT, path, run

COUNTRIES = "Country code,Country\nDE,Germany\nFR,France\n"
PLACES = "Country code,Country,City code,City\nDE,Germany,1,Berlin\nDE,Germany,2,Hamburg\nFR,France,1,Paris\n"


class PatternsCase(OnSqlite, LedgerCase):
    def new(self, pattern, *arguments, name="r"):
        return self.done("rule", "new", name, pattern, *arguments)

    def issue_fields(self, *fields, name="r"):
        arguments = [argument for field in fields for argument in ("--field", field)]
        return self.done("issue", "--rule", name, *arguments)[0].split("\t")[0]

    def definition(self, name="r"):
        return "\r".join(self.done("rule", "export", name))

    def reported(self, *arguments, code):
        """What a command prints and what it reports, that ends with the code."""
        result = self.kledger(*arguments)
        self.assertEqual(result.returncode, code, result.stderr)
        return result.stdout.splitlines(), result.stderr.splitlines()


class NewTest(PatternsCase):
    def test_every_example_of_the_guide(self):
        guide = (ROOT / "docs" / "patterns.md").read_text(encoding="utf-8")
        rows = re.findall(r"^\| `(.+?)` \| (\w+=.+?) \| `(.+?)` \|$", guide, re.M)
        self.assertEqual(len(rows), 10)
        files = {"countries.csv": COUNTRIES, "places.csv": PLACES}
        for name, text in files.items():
            self.assertIn("\n    " + text.strip().replace("\n", "\n    "), guide, "the guide shows the file")
            self.file(name, text)
        for number, (pattern, record, code) in enumerate(rows):
            with self.subTest(pattern=pattern):
                pattern = pattern.replace("\\|", "|")
                for name in files:
                    pattern = pattern.replace(name, path(self.folder / name))
                self.new(pattern, name=f"r{number}")
                self.assertEqual(self.issue_fields(*record.split(", "), name=f"r{number}"), code)
                said = self.objects("rule", "show", f"r{number}")[0]
                self.assertIsNotNone(said["pattern"], said)

    def test_the_guide_and_the_parser_have_one_grammar(self):
        guide = (ROOT / "docs" / "patterns.md").read_text(encoding="utf-8")
        parser = (ROOT / "ledger" / "core" / "pattern" / "PatternText.cpp").read_text(encoding="utf-8")
        grammar = re.findall(r"^    (\w+ += .+)$", guide, re.M)
        self.assertGreater(len(grammar), 10)
        for line in grammar:
            self.assertIn("//   " + line, parser)

    def test_one_line_makes_a_rule_of_each_policy(self):
        for policy in ("gapless", "fast"):
            line = self.new("INV-{Date:yyyy}-{#####}", "--policy", policy, "--lease", "7", name=policy)
            self.assertEqual(line, [f'rule "{policy}": 4 bands, codes of 14 characters, policy {policy}, definition 1'])
            codes = [self.issue_fields("Date=2026-04-12", name=policy) for _ in range(2)]
            self.assertEqual(codes, ["INV-2026-00001", "INV-2026-00002"])
        self.assertEqual({line["lease"] for line in self.objects("rule", "list")}, {7})

    def test_a_mark_stands_below_what_is_wrong(self):
        out, error = self.reported("rule", "new", "r", "INV-{####:9..1}", code=1)
        self.assertEqual(out, [])
        self.assertEqual(error, ["kledger: position 14 of the pattern: the last number 1 lies below the first one, 9",
                                 "INV-{####:9..1}", "             ^"])
        guide = (ROOT / "docs" / "patterns.md").read_text(encoding="utf-8")
        self.assertIn("\n\n    " + "\n    ".join(error) + "\n\n", guide)
        self.assertEqual(self.done("rule", "list")[2:], [])

    def test_a_mark_stands_below_the_formula_that_is_wrong(self):
        for pattern, place, cause in (
                ("A-{=luhn(Nope)}{#}", 3, 'the rule has no band "Nope"'),
                ("{##}{=foo(X):4}", 5, 'there is no function "foo"'),
                ("{=year(Date)}{A=upper(B):2}{B=upper(A):2}{#}", 28, "are computed from each other in a circle: A from B from A"),
                ("{#}{Check=luhn(Check)}", 4, "are computed from each other in a circle: Check from Check")):
            with self.subTest(pattern=pattern):
                _, error = self.reported("rule", "new", "r", pattern, code=1)
                self.assertIn(f"position {place} of the pattern: ", error[0])
                self.assertIn(cause, error[0])
                self.assertEqual(error[1:], [pattern, " " * (place - 1) + "^"])
        self.reported("rule", "new", "r", "A-{=luhn(Nope):1}{#}", "--force", code=1)

    def test_long_patterns_are_refused(self):
        for piece in ("a", "{a:1}", "{"):
            _, error = self.reported("rule", "new", "r", piece * (12_000 // len(piece)), code=1)
            self.assertIn("a pattern has at most 10000 characters; this one has 12000", error[0])
        self.assertIn("codes are 9990 characters long; the ledger keeps codes of up to 255",
                      self.refused("rule", "new", "r", "a" * 9990))

    def test_a_rule_that_there_is_stays(self):
        self.new("{A:1}{##}")
        self.assertIn('there is a rule "r" already; change it with --replace', self.refused("rule", "new", "r", "{B:1}{##}"))
        self.assertIn('there is a rule "r" already', self.refused("rule", "new", "r"))
        line = self.new("{B:1}{##}", "--replace")
        self.assertIn("definition 2", line[0])
        self.assertEqual(self.issue_fields("B=x"), "x01")
        self.assertIn("a rule's name has 1 to 120 characters; this one has 121", self.refused("rule", "new", "n" * 121, "a"))

    def test_files_with_codes(self):
        file = self.file("c.csv", "Country code;Country\nD\xfc;Z\xfcrich\n".encode("cp1252"))
        self.new("{Country=" + file + "}{##}", "--separator", ";", "--code-page", "1252")
        self.assertEqual(self.issue_fields("Country=Z\u00fcrich"), "D\u00fc01")
        _, error = self.reported("rule", "new", "x", "A-{##}{A=none.csv}", code=1)
        self.assertIn("position 7 of the pattern: ", error[0])
        self.assertIn("cannot open", error[0])
        self.assertEqual(error[1:], ["A-{##}{A=none.csv}", "      ^"])
        for text, cause in (("c,v\n1,a\n22,b\n", 'line 3: code "22" has 2 characters where those above have 1'),
                            ("c,v\n1,a\n1,b\n", 'line 3: code "1" stands for "a" already, and for "b" here'),
                            ("c,v\n", "the file has no line below its columns' names"),
                            ("", "the first line must name the columns, and there is none"),
                            ("a,b,c\n1,2,3\n", 'a column "A" with the values is expected')):
            file = self.file("bad.csv", text)
            _, error = self.reported("rule", "new", "x", "{A=" + file + "}{##}", code=1)
            self.assertTrue(error[0].startswith(f"kledger: position 1 of the pattern: {file}: ") and cause in error[0], error)

    def test_settings(self):
        self.new("{=year(Date)}{##}", "--year-begins", "4", "--month-begins", "16", "--day-begins", "06:30", "--capitals")
        said = self.objects("rule", "show", "r")[0]
        self.assertEqual((said["pattern"], said["options"]),
                         ("{=year(Date)}{##}", " --capitals --year-begins 4 --month-begins 16 --day-begins 06:30"))
        for arguments in (("--year-begins", "13"), ("--month-begins", "0"), ("--day-begins", "25:00")):
            self.refused("rule", "new", "x", "{A:1}", *arguments, code=2)


    def test_the_day_that_weeks_begin_on(self):
        week = lambda name: self.issue_fields("Date=2026-01-04", name=name)
        self.new("{=week(Date)}{##}", "--week-begins", "sunday")
        self.new("{=week(Date)}{##}", name="monday")
        self.assertEqual((week("r"), week("monday")), ("0201", "0101"))
        self.assertIn("options: --week-begins sunday", self.done("rule", "show", "r"))
        self.assertEqual(self.objects("rule", "show", "monday")[0]["options"], "")
        self.assertIn("weeks begin on sunday", self.done("rule", "set", "monday", "--week-begins", "sunday")[0])
        self.assertEqual(week("monday"), "0201")
        self.refused("rule", "new", "x", "{##}", "--week-begins", "sonntag", code=2)

    def test_the_day_that_weeks_begin_on_stays_with_the_rule(self):
        self.new("{=week(Date)}{##}", "--week-begins", "sunday")
        exported = self.definition()
        self.assertIn("\r11\r1\r", exported)
        self.done("rule", "import", self.file("other.rule", exported))
        self.assertIn("options: --week-begins sunday", self.done("rule", "show", "other"), "a rule takes it along")
        self.done("rule", "import", self.file("r.rule", exported.replace("\r11\r1\r", "\r11\r2\r")))
        self.assertEqual(self.issue_fields("Date=2026-01-04"), "0201", "a text that lost it does not take it away")
        self.done("rule", "import", self.file("r.rule", exported), "--week-begins", "monday")
        self.assertEqual(self.issue_fields("Date=2026-01-04"), "0101")


class ShowTest(PatternsCase):
    def test_the_bands_as_a_table(self):
        self.new("INV-{Date:yymm}{@User:3}{=year(Date)}{###:5..700/Date}{A..F}")
        self.assertEqual(self.done("rule", "show", "r")[:9], [
            "BAND    STYLE   LENGTH  FROM               FORMAT  NUMBERS  TRACKS  CODES",
            "------  ------  ------  -----------------  ------  -------  ------  -----",
            "Text    text    4       INV-",
            "Date    field   4       Date               yymm",
            "User    macro   3       User",
            "year    macro   4       year = year(Date)",
            "Number  number  3                          000     5..700   Date",
            "Letter  letter  1       A                          A..F",
            "pattern: INV-{Date:yymm}{@User:3}{=year(Date)}{###:5..700/Date}{A..F}"])

    def test_what_is_shown_makes_the_same_rule(self):
        self.file("countries.csv", COUNTRIES)
        self.file("places.csv", PLACES)
        folder = path(self.folder) + "\\"
        for number, pattern in enumerate((
                "{Land=" + folder + "countries.csv}-{###/Land}", "a{{b}}{A:4 as \"x/y\"}{##:7..90}",
                "{Country=" + folder + "places.csv|1}{City=" + folder + "places.csv|2 as Town}{###/Town}")):
            self.new(pattern, name=f"r{number}")
            said = self.objects("rule", "show", f"r{number}", "--codes", path(self.folder))[0]
            again = said["pattern"]
            for name in said["codes"]:
                again = again.replace(name, folder + name)
            self.new(again, name="again" + str(number))
            self.assertEqual(self.definition(f"again{number}"), self.definition(f"r{number}"), pattern)

    def test_a_rule_from_elsewhere_is_said_with_what_stands_beside(self):
        self.import_rule(rules.numbered(), name="r")
        lines = self.done("rule", "show", "r")
        self.assertIn("pattern: {Year:4}{\"-\" as Dash}{######}", lines)
        self.assertIn("options: --capitals", lines)
        self.assertIn("beside the pattern: simple style 1", lines)

    def test_a_rule_that_no_pattern_says(self):
        self.import_rule(rules.rule([rules.band("Number", rules.NUMBER, default="100", length=3, tracks=("A",)),
                                     rules.band("A", rules.FIXED, default="A")]), name="r")
        self.assertIn('pattern: none says this rule: the number of band Number is written with the format "", and not with '
                      "3 digits", self.done("rule", "show", "r"))


class CheckTest(PatternsCase):
    def yeer(self):
        return rules.numbered().replace("13=Year", "13=Yeer")

    def line_of(self, text, value):
        return text.split("\r").index(value) + 1

    def test_each_value_that_was_not_taken_is_told_with_its_line(self):
        good = rules.numbered()
        for old, new, told in (
                ("13=Year", "13=Yeer", 'tracked bands of band Number: read "Yeer", not taken; the rule holds ""'),
                ("6=Year", "6=Yeer", 'field of band Year: read "Yeer", not taken; the rule holds ""'),
                ("5=6", "5=six", 'length of band Number: read "six", not taken; the rule holds "1"'),
                ("3=1", "3=one", 'default of band Number: read "one", not taken; the rule holds ""'),
                ("8=1", "8=one", 'begin of band Number: read "one", not taken; the rule holds "1"')):
            text = good.replace(old, new, 1)
            lines = self.done("rule", "check", self.file("t.rule", text), code=4)
            self.assertIn(f"line {self.line_of(text, new)}: {told}", lines)
        text = good.replace("3=-", "4=000", 1)
        lines = self.done("rule", "check", self.file("t.rule", text), code=4)
        line = self.line_of(text, "4=000")
        self.assertIn(f'line {line}: format of band Dash: read "000", not taken; the rule holds ""', lines)

    def test_a_clean_rule(self):
        self.new("{Shop:2}{####}")
        for subject in ("r", self.file("t.rule", self.definition())):
            self.assertEqual(self.reported("rule", "check", subject, code=0), ([], ["nothing was found"]))

    def test_import_tells_the_same(self):
        file = self.file("t.rule", self.yeer())
        told = self.done("rule", "check", file, code=4)
        out, error = self.reported("rule", "import", file, code=0)
        self.assertEqual(len(out), 1)
        self.assertEqual(error, told)
        self.assertEqual(self.done("rule", "check", "t", code=4), told, "of the stored rule as well")
        self.assertEqual(self.objects("rule", "import", file)[0]["findings"], told)
        found = self.objects("rule", "check", "t", code=4)[0]
        self.assertEqual((found["finding"], found["read"], found["holds"]), ("untaken", "Yeer", ""))

    def test_texts_that_end_early_or_are_none(self):
        good = rules.numbered()
        for length, told in ((good.rindex("\r15="), 'the text ends in the middle of band "Number", which is lost'),
                             (good.rindex("\r16\r"), None)):
            text = good[:length]
            lines = self.done("rule", "check", self.file("t.rule", text), code=4)
            if told:
                self.assertIn(f"line {text.count(chr(13)) + 1}: {told}", lines)
        for text in ("", "#####", "nothing of a rule", "%PDF"):
            self.assertIn("defines no band, so it is no rule", self.refused("rule", "check", self.file("t.rule", text)))
        self.assertFalse(self.database.file.exists(), "to check a file needs no ledger")
        self.new("{A:1}{##}")
        self.assertIn('there is neither a file nor a rule "none"', self.refused("rule", "check", "none"))

    def test_a_rule_that_cannot_issue_is_refused_unless_forced(self):
        file = self.file("t.rule", rules.numbered().replace("4=000000", "4=000"))
        out, error = self.reported("rule", "import", file, code=1)
        self.assertEqual(out, [])
        self.assertIn('no code can be issued: band Number: the first number "1" does not fit 6 characters with the format '
                      '"000"', error[-2])
        self.assertEqual(error[-1], 'kledger: rule "t" can issue no code and is not stored; put right what stands above, or '
                                    "store it with --force")
        self.assertEqual(self.done("rule", "list")[2:], [])
        self.reported("rule", "import", file, "--force", code=0)
        self.assertEqual(len(self.done("rule", "list")[2:]), 1)
        self.assertIn("obstacle", [line["finding"] for line in self.objects("rule", "check", file, code=4)])

    def test_values_that_travel_with_a_definition_are_not_kept(self):
        text = rules.numbered().replace("14\rYear,,", "14\rYear,,2019")
        _, error = self.reported("rule", "import", self.file("t.rule", text), code=0)
        self.assertEqual(error, ["the values of fields and macros that came with the definition are not kept"])
        self.assertEqual(self.definition("t"), rules.numbered())

    def test_help_and_wrong_arguments(self):
        for command in ("new", "show", "check", "design"):
            result = run("kledger", "rule", command, "--help")
            self.assertEqual((result.returncode, result.stderr), (0, ""))
            self.assertIn("--help", result.stdout)
        self.refused("rule", "new", code=2)
        self.refused("rule", "check", code=2)


if __name__ == "__main__":
    unittest.main()
