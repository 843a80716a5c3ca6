"""The databases that programs are disturbed on: each with the ways to it, and what can happen to it."""
import collections
import sqlite3
import time

from rig.mariadb import GaleraCluster, MariaDbServer
from rig.mariadb import connection_string as mariadb_string
from rig.postgres import PostgresPair, PostgresServer
from rig.postgres import connection_string as postgres_string
from rig.proxy import Proxy
from rig.server import Place
from windows_program import BITS, path

DATABASE = "ledger"
AWAY = 0.3  # seconds that a server is gone for


class Stage:
    """`databases` are the names that programs open it by, in turn. `plan` decides on cuts, see Proxy."""

    def __init__(self, cluster, plan):
        self.cluster = cluster
        self.proxies = []
        self.databases = []
        try:
            cluster.create_database(DATABASE)
            self.proxies = [Proxy(cluster.protocol, server.port, plan) for server in cluster.servers]
            self.databases = self.names([proxy.port for proxy in self.proxies])
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        for proxy in self.proxies:
            proxy.close()
        self.cluster.close()

    def query(self, sql):
        return self.cluster.query(DATABASE, sql)

    def counts(self, of):
        """Cuts over all ways, by kind; of is "made" or "stored"."""
        return sum((getattr(proxy, of) for proxy in self.proxies), collections.Counter())

    def settle(self):
        for proxy in self.proxies:
            proxy.settle()


class Postgres(Stage):
    def __init__(self, plan):
        super().__init__(PostgresServer(), plan)

    def names(self, ports):
        return [postgres_string(ports, DATABASE)]

    def restart(self, number):
        self.cluster.stop(("fast", "immediate", "kill")[number % 3])
        time.sleep(AWAY)
        self.cluster.start()


class MariaDb(Stage):
    def __init__(self, plan):
        super().__init__(MariaDbServer(), plan)

    def names(self, ports):
        return [mariadb_string(ports, DATABASE, BITS)]

    def restart(self, number):
        self.cluster.kill() if number % 2 else self.cluster.stop()
        time.sleep(AWAY)
        self.cluster.start()


class Pair(Stage):
    """PostgreSQL with a standby; programs know both servers."""

    synchronous = True
    lag = 0.0  # seconds by which the standby is behind when the primary ends

    def __init__(self, plan):
        super().__init__(PostgresPair(self.synchronous), plan)

    def names(self, ports):
        return [postgres_string(ports, DATABASE)]

    def fail_over(self, _):
        proxy = self.proxies[self.cluster.servers.index(self.cluster.primary)]
        if not self.lag:
            proxy.refuse()
        self.cluster.fail_over(self.lag)
        proxy.refuse()
        time.sleep(AWAY)
        self.cluster.rejoin()
        proxy.listen()


class AsynchronousPair(Pair):
    """No commit waits for the standby: what it lacks when it takes over is lost, and comes again."""

    synchronous = False
    lag = 0.5


class Galera(Stage):
    """Programs on each of three nodes, of which one is killed and comes back; they know the other two as well."""

    def __init__(self, plan):
        super().__init__(GaleraCluster(), plan)

    def names(self, ports):
        return [mariadb_string(ports[number:] + ports[:number], DATABASE, BITS) for number in range(len(ports))]

    def fail_over(self, number):
        number %= len(self.cluster.servers)
        node, proxy = self.cluster.servers[number], self.proxies[number]
        proxy.refuse()
        node.kill()
        time.sleep(AWAY)
        node.start()
        proxy.listen()


class Sqlite(Stage):
    """A file that programs open themselves: nothing can be cut."""

    def __init__(self, _):
        self.proxies = []
        self.place = Place()
        self.file = self.place.folder / "ledger.db"
        self.databases = [path(self.file)]

    def close(self):
        self.place.close()

    def query(self, sql):
        connection = sqlite3.connect(self.file)
        try:
            return [tuple(str(value) for value in row) for row in connection.execute(sql)]
        finally:
            connection.close()


STAGES = {"postgres": Postgres, "mariadb": MariaDb, "pair": Pair, "asynchronous": AsynchronousPair, "galera": Galera,
          "sqlite": Sqlite}
