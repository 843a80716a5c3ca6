Sub Inner
    Err.Raise vbObjectError + 2003, "Some.Source", "First line." & vbCrLf & vbCrLf & "Second line."
End Sub
WScript.Echo "before"
Inner
WScript.Echo "after"
