"""The documents: every link leads somewhere, and the first page names them all."""
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
            for source in [*(ROOT / "src" / folder).rglob("*.h"), *(ROOT / "src" / folder).rglob("*.cpp")]:
                text = source.read_text(encoding="utf-8")
                used = set(re.findall(r'^#include "(\w+)/', text, re.MULTILINE)) & HOUSE.keys()
                self.assertEqual(used - below - {folder}, set(), source)
                if folder in PURE:
                    self.assertIsNone(SYSTEM.search(text), source)


if __name__ == "__main__":
    unittest.main(verbosity=2)
