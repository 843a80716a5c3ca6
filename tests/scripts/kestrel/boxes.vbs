' The questions of a rule, answered on the screen by the host: with yes.
Option Explicit
Dim rule, serial, held, saved, achieved, layers

Sub rule_GetSettings(Name, Value)
    Value = held
End Sub

Sub rule_Save(Value, bChieved)
    saved = Value
    bChieved = achieved
End Sub

Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
rule.Add "Prefix", bsFixed, , "P"
Set serial = rule.Add("Serial", bsIncreaseNumber, , "1")
serial.TrackBands.Add "Prefix"
rule.Add("Second", bsIncreaseNumber, , "1").TrackBands.Add "prefix"

held = "another definition"
achieved = True
rule.Save
Check "saved", saved, rule.Definition
achieved = False
On Error Resume Next
rule.Save 6
CheckError "not saved after all", 2005, "Save failure."
On Error GoTo 0

rule.Remove "Prefix"
Check "a tracked band is removed", rule.Count, 2
Check "and tracked no more", serial.TrackBands.Count, 0

rule.Add "Land", bsUsrField, smLayersSwap, , rule.UsrFields.Add("Country"), 2
rule.Relations.Add , , "01", "North"
rule("Land").SwapMode = smNoneSwap
Check "a layer less clears the relations", rule.Relations.Count, 0
EndOfScript
