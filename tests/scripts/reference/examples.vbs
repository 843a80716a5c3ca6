' One line for each member and event of the component; the line below a comment that names one stands in the reference.
' What a line prints is the comment at its end: "|" stands between lines, "*" for whatever comes. Handlers print too, which
' shows that the event came; nobody clicks here, so that AddField does not, and some events are raised by nothing.
Option Explicit
Dim rule, band, number, region, item, list, names, tree, node, child, value, text, found, one, stored, last

Sub Heard(what)
    WScript.Echo "heard " & what
End Sub

' ---- Events ----

' __Lists.CollectionChanged
Sub list_CollectionChanged(): Heard "list_CollectionChanged": End Sub
' __Lists.BeforeRemove
Sub list_BeforeRemove(Name, Cancel, Description): Cancel = (Name = "Kept"): Heard "list_BeforeRemove": End Sub
' __Lists.BeforeAdd
Sub list_BeforeAdd(Name, Cancel, Description, Index): Description = "No room": Heard "list_BeforeAdd": End Sub
' __Names.GetEnums
Sub names_GetEnums(Enums): Heard "names_GetEnums": End Sub
' __Names.BeforeAdd
Sub names_BeforeAdd(Name, Cancel, Description): Cancel = (Name = "Year"): Heard "names_BeforeAdd": End Sub
' __cNodes.NodesChanged
Sub tree_NodesChanged(vParentKey, vHotKey): Heard "tree_NodesChanged": End Sub
' __Band.RelationsChanged
Sub band_RelationsChanged(Index): Heard "band_RelationsChanged": End Sub
' __CodeClass.Save
Sub rule_Save(Value, bChieved): stored = Value: bChieved = True: Heard "rule_Save": End Sub
' __CodeClass.Load
Sub rule_Load(Value, bChieved): Heard "rule_Load": End Sub
' __CodeClass.FieldsChanged
Sub rule_FieldsChanged(): Heard "rule_FieldsChanged": End Sub
' __CodeClass.BandsChanged
Sub rule_BandsChanged(): Heard "rule_BandsChanged": End Sub
' __CodeClass.AddField
Sub rule_AddField(Name): rule.UsrFields.Add InputBox("Which field?"): End Sub
' __CodeClass.DropField
Sub rule_DropField(Name): Heard "rule_DropField": End Sub
' __CodeClass.BeforeDropField
Sub rule_BeforeDropField(Name, Cancel, Description): Heard "rule_BeforeDropField": End Sub
' __CodeClass.BeforeDropBand
Sub rule_BeforeDropBand(Name, Cancel, Description): Cancel = (Name = "Prefix"): Heard "rule_BeforeDropBand": End Sub
' __CodeClass.LayeredBandsChanged
Sub rule_LayeredBandsChanged(): Heard "rule_LayeredBandsChanged": End Sub
' __CodeClass.RelationsChanged
Sub rule_RelationsChanged(): Heard "rule_RelationsChanged": End Sub
' __CodeClass.GetLastCode
Sub rule_GetLastCode(Filter, Value): Value = last: Heard "rule_GetLastCode": End Sub
' __CodeClass.GetSettings
Sub rule_GetSettings(Name, Value): Value = stored: Heard "rule_GetSettings": End Sub

' ---- A rule, its fields and macros ----

Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
' _CodeClass.UsrFields
Set list = rule.UsrFields
WScript.ConnectObject list, "list_"
' _Lists.Add
list.Add "Region", "Sales region", "North"
list.Add "Kept"
' _Lists.Item
Set item = list("Region")
' _Lists.Count
WScript.Echo list.Count ' 2
' _Lists.Remove
On Error Resume Next: list.Remove "Kept": WScript.Echo Err.Description: On Error Goto 0 ' Failed to drop item.
' _Lists.NewEnum
For Each one In list: WScript.Echo one.Name: Next ' Region|Kept
WScript.DisconnectObject list
' _List.Name
WScript.Echo item.Name ' Region
' _List.Value
item.Value = "South"
WScript.Echo item.Value ' South
' _List.Description
item.Description = "where the customer is"
' _List.ForeignName
WScript.Echo item.ForeignName ' Sales region
' _List.Style
WScript.Echo item.Style ' 2
' _CodeClass.UsrMacros
rule.UsrMacros.Add "Year", , "2026"
' _CodeClass.Name
rule.Name = "Invoices"
' _CodeClass.Value
rule.Value = "approved by accounting"
' _CodeClass.Style
WScript.Echo rule.Style ' 0
' _CodeClass.ApplyMode
WScript.Echo rule.ApplyMode ' 0
' _CodeClass.CodeUCased
rule.CodeUCased = True
' _CodeClass.SeparaOfYear
rule.SeparaOfYear = 4
' _CodeClass.SeparaOfMonth
rule.SeparaOfMonth = 15
' _CodeClass.SeparaOfWeek
WScript.Echo rule.SeparaOfWeek ' 2
' _CodeClass.SeparaOfDay
rule.SeparaOfDay = CDate("06:30")
' _CodeClass.AllowAddBand
rule.AllowAddBand = True
' _CodeClass.AllowDropBand
rule.AllowDropBand = True
' _CodeClass.AllowFieldManage
rule.AllowFieldManage = True
' _CodeClass.AllowSimpleStyle
rule.AllowSimpleStyle = False
' _CodeClass.AllowSetup
rule.AllowSetup = True

' ---- Bands ----

' _CodeClass.Add
Set band = rule.Add("Prefix", 0, , "INV-") ' 0 is bsFixed
WScript.ConnectObject band, "band_"
Set region = rule.Add("Region", 2, 2, , rule.UsrFields("Region"), 2) ' a field, converted in layers, two characters
rule.Add "Year", 1, , , rule.UsrMacros("Year"), 4
Set number = rule.Add("Number", 3, , "1", , 4, "0000") ' 3 is bsIncreaseNumber
' _CodeClass.Band
WScript.Echo rule("number").Index ' 4
' _CodeClass.Count
WScript.Echo rule.Count ' 4
' _CodeClass.NewEnum
For Each one In rule: WScript.Echo one.Name: Next ' Prefix|Region|Year|Number
' _CodeClass.Drag
rule.Drag "Year", "Region" ' before it
' _CodeClass.UsedFields
WScript.Echo rule.UsedFields(1).Name ' Year
' _CodeClass.LayeredBands
WScript.Echo rule.LayeredBands(1).Name ' Region
' _CodeClass.Length
WScript.Echo rule.Length ' 14
' _Band.Style
WScript.Echo number.Style ' 3
' _Band.Name
WScript.Echo number.Name ' Number
' _Band.Formate
number.Formate = "0000"
' _Band.Length
number.Length = 4
' _Band.Default
number.Default = "1"
' _Band.Value
WScript.Echo band.Value ' INV-
' _Band.IncrMode
number.IncrMode = 1 ' imIncrAuto
' _Band.DateUpdated
number.DateUpdated = CDate("2026-04-12")
' _Band.SwapMode
WScript.Echo region.SwapMode ' 2
' _Band.InitStart
number.InitStart = "1"
' _Band.InitEnd
number.InitEnd = "9999"
' _Band.DataFields
WScript.Echo region.DataFields.Count ' 2
' _Band.DataField
Set region.DataField = rule.UsrFields("Region")
' _Band.TrigerBand
Set number.TrigerBand = rule("Year")
' _Band.Index
WScript.Echo number.Index ' 4
' _Band.AllowDroped
number.AllowDroped = False
' _Band.AllowModified
number.AllowModified = True
' _Band.TrackBands
Set names = number.TrackBands
WScript.ConnectObject names, "names_"
' _Names.Add
names.Add "Region"
' _Names.Item
WScript.Echo names(1) ' Region
' _Names.Count
WScript.Echo names.Count ' 1
' _Names.NewEnum
For Each one In names: WScript.Echo one: Next ' Region
' _Names.Remove
names.Remove "Region"
' _Names.ImportNames
names.ImportNames "Region;Year"
WScript.Echo names.Count ' 2

' ---- Relations ----

' _CodeClass.Relations
Set tree = rule.Relations
WScript.ConnectObject tree, "tree_"
' _cNodes.Add
Set node = tree.Add(, , "01", "North")
tree.Add , , "02", "South"
Set child = tree.Add(node, 4, "1", "Hamburg") ' 4 is tvwChild
' _cNodes.Node
WScript.Echo tree(2).Text ' 02
' _cNodes.Count
WScript.Echo tree.Count ' 3
' _cNodes.Drag
tree.Drag node.Key, 2, tree(2).Key ' 2 is tvwNext: 02 stays behind 01
' _cNodes.Style
WScript.Echo tree.Style ' 0
' _cNodes.Conversion
value = "01": WScript.Echo tree.Conversion(0, value) & " is " & value ' N1 is North
' _cNodes.NewEnum
For one = 1 To tree.Count: WScript.Echo tree(one).Key: Next ' N1|N2|N3
' _Band.Relations
WScript.Echo region.Relations.Count ' 3
' _cNode.LastSibling
WScript.Echo node.LastSibling.Text ' 02
' _cNode.FirstSibling
WScript.Echo node.FirstSibling.Text ' 01
' _cNode.Child
WScript.Echo node.Child.Text ' 1
' _cNode.Root
WScript.Echo child.Root.Text ' 01
' _cNode.Parent
WScript.Echo child.Parent.Text ' 01
' _cNode.Children
WScript.Echo node.Children ' 0
' _cNode.Key
WScript.Echo node.Key ' N1
' _cNode.Previous
On Error Resume Next: Set found = node.Nexts.Previous: WScript.Echo Err.Number: On Error Goto 0 ' 91
' _cNode.Nexts
WScript.Echo node.Nexts.Text ' 02
' _cNode.Index
WScript.Echo child.Index ' 3
' _cNode.Layer
WScript.Echo child.Layer ' 1
' _cNode.Text
child.Text = "2"
' _cNode.Tag
child.Tag = "Bremen"
' _cNode.PreviousSibling
WScript.Echo node.Nexts.PreviousSibling.Text ' 01
' _cNode.Descendants
WScript.Echo node.Descendants ' 1
' _cNodes.Remove
tree.Remove child.Key
' _cNodes.RemoveItem
tree.RemoveItem tree.Add(, , "03", "West").Key

' ---- Codes ----

' _CodeClass.GetCode
WScript.Echo rule.GetCode(1) ' INV-2026020001
last = "INV-2026020041"
WScript.Echo rule.GetCode(1) ' INV-2026020042
text = "INV-2027010007"
' _CodeClass.ExpCode
rule.ExpCode text
WScript.Echo rule.UsrFields("Region").Value & " " & rule.UsrMacros("Year").Value ' North 2027
' _CodeClass.Check
For Each one In rule.Check: WScript.Echo one: Next ' *
' _CodeClass.Definition
text = rule.Definition
' _CodeClass.Save
rule.Save
If stored = text Then WScript.Echo "saved" ' saved
' _CodeClass.ShowDesigner
rule.ShowDesigner "Invoice numbers", True
' _CodeClass.ShowFieldManage
rule.ShowFieldManage "Fields of invoices"
' _CodeClass.ShowOptions
rule.ShowOptions
' _CodeClass.Remove
rule.Remove "Region"
' _CodeClass.Load
rule.Load text
WScript.Echo rule.Count ' 4
' _cNodes.Cls
rule.Relations.Cls
' _CodeClass.Cls
rule.Cls
WScript.Echo rule.Count ' 0
