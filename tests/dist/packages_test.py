"""What the packages' script would install on a bare machine, with programs in the place of the package tools that only write
down what they were asked."""
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from windows_program import ROOT

SERVERS = {"postgresql", "mariadb-server", "galera-4", "rsync"}
CHECKERS = {"clang", "clang-tidy", "clang-format", "chromium", "wixl", "shellcheck"}
PASCAL = {"fp-compiler-3.2.2", "fpc-source-3.2.2"}
NEEDED = {"g++-mingw-w64-i686-posix", "g++-mingw-w64-x86-64-posix", "wine32:i386", "cmake", "xvfb"}
FAKES = {
    "dpkg-query": "",
    "dpkg": 'case "$1" in --print-architecture) echo amd64 ;; esac',
    "id": "echo 0",
    "apt-get": 'echo "$@" >>"$ASKED"',
    "systemctl": 'echo "$@" >>"$ASKED"',
}


class PackagesTest(unittest.TestCase):
    def setUp(self):
        self.work = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.work)
        shutil.copytree(ROOT / "tools", self.work / "tools")
        for architecture in ("amd64", "i386"):
            driver = self.work / "build" / "odbc" / architecture / "libmaodbc.so"
            driver.parent.mkdir(parents=True)
            driver.touch()
        fakes = self.work / "fakes"
        fakes.mkdir()
        for name, body in FAKES.items():
            (fakes / name).write_text(f"#!/bin/sh\n{body}\n")
            (fakes / name).chmod(0o755)
        self.asked = self.work / "asked"
        self.policy = self.work / "policy-rc.d"

    def run_script(self, *arguments):
        environment = {**os.environ, "PATH": f"{self.work / 'fakes'}:{os.environ['PATH']}", "ASKED": str(self.asked),
                       "KESTREL_POLICY": str(self.policy), "KESTREL_UNITS": str(self.work)}
        done = subprocess.run([str(self.work / "tools" / "packages.sh"), *arguments], env=environment, capture_output=True,
                              text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        lines = self.asked.read_text().splitlines()
        [installing] = [line for line in lines if " install " in line]
        return set(installing.split()), [line for line in lines if line.startswith("disable")]

    def test_running_installs_neither_servers_nor_checkers(self):
        installed, disabled = self.run_script()
        self.assertEqual(NEEDED - installed, set())
        self.assertEqual(installed & (SERVERS | CHECKERS), set())
        self.assertEqual(disabled, [])

    def test_testing_installs_all_and_leaves_no_server_on(self):
        installed, disabled = self.run_script("--all")
        self.assertEqual((NEEDED | SERVERS | CHECKERS | PASCAL) - installed, set())
        self.assertEqual(disabled, ["disable --quiet postgresql", "disable --quiet mariadb"])
        self.assertFalse(self.policy.exists())

    def test_the_samples_of_other_languages_need_no_server(self):
        installed, disabled = self.run_script("--clients")
        self.assertEqual((NEEDED | PASCAL) - installed, set())
        self.assertEqual(installed & (SERVERS | CHECKERS), set())
        self.assertEqual(disabled, [])

    def test_a_server_that_was_there_stays_as_it_is(self):
        (self.work / "postgresql.service").touch()
        _, disabled = self.run_script("--all")
        self.assertEqual(disabled, ["disable --quiet mariadb"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
