"""The issuing host end to end: what it prints is compared with codes worked out here, from the same data."""
import collections
import csv
import json
import pathlib
import shutil
import tempfile
import unittest

from windows_program import make_samples, path, run

DATA = pathlib.Path("/usr/share/iso-codes/json")


def data(name):
    return json.loads((DATA / f"iso_{name}.json").read_text(encoding="utf-8"))[name]


def records(file):
    with open(file, encoding="utf-8", newline="") as source:
        return list(csv.reader(source))[1:]


def codes(text):
    return [line.split("\t")[0] for line in text.splitlines()]


class IssuerTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = pathlib.Path(tempfile.mkdtemp())
        make_samples(cls.folder)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.folder)

    def issue(self, name, *arguments):
        return run("kissue", "issue", path(self.folder / f"{name}.rule"), path(self.folder / f"{name}.csv"), *arguments)

    def write(self, name, content):
        (self.folder / name).write_bytes(content)
        return path(self.folder / name)

    def test_sites_get_the_codes_of_their_subdivision_and_a_number_each(self):
        result = self.issue("sites")
        expected, numbers = [], collections.Counter()
        for subdivision in data("3166-2"):
            country, own = subdivision["code"].split("-", 1)
            place = subdivision.get("parent", own).split("-")[-1].rjust(3, "0")
            numbers[country, place] += 1
            expected.append(f"{country}-{place}-{numbers[country, place]:03}")
        self.assertEqual(codes(result.stdout), expected)
        self.assertGreater(len(expected), 5000)
        self.assertEqual(result.returncode, 3)

    def test_former_countries_are_refused_with_line_and_message(self):
        lines = self.issue("sites").stderr.splitlines()
        valid, former = len(data("3166-2")), len(data("3166-3"))
        refused = [f"line {line}: No related relation defined." for line in range(valid + 2, valid + former + 2)]
        self.assertEqual(lines, refused + [f"{valid} codes issued, {former} records refused"])

    def test_documents_are_numbered_within_their_year(self):
        result = self.issue("documents")
        expected, numbers = [], collections.Counter()
        for year, _ in records(self.folder / "documents.csv"):
            numbers[year] += 1
            expected.append(f"WD-{year}-{numbers[year]:06}")
        self.assertEqual(codes(result.stdout), expected)
        self.assertEqual((result.returncode, result.stderr), (0, "31 codes issued, 0 records refused\n"))

    def test_items_are_numbered_within_their_country(self):
        result = self.issue("items")
        three = {country["alpha_2"]: country["alpha_3"] for country in data("3166-1")}
        expected, numbers = [], collections.Counter()
        for subdivision in data("3166-2"):
            country = three[subdivision["code"][:2]]
            numbers[country] += 1
            expected.append(f"{country}A{numbers[country]:04}")
        self.assertEqual(codes(result.stdout), expected)
        self.assertEqual(result.returncode, 0)

    def test_a_record_stands_beside_its_code(self):
        first = self.issue("documents").stdout.splitlines()[0]
        self.assertEqual(first.split("\t"), ["WD-1975-000001"] + records(self.folder / "documents.csv")[0])

    def test_explain_gives_back_what_the_code_was_made_of(self):
        for line in self.issue("sites").stdout.splitlines()[::1000]:
            code, country, subdivision, _ = line.split("\t")
            result = run("kissue", "explain", path(self.folder / "sites.rule"), code)
            parts = code.split("-")
            self.assertEqual(result.stdout.splitlines(), [
                f"Country\t{country}", f"Subdivision\t{subdivision}", f"[Country]\t{parts[0]}", "[Dash]\t-",
                f"[Subdivision]\t{parts[1]}", "[Dash2]\t-", f"[Number]\t{parts[2]}"])

    def test_explain_refuses_other_codes_with_the_components_message(self):
        for code, message in (("FR-ARA", "Length of code ilegal!"), ("FR_ARA-001", "Fixed band value error. Code can't "
                              "be disassembled."), ("XX-ARA-001", "No related relation defined.")):
            result = run("kissue", "explain", path(self.folder / "sites.rule"), code)
            self.assertEqual((result.returncode, result.stdout, result.stderr), (1, "", f"kissue: {message}\n"))

    def test_a_file_of_codes_is_gone_on_with(self):
        rule, file = path(self.folder / "documents.rule"), self.folder / "documents.codes"
        for first in (1, 32):
            issued = codes(self.issue("documents", "--codes", path(file)).stdout)
            self.assertEqual(len(issued), 31)
        self.assertEqual(issued[0], "WD-1975-000002")
        self.assertEqual(len(set(file.read_text().split())), 62)
        for _ in range(2):
            preview = run("kissue", "preview", rule, "--codes", path(file), "Year=1977")
            self.assertEqual(preview.stdout, "WD-1977-000007\n")

    def test_bad_rows_do_not_stop_the_others(self):
        rows = self.write("rows.csv", "Year,Subject\nnever,a\n2024\n2024,b\n".encode())
        result = run("kissue", "issue", path(self.folder / "documents.rule"), rows)
        self.assertEqual(result.stdout, "WD-2024-000001\t2024\tb\n")
        self.assertEqual(result.stderr.splitlines(), [
            "line 2: Incorrect length of band value.; Year", "line 3: 1 fields where the first line names 2",
            "1 codes issued, 2 records refused"])
        self.assertEqual(result.returncode, 3)

    def test_bad_files_end_with_one_line(self):
        rule, records_file = path(self.folder / "documents.rule"), path(self.folder / "documents.csv")
        for arguments, cause in (
                (("issue", path(self.folder / "none"), records_file), "cannot open"),
                (("issue", rule, path(self.folder / "none")), "cannot open"),
                (("issue", self.write("empty.rule", b"#####"), records_file), "defines no band"),
                (("issue", rule, self.write("latin.csv", b"Year\nZ\xfcrich\n")), "is not UTF-8 (line 2)"),
                (("issue", rule, self.write("quote.csv", b'Year\n"x\n')), "line 2: a quote is opened"),
                (("issue", rule, self.write("other.csv", b"Name\nx\n")), "no column is named like a field"),
                (("preview", rule, "Nothing=1"), 'has no field or macro "Nothing"; it has Year')):
            with self.subTest(cause=cause, arguments=arguments):
                result = run("kissue", *arguments)
                self.assertEqual((result.returncode, result.stdout), (1, ""))
                self.assertEqual(len(result.stderr.splitlines()), 1)
                self.assertIn(cause, result.stderr)


if __name__ == "__main__":
    unittest.main()
