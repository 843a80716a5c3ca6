' Codes issued, taken apart, and the rule stored and restored, with a host that knows the last code.
Option Explicit
Dim rule, restored, macro, field, serial, asked, lastCode, code, definition, held, saved

Sub rule_GetLastCode(Filter, Value)
    asked = asked & Filter & "|" & Value & " "
    Value = lastCode
End Sub

Sub rule_GetSettings(Name, Value)
    asked = asked & "settings of " & Name & "|" & Value & " "
    Value = held
End Sub

Sub rule_Save(Value, bChieved)
    saved = Value
    bChieved = True
End Sub

Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
rule.Name = "Documents"
Set macro = rule.UsrMacros.Add("Year", , "24")
Set field = rule.UsrFields.Add("Branch", , "North")
rule.Add "Prefix", bsFixed, , "IN"
rule.Add "Period", bsUsrMacro, , , macro, 2
rule.Add "Place", bsUsrField, smSimpleSwap, , field, 2
rule("Place").Relations.Add , , "01", "North"
rule("Place").Relations.Add , , "02", "South"
Set serial = rule.Add("Serial", bsIncreaseNumber, , "5", , 4, "0000")
serial.TrackBands.Add "Prefix"
serial.TrackBands.Add "Period"

Check "the first code begins at the default", rule.GetCode(gsNewCode), "IN24010005"
Check "asked with a pattern", asked, "IN24??????| "
lastCode = "IN24020041"
Check "the next code", rule.GetCode(gsNewCode), "IN24010042"
Check "the current code", rule.GetCode(gsCurrent), "IN24010041"
Check "style left out is current", rule.GetCode, "IN24010041"
field.Value = "south"
macro.Value = "25"
asked = ""
Check "of other values", rule.GetCode(gsNewCode), "IN25020042"
Check "the pattern follows the tracked bands", asked, "IN25??????| "
lastCode = "IN25020001"
Check "never below the default", rule.GetCode(gsNewCode), "IN25020005"
Check "values of the bands", rule("Prefix") & rule("Period") & rule("Place") & rule("Serial"), "IN25020005"

On Error Resume Next
code = rule.GetCode(2)
CheckError "an unknown style", LibraryError(2003), TextInvalid
lastCode = "IN2502000"
code = rule.GetCode(gsNewCode)
CheckError "a last code too short", LibraryError(2035), "Incorrect previous code."
lastCode = ""
field.Value = "West"
code = rule.GetCode(gsNewCode)
CheckError "a value without a relation", LibraryError(2034), "No related relation defined."
field.Value = "South"
macro.Value = "2025"
code = rule.GetCode(gsNewCode)
CheckError "a value of the wrong length", LibraryError(2036), "Incorrect length of band value." & TwoLineBreaks() & "Period"
On Error GoTo 0
macro.Value = "25"

' Codes taken apart; the code is passed in a variable.
code = "IN23010777"
rule.ExpCode code
Check "the variable stays", code, "IN23010777"
Check "the macro", macro.Value, "23"
Check "the field, converted back", field.Value, "North"
Check "the number", serial.Value, "0777"
rule.ExpCode "IN" & "24020001"
Check "an expression", field.Value & serial.Value, "South0001"
On Error Resume Next
rule.ExpCode "IN2402000"
CheckError "a code too short", LibraryError(2040), "Length of code ilegal!"
rule.ExpCode "in24020001"
CheckError "a fixed band in another letter case", LibraryError(2041), "Fixed band value error. Code can't be disassembled."
On Error GoTo 0

' The definition, line by line; written by hand from the format's description.
definition = "#####02|0|3|0|4|0|5|0|6|0|7|0|8|1|11|2|12|1|13|1" & _
    "|14|Branch,,South|15|Year,,24" & _
    "|16|0=Prefix|1=0|2=0|3=IN|4=|5=2|6=|7=0|8=|9=|10=|11=1899-12-30 00:00:00|12=IN|13=|14=|15=1|16=1|17" & _
    "|16|0=Period|1=1|2=0|3=|4=|5=2|6=Year|7=0|8=|9=|10=|11=1899-12-30 00:00:00|12=24|13=|14=|15=1|16=1|17" & _
    "|16|0=Place|1=2|2=1|3=|4=|5=2|6=Branch|7=0|8=|9=|10=|11=1899-12-30 00:00:00|12=02|13=|14=2;,1,01,North;,2,02,South" & _
    "|15=1|16=1|17" & _
    "|16|0=Serial|1=3|2=0|3=5|4=0000|5=4|6=|7=1|8=1|9=|10=|11=1899-12-30 00:00:00|12=0001|13=Prefix,Period|14=" & _
    "|15=1|16=1|17"
Check "the definition", Replace(rule.Definition, vbCr, "|"), definition

Set restored = WScript.CreateObject("Kestrel.CodeClass")
definition = rule.Definition
restored.Load definition
Check "restored", restored.Definition, definition
Check "the name is not part of it", restored.Name, ""
restored.UsrFields("Branch").Value = "North"
Check "a restored rule issues codes", restored.GetCode(gsNewCode), "IN24010005"
restored.Load
Check "loading nothing empties the rule", restored.Count, 0
restored.Load "#####"
Check "the header alone is an empty rule", restored.Count, 0

' Saving: a host that holds the same definition, in any letter case, is asked no question.
asked = ""
held = UCase(rule.Definition)
rule.Save
Check "asked for what it holds", asked, "settings of Documents| "
Check "nothing was saved", IsEmpty(saved), True
EndOfScript
