"""PostgreSQL on loopback: a server alone, and one with a standby that can take over."""
import glob
import os
import pathlib
import signal
import subprocess
import time

from rig.server import LOOPBACK, Cluster, Server

STOPS = {"smart": signal.SIGTERM, "fast": signal.SIGINT, "immediate": signal.SIGQUIT, "kill": signal.SIGKILL}
CAUGHT_UP_WITHIN = 60  # seconds


def programs():
    found = sorted(glob.glob("/usr/lib/postgresql/*/bin"))
    if not found:
        raise RuntimeError("PostgreSQL is not installed (tools/packages.sh --all installs it)")
    return pathlib.Path(found[-1])


def connection_string(ports, database):
    """For the ODBC driver. With several ports it takes the server that can write; a list of them is longer than the
    driver's own setting takes."""
    list_of_ports = ",".join(map(str, ports))
    port = f"Port={list_of_ports}" if len(ports) == 1 else (
        f"Pqopt={{target_session_attrs=read-write connect_timeout=2 port={list_of_ports}}}")
    return (f"Driver={{PostgreSQL Unicode}};Server={','.join([LOOPBACK] * len(ports))};{port};Database={database};"
            "Uid=postgres;")


class Node(Server):
    """One server of a cluster; `settings` are those of its configuration file."""

    settings = ()

    def initialise(self):
        self.place.run(programs() / "initdb", "-N", "-A", "trust", "-E", "UTF8", "--no-locale", "-U", "postgres",
                       "-D", self.data)

    def command(self):
        options = [f"port={self.port}", f"listen_addresses={LOOPBACK}", f"unix_socket_directories={self.place.folder}",
                   "max_connections=200", "wal_retrieve_retry_interval=200ms", *self.settings]
        return [programs() / "postgres", "-D", self.data, *(word for option in options for word in ("-c", option))]

    def is_ready(self):
        return subprocess.run([programs() / "pg_isready", "-q", "-h", LOOPBACK, "-p", str(self.port)],
                              check=False).returncode == 0

    def start(self):
        """After a kill what the server left behind may hold its memory for a moment."""
        end = time.monotonic() + 10
        while True:
            try:
                super().start()
                return
            except RuntimeError:
                if "still in use" not in self.log()[-1000:] or time.monotonic() > end:
                    raise
                time.sleep(0.2)

    def stop(self, mode="fast"):
        self.end(STOPS[mode])

    def query(self, database, sql):
        """The rows as tuples of texts; RuntimeError with the server's message."""
        done = subprocess.run([programs() / "psql", "-h", LOOPBACK, "-p", str(self.port), "-U", "postgres",
                               "-d", database, "-X", "-q", "-A", "-t", "-F", "\t", "-v", "ON_ERROR_STOP=1", "-c", sql],
                              stdin=subprocess.DEVNULL, capture_output=True, encoding="utf-8", check=False)
        if done.returncode != 0:
            raise RuntimeError(done.stderr)
        return [tuple(line.split("\t")) for line in done.stdout.splitlines()]

    def connection_string(self, database, port=None):
        return connection_string([port or self.port], database)


class PostgresServer(Cluster):
    """One server. What is not of the cluster is the server's own: start, stop, kill, query, port, ..."""

    protocol = "postgres"

    def __init__(self, *settings, in_memory=True):
        super().__init__("postgres", in_memory)
        try:
            self.server = Node(self.place, "postgres")
            self.server.settings = settings
            self.servers = [self.server]
            self.server.initialise()
            self.server.start()
        except BaseException:
            self.close()
            raise

    def __getattr__(self, name):
        if name == "server":  # not made yet
            raise AttributeError(name)
        return getattr(self.server, name)

    def create_database(self, database):
        self.server.query("postgres", f"CREATE DATABASE {database}")


class PostgresPair(Cluster):
    """A primary and a standby that follows it: a synchronous one confirms each commit before the client hears of it."""

    protocol = "postgres"

    def __init__(self, synchronous=True):
        super().__init__("postgres")
        self.synchronous = synchronous
        try:
            self.servers = [Node(self.place, "node1"), Node(self.place, "node2")]
            self.primary, self.standby = self.servers
            self.primary.initialise()
            self.primary.start()
            self.rejoin()
        except BaseException:
            self.close()
            raise

    def rejoin(self):
        """The server that is not the primary becomes a standby, with a new copy of the data; it keeps its port. Returns
        when it follows."""
        # The copy must wait for nobody when it is promoted.
        self._set_synchronous("")
        self.place.run("rm", "-rf", self.standby.data)
        self.place.run(programs() / "pg_basebackup", "-h", LOOPBACK, "-p", self.primary.port, "-U", "postgres", "-D",
                       self.standby.data, "-R", "-N", "-X", "stream", "-c", "fast")
        self.standby.start()
        self._set_synchronous("*" if self.synchronous else "")
        self._wait_until_followed()

    def _set_synchronous(self, names):
        for sql in (f"ALTER SYSTEM SET synchronous_standby_names = '{names}'", "SELECT pg_reload_conf()"):
            self.primary.query("postgres", sql)

    def _wait_until_followed(self):
        state = "sync" if self.synchronous else "async"
        end = time.monotonic() + CAUGHT_UP_WITHIN
        following = "SELECT sync_state FROM pg_stat_replication WHERE state = 'streaming'"
        while self.primary.query("postgres", following) != [(state,)]:
            if time.monotonic() > end:
                raise RuntimeError("the standby does not follow")
            time.sleep(0.05)

    def fail_over(self, lag=0.0):
        """The primary is killed and the standby takes its place, alone until rejoin(). Before that it hears nothing
        of the primary for some seconds."""
        senders = self._stall() if lag else []
        time.sleep(lag)
        self.primary.kill()
        for sender in senders:
            os.kill(sender, signal.SIGKILL)
        if self.standby.query("postgres", f"SELECT pg_promote(true, {CAUGHT_UP_WITHIN})") != [("t",)]:
            raise RuntimeError(f"the standby was not promoted:\n{self.standby.log()[-3000:]}")
        self.primary, self.standby = self.standby, self.primary

    def _stall(self):
        """Stops the processes that send to the standby, and returns them: what they have not sent goes with them."""
        senders = [int(row[0]) for row in self.primary.query("postgres", "SELECT pid FROM pg_stat_replication")]
        for sender in senders:
            os.kill(sender, signal.SIGSTOP)
        return senders

    def query(self, database, sql):
        return self.primary.query(database, sql)

    def create_database(self, database):
        self.primary.query("postgres", f"CREATE DATABASE {database}")

    def connection_string(self, database, port=None):
        return connection_string([port] if port else [node.port for node in self.servers], database)
