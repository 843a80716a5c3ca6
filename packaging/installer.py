"""The installer of one bitness: an MSI that registers by its tables and runs no code of its own.

wixl lays out folders, files and the cabinet; what it does not know (rows for whichever root of the registry the installation
has, what happens with other versions, a folder for the current user) is imported as tables afterwards. Every identifier is
made of what it stands for, so that the same content gives the same bytes.
"""

import hashlib
import os
import shutil
import subprocess
import time
import uuid
from pathlib import PurePosixPath
from xml.sax.saxutils import quoteattr

from registration import registration

# All identifiers of the installers are made below this one, except those that tell Windows which product it is.
IDENTIFIERS = uuid.UUID("5fcf6640-4bf4-4628-ac4c-29a59e8e09ef")
UPGRADE_CODES = {
    32: "{5FCF6641-4BF4-4628-AC4C-29A59E8E09EF}",
    64: "{5FCF6642-4BF4-4628-AC4C-29A59E8E09EF}",
}
MANUFACTURER = "Kestrel"
ENGLISH = "1033"

# The root of the machine or of the user, as the package is installed.
EITHER_ROOT = -1
COMPONENT_64BIT = 256
REGISTRY_KEY_PATH = 4
SET_PROPERTY = 51
FAIL_WITH_TEXT = 19

FOR_THE_USER = 'NOT ALLUSERS OR MSIINSTALLPERUSER="1"'

CONDITIONS = [
    (
        f"Installed OR Privileged OR {FOR_THE_USER}",
        "Installing for all users takes an administrator. For yourself alone: msiexec /i PACKAGE ALLUSERS=2 MSIINSTALLPERUSER=1",
    ),
]
CONDITION_64BIT = ("Installed OR VersionNT64", "This package is for 64-bit Windows; take the 32-bit one here.")

NEWER_IS_THERE = "A newer version of Kestrel is installed; remove it first if this older one is meant."

# What is done in which order; an entry's place is the one that Windows documents for it.
PREPARATION = [
    ("FindRelatedProducts", "", 25),
    ("RefuseOlder", "NEWERFOUND", 26),
    ("LaunchConditions", "", 100),
    ("CostInitialize", "", 800),
    ("FileCost", "", 900),
    ("FolderOfUser", FOR_THE_USER, 950),
    ("CostFinalize", "", 1000),
]
EXECUTION = [
    *PREPARATION,
    ("ValidateProductID", "", 700),
    ("InstallValidate", "", 1400),
    ("InstallInitialize", "", 1500),
    ("RemoveExistingProducts", "", 1501),
    ("ProcessComponents", "", 1600),
    ("UnpublishFeatures", "", 1800),
    ("RemoveRegistryValues", "", 2600),
    ("RemoveFiles", "", 3500),
    ("InstallFiles", "", 4000),
    ("WriteRegistryValues", "", 5000),
    ("RegisterUser", "", 6000),
    ("RegisterProduct", "", 6100),
    ("PublishFeatures", "", 6300),
    ("PublishProduct", "", 6400),
    ("InstallFinalize", "", 6600),
]
DIALOGLESS = [*PREPARATION, ("ExecuteAction", "", 1300)]


def braced(identifier):
    return "{" + str(identifier).upper() + "}"


def made_of(*parts):
    """The identifier that stands for the parts, and for nothing else."""
    return braced(uuid.uuid5(IDENTIFIERS, "/".join(parts)))


def name_in_tables(place):
    """A name for a file or folder that tables accept."""
    return "f" + hashlib.sha256(place.encode()).hexdigest()[:16]


def short_name(long_name, number):
    """The name of eight and three characters that goes with a longer one."""
    stem, dot, suffix = long_name.partition(".")
    stem = "".join(letter for letter in stem.upper() if letter.isalnum())
    return f"{stem[:8 - 1 - len(str(number))]}~{number}{dot}{suffix.upper()[:3]}"


def is_short(name):
    stem, _, suffix = name.partition(".")
    return len(stem) <= 8 and len(suffix) <= 3 and "." not in suffix and all(c.isalnum() or c in "._" for c in name)


class Table:
    """A table in the text form that msibuild imports."""

    def __init__(self, name, columns, keys):
        self.name = name
        self.head = ["\t".join(column for column, _ in columns), "\t".join(kind for _, kind in columns)]
        self.head.append("\t".join([name, *keys]))
        self.rows = []

    def add(self, *values):
        self.rows.append("\t".join(str(value) for value in values))

    def write(self, folder):
        path = folder / f"{self.name}.idt"
        path.write_text("\r\n".join([*self.head, *self.rows, ""]), encoding="cp1252", newline="")
        return path


class Installer:
    """One package being made in a folder of its own."""

    def __init__(self, work, version, bits, entries, manifest, epoch):
        self.work = work
        self.version = version
        self.bits = bits
        self.epoch = epoch
        self.shared, self.own = registration(manifest, bits)
        self.entries = sorted(entries)
        self.product = made_of("product", str(bits), version)
        self.name = f"Kestrel {version} ({bits}-bit)"
        self.root_folder = "ProgramFiles64Folder" if bits == 64 else "ProgramFilesFolder"

    def component_of(self, place):
        return made_of("component", str(self.bits), place)

    # --- What wixl lays out ---

    def stage(self):
        """Copies under names without folders and of the same time, as the cabinet keeps them."""
        folder = self.work / "files"
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
        for entry in self.entries:
            copy = folder / name_in_tables(entry.place)
            shutil.copyfile(entry.source, copy)
            os.utime(copy, (self.epoch, self.epoch))

    def folder_elements(self, folder, depth):
        """The XML of what a folder of the package holds."""
        indent = "  " * depth
        lines = []
        for entry in self.entries:
            place = PurePosixPath(entry.place)
            if place.parent != folder:
                continue
            name = name_in_tables(entry.place)
            win64 = ' Win64="yes"' if self.bits == 64 else ""
            lines += [
                f'{indent}<Component Id="{name}" Guid="{self.component_of(entry.place)[1:-1]}"{win64}>',
                f'{indent}  <File Id="{name}" Name={quoteattr(place.name)} Source="files/{name}" KeyPath="yes"/>',
                f"{indent}</Component>",
            ]
        for below in self.folders_in(folder):
            lines.append(f'{indent}<Directory Id="{name_in_tables(str(below))}" Name={quoteattr(below.name)}>')
            lines += self.folder_elements(below, depth + 1)
            lines.append(f"{indent}</Directory>")
        return lines

    def folders_in(self, folder):
        parents = {parent for entry in self.entries for parent in PurePosixPath(entry.place).parents}
        return sorted(path for path in parents if path != folder and path.parent == folder)

    def source(self):
        references = "".join(f'<ComponentRef Id="{name_in_tables(entry.place)}"/>' for entry in self.entries)
        elements = "\n".join(self.folder_elements(PurePosixPath("."), 4))
        return f"""<?xml version="1.0" encoding="utf-8"?>
<Wix xmlns="http://schemas.microsoft.com/wix/2006/wi">
  <Product Name="{self.name}" Id="{self.product[1:-1]}" UpgradeCode="{UPGRADE_CODES[self.bits][1:-1]}"
           Language="{ENGLISH}" Codepage="1252" Version="{self.version}" Manufacturer="{MANUFACTURER}">
    <Package InstallerVersion="500" Compressed="yes" SummaryCodepage="1252" Languages="{ENGLISH}"/>
    <Media Id="1" Cabinet="kestrel.cab" EmbedCab="yes"/>
    <Property Id="ALLUSERS" Value="1"/>
    <Property Id="ARPNOMODIFY" Value="1"/>
    <Property Id="SecureCustomProperties" Value="NEWERFOUND;OLDERFOUND"/>
    <Directory Id="TARGETDIR" Name="SourceDir">
      <Directory Id="{self.root_folder}"><Directory Id="INSTALLDIR" Name="Kestrel">
{elements}
      </Directory></Directory>
    </Directory>
    <Feature Id="Kestrel" Level="1">{references}</Feature>
  </Product>
</Wix>
"""

    # --- What is imported afterwards ---

    def registry(self):
        """The rows, each with a name made of what it says."""
        table = Table(
            "Registry",
            [("Registry", "s72"), ("Root", "i2"), ("Key", "l255"), ("Name", "L255"), ("Value", "L0"), ("Component_", "s72")],
            ["Registry"],
        )
        for values, component in ((self.shared, "Names"), (self.own, "Registration")):
            for value in values:
                # A key without text cannot be said but as a key that is made, and removed with all that it holds.
                name = value.name or ("" if value.text else "*")
                row = "r" + hashlib.sha256(f"{value.key}|{value.name}".encode()).hexdigest()[:24]
                table.add(row, EITHER_ROOT, value.key, name, value.text, component)
        return table

    def components(self):
        """wixl's components, and two of registry rows: what this bitness alone writes, and the names. Both packages have
        the latter with the same identifier, so that Windows keeps them until the last package goes."""
        lines = self.exported("Component")
        registry = self.registry().rows
        key_paths = {component: next(row for row in registry if row.endswith(component)) for component in ("Names", "Registration")}
        own = COMPONENT_64BIT if self.bits == 64 else 0
        for component, identifier, attributes in (
            ("Names", made_of("component", "names"), 0),
            ("Registration", self.component_of("registration"), own),
        ):
            key_path = key_paths[component].split("\t")[0]
            lines.append("\t".join([component, identifier, "INSTALLDIR", str(attributes | REGISTRY_KEY_PATH), "", key_path]))
        return lines

    def feature_components(self):
        return self.exported("FeatureComponents") + ["Kestrel\tNames", "Kestrel\tRegistration"]

    def files(self):
        """wixl's files, with the short names beside the long ones, and the library's version."""
        lines = self.exported("File")
        for number, line in enumerate(lines[3:], 3):
            cells = line.split("\t")
            long_name = cells[2].rpartition("|")[2]
            if not is_short(long_name):
                cells[2] = f"{short_name(long_name, number)}|{long_name}"
            if long_name == "Kestrel.dll":
                cells[4:6] = [f"{self.version}.0", ENGLISH]
            lines[number] = "\t".join(cells)
        return lines

    def upgrade(self):
        table = Table(
            "Upgrade",
            [("UpgradeCode", "s38"), ("VersionMin", "S20"), ("VersionMax", "S20"), ("Language", "S255"), ("Attributes", "i4"),
             ("Remove", "S255"), ("ActionProperty", "s72")],
            ["UpgradeCode", "VersionMin", "VersionMax", "Language", "Attributes"],
        )
        without_ends, only_look = 0, 2
        table.add(UPGRADE_CODES[self.bits], "", self.version, "", without_ends, "", "OLDERFOUND")
        table.add(UPGRADE_CODES[self.bits], self.version, "", "", only_look, "", "NEWERFOUND")
        return table

    def custom_actions(self):
        table = Table(
            "CustomAction",
            [("Action", "s72"), ("Type", "i2"), ("Source", "S72"), ("Target", "S255"), ("ExtendedType", "I4")],
            ["Action"],
        )
        table.add("RefuseOlder", FAIL_WITH_TEXT, "", NEWER_IS_THERE, "")
        folder = f"[LocalAppDataFolder]Programs\\Kestrel {'x64' if self.bits == 64 else 'x86'}\\"
        table.add("FolderOfUser", SET_PROPERTY, "INSTALLDIR", folder, "")
        return table

    def conditions(self):
        table = Table("LaunchCondition", [("Condition", "s255"), ("Description", "l255")], ["Condition"])
        for condition, text in CONDITIONS + ([CONDITION_64BIT] if self.bits == 64 else []):
            table.add(condition, text)
        return table

    @staticmethod
    def sequence(name, actions):
        table = Table(name, [("Action", "s72"), ("Condition", "S255"), ("Sequence", "I2")], ["Action"])
        for action in sorted(actions, key=lambda action: action[2]):
            table.add(*action)
        return table

    def summary(self, content):
        table = Table("_SummaryInformation", [("PropertyId", "i2"), ("Value", "l255")], ["PropertyId"])
        stamp = time.strftime("%Y/%m/%d %H:%M:%S", time.gmtime(self.epoch))
        platform = "x64" if self.bits == 64 else "Intel"
        for number, value in (
            (1, 1252), (2, "Installation Database"), (3, self.name), (4, MANUFACTURER), (5, "Installer"),
            (6, "Manages code rules: how document numbers and item codes are put together."),
            (7, f"{platform};{ENGLISH}"), (9, made_of("package", content)), (12, stamp), (13, stamp),
            (14, 500), (15, 2), (18, "msitools"), (19, 2),
        ):
            table.add(number, value)
        return table

    # --- How it is put together ---

    def run(self, *command):
        environment = {**os.environ, "TZ": "UTC", "LC_ALL": "C.UTF-8", "SOURCE_DATE_EPOCH": str(self.epoch)}
        done = subprocess.run(command, cwd=self.work, env=environment, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise SystemExit(f"error: {command[0]} failed: {(done.stderr or done.stdout).strip()}")
        return done.stdout

    def exported(self, table):
        return self.run("msiinfo", "export", "package.msi", table).replace("\r", "").rstrip("\n").split("\n")

    def import_table(self, path):
        self.run("msibuild", "package.msi", "-i", path.name)

    def import_lines(self, name, lines):
        path = self.work / f"{name}.idt"
        path.write_text("\r\n".join([*lines, ""]), encoding="cp1252", newline="")
        self.import_table(path)

    def digest(self):
        """Of all that the package is made of."""
        total = hashlib.sha256()
        for path in sorted([*self.work.glob("*.idt"), *self.work.glob("files/*"), self.work / "package.wxs"]):
            total.update(path.name.encode() + b"\0" + hashlib.sha256(path.read_bytes()).digest())
        return total.hexdigest()

    def make(self, target):
        self.stage()
        (self.work / "package.wxs").write_text(self.source(), encoding="utf-8", newline="\n")
        self.run("wixl", "--arch", "x64" if self.bits == 64 else "x86", "-o", "package.msi", "package.wxs")
        tables = [
            self.registry(), self.upgrade(), self.custom_actions(), self.conditions(),
            self.sequence("InstallExecuteSequence", EXECUTION), self.sequence("InstallUISequence", DIALOGLESS),
        ]
        for name, lines in (
            ("Component", self.components()), ("FeatureComponents", self.feature_components()), ("File", self.files()),
        ):
            self.import_lines(name, lines)
        for table in tables:
            self.import_table(table.write(self.work))
        self.import_table(self.summary(self.digest()).write(self.work))
        shutil.copyfile(self.work / "package.msi", target)
