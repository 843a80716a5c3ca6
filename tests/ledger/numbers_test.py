"""How a rule counts: bands that track nothing, steps, ends, numbers left out, series that no code shows, reuse."""
import unittest

import rules
from databases import OnPostgres, OnSqlite
from ledger_case import LedgerCase
from rules import FIELD, FIXED, NUMBER, band, numbered, rule

POLICIES = ("gapless", "fast")


def plain(digits=3, default="1"):
    """A fixed text and a number that tracks nothing."""
    return rule([band("Text", FIXED, default="INV-", length=4), band("Number", NUMBER, default=default, form="0" * digits, length=digits)])


def named(default="1"):
    """A field that the number does not track, so that codes with the same number differ."""
    return rule([band("Who", FIELD, length=2, item="Who"), band("Number", NUMBER, default=default, form="000", length=3)], ("Who",))


class NumberTests:
    """Each test runs on either engine and with either policy."""

    def under_each_policy(self, definition, *arguments):
        for policy in POLICIES:
            with self.subTest(policy):
                self.import_rule(definition, "--policy", policy, "--lease", "10", *arguments, name=policy)
                yield policy

    def codes_of(self, policy, *arguments, count=1, code=0):
        lines = self.done("issue", "--rule", policy, "--count", count, *arguments, code=code)
        return [line.split("\t")[0] for line in lines]

    def clean(self):
        self.assertEqual(self.done("audit")[-1].split(", ")[1], "0 findings")

    def test_a_band_that_tracks_nothing_counts_for_the_whole_rule(self):
        for policy in self.under_each_policy(plain()):
            self.assertEqual(self.codes_of(policy, count=3), ["INV-001", "INV-002", "INV-003"])
            self.assertEqual(self.codes_of(policy), ["INV-004"])
            self.assertEqual(self.done("preview", "--rule", policy, "-n", "2"), ["INV-005", "INV-006"])
        self.clean()

    def test_an_untracked_band_counts_through_whatever_stands_beside_it(self):
        for policy in self.under_each_policy(named()):
            self.assertEqual([self.codes_of(policy, "--field", f"Who={who}")[0] for who in ("ab", "cd", "ab")],
                             ["ab001", "cd002", "ab003"])
        self.clean()

    def test_numbers_go_on_by_their_step(self):
        for policy in self.under_each_policy(plain(), "--step", "10"):
            self.assertEqual(self.codes_of(policy, count=3), ["INV-001", "INV-011", "INV-021"])
            self.assertEqual(self.codes_of(policy), ["INV-031"])
            self.assertEqual(self.done("preview", "--rule", policy, "-n", "2"), ["INV-041", "INV-051"])
            self.done("rule", "set", policy, "--step", "5")
            # A block that was given back is given back up to its next step.
            expected = ["INV-036", "INV-041"] if policy == "gapless" else ["INV-041", "INV-046"]
            self.assertEqual(self.codes_of(policy, count=2), expected)
        self.clean()

    def test_the_next_number_is_shown_and_set_upwards(self):
        for policy in self.under_each_policy(plain()):
            self.assertEqual(self.done("next", policy), ["INV-???\tNumber\t1"])
            self.assertEqual(self.done("last", policy), ["INV-???\tNumber\tnone"])
            self.codes_of(policy, count=2)
            self.assertEqual(self.done("next", policy, "--set", "50"), ["INV-???\tNumber\t50"])
            self.assertEqual(self.done("last", policy), ["INV-???\tNumber\t2\tINV-002"])
            self.assertEqual(self.done("preview", "--rule", policy), ["INV-050"])
            self.assertEqual(self.codes_of(policy, count=2), ["INV-050", "INV-051"])
            for number in ("51", "3"):
                self.assertIn("is not beyond what is used", self.refused("next", policy, "--set", number))
            self.assertIn("1000 is not from 1 to 999", self.refused("next", policy, "--set", "1000"))
            self.assertEqual(self.done("next", policy, "--set", "52"), ["INV-???\tNumber\t52"])
            left = [line for line in self.objects("audit", "--rule", policy) if line.get("leftOut")]
            self.assertEqual([(line["first"], line["last"]) for line in left], [(3, 49)])
            acts = [line["of"] for line in self.objects("rule", "history", policy) if line.get("what") == "next"]
            self.assertEqual(acts, ["50 in INV-??? of Number"])
        self.clean()

    def test_a_series_begins_with_the_number_that_was_set(self):
        for policy in self.under_each_policy(numbered(3)):
            self.done("next", policy, "--field", "Year=2024", "--set", "100")
            self.assertEqual(self.codes_of(policy, "--field", "Year=2024"), ["2024-100"])
            self.assertEqual(self.codes_of(policy, "--field", "Year=2025"), ["2025-001"])
        self.clean()

    def test_numbers_that_were_left_out_are_nobodys(self):
        for policy in self.under_each_policy(plain(), "--step", "10"):
            self.done("next", policy, "--set", "5")
            self.assertEqual([(line["codes"], line["first"], line["last"], line["left"])
                              for line in self.objects("audit", "--rule", policy) if "codes" in line and "series" in line],
                             [(0, 0, 0, 100)])
            self.assertEqual(self.codes_of(policy), ["INV-005"])
            self.done("next", policy, "--set", "100")
            self.done("next", policy, "--set", "200")
            self.assertEqual(self.codes_of(policy), ["INV-200"])
            lines = self.objects("audit", "--rule", policy)
            self.assertEqual([(line["first"], line["last"]) for line in lines if line.get("leftOut")],
                             [(1, 4), (6, 99), (100, 199)])
            self.assertEqual([(line["codes"], line["first"], line["last"], line["left"])
                              for line in lines if "codes" in line and "series" in line], [(2, 5, 200, 79)])
            self.assertEqual([(line["first"], line["last"], line["missing"])
                              for line in self.objects("report", "--rule", policy) if "missing" in line],
                             [(5, 200, 198)])
        self.clean()

    def test_a_number_that_was_set_comes_whatever_the_step_becomes(self):
        for policy in self.under_each_policy(plain()):
            self.codes_of(policy)
            self.done("next", policy, "--set", "50")
            self.done("rule", "set", policy, "--step", "7")
            self.assertEqual(self.done("next", policy), ["INV-???\tNumber\t50"])
            self.assertEqual(self.codes_of(policy, count=2), ["INV-050", "INV-057"])
        self.clean()

    def test_what_is_left_out_cannot_be_taken_away_unseen(self):
        self.import_rule(plain())
        self.codes_of("rule", count=2)
        self.done("next", "rule", "--set", "50")
        self.codes_of("rule")
        self.database.query("DELETE FROM kestrel_codes WHERE code = 'INV-002'")
        self.database.query("DELETE FROM kestrel_numbers WHERE number = 2")
        self.assertIn("act", {line.get("finding") for line in self.objects("audit", code=4)})
        self.database.query("DELETE FROM kestrel_numbers WHERE number = 49")
        self.assertLessEqual({"act", "gap"}, {line.get("finding") for line in self.objects("audit", code=4)})

    def test_a_value_that_no_code_shows_has_a_series_of_its_own(self):
        for policy in self.under_each_policy(named(), "--series", "Company"):
            issue = lambda who, company: self.codes_of(policy, "--field", f"Who={who}", "--field", f"Company={company}")[0]
            self.assertEqual([issue("ab", "A"), issue("cd", "B"), issue("ab", "A")], ["ab001", "cd001", "ab002"])
            refusal = self.refused("issue", "--rule", policy, "--field", "Who=cd", "--field", "Company=C")
            self.assertIn("code cd001 is issued already: the rule counts separately by Company", refusal)
            self.assertIn("field Company: no value", self.refused("issue", "--rule", policy, "--field", "Who=cd"))
        self.assertNotIn("duplicate", self.done("audit"))

    def test_numbers_of_void_codes_are_given_again_the_lowest_first(self):
        for policy in self.under_each_policy(plain(), "--reuse"):
            self.codes_of(policy, count=5)
            for code in ("INV-004", "INV-002"):
                self.done("void", code, "--rule", policy, "--reason", "lost")
            self.assertEqual(self.done("preview", "--rule", policy, "-n", "3"), ["INV-002", "INV-004", "INV-006"])
            self.assertEqual(self.done("next", policy), ["INV-???\tNumber\t2"])
            self.assertEqual(self.codes_of(policy, count=3), ["INV-002", "INV-004", "INV-006"])
            self.done("void", "INV-002", "--rule", policy, "--reason", "again")
            self.assertEqual(self.codes_of(policy), ["INV-002"])
            self.assertEqual(self.objects("explain", "INV-002", "--rule", policy)[0]["state"], "issued")
            again = self.objects("rule", "history", policy)
            self.assertEqual([line["of"] for line in again if line.get("what") == "reuse"], ["INV-002", "INV-004", "INV-002"])
        self.clean()

    def test_a_number_is_given_again_to_another_code(self):
        for policy in self.under_each_policy(named(), "--reuse"):
            self.codes_of(policy, "--field", "Who=ab", count=3)
            self.done("void", "ab002", "--rule", policy, "--reason", "lost")
            self.assertEqual(self.codes_of(policy, "--field", "Who=xy"), ["xy002"])
            self.assertEqual(self.codes_of(policy, "--field", "Who=xy"), ["xy004"])
            gone = self.objects("explain", "ab002", "--rule", policy)[0]
            self.assertEqual((gone["state"], gone["reason"], gone["successor"]), ("void", "lost", "xy002"))
        self.clean()

    def test_a_request_whose_number_was_given_again_gets_no_second_code(self):
        for policy in self.under_each_policy(plain(), "--reuse"):
            self.done("issue", "--rule", policy, "--key", "one")
            self.done("void", "INV-001", "--rule", policy, "--reason", "lost")
            self.assertEqual(self.codes_of(policy, "--key", "two"), ["INV-001"])
            self.assertIn("whose number was given again", self.refused("issue", "--rule", policy, "--key", "one"))
            self.assertEqual(self.codes_of(policy, "--key", "two"), ["INV-001"])
        self.clean()

    def test_only_rules_that_allow_it_give_numbers_again(self):
        self.import_rule(plain())
        self.codes_of("rule", count=3)
        self.done("void", "INV-002", "--reason", "lost")
        self.assertEqual(self.codes_of("rule"), ["INV-004"])
        self.done("rule", "set", "rule", "--reuse")
        self.assertEqual(self.codes_of("rule"), ["INV-002"])
        self.done("void", "INV-003", "--reason", "lost")
        self.done("rule", "set", "rule", "--no-reuse")
        self.assertEqual(self.codes_of("rule"), ["INV-005"])
        self.clean()

    def test_what_was_given_again_cannot_be_changed_unseen(self):
        self.import_rule(plain(), "--reuse")
        self.codes_of("rule", count=3)
        for code in ("INV-002", "INV-003"):
            self.done("void", code, "--reason", "lost")
        self.codes_of("rule")
        for change, back in (
                ("UPDATE kestrel_reused SET fields = '{\"x\":\"1\"}'", "UPDATE kestrel_reused SET fields = '{}'"),
                ("UPDATE kestrel_codes SET fields = '{\"x\":\"1\"}' WHERE code = 'INV-002'",
                 "UPDATE kestrel_codes SET fields = '{}' WHERE code = 'INV-002'"),
                ("UPDATE kestrel_free SET number = 4", "UPDATE kestrel_free SET number = 3")):
            self.clean()
            self.database.query(change)
            self.assertTrue([line for line in self.objects("audit", code=4) if "finding" in line], change)
            self.database.query(back)
        self.database.query("DELETE FROM kestrel_free")
        self.objects("audit", code=4)
        self.done("audit", "--repair")
        self.database.query("DELETE FROM kestrel_reused")
        self.assertIn("act", {line.get("finding") for line in self.objects("audit", code=4)})


class DecisionTests:
    """What is decided from the highest number of a series, which was read before, on whatever engine: one is enough."""

    def test_a_series_that_is_full_says_so_by_its_name(self):
        for policy in self.under_each_policy(plain(1, "8")):
            self.assertEqual(self.codes_of(policy, count=2), ["INV-8", "INV-9"])
            refusal = "line 1: series INV-?: full, 9 was the last number"
            self.assertEqual(self.refused("issue", "--rule", policy), refusal)
            self.assertIn("series INV-?: full, 9 was the last number", self.refused("preview", "--rule", policy))
            self.assertEqual(self.done("next", policy), ["INV-?\tNumber\tfull"])

    def warnings(self, *arguments):
        result = self.kledger("issue", *arguments)
        self.assertEqual(result.returncode, 0, result.stderr)
        return [line for line in result.stderr.splitlines() if line.startswith("warning")]

    def test_a_series_that_is_nearly_full_is_told_while_issuing(self):
        few = "warning: INV-?? has {} left in band Number"
        for policy in self.under_each_policy(plain(2, "80")):
            self.assertEqual(self.warnings("--rule", policy, "--count", "17"), [], "3 of 20 are more than a tenth")
            self.assertEqual(self.warnings("--rule", policy, "--dry-run"), [], "2 are a tenth")
            self.assertEqual(self.warnings("--rule", policy, "--dry-run", "--warn", "20"), [few.format("2 numbers")])
            self.codes_of(policy)
            told = [line for line in self.objects("issue", "--rule", policy) if "warning" in line]
            self.assertEqual(told, [{"warning": "room", "band": "Number", "series": "INV-??", "left": 1,
                                     "text": few.format("1 number").removeprefix("warning: ")}])
            self.assertEqual(self.warnings("--rule", policy), [few.format("0 numbers")])
            self.assertIn("full, 99 was the last number", self.refused("issue", "--rule", policy))

    def test_each_series_is_told_once_and_when_it_is_full(self):
        for policy in self.under_each_policy(plain(2, "80")):
            self.assertEqual(self.warnings("--rule", policy, "--count", "20"),
                             [f"warning: INV-?? has {left} left in band Number" for left in ("1 number", "0 numbers")])
        self.import_rule(plain(1), name="quiet")
        self.assertEqual(self.warnings("--rule", "quiet", "--count", "9", "--quiet"), [])

    def test_no_number_goes_beyond_the_end_of_the_band(self):
        for policy in self.under_each_policy(with_end(plain(), "12"), "--step", "5"):
            self.assertEqual(self.codes_of(policy, count=3), ["INV-001", "INV-006", "INV-011"])
            self.assertIn("series INV-???: full, 11 was the last number", self.refused("issue", "--rule", policy))
            self.assertIn("full, 11 was the last number", self.refused("preview", "--rule", policy))

    def test_nothing_is_set_in_a_full_series(self):
        for policy in self.under_each_policy(plain(1, "8")):
            self.codes_of(policy, count=2)
            self.assertIn("series INV-?: full, 9 was the last number", self.refused("next", policy, "--set", "9"))

    def test_settings_that_make_no_sense_are_refused(self):
        self.import_rule(rules.unnumbered())
        self.assertIn("0 number bands", self.refused("rule", "set", "rule", "--reuse"))
        self.refused("rule", "set", "rule", "--step", "0", code=2)


def with_end(definition, end):
    """The definition with a last number for its number bands."""
    lines = definition.split("\r")
    for place, line in enumerate(lines):
        if line == "1=3":
            ending = next(at for at in range(place, len(lines)) if lines[at].startswith("9="))
            lines[ending] = f"9={end}"
    return "\r".join(lines)


class Sqlite(OnSqlite, NumberTests, DecisionTests, LedgerCase):
    """On a file."""


class Postgres(OnPostgres, NumberTests, LedgerCase):
    """On a server."""


if __name__ == "__main__":
    unittest.main()
