' The smallest host that issues codes safely for many programs at once, by either policy, over ADO.
'
'   kscript host.vbs CONNECTION RULE gapless|fast COUNT TICKET
'
' issues codes of the year 2024 for the requests TICKET-1, TICKET-2 and so on; the same requests again get the same codes. The
' file RULE is UTF-16, for reading as for writing: the one encoding of these files that holds every definition.
Option Explicit

Const gsNewCode = 1
Const ForReading = 1
Const AsUnicode = -1
Const adStateOpen = 1
Const LeaseSize = 50
Const Attempts = 200
Dim rule, database, files, policy, series, leased, nextNumber, endNumber, failure, count

Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
Set database = CreateObject("ADODB.Connection")
database.Open WScript.Arguments.Item(0)
Set files = CreateObject("Scripting.FileSystemObject")
rule.Load files.OpenTextFile(WScript.Arguments.Item(1), ForReading, False, AsUnicode).ReadAll
rule.UsrFields("Year").Value = "2024"
policy = WScript.Arguments.Item(2)
For count = 1 To CInt(WScript.Arguments.Item(3))
    WScript.Echo Issue(WScript.Arguments.Item(4) & "-" & count)
Next
database.Close
WScript.Quit 0

' [issue]
' The code that the ticket has, or a new one. Each attempt is a transaction that reads, issues and stores. The loser of a key
' rolls back and reads again; what would fail again is not tried again.
Function Issue(ticket)
    Dim attempt, code
    For attempt = 1 To Attempts
        code = TryToIssue(ticket)
        If code <> "" Then
            Issue = code
            Exit Function
        End If
        WScript.Sleep Int(Rnd * 20)
    Next
    Err.Raise vbObjectError + 1, "host.vbs", "the database stayed busy"
End Function

' Empty when somebody else was first.
Function TryToIssue(ticket)
    Dim code, number, description, retry, isNew
    On Error Resume Next
    failure = ""
    database.Errors.Clear
    database.BeginTrans
    code = One("SELECT code FROM codes WHERE ticket = " & Quoted(ticket))
    isNew = (code = "")
    If Err.Number = 0 And isNew Then code = rule.GetCode(gsNewCode)
    If failure <> "" Then Err.Raise vbObjectError + 2, "host.vbs", failure
    If Err.Number = 0 And isNew Then Store ticket, code
    If Err.Number = 0 Then database.CommitTrans
    If Err.Number = 0 Then
        If isNew And policy = "fast" Then nextNumber = nextNumber + 1
        TryToIssue = code
        Exit Function
    End If
    number = Err.Number
    description = Err.Description
    retry = MayBeRetried()
    database.RollbackTrans
    leased = "" ' a block that was set aside in this transaction is undone with it
    On Error GoTo 0
    If Not retry Then Err.Raise number, "host.vbs", description
    TryToIssue = ""
End Function

' A duplicate key, a serialization failure and a deadlock, as PostgreSQL and others say them. The 23000 of SQL Server and MariaDB
' also stands for a missing value or a broken reference: their own numbers tell a duplicate key from those.
Function MayBeRetried()
    MayBeRetried = False
    If database.Errors.Count = 0 Then Exit Function ' the rule refused, not the database
    Select Case database.Errors.Item(0).SQLState
        Case "23505", "40001", "40P01"
            MayBeRetried = True
        Case "23000"
            Select Case database.Errors.Item(0).NativeError
                Case 2601, 2627, 1062
                    MayBeRetried = True
            End Select
    End Select
End Function

Sub Store(ticket, code)
    database.Execute "INSERT INTO codes (code, ticket) VALUES (" & Quoted(code) & ", " & Quoted(ticket) & ")"
    database.Execute "INSERT INTO numbers (series, number, code) VALUES (" & Quoted(series) & ", " & _
        CLng(Right(code, 6)) & ", " & Quoted(code) & ")"
End Sub

' A quote in a value would end the text; everything else in it, "%" and "_" included, is an ordinary character,
' because series are compared with "=", never with LIKE.
Function Quoted(text)
    Quoted = "'" & Replace(text, "'", "''") & "'"
End Function
' [issue]

' [event]
' An error of a handler never reaches the caller of GetCode: it is kept for TryToIssue, which raises it there.
Sub rule_GetLastCode(Filter, Value)
    Dim last
    On Error Resume Next
    last = LastCode(Filter)
    If Err.Number = 0 Then Value = last Else failure = Err.Description & " (when the last code was asked for)"
End Sub

Function LastCode(filter)
    series = filter
    If policy = "fast" Then
        If leased <> series Or nextNumber = endNumber Then TakeLease
        LastCode = Left(series, Len(series) - 6) & Right("000000" & (nextNumber - 1), 6)
    Else
        LastCode = One("SELECT code FROM numbers WHERE series = " & Quoted(series) & " AND number = " & _
            "(SELECT MAX(number) FROM numbers WHERE series = " & Quoted(series) & ")")
    End If
End Function

Sub TakeLease()
    nextNumber = 1 + Number(One("SELECT MAX(n) FROM (SELECT MAX(number) AS n FROM numbers WHERE series = " & _
        Quoted(series) & " UNION ALL SELECT MAX(last_number) FROM leases WHERE series = " & Quoted(series) & ") both_ends"))
    endNumber = nextNumber + LeaseSize
    database.Execute "INSERT INTO leases (series, first_number, last_number) VALUES (" & Quoted(series) & ", " & _
        nextNumber & ", " & (endNumber - 1) & ")"
    leased = series
End Sub
' [event]

' The first column of the first row as text; empty when there is none.
Function One(query)
    Dim rows
    Set rows = database.Execute(query)
    One = ""
    If Not rows.EOF Then One = rows.Fields(0).Value & ""
    rows.Close
End Function

Function Number(text)
    Number = 0
    If text <> "" Then Number = CLng(text)
End Function
