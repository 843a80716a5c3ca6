"""The program of hosts/samples/clients in languages with tools of their own: each prints the same lines.

Needs what ./test-clients fetches; the 64-bit component must be registered.
"""
import json
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from windows_program import ROOT, path

SAMPLES = ROOT / "hosts" / "samples" / "clients"
HOST = ROOT / "hosts" / "samples" / "hosting" / "Host.cs"
# The first number is the code, the last one that of the transactions that it took.
HOST_LINES = """first: INV-2026-000001, 1
second: INV-2026-000002, 1
the first again: INV-2026-000001, 1
a conflict: INV-2026-000003, 2
a key of SQL Server: INV-2026-000004, 2
a deadlock while the rule asks: INV-2026-000005, 2
a missing value: said 23000, 1
a missing table while the rule asks: said 42P01, 1
what comes then: INV-2026-000006, 1
stored: 6 codes, 6 numbers
definition
"""
DOTNET = ROOT / "build" / "dotnet"
LINES = (ROOT / "tests" / "scripts" / "samples" / "clients.out").read_text(encoding="ascii")
# What the samples use of the framework.
ASSEMBLIES = ("System.Private.CoreLib", "System.Runtime", "System.Console", "System.Collections", "System.Linq",
              "System.Runtime.InteropServices", "System.Runtime.Extensions", "System.Data.Common",
              "System.ComponentModel.Primitives", "System.Threading.Thread")


class Client(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def run_tool(self, tool, *arguments):
        """What it prints, when it succeeds."""
        done = subprocess.run([str(ROOT / "tools" / tool), *map(str, arguments)], cwd=self.folder, capture_output=True,
                              stdin=subprocess.DEVNULL, timeout=300, check=False)
        self.assertEqual(done.returncode, 0, (done.stdout + done.stderr).decode("utf-8", "replace"))
        return done.stdout.decode("ascii").replace("\r", "")


class DotNet(Client):
    def setUp(self):
        super().setUp()
        [self.framework] = (DOTNET / "shared" / "Microsoft.NETCore.App").iterdir()
        self.compile("csc", "-langversion:5", "-target:library", "-out:Kestrel.Interop.dll", path(SAMPLES / "Kestrel.cs"))
        runtime = {"name": "Microsoft.NETCore.App", "version": self.framework.name}
        (self.folder / "Client.runtimeconfig.json").write_text(json.dumps({"runtimeOptions": {"framework": runtime}}))

    def dotnet(self, *arguments):
        return self.run_tool("wine.sh", DOTNET / "dotnet.exe", "exec", *arguments)

    def compile(self, compiler, *arguments):
        [program] = DOTNET.glob(f"sdk/*/Roslyn/bincore/{compiler}.dll")
        references = [f"-r:{path(self.framework / name)}.dll" for name in ASSEMBLIES]
        self.dotnet(path(program), "-nologo", "-noconfig", "-nostdlib", *references, *arguments)


class CSharp(DotNet):
    def test_prints_the_lines(self):
        self.compile("csc", "-langversion:6", "-r:Kestrel.Interop.dll", "-out:Client.dll", path(SAMPLES / "Client.cs"))
        self.assertEqual(self.dotnet("Client.dll"), LINES)

    def test_the_host_tries_again_only_what_may_succeed(self):
        self.compile("csc", "-langversion:7", "-r:Kestrel.Interop.dll", "-out:Client.dll", path(HOST),
                     path(ROOT / "tests" / "clients" / "HostTest.cs"))
        self.assertEqual(self.dotnet("Client.dll"), HOST_LINES)


class VisualBasic(DotNet):
    def test_prints_the_lines(self):
        self.compile("vbc", "-langversion:14", "-vbruntime*", "-r:Kestrel.Interop.dll", "-out:Client.dll",
                     path(SAMPLES / "Client.vb"))
        self.assertEqual(self.dotnet("Client.dll"), LINES)


class ObjectPascal(Client):
    def test_prints_the_lines(self):
        """Against the unit that Free Pascal's own importer makes of the type library."""
        self.run_tool("pascal.sh", ROOT / "tests" / "clients" / "importer.pas", self.folder / "importer.exe")
        library = ROOT / "build" / "x64" / "src" / "generated" / "Kestrel.tlb"
        self.run_tool("wine.sh", self.folder / "importer.exe", path(library), path(self.folder))
        self.run_tool("pascal.sh", SAMPLES / "client.pas", self.folder / "client.exe")
        self.assertEqual(self.run_tool("wine.sh", self.folder / "client.exe"), LINES)


if __name__ == "__main__":
    unittest.main(verbosity=2)
