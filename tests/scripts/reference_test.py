"""The reference: the document is what its program makes of the type library, and its examples do what they say."""
import re
import subprocess
import sys
import unittest

from windows_program import BUILD, LAUNCHER, ROOT

FOLDER = ROOT / "tests" / "scripts" / "reference"
# Raised only when somebody clicks, or by nothing.
SILENT = {"rule_AddField", "rule_DropField", "rule_Load", "rule_BeforeDropField", "names_GetEnums", "band_RelationsChanged"}


def expected_lines(script):
    """What the comments at the ends of lines say; None for a line that prints whatever it likes."""
    lines = []
    for line in script.split("\n"):
        match = re.search(r"WScript\.Echo.* ' (.+)$", line)
        if match and not line.startswith("'"):
            lines += [None] if match.group(1) == "*" else match.group(1).split("|")
    return lines


class DocumentTest(unittest.TestCase):
    def test_is_what_the_program_prints(self):
        done = subprocess.run([sys.executable, str(ROOT / "tools" / "reference.py"), "--check"], capture_output=True, text=True,
                              check=False)
        self.assertEqual((done.returncode, done.stderr), (0, ""))


class ErrorsTest(unittest.TestCase):
    # Held by other tests: a number beyond all bounds, a host that does not save, a last code of another length.
    ELSEWHERE = {6: ("automation/LimitsTest.cpp", "Overflow"), 2005: ("scripts/kestrel/boxes.vbs", "not saved after all\", 2005"),
                 2035: ("scripts/kestrel/guide.vbs", "LibraryError(2035)")}

    def test_every_line_of_the_table_is_run(self):
        table = {int(line.split(" |")[0]) for line in (ROOT / "tools" / "reference-errors.txt").read_text().splitlines()}
        script = (ROOT / "tests" / "scripts" / "kestrel" / "errors.js").read_text(encoding="utf-8")
        run = {int(number) for number in re.findall(r"^expect(?:Reason)?\((\d+)", script, re.MULTILINE)}
        self.assertEqual(run | self.ELSEWHERE.keys(), table)
        for number, (file, words) in self.ELSEWHERE.items():
            self.assertTrue(words in (ROOT / "tests" / file).read_text(encoding="utf-8"), number)

    def test_every_number_that_a_member_names_is_in_the_table(self):
        table = {line.split(" |")[0] for line in (ROOT / "tools" / "reference-errors.txt").read_text().splitlines()}
        helps = re.findall(r'helpstring\("([^"]*)"\)', (ROOT / "src" / "resources" / "Kestrel.idl").read_text(encoding="utf-8"))
        named = set(re.findall(r"\b20\d\d\b", " ".join(helps)))
        self.assertGreater(len(named), 15)
        self.assertEqual(named - table, set())


class ExamplesTest(unittest.TestCase):
    def setUp(self):
        done = subprocess.run([LAUNCHER, str(BUILD / "kscript.exe"), "--check-heap", "--answer", "yes", "examples.vbs"],
                              cwd=FOLDER, stdin=subprocess.DEVNULL, capture_output=True, encoding="utf-8", timeout=120,
                              check=False)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.lines = done.stdout.replace("\r", "").rstrip("\n").split("\n")
        self.script = (FOLDER / "examples.vbs").read_text(encoding="utf-8")

    def test_print_what_their_comments_say(self):
        printed = [line for line in self.lines if not line.startswith(("heard ", "answered ", "closed: ", "closed dialog: "))]
        expected = expected_lines(self.script)
        self.assertGreater(len(expected), 50)
        before, after = expected[:expected.index(None)], expected[expected.index(None) + 1:]
        self.assertEqual(printed[:len(before)], before)
        self.assertEqual(printed[-len(after):], after)

    def test_every_event_comes_that_can_come_here(self):
        heard = {line.removeprefix("heard ") for line in self.lines if line.startswith("heard ")}
        handled = set(re.findall(r"^Sub (\w+_\w+)\(", self.script, re.MULTILINE))
        self.assertEqual(handled - heard, SILENT)


if __name__ == "__main__":
    unittest.main(verbosity=2)
