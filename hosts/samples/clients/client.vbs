' The program of this folder in VBScript: makes a rule, answers what it asks, issues codes by ticket, takes codes apart.
' Every language here prints the same lines.
'
'   kscript client.vbs              or, on Windows, cscript //nologo client.vbs
Option Explicit

Const bsFixed = 0, bsUsrField = 2, bsIncreaseNumber = 3
Const gsNewCode = 1
Dim rule, issued, copy

Set issued = CreateObject("Scripting.Dictionary") ' what a program keeps in its database: the code of each ticket
Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
rule.Add "Prefix", bsFixed, , "INV-"
rule.Add "Year", bsUsrField, , , rule.UsrFields.Add("Year"), 4
rule.Add "Dash", bsFixed, , "-"
rule.Add("Number", bsIncreaseNumber, , "1", , 5, "00000").TrackBands.Add "Year"

IssueFor "order 1", "2026"
IssueFor "order 2", "2026"
IssueFor "order 3", "2027"
IssueFor "order 2", "2026" ' the same request again gets the same code
TakeApart "INV-2026-00002"
TakeApart "ABC-2026-00002"

Set copy = WScript.CreateObject("Kestrel.CodeClass")
copy.Load rule.Definition
WScript.Echo "stored and loaded: " & copy.Count & " bands"
WScript.Quit 0

Sub IssueFor(ticket, year)
    If Not issued.Exists(ticket) Then
        rule.UsrFields("Year").Value = year
        issued.Add ticket, rule.GetCode(gsNewCode)
    End If
    WScript.Echo ticket & ": " & issued(ticket)
End Sub

Sub TakeApart(code)
    On Error Resume Next
    rule.ExpCode code
    If Err.Number <> 0 Then
        WScript.Echo code & ": refused with " & (Err.Number And &HFFFF&) & ", " & Err.Description
    Else
        WScript.Echo code & ": year " & rule.UsrFields("Year").Value & ", number " & rule("Number").Value
    End If
End Sub

' The event: the last code issued that fits the filter, in which "?" is any character. The component adds one to its number.
Sub rule_GetLastCode(Filter, Value)
    Dim code
    WScript.Echo "asked for the last code like " & Filter
    For Each code In issued.Items
        If Left(code, 9) = Left(Filter, 9) And code > Value Then Value = code
    Next
End Sub
