"""The documents: every link and path leads somewhere, the first page names them all, and what they list is what there is."""
import re
import unittest

from windows_program import ROOT

DOCUMENTS = [ROOT / "README.md", ROOT / "CHANGELOG.md", ROOT / "CONTRIBUTING.md", *sorted((ROOT / "docs").glob("*.md"))]

# Which folders of src may include which, beside their own: the house of docs/architecture.md.
HOUSE = {
    "common": set(),
    "lists": {"common"},
    "relations": {"common"},
    "bands": {"common", "lists", "relations"},
    "engine": {"common", "lists", "relations", "bands"},
    "platform": {"common"},
    "dialogs": {"common", "lists", "relations", "bands", "engine", "platform", "resources"},
    "automation": {"common", "lists", "relations", "bands", "engine", "platform", "dialogs"},
}
# The programs know nothing of src: the component comes by its registered name.
PROGRAMS = {
    "hosts/common": set(),
    "hosts/script": {"hosts/common"},
    "ledger/db": {"hosts/common"},
    "ledger/core": {"hosts/common", "ledger/db"},
    "ledger/cli": {"hosts/common", "ledger/db", "ledger/core"},
}
PURE = ("common", "lists", "relations", "bands", "engine")
SYSTEM = re.compile(r"#include <(windows|ole|oaidl|ocidl|comm|win)", re.IGNORECASE)


def text_of(document):
    """Without its blocks of code."""
    return re.sub(r"^```.*?^```$", "", document.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)


def anchors(document):
    """Of the headings, as the usual viewers name them."""
    found = {}
    for heading in re.findall(r"^#+ (.+)$", text_of(document), re.MULTILINE):
        plain = re.sub(r"[^\w\- ]", "", re.sub(r"\[(.*?)\]\(.*?\)", r"\1", heading).lower()).replace(" ", "-")
        found[plain] = found.get(plain, -1) + 1
    return {name if number == 0 else f"{name}-{number}" for name, last in found.items() for number in range(last + 1)}


# Where a path in a document may begin: it says as little of it as a reader needs.
PLACES = [ROOT, ROOT / "src", ROOT / "ledger", ROOT / "hosts", ROOT / "hosts" / "samples"]
FOLDERS = ("src", "hosts", "ledger", "tests", "tools", "docs", "packaging", "cmake")
OF_OTHERS = {"sqlite3.c", "sqlite3.h", "m/d/yyyy"}


def paths_in(document):
    """What stands in backticks and looks like a file or folder, and what begins with a folder of the project."""
    text = text_of(document)
    quoted = re.findall(r"`([A-Za-z]\w*(?:/\w[\w.-]*)+/?|\w+\.(?:h|cpp|py|sh|vbs|inc|idl))`", text)
    return {*quoted, *re.findall(rf"(?<![\w/])((?:{'|'.join(FOLDERS)})/[\w./-]*\w)(?![\w*-]|\.\w)", text)} - OF_OTHERS


def is_there(name):
    stem = name.rstrip("/")
    if any((place / stem).exists() or list(place.glob(stem + ".*")) for place in PLACES):
        return True
    return "/" not in stem and any(list((ROOT / folder).rglob(stem)) for folder in FOLDERS)


def words(sentence):
    """In their singular, without what is quoted or stands in brackets."""
    return [word.rstrip("s") for word in re.findall(r"[a-z]+", re.sub(r"'[^']*'|\([^)]*\)", "", sentence).lower())]


def goes_along(short, sentence):
    """Whether the words of the short one stand in the sentence in their order."""
    left = iter(words(sentence))
    return len(words(short)) > 2 and all(word in left for word in words(short))


def first_column(section):
    return re.findall(r"^\| (.+?) \|", section, re.MULTILINE)[1:]


class DocumentsTest(unittest.TestCase):
    def test_every_link_leads_somewhere(self):
        for document in DOCUMENTS:
            for link in re.findall(r"\]\(([^)\s]+)\)", text_of(document)):
                if link.startswith("https://"):
                    continue
                place, _, anchor = link.partition("#")
                target = (document.parent / place).resolve() if place else document
                with self.subTest(document=document.name, link=link):
                    self.assertTrue(target.exists())
                    if anchor:
                        self.assertIn(anchor, anchors(target))

    def test_every_path_leads_somewhere(self):
        found = {(document.name, name) for document in DOCUMENTS for name in paths_in(document)}
        self.assertGreater(len(found), 40)
        self.assertEqual([path for path in sorted(found) if not is_there(path[1])], [])

    def test_every_sentence_of_check_is_on_its_page(self):
        strings = (ROOT / "src" / "resources" / "strings.inc").read_text(encoding="utf-8")
        sentences = re.findall(r'^STRING\(21\d\d, "(.*?)", "', strings, re.MULTILINE)
        page = (ROOT / "docs" / "check.md").read_text(encoding="utf-8")
        told = [part for section in page.split("\n## ") for cell in first_column(section)
                for part in re.sub(r"'[^']*'", "", cell).split(";")]
        self.assertGreaterEqual(len(sentences), 50)
        for sentence in sentences:
            self.assertTrue(any(goes_along(part, sentence) for part in told), sentence)
        for part in told:
            self.assertTrue(any(goes_along(part, sentence) for sentence in sentences), part)

    def test_every_finding_of_the_audit_is_in_the_table(self):
        kinds = re.findall(r'KindOfFinding \w+ = \{\s*L"(\w+)".*?(true|false)\};',
                           (ROOT / "ledger" / "core" / "Finding.cpp").read_text(encoding="utf-8"), re.DOTALL)
        section = (ROOT / "docs" / "operating.md").read_text(encoding="utf-8").split("## Findings of the audit")[1].split("\n## ")[0]
        self.assertEqual(first_column(section), [kind for kind, _ in kinds])
        repaired = re.findall(r"^\| (\w+) \|.*--repair` \|$", section, re.MULTILINE)
        self.assertEqual(repaired, [kind for kind, can in kinds if can == "true"])

    def test_every_exit_code_is_told(self):
        codes = re.findall(r"Exit\w+ = (\d)", (ROOT / "ledger" / "cli" / "ExitCode.h").read_text(encoding="utf-8"))
        section = (ROOT / "docs" / "operating.md").read_text(encoding="utf-8").split("## Exit codes")[1]
        self.assertEqual(re.findall(r"(?:^|, ?)\s*(\d) ", section), codes)

    def test_the_first_page_names_every_document(self):
        first = text_of(ROOT / "README.md")
        for document in DOCUMENTS[1:]:
            self.assertIn(f"({document.relative_to(ROOT).as_posix()})", first)

    def test_the_first_script_is_the_sample(self):
        [script] = re.findall(r"^```vbs\n(.*?)^```$", (ROOT / "README.md").read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)
        self.assertEqual(script, (ROOT / "hosts" / "samples" / "first.vbs").read_text(encoding="utf-8"))

    def test_the_databases_are_those_of_the_program(self):
        first = (ROOT / "README.md").read_text(encoding="utf-8")
        options = (ROOT / "ledger" / "cli" / "Options.h").read_text(encoding="utf-8")
        options += (ROOT / "ledger" / "cli" / "Options.cpp").read_text(encoding="utf-8")
        said = re.search(r"`(\w+)` in the environment, or else in `([\w.]+)`", first).groups()
        self.assertEqual(said, (re.search(r'envname\("(\w+)"\)', options).group(1),
                                re.search(r'database = L"([\w.]+)"', options).group(1)))
        operating = (ROOT / "docs" / "operating.md").read_text(encoding="utf-8")
        connections = re.findall(r'"(Driver=[^"]+)"', first)
        self.assertEqual(len(connections), 2)
        for connection in connections:
            self.assertIn(f"`{connection}`", operating)

    def test_the_version_is_the_projects(self):
        lists = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
        version = re.search(r"project\(Kestrel VERSION ([0-9.]+) ", lists).group(1)
        packages = set(re.findall(r"kestrel-([0-9]+\.[0-9]+\.[0-9]+)", text_of(ROOT / "README.md")))
        self.assertEqual(packages, {version})

    def test_the_house_is_as_the_architecture_draws_it(self):
        for folder, below in HOUSE.items():
            for source, text in self.sources(ROOT / "src" / folder):
                used = set(re.findall(r'^#include "(\w+)/', text, re.MULTILINE)) & HOUSE.keys()
                self.assertEqual(used - below - {folder}, set(), source)
                if folder in PURE:
                    self.assertIsNone(SYSTEM.search(text), source)

    def test_the_programs_know_the_component_by_its_name_alone(self):
        for folder, below in PROGRAMS.items():
            for source, text in self.sources(ROOT / folder):
                used = set(re.findall(r'^#include "(\w+/\w+)', text, re.MULTILINE))
                self.assertEqual(used - below - {folder}, set(), source)

    def sources(self, folder):
        found = [(source, source.read_text(encoding="utf-8")) for kind in ("h", "cpp") for source in folder.rglob("*." + kind)]
        self.assertGreater(len(found), 2, folder)
        return found


if __name__ == "__main__":
    unittest.main(verbosity=2)
