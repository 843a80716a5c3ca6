"""A Galera cluster of the tests' own; its packages are those of ./test-clusters."""
import unittest

from rig.mariadb import GaleraCluster


class GaleraTest(unittest.TestCase):
    def test_each_node_in_turn_is_killed_and_comes_back_with_all_data(self):
        with GaleraCluster() as cluster:
            cluster.create_database("numbers")
            cluster.query("numbers", "CREATE TABLE t (x INTEGER PRIMARY KEY)")
            for number, node in enumerate(cluster.servers):
                node.query("numbers", f"INSERT INTO t VALUES ({number})")
            everything = [(str(number),) for number in range(len(cluster.servers))]
            for number, node in enumerate(cluster.servers, start=10):
                node.kill()
                cluster.query("numbers", f"INSERT INTO t VALUES ({number})")
                self.assertEqual(cluster.size(), 2)
                node.start()
                self.assertEqual(cluster.size(), 3)
                everything.append((str(number),))
                self.assertEqual(node.query("numbers", "SELECT x FROM t ORDER BY x"), everything)
            folder = cluster.place.folder
        self.assertFalse(folder.exists())
        self.assertFalse(any(node.runs() for node in cluster.servers))


if __name__ == "__main__":
    unittest.main()
