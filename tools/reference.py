#!/usr/bin/env python3
"""Writes docs/reference.md: the reference of the automation interface, from what the built type library says.

The type library comes as the published text of it (tests/automation/Kestrel.typelib.txt), which a test compares with the
library itself; examples from the script that another test runs; texts of errors from the string table.
usage: tools/reference.py [--check]   (--check: only says whether the document is out of step)
"""

import re
import sys
from pathlib import Path
from typing import NamedTuple

ROOT = Path(__file__).resolve().parents[1]
LIBRARY = ROOT / "tests/automation/Kestrel.typelib.txt"
EXAMPLES = ROOT / "tests/scripts/reference/examples.vbs"
STRINGS = ROOT / "src/resources/strings.inc"
CAUSES = ROOT / "tools/reference-errors.txt"
DOCUMENT = ROOT / "docs/reference.md"

# The types as hosts call them.
TYPES = {"BSTR": "String", "VARIANT": "Variant", "VARIANT_BOOL": "Boolean", "long": "Long", "DATE": "Date", "IUnknown": "Object"}
SPECIAL_IDS = {"0": "0, the default member", "-4": "-4, For Each"}
OBJECT_ERRORS = 0x80040000
PLAIN_ERRORS = 0x800A0000
FIRST_OBJECT_ERROR = 2001
PLAINLY_RAISED = {2005}
# Begins the cause of a text that is only ever appended to that of another error.
REASON = "Reason of "

HEAD = """# Reference

Every member, event, enumeration and error of the component. This file is made from the type library by `tools/reference.py`
and compared with it by a test; the examples are lines of a script that a test runs
(`tests/scripts/reference/examples.vbs`, where `rule`, `band`, `number` and so on are made).

Positions begin with 1. A member that takes a Variant named `vntIndexKey`, `Relative`, `Before` or `After` takes a position
or a name (of nodes: a key). Optional arguments may be left out. [Errors](#errors) lists what numbers mean.
"""


class Member(NamedTuple):
    name: str
    kinds: list  # method, get, put, putref
    id: str
    parameters: list
    result: str
    help: str
    hidden: bool


class Type(NamedTuple):
    kind: str
    name: str
    creatable: bool
    help: str
    lines: list  # of constants, members or implemented interfaces


MEMBER = re.compile(r"  (method|get|put|putref) id (-?\d+)(?: slot \d+)?( hidden)?(?: flags \d+)? (\S+) (\w+)\((.*?)\)(?:  // (.*))?$")
PARAMETER = re.compile(r"\[([^\]]*)\] (\w+)(\**)(?: (\w+))?(?:, |$)")


def types():
    """Of the library, in its order."""
    for block in LIBRARY.read_text(encoding="utf-8").strip().split("\n\n")[1:]:
        first, *lines = block.rstrip("\n").split("\n")
        declared, _, text = first.partition("  // ")
        words = declared.removeprefix("dual ").split()
        yield Type(words[0], words[1], "creatable" in words, text, [line for line in lines if line.startswith("  ")])


def type_name(name):
    return TYPES.get(name, name.removeprefix("_"))


def parameter_text(flags, kind, name):
    text = f"{name} As {type_name(kind)}" if name else type_name(kind)
    default = re.search(r"default (.+)", flags)
    if "optional" in flags:
        text = f"[{text}{' = ' + default.group(1) if default and default.group(1) != '0' else ''}]"
    return f"ByRef {text}" if "out" in flags.split(", ") else text


def members(declared):
    """Those of an interface; what reads and what writes a property are one."""
    found = {}
    for line in declared.lines:
        match = MEMBER.match(line)
        if not match:
            continue
        kind, number, hidden, plain_result, name, parameters, text = match.groups()
        result, taken = "", []
        for flags, of, _, parameter in PARAMETER.findall(parameters):
            if "retval" in flags:
                result = type_name(of)
            elif kind in ("put", "putref") and not parameter:
                result = type_name(of)
            else:
                taken.append(parameter_text(flags, of, parameter))
        if plain_result not in ("HRESULT", "void"):
            raise SystemExit(f"error: {declared.name}.{name} returns {plain_result}")
        if name in found:
            found[name].kinds.append(kind)
        else:
            found[name] = Member(name, [kind], number, taken, result, text or "", bool(hidden))
    return list(found.values())


def examples():
    """{member: the line below the comment that names it}."""
    lines = EXAMPLES.read_text(encoding="utf-8").split("\n")
    return {match.group(1): lines[number + 1].strip()
            for number, line in enumerate(lines) if (match := re.match(r"' (_\w+\.\w+)$", line))}


def access(member):
    if "method" in member.kinds:
        return "method"
    reads, writes = "get" in member.kinds, len(member.kinds) > ("get" in member.kinds)
    return "property" if reads and writes else "property, read only" if reads else "property, write only"


def member_text(declared, member, example, is_event):
    parameters = ", ".join(member.parameters)
    brackets = f"({parameters})" if parameters or "method" in member.kinds else ""
    result = f" As {member.result}" if member.result else ""
    kind = "event" if is_event else access(member)
    place = SPECIAL_IDS.get(member.id, member.id)
    return "\n".join([
        f"### {declared.name.lstrip('_')}.{member.name}", "",
        f"`{member.name}{brackets}{result}` ({kind}, id {place})", "",
        f"{member.help}.", "",
        "```vbs", example, "```", ""])


def class_sections(declared_types, lines):
    """Interfaces under the names of their classes, each with its events."""
    by_name = {declared.name: declared for declared in declared_types}
    sections, documented = [], set()
    for declared in declared_types:
        if declared.kind != "coclass":
            continue
        sections += [f"## {declared.name}", "", f"{by_name['_' + declared.name].help}. {created(declared)}", ""]
        for name, is_event in (("_" + declared.name, False), ("__" + declared.name, True)):
            for member in members(by_name[name]) if name in by_name else []:
                key = f"{name}.{member.name}"
                if key not in lines:
                    raise SystemExit(f"error: {EXAMPLES.relative_to(ROOT)} has no example of {key}")
                documented.add(key)
                sections.append(member_text(declared, member, lines[key], is_event))
    unknown = sorted(set(lines) - documented)
    if unknown:
        raise SystemExit(f"error: {EXAMPLES.relative_to(ROOT)} has examples of what the library has not: {unknown}")
    return sections


def created(declared):
    if declared.creatable:
        return f"Made by `CreateObject(\"Kestrel.{declared.name}\")`, or handed out by other members."
    return "Handed out by other members."


def enumeration_sections(declared_types):
    sections = ["## Enumerations", "", "Late-bound hosts write the numbers; `...Ubound` ends a list and is no value.", ""]
    for declared in declared_types:
        if declared.kind == "enum":
            values = ", ".join(f"`{line.strip()}`" for line in declared.lines)
            sections += [f"**{declared.name}**: {declared.help}. {values}", ""]
    return sections


def texts():
    pattern = re.compile(r'^STRING\((\d+), "(.*)", "(.*)"\)$')
    found = (pattern.match(line) for line in STRINGS.read_text(encoding="utf-8").split("\n"))
    return {int(match.group(1)): (match.group(2), match.group(3)) for match in found if match}


def error_code(number):
    base = OBJECT_ERRORS if number >= FIRST_OBJECT_ERROR and number not in PLAINLY_RAISED else PLAIN_ERRORS
    return base + number


def as_host_sees(number):
    """What Err.Number is: plain errors are the number itself, the others a negative one."""
    code = error_code(number)
    return str(number) if code < OBJECT_ERRORS or code >= PLAIN_ERRORS else str(code - (1 << 32))


def error_sections():
    sections = ["## Errors", "",
                "`Err.Number` of VBScript and VBA is in the first column: where there are two, the one in brackets, whose last 16 bits",
                "(`Err.Number And &HFFFF&`) are the other. The result code that other languages see is in the second column.",
                "`Err.Source` names the class (`Kestrel.Band`), `Err.Description` begins with the text, in English or German as the",
                "system is, and may go on with what it is about. The texts are what they are, spelling included: programs may have",
                "been written that compare them.", "",
                "The platform itself refuses an argument of the wrong kind (13), arguments too many or too few (450) and a member that",
                "there is not (438); where memory runs out a call fails with 7 (8007000E).", "",
                "| Number | Code | Text | German | Cause | What to do |", "|---|---|---|---|---|---|"]
    all_texts = texts()
    for line in CAUSES.read_text(encoding="utf-8").strip().split("\n"):
        number, cause, remedy = (cell.strip() for cell in line.split("|"))
        english, german = all_texts[int(number)]
        seen = as_host_sees(int(number))
        shown, code = seen if seen == number else f"{number} ({seen})", f"{error_code(int(number)):08X}"
        if cause.startswith(REASON):
            shown, code = f"{number}, within another", ""
        sections.append(f"| {shown} | {code} | {english} | {german} | {cause} | {remedy} |")
    return sections + [""]


def document():
    declared_types = list(types())
    parts = [HEAD, *class_sections(declared_types, examples()), *enumeration_sections(declared_types), *error_sections()]
    return "\n".join(parts)


def main():
    text = document()
    if sys.argv[1:] == ["--check"]:
        if not DOCUMENT.exists() or DOCUMENT.read_text(encoding="utf-8") != text:
            raise SystemExit("error: docs/reference.md is out of step; tools/reference.py writes it anew")
    elif sys.argv[1:]:
        raise SystemExit("usage: tools/reference.py [--check]")
    else:
        DOCUMENT.write_text(text, encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
