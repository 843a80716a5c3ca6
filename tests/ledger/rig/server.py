"""A server of the test's own on loopback: its folder, its ports, its processes, and their end in every case."""
import os
import pathlib
import pwd
import random
import shutil
import signal
import socket
import subprocess
import tempfile
import time

LOOPBACK = "127.0.0.1"
READY_WITHIN = 60  # seconds
ENDED_WITHIN = 30
ROOM = 4 << 30  # bytes that a cluster's folder may take

# Clears up when its input ends, which happens however the test ends: the processes whose ids the folder names, then the
# folder. A process id that another program has got meanwhile is told by its command line. Processes that a killed
# server leaves behind end by themselves, and until then may write into the folder once more.
GUARD = r"""
trap '' INT TERM HUP
cat >/dev/null
for file in "$1"/*.pid; do
    [ -f "$file" ] || continue
    id="$(cat "$file")"
    if grep -qF -- "$1" "/proc/$id/cmdline" 2>/dev/null; then kill -KILL "$id"; fi
done
for attempt in 1 2 3 4 5 6 7 8 9 10; do
    rm -rf -- "$1" 2>/dev/null && break
    sleep 0.2
done
"""


def parent_folder():
    """Memory where there is enough of it: what a killed server has written is as safe there, and no test waits for a
    disk. None means the system's folder for temporary files."""
    memory = pathlib.Path("/dev/shm")
    return memory if memory.is_dir() and shutil.disk_usage(memory).free > ROOM else None


def free_port():
    """A port that nobody listens on, below those that outgoing connections get: one of them could take the port of a
    server that is down for a moment."""
    while True:
        port = random.randint(20000, 31999)
        with socket.socket() as probe:
            probe.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
            try:
                probe.bind((LOOPBACK, port))
                return port
            except OSError:
                continue


class Place:
    """A folder that belongs to the user that its servers run as, if any, and goes with them when close() is called or
    the process that made it has ended in any other way."""

    def __init__(self, user=None, in_memory=True):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="kestrel-", dir=parent_folder() if in_memory else None))
        self.identity = {}
        self.owner = user if os.getuid() == 0 else pwd.getpwuid(os.getuid()).pw_name
        if user is not None and os.getuid() == 0:  # servers refuse to run as root
            entry = pwd.getpwnam(user)
            os.chown(self.folder, entry.pw_uid, entry.pw_gid)
            self.identity = {"user": entry.pw_uid, "group": entry.pw_gid, "extra_groups": []}
        self.guard = subprocess.Popen(["sh", "-c", GUARD, "guard", str(self.folder)], stdin=subprocess.PIPE,
                                      stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def run(self, *command):
        """Runs a program as the servers' user to its end; its output, or RuntimeError with it."""
        done = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, encoding="utf-8", cwd="/", check=False, **self.identity)
        if done.returncode != 0:
            raise RuntimeError(f"{command[0]} ended with {done.returncode}: {done.stdout}")
        return done.stdout

    def close(self):
        self.guard.stdin.close()
        self.guard.wait()


class Server:
    """One server process; subclasses say how it is started and asked. Close it, or use it in a `with`."""

    def __init__(self, place, name):
        self.place = place
        self.name = name
        self.port = free_port()
        self.process = None

    @property
    def data(self):
        return self.place.folder / self.name

    def log(self):
        return (self.place.folder / f"{self.name}.log").read_text(encoding="utf-8", errors="replace")

    def command(self):
        """The command line that starts the server; it names the place's folder."""
        raise NotImplementedError

    def is_ready(self):
        raise NotImplementedError

    def runs(self):
        return self.process is not None and self.process.poll() is None

    def launch(self, *more):
        with open(self.place.folder / f"{self.name}.log", "ab") as log:
            self.process = subprocess.Popen([str(word) for word in (*self.command(), *more)], stdin=subprocess.DEVNULL,
                                            stdout=log, stderr=log, cwd="/", **self.place.identity)
        (self.place.folder / f"{self.name}.pid").write_text(str(self.process.pid))

    def wait_until_ready(self):
        end = time.monotonic() + READY_WITHIN
        while not self.is_ready():
            if not self.runs() or time.monotonic() > end:
                raise RuntimeError(f"{self.name} did not start:\n{self.log()[-3000:]}")
            time.sleep(0.05)

    def start(self):
        self.launch()
        self.wait_until_ready()

    def end(self, with_signal):
        """Sends the signal and waits for the end; a server that runs no more is content with it."""
        if self.runs():
            self.process.send_signal(with_signal)
            try:
                self.process.wait(ENDED_WITHIN)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
                raise RuntimeError(f"{self.name} did not end:\n{self.log()[-3000:]}") from None

    def kill(self):
        self.end(signal.SIGKILL)


class Cluster:
    """Servers in one place; closing it ends them all at once. The servers of a subclass stand in `servers`."""

    def __init__(self, user, in_memory=True):
        self.place = Place(user, in_memory)
        self.servers = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        for server in self.servers:
            server.kill()
        self.place.close()
