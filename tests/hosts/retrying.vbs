' The sample of the guide for hosts tries again when the database says that somebody else was first, and only then, wherever
' in a transaction it says so. Its functions are included from the sample; the database here only says what it is told to say.
Option Explicit
Const Attempts = 3
Const LeaseSize = 50
Dim rule, database, policy, series, leased, nextNumber, endNumber, failure
Dim part, said, state, native, refused, times, begun, undone, leases, raised

Class DatabaseError
    Public SQLState
    Public NativeError
End Class

Class DatabaseErrors
    Public Count
    Public Sub Clear()
        Count = 0
    End Sub
    Public Default Property Get Item(index)
        Set Item = New DatabaseError
        Item.SQLState = state
        Item.NativeError = native
    End Property
End Class

Class SayingDatabase
    Public Errors
    Public Sub Prepare()
        Set Errors = New DatabaseErrors
        Errors.Clear
    End Sub
    Public Sub BeginTrans()
        begun = begun + 1
    End Sub
    Public Sub CommitTrans()
    End Sub
    Public Sub RollbackTrans()
        undone = undone + 1
    End Sub
    Public Sub Execute(sql)
        If InStr(sql, "INSERT INTO leases") = 1 Then leases = leases + 1
        If InStr(sql, refused) = 0 Or times = 0 Then Exit Sub
        times = times - 1
        Errors.Count = 1
        Err.Raise 5000, "database", "said " & state
    End Sub
End Class

' Nothing is stored here.
Function One(query)
    One = ""
    database.Execute query
End Function

Function Number(text)
    Number = 0
End Function

' The statement that holds the words is refused so often with that state.
Sub Begin(words, often, sqlState, nativeError)
    refused = words
    times = often
    state = sqlState
    native = nativeError
    begun = 0
    undone = 0
    leases = 0
    leased = ""
    Set database = New SayingDatabase
    database.Prepare
End Sub

policy = "gapless"
Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
rule.Add "Prefix", bsFixed, , "A-"
rule.Add("Number", bsIncreaseNumber, , "1", , 6, "000000").TrackBands.Add "Prefix"

Begin "INSERT", 0, "", 0
Check "nothing is refused", Issue("T"), "A-000001"
Check "one transaction", begun & " " & undone, "1 0"
For Each part In Array("23505 0", "23000 2601", "23000 2627", "23000 1062", "40001 1205", "40P01 0")
    said = Split(part)
    Begin "INSERT INTO codes", Attempts, said(0), CLng(said(1))
    On Error Resume Next
    raised = Issue("T")
    CheckError part & " is tried again", vbObjectError + 1, "the database stayed busy"
    On Error GoTo 0
    Check part & ", each time anew", begun & " " & undone, "3 3"
Next
For Each part In Array("42P01 0", "25P02 0", "23000 515", "23000 547")
    said = Split(part)
    Begin "INSERT INTO codes", Attempts, said(0), CLng(said(1))
    On Error Resume Next
    raised = Issue("T")
    CheckError part & " is not", 5000, "said " & state
    On Error GoTo 0
    Check part & ", and is undone", begun & " " & undone, "1 1"
Next

' What goes wrong while the rule asks.
Begin "MAX(number)", 1, "40001", 0
Check "a conflict in the event is tried again", Issue("T"), "A-000001"
Check "as a whole", begun & " " & undone, "2 1"
Begin "MAX(number)", 1, "42P01", 0
On Error Resume Next
raised = Issue("T")
CheckError "a missing table in the event is not", vbObjectError + 2, "said 42P01 (when the last code was asked for)"
On Error GoTo 0
Check "nothing was stored", begun & " " & undone, "1 1"

' A block of numbers that was set aside in a transaction is gone with it.
policy = "fast"
Begin "INSERT INTO codes", 1, "40001", 0
Check "a fast code after a conflict", Issue("T"), "A-000001"
Check "of a block that was set aside again", leases, 2
Begin "INSERT", 0, "", 0
Check "the next one", Issue("U") & " " & Issue("V"), "A-000001 A-000002"
Check "is of the same block", leases, 1

policy = "gapless"
Begin "INSERT", 0, "", 0
rule.UsrFields.Add "F"
rule.Add "F", bsUsrField, , , rule.UsrFields("F"), 2
On Error Resume Next
raised = Issue("T")
CheckErrorNumber "what the rule refuses is not", LibraryError(2036)
On Error GoTo 0
Check "and undone, too", begun & " " & undone, "1 1"
EndOfScript
