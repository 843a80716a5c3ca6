' What is wrong with a rule, told before its first code is issued.
Option Explicit
Dim rule, serial, findings, finding, told, definition, asked

Sub rule_GetLastCode(Filter, Value)
    asked = True
End Sub

Sub rule_BandsChanged()
    asked = True
End Sub

Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
Check "a rule that is not begun", rule.Check.Count, 0
rule.Add "Prefix", bsFixed, , "INV"
Set serial = rule.Add("Serial", bsIncreaseNumber, , "1", , 4, "0000")
serial.TrackBands.Add "Prefix"
Check "all is well", rule.Check.Count, 0
Check "the first code", rule.GetCode(gsNewCode), "INV0001"

serial.Formate = "\N000"
rule.Style = csSimple
definition = rule.Definition
asked = False
Set findings = rule.Check
Check "two findings", findings.Count, 2
Check "of a band, with its name", Left(findings(1), 18), "[Serial] The forma"
Check "of the rule", findings.Item(2), "In the simple style codes cannot be taken apart."
Check "in one call", rule.Check.Item(2), findings(2)
told = ""
For Each finding In findings
    told = told & Len(finding) & " "
Next
Check "enumerated", told, Len(findings(1)) & " " & Len(findings(2)) & " "
Check "the definition stays", rule.Definition, definition
Check "nobody is asked and nothing is told", asked, False

findings.Add "my own"
Check "the collection is the caller's", rule.Check.Count, 2

rule.Style = csNormal
serial.Formate = "0000"
Check "mended", rule.Check.Count, 0
On Error Resume Next
finding = rule.Check.Item(1)
CheckErrorNumber "no first finding", NoSuchPosition
rule.Check = 1
Check "it is no setting", Err.Number <> 0, True
Err.Clear
On Error GoTo 0
EndOfScript
