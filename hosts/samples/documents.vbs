' Document numbers such as WD-1990-000002: a fixed prefix, the document's year, and a number that counts within the
' year. The rule asks for the last number issued through an event, and the script answers. A document that comes again gets
' the number that it has.
'
'   kscript documents.vbs                with events
'   kscript documents.vbs FILE           the same, and keeps the rule in FILE: loads it from there when there is one, and
'                                        saves it there when it has changed and the answer to the question is yes
'   cscript //nologo documents.vbs /noevents
'                                        under a host without events: the script tells the rule where to begin
Option Explicit

Const bsFixed = 0, bsUsrMacro = 1, bsIncreaseNumber = 3
Const gsNewCode = 1
Const ForReading = 1, AsUnicode = -1
Dim rule, issued, seriesOf, series, withEvents, ruleFile, document

withEvents = True
ruleFile = ""
If WScript.Arguments.Count > 0 Then
    If WScript.Arguments.Item(0) = "/noevents" Then
        withEvents = False
    Else
        ruleFile = WScript.Arguments.Item(0)
    End If
End If

If withEvents Then
    Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
Else
    Set rule = CreateObject("Kestrel.CodeClass")
End If
Set issued = CreateObject("Scripting.Dictionary")   ' the number of each document
Set seriesOf = CreateObject("Scripting.Dictionary") ' the series of each number
PrepareRule

For Each document In Array("1974-01-01 Withdrawal of AIDJ", "1989-12-05 Withdrawal of BUMM", _
        "1990-08-14 Withdrawal of YDYE", "1990-10-30 Withdrawal of DDDE", "1992-08-30 Withdrawal of SUHH", _
        "1990-12-31 A late entry", "undated entry", "1990-08-14 Withdrawal of YDYE")
    IssueNumber YearOf(document), document
Next
TakeApart "WD-1990-000002"
TakeApart "XX-1990-000002"
If ruleFile <> "" Then rule.Save
WScript.Quit 0

Sub PrepareRule()
    Dim stored
    rule.Name = "documents"
    rule_GetSettings rule.Name, stored
    If stored <> "" Then
        rule.Load stored
        Exit Sub
    End If
    rule.Add "Prefix", bsFixed, , "WD-"
    rule.Add "Year", bsUsrMacro, , , rule.UsrMacros.Add("Year"), 4
    rule.Add "Dash", bsFixed, , "-"
    rule.Add("Number", bsIncreaseNumber, , "1", , 6, "000000").TrackBands.Add "Year"
End Sub

' What stands before the first "-", or all.
Function YearOf(document)
    YearOf = Left(document, InStr(document & "-", "-") - 1)
End Function

' A document that the rule refuses is told, and the others go on.
Sub IssueNumber(year, document)
    Dim number
    On Error Resume Next
    If issued.Exists(document) Then number = issued(document) Else number = NewNumber(year)
    If Err.Number <> 0 Then
        WScript.Echo "Refused: " & document & ": " & Replace(Err.Description, vbCrLf, " ")
    Else
        issued(document) = number
        WScript.Echo number & "  " & document
    End If
End Sub

Function NewNumber(year)
    rule.UsrMacros("Year").Value = year
    If Not withEvents Then rule("Number").Default = NextInYear(year)
    NewNumber = rule.GetCode(gsNewCode)
    seriesOf(NewNumber) = series
End Function

Function NextInYear(year)
    Dim number
    NextInYear = 1
    For Each number In issued.Items
        If Mid(number, 4, 4) = year Then NextInYear = CLng(Right(number, 6)) + 1
    Next
End Function

Sub TakeApart(number)
    On Error Resume Next
    rule.ExpCode number
    If Err.Number <> 0 Then
        WScript.Echo number & ": " & Err.Description
    Else
        WScript.Echo number & ": year " & rule.UsrMacros("Year").Value & ", number " & rule("Number").Value
    End If
End Sub

' The highest number of the series. The filter is the name of the series: compared as a whole, for a "?" in it stands for
' any character only to the component.
Sub rule_GetLastCode(Filter, Value)
    Dim number
    series = Filter
    For Each number In seriesOf.Keys
        If seriesOf(number) = series And number > Value Then Value = number
    Next
End Sub

' The definition that the host holds now: none, or what the file holds.
Sub rule_GetSettings(Name, Value)
    Dim files
    Value = ""
    If ruleFile = "" Then Exit Sub
    Set files = CreateObject("Scripting.FileSystemObject")
    If files.FileExists(ruleFile) Then Value = files.OpenTextFile(ruleFile, ForReading, False, AsUnicode).ReadAll
End Sub

Sub rule_Save(Value, bChieved)
    Dim file
    Set file = CreateObject("Scripting.FileSystemObject").CreateTextFile(ruleFile, True, True)
    file.Write Value
    file.Close
    WScript.Echo "Saved " & Len(Value) & " characters."
    bChieved = True
End Sub
