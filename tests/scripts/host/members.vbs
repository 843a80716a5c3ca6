Option Explicit
Dim text
WScript.Echo
WScript.Echo "one", 2, True, "b" & vbTab & "c"
WScript.Echo WScript.ScriptName, LCase(Right(WScript.ScriptFullName, 11))
WScript.Echo WScript.Arguments.Count, WScript.Arguments.length, WScript.Arguments(0), WScript.Arguments.Item(1)
For Each text In WScript.Arguments
    WScript.Echo "[" & text & "]"
Next
WScript.Sleep 1
WScript.StdOut.Write "no end "
WScript.StdOut.WriteLine "of line"
Do Until WScript.StdIn.AtEndOfStream
    WScript.Echo "read " & WScript.StdIn.ReadLine
Loop
WScript.StdErr.WriteLine "aside"
On Error Resume Next
text = WScript.Arguments(2)
WScript.Echo Err.Number, Err.Description
Err.Clear
WScript.CreateObject "No.Such"
WScript.Echo Hex(Err.Number), Err.Source, Err.Description
Err.Clear
WScript.CreateObject "Scripting.Dictionary", "dictionary_"
WScript.Echo Err.Number <> 0, Err.Description
