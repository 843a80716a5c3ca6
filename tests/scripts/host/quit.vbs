Sub Leave
    WScript.Quit 7
End Sub
On Error Resume Next
WScript.Echo "before"
Leave
WScript.Echo "after"
