' A rule and its bands: adding, finding, moving and removing them; the settings; the lists.
Option Explicit
Dim rule, band, prefix, serial, field, names

Function NamesOf(bands)
    Dim each_
    For Each each_ In bands
        NamesOf = NamesOf & each_.Name & " "
    Next
End Function

Set rule = WScript.CreateObject("Kestrel.CodeClass")
Check "a new rule is empty", rule.Count, 0
Check "its codes are empty", rule.GetCode(), ""
Check "length", rule.Length, 0
Check "year begins", rule.SeparaOfYear, 1
Check "month begins", rule.SeparaOfMonth, 1
Check "week begins", rule.SeparaOfWeek, 2
Check "day begins", CDbl(rule.SeparaOfDay), 0.0
Check "upper case", rule.CodeUCased, True
Check "no permission", rule.AllowAddBand Or rule.AllowDropBand Or rule.AllowFieldManage Or rule.AllowSimpleStyle, False

Set field = rule.UsrFields.Add("Country", "Land", "DE", "where")
Check "an item of a list", field.Name & field.ForeignName & field.Value & field.Description, "CountryLandDEwhere"
Check "knows its list", field.Style, lsFields
rule.UsrMacros.Add " Year "
Check "names are trimmed", rule.UsrMacros(1).Name, "Year"
Check "an item in one call", rule.UsrFields("Country").Value, "DE"
rule.UsrFields("Country").Value = "FR"
Check "assigned in one call", field.Value, "FR"
CheckSame "by position", rule.UsrFields(1), field

' Arguments in the middle are left out.
Set prefix = rule.Add("Prefix", bsFixed, , "INV")
Set band = rule.Add("Land", bsUsrField, smNoneSwap, , field, 2)
Set serial = rule.Add("Serial", bsIncreaseNumber, , "1", , 4, "0000")
Check "three bands", rule.Count, 3
Check "in order", NamesOf(rule), "Prefix Land Serial "
CheckSame "by position, default member", rule(2), band
CheckSame "by name in any letter case", rule("SERIAL"), serial
CheckSame "by Band", rule.Band("Prefix"), prefix
Check "position of a band", serial.Index, 3
CheckSame "bound", band.DataField, field
CheckSame "the fields it may be bound to are the rule's", band.DataFields("Country"), field
Check "length of the code", rule.Length, 9
Check "style left out is fixed", rule.Add("Dash", , , "-", , , , "Serial").Style, bsFixed
Check "before another band", NamesOf(rule), "Prefix Land Dash Serial "
rule.Add "Tail", bsFixed, , "T", , , , , 1
Check "after a position", NamesOf(rule), "Prefix Tail Land Dash Serial "
Check "used fields", rule.UsedFields.Count, 1
CheckSame "are the bound items", rule.UsedFields(1), field

On Error Resume Next
rule.UsedFields.Add "X"
CheckError "used fields are the rule's own", LibraryError(2006), "Method not supported."
rule.Add "New", bsFixed, , "x", , , , 1, 2
CheckError "before and after", LibraryError(2003), TextInvalid
rule.Add "  ", bsFixed, , "x"
CheckError "a name of blanks", LibraryError(2003), TextInvalid
rule.Add "New", bsFixed
CheckError "a fixed band without a text", LibraryError(2003), TextInvalid
rule.Add "New", bsUsrField, , , , 2
CheckError "a field band without a field", LibraryError(2003), TextInvalid
rule.Add "prefix", bsFixed, , "x"
CheckErrorNumber "a name in use", LibraryError(2019)
rule.Add "New", bsFixed, , "x", , , , "Nowhere"
CheckErrorNumber "an unknown place", LibraryError(2018)
Set band = rule("Nowhere")
CheckErrorNumber "an unknown band", UnknownKey
Set band = rule(0)
CheckErrorNumber "position 0", NoSuchPosition
Set band = rule(6)
CheckErrorNumber "position Count + 1", NoSuchPosition
rule.UsrFields.Add "Country"
CheckErrorNumber "a field twice", DuplicateKey
rule.UsrFields.Add ""
CheckError "a field without a name", LibraryError(2003), TextInvalid
Set band = rule.UsrFields("country")
CheckErrorNumber "fields are found in their own letter case", UnknownKey
rule.UsrFields.Remove "Country"
CheckError "a field in use", LibraryError(2015), "Failed to drop item.The field [Country] is bounded to the following Band:" & TwoLineBreaks() & "Land"
rule.LayeredBands.Add "Nowhere"
CheckError "a layer without a band", LibraryError(2022), "Failed to add item.Incorrect layer name."
On Error GoTo 0
Check "failures leave the rule", NamesOf(rule), "Prefix Tail Land Dash Serial "

rule.Drag "Tail", , "Serial"
Check "moved behind", NamesOf(rule), "Prefix Land Dash Serial Tail "
rule.Drag 5, 1
Check "moved before", NamesOf(rule), "Tail Prefix Land Dash Serial "
On Error Resume Next
rule.Drag "Tail", "Prefix"
CheckError "moved to where it is", LibraryError(2008), "None action of drag is needed."
rule.Drag "Tail", "Tail"
CheckError "moved before itself", LibraryError(2008), "None action of drag is needed."
rule.Drag "Tail", "Nowhere"
CheckError "moved to nowhere", LibraryError(2003), TextInvalid
rule.Drag "Tail"
CheckError "moved without a place", LibraryError(2003), TextInvalid
On Error GoTo 0
rule.Remove "tail"
rule.Remove 3
Check "removed", NamesOf(rule), "Prefix Land Serial "

' References.
Set serial.TrigerBand = prefix
CheckSame "a trigger, Set", serial.TrigerBand, prefix
serial.IncrMode = imTrigered
CheckNothing "gone with a new raise mode", serial.TrigerBand
Set serial.TrigerBand = prefix
On Error Resume Next
rule.Remove "Prefix"
CheckError "a trigger cannot be removed", LibraryError(2009), _
    "The band can't be Deleted,cause still used as triger band for the following band(s):" & TwoLineBreaks() & "Serial"
Set serial.TrigerBand = serial
CheckError "its own trigger", LibraryError(2038), "Band should not trigered by itself."
Set serial.TrigerBand = WScript.CreateObject("Kestrel.Band")
CheckNoError "a band without a name is none"
CheckNothing "so there is no trigger", serial.TrigerBand
Set rule("Land").DataField = WScript.CreateObject("Kestrel.List")
CheckError "a foreign field", LibraryError(2003), TextInvalid & TwoLineBreaks() & "Field/Macro"
Set rule("Land").DataField = CreateObject("Scripting.Dictionary")
Check "no field at all", Err.Number <> 0, True
Err.Clear
On Error GoTo 0
Set serial.TrigerBand = prefix
Set serial.TrigerBand = Nothing
CheckNothing "Nothing is no trigger", serial.TrigerBand
Set rule("Land").DataField = rule.UsrFields.Add("Region")
Check "bound anew", rule.UsedFields(1).Name, "Region"

' Tracked bands.
serial.TrackBands.Add "Prefix"
serial.TrackBands.Add "land"
On Error Resume Next
serial.TrackBands.Add "SERIAL"
CheckError "tracking itself", LibraryError(2022), "Failed to add item.No sense to track itself."
serial.TrackBands.Add "Nowhere"
CheckError "tracking no band", LibraryError(2022), "Failed to add item." & TextInvalid
On Error GoTo 0
Dim name
names = ""
For Each name In serial.TrackBands
    names = names & name & " "
Next
Check "tracked", names, "Prefix land "

' Settings.
rule.Name = "  Invoices "
Check "the name is trimmed", rule.Name, "Invoices"
rule.SeparaOfDay = #2024-05-06 07:08:09#
Check "minutes of the day", CDbl(rule.SeparaOfDay), CDbl(#07:08:00#)
On Error Resume Next
rule.SeparaOfYear = 0
CheckError "month 0", LibraryError(2003), TextInvalid
rule.SeparaOfYear = 13
CheckError "month 13", LibraryError(2003), TextInvalid
rule.SeparaOfMonth = 29
CheckError "day 29", LibraryError(2003), TextInvalid
rule.SeparaOfWeek = 8
CheckError "weekday 8", LibraryError(2003), TextInvalid
rule.Style = 2
CheckError "style 2", LibraryError(2003), TextInvalid
rule.ApplyMode = 2
CheckError "apply mode 2", LibraryError(2003), TextInvalid
rule.SeparaOfYear = "no number"
CheckErrorNumber "a text for a number", 13
name = rule.AllowSetup
Check "AllowSetup can only be set", Err.Number <> 0, True
Err.Clear
rule.AllowSetup = True
CheckNoError "AllowSetup"
rule.Style = csSimple
CheckNoError "simple style"
Check "has no length", rule.Length, 0
On Error GoTo 0

rule.Cls
Check "cleared", rule.Count, 0
Check "fields stay", rule.UsrFields.Count, 2
Check "nothing is in use", rule.UsedFields.Count, 0
Check "settings stay", rule.Name, "Invoices"
Check "a band that left has no position", prefix.Index, -1
EndOfScript
