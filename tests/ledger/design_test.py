"""kledger design: the designer worked with the keyboard of the display, and what becomes of the stored rule."""
import pathlib
import shutil
import subprocess
import tempfile
import time
import unittest

import rules
from databases import SqliteFile
from windows_program import command, path, run

QUESTION = "kledger.exe"  # the title of the rule's questions is the program's own name
YEAR_TO_THE_END = ("ctrl+Right", "ctrl+Right", "ctrl+Right")  # the last one changes nothing, so it can be pressed again
LONGEST = 30  # seconds until a window must have come or gone


def xdotool(*arguments):
    return subprocess.run(["xdotool", *arguments], check=False, capture_output=True, text=True).stdout.split()


class DesignTest(unittest.TestCase):
    def setUp(self):
        self.database = SqliteFile()
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.process = self.title = None
        self.import_rule(rules.numbered())

    def tearDown(self):
        if self.process is not None:
            self.process.kill()
            self.process.communicate()
        self.database.close()
        shutil.rmtree(self.folder)

    def kledger(self, *arguments):
        return run("kledger", "--database", self.database.name, *arguments)

    def import_rule(self, definition):
        (self.folder / "r.rule").write_bytes(definition.encode())
        result = self.kledger("rule", "import", path(self.folder / "r.rule"))
        self.assertEqual(result.returncode, 0, result.stderr)

    def issue(self):
        result = self.kledger("issue", "--field", "Year=2024")
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout.split("\t")[0]

    def definition(self):
        return self.database.query("SELECT text FROM kestrel_definitions ORDER BY number DESC")[0][0]

    def wait_for(self, condition, what):
        end = time.monotonic() + LONGEST
        while not condition():
            self.assertLess(time.monotonic(), end, what)
            time.sleep(0.05)

    @staticmethod
    def windows(title):
        return xdotool("search", "--onlyvisible", "--name", f"^{title}$")

    def open_designer(self, *arguments, title="Rule r"):
        self.title = title
        words = ["--database", self.database.name, *(arguments or ("design",))]
        self.process = subprocess.Popen(command("kledger", words, display=True), stdin=subprocess.DEVNULL,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")
        self.comes_to_front(self.title)

    def comes_to_front(self, title):
        """There is no window manager that would give the keyboard to a new window."""
        self.wait_for(lambda: self.windows(title), f"the window {title} does not come")
        xdotool("windowfocus", "--sync", self.windows(title)[-1])

    def press(self, keys, until):
        """Again from time to time: a window that has only just come to the front misses keys."""
        def seen():
            if not until():
                xdotool("windowfocus", self.windows(self.title)[-1])
                xdotool("key", "--delay", "100", *keys)
                time.sleep(0.5)
            return until()
        self.wait_for(seen, f"{keys} do nothing")

    def asks(self):
        return self.windows(QUESTION)

    def is_closed(self):
        return not self.windows(self.title)

    def answer(self, key):
        """To the question whether to save."""
        self.comes_to_front(QUESTION)
        xdotool("key", key)
        self.wait_for(lambda: not self.asks(), "the question stays")

    def closed(self):
        """The exit code and what was printed, once the designer is closed."""
        out, error = self.process.communicate(timeout=LONGEST)
        code, self.process = self.process.returncode, None
        return code, out, error

    def test_what_is_saved_is_stored_and_issues_codes(self):
        self.open_designer()
        self.press((*YEAR_TO_THE_END, "alt+s"), until=self.asks)
        self.answer("y")
        self.wait_for(lambda: self.definition() != rules.numbered(), "nothing was stored")
        self.press(("alt+c",), until=self.is_closed)
        self.assertEqual(self.closed(), (0, "saved\n", ""))
        self.assertEqual(self.issue(), "-0000012024")

    def test_a_change_is_asked_for_when_the_designer_closes(self):
        self.open_designer()
        self.press((*YEAR_TO_THE_END, "alt+c"), until=self.asks)
        self.answer("y")
        self.assertEqual(self.closed(), (0, "saved\n", ""))
        self.assertEqual(self.issue(), "-0000012024")

    def test_a_rule_without_a_pattern_begins_in_the_designer(self):
        self.open_designer("rule", "new", "fresh", "--field", "Year", title="Rule fresh")
        self.press(("alt+c",), until=self.is_closed)
        self.assertEqual(self.closed(), (0, "not changed\n", ""))
        self.assertNotIn("fresh", self.kledger("rule", "list").stdout)

    def test_the_day_that_weeks_begin_on_comes_back(self):
        result = self.kledger("rule", "set", "r", "--week-begins", "sunday")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.open_designer()
        self.press((*YEAR_TO_THE_END, "alt+c"), until=self.asks)
        self.answer("y")
        self.assertEqual(self.closed(), (0, "saved\n", ""))
        self.assertIn("\r11\r1\r", self.definition())
        self.assertIn("--week-begins sunday", self.kledger("rule", "show", "r").stdout)

    def test_what_is_not_saved_leaves_the_stored_rule(self):
        self.open_designer()
        self.press((*YEAR_TO_THE_END, "alt+c"), until=self.asks)
        self.answer("n")
        self.assertEqual(self.closed(), (0, "not changed\n", ""))
        self.assertEqual(self.definition(), rules.numbered())

    def test_nothing_is_asked_when_nothing_was_changed(self):
        self.open_designer()
        self.press(("alt+c",), until=lambda: self.asks() or self.is_closed())
        self.assertEqual(self.closed(), (0, "not changed\n", ""))
        self.assertEqual(self.definition(), rules.numbered())

    def test_a_rule_that_was_changed_meanwhile_is_not_overwritten(self):
        self.open_designer()
        self.import_rule(rules.numbered(dash="/"))
        self.press((*YEAR_TO_THE_END, "alt+s"), until=self.asks)
        self.answer("y")
        self.press(("alt+c",), until=self.asks)
        self.answer("n")
        code, out, error = self.closed()
        self.assertEqual((code, out), (1, "not changed\n"))
        self.assertEqual(error, 'not saved: rule "r" was changed meanwhile; start again\n')
        self.assertEqual(self.definition(), rules.numbered(dash="/"))


if __name__ == "__main__":
    unittest.main()
