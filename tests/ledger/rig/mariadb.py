"""MariaDB on loopback: a server alone, and a Galera cluster of three nodes."""
import os
import pathlib
import re
import signal
import subprocess

from rig.server import LOOPBACK, Cluster, Server, free_port

ROOT = pathlib.Path(__file__).resolve().parents[3]
GALERA = pathlib.Path("/usr/lib/galera/libgalera_smm.so")
USER = "ledger"
# Read by the first node when it has started, one a line; the others get it from that one.
FIRST_STATEMENTS = f"CREATE USER IF NOT EXISTS {USER}@'{LOOPBACK}';\nGRANT ALL ON *.* TO {USER}@'{LOOPBACK}';\n"


def driver(bits):
    """The ODBC driver's file, which a connection string names in the place of an installed driver."""
    file = ROOT / "build" / "odbc" / {32: "i386", 64: "amd64"}[bits] / "libmaodbc.so"
    if not file.exists():
        raise RuntimeError("the ODBC driver for MariaDB is not there (tools/packages.sh --all unpacks it)")
    return file


def connection_string(ports, database, bits):
    """For the ODBC driver. With several ports it takes the first server that it reaches; only a list may hold ports."""
    servers = f"{LOOPBACK};Port={ports[0]}" if len(ports) == 1 else ",".join(f"{LOOPBACK}:{port}" for port in ports)
    return f"Driver={{{driver(bits)}}};Server={servers};Database={database};Uid={USER}"


class Node(Server):
    settings = ()

    def initialise(self):
        self.place.run("mariadb-install-db", "--no-defaults", f"--datadir={self.data}", f"--user={self.place.owner}",
                       "--auth-root-authentication-method=normal", "--skip-test-db")

    def command(self):
        return ["/usr/sbin/mariadbd", "--no-defaults", f"--datadir={self.data}", f"--port={self.port}",
                f"--bind-address={LOOPBACK}", f"--socket={self.place.folder}/{self.name}.sock", "--skip-name-resolve",
                f"--pid-file={self.place.folder}/{self.name}.mariadbd", "--innodb-buffer-pool-size=64M",
                "--innodb-log-file-size=32M", "--max-connections=200", *self.settings]

    def is_ready(self):
        try:
            return self.query("mysql", "SELECT 1") == [("1",)]
        except RuntimeError:
            return False

    def stop(self):
        self.end(signal.SIGTERM)

    def query(self, database, sql):
        """The rows as tuples of texts; RuntimeError with the server's message."""
        done = subprocess.run(["mariadb", "--no-defaults", "-h", LOOPBACK, "-P", str(self.port), "-u", USER, "-N", "-B",
                               "-e", sql, database], stdin=subprocess.DEVNULL, capture_output=True, encoding="utf-8",
                              check=False)
        if done.returncode != 0:
            raise RuntimeError(done.stderr)
        return [tuple(line.split("\t")) for line in done.stdout.splitlines()]

    def connection_string(self, database, bits, port=None):
        return connection_string([port or self.port], database, bits)


class Started(Cluster):
    """What one node and three have in common."""

    protocol = "mariadb"

    def __init__(self):
        super().__init__("mysql")
        self.first_statements = self.place.folder / "first.sql"
        self.first_statements.write_text(FIRST_STATEMENTS)
        self.first_statements.chmod(0o644)

    def create_database(self, database):
        self.servers[0].query("mysql", f"CREATE DATABASE {database} CHARACTER SET utf8mb4 COLLATE utf8mb4_bin")


class MariaDbServer(Started):
    """One server. What is not of the cluster is the server's own: start, stop, kill, query, port, ..."""

    def __init__(self, *settings):
        super().__init__()
        try:
            self.server = Node(self.place, "mariadb")
            self.server.settings = settings
            self.servers = [self.server]
            self.server.initialise()
            self.server.launch(f"--init-file={self.first_statements}")
            self.server.wait_until_ready()
        except BaseException:
            self.close()
            raise

    def __getattr__(self, name):
        if name == "server":  # not made yet
            raise AttributeError(name)
        return getattr(self.server, name)


class GaleraNode(Node):
    """It is ready when it has all of the cluster's data and takes changes."""

    def __init__(self, place, name):
        super().__init__(place, name)
        self.group_port, self.transfer_port, self.state_port = free_port(), free_port(), free_port()
        self.address = ""

    @property
    def settings(self):
        options = f"gmcast.listen_addr=tcp://{LOOPBACK}:{self.group_port};ist.recv_addr={LOOPBACK}:{self.transfer_port}"
        return (f"--wsrep-provider={GALERA}", "--wsrep-on=ON", "--binlog-format=ROW", "--innodb-autoinc-lock-mode=2",
                "--wsrep-sst-method=rsync", f"--wsrep-node-address={LOOPBACK}:{self.group_port}",
                f"--wsrep-node-name={self.name}", f"--wsrep-sst-receive-address={LOOPBACK}:{self.state_port}",
                f"--wsrep-provider-options={options};gcache.size=64M;pc.recovery=false", "--wsrep-sync-wait=1",
                f"--wsrep-cluster-address={self.address}")

    def start(self):
        """A node that was killed looks how far it had come, as the service of an installed one does: it is then sent
        what it lacks, by another one that goes on working, and not everything, by one that stands still meanwhile."""
        self.launch(*self._position())
        self.wait_until_ready()

    def _position(self):
        if not (self.data / "ibdata1").exists():
            return []
        found = re.search(r"Recovered position:? *(\S+:-?\d+)", self.place.run(*self.command(), "--wsrep-recover"))
        return [f"--wsrep-start-position={found[1]}"] if found else []

    def is_ready(self):
        try:
            return self.query("mysql", "SHOW STATUS LIKE 'wsrep_local_state_comment'") == [
                ("wsrep_local_state_comment", "Synced")]
        except RuntimeError:
            return False


class GaleraCluster(Started):
    """Three nodes; `servers` are all of them, each can be killed and started again."""

    def __init__(self, nodes=3):
        if not GALERA.exists() or not os.path.exists("/usr/bin/rsync"):
            raise RuntimeError("Galera is not installed (tools/packages.sh --all installs it)")
        super().__init__()
        try:
            self.servers = [GaleraNode(self.place, f"galera{number}") for number in range(1, nodes + 1)]
            for node in self.servers:
                node.address = "gcomm://" + ",".join(f"{LOOPBACK}:{one.group_port}" for one in self.servers)
            first, *others = self.servers
            first.initialise()
            first.launch("--wsrep-new-cluster", f"--init-file={self.first_statements}")
            first.wait_until_ready()
            for node in others:
                node.data.mkdir()
                os.chown(node.data, first.data.stat().st_uid, first.data.stat().st_gid)
                node.start()
        except BaseException:
            self.close()
            raise

    def query(self, database, sql):
        """By a node that runs."""
        return next(node for node in self.servers if node.runs()).query(database, sql)

    def size(self):
        """How many nodes the cluster has at present, as one of them sees it."""
        return int(self.query("mysql", "SHOW STATUS LIKE 'wsrep_cluster_size'")[0][1])
