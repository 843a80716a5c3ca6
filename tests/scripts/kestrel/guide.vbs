' What the guides say about rules (docs/hosting.md: "What a rule does", "The definition string", "Threads and collections"),
' statement by statement.
Option Explicit
Dim rule, band, macro, node, asked, lastCode, text, copy, number, walked, one

Sub rule_GetLastCode(Filter, Value)
    asked = asked & Filter & " "
    Value = lastCode
End Sub

Sub NewRule()
    Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
    asked = ""
    lastCode = ""
End Sub

Function NewNumber()
    rule.Add "Prefix", bsFixed, , "inv-"
    Set NewNumber = rule.Add("Number", bsIncreaseNumber, , "1", , 4, "0000")
End Function

' A number counts only when it tracks a band; for one running number a fixed one.
NewRule
Set number = NewNumber()
lastCode = "inv-0007"
Check "a number that tracks nothing adds nothing", rule.GetCode(gsNewCode), "inv-"
number.Value = "7"
Check "until it has a value", rule.GetCode(gsNewCode), "inv-0007"
Check "which stays", rule.GetCode(gsNewCode), "inv-0007"
Check "and asks nobody", asked, ""
number.TrackBands.Add "Prefix"
Check "one that tracks a fixed band counts", rule.GetCode(gsNewCode), "inv-0008"
Check "and asks for the series", asked, "inv-???? "

' What is kept for the host.
number.InitStart = "5"
number.InitEnd = "8"
number.IncrMode = imTrigered
rule.ApplyMode = 1
rule.SeparaOfYear = 4
lastCode = "inv-0008"
Check "ranges, raise modes, apply modes and separators are not acted on", rule.GetCode(gsNewCode), "inv-0009"
Check "capitals do not reach fixed texts", rule.CodeUCased, True
rule.Add("Letter", bsIncreaseAlpha, , "A").Value = "B"
lastCode = "inv-0008B"
Check "a letter is not raised", rule.GetCode(gsNewCode), "inv-0009B"
rule.Remove "Letter"
Set node = rule.Relations.Add(, , "n", "North")
rule.CodeUCased = True
Check "capitals reach the codes of relations", node.Text, "N"

' Numbers that grow longer than their band.
lastCode = "inv-9999"
On Error Resume Next
text = rule.GetCode(gsNewCode)
CheckErrorNumber "a full series", LibraryError(2036)
On Error GoTo 0
lastCode = "inv-99"
On Error Resume Next
text = rule.GetCode(gsNewCode)
CheckErrorNumber "a last code of another length", LibraryError(2035)
On Error GoTo 0

' A new rule.
NewRule
Check "bands may not be added by the designer", rule.AllowAddBand, False
Check "nor removed", rule.AllowDropBand, False
Check "nor fields managed", rule.AllowFieldManage, False
Check "nor the simple style chosen", rule.AllowSimpleStyle, False
Check "nor the advanced options opened", InStr(rule.Definition, vbCr & "5" & vbCr & "0" & vbCr) > 0, True

' Years.
Set macro = rule.UsrMacros.Add("Day", , "2024-05-06")
Set band = rule.Add("Year", bsUsrMacro, , , macro, , "yyyy")
Check "the length is 1 until set, also beside yyyy", band.Length, 1
band.Length = 4
Check "a date gives its year", rule.GetCode, "2024"
rule.ExpCode "2024"
Check "which cannot be taken apart again", band.Value, "1905"
band.Formate = ""
macro.Value = "2024"
Check "the year itself", rule.GetCode, "2024"
rule.ExpCode "2024"
Check "can", band.Value, "2024"

' Two numbers in one rule: each asks for its own series, and counts by its own.
NewRule
rule.Add "Prefix", bsFixed, , "A"
rule.Add("Total", bsIncreaseNumber, , "1", , 3, "000").TrackBands.Add "Prefix"
rule.Add "Dash", bsFixed, , "-"
rule.Add "Year", bsUsrField, , , rule.UsrFields.Add("Year", , "2026"), 4
rule.Add("OfYear", bsIncreaseNumber, , "1", , 2, "00").TrackBands.Add "Year"
Check "both begin", rule.GetCode(gsNewCode), "A001-202601"
Check "each asks, the fixed bands and what it tracks standing", asked, "A???-?????? A???-2026?? "
lastCode = "A007-202603"
Check "the last code of each series is the other's too here", rule.GetCode(gsNewCode), "A008-202604"
Check "each number by its band", rule.Band("Total").Value & " " & rule.Band("OfYear").Value, "008 04"

' What the platform refuses, in its own numbers.
NewRule
Set number = NewNumber()
number.TrackBands.Add "Prefix"
number.Length = 2147483647
On Error Resume Next
rule.SeparaOfYear = "June"
CheckErrorNumber "an argument of the wrong kind", 13
text = rule.GetCode(gsNewCode, 2)
CheckErrorNumber "an argument too many", 450
text = rule.Band()
CheckErrorNumber "an argument too few", 450
rule.NoSuchMember
CheckErrorNumber "a member that there is not", 438
text = rule.GetCode(gsNewCode)
CheckErrorNumber "a code of more characters than memory holds", 7
On Error GoTo 0

' The definition string.
NewRule
Set number = NewNumber()
number.TrackBands.Add "Prefix"
number.Value = "41"
rule.Name = "Invoices"
rule.Value = "noted"
rule.Style = csSimple
rule.UsrFields.Add "A,B", , "one"
text = rule.Definition
Set copy = WScript.CreateObject("Kestrel.CodeClass")
copy.Load text
Check "it brings the bands back", copy.Count, 2
Check "and last values", copy.Band("Number").Value, "0041"
Check "and what is tracked", copy.Band("Number").TrackBands.Count, 1
Check "but not the name", copy.Name, ""
Check "nor the value", copy.Value, ""
Check "nor the style", copy.Style, csNormal
Check "and a name with a comma becomes another", copy.UsrFields(1).Name, "A"
Set macro = copy.UsrMacros.Add("Kept")
copy.ApplyMode = 1
copy.Load "no definition at all"
Check "loading never fails", copy.Count, 0
Check "and what the text does not name stays", copy.UsrMacros.Count & " " & copy.ApplyMode, "1 1"
NewRule
rule.SeparaOfWeek = 1
rule.SeparaOfMonth = 15
rule.UsrFields.Add "Town", , "Bonn" & vbCr & "Beuel"
Set copy = WScript.CreateObject("Kestrel.CodeClass")
copy.Load rule.Definition
Check "the day that weeks begin on does not come back", copy.SeparaOfWeek, 2
Check "but the one of months does", copy.SeparaOfMonth, 15
Check "nor what stands behind a carriage return", copy.UsrFields("Town").Value, "Bonn"
rule.UsrFields("Town").Value = "Bonn" & vbLf & "Beuel"
copy.Load rule.Definition
Check "what stands behind a line feed does", copy.UsrFields("Town").Value, "Bonn" & vbLf & "Beuel"

' Collections.
NewRule
Set number = NewNumber()
walked = 0
For Each one In rule
    walked = walked + 1
Next
Check "For Each walks the bands", walked, 2
On Error Resume Next
For Each one In rule.Relations
    walked = walked + 1
Next
Check "but not a tree", Err.Number <> 0, True
Err.Clear
On Error GoTo 0
EndOfScript
