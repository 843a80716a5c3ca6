"""The installers of a distribution, installed under Wine in a prefix of their own, where nothing is registered.

KESTREL_DIST names the folder of the distribution, KESTREL_OLDER one of an older version and KESTREL_NEWER one of a newer one.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time
import unittest

from windows_program import ROOT
from wine_prefix import Prefix

sys.path.insert(0, str(ROOT / "packaging"))
from registration import registration  # noqa: E402  (found through the path above)

DIST = pathlib.Path(os.environ["KESTREL_DIST"])
OLDER = pathlib.Path(os.environ["KESTREL_OLDER"])
NEWER = pathlib.Path(os.environ["KESTREL_NEWER"])
VERSION = re.search(r"kestrel-([0-9.]+)-x86\.msi", " ".join(file.name for file in DIST.iterdir())).group(1)
PREFIX = Prefix(ROOT / "build" / "dist-wine")
PRESETS = {"x86": 32, "x64": 64}
FOLDERS = {"x86": "C:\\Program Files (x86)\\Kestrel", "x64": "C:\\Program Files\\Kestrel"}
# Wine goes by this property alone, and asks for it at the removal too; Windows remembers for whom a product was installed.
FOR_THE_USER = ("ALLUSERS=",)
FAILED = 1603 & 0xFF  # Wine hands on the low byte of an exit code

USE = """
Set rule = CreateObject("Kestrel.CodeClass")
rule.Add "Prefix", 0, , "INV-"
rule.Add("Number", 3, , "1", , 4, "0000").TrackBands.Add "Prefix"
WScript.Echo rule.GetCode(1)
"""


def package(preset, folder=DIST):
    found = list(folder.glob(f"kestrel-*-{preset}.msi"))
    assert len(found) == 1, found
    return "Z:" + str(found[0]).replace("/", "\\")


def install(preset, *options, folder=DIST):
    return PREFIX.msiexec("/i", package(preset, folder), *options)


def remove(preset, *options, folder=DIST):
    return PREFIX.msiexec("/x", package(preset, folder), *options)


# Windows' own folder for what a user installs, which the first program makes.
USERS_PROGRAMS = re.compile(r"^users/[^/]+/AppData/Local/Programs$")
# The folders in which Windows keeps its lists of what is installed, whatever that is, and of the classes of a user.
LISTS = re.compile(r"\\Installer(\\(Features|Products|UpgradeCodes|UserData(\\S-[0-9-]+(\\(Components|Products))?)?))?$"
                   r"|^HKEY_CURRENT_USER\\Software\\Classes(\\(CLSID|Interface|TypeLib))?$")


def without_housekeeping(keys):
    """What Windows' own services write at any time, and its lists while they are empty, are no traces of an installation."""
    return {key: values for key, values in keys.items()
            if "\\Wine\\" not in key and "Explorer" not in key and (values or not LISTS.search(key))}


def difference(before, after):
    return sorted(f"- {key}" for key in before.keys() - after.keys()) + sorted(
        f"+ {key} {after[key]}" for key in after if before.get(key) != after[key])


class InstallerTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        if any("Kestrel" in name for name in PREFIX.files()):  # an earlier run was cut short
            cls.remove_all()
        for preset in PRESETS:  # Wine's script host registers something of its own when it first runs
            assert PREFIX.script(preset, "WScript.Echo 1") == "1"
        cls.files_before = PREFIX.files()
        cls.registry_before = without_housekeeping(PREFIX.registry())

    def tearDown(self):
        if PREFIX.files() ^ self.files_before:  # a test failed
            self.remove_all()

    @staticmethod
    def remove_all():
        for preset in PRESETS:
            for folder in (DIST, OLDER, NEWER):
                remove(preset, folder=folder)
                remove(preset, *FOR_THE_USER, folder=folder)

    def expect_nothing_left(self):
        left = [name for name in PREFIX.files() ^ self.files_before if not USERS_PROGRAMS.search(name)]
        self.assertEqual(sorted(left), [])
        self.assertEqual(difference(self.registry_before, without_housekeeping(PREFIX.registry())), [])

    def expect_works(self, *presets):
        for preset in presets:
            self.assertEqual(PREFIX.script(preset, USE), "INV-0001", preset)

    def expect_fails(self, *presets):
        for preset in presets:
            self.assertEqual(PREFIX.script(preset, USE), "", preset)

    def test_the_32_bit_package_first(self):
        self.install_both_and_remove_either("x86", "x64")

    def test_the_64_bit_package_first(self):
        self.install_both_and_remove_either("x64", "x86")

    def install_both_and_remove_either(self, first, second):
        """What the two share stays until the last of them goes."""
        self.expect_fails("x86", "x64")
        for leaving, staying in ((first, second), (second, first)):
            with self.subTest(leaves=leaving):
                self.assertEqual(install(first), 0)
                self.expect_works(first)
                self.assertEqual(install(second), 0)
                self.expect_works(first, second)
                self.assertEqual(remove(leaving), 0)
                self.expect_works(staying)
                self.expect_fails(leaving)
                self.assertEqual(remove(staying), 0)
                self.expect_nothing_left()

    def test_with_the_plain_progress_of_the_system(self):
        self.assertEqual(PREFIX.msiexec("/i", package("x86"), showing="/qb"), 0)
        self.expect_works("x86")
        self.assertEqual(PREFIX.msiexec("/x", package("x86"), showing="/qb"), 0)
        self.expect_nothing_left()

    def test_registers_what_the_library_registers(self):
        for preset in PRESETS:
            with self.subTest(preset):
                self.assertEqual(install(preset), 0)
                installed = self.classes()
                self.assertEqual(remove(preset), 0)
                library = pathlib.Path(ROOT / "build" / preset / "Kestrel.dll")
                name = "Z:" + str(library).replace("/", "\\")
                self.assertEqual(PREFIX.run("regsvr32", "/s", name).returncode, 0)
                registered = self.classes()
                self.assertEqual(PREFIX.run("regsvr32", "/s", "/u", name).returncode, 0)
                self.assertGreater(len(registered), 60)
                self.assertEqual(relocated(installed, FOLDERS[preset]), relocated(registered, name.rpartition("\\")[0]))

    def classes(self):
        return {key: values for key, values in PREFIX.registry().items()
                if "\\Software\\Classes\\" in key and self.registry_before.get(key) != values
                and ("Kestrel." in key or "5FCF66" in key)}

    def test_for_the_current_user(self):
        for preset, bits in PRESETS.items():
            with self.subTest(preset):
                self.assertEqual(install(preset, *FOR_THE_USER), 0)
                [library] = [name for name in PREFIX.files() if name.endswith(f"Programs/Kestrel {preset}/Kestrel.dll")]
                self.assertIn("users/", library)
                keys = PREFIX.registry()
                shared, own = registration(ROOT / "build" / preset / "Kestrel.manifest", bits)
                for value in shared:
                    self.assertIn(f"HKEY_CURRENT_USER\\{value.key}".lower(), [key.lower() for key in keys])
                machine = [key for key in keys if key.startswith("HKEY_LOCAL") and "Kestrel.CodeClass" in key]
                self.assertEqual(machine, [])
                self.assertEqual(remove(preset, *FOR_THE_USER), 0)
                self.expect_nothing_left()

    def test_repairs_what_was_lost(self):
        for preset in PRESETS:
            with self.subTest(preset):
                self.assertEqual(install(preset), 0)
                whole = self.classes()
                PREFIX.path(FOLDERS[preset] + "\\Kestrel.dll").unlink()
                PREFIX.run("reg", "delete", "HKLM\\Software\\Classes\\Kestrel.CodeClass", "/f")
                self.expect_fails(preset)
                # As "msiexec /famus PACKAGE", which Wine does not know.
                self.assertEqual(install(preset, "REINSTALL=ALL", "REINSTALLMODE=amus"), 0)
                self.expect_works(preset)
                self.assertEqual(self.classes(), whole)
                self.assertEqual(remove(preset), 0)
                self.expect_nothing_left()

    def test_takes_the_place_of_an_older_version(self):
        for preset in PRESETS:
            with self.subTest(preset):
                self.assertEqual(install(preset, folder=OLDER), 0)
                self.expect_works(preset)
                self.assertEqual(install(preset), 0)
                self.expect_works(preset)
                self.assertEqual(self.products(), [f"Kestrel {VERSION} ({PRESETS[preset]}-bit)"])
                self.assertEqual(remove(preset), 0)
                self.expect_nothing_left()

    @staticmethod
    def products():
        """The names in the list of what can be removed."""
        return sorted(values["DisplayName"] for key, values in PREFIX.registry().items()
                      if "\\Uninstall\\" in key and values.get("DisplayName", "").startswith("Kestrel "))

    def test_refuses_to_replace_a_newer_version(self):
        for preset in PRESETS:
            with self.subTest(preset):
                self.assertEqual(install(preset, folder=NEWER), 0)
                before = self.products()
                self.assertEqual(install(preset), FAILED)
                self.assertEqual(self.products(), before)
                self.expect_works(preset)
                self.assertEqual(remove(preset, folder=NEWER), 0)
                self.expect_nothing_left()

    def test_while_the_library_is_in_use(self):
        """A program that has it loaded goes on; a new one gets what is installed then."""
        for preset in PRESETS:
            with self.subTest(preset):
                self.assertEqual(install(preset, folder=OLDER), 0)
                signal, script = PREFIX.drive / "go", PREFIX.drive / "waiting.vbs"
                script.write_text(USE + """
Set files = CreateObject("Scripting.FileSystemObject")
Do Until files.FileExists("C:\\go") ' Wine's script host has no Sleep
Loop
WScript.Echo rule.GetCode(1)
""", encoding="ascii")
                process = self.start_script(preset, "C:\\waiting.vbs")
                self.assertEqual(process.stdout.readline().decode().strip(), "INV-0001")
                self.assertIn(install(preset), (0, 3010 & 0xFF))
                signal.touch()
                output, _ = process.communicate(timeout=60)
                signal.unlink()
                script.unlink()
                self.assertEqual(output.decode().split(), ["INV-0001"])
                self.expect_works(preset)
                self.assertEqual(remove(preset), 0)

    @staticmethod
    def start_script(preset, name):
        host = "C:\\windows\\syswow64\\cscript.exe" if preset == "x86" else "C:\\windows\\system32\\cscript.exe"
        environment = dict(PREFIX.environment)
        if preset == "x64":
            environment["KESTREL_WINE"] = "/usr/lib/wine/wine64"
        return subprocess.Popen([str(ROOT / "tools" / "wine.sh"), host, "//nologo", name], env=environment,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)

    def test_says_in_its_tables_what_it_needs(self):
        for preset in PRESETS:
            file = pathlib.Path(package(preset)[2:].replace("\\", "/"))
            conditions = subprocess.run(["msiinfo", "export", str(file), "LaunchCondition"], check=True, capture_output=True,
                                        text=True).stdout
            self.assertIn("takes an administrator", conditions)
            self.assertEqual("for 64-bit Windows" in conditions, preset == "x64")
            actions = subprocess.run(["msiinfo", "export", str(file), "CustomAction"], check=True, capture_output=True,
                                     text=True).stdout.split("\n")[3:]
            self.assertIn("\tA newer version of Kestrel is installed; remove it first", "\n".join(actions))
            # A text that ends the installation, and a property that is set: none runs code.
            self.assertEqual(sorted(line.split("\t")[1] for line in actions if line.strip()), ["19", "51"])


def relocated(keys, folder):
    """The values with the library's folder told apart; a key that is there counts as one with an empty text."""
    result = {}
    for key, values in keys.items():
        result[key.lower()] = {name.lower(): text.replace(folder, "FOLDER").rstrip("\\") for name, text in values.items() if text}
    return result


class PortableTest(unittest.TestCase):
    """The archive, unpacked anywhere, without registration."""

    def setUp(self):
        [archive] = DIST.glob("kestrel-*[0-9].zip")
        self.folder = PREFIX.drive / "somewhere"
        shutil.rmtree(self.folder, ignore_errors=True)
        shutil.unpack_archive(archive, self.folder)
        self.addCleanup(shutil.rmtree, self.folder)
        [top] = self.folder.iterdir()
        self.path = f"C:\\somewhere\\{top.name}"

    def lines_of(self, *command):
        done = PREFIX.run(*command)
        self.assertEqual(done.returncode, 0)
        return done.stdout.decode().replace("\r", "").splitlines()

    def test_the_sample_host_finds_the_library_in_its_folder(self):
        for preset in PRESETS:
            with self.subTest(preset):
                lines = self.lines_of(f"{self.path}\\{preset}\\portable.exe")
                self.assertEqual(lines[:4], ["INV-0001", "INV-0002", "INV-0003", "INV-0002"])
                self.assertEqual(lines[4].lower(), f"{self.path}\\{preset}\\kestrel.dll".lower())

    def test_the_ledger_issues_codes_with_nothing_registered(self):
        for preset in PRESETS:
            with self.subTest(preset):
                kledger = (f"{self.path}\\{preset}\\kledger.exe", "--database", f"{self.path}\\{preset}.db")
                self.lines_of(*kledger, "rule", "new", "invoices", "INV-{Year:4}-{####}")
                issued = self.lines_of(*kledger, "issue", "--count", "2", "--field", "Year=2026")
                self.assertEqual([line.split("\t")[0] for line in issued], ["INV-2026-0001", "INV-2026-0002"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
