"""What happens while programs issue. Each function is told which time it is and given a source of chance, and returns
how often it happened."""
import threading
import time

from rig.programs import RULES, YEARS, rule_of
from windows_program import path

DASHES = "-/.:"
CHANGED_RULES = ("gapless1", "fast1")
ADOPTING_RULE = "gapless2"  # what is adopted has the form of its first definition, so that one stays
ADOPTED_AT_ONCE = 5
IMPORTS_AT_ONCE = 2
SKIPPING_RULE = "fast2"
SKIPPED = 2000  # numbers, so that programs at work do not come so far meanwhile
# One may have come so far all the same.
PASSED = "is not beyond what is used or set aside"


class Happenings:
    def __init__(self, stage, programs, book):
        self.stage = stage
        self.programs = programs
        self.book = book

    def kills(self, _, generator):
        time.sleep(generator.uniform(0.0, 0.4))
        return self.programs.kill_one(generator)

    def restarts(self, number, generator):
        time.sleep(generator.uniform(1.0, 2.0))
        self.stage.restart(number)
        return 1

    def failovers(self, number, generator):
        time.sleep(generator.uniform(2.0, 4.0))
        self.stage.fail_over(number)
        return 1

    def imports(self, number, generator):
        """New definitions of one rule, all at once."""
        time.sleep(generator.uniform(0.5, 2.0))
        rule = generator.choice(CHANGED_RULES)
        imports = [threading.Thread(target=self.programs.import_rule,
                                    args=(number, rule, DASHES[(number + more) % len(DASHES)], f"{more}.rule"))
                   for more in range(IMPORTS_AT_ONCE)]
        for thread in imports:
            thread.start()
        for thread in imports:
            thread.join()
        return IMPORTS_AT_ONCE

    def voids(self, number, generator):
        first = number % len(RULES)
        rule, codes = next(((rule, codes) for rule in RULES[first:] + RULES[:first] if (codes := self._codes(rule))),
                           (None, []))
        if not codes:
            time.sleep(0.2)
            return 0
        code, reason = generator.choice(codes), f"reason {number}"
        self.book.voided[rule, code] = reason
        self.programs.must(number, "void", code, "--rule", rule_of(rule, code), "--reason", reason)
        return 1

    def _codes(self, rule):
        """Those that can be made void. Where numbers are given again, whoever asks again for one that is void is
        refused: nobody may have to."""
        answered = self.book.settled_codes(rule) if rule == "reused" else self.book.answered_codes(rule)
        return [code for code in answered if (rule, code) not in self.book.voided]

    def adoptions(self, number, _):
        """Codes of a year that nobody issues in, in the order of their numbers."""
        first = ADOPTED_AT_ONCE * number + 1
        codes = [f"1999-{at:06}" for at in range(first, first + ADOPTED_AT_ONCE)]
        file = self.programs.folder / "adopted.csv"
        file.write_text("Code\n" + "".join(f"{code}\n" for code in codes))
        self.book.adopted.update((ADOPTING_RULE, code) for code in codes)
        self.programs.must(number, "adopt", path(file), "--rule", ADOPTING_RULE)
        return 1

    def sets(self, number, generator):
        """Numbers that are left out on purpose."""
        time.sleep(generator.uniform(0.5, 2.0))
        year = generator.choice(YEARS)
        reached = [int(code[len("2024-"):]) for code in self.book.answered_codes(SKIPPING_RULE) if code.startswith(year)]
        self.programs.must(number, "next", SKIPPING_RULE, "--field", f"Year={year}", "--set",
                           max(reached, default=0) + SKIPPED, unless=PASSED)
        return 1

    def audits(self, number, _):
        rule = RULES[number % len(RULES)]
        self.programs.troubles += [f"audit meanwhile: {line}" for line in self.programs.audit(number, rule)]
        return 1
