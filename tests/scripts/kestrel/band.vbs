' A band outside of any rule: the order in which its properties can be set, and what each style refuses.
Option Explicit
Dim band

Function NewBand(style)
    Set NewBand = WScript.CreateObject("Kestrel.Band")
    NewBand.Style = style
End Function

Set band = WScript.CreateObject("Kestrel.Band")
Check "style of a new band", band.Style, bsUndefined
Check "length of a new band", band.Length, 1
Check "name of a new band", band.Name, ""
Check "value of a new band", band.Value, ""
Check "default member of a new band", band & "", ""
Check "position without a rule", band.Index, -1
Check "may be dropped", band.AllowDroped, True
Check "may be modified", band.AllowModified, True
Check "date of a new band", CDbl(band.DateUpdated), 0.0
CheckNothing "bindable fields without a style", band.DataFields
CheckNothing "tracked bands without a style", band.TrackBands
CheckNothing "relations without a conversion", band.Relations
CheckNothing "trigger", band.TrigerBand

On Error Resume Next
band.Value = "x"
CheckError "value before the style", LibraryError(2002), TextStyleNotDefined
band.Length = 3
CheckError "length before the style", LibraryError(2002), TextStyleNotDefined
band.Default = "x"
CheckError "default before the style", LibraryError(2002), TextStyleNotDefined
band.Formate = "x"
CheckError "format before the style", LibraryError(2002), TextStyleNotDefined
band.Style = 5
CheckErrorNumber "a style beyond the last", 5
band.Name = " "
CheckError "a name of blanks", LibraryError(2003), TextInvalid
band.Name = " A "
CheckNoError "a name"
Check "is trimmed", band.Name, "A"
band.Name = "B"
CheckError "a second name", LibraryError(2004), TextReadOnly
band.Style = bsFixed
CheckNoError "a style"
band.Style = bsFixed
CheckError "a second style", LibraryError(2001), TextCantBeChanged

' Fixed: its length and value follow its default.
band.Default = "INV"
Check "length of a fixed band", band.Length, 3
Check "value of a fixed band", band.Value, "INV"
Check "by its default member", "" & band, "INV"
band.Value = "x"
CheckError "value of a fixed band", LibraryError(2004), TextReadOnly
band.Length = 2
CheckError "length of a fixed band", LibraryError(2004), TextReadOnly
band.IncrMode = imIncrAuto
CheckError "raise mode of a fixed band", LibraryError(2004), TextReadOnly
band.SwapMode = smSimpleSwap
CheckError "conversion of a fixed band", LibraryError(2004), TextReadOnly
band.InitStart = "1"
CheckError "range of a fixed band", LibraryError(2004), TextReadOnly
Set band.DataField = WScript.CreateObject("Kestrel.List")
CheckError "field of a fixed band", LibraryError(2004), TextReadOnly
CheckNothing "fields of a fixed band", band.DataFields

' Number.
Set band = NewBand(bsIncreaseNumber)
Check "a number band raises itself", band.IncrMode, imIncrAuto
Check "its range begins at 1", band.InitStart, "1"
Check "and has no end", band.InitEnd, ""
band.Length = 0
CheckError "length 0", LibraryError(2003), TextInvalid & TwoLineBreaks() & "Length"
band.Length = 4
band.Default = "0012"
Check "a default is canonical", band.Default, "12"
band.Default = 7.5
Check "a number is a text", band.Default, "7.5"
band.Default = "x"
CheckError "a default that is no number", LibraryError(2003), TextInvalid
band.InitEnd = "0012"
Check "the end of the range stays as given", band.InitEnd, "0012"
band.InitEnd = ""
CheckNoError "no end of the range"
band.Name = "Serial"
band.Value = "12"
CheckError "a value of the wrong length", LibraryError(2036), "Incorrect length of band value." & TwoLineBreaks() & "Serial"
band.Formate = "0000"
band.Value = 42
CheckNoError "a value"
Check "is formatted", band.Value, "0042"
band.Value = "4x"
CheckError "a value that is no number", LibraryError(2003), TextInvalid
band.IncrMode = imNever
CheckErrorNumber "never raised", 5
band.IncrMode = imTrigered
Check "triggered", band.IncrMode, imTrigered
Set band.TrigerBand = NewBand(bsFixed)
CheckError "a trigger without a rule", LibraryError(2003), TextInvalid
band.TrackBands.Add "Other"
CheckError "tracking without a rule", LibraryError(2022), "Failed to add item." & TextInvalid
band.TrackBands.Add "serial"
CheckError "tracking itself", LibraryError(2022), "Failed to add item.No sense to track itself."
CheckSame "the same collection each time", band.TrackBands, band.TrackBands

' Letter.
Set band = NewBand(bsIncreaseAlpha)
Check "a letter band raises itself", band.IncrMode, imIncrAuto
Check "from A", band.InitStart, "A"
Check "to Z", band.InitEnd, "Z"
band.Default = "c"
Check "letters are upper case", band.Default, "C"
band.Value = "d"
Check "values too", band.Value, "D"
band.Default = "AB"
CheckError "two letters", LibraryError(2003), TextInvalid
band.Length = 2
CheckError "length of a letter band", LibraryError(2004), TextReadOnly
band.InitEnd = ""
CheckError "a letter band has an end", LibraryError(2003), TextInvalid
band.InitStart = "E"
band.Value = "D"
CheckError "a value before the range", LibraryError(2003), TextInvalid

' Field.
Set band = NewBand(bsUsrField)
Check "a field band has an item of its own until it is bound", band.DataField.Name, ""
CheckSame "the same each time", band.DataField, band.DataField
CheckNothing "no rule, no fields to bind", band.DataFields
band.Default = "x"
CheckError "default of a field band", LibraryError(2004), TextReadOnly
band.SwapMode = 3
CheckErrorNumber "a conversion beyond the last", 5
band.SwapMode = smSimpleSwap
Check "the relations of a simple conversion have one layer", band.Relations.Style, 1
band.Relations.Add , , "01", "One"
Check "and stay", band.Relations.Count, 1
band.Relations.Add 1, tvwChild, "1", "Below"
CheckError "no second layer", LibraryError(2003), TextInvalid
band.SwapMode = smNoneSwap
CheckNothing "no conversion, no relations", band.Relations
band.DateUpdated = #2024-05-06 07:08:09#
Check "a date", band.DateUpdated, #2024-05-06 07:08:09#
band.AllowDroped = False
Check "a flag", band.AllowDroped, False
CheckNoError "the end"
EndOfScript
