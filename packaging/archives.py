"""Zip archives and checksums: from the same files the same bytes."""

import hashlib
import time
import zipfile

EARLIEST = 315532800  # 1980, where the time of zip archives begins
READABLE = 0o100644 << 16
EXECUTABLE = 0o100755 << 16


def write_zip(path, top, entries, epoch):
    """Each entry below the folder `top`, in the order of the places, all of the same time."""
    stamp = time.gmtime(max(epoch, EARLIEST))[:6]
    with zipfile.ZipFile(path, "w") as archive:
        for entry in sorted(entries):
            info = zipfile.ZipInfo(f"{top}/{entry.place}", stamp)
            info.create_system = 3  # so that the rights below are read as such everywhere
            info.external_attr = EXECUTABLE if entry.place.endswith((".exe", ".py")) else READABLE
            info.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(info, entry.source.read_bytes(), compresslevel=6)


def write_checksums(folder):
    """SHA256SUMS, as sha256sum writes and checks it."""
    lines = [
        f"{hashlib.sha256(file.read_bytes()).hexdigest()}  {file.name}\n"
        for file in sorted(folder.iterdir())
        if file.name != "SHA256SUMS"
    ]
    (folder / "SHA256SUMS").write_text("".join(lines), encoding="ascii", newline="\n")
