"""Whether every request has exactly one code, read from the database itself and not from the program that wrote it."""
import collections
import json

from rig.programs import RULES, STEP, stored_rules

# With the act that made it void, if any; a void code whose number was given again has a table of its own.
STORED = " UNION ALL ".join(
    f"SELECT r.name, c.code, c.ticket, COALESCE(j.act, ''), COALESCE(j.detail, ''), c.fields, '{given_away}' "
    f"FROM {table} c JOIN kestrel_rules r ON r.id = c.rule_id "
    "LEFT JOIN kestrel_journal j ON j.rule_id = c.rule_id AND j.number = c.void_act"
    for table, given_away in (("kestrel_codes", ""), ("kestrel_reused", "yes")))
NUMBER_FROM = 5  # characters of a code before its number: a year and a dash
EXAMPLES = 5
ALIKE = 50  # characters by which two examples are the same

Row = collections.namedtuple("Row", "rule code ticket act reason key given_away", defaults=("",))


def stored_rows(stage):
    """Each stored code with what was asked for it, and the key of its request, which is one of its fields."""
    asked = {stored: rule for rule in RULES for stored in stored_rules(rule)}
    return [Row(asked.get(rule, rule), code, ticket, act, reason, json.loads(fields).get("Note", ""), given_away)
            for rule, code, ticket, act, reason, fields, given_away in stage.query(STORED)]


def gaps(rule, codes):
    """The codes that are missing among those that are numbered together, from the first number on."""
    numbers = collections.defaultdict(set)
    for code in codes:
        numbers["" if rule == "untracked" else code[:NUMBER_FROM]].add(int(code[NUMBER_FROM:]))
    step = STEP if rule == "stepped" else 1
    return [f"{series}{number:06}" for series, have in numbers.items() for number in range(1, max(have) + 1, step)
            if number not in have]


def findings(book, rows, gapless, with_keys):
    """What is wrong, by what it is: a list of examples each, empty where all is well."""
    by_key = collections.defaultdict(list)
    for row in rows:
        by_key[row.key].append(row)
    told_for = collections.defaultdict(list)
    for key, codes in book.answers.items():
        for code in codes:
            told_for[book.rules[key], code].append(key)
    had = collections.Counter((row.rule, row.code) for row in rows)  # one by one
    times = collections.Counter((row.rule, row.code) for row in rows if not row.given_away)
    acts = {(row.rule, row.code, row.act, row.reason) for row in rows}
    found = {
        "requests without a code": [key for key in book.rules if key not in by_key],
        "requests with several codes": [f"{key}: {[row.code for row in by_key[key]]}" for key in book.rules
                                        if len(by_key[key]) > 1],
        "requests without an answer": [key for key in book.rules if key not in book.answers],
        "requests with several answers": [f"{key}: {sorted(codes)}" for key, codes in book.answers.items()
                                          if len(codes) > 1],
        "answers that are not stored": [f"{key}: {code}" for key, codes in book.answers.items() for code in codes
                                        if (book.rules[key], code) not in times],
        "answers of other requests": [f"{key}: {code}" for key, codes in book.answers.items() for code in codes
                                      if code not in [row.code for row in by_key[key]]],
        "codes that nobody asked for": [f"{row.rule} {row.code}" for row in rows if row.key not in book.rules
                                        and (row.rule, row.code) not in book.adopted],
        "codes told to several requests": [f"{rule} {code}: {keys}" for (rule, code), keys in told_for.items()
                                           if len(keys) > max(had[rule, code], 1)],
        "codes stored twice": [f"{rule} {code}" for (rule, code), count in times.items() if count > 1],
        "gaps in gapless": [f"{rule} {code}" for rule in gapless
                            for code in gaps(rule, [row.code for row in rows if row.rule == rule])],
        "adopted codes that are lost": [f"{rule} {code}" for rule, code in book.adopted if (rule, code) not in times],
        "voids that are lost": [f"{rule} {code}" for (rule, code), reason in book.voided.items()
                                if (rule, code, "void", reason) not in acts],
        "answered again without a mark": book.unmarked,
        "refused": book.refused,
    }
    if with_keys:
        found["codes with another key"] = [f"{row.key}: {row.ticket}" for row in rows
                                           if row.key in book.rules and row.ticket != row.key]
    return found


def told(found):
    """Lines for people: each finding with its number and some examples that are not all alike."""
    lines = []
    for what, examples in found.items():
        different = list({example[:ALIKE]: example for example in examples}.values())
        if examples:
            lines.append(f"{len(examples)} {what}: {'; '.join(different[:EXAMPLES])}")
    return lines
