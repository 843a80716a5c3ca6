' Handlers that fail: each is reported, the call that raised the event goes on with the answers given before.
Option Explicit
Dim rule, names

Sub rule_BandsChanged()
    Err.Raise vbObjectError + 1, "Handler", "first"
End Sub

Sub rule_GetLastCode(Filter, Value)
    Value = "P41"
    Err.Raise vbObjectError + 2, "Handler", "second"
End Sub

Sub names_BeforeAdd(Name, Cancel, Description)
    Cancel = "no flag at all"
End Sub

Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
rule.Add "Prefix", bsFixed, , "P"
rule.Add("Serial", bsIncreaseNumber, , "1", , 2).TrackBands.Add "Prefix"
WScript.Echo rule.Count, rule.GetCode(gsNewCode)
Set names = WScript.CreateObject("Kestrel.Names", "names_")
names.Add "kept"
WScript.Echo names.Count
