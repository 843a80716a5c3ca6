' A rule under the system's own script host: nobody answers for the last code.
Option Explicit
Dim rule, field, serial, code, failed
failed = 0

Sub Check(what, actual, expected)
    If actual <> expected Then
        WScript.Echo "FAILED: " & what & ": " & actual & " instead of " & expected
        failed = failed + 1
    End If
End Sub

Set rule = WScript.CreateObject("Kestrel.CodeClass")
Set field = rule.UsrFields.Add("Branch", , "South")
rule.Add "Prefix", bsFixed(), , "IN"
rule.Add "Place", 2, 1, , field, 2
rule("Place").Relations.Add , , "01", "North"
rule("Place").Relations.Add , , "02", "South"
Set serial = rule.Add("Serial", 3, , "1", , 4, "0000")
serial.TrackBands.Add "Prefix"
Check "first code", rule.GetCode(1), "IN020001"
code = "IN010042"
rule.ExpCode code
Check "taken apart", rule.UsrFields("Branch").Value & serial.Value, "North0042"
On Error Resume Next
rule.ExpCode "short"
Check "number", Err.Number, &H800407F8
Check "description", Err.Description, "Length of code ilegal!"
On Error GoTo 0

Function bsFixed()
    bsFixed = 0
End Function

Check "nothing is wrong with it", rule.Check.Count, 0

WScript.Echo "end of script: 5 checks, " & failed & " failed"
WScript.Quit 40 + failed
