' The sample of the guide for hosts tries again when the database says that somebody else was first, and only then. Its
' functions are included from the sample; the database here only says what it is told to say.
Option Explicit
Const Attempts = 3
Dim rule, database, policy, series, nextNumber, part, state, begun, undone, raised

Class DatabaseError
    Public SQLState
End Class

Class DatabaseErrors
    Public Count
    Public Sub Clear()
        Count = 0
    End Sub
    Public Default Property Get Item(index)
        Set Item = New DatabaseError
        Item.SQLState = state
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
        If state = "" Then Exit Sub
        Errors.Count = 1
        Err.Raise 5000, "database", "said " & state
    End Sub
End Class

' The tickets here have no code yet.
Function One(query)
    One = ""
End Function

Sub Begin(what)
    state = what
    begun = 0
    undone = 0
    Set database = New SayingDatabase
    database.Prepare
End Sub

policy = "gapless"
series = "A-??????"
Set rule = WScript.CreateObject("Kestrel.CodeClass")
rule.Add "Code", bsFixed, , "A-000001"

Begin ""
Check "nothing is refused", Issue("T"), "A-000001"
Check "one transaction", begun & " " & undone, "1 0"
For Each part In Array("23505", "23000", "40001", "40P01", "25P02")
    Begin part
    On Error Resume Next
    raised = Issue("T")
    CheckError part & " is tried again", vbObjectError + 1, "the database stayed busy"
    On Error GoTo 0
    Check part & ", each time anew", begun & " " & undone, "3 3"
Next
Begin "42P01"
On Error Resume Next
raised = Issue("T")
CheckError "a missing table is not", 5000, "said 42P01"
On Error GoTo 0
Check "and undone", begun & " " & undone, "1 1"
Begin ""
rule.Band("Code").Default = ""
rule.Add("Number", bsIncreaseNumber, , "1", , 1).TrackBands.Add "Code"
rule.UsrFields.Add "F"
rule.Add "F", bsUsrField, , , rule.UsrFields("F"), 2
On Error Resume Next
raised = Issue("T")
CheckErrorNumber "what the rule refuses is not", LibraryError(2036)
On Error GoTo 0
Check "and undone, too", begun & " " & undone, "1 1"
EndOfScript
