"""The checks of the proof find each thing that can be wrong."""
import pathlib
import shutil
import tempfile
import types
import unittest
import unittest.mock

from rig.checks import Row, findings, gaps, told
from rig.programs import Programs
from rig.requests import Book


class ChecksTest(unittest.TestCase):
    def setUp(self):
        self.book = Book()
        self.keys = self.book.new_requests("gapless", 2) + self.book.new_requests("fast", 1)
        self.rows = [Row(key.split("-")[0], code, key, "", "", key) for key, code in
                     zip(self.keys, ("2024-000001", "2024-000002", "2024-000007"), strict=True)]
        for row in self.rows:
            self.book.answer(row.key, row.code)
        self.rows.append(Row("gapless", "1999-000001", "t", "", "", ""))
        self.book.adopted.add(("gapless", "1999-000001"))

    def found(self):
        return {what for what, examples in findings(self.book, self.rows, ("gapless",), True).items() if examples}

    def change(self, number, **values):
        self.rows[number] = self.rows[number]._replace(**values)

    def test_all_is_well(self):
        self.assertEqual(self.found(), set())

    def test_a_request_with_two_codes(self):
        self.rows.append(self.rows[1]._replace(code="2024-000003"))
        self.assertEqual(self.found(), {"requests with several codes"})

    def test_a_code_that_is_lost(self):
        del self.rows[1]
        self.assertEqual(self.found(), {"requests without a code", "answers that are not stored",
                                        "answers of other requests"})

    def test_a_request_that_was_answered_twice(self):
        self.book.answer(self.keys[0], "2024-000002", marked_as_before=True)
        self.assertEqual(self.found(), {"requests with several answers", "answers of other requests",
                                        "codes told to several requests"})

    def test_a_code_that_two_requests_got(self):
        self.book.answers[self.keys[1]] = {"2024-000001"}
        self.assertEqual(self.found(), {"codes told to several requests", "answers of other requests"})

    def test_a_request_that_was_answered_again(self):
        again = '{"line": 2, "code": "2024-000001", "before": %s}\n'
        self.book.read(again % "true", self.keys)
        self.assertEqual(self.found(), set())
        self.book.read(again % "false", self.keys)
        self.assertEqual(self.found(), {"answered again without a mark"})

    def test_a_request_that_was_never_answered(self):
        del self.book.answers[self.keys[0]]
        self.assertEqual(self.found(), {"requests without an answer"})

    def test_a_code_that_nobody_asked_for(self):
        self.rows.append(Row("fast", "2024-000008", "t", "", "", "other"))
        self.assertEqual(self.found(), {"codes that nobody asked for"})

    def test_a_code_that_is_there_twice(self):
        self.rows.append(self.rows[3])
        self.assertEqual(self.found(), {"codes stored twice"})

    def test_a_gap(self):
        self.change(1, code="2024-000003")
        self.book.answers[self.keys[1]] = {"2024-000003"}
        self.assertEqual(self.found(), {"gaps in gapless"})
        self.assertEqual(told(findings(self.book, self.rows, ("gapless",), True)),
                         ["1 gaps in gapless: gapless 2024-000002"])

    def test_numbers_count_as_their_rule_says(self):
        for rule, codes, missing in (("stepped", ("2024-000001", "2024-000011", "2024-000031"), ["2024-000021"]),
                                     ("untracked", ("2023-000001", "2024-000002", "2023-000004"), ["000003"]),
                                     ("numbered", ("2024-99", "2024-101", "2023-01"), ["2024-000100"])):
            self.assertEqual(gaps(rule, codes)[-1:], missing, rule)

    def test_a_number_that_was_given_again(self):
        self.book.voided["gapless", "2024-000001"] = "why"
        self.rows.append(self.rows[0]._replace(act="void", reason="why", given_away="yes"))
        self.change(0, ticket="later", key="later")
        self.book.rules["later"] = "gapless"
        self.book.answer("later", "2024-000001")
        self.assertEqual(self.found(), set())
        self.rows.append(self.rows[0])
        self.assertEqual(self.found(), {"codes stored twice", "requests with several codes"})
        del self.rows[-2:]
        self.assertEqual(self.found(), {"requests without a code", "answers of other requests", "voids that are lost",
                                        "codes told to several requests"})

    def test_an_adopted_code_that_is_lost(self):
        del self.rows[3]
        self.assertEqual(self.found(), {"adopted codes that are lost"})

    def test_a_void_that_is_lost(self):
        self.book.voided["fast", "2024-000007"] = "why"
        self.assertEqual(self.found(), {"voids that are lost"})
        self.change(2, act="void", reason="other")
        self.assertEqual(self.found(), {"voids that are lost"})
        self.change(2, reason="why")
        self.assertEqual(self.found(), set())

    def test_a_code_with_another_key(self):
        self.change(0, ticket="other")
        self.assertEqual(self.found(), {"codes with another key"})

    def test_what_was_refused(self):
        self.book.read('{"line": 2, "refused": "no"}\n{"issued": 0}\n{"line": 3, "co', self.keys)
        self.assertEqual(self.found(), {"refused"})
        self.assertEqual(self.book.refused, [f"{self.keys[0]}: no"])


class ProgramsTest(unittest.TestCase):
    """A program that ends otherwise than it should is trouble, whatever is stored."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.book = Book()
        self.programs = Programs(types.SimpleNamespace(databases=["x"]), self.folder, self.book, with_keys=True)

    def play(self, script):
        """Lets a script run in the place of kledger."""
        line = ["sh", "-c", script]
        for module in ("rig.programs.command", "windows_program.command"):
            patch = unittest.mock.patch(module, lambda *_: line)
            patch.start()
            self.addCleanup(patch.stop)

    def issue(self, script):
        self.play(script)
        return self.programs.issue(0, "fast1", self.book.new_requests("fast1", 1))

    def test_a_program_that_does_all(self):
        self.assertTrue(self.issue("""echo '{"line": 2, "code": "2024-000001"}'"""))
        self.assertEqual((self.programs.troubles, self.book.answered_codes("fast1")), ([], ["2024-000001"]))

    def test_a_program_that_gives_up(self):
        self.assertFalse(self.issue("echo 'kledger: out of reach' >&2; exit 5"))
        self.assertEqual(self.programs.troubles, ["issue: 5 kledger: out of reach"])

    def test_a_program_whose_rule_was_changed(self):
        self.assertFalse(self.issue("""echo 'kledger: rule "x" was changed meanwhile; start again' >&2; exit 1"""))
        self.assertEqual(self.programs.troubles, [])

    def test_a_command_that_fails(self):
        self.play("echo 'no code' >&2; exit 1")
        self.programs.must(0, "void", "2024-000001", "--rule", "fast1")
        self.assertEqual(self.programs.troubles, ["void 2024-000001: 1 no code"])

    def test_what_an_audit_finds(self):
        self.play("exit 0")
        self.assertEqual(self.programs.audit(0, "fast1"), [])
        self.play("""echo '{"series": "x"}'; echo '{"finding": "gap"}'; exit 4""")
        self.assertEqual(self.programs.audit(0, "fast1"), ['{"finding": "gap"}', "audit: 4 "])
        self.play("exit 5")
        self.assertEqual(self.programs.audit(0, "fast1"), ["audit: 5 "])


if __name__ == "__main__":
    unittest.main()
