#!/usr/bin/env python3
"""Makes the packages of a distribution from what is built, called by ./dist.

usage: make.py ROOT FOLDER VERSION EPOCH [--installers]
FOLDER is emptied; EPOCH is the time that all entries get; --installers: nothing but these
"""

import shutil
import sys
import tempfile
from pathlib import Path

import content
from archives import write_checksums, write_zip
from installer import Installer


def make_archives(root, folder, name, epoch):
    write_zip(folder / f"{name}.zip", name, content.archive(root), epoch)
    write_zip(folder / f"{name}-symbols.zip", f"{name}-symbols", content.symbols(root), epoch)
    write_zip(folder / f"{name}-sdk.zip", f"{name}-sdk", content.sdk(root), epoch)


def make_installers(root, folder, name, version, epoch):
    for preset, bits in content.BITS.items():
        manifest = root / "build" / preset / "Kestrel.manifest"
        with tempfile.TemporaryDirectory() as work:
            installer = Installer(Path(work), version, bits, content.installed(root, preset), manifest, epoch)
            installer.make(folder / f"{name}-{preset}.msi")


def main(root, folder, version, epoch, wanted=""):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    name = f"kestrel-{version}"
    if wanted != "--installers":
        make_archives(root, folder, name, epoch)
    make_installers(root, folder, name, version, epoch)
    write_checksums(folder)


if __name__ == "__main__":
    main(Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3], int(sys.argv[4]), *sys.argv[5:6])
