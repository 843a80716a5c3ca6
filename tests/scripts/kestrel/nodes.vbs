' A relation tree: building, lookups, editing, conversion.
Option Explicit
Dim nodes, north, south, east, node, text, key, value, style
Set nodes = WScript.CreateObject("Kestrel.cNodes")
Check "a new tree is empty", nodes.Count, 0
Check "a new tree is normal", nodes.Style, 0

Set north = nodes.Add(, , "01", "North")
Set east = nodes.Add("N1", tvwChild, "1", "East")
Set south = nodes.Add(, , "02", "South")
Check "keys count up", north.Key & east.Key & south.Key, "N1N2N3"
Check "three nodes", nodes.Count, 3
CheckSame "by position, default member", nodes(2), east
CheckSame "by key, default member", nodes("N3"), south
CheckSame "by position, Node", nodes.Node(1), north
Check "a member of the default member's result", nodes("N2").Text, "1"

Check "layer of a root", north.Layer, 0
Check "layer of a child", east.Layer, 1
Check "position", south.Index, 3
CheckSame "parent", east.Parent, north
CheckNothing "parent of a root", north.Parent
CheckSame "child", north.Child, east
CheckNothing "child of a leaf", east.Child
CheckSame "root", east.Root, north
CheckSame "first sibling", south.FirstSibling, north
CheckSame "last sibling", north.LastSibling, south
CheckSame "next sibling", north.Nexts, south
CheckNothing "next of the last", south.Nexts
CheckNothing "Previous of a node that does not follow its first sibling directly", south.Previous
CheckSame "previous sibling", south.PreviousSibling, north
Check "Children is 0", north.Children, 0
Check "descendants", north.Descendants, 1

' The enumerator of a tree is an ordinary property, so a script walks a tree by positions.
On Error Resume Next
For Each node In nodes
    text = text & node.Key
Next
Check "For Each over a tree is refused", Err.Number <> 0, True
Err.Clear
On Error GoTo 0
text = ""
Dim position
For position = 1 To nodes.Count
    text = text & nodes(position).Key & " "
Next
Check "positions", text, "N1 N2 N3 "
Check "an enumerator there is all the same", VarType(nodes.NewEnum), vbDataObject

On Error Resume Next
Set node = nodes("N9")
CheckErrorNumber "an unknown key", UnknownKey
Set node = nodes(0)
CheckErrorNumber "position 0", NoSuchPosition
Set node = nodes(4)
CheckErrorNumber "position Count + 1", NoSuchPosition
nodes.Add , , "01", "Other"
CheckError "a code twice in a layer", LibraryError(2029), "Same code existed in the layer."
nodes.Add , , "03", "North"
CheckError "a value twice in a layer", LibraryError(2030), "Same value existed in the layer."
nodes.Add "N1", 5, "9", "Nine"
CheckError "an unknown relationship", LibraryError(2003), TextInvalid
nodes.Add "N9", tvwNext, "9", "Nine"
CheckErrorNumber "an unknown relative", UnknownKey
north.Text = "02"
CheckError "a code taken by a sibling", LibraryError(2029), "Same code existed in the layer."
north.Tag = "South"
CheckError "a value taken by a sibling", LibraryError(2030), "Same value existed in the layer."
Set node = south.PreviousSibling.Nexts.Previous
CheckNothing "Previous by its own steps", node
Err.Clear
On Error GoTo 0
Check "failures leave the tree", nodes.Count, 3
Check "and the code", north.Text, "01"

' Failed calls of Add have used their numbers.
Set node = nodes.Add("N3", tvwPrevious, "015", "Between")
Check "the next key", node.Key, "N8"
Check "before its relative", node.Index, 3
Check "code under another parent", nodes.Add(east.Key, tvwChild, "01", "North").Layer, 2

' A variable passed by reference comes back converted, by default member or not.
value = "02"
key = nodes.Conversion(csCodeToValue, value)
Check "the key of the node found", key, "N3"
Check "the value in the variable", value, "South"
style = csValueToCode
value = "south"
key = nodes.Conversion(style, value)
Check "without regard to case", key & value, "N302"
Check "the style stays", style, csValueToCode
value = "East"
key = nodes.Conversion(csValueToCode, value, "N1")
Check "in the layer below a node", key & value, "N21"
value = "1"
key = nodes.Conversion(csCodeToValue, value, 1)
Check "the node by its position", key & value, "N2East"
Check "an expression is converted too", nodes.Conversion(csCodeToValue, "0" & "1"), "N1"

On Error Resume Next
value = "99"
key = nodes.Conversion(csCodeToValue, value)
CheckError "no match", LibraryError(2034), "No related relation defined."
Check "the variable stays", value, "99"
key = nodes.Conversion(csCodeToValue, value, "N3")
CheckError "no children", LibraryError(2034), "No related relation defined."
key = nodes.Conversion(2, value)
CheckError "an unknown style", LibraryError(2003), TextInvalid
value = ""
key = nodes.Conversion(csCodeToValue, value)
CheckError "an empty value", LibraryError(2003), TextInvalid
value = "01"
key = WScript.CreateObject("Kestrel.cNodes").Conversion(csCodeToValue, value)
CheckError "an empty tree", LibraryError(2033), "No relation(s) defined."
On Error GoTo 0

' Moving and removing.
nodes.Drag "N1", tvwPrevious, "N3"
Check "moved to the front", south.Index, 1
Check "Drag without a node moves nothing", nodes.Count, 5
nodes.Drag "N1", tvwPrevious
Check "still five", nodes.Count, 5
nodes.Drag "N1", tvwChild, south
Check "a node is moved given itself", south.Parent.Key, "N1"
On Error Resume Next
nodes.Drag "N3", tvwChild, "N1"
CheckError "below itself", LibraryError(2003), TextInvalid
Check "nothing moved", nodes.Count, 5
On Error GoTo 0

nodes.Remove "N1"
Check "with all below", nodes.Count, 1
Check "a node that left stays usable", east.Tag, "East"
nodes.RemoveItem 1
Check "empty", nodes.Count, 0
nodes.Add
Check "keys go on after RemoveItem", nodes(1).Key, "N10"
nodes.Cls
Check "cleared", nodes.Count, 0
Set node = nodes.Add()
Check "keys begin anew after Cls", node.Key, "N1"
Check "an empty code", node.Text, ""
EndOfScript
