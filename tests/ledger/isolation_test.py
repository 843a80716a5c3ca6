"""Whatever changes the ledger runs at serialisable isolation, whatever the server's own default is."""
import unittest

import rules
from databases import OnMariaDb, OnPostgres
from ledger_case import LedgerCase

TABLES = ("rules", "definitions", "codes", "numbers", "leases", "journal")


class IsolationTests:
    def test_everything_is_stored_at_serialisable_isolation(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, "--lease", "4", name=policy)
        for table in TABLES:
            self.refuse_weaker_changes(f"kestrel_{table}")
        with self.assertRaisesRegex(RuntimeError, "not serialisable"):
            self.database.query("UPDATE kestrel_rules SET turn = 0")
        for policy in ("gapless", "fast"):
            code = self.done("issue", self.file("r.csv", "Year\n" + "2024\n" * 6), "--rule", policy)[0].split("\t")[0]
            self.done("void", code, "--rule", policy, "--reason", "twice")
            self.done("adopt", self.file("a.csv", "Code\n1999-000001\n"), "--rule", policy)
            self.import_rule(rules.numbered(dash="/"), name=policy)
            self.assertEqual(self.done("issue", "--rule", policy, "--field", "Year=2024")[0][:5], "2024/")
            counts = self.database.query("SELECT COUNT(*) FROM kestrel_journal WHERE rule_id = "
                                         f"(SELECT id FROM kestrel_rules WHERE name = '{policy}')")
            self.assertGreaterEqual(int(counts[0][0]), 4)


class Postgres(OnPostgres, IsolationTests, LedgerCase):
    def refuse_weaker_changes(self, table):
        self.database.query(
            "CREATE OR REPLACE FUNCTION refuse() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN "
            "IF CURRENT_SETTING('transaction_isolation') <> 'serializable' THEN RAISE 'not serialisable'; END IF; "
            "RETURN NULL; END $$")
        self.database.query(f"CREATE TRIGGER refuse AFTER INSERT OR UPDATE OR DELETE ON {table} "
                            "FOR EACH ROW EXECUTE FUNCTION refuse()")


class MariaDb(OnMariaDb, IsolationTests, LedgerCase):
    def refuse_weaker_changes(self, table):
        for change in ("INSERT", "UPDATE", "DELETE"):
            # The client ends a statement at this delimiter, so that the trigger may have semicolons in it.
            self.database.query(
                f"DELIMITER //\nCREATE TRIGGER {table}_{change} AFTER {change} ON {table} FOR EACH ROW "
                "IF @@tx_isolation <> 'SERIALIZABLE' THEN SIGNAL SQLSTATE '45000' SET MESSAGE_TEXT = "
                "'not serialisable'; END IF //")



if __name__ == "__main__":
    unittest.main()
