' The questions of a rule, answered on the screen by the host: with no.
Option Explicit
Dim rule, saved
saved = False

Sub rule_Save(Value, bChieved)
    saved = True
End Sub

Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
rule.Add "Prefix", bsFixed, , "P"
rule.Add("Serial", bsIncreaseNumber, , "1").TrackBands.Add "Prefix"
rule.Save
Check "nothing was saved", saved, False
On Error Resume Next
rule.Remove "Prefix"
CheckError "a tracked band stays", LibraryError(2011), "The band can't be deleted,cause tracked by other band(s)."
On Error GoTo 0
Check "both are there", rule.Count, 2
Check "and tracking goes on", rule("Serial").TrackBands("Prefix"), "Prefix"
EndOfScript
