"""What programs were asked for and what they answered, kept outside of every database."""
import json
import threading


class Book:
    """Requests by their keys, each for one code of a rule. Any thread may use it."""

    def __init__(self):
        self.lock = threading.Lock()
        self.rules = {}  # key -> rule
        self.settled = set()  # keys that nobody asks for any more
        self.answers = {}  # key -> the codes printed for it, which should be one, however often it was asked for
        self.adopted = set()  # (rule, code) of those taken over from elsewhere
        self.voided = {}  # (rule, code) -> the reason
        self.refused = []  # what was said of requests that got no code
        self.unmarked = []  # keys that were answered again as if for the first time

    def new_requests(self, rule, count):
        with self.lock:
            keys = [f"{rule}-{number}" for number in range(len(self.rules), len(self.rules) + count)]
            self.rules.update(dict.fromkeys(keys, rule))
        return keys

    def answer(self, key, code, marked_as_before=False):
        with self.lock:
            if key in self.answers and not marked_as_before:
                self.unmarked.append(key)
            self.answers.setdefault(key, set()).add(code)

    def read(self, output, keys):
        """Takes the answers from the lines of JSON that a program printed for a file with the keys, one a record; the
        last line may be cut where the program was killed."""
        for line in output[:output.rfind("\n") + 1].splitlines():
            told = json.loads(line)
            if "code" in told:
                self.answer(keys[told["line"] - 2], told["code"], told.get("before", False))
            elif "refused" in told and "line" in told:
                self.refused.append(f"{keys[told['line'] - 2]}: {told['refused']}")

    def settle(self, keys):
        with self.lock:
            self.settled.update(keys)

    def unanswered(self, keys):
        with self.lock:
            return [key for key in keys if key not in self.answers]

    def answered_codes(self, rule):
        with self.lock:
            return [code for key, codes in self.answers.items() if self.rules[key] == rule for code in codes]

    def settled_codes(self, rule):
        with self.lock:
            return [code for key in self.settled if self.rules[key] == rule for code in self.answers[key]]
