' The dialogs of a rule, opened from a script and closed by the host, which says yes to what they ask.
Option Explicit
Dim rule, saved

Sub rule_Save(Value, bChieved)
    saved = Value
    bChieved = True
End Sub

Sub rule_GetSettings(Name, Value)
    Value = saved
End Sub

Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
rule.Add "Prefix", bsFixed, , "P"
rule.UsrFields.Add "Region", "Sales region"

rule.ShowDesigner
Check "the designer saves when it closes", saved, rule.Definition
rule.ShowDesigner "Invoice numbers", True
Check "setup is allowed now, which the rule keeps", saved, rule.Definition
rule.ShowFieldManage
rule.ShowFieldManage "Fields of invoices"
rule.ShowOptions " "
rule.ShowOptions "Options of invoices"
Check "nothing was changed", rule.Count & rule.UsrFields.Count, "11"
EndOfScript
