"""What tests share that watch a program's way to a MariaDB server, frame by frame."""
from ledger_case import LedgerCase
from rig.proxy import Proxy
from windows_program import BITS, run


class WatchedCase(LedgerCase):
    """The way leads to the first server of the cluster; `before` is asked as Proxy says."""

    def setUp(self):
        super().setUp()
        node = self.cluster.servers[0]
        self.proxy = Proxy("mariadb", node.port, before=self.before)
        self.through = node.connection_string(self.database.database, BITS, self.proxy.port)

    def tearDown(self):
        self.proxy.close()
        super().tearDown()

    def done_through(self, *arguments):
        """The lines of a command that goes that way and does what it should, in silence."""
        result = run("kledger", "--database", self.through, *arguments)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return result.stdout.splitlines()
