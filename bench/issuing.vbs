' What issuing a code costs a script, beside what one event round trip to a script's handler costs, in the same run.
' The round trip is the difference between changing a node's text with a handler for the tree's event and without one.
Option Explicit

Const Calls = 3000

Dim rule, department, number, quietTree, loudTree, i
Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
rule.UsrMacros.Add "Year", , "2026"
rule.UsrFields.Add "Department", , "Department number 500"
rule.UsrFields.Add "Country", , "Germany"
rule.Add "Prefix", 0, , "INV"
rule.Add "Year", 1, , , rule.UsrMacros("Year"), 4
Set department = rule.Add("Department", 2, 1, , rule.UsrFields("Department"), 4)
For i = 0 To 999
    department.Relations.Add , , CStr(1000 + i), "Department number " & i
Next
rule.Add "Country", 2, 2, , rule.UsrFields("Country"), 2
rule.Relations.Add , , "DE", "Germany"
Set number = rule.Add("Number", 3, , "1", , 6, "000000")
number.TrackBands.Add "Year"

Set quietTree = WScript.CreateObject("Kestrel.cNodes")
Set loudTree = WScript.CreateObject("Kestrel.cNodes", "tree_")
quietTree.Add
loudTree.Add

Sub rule_GetLastCode(Filter, Value)
    Value = "INV20261500DE000041"
End Sub

Sub tree_NodesChanged(vParentKey, vHotKey)
    seen = seen + 1
End Sub
Dim seen

Function SecondsOfTexts(tree)
    Dim began, node, k
    Set node = tree(1)
    began = Timer
    For k = 1 To Calls
        node.Text = CStr(k)
    Next
    SecondsOfTexts = Timer - began
End Function

Function SecondsOfCodes()
    Dim began, k, code
    began = Timer
    For k = 1 To Calls
        code = rule.GetCode(1)
    Next
    SecondsOfCodes = Timer - began
    If code <> "INV20261500DE000042" Then WScript.Echo "another code was issued: " & code: WScript.Quit 1
End Function

Function Joined(prefix, year, department, country, number)
    Joined = prefix & year & department & country & number
End Function

Function SecondsOfJoins()
    Dim began, k, code, prefix, year, department, country, number
    prefix = "INV"
    year = "2026"
    department = "1500"
    country = "DE"
    number = "000042"
    began = Timer
    For k = 1 To Calls
        code = Joined(prefix, year, department, country, number)
    Next
    SecondsOfJoins = Timer - began
    If code <> "INV20261500DE000042" Then WScript.Echo "another text was joined: " & code: WScript.Quit 1
End Function

Dim quiet, loud, codes, joins
quiet = SecondsOfTexts(quietTree)
seen = 0
loud = SecondsOfTexts(loudTree)
If seen <> Calls Then WScript.Echo "the handler saw " & seen & " of " & Calls & " events": WScript.Quit 1
codes = SecondsOfCodes()
joins = SecondsOfJoins()
WScript.Echo "From a script, microseconds per call"
WScript.Echo "  one event round trip " & FormatNumber((loud - quiet) / Calls * 1000000, 1)
WScript.Echo "  GetCode of 5 bands   " & FormatNumber(codes / Calls * 1000000, 1)
WScript.Echo "  joining five texts   " & FormatNumber(joins / Calls * 1000000, 1)
WScript.Echo "  GetCode to its event " & FormatNumber(codes / (loud - quiet), 2)
Dim verdict
verdict = "MISSED"
If codes <= 1.5 * joins Then verdict = "met"
WScript.Echo "  GetCode from VBScript to a function that joins its five texts  " & FormatNumber(codes / joins, 2) & _
    "  at most 1.50  " & verdict
WScript.Quit 0
