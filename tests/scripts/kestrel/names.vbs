' A collection of texts: keyed when added one by one, without keys when imported.
Option Explicit
Dim names, name, text, i
Set names = WScript.CreateObject("Kestrel.Names")
Check "a new collection is empty", names.Count, 0
Check "Add returns the text", names.Add("A"), "A"
names.Add "B"
Check "two texts", names.Count, 2
Check "by position, default member", names(1), "A"
Check "by key, default member", names("B"), "B"
Check "by position, Item", names.Item(2), "B"
Check "a position as a double", names(2.0), "B"
i = 1
Check "a position in a variable", names(i), "A"
name = "B"
Check "a key in a variable", names(name), "B"

On Error Resume Next
names.Add "A"
CheckErrorNumber "a text twice", DuplicateKey
text = names("C")
CheckErrorNumber "an unknown key", UnknownKey
text = names("a")
CheckErrorNumber "a key in another letter case", UnknownKey
text = names(0)
CheckErrorNumber "position 0", NoSuchPosition
text = names(3)
CheckErrorNumber "position Count + 1", NoSuchPosition
text = names(-1)
CheckErrorNumber "position -1", NoSuchPosition
names.Remove 3
CheckErrorNumber "removing position Count + 1", NoSuchPosition
names.Remove "C"
CheckErrorNumber "removing an unknown key", UnknownKey
names.Add
Check "Add without its argument fails", Err.Number <> 0, True
Err.Clear
On Error GoTo 0
Check "failures leave the collection", names.Count, 2

text = ""
For Each name In names
    text = text & "[" & name & "]"
Next
Check "For Each", text, "[A][B]"

text = "A;B;;A"
names.ImportNames text
Check "the imported text stays", text, "A;B;;A"
Check "every piece is kept", names.Count, 4
text = ""
For Each name In names
    text = text & "[" & name & "]"
Next
Check "imported texts", text, "[A][B][][A]"
Check "a text imported can be added with its key", names.Add("A"), "A"
Check "and is found by it", names("A"), "A"
Check "five texts", names.Count, 5
On Error Resume Next
text = names("B")
CheckErrorNumber "an imported text has no key", UnknownKey
On Error GoTo 0

names.ImportNames "A,B"
Check "a comma separates nothing", names(1), "A,B"
names.Remove 1
Check "removed by position", names.Count, 0
names.Add "x"
names.Remove "x"
Check "removed by key", names.Count, 0
names.Add "y"
names.ImportNames ""
Check "importing nothing empties", names.Count, 0
names.Add ""
Check "an empty text can be added", names(1), ""

text = "while enumerating"
names.ImportNames "1;2;3"
For Each name In names
    If name = "1" Then names.Remove 1
    text = text & name
Next
Check "a collection may change while it is enumerated", names.Count, 2
EndOfScript
