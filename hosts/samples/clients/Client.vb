' The program of this folder in VB.NET: makes a rule, answers what it asks, issues codes by ticket, takes codes apart. Every
' language here prints the same lines. VB 14 or newer, with Kestrel.Interop.dll (Kestrel.cs).
Imports System
Imports System.Collections.Generic
Imports System.Linq
Imports System.Runtime.InteropServices
Imports Kestrel.Interop

Module Client
    Private Const Fixed = 0, UserField = 2, Number = 3, NewCode = 1
    Private ReadOnly rule As New Rule
    Private ReadOnly issued As New Dictionary(Of String, String) ' what a program keeps in its database
    Private year As Late

    <STAThread>
    Sub Main()
        rule.Events.LastCode = AddressOf LastCode
        year = rule.GetObject("UsrFields").CallForObject("Add", "Year")
        AddBand("Prefix", Fixed, "INV-")
        AddBand("Year", UserField, "", 4, "", year)
        AddBand("Dash", Fixed, "-")
        AddBand("Number", Number, "1", 5, "00000").GetObject("TrackBands").Call("Add", "Year")

        IssueFor("order 1", "2026")
        IssueFor("order 2", "2026")
        IssueFor("order 3", "2027")
        IssueFor("order 2", "2026") ' the same request again gets the same code
        TakeApart("INV-2026-00002")
        TakeApart("ABC-2026-00002")

        Dim copy As New Rule
        copy.Call("Load", rule.Get("Definition"))
        Console.WriteLine($"stored and loaded: {copy.Get("Count")} bands")
        copy.Close()
        rule.Close()
    End Sub

    Private Function AddBand(name As String, style As Integer, first As String, Optional length As Integer = 0,
                             Optional format As String = "", Optional field As Late = Nothing) As Late
        Dim bound = If(field Is Nothing, Type.Missing, field.Target)
        Dim given = If(length = 0, Type.Missing, CObj(length))
        Return rule.CallForObject("Add", name, style, 0, first, bound, given, format)
    End Function

    Private Sub IssueFor(ticket As String, ofYear As String)
        If Not issued.ContainsKey(ticket) Then
            year.Set("Value", ofYear)
            issued(ticket) = CStr(rule.Call("GetCode", NewCode))
        End If
        Console.WriteLine($"{ticket}: {issued(ticket)}")
    End Sub

    Private Sub TakeApart(code As String)
        Try
            rule.Call("ExpCode", code)
            Console.WriteLine($"{code}: year {year.Get("Value")}, number {rule.GetObject("Band", "Number").Get("Value")}")
        Catch refused As COMException
            Console.WriteLine($"{code}: refused with {refused.ErrorCode And &HFFFF}, {refused.Message}")
        End Try
    End Sub

    ' The event: the last code issued that fits the filter, in which "?" is any character. The component adds one to its number.
    Private Function LastCode(filter As String) As String
        Console.WriteLine($"asked for the last code like {filter}")
        Return If(issued.Values.Where(Function(code) code.StartsWith(filter.Substring(0, 9), StringComparison.Ordinal)).
            OrderBy(Function(code) code, StringComparer.Ordinal).LastOrDefault(), "")
    End Function
End Module
