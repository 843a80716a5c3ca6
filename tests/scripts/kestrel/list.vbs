' A single item: names are set once and trimmed, the rest is free.
Option Explicit
Dim item, other, described
Set item = WScript.CreateObject("Kestrel.List")
Check "name of a new item", item.Name, ""
Check "display name of a new item", item.ForeignName, ""
Check "value of a new item", item.Value, ""
Check "description of a new item is empty", IsEmpty(item.Description), True
Check "style of a new item", item.Style, 0

On Error Resume Next
item.Name = "   "
CheckError "a name of blanks", LibraryError(2003), TextInvalid
item.ForeignName = ""
CheckError "an empty display name", LibraryError(2003), TextInvalid
item.Style = 2
CheckErrorNumber "a style cannot be assigned", 438
item.NoSuchMember
CheckErrorNumber "an unknown member", 438
On Error GoTo 0

item.Name = "  Country "
Check "a name is trimmed", item.Name, "Country"
Check "the display name follows the first name", item.ForeignName, "Country"
item.ForeignName = " Land "
Check "a display name is trimmed", item.ForeignName, "Land"

On Error Resume Next
item.Name = "Other"
CheckError "a name is set once", LibraryError(2001), TextCantBeChanged
Check "the name stays", item.Name, "Country"
On Error GoTo 0

item.Value = 42
Check "a number becomes the text of the value", item.Value, "42"
item.value = "any letter case"
Check "members are found in any letter case", item.VALUE, "any letter case"

item.Description = 7
Check "a description keeps its type", item.Description, 7
item.Description = "text"
Check "a description may be a text", item.Description, "text"
item.Description = Null
Check "a description may be Null", IsNull(item.Description), True
item.Description = Array(1, 2)
described = item.Description
Check "a description may be an array", described(1), 2

Set other = WScript.CreateObject("Kestrel.List")
other.ForeignName = "Shown"
other.Name = "Key"
Check "a display name set first stays", other.ForeignName, "Shown"
EndOfScript
