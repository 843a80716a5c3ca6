Attribute VB_Name = "KestrelClient"
' The program of this folder in VBA: makes a rule, answers what it asks, issues codes by ticket, takes codes apart. Every
' language here prints the same lines.
'
' Not run by the tests: it takes Office on Windows. Import both files (File > Import File) into any project, set a reference
' to "Kestrel code rules 1.0" (Tools > References), and run Main; the lines come in the Immediate window (Ctrl+G).
Option Explicit

Public Sub Main()
    Dim client As New KestrelIssuer, copy As New Kestrel.CodeClass
    client.IssueFor "order 1", "2026"
    client.IssueFor "order 2", "2026"
    client.IssueFor "order 3", "2027"
    client.IssueFor "order 2", "2026" ' the same request again gets the same code
    client.TakeApart "INV-2026-00002"
    client.TakeApart "ABC-2026-00002"
    copy.Load client.Definition
    Debug.Print "stored and loaded: " & copy.Count & " bands"
End Sub
