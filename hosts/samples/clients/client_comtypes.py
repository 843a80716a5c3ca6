"""The program of this folder in Python with comtypes: makes a rule, answers what it asks, issues codes by ticket, takes codes
apart. Every language here prints the same lines.

Not run by the tests: it takes Python for Windows. pip install comtypes, then python client_comtypes.py
"""
from comtypes import COMError
from comtypes.client import CreateObject, GetEvents

FIXED, FIELD, NUMBER = 0, 2, 3
NEW_CODE = 1

issued = {}  # what a program keeps in its database: the code of each ticket


class RuleEvents:
    def GetLastCode(self, this, Filter, Value):  # pylint: disable=invalid-name,unused-argument  (the names of the event)
        """The last code issued that fits the filter, in which "?" is any character. The component adds one to its number.

        With "this" as the first parameter the arguments come as they are: by reference, their content is at [0]."""
        print(f"asked for the last code like {Filter[0]}")
        Value[0] = max((code for code in issued.values() if code[:9] == Filter[0][:9]), default="")


def issue_for(ticket, of_year):
    if ticket not in issued:
        year.Value = of_year
        issued[ticket] = rule.GetCode(NEW_CODE)
    print(f"{ticket}: {issued[ticket]}")


def take_apart(code):
    try:
        rule.ExpCode(code)
        print(f"{code}: year {year.Value}, number {rule.Band['Number'].Value}")
    except COMError as refused:
        print(f"{code}: refused with {refused.hresult & 0xFFFF}, {refused.details[0]}")


# The type library is read once and its members and events become Python's.
rule = CreateObject("Kestrel.CodeClass")
connection = GetEvents(rule, RuleEvents())
year = rule.UsrFields.Add("Year")
rule.Add("Prefix", FIXED, 0, "INV-")
rule.Add("Year", FIELD, 0, "", year, 4)
rule.Add("Dash", FIXED, 0, "-")
rule.Add("Number", NUMBER, 0, "1", None, 5, "00000").TrackBands.Add("Year")

issue_for("order 1", "2026")
issue_for("order 2", "2026")
issue_for("order 3", "2027")
issue_for("order 2", "2026")  # the same request again gets the same code
take_apart("INV-2026-00002")
take_apart("ABC-2026-00002")

copy = CreateObject("Kestrel.CodeClass")
copy.Load(rule.Definition)
print(f"stored and loaded: {copy.Count} bands")
