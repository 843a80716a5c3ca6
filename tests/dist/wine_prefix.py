"""A Wine prefix in which nothing of the project is registered, and what an installation leaves in it."""
import os
import pathlib
import subprocess
import tempfile

from windows_program import ROOT

SCRIPT_HOSTS = {
    "x86": "C:\\windows\\syswow64\\cscript.exe",
    "x64": "C:\\windows\\system32\\cscript.exe",
}
WINE64 = pathlib.Path("/usr/lib/wine/wine64")
ROOTS = ("HKEY_LOCAL_MACHINE\\Software", "HKEY_CURRENT_USER\\Software")


class Prefix:
    """One of its own beside the project's, made once."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.environment = {**os.environ, "KESTREL_WINEPREFIX": str(self.folder)}
        self.run_tool("prefix.sh")

    def run_tool(self, tool, *arguments, environment=None):
        """What it prints goes through files: a service that it starts keeps what it was given, and a pipe would never end."""
        with tempfile.TemporaryFile() as output:
            done = subprocess.run([str(ROOT / "tools" / tool), *arguments], env={**self.environment, **(environment or {})},
                                  stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.DEVNULL, timeout=120, check=False)
            output.seek(0)
            done.stdout = output.read()
        return done

    def run(self, *command, **options):
        """A Windows program; what it prints is text of the prefix's code page, in bytes."""
        return self.run_tool("wine.sh", *command, **options)

    @property
    def drive(self):
        return self.folder / "drive_c"

    def path(self, name):
        """Of a file on the prefix's own drive."""
        return self.drive / name.replace("C:\\", "").replace("\\", "/")

    # --- Installing ---

    def msiexec(self, *arguments, showing="/qn"):
        """The exit code; nothing is shown, or what the option says."""
        return self.run("msiexec", *arguments, showing).returncode

    # --- Using ---

    def script(self, preset, text):
        """What a script prints under the system's own host of that bitness."""
        file = self.drive / "script.vbs"
        file.write_text(text, encoding="ascii")
        environment = {"KESTREL_WINE": str(WINE64)} if preset == "x64" else {}
        done = self.run(SCRIPT_HOSTS[preset], "//nologo", "C:\\script.vbs", environment=environment)
        file.unlink()
        return done.stdout.decode("ascii", "replace").replace("\r", "").strip()

    # --- Looking ---

    def files(self):
        """Every file and folder of the drive but what Windows itself keeps."""
        found = set()
        for folder, folders, names in os.walk(self.drive):
            if pathlib.Path(folder) == self.drive:
                folders[:] = [name for name in folders if name != "windows"]
            found.update(str(pathlib.Path(folder, name).relative_to(self.drive)) for name in folders + names)
        kept = self.drive / "windows" / "Installer"
        found.update(str(file.relative_to(self.drive)) for file in kept.rglob("*"))
        return found

    def registry(self):
        """{key: {name: text}} of all software: a 64-bit program sees both views."""
        keys = {}
        for root in ROOTS:
            keys.update(parsed_export(self.export(root)))
        return keys

    def export(self, root):
        """Tried again: the 64-bit loader now and then ends without having begun."""
        file = self.drive / "export.reg"
        for _ in range(5):
            done = self.run("reg", "export", root, "C:\\export.reg", "/y", environment={"KESTREL_WINE": str(WINE64)})
            if done.returncode == 0 and file.exists():
                text = file.read_text(encoding="utf-16")
                file.unlink()
                return text
        raise AssertionError(f"{root} could not be exported")


def parsed_export(text):
    keys, values = {}, {}
    text = text.replace("\r", "").replace("\\\n  ", "")  # long values go on in the next line
    for line in text.split("\n"):
        if line.startswith("["):
            values = keys.setdefault(line[1:-1], {})
        elif line.startswith('"') or line.startswith("@"):
            name, _, value = line.partition('"="') if line.startswith('"') and '"="' in line else line.partition("=")
            values[name.strip('"').replace("@", "")] = unquoted(value)
    return keys


def unquoted(value):
    return value.strip('"').replace('\\"', '"').replace("\\\\", "\\")
