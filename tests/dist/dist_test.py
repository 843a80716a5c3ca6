"""./dist in a tree of its own: what it refuses, and that the same commit gives the same bytes in another folder.

KESTREL_DIST names the folder of the distribution that this tree gave.
"""
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest
import zipfile

from windows_program import ROOT

DIST = pathlib.Path(os.environ["KESTREL_DIST"])
NEEDED = ("bash", "git", "python3", "cmake", "ninja", "sed", "grep", "head", "dirname", "nproc", "env", "msibuild", "msiinfo")


def git(folder, *arguments):
    identity = ("-c", "user.name=tester", "-c", "user.email=tester@localhost")
    return subprocess.run(["git", "-C", str(folder), *identity, *arguments], check=True, capture_output=True, text=True).stdout


class Tree(unittest.TestCase):
    """A repository in another folder."""

    def setUp(self):
        self.work = pathlib.Path(tempfile.mkdtemp(prefix="kestrel dist "))
        self.addCleanup(shutil.rmtree, self.work)
        self.tree = self.work / "another folder"
        self.make()

    def dist(self, *arguments, **environment):
        return subprocess.run([str(self.tree / "dist"), *arguments], env={**os.environ, **environment}, check=False,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True)


class RefusalTest(Tree):
    def make(self):
        """Of the files alone: what is tested may have come without its history."""
        def left_out(folder, names):
            return {"build", ".git"} & set(names) if folder == str(ROOT) else set()
        shutil.copytree(ROOT, self.tree, ignore=left_out, symlinks=True)
        git(self.tree, "init", "--quiet")
        git(self.tree, "add", "--all")
        git(self.tree, "commit", "--quiet", "--message", "All")

    def expect_refused(self, done, words):
        self.assertNotEqual(done.returncode, 0)
        self.assertEqual(done.stdout, "")
        self.assertEqual(len(done.stderr.strip().split("\n")), 1, done.stderr)
        self.assertTrue(done.stderr.startswith("error: "), done.stderr)
        self.assertIn(words, done.stderr)
        self.assertFalse((self.tree / "build" / "dist").exists())

    def test_without_a_tag(self):
        self.expect_refused(self.dist(), "is not tagged v")

    def test_with_the_tag_of_another_version(self):
        git(self.tree, "tag", "v0.0.1")
        self.expect_refused(self.dist(), "is not tagged v")

    def test_of_a_tree_with_changes(self):
        (self.tree / "README.md").write_text("changed")
        self.expect_refused(self.dist("--untagged"), "the tree holds changes: README.md")

    def test_of_a_tree_with_a_new_file(self):
        (self.tree / "src" / "new.cpp").write_text("")
        self.expect_refused(self.dist("--untagged"), "the tree holds changes: src/new.cpp")

    def test_without_its_packages(self):
        tools = self.work / "tools"
        tools.mkdir()
        for tool in NEEDED:
            (tools / tool).symlink_to(shutil.which(tool))
        self.expect_refused(self.dist("--untagged", PATH=str(tools)), "wixl is not installed (tools/packages.sh --all installs it)")

    def test_with_a_version_that_the_changelog_does_not_know(self):
        lists = self.tree / "CMakeLists.txt"
        lists.write_text(lists.read_text().replace("project(Kestrel VERSION ", "project(Kestrel VERSION 9"))
        git(self.tree, "commit", "--quiet", "--all", "--message", "Another version")
        self.expect_refused(self.dist("--untagged"), "CHANGELOG.md has no section for 9")

    def test_called_wrongly(self):
        self.expect_refused(self.dist("--help-me"), "usage: ./dist")


class ContentTest(unittest.TestCase):
    def test_a_damaged_archive_is_told_by_the_checksums(self):
        with tempfile.TemporaryDirectory() as work:
            for file in DIST.iterdir():
                shutil.copy(file, work)
            check = ["sha256sum", "--check", "--quiet", "SHA256SUMS"]
            self.assertEqual(subprocess.run(check, cwd=work, capture_output=True, check=False).returncode, 0)
            for file in sorted(pathlib.Path(work).glob("kestrel-*")):
                whole = file.read_bytes()
                file.write_bytes(whole[:1000] + bytes([whole[1000] ^ 1]) + whole[1001:])
                done = subprocess.run(check, cwd=work, capture_output=True, text=True, check=False)
                self.assertIn(f"{file.name}: FAILED", done.stdout)
                file.write_bytes(whole)

    def test_every_package_is_there_and_in_the_checksums(self):
        names = sorted(file.name for file in DIST.iterdir())
        version = next(name for name in names if name.endswith("-sdk.zip")).split("-")[1]
        packages = [f"kestrel-{version}{rest}" for rest in ("-sdk.zip", "-symbols.zip", "-x64.msi", "-x86.msi", ".zip")]
        self.assertEqual(names, ["SHA256SUMS", *packages])
        lines = (DIST / "SHA256SUMS").read_text().splitlines()
        self.assertEqual([line.split("  ")[1] for line in lines], packages)

    def test_the_archives_hold_what_they_are_for(self):
        for archive, wanted in (
            ("kestrel-*[0-9].zip", {f"{preset}/{name}" for preset in ("x86", "x64") for name in (
                "Kestrel.dll", "Kestrel.manifest", "Kestrel.tlb", "kledger.exe", "kledger.exe.manifest", "portable.exe",
                "portable.exe.manifest")}
             | {"README.md", "CHANGELOG.md", "docs/hosting.md", "samples/documents.vbs"}),
            ("*-symbols.zip", {f"{preset}/{name}.debug" for preset in ("x86", "x64") for name in ("Kestrel.dll", "kledger.exe")}),
            ("*-sdk.zip", {"include/Kestrel.h", "include/KestrelTypeLib.h", "x86/Kestrel.tlb", "x64/Kestrel.tlb", "Kestrel.idl"}),
        ):
            [path] = DIST.glob(archive)
            with zipfile.ZipFile(path) as file:
                names = file.namelist()
            self.assertEqual(names, sorted(names))
            self.assertEqual(wanted - {name.partition("/")[2] for name in names}, set())

    def test_no_path_of_the_machine_is_in_any_file(self):
        for archive in DIST.glob("*.zip"):
            with zipfile.ZipFile(archive) as file:
                found = [name for name in file.namelist() if str(ROOT).encode() in file.read(name)]
                self.assertEqual(found, [], archive.name)
        found = [installer.name for installer in DIST.glob("*.msi") if str(ROOT).encode() in installer.read_bytes()]
        self.assertEqual(found, [])


class CacheTest(unittest.TestCase):
    """What a machine without a compiler cache makes; the whole of it is compared by SameBytesTest."""

    OBJECTS = (
        "hosts/CMakeFiles/portable.dir/samples/portable/portable.cpp.obj",
        "src/CMakeFiles/Kestrel.dir/generated/Kestrel.cpp.obj",  # a source that the build made, with headers that it made
        "ledger/CMakeFiles/kledger.dir/cli/Main.cpp.obj",
        "hosts/CMakeFiles/kestrel_hosts.dir/Unity/unity_0_cxx.cxx.obj",  # several sources, named by their places
    )

    def test_objects_are_the_same_with_and_without_a_compiler_cache(self):
        build = ROOT / "build" / "x86"
        with tempfile.TemporaryDirectory() as work:
            made = pathlib.Path(work, "made.obj")
            for name in self.OBJECTS:
                commands = subprocess.run(["ninja", "-t", "commands", name], cwd=build, check=True, capture_output=True, text=True)
                line = commands.stdout.strip().split("\n")[-1]
                self.assertIn("ccache", line)
                self.assertIn(f" -o {name} ", line)
                subprocess.run(line.replace(f" -o {name} ", f" -o '{made}' "), cwd=build,
                               env={**os.environ, "CCACHE_DISABLE": "1"}, shell=True, check=True)
                self.assertTrue(made.read_bytes() == (build / name).read_bytes(), name)


class SameBytesTest(Tree):
    def make(self):
        git(self.work, "clone", "--quiet", "--no-local", str(ROOT), str(self.tree))

    def test_another_folder_gives_the_same_bytes(self):
        shutil.copytree(ROOT / "build" / "sqlite", self.tree / "build" / "sqlite")
        done = self.dist("--untagged", CCACHE_DISABLE="1")
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertEqual((self.tree / "build" / "dist" / "SHA256SUMS").read_text(), (DIST / "SHA256SUMS").read_text())


if __name__ == "__main__":
    unittest.main(verbosity=2)
