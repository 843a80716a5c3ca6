"""What is distributed: which file of the project or of its builds lies where in a package."""

from pathlib import Path
from typing import NamedTuple

PROGRAMS = ("Kestrel.dll", "kledger.exe")
BITS = {"x86": 32, "x64": 64}


class Entry(NamedTuple):
    place: str  # in the package, with "/"
    source: Path


def binaries(root, preset, folder=""):
    """What runs, and what describes it to hosts."""
    build = root / "build" / preset
    files = [build / name for name in (*PROGRAMS, "Kestrel.manifest")] + [build / "src/generated/Kestrel.tlb"]
    return [Entry(folder + file.name, file) for file in files]


def documents(root):
    names = ("README.md", "CHANGELOG.md", "CONTRIBUTING.md")
    files = [*(root / name for name in names), *(root / "docs").rglob("*.md"), *(root / "docs").rglob("*.png")]
    return [Entry(file.relative_to(root).as_posix(), file) for file in files]


def samples(root):
    folder = root / "hosts/samples"
    files = [file for file in folder.rglob("*") if file.is_file() and "__pycache__" not in file.parts]
    return [Entry("samples/" + file.relative_to(folder).as_posix(), file) for file in files]


def portable(root, preset):
    """The sample host, and what has the ledger as well find the library beside it: they work from any folder, with nothing
    registered."""
    build = root / "build" / preset
    files = [build / name for name in ("portable.exe", "portable.exe.manifest", "portable/kledger.exe.manifest")]
    return [Entry(f"{preset}/{file.name}", file) for file in files]


def installed(root, preset):
    return binaries(root, preset) + documents(root) + samples(root)


def archive(root):
    entries = documents(root) + samples(root)
    for preset in BITS:
        entries += binaries(root, preset, preset + "/") + portable(root, preset)
    return entries


def symbols(root):
    return [
        Entry(f"{preset}/{name}.debug", root / "build" / preset / f"{name}.debug") for preset in BITS for name in PROGRAMS
    ]


def sdk(root):
    entries = samples(root) + [
        Entry("include/KestrelTypeLib.h", root / "build/x86/src/generated/KestrelTypeLib.h"),
        Entry("include/Kestrel.h", root / "packaging/sdk/Kestrel.h"),
        Entry("Kestrel.idl", root / "src/resources/Kestrel.idl"),
    ]
    return entries + [
        Entry(f"{preset}/Kestrel.tlb", root / "build" / preset / "src/generated/Kestrel.tlb") for preset in BITS
    ]
