"""What the ledger promises: a request gets one code, and whatever was changed behind its back is found."""
import concurrent.futures
import os
import pathlib
import re
import shutil
import signal
import socket
import subprocess
import tempfile
import threading
import time
import unittest

import rules
from databases import OnMariaDb, OnPostgres, OnSqlite, SqliteFile
from ledger_case import LedgerCase
from rig import postgres
from rig.server import LOOPBACK
from windows_program import ROOT, command, path, run

DATABASE_FAILED, STOPPED = 5, 6
LONGEST = 240  # seconds that a program may take on a machine with much else to do


class PromiseTests:
    def issue_keys(self, *keys, rule="rule", code=0, years=None):
        years = years or ["2024"] * len(keys)
        records = self.file("keys.csv", "Key,Year\n" + "".join(f"{key},{year}\n" for key, year in zip(keys, years)))
        return self.objects("issue", records, "--rule", rule, "--key-column", "Key", code=code)[:-1]

    def test_the_same_key_gets_the_same_code(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
            first = self.issue_keys("a", "b", "a", rule=policy)
            self.assertEqual([line["code"] for line in first], ["2024-000001", "2024-000002", "2024-000001"])
            self.assertEqual([line.get("before", False) for line in first], [False, False, True])
            again = self.issue_keys("b", "c", "a", rule=policy)
            self.assertEqual([line["code"] for line in again[::2]], ["2024-000002", "2024-000001"])
            self.assertEqual([line.get("before", False) for line in again], [True, False, True])
            one = self.kledger("issue", "--rule", policy, "--key", "own", "--field", "Year=2024")
            self.assertEqual((one.returncode, one.stderr), (0, ""))
            same = self.kledger("issue", "--rule", policy, "--key", "own", "--field", "Year=2024")
            self.assertEqual((same.returncode, same.stdout), (0, one.stdout))
            self.assertIn("was issued before for key", same.stderr)
            self.assertEqual(self.done("audit", "--rule", policy)[-1].split(",")[1], " 0 findings")

    def test_the_same_key_with_other_values_is_refused_with_both_shown(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
            lines = self.issue_keys("a", "a", rule=policy, years=["2024", "2023"], code=3)
            self.assertIn('key "a" has code 2024-000001 for {', lines[1]["refused"])
            self.assertIn('"Year":"2024"', lines[1]["refused"])
            self.assertIn('"Year":"2023"', lines[1]["refused"])
            self.assertEqual(self.issue_keys("a", rule=policy, years=["2022"], code=3)[0]["line"], 2)

    def test_a_key_of_a_file_is_the_same_without_the_file(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
            self.issue_keys("a", "b", rule=policy)
            again = self.objects("issue", "--rule", policy, "--key", "b", "--field", "Year=2024")
            self.assertEqual([(line["code"], line["before"]) for line in again], [("2024-000002", True)])
            self.assertIn('key "b" has code 2024-000002',
                          self.refused("issue", "--rule", policy, "--key", "b", "--field", "Year=2023"))

    def test_programs_at_once_with_the_same_keys_share_the_codes(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, "--lease", "10", name=policy)
            records = self.file("records.csv", "Key,Year\n" + "".join(f"k{number},2024\n" for number in range(40)))
            line = command("kledger", ["--database", self.database.name, "--json", "issue", records, "--rule", policy,
                                       "--key-column", "Key"])
            running = [subprocess.Popen(line, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, encoding="utf-8")
                       for _ in range(3)]
            outputs = [process.communicate(timeout=LONGEST)[0] for process in running]
            self.assertEqual([process.returncode for process in running], [0, 0, 0])
            codes = [re.findall(r'"code":"([^"]+)"', output) for output in outputs]
            self.assertEqual(len(set(codes[0])), 40)
            self.assertEqual(codes[0], codes[1])
            self.assertEqual(codes[0], codes[2])
            audit = self.kledger("audit", "--rule", policy)
            self.assertEqual(audit.returncode, 0, audit.stdout)

    def test_a_ticket_is_found(self):
        self.import_rule(rules.numbered())
        self.done("issue", "--key", "order 7", "--field", "Year=2024")
        found = self.objects("find", "--ticket", "order 7")[0]
        self.assertEqual((found["code"], found["rule"], found["fields"]), ("2024-000001", "rule", {"Year": "2024"}))
        self.assertIn('no code has ticket "order 8"', self.refused("find", "--ticket", "order 8"))
        own = self.objects("explain", self.issue("2024"))[0]["ticket"]
        self.assertEqual(self.objects("find", "--ticket", own)[0]["code"], "2024-000002")

    def test_definitions_are_kept(self):
        self.import_rule(rules.numbered())
        old = self.issue("2024")
        self.import_rule(rules.numbered(dash="/"))
        new = self.issue("2024")
        self.assertEqual(new, "2024/000001")
        for code, definition, dash in ((old, 1, "-"), (new, 2, "/")):
            shown = self.objects("explain", code)[0]
            self.assertEqual((shown["definition"], shown["bands"]["Dash"]), (definition, dash))
        self.import_rule(rules.numbered(dash="/"), "--policy", "fast")
        history = self.objects("rule", "history")
        self.assertEqual([line["what"] for line in history if "act" in line], ["import", "import", "settings"])
        self.assertEqual([line["text"] for line in history if "text" in line], [rules.numbered(), rules.numbered(dash="/")])
        self.assertEqual(self.done("audit")[-1], "2 codes, 0 findings")

    def test_the_same_definition_again_changes_nothing(self):
        self.import_rule(rules.numbered())
        self.assertIn("(unchanged)", self.import_rule(rules.numbered())[0])
        self.assertEqual(len(self.objects("rule", "history")), 2)

    def test_a_renamed_number_band_goes_on(self):
        self.import_rule(rules.numbered())
        self.issue("2024")
        self.import_rule(rules.numbered().replace("0=Number", "0=Counter"))
        self.assertEqual(self.issue("2024"), "2024-000002")
        self.assertEqual(self.done("audit")[-1], "2 codes, 0 findings")

    def test_void_needs_a_reason_and_tells_when_and_who(self):
        self.import_rule(rules.numbered())
        code = self.issue("2024")
        for reason in ("--reason=", "--reason= "):
            self.assertIn("the reason is empty", self.refused("void", code, reason, "--rule", "rule"))
        self.done("void", code, "--reason", "twice")
        shown = self.objects("explain", code)[0]
        self.assertEqual((shown["state"], shown["reason"]), ("void", "twice"))
        self.assertRegex(shown["voidAt"], r"^\d{4}-\d\d-\d\dT")
        self.assertIn("@", shown["voidBy"])

    def test_of_two_voids_at_once_one_is_told(self):
        self.import_rule(rules.numbered())
        code = self.issue("2024")
        running = [subprocess.Popen(command("kledger", ["--database", self.database.name, "void", code, "--reason", reason]),
                                    stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")
                   for reason in ("one", "two")]
        results = [process.communicate(timeout=LONGEST) for process in running]
        self.assertEqual(sorted(process.returncode for process in running), [0, 1], results)
        loser = next(error for process, (_, error) in zip(running, results) if process.returncode == 1)
        self.assertIn("is void already: " + self.objects("explain", code)[0]["reason"], loser)

    def test_values_that_no_table_holds_are_refused(self):
        self.import_rule(rules.lettered())
        text = "Text\nabc\na\0c\nxyz\n".encode("utf-16") + b""
        lines = self.objects("issue", self.file("records.csv", text), code=3)
        self.assertEqual([line.get("code") for line in lines[:-1]], ["abc001", None, "xyz001"])
        half = "\ufeffText\nab".encode("utf-16-le") + b"\x00\xd8" + "\n".encode("utf-16-le")
        lines = self.objects("issue", self.file("records.csv", half), code=3)
        self.assertIn("half a surrogate pair", lines[0]["refused"])
        self.assertEqual(self.codes(), ["abc001", "xyz001"])

    def test_no_line_can_be_forged(self):
        self.import_rule(rules.numbered())
        records = self.file("records.csv", 'Year,Note\n2024,"x\n2024-999999\t2024"\n')
        self.assertEqual(self.done("issue", records, "--keep"), ["2024-000001\t2024\tx\\n2024-999999\\t2024"])
        shown = self.objects("explain", "2024-000001")[0]
        self.assertEqual(shown["stored"]["Note"], "x\n2024-999999\t2024")
        self.import_rule(rules.lettered(), name="letters")
        lines = self.objects("issue", self.file("letters.csv", 'Text\n"a\nb"\n'), "--rule", "letters", code=3)
        self.assertIn("control character", lines[0]["refused"])
        for name, cause in (("a\nb", "control character"), (" ", "blanks alone"), ("a\u2028b", "control character")):
            self.assertIn(cause, self.refused("rule", "import", self.file("r.rule", rules.lettered()), "--name", name))
        self.done("void", "2024-000001", "--reason", "a\nb")
        self.assertIn("a\\nb", self.done("explain", "2024-000001")[-1])

    def test_names_with_quotes_are_names(self):
        name = "it's a \"rule\"; -- %s {x} \\"
        self.import_rule(rules.numbered(), "--name", name)
        self.done("issue", "--rule", name, "--key", name, "--field", "Year=2024")
        self.done("void", "2024-000001", "--rule", name, "--reason", name)
        self.assertEqual(self.objects("rule", "list")[0]["rule"], name)
        found = self.objects("find", "--ticket", name)[0]
        self.assertEqual((found["rule"], found["ticket"], found["state"]), (name, name, "void"))
        self.assertEqual(self.objects("explain", "2024-000001")[0]["reason"], name)
        heads = self.write_heads()
        self.assertEqual(self.done("audit", "--against", heads)[-1], "1 code, 0 findings")

    def leave_a_lease(self):
        """A program of the fast policy that is killed at work."""
        records = self.file("many.csv", "Year\n" + "2025\n" * 60_000)
        process = subprocess.Popen(command("kledger", ["--database", self.database.name, "issue", records, "--rule", "fast"]),
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        process.stdout.readline()
        process.kill()
        process.wait(timeout=LONGEST)
        process.stdout.close()

    def test_leases_of_programs_that_are_gone_are_closed(self):
        self.import_rule(rules.numbered(), "--policy", "fast", name="fast")
        self.leave_a_lease()
        self.assertIn("gone; close it with: kledger lease close", "\n".join(self.done("doctor")))
        self.assertRegex(self.done("lease", "close")[-1], r"^(1 lease|2 leases) closed$")
        self.assertEqual(self.done("lease", "close")[-1], "0 leases closed")
        self.leave_a_lease()
        self.database.query("UPDATE kestrel_leases SET owner = 'ELSEWHERE:7' WHERE state = 'open'")
        self.assertIn("on another machine", "\n".join(self.done("doctor")))
        self.assertEqual(self.done("lease", "close")[-1], "0 leases closed")
        self.assertRegex(self.done("lease", "close", "--owner", "ELSEWHERE:7")[-1], r"^(1 lease|2 leases) closed$")
        self.assertEqual(self.kinds(code=4), {"lease"}, "the owner was changed behind its back")

    def test_numbers_of_a_closed_lease_are_used_again(self):
        self.import_rule(rules.numbered(), "--policy", "fast", name="fast")
        self.leave_a_lease()
        self.done("lease", "close")
        before = len(self.codes())
        self.done("issue", "--rule", "fast", "--field", "Year=2025")
        lines = self.done("audit")
        self.assertEqual(lines[-1], f"{before + 1} codes, 0 findings")
        self.assertFalse([line for line in lines if line.startswith("lease: ")])

    def kinds(self, *arguments, code):
        found = [line for line in self.objects("audit", *arguments, code=code) if "finding" in line]
        for line in found:
            self.assertTrue(line["text"] and line["meaning"] and line["remedy"], line)
        return {line["finding"] for line in found}

    def write_heads(self):
        heads = path(self.folder / "heads")
        self.done("audit", "--write-heads", heads)
        return heads

    def test_changes_behind_its_back_are_found(self):
        """One in each table; AuditTest changes every value and row, on the engine that it has at hand."""
        self.import_rule(rules.numbered())
        self.done("issue", self.file("r.csv", "Year\n" + "2024\n" * 3))
        self.import_rule(rules.numbered(), "--policy", "fast", name="fast")
        self.done("issue", "--rule", "fast", "--field", "Year=2024")
        heads = self.write_heads()
        self.done("issue", "--rule", "rule", "--field", "Year=2024")
        self.assertEqual(self.done("audit", "--against", heads)[-1], "5 codes, 0 findings", "more was issued since")
        expected = set()
        for kind, change in (
                ("settings", "UPDATE kestrel_rules SET lease_size = lease_size + 1"),
                ("definition", "UPDATE kestrel_definitions SET stored_by = 'x'"),
                ("changed", "UPDATE kestrel_codes SET fields = '{}' WHERE code = '2024-000001'"),
                ("lost", "DELETE FROM kestrel_codes WHERE code = '2024-000002'"),
                ("uncounted", "DELETE FROM kestrel_numbers WHERE code = '2024-000004'"),
                ("lease", "UPDATE kestrel_leases SET owner = 'x'"),
                ("head", "DELETE FROM kestrel_numbers WHERE code = '2024-000003'"),
                ("act", "UPDATE kestrel_journal SET acted_by = 'x'")):
            self.assertNotIn(kind, expected)
            self.database.query(change)
            expected.add(kind)
            self.assertLessEqual(expected, self.kinds("--against", heads, code=4), change)

    def test_audits_run_while_programs_issue(self):
        self.import_rule(rules.numbered(), "--policy", "fast", "--lease", "7", name="fast")
        records = self.file("many.csv", "Year\n" + "2025\n" * 700)
        process = subprocess.Popen(command("kledger", ["--database", self.database.name, "issue", records]),
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        process.stdout.readline()
        reader = threading.Thread(target=process.stdout.read)
        reader.start()
        audits = 0
        while process.poll() is None:
            audit = self.kledger("audit")
            self.assertEqual(audit.returncode, 0, audit.stdout)
            audits += 1
        reader.join()
        process.stdout.close()
        self.assertEqual(process.returncode, 0)
        self.assertGreater(audits, 0)

    def test_what_can_be_put_right_is(self):
        self.import_rule(rules.numbered())
        code = self.issue("2024")
        self.done("void", code, "--reason", "twice")
        self.database.query("UPDATE kestrel_codes SET void_act = 0")
        self.database.query("UPDATE kestrel_rules SET policy = 'fast', lease_size = 7, settings = '{\"step\":5}'")
        found = {line["finding"] for line in self.objects("audit", code=4) if "finding" in line}
        self.assertEqual(found, {"void", "settings"})
        self.assertEqual(self.done("audit", "--repair")[-1], "1 code, 0 findings")
        self.assertEqual(self.objects("explain", code)[0]["state"], "void")
        self.assertEqual(self.objects("rule", "history")[-2]["what"], "repair")

    def test_a_key_that_is_taken_is_no_fault_of_the_database(self):
        """It ends at once or with the patience, and with the exit code of a request that cannot be met."""
        self.import_rule(rules.numbered())
        self.issue("2024")
        self.database.query("CREATE UNIQUE INDEX own ON kestrel_codes (definition)")
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy)
            self.assertIn("the database holds a row with that key already",
                          self.refused("--patience", "1", "issue", "--field", "Year=2024"))
        self.assertEqual(self.codes(), ["2024-000001"])

    def test_doctor_tells_what_the_database_promises(self):
        self.import_rule(rules.numbered())
        facts = {line["fact"]: line for line in self.objects("doctor")}
        self.assertLessEqual({"engine", "durability", "isolation", "clock"}, set(facts))
        self.assertFalse([line for line in facts.values() if "losesCommits" in line])
        self.issue("2024")
        self.database.query("UPDATE kestrel_codes SET stored_at = '2999-01-01T00:00:00Z'")
        self.assertIn("set its clock", {line["fact"]: line for line in self.objects("doctor")}["clock"]["warning"])

    def test_output_that_nobody_takes_ends_the_run(self):
        self.import_rule(rules.numbered())
        records = self.file("many.csv", "Year\n" + "2025\n" * 2_000)
        with open("/dev/full", "wb") as full:
            process = subprocess.run(command("kledger", ["--database", self.database.name, "issue", records]), check=False,
                                     stdin=subprocess.DEVNULL, stdout=full, stderr=subprocess.PIPE,
                                     encoding="utf-8", timeout=LONGEST)
        self.assertEqual(process.returncode, STOPPED, process.stderr)
        self.assertEqual(self.codes(), ["2025-000001"])
        self.assertIn("line 2: code 2025-000001 is stored and perhaps not shown", process.stderr)

    def test_a_reader_that_goes_away_ends_the_run(self):
        records = self.file("many.csv", "Year\n" + "2025\n" * 60_000)
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
            with subprocess.Popen(command("kledger", ["--database", self.database.name, "issue", records, "--rule", policy]),
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                  encoding="utf-8") as process:
                shown = process.stdout.readline().split("\t")[0]
                process.stdout.close()
                named = re.findall(r"code (\S+) is stored and perhaps not shown", process.stderr.read())
            self.assertEqual(process.returncode, STOPPED)
            stored = [row[0] for row in self.database.query(
                f"SELECT code FROM kestrel_codes WHERE rule_id = (SELECT id FROM kestrel_rules WHERE name = '{policy}')")]
            self.assertLessEqual(set(named), set(stored))
            # What was written into the pipe before it was closed was shown, as far as the program can know.
            self.assertLess(len(stored), 2_000)
            self.assertIn(shown, stored)
            self.assertIn(max(stored), named)
            self.assertEqual(self.database.query("SELECT owner FROM kestrel_leases WHERE state = 'open'"), [])

    def test_a_signal_ends_the_run_after_the_transaction_in_hand(self):
        self.import_rule(rules.numbered())
        records = self.file("many.csv", "Year\n" + "2025\n" * 60_000)
        process, out = self.start(records)
        process.send_signal(signal.SIGINT)
        error = process.communicate(timeout=LONGEST)[1]
        self.assertEqual(process.returncode, STOPPED, error)
        self.assertIn("kledger: stopped; everything that was stored is shown", error)
        self.assertEqual([line.split("\t")[0] for line in out.read_text().splitlines()], self.codes())

    def start(self, records):
        """A program that has begun to print into a file."""
        out = self.folder / "out"
        with open(out, "wb") as file:
            process = subprocess.Popen(command("kledger", ["--database", self.database.name, "issue", records]),
                                       stdin=subprocess.DEVNULL, stdout=file, stderr=subprocess.PIPE, encoding="utf-8")
        while not out.read_text():
            self.assertIsNone(process.poll())
            time.sleep(0.02)
        return process, out


class ReadingTests:
    """How keys and files are read, whatever engine the ledger lies on: one is enough."""

    def test_bad_keys_are_refused(self):
        self.import_rule(rules.numbered())
        lines = self.issue_keys("", "x" * 121, "k", code=3)
        self.assertEqual([line.get("code") for line in lines], [None, None, "2024-000001"])
        self.assertIn("the key is empty", lines[0]["refused"])
        self.assertIn("121 characters", lines[1]["refused"])
        for option in ("--key", "--key-column"):
            self.assertIn("it is empty", self.refused("issue", f"{option}=", "--field", "Year=2024", code=2))
        self.assertIn("--key is for one record", self.refused("issue", self.file("r.csv", "Year\n2024\n"), "--key", "k"))
        self.assertIn("--key-column is for a file", self.refused("issue", "--key-column", "k", "--field", "Year=2024"))
        self.assertIn("check --key-column", self.refused("issue", self.file("r.csv", "Year\n2024\n"), "--key-column", "Key"))

    def test_utf_8_named_as_a_code_page_keeps_no_byte_order_mark(self):
        self.import_rule(rules.numbered())
        records = self.file("records.csv", "\ufeffYear\n2024\n".encode())
        self.assertEqual(self.done("issue", records, "--code-page", "65001"), ["2024-000001\t2024"])

    def test_heads_are_a_file_of_ones_own_or_none(self):
        self.import_rule(rules.numbered())
        self.issue("2024")
        heads = pathlib.Path(self.folder / "heads")
        self.write_heads()
        lines = heads.read_text().splitlines()
        self.assertIn("cannot open", self.refused("audit", "--against", path(self.folder / "none")))
        self.assertIn("holds no heads", self.refused("audit", "--against", self.file("other", "Year\n2024\n")))
        self.assertIn("line 2: this is no head", self.refused("audit", "--against", self.file("cut", lines[0] + "\n{\"rule\"")))
        self.assertIn("cannot", self.kledger("audit", "--write-heads", path(self.folder / "no folder" / "heads")).stderr)
        # A rule that has another name now is known by its journal; this one's journal is nobody's.
        gone = re.sub(r'"seal":"[0-9a-f]{8}', '"seal":"00000000', heads.read_text()).replace('"rule":"rule"', '"rule":"other"')
        self.assertEqual(self.kinds("--against", self.file("more", gone), code=4), {"head"}, "a rule that is gone")


class Sqlite(OnSqlite, PromiseTests, ReadingTests, LedgerCase):
    def test_an_older_copy_is_found(self):
        self.import_rule(rules.numbered())
        self.issue("2024")
        older = self.folder / "older.db"
        self.snapshot(older)
        self.issue("2024")
        heads = self.write_heads()
        self.restore(older)
        self.assertEqual(self.done("audit")[-1], "1 code, 0 findings", "in itself it is in order")
        self.assertEqual(self.kinds("--against", heads, code=4), {"head"})

    def snapshot(self, file):
        self.database.query("PRAGMA wal_checkpoint(TRUNCATE)")
        shutil.copy(self.database.file, file)

    def restore(self, file):
        for suffix in ("-wal", "-shm"):
            pathlib.Path(f"{self.database.file}{suffix}").unlink(missing_ok=True)
        shutil.copy(file, self.database.file)

    def test_a_file_that_is_deleted_or_replaced_at_work_is_noticed(self):
        self.import_rule(rules.numbered())
        copy = self.folder / "copy.db"
        self.snapshot(copy)
        records = self.file("many.csv", "Year\n" + "2025\n" * 60_000)
        changes = {"moved": lambda: self.database.file.rename(self.folder / "moved.db"),
                   "deleted": self.database.file.unlink,
                   "replaced": lambda: shutil.copy(copy, self.folder / "new.db") and
                   (self.folder / "new.db").rename(self.database.file)}
        for what, change in changes.items():
            self.restore(copy)
            process, out = self.start(records)
            change()
            error = process.communicate(timeout=LONGEST)[1]
            self.assertEqual(process.returncode, DATABASE_FAILED, f"{what}: {error}")
            self.assertIn("was deleted or replaced while it was in use", error, what)
            self.assertLess(len(out.read_text().splitlines()), 2_000, what)

    def test_a_ledger_of_version_1_is_brought_up(self):
        shutil.copy(ROOT / "tests" / "ledger" / "data" / "schema1.db", self.database.file)
        before = self.database.file.read_bytes()
        for arguments in (("rule", "list"), ("audit",), ("issue", "--rule", "items", "--field", "Year=2024")):
            self.assertIn("bring it up with: kledger upgrade", self.refused(*arguments))
        self.assertEqual([row[0] for row in self.database.query("SELECT version FROM kestrel_schema")], [1])
        self.assertEqual(len(before), len(self.database.file.read_bytes()))
        self.assertEqual(self.done("upgrade"), ["brought up from schema 1 to 3: 3 rules, 42 codes"])
        self.assertEqual(self.done("upgrade"), ["the ledger is up already (schema 3)"])
        self.assertEqual(self.database.query("SELECT name FROM sqlite_schema WHERE name LIKE '%old%'"), [])
        shown = self.objects("explain", "2024-000001", "--rule", "documents")[0]
        self.assertEqual((shown["state"], shown["reason"]), ("void", "a typing error"))
        self.assertEqual(self.objects("explain", "2024-000007", "--rule", "documents")[0]["stored"], {"Year": "2024", "Who": "x"})
        self.assertEqual([line["codes"] for line in self.objects("rule", "list")], [6, 35, 1])
        found = {line["finding"] for line in self.objects("audit", code=4) if "finding" in line}
        self.assertEqual(found, {"gap"}, "the numbers that adoption had left out")
        self.assertEqual(self.done("issue", "--rule", "documents", "--field", "Year=2024"), ["2024/000002\t2024"])
        self.assertEqual(self.done("issue", "--rule", "items", "--field", "Year=2025"), ["2025-000021\t2025"])

    def test_a_ledger_of_version_2_is_brought_up(self):
        shutil.copy(ROOT / "tests" / "ledger" / "data" / "schema2.db", self.database.file)
        for arguments in (("rule", "list"), ("audit",), ("issue", "--rule", "items", "--field", "Year=2024")):
            self.assertIn("bring it up with: kledger upgrade", self.refused(*arguments))
        before = self.database.query("SELECT * FROM kestrel_codes ORDER BY rule_id, code")
        self.assertEqual(self.done("upgrade"), ["brought up from schema 2 to 3: 4 rules, 36 codes"])
        self.assertEqual(self.done("upgrade"), ["the ledger is up already (schema 3)"])
        self.assertEqual(self.database.query("SELECT version FROM kestrel_schema"), [(3,)])
        self.assertEqual(self.database.query("SELECT DISTINCT settings FROM kestrel_rules"), [("{}",)])
        self.assertEqual(self.database.query("SELECT * FROM kestrel_codes ORDER BY rule_id, code"), before)
        shown = self.objects("explain", "2024-000002", "--rule", "documents")[0]
        self.assertEqual((shown["state"], shown["reason"]), ("void", "a typing error"))
        found = {line["finding"] for line in self.objects("audit", code=4) if "finding" in line}
        self.assertEqual(found, {"gap"}, "the numbers that adoption had left out")
        again = ("issue", "--rule", "documents", "--key", "order 7", "--field", "Year=2024")
        self.assertEqual(self.done(*again), ["2024-000004\t2024"])
        self.assertEqual(self.done("issue", "--rule", "items", "--field", "Year=2024"), ["2024-000026\t2024"])

    def test_what_is_no_ledger_is_left_alone(self):
        self.assertIn("is a folder", self.refused_on(path(self.folder)))
        other = SqliteFile()
        try:
            other.query("CREATE TABLE addresses (name TEXT)")
            self.assertIn("a database of something else", self.refused_on(other.name))
            self.assertEqual(other.query("SELECT name FROM sqlite_schema"), [("addresses",)])
        finally:
            other.close()
        (self.folder / "it's.db").write_bytes(b"")
        result = run("kledger", "--database", path(self.folder / "it's.db"), "rule", "import", self.file("r.rule", rules.numbered()))
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def refused_on(self, database):
        result = run("kledger", "--database", database, "rule", "list")
        self.assertEqual((result.returncode, result.stdout, len(result.stderr.splitlines())), (1, "", 1), result.stderr)
        return result.stderr


class SilentServer:
    """Takes connections and never says a word."""

    def __enter__(self):
        self.listener = socket.socket()
        self.listener.bind(("127.0.0.1", 0))
        self.listener.listen(16)
        return self.listener.getsockname()[1]

    def __exit__(self, *_):
        self.listener.close()


class Postgres(OnPostgres, PromiseTests, LedgerCase):
    def test_patience_bounds_every_wait(self):
        """All at once, on a server that never says a word, where none is, and at a table that somebody else has."""
        self.import_rule(rules.numbered())
        this_port = f"Port={self.server.port}"
        lock = [postgres.programs() / "psql", "-h", LOOPBACK, "-p", str(self.server.port), "-U", "postgres", "-d",
                self.database.database, "-X", "-q", "-A", "-t"]
        with SilentServer() as port, concurrent.futures.ThreadPoolExecutor() as pool, \
                subprocess.Popen(lock, stdin=subprocess.PIPE, stdout=subprocess.PIPE, encoding="utf-8") as holder:
            holder.stdin.write("BEGIN; LOCK TABLE kestrel_codes; SELECT 1;\n")
            holder.stdin.flush()
            holder.stdout.readline()
            databases = [self.database.name.replace(this_port, f"Port={silent}") for silent in (port, 1)]
            for waited in [pool.submit(self.assert_gives_up, database, 3) for database in (*databases, self.database.name)]:
                waited.result()

    def assert_gives_up(self, database, patience):
        begin = time.monotonic()
        result = run("kledger", "--database", database, "--patience", patience, "issue", "--field", "Year=2024")
        took = time.monotonic() - begin
        self.assertEqual(result.returncode, DATABASE_FAILED, result.stderr)
        self.assertGreater(took, patience - 1, result.stderr)
        self.assertLess(took, patience + 12, f"its patience, and time to start: {result.stderr}")

    def test_a_database_that_can_lose_a_commit_is_named_once(self):
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
        self.database.query(f"ALTER DATABASE {self.database.database} SET synchronous_commit = off")
        records = self.file("records.csv", "Year\n2024\n2024\n")
        told = [line for line in self.kledger("issue", records, "--rule", "gapless").stderr.splitlines() if "gapless" in line]
        self.assertEqual(told, ["kledger: gapless is not sure here: a commit can be lost with the power after it was reported; "
                                "set synchronous_commit and fsync to on"])
        self.assertNotIn("not sure", self.kledger("issue", records, "--rule", "fast").stderr)
        facts = {line["fact"]: line for line in self.objects("doctor")}
        self.assertTrue(facts["durability"]["losesCommits"])

    def test_a_server_that_takes_no_changes_yet_is_waited_for(self):
        self.import_rule(rules.numbered())
        read_only = f"ALTER DATABASE {self.database.database} SET default_transaction_read_only = "
        self.database.query(read_only + "on")
        waiting = subprocess.Popen(command("kledger", ["--database", self.database.name, "--patience", "30", "issue", "--field",
                                                       "Year=2024"]), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, encoding="utf-8")
        line = self.refused("--patience", "1", "issue", "--field", "Year=2024", code=DATABASE_FAILED)
        self.assertIn("the server takes no changes; it follows another one or is set read-only", line)
        self.assertIsNone(waiting.poll(), "it goes on trying")
        self.server.query("postgres", read_only + "off")
        self.assertEqual(waiting.communicate(timeout=LONGEST), ("2024-000001\t2024\n", ""))

    def test_a_commit_that_comes_late_is_the_requests_own(self):
        """The COMMIT waits in the server while its client is cut off; it takes effect after the client has come back."""
        for policy in ("gapless", "fast"):
            self.import_rule(rules.numbered(), "--policy", policy, name=policy)
            self.database.query(
                "CREATE OR REPLACE FUNCTION slow() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN PERFORM pg_sleep(4); RETURN NULL; "
                "END $$")
            self.database.query("CREATE CONSTRAINT TRIGGER slow AFTER INSERT ON kestrel_codes DEFERRABLE INITIALLY DEFERRED "
                                "FOR EACH ROW WHEN (NEW.fields LIKE '%2031%') EXECUTE FUNCTION slow()")
            result = run("kledger", "--database", self.database.name, "--json", "--patience", "6", "issue", "--rule", policy,
                         "--field", "Year=2031")
            self.database.query("DROP TRIGGER slow ON kestrel_codes")
            self.assertEqual(result.returncode, 0, result.stderr)
            while self.server.query("postgres", "SELECT COUNT(*) FROM pg_stat_activity WHERE datname = "
                                                f"'{self.database.database}'") != [("0",)]:
                time.sleep(0.05)
            rows = self.database.query("SELECT code FROM kestrel_codes WHERE rule_id = (SELECT id FROM kestrel_rules WHERE "
                                       f"name = '{policy}')")
            self.assertEqual(rows, [("2031-000001",)])
            self.assertIn('"code":"2031-000001"', result.stdout)

    def test_a_database_without_all_characters_refuses_the_record_only(self):
        self.server.query("postgres", "DROP DATABASE IF EXISTS latin")
        self.server.query("postgres", "CREATE DATABASE latin ENCODING LATIN1 LC_COLLATE 'C' LC_CTYPE 'C' TEMPLATE template0")
        name = self.server.connection_string("latin")
        run("kledger", "--database", name, "rule", "import", self.file("rule.rule", rules.lettered()))
        for policy in ("gapless", "fast"):
            run("kledger", "--database", name, "rule", "import", self.file(f"{policy}.rule", rules.lettered()), "--policy", policy)
            records = self.file("records.csv", "Text\nabc\na\u20acc\nxyz\n")
            result = run("kledger", "--database", name, "issue", records, "--rule", policy)
            self.assertEqual(result.returncode, 3, result.stderr)
            self.assertEqual([line.split("\t")[0] for line in result.stdout.splitlines()], ["abc001", "xyz001"])
            self.assertIn("cannot hold a character", result.stderr)
        self.server.query("postgres", "DROP DATABASE latin WITH (FORCE)")

    def test_a_data_source_is_named(self):
        settings = self.folder / "odbc.ini"
        settings.write_text(f"[warehouse]\nDriver=PostgreSQL Unicode\nServername={LOOPBACK}\nPort={self.server.port}\n"
                            f"Database={self.database.database}\nUsername=postgres\n")
        known = {**os.environ, "ODBCINI": str(settings)}
        self.import_rule(rules.numbered())
        for name in ("DSN=warehouse", "dsn=Warehouse;"):
            result = run("kledger", "--database", name, "issue", "--field", "Year=2024", env=known)
            self.assertEqual((result.returncode, result.stderr), (0, ""), name)
        self.assertEqual(self.codes(), ["2024-000001", "2024-000002"])
        result = run("kledger", "--database", "DSN=nowhere", "rule", "list", env=known)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn("names no driver for PostgreSQL or MariaDB", result.stderr)

    def test_the_driver_leaves_no_log(self):
        logs = pathlib.Path(tempfile.gettempdir())
        before = set(logs.glob("*psqlodbc*")) | set(logs.glob("mylog*"))
        self.import_rule(rules.numbered())
        self.assertEqual((set(logs.glob("*psqlodbc*")) | set(logs.glob("mylog*"))) - before, set())


class MariaDb(OnMariaDb, PromiseTests, LedgerCase):
    def columns(self, table):
        return [row[0] for row in self.database.query(f"SHOW COLUMNS FROM {table}")]


if __name__ == "__main__":
    unittest.main()
