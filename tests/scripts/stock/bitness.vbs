' That the stock host has the bitness that the other scripts are to be run in; its argument names the processor.
Option Explicit
Dim processor
processor = CreateObject("WScript.Shell").ExpandEnvironmentStrings("%PROCESSOR_ARCHITECTURE%")
If processor <> WScript.Arguments.Item(0) Then WScript.Echo "FAILED: " & processor & " instead of " & WScript.Arguments.Item(0)
If processor <> WScript.Arguments.Item(0) Then WScript.Quit 1
WScript.Echo "end of script: 1 checks, 0 failed"
WScript.Quit 40
