"""kledger as a program: commands that have to succeed, and programs that issue for whole files of records."""
import subprocess
import threading

import rules
from windows_program import command, path, run

GAPLESS, FAST = ("gapless1", "gapless2", "stepped", "reused", "untracked", "numbered"), ("fast1", "fast2")
RULES = GAPLESS + FAST  # what is asked for codes; one of them is a numbering
STEP = 10  # of the stepped rule
WIDTHS = range(2, 7)  # of the numbers of the numbering, for each of which it has a rule
OPTIONS = {"stepped": ("--step", STEP), "reused": ("--reuse",)}
PATIENCE = 60  # seconds that a program is told to wait
HUNG_AFTER = PATIENCE + 40
FILE_TAKES = 60  # seconds at the very most
YEARS = ("2023", "2024")
# The one reason for which a program may end without having done all.
CHANGED = "was changed meanwhile; start again"


def stored_rules(rule):
    """The rules that codes are stored for when that one is asked."""
    return [f"{rule}-{width}" for width in WIDTHS] if rule == "numbered" else [rule]


def rule_of(rule, code):
    """Which of them has the code."""
    return f"{rule}-{len(code) - len('2024-')}" if rule == "numbered" else rule


class Programs:
    """Runs programs on a stage's databases, in a folder for their files. What goes wrong is added to `troubles`."""

    def __init__(self, stage, folder, book, with_keys):
        self.stage = stage
        self.folder = folder
        self.book = book
        self.with_keys = with_keys
        self.troubles = []
        self.lock = threading.Lock()
        self.running = {}  # program -> whether it was killed by us

    def _database(self, number):
        return self.stage.databases[number % len(self.stage.databases)]

    def _run(self, number, *arguments):
        try:
            return run("kledger", "--database", self._database(number), "--patience", PATIENCE, *arguments,
                       timeout=HUNG_AFTER)
        except subprocess.TimeoutExpired:
            return subprocess.CompletedProcess(arguments, "hung", "", f"no end after {HUNG_AFTER} seconds")

    def must(self, number, *arguments, unless=None):
        """A command that has to succeed, whatever happens meanwhile, or say what it may say instead; the number chooses
        its way to the database."""
        result = self._run(number, *arguments)
        if result.returncode != 0 and not (unless and unless in result.stderr):
            words = " ".join(map(str, arguments[:2]))
            self.troubles.append(f"{words}: {result.returncode} {result.stderr.strip()[-300:]}")

    def import_rule(self, number, rule, dash, file_name):
        file = self.folder / file_name
        tracks = () if rule == "untracked" else ("Year",)
        file.write_bytes(rules.numbered(dash=dash, tracks=tracks).encode())
        policy = "gapless" if rule in GAPLESS else "fast"
        self.must(number, "rule", "import", path(file), "--name", rule, "--policy", policy, "--lease", "50",
                  *OPTIONS.get(rule, ()), unless=CHANGED)  # of two at once the one that comes later

    def make(self, rule, dash):
        """For the first time; the numbers of the numbering grow from rule to rule."""
        if rule != "numbered":
            return self.import_rule(0, rule, dash, "first.rule")
        pattern = "{Year:4}" + dash + "{" + "#" * WIDTHS[0] + "}"
        return self.must(0, "rule", "new", rule, pattern, "--grow", f"{WIDTHS[0]}..{WIDTHS[-1]}")

    def audit(self, number, rule):
        """The findings of the audit of all rules that it has, none where all is well."""
        return [line for one in stored_rules(rule) for line in self._audit_one(number, one)]

    def _audit_one(self, number, rule):
        audit = self._run(number, "--json", "audit", "--rule", rule)
        if audit.returncode == 0:
            return []
        found = [line for line in audit.stdout.splitlines() if '"finding"' in line]
        return found + [f"audit: {audit.returncode} {audit.stderr.strip()[-300:]}"]

    def issue(self, number, rule, keys):
        """One program for the records of those keys; whether it did all of them."""
        if not self.with_keys:
            keys = self.book.unanswered(keys)
        records, out, error = (self.folder / f"{number}.{suffix}" for suffix in ("csv", "out", "err"))
        records.write_text("Year,Key,Note\n" + "".join(
            f"{YEARS[index % len(YEARS)]},{key},{key}\n" for index, key in enumerate(keys)))
        arguments = ["--database", self._database(number), "--json", "--patience", PATIENCE, "issue", path(records),
                     "--rule", rule, "--keep", *(["--key-column", "Key"] if self.with_keys else [])]
        with open(out, "wb") as out_stream, open(error, "wb") as error_stream:
            program = subprocess.Popen(command("kledger", arguments), stdin=subprocess.DEVNULL, stdout=out_stream,
                                       stderr=error_stream)
        code = self._wait(program)
        self.book.read(out.read_text(encoding="utf-8"), keys)
        said = error.read_text(encoding="utf-8").strip()
        if code not in (0, None) and CHANGED not in said:
            self.troubles.append(f"issue: {code} {said[-300:]}")
        return code == 0

    def _wait(self, program):
        """The exit code; None for one that was killed."""
        with self.lock:
            self.running[program] = False
        try:
            code = program.wait(HUNG_AFTER + FILE_TAKES)
        except subprocess.TimeoutExpired:
            program.kill()
            program.wait()
            code = "hung"
        with self.lock:
            return None if self.running.pop(program) and code != 0 else code

    def kill_one(self, generator):
        """Of those that issue; how many there were to kill, 1 or 0."""
        with self.lock:
            alive = [program for program, killed in self.running.items() if not killed and program.poll() is None]
            if not alive:
                return 0
            program = generator.choice(alive)
            self.running[program] = True
            program.kill()
        return 1
