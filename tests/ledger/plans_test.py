"""What a code costs on PostgreSQL does not grow with its series, also while the server knows nothing of the tables yet."""
import unittest

import rules
from databases import OnPostgres
from ledger_case import LedgerCase

CODES = 400
MOST_READ = 12  # rows and entries of indexes for a code, of all tables together


class Plans(OnPostgres, LedgerCase):
    def keep_unknown(self):
        """Or the server would look at the tables by itself after a while."""
        for table in ("codes", "numbers", "leases", "rules"):
            self.database.query(f"ALTER TABLE kestrel_{table} SET (autovacuum_enabled = false)")

    def read_so_far(self):
        rows = self.database.query(
            "SELECT (SELECT SUM(idx_tup_read) FROM pg_stat_user_indexes WHERE relname LIKE 'kestrel%') + "
            "(SELECT SUM(seq_tup_read) FROM pg_stat_user_tables WHERE relname IN ('kestrel_codes', 'kestrel_numbers'))")
        return int(rows[0][0])

    def test_a_code_reads_as_little_late_in_a_series_as_early(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, "--lease", "10", name=policy)
            self.keep_unknown()
            before = self.read_so_far()
            self.done("issue", self.file("r.csv", "Year\n" + "2024\n" * CODES), "--rule", policy)
            read = self.read_so_far() - before
            self.assertGreater(read, 0)
            self.assertLess(read, MOST_READ * CODES, policy)


if __name__ == "__main__":
    unittest.main()
