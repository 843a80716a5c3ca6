"""Names over several rules: conditions, days, rules that are full, tickets, and what makes no sense."""
import unittest

from databases import OnPostgres, OnSqlite
from ledger_case import LedgerCase
from rules import FIXED, NUMBER, band, numbered, rule

POLICIES = ("gapless", "fast")


def text(prefix, digits=1, default="1"):
    """A fixed text and a number that tracks nothing."""
    return rule([band("Text", FIXED, default=prefix, length=len(prefix)),
                 band("Number", NUMBER, default=default, form="0" * digits, length=digits)])


class NumberingTests:
    """Each test runs on either engine."""

    def rules(self, policy="gapless", **definitions):
        for name, definition in definitions.items():
            self.import_rule(definition, "--policy", policy, "--lease", "4", name=name)

    def codes_of(self, numbering, *arguments):
        return [line.split("\t")[0] for line in self.done("issue", "--rule", numbering, *arguments)]

    def clean(self):
        self.assertEqual([line["finding"] for line in self.objects("audit", "--warn", "0") if "finding" in line], [])

    def test_conditions_choose_the_rule(self):
        self.rules(a=text("A"), b=text("B"))
        self.done("numbering", "add", "all", "a", "--fields", "Company", "--when", "Company=A")
        self.done("numbering", "add", "all", "b", "--when", "Company=B")
        got = [self.codes_of("all", "--field", f"Company={company}")[0] for company in "ABAB"]
        self.assertEqual(got, ["A1", "B1", "A2", "B2"])
        self.assertIn("no rule of numbering \"all\" fits", self.refused("issue", "--rule", "all", "--field", "Company=C"))
        self.clean()

    def test_days_choose_the_rule(self):
        self.rules(old=text("25-"), new=text("26-"))
        self.done("numbering", "add", "all", "old", "--fields", "Date", "--date", "Date", "--until", "2025-12-31")
        self.done("numbering", "add", "all", "new", "--date", "Date", "--from", "2026-01-01")
        got = [self.codes_of("all", "--field", f"Date={day}")[0] for day in ("2025-12-31", "2026-01-01", "2025-01-01")]
        self.assertEqual(got, ["25-1", "26-1", "25-2"])

    def test_a_full_rule_is_followed_by_the_next(self):
        for policy in POLICIES:
            with self.subTest(policy):
                names = [f"{policy}{digits}" for digits in (1, 2)]
                self.rules(policy, **{names[0]: text(policy, 1, "8"), names[1]: text(policy, 2, "10")})
                self.done("numbering", "add", f"n{policy}", names[0], "--then", "anew")
                self.done("numbering", "add", f"n{policy}", names[1])
                self.assertEqual(self.codes_of(f"n{policy}", "--count", "4"),
                                 [f"{policy}{number}" for number in (8, 9, 10, 11)])
        self.clean()

    def test_the_next_rule_goes_on_counting(self):
        for policy in POLICIES:
            with self.subTest(policy):
                names = [f"{policy}{digits}" for digits in (1, 2)]
                self.rules(policy, **{names[0]: text(policy, 1, "8"), names[1]: text(policy, 3)})
                self.done("numbering", "add", f"n{policy}", names[0], "--then", "on")
                self.done("numbering", "add", f"n{policy}", names[1])
                self.assertEqual(self.codes_of(f"n{policy}", "--count", "4"),
                                 [f"{policy}{number}" for number in ("8", "9", "010", "011")])
        self.clean()

    def test_the_same_key_gets_the_same_code_from_whichever_rule(self):
        for policy in POLICIES:
            with self.subTest(policy):
                names = [f"{policy}{digits}" for digits in (1, 2)]
                self.rules(policy, **{names[0]: text(policy, 1, "9"), names[1]: text(policy, 2, "10")})
                self.done("numbering", "add", f"n{policy}", names[0], "--then", "anew")
                self.done("numbering", "add", f"n{policy}", names[1])
                keys = ("one", "two", "one", "two")
                self.assertEqual([self.codes_of(f"n{policy}", "--key", key)[0] for key in keys],
                                 [f"{policy}9", f"{policy}10"] * 2)
        self.clean()

    def new(self, name, pattern, *arguments):
        return self.done("rule", "new", name, pattern, "--lease", "4", *arguments)

    def test_a_rule_of_a_numbering_is_neither_removed_nor_retired(self):
        self.rules(a=text("A"), b=text("B"))
        self.done("numbering", "add", "all", "a", "--then", "anew")
        for _ in ("without codes", "with one"):
            self.assertIn('numbering "all" issues by rule "a"; take the rule out of it first: kledger numbering remove "all" "a"',
                          self.refused("rule", "remove", "a"))
            self.assertEqual(len(self.codes_of("all")), 1)
        self.done("numbering", "remove", "all")
        self.done("rule", "remove", "a")
        self.assertEqual([line.get("retired") for line in self.objects("rule", "list")], [True, None])

    def test_a_numbering_follows_a_rule_that_is_renamed(self):
        self.rules(a=text("A"))
        self.done("numbering", "add", "all", "a")
        self.done("rule", "rename", "a", "first")
        self.assertEqual(self.objects("numbering", "show", "all")[0]["rule"], "first")
        self.assertEqual(self.codes_of("all"), ["A1"])
        for act in ("rename", "copy"):
            self.assertIn('there is a numbering "all" already', self.refused("rule", act, "first", "all"))
        self.assertIn('"all" is a numbering; name one of its rules: first', self.refused("next", "all"))
        self.clean()

    def test_a_rule_of_a_numbering_keeps_to_what_the_numbering_needs(self):
        self.rules(a=text("A"), b=text("B"), year=numbered())
        self.done("numbering", "add", "all", "a", "--then", "anew")
        self.done("numbering", "add", "all", "b")
        self.done("numbering", "add", "dated", "year", "--when", "Year=2026")
        self.assertIn('rules "a" and "b" overlap', self.refused("rule", "import", self.file("b.rule", text("A"))))
        self.assertIn('has a field "Year"', self.refused("rule", "new", "year", "{Jahr:4}-{##}", "--replace"))
        self.done("rule", "import", self.file("b.rule", text("C")))
        self.assertEqual(self.codes_of("all"), ["A1"])
        self.clean()

    def test_a_number_grows_past_its_width(self):
        for policy in POLICIES:
            with self.subTest(policy):
                lines = self.new(policy, policy + "{#:8}", "--grow", "1..3", "--policy", policy)
                self.assertEqual([line.split(":")[0] for line in lines],
                                 [f'rule "{policy}-1"', f'rule "{policy}-2"', f'rule "{policy}-3"', f'numbering "{policy}"'])
                self.assertEqual(self.codes_of(policy, "--count", "4"), [policy + number for number in ("8", "9", "10", "11")])
                self.done("next", f"{policy}-2", "--set", "99")
                self.assertEqual(self.codes_of(policy, "--count", "3"), [policy + number for number in ("99", "100", "101")])
                self.done("next", f"{policy}-3", "--set", "999")
                self.codes_of(policy)
                self.assertIn("full, 999 was the last number", self.refused("issue", "--rule", policy))
        self.clean()

    def stored(self):
        return [self.database.query(f"SELECT COUNT(*) FROM kestrel_{table}")[0][0]
                for table in ("codes", "numbers", "leases", "journal", "claims")]

    def test_a_dry_run_of_a_numbering_tells_what_would_be_issued(self):
        for policy in POLICIES:
            with self.subTest(policy):
                self.new(policy, policy + "{Year:4}{#:8}", "--grow", "1..2", "--policy", policy)
                records = self.file("r.csv", "Key,Year\na,2025\nb,2026\nc,2025\na,2025\nd,2025\ne,2025\na,2024\n")
                issue = ("issue", records, "--rule", policy, "--key-column", "Key")
                before = self.stored()
                told = self.kledger(*issue, "--dry-run")
                self.assertEqual(self.stored(), before)
                done = self.kledger(*issue)
                self.assertEqual([line.split("\t")[0] for line in told.stdout.splitlines()],
                                 [policy + code for code in ("20258", "20268", "20259", "20258", "202510", "202511")])
                self.assertEqual((told.stdout, told.returncode), (done.stdout, done.returncode))
                self.assertIn(f'line 8: key "a" has code {policy}20258 for', told.stderr)
                self.assertEqual([line for line in told.stderr.splitlines() if line.startswith("line ")],
                                 [line for line in done.stderr.splitlines() if line.startswith("line ")])
        self.clean()

    def test_a_number_that_is_given_again_leaves_no_claim_behind(self):
        for policy in POLICIES:
            with self.subTest(policy):
                self.rules(policy, **{policy: text(policy)})
                self.done("rule", "set", policy, "--reuse")
                self.done("numbering", "add", f"n{policy}", policy)
                self.done("numbering", "add", f"m{policy}", policy)
                for numbering in (f"n{policy}", policy, f"m{policy}", f"n{policy}", policy):
                    self.assertEqual(self.codes_of(numbering), [policy + "1"])
                    self.clean()
                    self.done("void", policy + "1", "--rule", policy, "--reason", "lost")
        self.clean()

    def test_a_series_that_another_rule_goes_on_with_is_not_told_to_run_full(self):
        self.new("inv", "INV{#}", "--grow", "1..2")
        self.assertEqual(self.kledger("issue", "--rule", "inv", "--count", "12").stderr.count("warning"), 0)
        self.assertIn(", 0 findings", self.done("audit")[-1])
        self.done("next", "inv-2", "--set", "99")
        self.assertIn("warning: INV?? has 0 numbers left in band Number", self.kledger("issue", "--rule", "inv").stderr)
        found = [line["series"] for line in self.objects("audit", code=4) if line.get("finding") == "room"]
        self.assertEqual(found, ["INV??"])

    def test_each_series_grows_for_itself_and_by_its_step(self):
        for policy in POLICIES:
            with self.subTest(policy):
                self.new(policy, policy + "{Year:4}-{#}", "--grow", "1..2", "--step", "4", "--policy", policy)
                codes = self.codes_of(policy, "--count", "4", "--field", "Year=2025")
                self.assertEqual(codes, [f"{policy}2025-{number}" for number in (1, 5, 9, 13)])
                self.assertEqual(self.codes_of(policy, "--field", "Year=2026"), [f"{policy}2026-1"])
        self.clean()

    def test_rules_that_grow_come_together_or_not_at_all(self):
        self.new("inv-2", "X{##}")
        self.assertIn('there is a rule "inv-2" already', self.refused("rule", "new", "inv", "INV{#}", "--grow", "1..3"))
        self.new("other", "Y{#}", "--grow", "1..2")
        self.assertIn('there is a numbering "other" already', self.refused("rule", "new", "other", "Z{#}", "--grow", "1..2"))
        self.assertIn('there is a numbering "other" already', self.refused("rule", "new", "other", "Z{#}"))
        self.assertIn("--replace changes one", self.refused("rule", "new", "inv-2", "INV{#}", "--grow", "1..3", "--replace"))
        self.assertIn("--grow wants a pattern", self.refused("rule", "new", "inv", "--grow", "1..3"))
        self.assertIn("write its digits as in 4..9", self.refused("rule", "new", "inv", "INV{#}", "--grow", "9"))
        result = self.kledger("rule", "new", "inv", "INV{#}", "--grow", "2..3")
        self.assertEqual(result.stderr.splitlines()[1:], ["INV{#}", "   ^"])
        self.assertEqual([line["rule"] for line in self.objects("rule", "list")], ["inv-2", "other-1", "other-2"])

    def test_numberings_are_shown_and_removed(self):
        self.rules(a=text("A"))
        self.done("numbering", "add", "all", "a", "--then", "anew")
        self.assertEqual(self.objects("numbering", "show", "all")[0]["rule"], "a")
        self.done("issue", "--rule", "all")
        self.done("numbering", "remove", "all")
        self.assertIn("there is no rule \"all\"", self.refused("issue", "--rule", "all"))
        self.done("numbering", "add", "all", "a")
        self.assertEqual(self.codes_of("all"), ["A2"])
        self.clean()

    def test_a_rule_is_taken_out_of_a_numbering(self):
        self.rules(a=text("A"), b=text("B"), c=text("C"))
        for rule in ("a", "b"):
            self.done("numbering", "add", "all", rule, "--fields", "Kind", "--when", f"Kind={rule}")
        self.done("numbering", "add", "all", "a", "--when", "Kind=other")
        self.assertIn('numbering "all" does not issue by rule "c"', self.refused("numbering", "remove", "all", "c"))
        self.assertIn('there is no rule "d"', self.refused("numbering", "remove", "all", "d"))
        self.assertEqual(self.codes_of("all", "-f", "Kind=other"), ["A1"])
        self.assertEqual(self.done("numbering", "remove", "all", "a"), ['numbering "all": 1 part'])
        self.assertEqual([part["rule"] for part in self.objects("numbering", "show", "all")], ["b"])
        self.refused("issue", "--rule", "all", "-f", "Kind=other")
        self.assertEqual(self.codes_of("all", "-f", "Kind=b"), ["B1"])
        self.done("rule", "remove", "a")
        self.assertEqual(self.done("numbering", "remove", "all", "b"), ["removed: all"])
        self.assertIn('there is no numbering "all"', self.refused("numbering", "remove", "all", "b"))
        self.clean()

    def test_the_audit_sees_what_was_changed(self):
        self.rules(a=text("A"))
        self.done("numbering", "add", "all", "a")
        self.done("issue", "--rule", "all")
        for change in ("UPDATE kestrel_numberings SET text = '{}'", "UPDATE kestrel_claims SET ticket = 'x'",
                       "DELETE FROM kestrel_claims"):
            self.clean()
            kept = self.database.query("SELECT text FROM kestrel_numberings")[0][0]
            ticket = self.database.query("SELECT ticket FROM kestrel_claims")[0][0]
            self.database.query(change)
            self.assertIn("changed", {line.get("finding") for line in self.objects("audit", "--warn", "0", code=4)}, change)
            self.database.query(f"UPDATE kestrel_numberings SET text = '{kept}'")
            self.database.query(f"UPDATE kestrel_claims SET ticket = '{ticket}'")


class DecisionTests:
    """What is decided from rules, parts and records that were read before, whatever engine they lie on: one is enough."""

    def test_the_day_of_a_record_is_read_as_its_dates_are_written(self):
        self.new("dd", "D{Date:yyyymmdd}{##}")
        self.done("numbering", "add", "dn", "dd", "--date", "Date", "--from", "2026-01-01")
        issue = ("issue", "--rule", "dn", "--date-format", "dd.mm.yyyy")
        self.assertEqual(self.done(*issue, "-f", "Date=30.06.2026"), ["D2026063001\t30.06.2026"])
        self.assertEqual(self.done(*issue, self.file("d.csv", "Date\n01.01.2026\n")), ["D2026010101\t01.01.2026"])
        self.assertEqual(self.done(*issue, "-f", "Date=30.06.2026", "--dry-run"), ["D2026063002\t30.06.2026"])
        self.assertIn("field Date: 2025-12-31 is none of its days: from 2026-01-01",
                      self.refused(*issue, "-f", "Date=31.12.2025"))
        self.assertIn("field Date: '2026-06-30' is no date, dd.mm.yyyy expected",
                      self.refused(*issue, "-f", "Date=2026-06-30"))

    def test_a_record_that_no_part_fits_is_told_which_field_is_wrong(self):
        self.rules(a=text("A"), b=text("B"), c=text("C"))
        self.done("numbering", "add", "all", "a", "--fields", "Company", "--fields", "Date", "--when", "Company=A",
                  "--date", "Date", "--from", "2026-01-01", "--until", "2026-12-31")
        self.done("numbering", "add", "all", "b", "--when", "Company=A", "--date", "Date", "--from", "2028-01-01")
        self.done("numbering", "add", "all", "c", "--when", "Company=C", "--date", "Date", "--until", "2020-12-31")
        for fields, reason in (
                (("Date=2026-01-01",), "field Company: no value, 'A' or 'C' expected"),
                (("Company=Z", "Date=2026-01-01"), "field Company: 'Z', 'A' or 'C' expected"),
                (("Company=A",), "field Date: no value, a date expected (ISO 8601, such as 2026-04-12)"),
                (("Company=A", "Date="), "field Date: no value, a date expected (ISO 8601, such as 2026-04-12)"),
                (("Company=A", "Date=x"), "field Date: 'x' is no date, ISO 8601, such as 2026-04-12 expected"),
                (("Company=A", "Date=2026-02-31"), "field Date: '2026-02-31' is no date, ISO 8601, such as 2026-04-12 expected"),
                (("Company=A", "Date=2027-05-05"), "field Date: 2027-05-05 is none of its days: 2026-01-01 to 2026-12-31; from 2028-01-01"),
                (("Company=C", "Date=2026-01-01"), "field Date: 2026-01-01 is none of its days: until 2020-12-31")):
            told = self.refused("issue", "--rule", "all", *(word for field in fields for word in ("-f", field)))
            self.assertEqual(told, f'line 1: no rule of numbering "all" fits: {reason}')

    def test_a_value_that_is_no_date_does_not_go_to_a_part_for_any_time(self):
        self.rules(a=text("A"), b=text("B"))
        self.done("numbering", "add", "all", "a", "--fields", "Date", "--date", "Date", "--from", "2026-01-01")
        self.done("numbering", "add", "all", "b")
        self.assertIn("field Date: '2026-02-31' is no date", self.refused("issue", "--rule", "all", "-f", "Date=2026-02-31"))
        self.assertEqual([self.codes_of("all", *fields)[0] for fields in ((), ("-f", "Date=2025-01-01"))], ["B1", "B2"])

    def test_a_field_stands_once_in_a_condition(self):
        self.rules(a=text("A"))
        told = self.refused("numbering", "add", "all", "a", "--fields", "Company", "--when", "Company=A", "--when", "Company=B")
        self.assertIn("field Company stands twice in --when, as 'A' and as 'B'", told)
        self.assertEqual(self.done("numbering", "list"), [])

    def test_what_makes_no_sense_is_refused_when_it_is_stored(self):
        self.rules(a=text("A"), b=text("B"), again=text("A"), year=numbered())
        self.done("numbering", "add", "all", "a")
        add = ("numbering", "add")
        self.assertIn("leads in a circle", self.refused(*add, "all", "all"))
        self.assertIn("leads in a circle", self.refused(*add, "other", "all"))
        self.assertIn("has a field \"Company\"", self.refused(*add, "all", "b", "--when", "Company=A"))
        self.assertIn("a rule has this name", self.refused(*add, "a", "b"))
        self.assertIn("\"a\" and \"again\" overlap", self.refused(*add, "all", "again"))
        self.assertIn("is no day", self.refused(*add, "all", "year", "--date", "Year", "--from", "2026"))
        self.assertIn("no field with the record's date", self.refused(*add, "all", "b", "--from", "2026-01-01"))
        self.assertIn("is before", self.refused(*add, "all", "year", "--date", "Year", "--from", "2026-02-01", "--until", "2026-01-01"))
        self.assertIn("is a numbering", self.refused("rule", "import", self.file("all.rule", text("Z"))))
        self.assertEqual(self.done("numbering", "list"), ["all\t1 part"])

    def test_parts_that_contradict_each_other_are_refused(self):
        self.rules(a=text("A"), b=text("B"))
        fields = ("--fields", "Company", "--fields", "Kind", "--fields", "Date")
        for first, second, reason in (
                ((), ("b",), 'rule "b" would never be reached: rule "a" takes every record that it is for'),
                (("--when", "Company=A"), ("b", "--when", "Company=A", "--when", "Kind=1"), 'rule "b" would never be reached'),
                (("--date", "Date", "--from", "2026-01-01"), ("b", "--date", "Date", "--from", "2027-01-01"),
                 'rule "b" would never be reached'),
                (("--date", "Date", "--until", "2026-06-30"), ("b", "--date", "Date", "--from", "2026-01-01"),
                 'the days of rules "a" (until 2026-06-30) and "b" (from 2026-01-01) overlap'),
                (("--then", "anew"), ("a",), 'rule "a" stands twice with the same days and conditions'),
                (("--when", "Company=A", "--when", "Kind=1", "--then", "on"), ("a", "--when", "Kind=1", "--when", "Company=A"),
                 'rule "a" stands twice with the same days and conditions')):
            with self.subTest(first=first, second=second):
                self.done("numbering", "add", "all", "a", *fields, *first)
                self.assertIn(reason, self.refused("numbering", "add", "all", *second))
                self.assertEqual(len(self.objects("numbering", "show", "all")), 1)
                self.done("numbering", "remove", "all")

    def test_parts_of_which_the_earlier_is_the_exception_are_taken(self):
        self.rules(a=text("A"), b=text("B"))
        fields = ("--fields", "Company", "--fields", "Kind", "--fields", "Date", "--fields", "Due")
        year = ("--date", "Date", "--from", "2026-01-01", "--until", "2026-12-31")
        for first, second in ((("--when", "Company=A"), ()), (year, ()), (year, ("--date", "Date")),
                              (("--when", "Company=A"), ("--when", "Kind=1")), (year, ("--date", "Due", "--from", "2026-06-01")),
                              (("--when", "Company=A", *year), ("--date", "Date", "--from", "2026-06-01")),
                              (("--then", "anew"), ()), ((*year, "--then", "anew"), ("--date", "Date", "--from", "2026-06-01")),
                              (year, ("--date", "Date", "--from", "2027-01-01"))):
            with self.subTest(first=first, second=second):
                self.done("numbering", "add", "all", "a", *fields, *first)
                self.done("numbering", "add", "all", "b", *second)
                self.done("numbering", "remove", "all")

    def test_a_rule_that_cannot_go_on_counting_is_refused(self):
        self.new("high", "H{####:2600..2700}")
        self.new("low", "L{##}")
        self.new("higher", "M{####:2700..2701}")
        self.done("numbering", "add", "all", "high", "--then", "on")
        self.assertIn('rule "low" cannot go on counting behind rule "high": its last number is 99, and that of "high" is 2700; '
                      'let it begin with --then anew', self.refused("numbering", "add", "all", "low"))
        self.done("numbering", "add", "all", "higher")
        self.done("next", "high", "--set", "2700")
        self.assertEqual(self.codes_of("all", "--count", "2"), ["H2700", "M2701"])

    def test_a_numbering_of_the_name_of_a_rule_or_of_itself(self):
        self.rules(a=text("A"))
        self.assertIn('numbering "a": a rule has this name; give the numbering another one', self.refused("numbering", "add", "a", "a"))
        self.assertIn('there is no rule "n3"', self.refused("numbering", "add", "n3", "n3"))


class Sqlite(OnSqlite, NumberingTests, DecisionTests, LedgerCase):
    """On a file."""


class Postgres(OnPostgres, NumberingTests, LedgerCase):
    """On a server."""


if __name__ == "__main__":
    unittest.main()
