"""What a code is made of: values that records bring, dates, macros that are computed, check digits; and what refusals say."""
import datetime
import re
import unittest

import rules
from databases import OnSqlite
from ledger_case import LedgerCase
from rules import FIELD, FIXED, MACRO, NUMBER, band

NORTH_AND_SOUTH = "2;,1,N,North;,2,S,South"


def numbered_by(formula, length, fields=("Date",), calendar=(1, 1, 2, "00:00"), form=""):
    """What the formula gives, and a number."""
    return rules.rule([band("Part", MACRO, length=length, item="Part", form=form),
                       band("Number", NUMBER, default="1", form="000", length=3, tracks=("Part",))],
                      fields, [("Part", formula)], calendar)


def checked(formula="=luhn(Year Number)", length=1, tracks=("Year",), digits=3):
    """A year, a number and a check digit."""
    return rules.rule([band("Year", FIELD, length=4, item="Year"),
                       band("Number", NUMBER, default="1", form="0" * digits, length=digits, tracks=tracks),
                       band("Check", MACRO, length=length, item="Digit")], ("Year",), [("Digit", formula)])


class Values(OnSqlite, LedgerCase):
    def code_of(self, *arguments):
        return self.done("issue", *arguments)[0].split("\t")[0]

    def refusal(self, *arguments):
        """What keeps the one record from getting a code."""
        line = self.refused("issue", *arguments)
        self.assertTrue(line.startswith("line 1: "), line)
        return line.removeprefix("line 1: ")

    def on_each_policy(self, definition):
        for policy in ("gapless", "fast"):
            self.import_rule(definition, "--policy", policy, name=policy)
            yield "--rule", policy


class ComputedMacros(Values):
    def test_a_macro_is_computed_from_the_record(self):
        for rule in self.on_each_policy(numbered_by("=fiscal(Date)", 7, calendar=(4, 1, 2, "00:00"))):
            self.assertEqual(self.code_of(*rule, "-f", "Date=2016-03-31"), "2015-16001")
            self.assertEqual(self.code_of(*rule, "-f", "Date=2016-04-01"), "2016-17001")
            self.assertEqual(self.code_of(*rule, "-f", "Date=2017-03-31"), "2016-17002", "the year goes on")
            self.assertEqual(self.done("preview", *rule, "-f", "Date=2017-03-31", "-n", "2"), ["2016-17003", "2016-17004"])
            self.assertEqual(self.done("audit", *rule)[-1], "3 codes, 0 findings")

    def test_the_calendar_is_the_rules_own(self):
        for number, (calendar, formula, length, date, part) in enumerate((
                ((4, 1, 2, "00:00"), "quarter(Date)", 1, "2026-03-31", "4"),
                ((1, 26, 2, "00:00"), "month(Date)", 2, "2026-02-25", "01"),
                ((1, 1, 1, "00:00"), "weekday(Date)", 1, "2026-03-01", "1"),
                ((1, 1, 2, "00:00"), "weekday(Date)", 1, "2026-03-01", "7"),
                ((1, 1, 1, "00:00"), "week(Date)", 2, "2026-01-04", "02"),
                ((1, 1, 2, "06:00"), "day(Date)", 2, "2026-03-02T05:59", "01"))):
            self.import_rule(numbered_by(formula, length, calendar=calendar), name=f"rule{number}")
            self.assertEqual(self.code_of("--rule", f"rule{number}", "-f", f"Date={date}"), part + "001", formula)

    def test_a_format_applies_to_what_is_computed(self):
        self.import_rule(numbered_by("=month(Date)", 1, form="0"), name="month")
        self.assertEqual(self.code_of("--rule", "month", "-f", "Date=2026-04-12"), "4001")
        self.import_rule(numbered_by("=today()", 6, fields=(), form="yymmdd"), name="today")
        before = datetime.date.today()
        code = self.code_of("--rule", "today")
        self.assertIn(code, {f"{day:%y%m%d}001" for day in (before, datetime.date.today())})

    def test_texts_are_computed(self):
        self.import_rule(rules.rule([band("Name", MACRO, length=3, item="Short"),
                                     band("Hash", MACRO, length=4, item="Hash"),
                                     band("Number", NUMBER, default="1", form="00", length=2, tracks=("Name", "Hash"))],
                                    ("Last name",), [("Short", "upper(pad(left(\"Last name\" 3) 3 'x' right))"),
                                                     ("Hash", "hash(Short 4)")]))
        lines = self.done("issue", self.file("a.csv", "Last name\nMiller\nli\nMill\n"))
        codes = [line.split("\t")[0] for line in lines]
        self.assertEqual([code[:3] for code in codes], ["MIL", "LIX", "MIL"])
        self.assertEqual((codes[0][3:7], codes[0][7:], codes[2][7:]), (codes[2][3:7], "01", "02"))

    def test_a_computed_macro_takes_no_value(self):
        self.import_rule(numbered_by("=year(Date)", 4))
        self.assertEqual(self.refusal("-f", "Date=2026-04-12", "-f", "Part=2026"),
                         "macro Part is computed (=year(Date)), no value expected: '2026'")

    def test_descriptions_for_people_stay_what_they_are(self):
        definition = rules.rule([band("Part", MACRO, length=2, item="Part")], (), [("Part", "Initials (of the clerk)")])
        self.import_rule(definition)
        self.assertEqual(self.code_of("-f", "Part=AB"), "AB")

    def test_formulas_without_sense_are_refused_when_they_are_stored(self):
        for formula, cause in (
                ("=fiscl(Date)", "macro Part, formula =fiscl(Date): there is no function \"fiscl\"; nearest: 'fiscal'"),
                ("=year(Dat)", "macro Part, formula =year(Dat): the rule has no field or macro \"Dat\"; nearest: 'Date'"),
                ("=year()", "macro Part, formula =year(): year is given too few arguments; write year(DATE)"),
                ("=year(Date", 'macro Part, formula =year(Date: formula "=year(Date", character 11: it ends too early'),
                ("=fiscal(Date, both)", "it ends too early (a definition ends a description at"),
                ("=upper(Part)", "macros are computed from each other in a circle: Part from Part"),
                ("=luhn(Number Part)", "macros are computed from each other in a circle: Part from Part")):
            with self.subTest(formula=formula):
                self.assertIn(cause, self.refused("rule", "import", self.file("r.rule", numbered_by(formula, 4))))
        self.assertEqual(self.objects("rule", "list"), [])

    def test_formulas_without_sense_are_refused_when_codes_are_issued(self):
        self.import_rule(numbered_by("=year(Date)", 4))
        code = self.code_of("-f", "Date=2026-04-12")
        self.database.query("UPDATE kestrel_definitions SET text = REPLACE(text, '=year(Date)', '=yaer(Date)')")
        self.assertIn('there is no function "yaer"; nearest: \'year\'', self.refused("issue", "-f", "Date=2026-04-12"))
        self.assertIn("yaer", self.refused("preview", "-f", "Date=2026-04-12"))
        self.assertEqual(self.objects("explain", code)[0]["bands"], {"Part": "2026", "Number": "001"})


class CheckDigits(Values):
    def test_a_check_digit_covers_the_new_number(self):
        for rule in self.on_each_policy(checked()):
            self.assertEqual([self.code_of(*rule, "-f", "Year=2026") for _ in range(2)], ["20260014", "20260022"])
            self.assertEqual(self.done("preview", *rule, "-f", "Year=2026", "-n", "2"), ["20260030", "20260048"])
            lines = self.done("issue", self.file("a.csv", "Year\n2026\n2027\n2026\n"), *rule)
            self.assertEqual([line.split("\t")[0] for line in lines], ["20260030", "20270013", "20260048"])
            self.assertEqual(self.done("audit", *rule)[-1], "5 codes, 0 findings")
        self.assertEqual({row[0] for row in self.database.query("SELECT series FROM kestrel_numbers")},
                         {"2026????", "2027????"})

    def test_every_method_stands_in_its_band(self):
        for method, length, code in (("ean(Year Number)", 1, "20260019"), ("mod11(Year Number)", 1, "20260016"),
                                     ("mod97(Year Number)", 2, "202600118"), ("verhoeff(Year Number)", 1, "20260019"),
                                     ("damm(Year Number)", 1, "20260010"), ("luhn(Number)", 1, "20260018")):
            self.import_rule(checked(method, length), name=method[:5])
            self.assertEqual(self.code_of("--rule", method[:5], "-f", "Year=2026"), code, method)

    def test_a_series_that_tracks_the_digit_is_the_same_series(self):
        for rule in self.on_each_policy(checked(tracks=("Year", "Check"))):
            self.assertEqual([self.code_of(*rule, "-f", "Year=2026") for _ in range(2)], ["20260014", "20260022"])

    def test_explain_verifies_it(self):
        self.import_rule(checked())
        self.assertEqual(self.code_of("-f", "Year=2026"), "20260014")
        shown = self.objects("explain", "20260014")[0]
        self.assertEqual(shown["checks"], [{"band": "Check", "stands": "4", "expected": "4", "right": True}])
        result = self.kledger("explain", "20260018", "--rule", "rule")
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stdout, "check +Check +wrong: '4' expected")
        self.assertEqual(result.stderr, "kledger: band Check: '8', '4' expected (=luhn(Year Number))\n")

    def test_adopt_takes_only_right_ones(self):
        for rule in self.on_each_policy(checked()):
            lines = self.objects("adopt", self.file("old.csv", "Code\n20260014\n20260028\n20260048\n"), *rule, code=3)
            self.assertEqual([line["result"] for line in lines[:-1]], ["adopted", "foreign", "adopted"])
            self.assertEqual(lines[1]["detail"], "band Check: '8', '2' expected (=luhn(Year Number))")
            self.assertEqual(self.code_of(*rule, "-f", "Year=2026"), "20260055")

    def test_void_codes_keep_their_number(self):
        self.import_rule(checked())
        self.done("void", self.code_of("-f", "Year=2026"), "--reason", "a typing error")
        self.assertEqual(self.code_of("-f", "Year=2026"), "20260022")
        self.assertEqual(self.done("audit")[-1], "2 codes, 0 findings")

    def test_the_same_key_gets_the_same_code(self):
        for rule in self.on_each_policy(checked()):
            codes = {self.code_of(*rule, "-f", "Year=2026", "--key", "K") for _ in range(2)}
            self.assertEqual(codes, {"20260014"})

    def test_a_digit_over_a_digit_comes_after_it(self):
        definition = rules.rule([band("Number", NUMBER, default="1", form="000", length=3, tracks=("Dash",)),
                                 band("Dash", FIXED, default="-"), band("First", MACRO, item="First"),
                                 band("Second", MACRO, item="Second")], (),
                                [("Second", "damm(Number First)"), ("First", "luhn(Number)")])
        self.import_rule(definition)
        self.assertEqual(self.code_of(), "001-82")
        self.assertEqual(len(self.objects("explain", "001-82")[0]["checks"]), 2)

    def test_what_cannot_be_checked_is_refused_and_takes_no_number(self):
        for rule in self.on_each_policy(checked("=ean(Year Number)")):
            self.assertEqual(self.refusal(*rule, "-f", "Year=2A26"),
                             "macro Digit (=ean(Year Number)): 'A' in '2A26001', digits expected")
            self.assertEqual(self.code_of(*rule, "-f", "Year=2026"), "20260019")
        self.import_rule(checked("=mod97(Number)", 1), "--force", name="short")
        self.assertEqual(self.refusal("--rule", "short", "-f", "Year=2026"), "band Check: 2 characters, 1 expected: '95'")

    def test_no_relation_converts_a_digit(self):
        definition = rules.rule([band("Number", NUMBER, default="1", form="000", length=3, tracks=("Dash",)),
                                 band("Dash", FIXED, default="-"),
                                 band("Check", MACRO, item="Digit", swap=1, relations="1;,1,A,1")], (),
                                [("Digit", "luhn(Number)")])
        self.assertIn("band Check shows a check digit (luhn(Number)), which no relation can convert",
                      self.refused("rule", "import", self.file("r.rule", definition)))


class Patterns(Values):
    """Rules with formulas that are written in one line."""

    def new(self, pattern, *arguments, name="rule"):
        return self.done("rule", "new", name, pattern, *arguments)

    def test_a_fiscal_year(self):
        self.new("INV-{=fiscal(Date)}-{###}", "--year-begins", "4")
        lines = self.done("issue", self.file("a.csv", "Date\n2017-03-31\n2017-04-01\n2017-04-02\n"))
        self.assertEqual([line.split("\t")[0] for line in lines],
                         ["INV-2016-17-001", "INV-2017-18-001", "INV-2017-18-002"])
        self.assertEqual(self.done("audit")[-1], "3 codes, 0 findings")

    def test_a_check_digit_has_the_length_of_its_method(self):
        self.new("{Year:4}{###}{=luhn(Year Number)}")
        self.assertEqual([self.code_of("-f", "Year=2026") for _ in range(2)], ["20260014", "20260022"])
        self.new("{Year:4}{###}{=mod97(Year Number)}", name="long")
        self.assertEqual(self.code_of("--rule", "long", "-f", "Year=2026"), "202600118")

    def test_a_formula_without_sense(self):
        for formula, cause in (("=fiscl(Date):4", "there is no function \"fiscl\"; nearest: 'fiscal'"),
                               ("=left(Name):3", "left is given too few arguments; write left(VALUE LENGTH)"),
                               ("=luhn(Numbr):1", "the rule has no band \"Numbr\"; nearest: 'Number'")):
            result = self.kledger("rule", "new", "rule", f"{{{formula}}}{{###}}")
            self.assertEqual((result.returncode, result.stdout), (1, ""), formula)
            self.assertIn(cause, result.stderr)


class MissingValues(Values):
    def test_a_bound_field_or_macro_without_a_value_is_refused(self):
        definition = rules.rule([band("Year", FIELD, length=4, item="Year", form="yyyy"),
                                 band("Clerk", MACRO, length=2, item="Clerk"),
                                 band("Number", NUMBER, default="1", form="00", length=2, tracks=("Year",))],
                                ("Year", "Note"), [("Clerk", "")])
        for rule in self.on_each_policy(definition):
            self.assertEqual(self.refusal(*rule), "field Year: no value")
            self.assertEqual(self.refusal(*rule, "-f", "Clerk=AB"), "field Year: no value")
            self.assertEqual(self.refusal(*rule, "-f", "Year=", "-f", "Clerk=AB"), "field Year: no value")
            self.assertEqual(self.refusal(*rule, "-f", "Year=2026-01-01"), "macro Clerk: no value")
            self.assertEqual(self.code_of(*rule, "-f", "Year=2026-01-01", "-f", "Clerk=AB"), "2026AB01")
            self.assertEqual(self.refused("preview", *rule), "kledger: field Year: no value")

    def test_no_value_is_left_over_from_the_record_before(self):
        for rule in self.on_each_policy(rules.numbered()):
            result = self.kledger("issue", self.file("a.csv", "Year,Note\n2024,a\n,b\n2023,c\n"), "--keep", *rule)
            self.assertEqual((result.returncode, [line.split("\t")[0] for line in result.stdout.splitlines()]),
                             (3, ["2024-000001", "2023-000001"]))
            self.assertEqual(result.stderr.splitlines()[0], "line 3: field Year: no value")

    def test_what_a_formula_needs_must_be_there(self):
        self.import_rule(numbered_by("=year(Date)", 4))
        self.assertEqual(self.refusal(), "field Date: no value")

    def test_a_value_that_travelled_in_the_definition_is_none(self):
        definition = rules.numbered().replace("Year,,", "Year,,2020")
        self.import_rule(definition)
        self.assertEqual(self.refusal(), "field Year: no value")


class Dates(Values):
    def setUp(self):
        super().setUp()
        self.import_rule(rules.rule([band("Month", FIELD, length=7, item="Date", form="yyyy-mm"),
                                     band("Number", NUMBER, default="1", form="000", length=3, tracks=("Month",))],
                                    ("Date",)))

    def test_dates_are_iso(self):
        for date, month in (("2026-04-12", "2026-04"), ("20260412", "2026-04"), ("2026-04-12T23:59:59Z", "2026-04"),
                            ("1000-01-01", "1000-01"), ("9999-12-31", "9999-12")):
            self.assertEqual(self.code_of("-f", f"Date={date}")[:7], month, date)

    def test_other_texts_are_refused(self):
        for date in ("04/12/2026", "12.04.2026", "2026-4-12", "2026-02-30", "26-04-12", "April", "0", "2026"):
            self.assertEqual(self.refusal("-f", f"Date={date}"),
                             f"field Date: '{date}' is no date, ISO 8601, such as 2026-04-12 expected")
        self.assertEqual(self.refusal("-f", "Date="), "field Date: no value")

    def test_the_format_of_dates_can_be_named(self):
        for form, date in (("mm/dd/yyyy", "04/12/2026"), ("dd.mm.yyyy", "12.04.2026"), ("yymmdd", "260412")):
            self.assertEqual(self.code_of("-f", f"Date={date}", "--date-format", form)[:7], "2026-04", form)
            self.assertEqual(self.done("preview", "-f", f"Date={date}", "--date-format", form)[0][:7], "2026-04", form)
        self.assertEqual(self.refusal("-f", "Date=2026-04-12", "--date-format", "dd.mm.yyyy"),
                         "field Date: '2026-04-12' is no date, dd.mm.yyyy expected")
        self.assertIn('"dd.mm" is no format of dates', self.refused("issue", "-f", "Date=1", "--date-format", "dd.mm"))

    def test_formulas_read_dates_alike(self):
        self.import_rule(numbered_by("=month(Date calendar)", 2), name="month")
        self.assertEqual(self.code_of("--rule", "month", "-f", "Date=04/12/2026", "--date-format", "dd/mm/yyyy"), "12001")
        self.assertEqual(self.code_of("--rule", "month", "-f", "Date=04/12/2026", "--date-format", "mm/dd/yyyy"), "04001")
        self.assertEqual(self.refusal("--rule", "month", "-f", "Date=04/12/2026"),
                         "macro Part (=month(Date calendar)): Date: '04/12/2026' is no date, ISO 8601, such as "
                         "2026-04-12 expected")


class Refusals(Values):
    def test_a_value_of_another_length(self):
        for rule in self.on_each_policy(rules.numbered()):
            self.assertEqual(self.refusal(*rule, "-f", "Year=204"), "band Year: 3 characters, 4 expected: '204'")
            self.assertEqual(self.refusal(*rule, "-f", "Year=2"), "band Year: 1 character, 4 expected: '2'")
        formatted = rules.rule([band("Year", FIELD, length=2, item="Year", form="yyyy")], ("Year",))
        self.import_rule(formatted, "--force", name="formatted")
        self.assertEqual(self.refusal("--rule", "formatted", "-f", "Year=2026-01-01"),
                         "band Year: 4 characters, 2 expected: '2026'")

    def test_a_value_without_a_code(self):
        definition = rules.rule([band("Region", FIELD, item="Region", swap=1, relations=NORTH_AND_SOUTH),
                                 band("Number", NUMBER, default="1", form="00", length=2, tracks=("Region",))],
                                ("Region",))
        for rule in self.on_each_policy(definition):
            self.assertEqual(self.refusal(*rule, "-f", "Region=Nroth"),
                             "band Region: no code for 'Nroth'; nearest: 'North'")
            self.assertEqual(self.refusal(*rule, "-f", "Region=Elsewhere"), "band Region: no code for 'Elsewhere'")
            self.assertEqual(self.code_of(*rule, "-f", "Region=North"), "N01")
            self.assertEqual(self.objects("adopt", self.file("a.csv", "Code\nX05\n"), *rule, code=3)[0]["detail"],
                             "band Region: no value for 'X'")

    def test_a_code_of_another_length(self):
        definition = rules.rule([band("Region", FIELD, item="Region", swap=1, relations="1;,1,NN,North")], ("Region",))
        self.import_rule(definition)
        self.assertEqual(self.refusal("-f", "Region=North"), "band Region: 2 characters, 1 expected: 'NN'")

    def test_a_value_without_a_code_in_its_layer(self):
        bands = [band(name, FIELD, item=name, swap=2) for name in ("Land", "Town")]
        definition = rules.rule(bands + [band("Number", NUMBER, default="1", form="00", length=2, tracks=("Land", "Town"))],
                                ("Land", "Town"), layers=("Land", "Town"),
                                relations="4;,1,G,Germany;1,2,B,Berlin;,3,F,France;3,4,P,Paris")
        self.import_rule(definition)
        self.assertEqual(self.code_of("-f", "Land=France", "-f", "Town=Paris"), "FP01")
        self.assertEqual(self.refusal("-f", "Land=Franse", "-f", "Town=Paris"),
                         "band Land: no code for 'Franse'; nearest: 'France'")
        self.assertEqual(self.refusal("-f", "Land=Germany", "-f", "Town=Paris"), "band Town: no code for 'Paris'")
        self.assertEqual(self.refusal("-f", "Land=Germany", "-f", "Town=Berln"),
                         "band Town: no code for 'Berln'; nearest: 'Berlin'")

    def test_a_value_that_a_code_does_not_tell_is_not_made_up(self):
        self.done("rule", "new", "y", "{Date:yyyy}{Kind:2}{##}")
        self.done("rule", "new", "d", "{Date:yyyymmdd}{Kind:2}{##}")
        self.done("rule", "new", "c", "{=year(Date)}{Kind:2}{##}")
        for rule, code, kept in (("y", "2026ab01", {"Kind": "ab"}), ("y", "1905ab01", {"Kind": "ab"}),
                                 ("d", "20260630ab01", {"Date": "20260630", "Kind": "ab"})):
            self.done("adopt", code, "--rule", rule)
            shown = self.objects("explain", code, "--rule", rule)[0]
            self.assertEqual((shown["stored"], shown["fields"]), (kept, kept), code)
            self.assertEqual(shown.get("unreadable"), None if "Date" in kept else ["Date"], code)
            self.assertEqual("".join(shown["bands"].values()), code, "each band as it stands in the code")
        self.assertIn(["field", "Date", "(the code does not tell its value)"],
                      [re.split(" {2,}", line.strip()) for line in self.done("explain", "2026ab01", "--rule", "y")])
        self.done("adopt", "2026ab01", "--rule", "c")
        self.assertNotIn("Date", {name for name, value in self.objects("explain", "2026ab01", "--rule", "c")[0]["stored"].items() if value})
        self.done("issue", "--rule", "y", "-f", "Date=2026-06-30", "-f", "Kind=ab")
        shown = self.objects("explain", "2026ab02", "--rule", "y")[0]
        self.assertEqual((shown["stored"]["Date"], shown["fields"]), ("2026-06-30", {"Kind": "ab"}))

    def test_a_full_series(self):
        for rule in self.on_each_policy(rules.numbered(digits=2)):
            self.done("adopt", self.file("old.csv", "Code\n2024-99\n"), *rule)
            self.assertEqual(self.refusal(*rule, "-f", "Year=2024"), "series 2024-??: full, 99 was the last number")

    def test_a_number_that_its_format_makes_too_short(self):
        definition = rules.rule([band("Year", FIELD, length=4, item="Year"),
                                 band("Number", NUMBER, default="1", form="00", length=3, tracks=("Year",))], ("Year",))
        self.import_rule(definition, "--force")
        self.assertEqual(self.refusal("-f", "Year=2024"), "band Number: 2 characters, 3 expected: '01'")

    def test_codes_that_cannot_be_taken_apart(self):
        self.import_rule(rules.numbered())
        for code, cause in (("2024", "code '2024': 4 characters, 11 expected"),
                            ("2024_000001", "band Dash: '_', '-' expected")):
            self.assertEqual(self.refused("explain", code), f"kledger: {cause}")
            self.assertEqual(self.objects("adopt", self.file("a.csv", f"Code\n{code}\n"), code=3)[0]["detail"], cause)


if __name__ == "__main__":
    unittest.main()
