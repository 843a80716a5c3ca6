' What the test scripts check with. Each failed check is one line; EndOfScript prints the line without which a test that
' ended silently counts as failed. A script that failed quits; another one ends by itself, so that the host can see what
' is left.
Option Explicit

Dim checksDone, checksFailed
checksDone = 0
checksFailed = 0

Sub Judge(ByVal passed, ByVal what, ByVal actual, ByVal expected)
    checksDone = checksDone + 1
    If passed Then Exit Sub
    checksFailed = checksFailed + 1
    WScript.Echo "FAILED: " & what & ": " & actual & " instead of " & expected
End Sub

' Types count too: the text "1" is not the number 1, nor is the fraction 1.0; whole numbers of all sizes are one type.
Sub Check(ByVal what, ByVal actual, ByVal expected)
    Dim equal
    equal = False
    If KindOf(actual) = KindOf(expected) Then equal = (actual = expected)
    Judge equal, what, Shown(actual), Shown(expected)
End Sub

Function KindOf(ByVal value)
    KindOf = VarType(value)
    If KindOf = vbInteger Or KindOf = vbByte Then KindOf = vbLong
End Function

Function Shown(ByVal value)
    If IsNull(value) Then
        Shown = "Null"
    Else
        Shown = TypeName(value) & " [" & Replace(Replace(CStr(value), vbCr, "\r"), vbLf, "\n") & "]"
    End If
End Function

Sub CheckSame(ByVal what, ByVal actual, ByVal expected)
    Judge actual Is expected, what, "an object", "the very same one"
End Sub

Sub CheckNothing(ByVal what, ByVal actual)
    Judge actual Is Nothing, what, "an object", "Nothing"
End Sub

' After a statement that has to fail, under On Error Resume Next; forgets the error.
Sub CheckError(ByVal what, ByVal number, ByVal description)
    Dim actualNumber, actualDescription
    actualNumber = Err.Number
    actualDescription = Err.Description
    Err.Clear
    Check what & ", number", actualNumber, number
    Check what & ", description", actualDescription, description
End Sub

' After a statement that fails with an error that the library leaves to the platform's wording.
Sub CheckErrorNumber(ByVal what, ByVal number)
    Dim actualNumber
    actualNumber = Err.Number
    Err.Clear
    Check what & ", number", actualNumber, number
End Sub

' After a statement that must not fail, under On Error Resume Next.
Sub CheckNoError(ByVal what)
    Dim account
    account = Err.Number & " " & Err.Description
    Judge Err.Number = 0, what, "error " & account, "none"
    Err.Clear
End Sub

' The number under which scripts see an error of the library.
Function LibraryError(ByVal message)
    LibraryError = &H80040000 + message
End Function

Sub EndOfScript()
    WScript.Echo "end of script: " & checksDone & " checks, " & checksFailed & " failed"
    If checksFailed > 0 Then WScript.Quit 1
End Sub
