' Events that handlers answer through their arguments, and the order in which they come.
Option Explicit
Dim journal, veto, names, rule, nodes, fields, band, heardIndex
journal = ""
veto = ""

Sub Note(text)
    journal = journal & text & " "
End Sub

Sub CheckJournal(what, expected)
    Dim heard
    heard = Trim(journal)
    journal = ""
    Check what, heard, expected
End Sub

' Names: a handler refuses and explains.
Sub names_BeforeAdd(Name, Cancel, Description)
    Note "add:" & Name & ":" & Cancel & ":" & Description
    If Name = veto Then
        Cancel = True
        Description = "Not " & Name & "."
    End If
End Sub

Sub names_GetEnums(Enums)
    Note "enums"
End Sub

Set names = WScript.CreateObject("Kestrel.Names", "names_")
names.Add "A"
CheckJournal "a text is added", "add:A:False:"
veto = "B"
On Error Resume Next
names.Add "B"
CheckError "a text is refused", LibraryError(2022), "Failed to add item.Not B."
On Error GoTo 0
Check "nothing was added", names.Count, 1
CheckJournal "asked once", "add:B:False:"
names.ImportNames "B;C"
names.Remove 1
CheckJournal "importing and removing ask nobody", ""
WScript.DisconnectObject names
names.Add "B"
CheckJournal "nobody listens any more", ""

' Any value that converts is an answer.
Sub numbers_BeforeAdd(Name, Cancel, Description)
    Cancel = 1
    Description = 42
End Sub

Set names = WScript.CreateObject("Kestrel.Names", "numbers_")
On Error Resume Next
names.Add "A"
CheckError "a number for a flag and for a text", LibraryError(2022), "Failed to add item.42"
On Error GoTo 0

' A tree tells the keys of the parent and of the node.
Sub nodes_NodesChanged(ParentKey, HotKey)
    Note "[" & ParentKey & "," & HotKey & "]"
End Sub

Set nodes = WScript.CreateObject("Kestrel.cNodes", "nodes_")
nodes.Add , , "1", "one"
nodes.Add 1, tvwChild, "2", "two"
nodes(2).Text = "3"
nodes(2).Text = "3"
nodes(2).Tag = "three"
nodes.Drag 1, tvwNext, "N2"
nodes.RemoveItem 2
nodes.Remove 1
nodes.Cls
CheckJournal "each change once, no change no event", "[,N1] [N1,N2] [N1,N2] [N1,N2] [,N2] [,] [,]"

' A rule and its lists.
Sub rule_FieldsChanged()
    Note "fields"
End Sub

Sub rule_BandsChanged()
    Note "bands"
End Sub

Sub rule_LayeredBandsChanged()
    Note "layers"
End Sub

Sub rule_RelationsChanged()
    Note "relations"
End Sub

Sub rule_BeforeDropBand(Name, Cancel, Description)
    Note "drop:" & Name
    Cancel = (Name = veto)
    Description = "never shown"
End Sub

Sub fields_BeforeAdd(Name, Cancel, Description, Index)
    Note "add:" & Name
    heardIndex = Index
    Index = 1
    If Name = veto Then
        Cancel = True
        Description = "Item has existed."
    End If
End Sub

Sub fields_BeforeRemove(Name, Cancel, Description)
    Note "remove:" & Name & ":" & Cancel
    If Name = veto Then
        Cancel = True
        Description = "Keep it."
    End If
End Sub

Sub fields_CollectionChanged()
    Note "changed"
End Sub

Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
Set fields = rule.UsrFields
WScript.ConnectObject fields, "fields_"
fields.Add "Country"
CheckJournal "a field: the list asks, the rule hears before the host", "add:Country fields changed"
fields.Add "City"
Check "the place that the item takes", heardIndex, 2
Check "cannot be changed", fields(2).Name, "City"
CheckJournal "a second field", "add:City fields changed"
veto = "Street"
On Error Resume Next
fields.Add "Street"
CheckError "a field is refused", LibraryError(2022), "Failed to add item.Item has existed."
veto = "City"
fields.Remove "City"
CheckError "a removal is refused", LibraryError(2015), "Failed to drop item.Keep it."
On Error GoTo 0
veto = ""
CheckJournal "two refusals", "add:Street remove:City:False"
rule.Add "Land", bsUsrField, , , fields("Country"), 2
CheckJournal "a band", "bands"
On Error Resume Next
fields.Remove "Country"
CheckError "the rule refuses", LibraryError(2015), _
    "Failed to drop item.The field [Country] is bounded to the following Band:" & TwoLineBreaks() & "Land"
On Error GoTo 0
CheckJournal "before the host, which sees it", "remove:Country:True"
fields.Remove "City"
CheckJournal "a removal", "remove:City:False fields changed"
rule.UsrMacros.Add "Year"
CheckJournal "a macro", "fields"

rule("Land").SwapMode = smLayersSwap
CheckJournal "a layer", "layers"
rule.Relations.Add , , "01", "North"
CheckJournal "a relation of the layers", "relations"
rule.Relations.Cls
CheckJournal "all relations", "relations"
veto = "Land"
rule.Remove "Land"
CheckJournal "a band that the host keeps", "drop:Land"
Check "is there", rule.Count, 1
veto = ""
rule.Remove "Land"
CheckJournal "a band that goes", "drop:Land layers bands"
rule.Cls
CheckJournal "clearing announces itself", "relations bands"
WScript.DisconnectObject rule
WScript.DisconnectObject fields
rule.UsrFields.Add "Quiet"
CheckJournal "nobody listens any more", ""

' One procedure for several objects, and several prefixes for one object.
Sub second_FieldsChanged()
    Note "second"
End Sub

WScript.ConnectObject rule, "rule_"
WScript.ConnectObject rule, "second_"
fields.Add "Both"
CheckJournal "in the order of connecting", "fields second"
EndOfScript
