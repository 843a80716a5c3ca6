"""The table of what the benchmarks measured: what it takes from their lines, and that the document has each of them."""
import pathlib
import re
import sys
import tempfile
import unittest

from windows_program import ROOT

sys.path.insert(0, str(ROOT / "bench"))
sys.dont_write_bytecode = True
import performance  # noqa: E402 (found through the path above)

DOCUMENT = ROOT / "docs" / "performance.md"


def rows(*lines):
    return [performance.Row("x86", performance.VERDICT.match(line)) for line in lines]


class TableTest(unittest.TestCase):
    def test_a_line_tells_what_was_measured_against_which_target(self):
        row, = rows("  GetIDsOfNames / the platform's (Count)        0.03  at most  0.05  met")
        self.assertEqual(row.cells(), ["GetIDsOfNames / the platform's (Count)", "32-bit", "0.03", "at most 0.05", "met"])

    def test_other_lines_are_no_results(self):
        for line in ("nanoseconds per call          vtable   Invoke", "  Definition 120, Check 40, findings 3", ""):
            self.assertIsNone(performance.VERDICT.match(line))

    def test_of_several_cases_the_worst_is_shown(self):
        found = performance.worst(rows("  a (one)   0.50  at most  1.00  met", "  a (two)   1.50  at most  1.00  MISSED",
                                       "  a (three)   0.90  at most  1.00  met", "  b   0.60  at least  0.80  MISSED"))
        self.assertEqual([(row.what, row.case, row.met) for row in found], [("a", "two", False), ("b", "", False)])

    def test_what_must_be_large_is_worst_where_it_is_smallest(self):
        found = performance.worst(rows("  a (one)   0.90  at least  0.80  met", "  a (two)   0.70  at least  0.80  MISSED"))
        self.assertEqual(found[0].case, "two")

    def test_a_program_that_measures_nothing_is_no_success(self):
        with self.assertRaises(SystemExit):
            performance.run("nothing", "x86", [sys.executable, "-c", "print('no result')"])

    def test_a_program_that_breaks_down_is_no_success(self):
        line = "  a   0.50  at most  1.00  met"
        with self.assertRaises(SystemExit):
            performance.run("broken", "x86", [sys.executable, "-c", f"print({line!r}); raise SystemExit(3)"])

    def test_a_missed_target_is_a_result(self):
        line = "  a   1.50  at most  1.00  MISSED"
        found, _ = performance.run("missed", "x86", [sys.executable, "-c", f"print({line!r}); raise SystemExit(1)"])
        self.assertFalse(found[0].met)

    def test_the_document_is_made_of_the_results(self):
        lines = ["parts: SQLite | COMMIT | 0.90 | 0.80", "peers: 1 | 1 | 2 | 3 | 4 | 5 | 6"]
        with tempfile.TemporaryDirectory() as folder:
            before, performance.DOCUMENT = performance.DOCUMENT, pathlib.Path(folder) / "performance.md"
            try:
                performance.document(rows("  a   0.50  at most  1.00  met"), lines)
                text = performance.DOCUMENT.read_text(encoding="utf-8")
            finally:
                performance.DOCUMENT = before
        self.assertIn("| a | 32-bit | 0.50 | at most 1 | met |", text)
        self.assertIn("| SQLite | COMMIT | 0.90 | 0.80 |", text)
        self.assertIn("| 1 | 1 | 2 | 3 | 4 | 5 | 6 |", text)
        self.assertNotIn("@", text)


class DocumentTest(unittest.TestCase):
    def test_has_every_target_of_the_programs(self):
        """What a benchmark judges by a constant name is in the table."""
        text = DOCUMENT.read_text(encoding="utf-8")
        for file in ("issuing", "dispatch", "relations", "rule", "loading", "soak", "designer"):
            source = (ROOT / "bench" / f"{file}.cpp").read_text(encoding="utf-8")
            names = re.findall(r'(?:AtMost|judge)\((?:of\()?"([^"]+?)(?: \()?"', source)
            self.assertTrue(names, file)
            for name in names:
                self.assertIn(f"| {name}", text, file)


if __name__ == "__main__":
    unittest.main()
