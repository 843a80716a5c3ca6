"""Runs the Windows programs under test, and finds what the build made."""
import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
LAUNCHER = os.environ.get("KESTREL_LAUNCHER", str(ROOT / "tools" / "wine.sh"))
BUILD = pathlib.Path(os.environ.get("KESTREL_BUILD", ROOT / "build" / "x86"))
BITS = 64 if BUILD.name == "x64" else 32


def path(file):
    """The name that a Windows program knows the file by."""
    return "Z:" + str(file).replace("/", "\\")


def command(program, arguments):
    return [LAUNCHER, str(BUILD / f"{program}.exe"), *map(str, arguments)]


def run(program, *arguments, timeout=120, **options):
    """Runs to the end; the result's stdout and stderr are texts."""
    return subprocess.run(command(program, arguments), stdin=subprocess.DEVNULL, capture_output=True, timeout=timeout,
                          encoding="utf-8", check=False, **options)


def make_samples(folder):
    subprocess.run([sys.executable, str(ROOT / "hosts" / "samples" / "make_samples.py"), str(folder)], check=True,
                   capture_output=True)
