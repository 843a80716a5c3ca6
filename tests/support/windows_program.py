"""Runs the Windows programs under test, and finds what the build made."""
import functools
import os
import pathlib
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
LAUNCHER = os.environ.get("KESTREL_LAUNCHER", str(ROOT / "tools" / "wine.sh"))
BUILD = pathlib.Path(os.environ.get("KESTREL_BUILD", ROOT / "build" / "x86"))
BITS = 64 if BUILD.name == "x64" else 32


def path(file):
    """The name that a Windows program knows the file by."""
    return "Z:" + str(file).replace("/", "\\")


@functools.lru_cache(None)
def launch(file, display):
    """The words that the launcher itself would run the program with: asked for once, since its shells take as long as a
    quarter of a short program. Without a display Wine connects to none and loads no theme, which takes an eighth, as soon as
    a program has an apartment."""
    words = subprocess.run([LAUNCHER, "--show", file], stdin=subprocess.DEVNULL, capture_output=True, encoding="utf-8",
                           check=True).stdout.splitlines()
    if display:
        return words
    no_theme = [f"{word};uxtheme=" if word.startswith("WINEDLLOVERRIDES=") else word for word in words[1:]]
    return [words[0], "--unset=DISPLAY", *no_theme]


def command(program, arguments, display=None):
    """The program's words; `display` says whether it gets one, which it does but for kledger, whose commands need none."""
    file = str(BUILD / f"{program}.exe")
    return [*launch(file, program != "kledger" if display is None else display), file, *map(str, arguments)]


def run(program, *arguments, timeout=120, **options):
    """Runs to the end; the result's stdout and stderr are texts."""
    return subprocess.run(command(program, arguments), stdin=subprocess.DEVNULL, capture_output=True, timeout=timeout,
                          encoding="utf-8", check=False, **options)


def taken(program, *arguments):
    """Runs to the end; the seconds, the processor's seconds and the most memory in megabytes that it took, which is
    never less than what this program itself holds when it starts the other one."""
    begin = time.monotonic()
    with subprocess.Popen(command(program, arguments), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          encoding="utf-8") as process:
        last = ""
        for line in process.stdout:
            last = line
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise RuntimeError(f"{program} {' '.join(map(str, arguments))} ended with {process.returncode}: {last}")
    return time.monotonic() - begin, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def make_samples(folder):
    subprocess.run([sys.executable, str(ROOT / "hosts" / "samples" / "make_samples.py"), str(folder)], check=True,
                   capture_output=True)
