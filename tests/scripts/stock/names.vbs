' Under the system's own script host, without events.
Option Explicit
Dim names, name, text, failed
failed = 0

Sub Check(what, actual, expected)
    If actual <> expected Then
        WScript.Echo "FAILED: " & what & ": " & actual & " instead of " & expected
        failed = failed + 1
    End If
End Sub

Set names = CreateObject("Kestrel.Names")
names.Add "A"
names.Add "B"
text = "x;y;x"
On Error Resume Next
names.Add "B"
Check "duplicate", Err.Number, 457
Err.Clear
On Error GoTo 0
names.ImportNames text
text = ""
For Each name In names
    text = text & name
Next
Check "For Each", text, "xyx"
Check "Count", names.Count, 3
Check "default member", names(2), "y"
WScript.Echo "end of script: 4 checks, " & failed & " failed"
WScript.Quit 40 + failed
