"""kledger report: what it tells, and its page in a real browser, in light and dark, wide and narrow."""
import datetime
import os
import pathlib
import re
import unittest

import rules
from browser import Browser
from databases import OnPostgres, OnSqlite
from ledger_case import LedgerCase
from windows_program import path

WIDE, NARROW = 1280, 320


class Filled:
    def filled(self):
        """A series with gaps and void codes, over half a year."""
        self.import_rule(rules.numbered(digits=3), name="invoices")
        self.done("adopt", self.file("old.csv", "Code\n" + "".join(f"2023-{number:03}\n" for number in range(3, 103) if number % 25)))
        for code in ("2023-040", "2023-041", "2023-090"):
            self.done("void", code, "--reason", "a test")
        self.done("issue", "-n", "3", "-f", "Year=2024")


class ReportTests(Filled):
    def report(self):
        lines = self.objects("report")
        return {line["series"]: line for line in lines if "series" in line}, lines

    def test_the_text_tells_of_each_series(self):
        self.filled()
        series, lines = self.report()
        old, new = series["2023-???"], series["2024-???"]
        self.assertEqual([old[name] for name in ("codes", "first", "last", "void", "missing", "left")],
                         [96, 3, 102, 3, 6, 897])
        self.assertNotIn("fullOn", old, "adopted codes were not issued here")
        self.assertEqual((new["codes"], new["void"], new["missing"], new["perDay"]), (3, 0, 0, 3.0))
        self.assertAlmostEqual(old["full"], 102 / 999)
        days = self.database_days(new["fullOn"])
        self.assertIn(days, (331, 332, 333), "996 numbers at 3 a day")
        self.assertEqual([line["finding"] for line in lines if "finding" in line], ["gap"] * 5)
        text = self.done("report")
        self.assertEqual(text[-1], "99 codes, 5 findings")
        self.assertIn("gap: 2023-??? misses 1 to 2 in band Number", text)
        row = next(line for line in text if "2023-???" in line and "invoices" in line)
        self.assertRegex(row, r"96 +3 +102 +3 +6 +10% +at rest")

    def database_days(self, date):
        """From the day of the newest code to that date."""
        newest = max(row[0] for row in self.database.query("SELECT MAX(stored_at) FROM kestrel_codes"))
        return (datetime.date.fromisoformat(date) - datetime.date.fromisoformat(newest[:10])).days

    def test_the_rate_is_that_of_the_last_thirty_days(self):
        self.import_rule(rules.numbered())
        self.done("issue", "-n", "60", "-f", "Year=2024")
        self.database.query("UPDATE kestrel_codes SET stored_at = '2001-01-01T00:00:00Z' WHERE code <= '2024-000030'")
        series, _ = self.report()
        self.assertEqual(series["2024-??????"]["perDay"], 1.0)
        self.database.query("UPDATE kestrel_codes SET stored_at = '2001-01-01T00:00:00Z'")
        series, _ = self.report()
        self.assertEqual(series["2024-??????"]["perDay"], 0.0)

    def test_a_page_is_whole_or_not_there(self):
        self.filled()
        self.refused("report", "--html", path(self.folder / "none" / "page.html"))
        self.refused("report", "--rule", "none", "--html", path(self.folder / "page.html"))
        self.assertEqual(list(self.folder.glob("page*")), [])


class Sqlite(OnSqlite, ReportTests, LedgerCase):
    pass


class Postgres(OnPostgres, ReportTests, LedgerCase):
    pass


class Page(OnSqlite, Filled, LedgerCase):
    """In the browser. KESTREL_PICTURES names a folder for pictures of what it shows."""

    @classmethod
    def setUpClass(cls):
        cls.browser = Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()

    def page(self):
        file = self.folder / "page.html"
        self.done("report", "--html", path(file))
        return file

    def shown(self, file, name):
        """The page's texts, after looking at it in each width and scheme."""
        colours = set()
        for width in (WIDE, NARROW):
            for scheme in ("light", "dark"):
                self.browser.show(file, width, scheme)
                with self.subTest(width=width, scheme=scheme):
                    self.assertEqual(self.browser.console, [])
                    self.assertEqual(self.browser.requests(), [file.as_uri()])
                    self.assertEqual(self.browser.value("innerWidth"), width)
                    self.assertLessEqual(self.browser.value("document.documentElement.scrollWidth"), width)
                    self.assertEqual(self.browser.value(
                        "[...document.querySelectorAll('body *')].filter(one => one.getBoundingClientRect().right > "
                        "innerWidth + 0.5 && !one.closest('svg')).length"), 0, "nothing is cut off")
                    self.assertGreaterEqual(self.contrast(), 4.5)
                    colours.add(self.browser.value("getComputedStyle(document.body).backgroundColor"))
                if "KESTREL_PICTURES" in os.environ:
                    folder = pathlib.Path(os.environ["KESTREL_PICTURES"])
                    folder.mkdir(exist_ok=True)
                    self.browser.picture(folder / f"{name}-{width}-{scheme}.png")
        self.assertEqual(len(colours), 2, "light and dark differ")
        return self.browser.value("document.body.innerText")

    def contrast(self):
        """The least of any text's against what is behind it, as people who see little need it."""
        colours = self.browser.value("""[...document.querySelectorAll('h1, h2, h3, p, li, dt, dd, .axis span')].map(one => {
            let behind = one;
            while (getComputedStyle(behind).backgroundColor === 'rgba(0, 0, 0, 0)') behind = behind.parentElement;
            return [getComputedStyle(one).color, getComputedStyle(behind).backgroundColor]})""")

        def light(colour):
            parts = [int(part) / 255 for part in re.findall(r"\d+", colour)[:3]]
            red, green, blue = (part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4 for part in parts)
            return 0.2126 * red + 0.7152 * green + 0.0722 * blue

        least = 21
        for pair in colours:
            low, high = sorted(map(light, pair))
            least = min(least, (high + 0.05) / (low + 0.05))
        return least

    def test_the_page_shows_series_gaps_voids_and_findings(self):
        self.filled()
        for number in range(3, 103):  # as if it had taken half a year
            self.database.query(f"UPDATE kestrel_codes SET stored_at = '2023-{1 + number // 20:02}-{1 + number % 20:02}T08:00:00Z' "
                                f"WHERE code = '2023-{number:03}'")
        text = self.shown(self.page(), "findings")
        for expected in ("Rule invoices", "2023-???", "2024-???", "10% full, 897 numbers left", "at 3 a day full on",
                         "gap, rule invoices (5)", "2023-??? misses 25 in band Number", "Missing: 1 to 2, 25, 50, 75, 100",
                         "changed, rule invoices"):
            self.assertIn(expected, text)
        value = self.browser.value
        self.assertEqual(value("document.querySelectorAll('article').length"), 2)
        self.assertEqual(value("document.querySelectorAll('article:first-of-type svg .gap').length"), 5)
        self.assertEqual(value("[...document.querySelectorAll('svg .void title')].map(one => one.textContent)"),
                         ["1 void code from number 40, 2023-03-01", "1 void code from number 41, 2023-03-02",
                          "1 void code from number 90, 2023-05-11"])
        self.assertGreater(value("document.querySelector('svg .line').getTotalLength()"), 600)
        self.assertLess(value("document.querySelector('.findings').getBoundingClientRect().top - "
                              "document.querySelector('main').getBoundingClientRect().top"), 0, "findings come first")

    def test_names_and_values_are_escaped(self):
        name = "<script>alert('x')</script>&\"" + "w" * 80
        self.import_rule(rules.lettered(), "--name", name)
        self.done("issue", self.file("a.csv", "Text\n<b>\n\"&\"\"'\"\n"))
        text = self.shown(self.page(), "escaped")
        for expected in (f"Rule {name}", "<b>???", "&\"'???"):
            self.assertIn(expected, text)
        self.assertEqual(self.browser.value("document.querySelectorAll('script, b').length"), 0)

    def test_an_empty_ledger_and_many_series(self):
        self.import_rule(rules.numbered())
        self.assertIn("Every row and every chain is as it should be.", self.shown(self.page(), "empty"))
        self.done("issue", self.file("years.csv", "Year\n" + "".join(f"{year}\n" for year in range(1900, 2010))), "--quiet")
        text = self.shown(self.page(), "many")
        self.assertIn("110 codes in 110 series", text)
        self.assertEqual(self.browser.value("document.querySelectorAll('article').length"), 100)
        self.assertIn("2009-??????: 1 code, last 1, less than 0.1% full", text)


if __name__ == "__main__":
    unittest.main()
