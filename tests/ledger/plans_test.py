"""What a code and its audit cost does not grow with their number, also while the server knows nothing of the tables yet."""
import unittest

import rules
from databases import OnMariaDb, OnPostgres
from ledger_case import LedgerCase

CODES = 400
MOST_READ = 12  # rows and entries of indexes for a code, of all tables together


class PostgresPlans(OnPostgres, LedgerCase):
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


class MariaDbPlans(OnMariaDb, LedgerCase):
    """The server counts a table anew some seconds after it was filled; until then it takes it for empty."""

    AUDITED = 5_000
    MOST_AUDITED = 20  # rows for a code

    def read_so_far(self):
        rows = self.database.query("SELECT SUM(variable_value) FROM information_schema.global_status "
                                   "WHERE variable_name LIKE 'HANDLER_READ%'")
        return int(float(rows[0][0]))

    def test_an_audit_reads_each_row_a_few_times(self):
        self.import_rule(rules.numbered(), "--policy", "fast", "--lease", "1000")
        self.done("issue", self.file("r.csv", "Year\n" + "2024\n" * self.AUDITED))
        before = self.read_so_far()
        self.done("audit")
        read = self.read_so_far() - before
        self.assertGreater(read, self.AUDITED)
        self.assertLess(read, self.MOST_AUDITED * self.AUDITED)


if __name__ == "__main__":
    unittest.main()
