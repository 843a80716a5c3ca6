' Handlers that change, clear or let go of the object that raises the event.
Option Explicit
Dim rule, names, nodes, fields, plan

' Names: the handler adds, removes and clears.
Sub names_BeforeAdd(Name, Cancel, Description)
    If Name = "outer" Then names.Add "inner"
    If Name = "clearing" Then names.ImportNames ""
    If Name = "leaving" Then
        WScript.DisconnectObject names
        Set names = Nothing
    End If
End Sub

Set names = WScript.CreateObject("Kestrel.Names", "names_")
names.Add "outer"
Check "the inner text came first", names(1) & names(2), "innerouter"
names.Add "clearing"
Check "only the new text is left", names.Count, 1
Check "a call outlives the last reference", names.Add("leaving"), "leaving"
Check "which is gone", names Is Nothing, True

' A tree.
Sub nodes_NodesChanged(ParentKey, HotKey)
    If HotKey = "N1" Then nodes.Add "N1", tvwChild, "2", "two"
    If HotKey = "N3" Then nodes.Cls
    If HotKey = "N1" And plan = "leave" Then
        WScript.DisconnectObject nodes
        Set nodes = Nothing
    End If
End Sub

Dim node
Set nodes = WScript.CreateObject("Kestrel.cNodes", "nodes_")
Set node = nodes.Add(, , "1", "one")
Check "the handler added a child", nodes.Count, 2
Check "of the node", node.Child.Text, "2"
Set node = nodes.Add(, , "3", "three")
Check "the handler cleared the tree", nodes.Count, 0
Check "the node stays usable", node.Text & node.Key, "3N3"
plan = "leave"
Set node = nodes.Add(, , "1", "one")
Check "a node outlives its tree", node.Text & node.Layer, "10"
CheckNothing "and has no relatives", node.Nexts

' A rule.
Sub rule_BandsChanged()
    If plan = "add" Then
        plan = ""
        rule.Add "Inner", bsFixed, , "i"
    ElseIf plan = "clear" Then
        plan = ""
        rule.Cls
    ElseIf plan = "remove" Then
        plan = ""
        rule.Remove "Serial"
    ElseIf plan = "leave" Then
        plan = ""
        WScript.DisconnectObject rule
        Set rule = Nothing
    End If
End Sub

Sub rule_BeforeDropBand(Name, Cancel, Description)
    If plan = "drop inside" Then
        plan = ""
        rule.Remove Name
    ElseIf plan = "clear inside" Then
        plan = ""
        rule.Cls
    End If
End Sub

Sub rule_GetLastCode(Filter, Value)
    If plan = "clear while asking" Then
        plan = ""
        rule.Cls
    ElseIf plan = "load while asking" Then
        plan = ""
        rule.Load "#####"
    ElseIf plan = "ask while asking" Then
        plan = ""
        Value = rule.GetCode(gsNewCode)
    End If
End Sub

Function NewRule()
    Dim serial
    Set rule = WScript.CreateObject("Kestrel.CodeClass", "rule_")
    rule.Add "Prefix", bsFixed, , "P"
    Set serial = rule.Add("Serial", bsIncreaseNumber, , "1", , 2, "00")
    serial.TrackBands.Add "Prefix"
    Set NewRule = rule
End Function

plan = ""
NewRule
plan = "add"
Check "a band added while one is added", rule.Add("Outer", bsFixed, , "o").Name, "Outer"
Check "both are there", rule("Outer").Index & rule("Inner").Index, "34"
plan = "clear"
Check "cleared while one is added", rule.Add("Late", bsFixed, , "l").Index, -1
Check "nothing is left", rule.Count, 0

Dim band
NewRule
plan = "remove"
Set band = rule.Add("Late", bsFixed, , "l")
Check "a band is removed while another is added", rule(1).Name & rule(2).Name, "PrefixLate"
Check "positions are right", band.Index, 2

NewRule
On Error Resume Next
plan = "drop inside"
rule.Remove "Serial"
CheckNoError "the outer removal finds it gone"
Check "a band removed while it is removed", rule.Count, 1
plan = "clear inside"
rule.Remove "Prefix"
CheckNoError "the outer removal finds nothing"
Check "a rule cleared while a band is removed", rule.Count, 0
NewRule
plan = "clear while asking"
band = rule.GetCode(gsNewCode)
CheckNoError "the code is made of what is left"
Check "which is nothing", band, ""
Check "a rule cleared while it asks", rule.Count, 0
NewRule
plan = "load while asking"
band = rule.GetCode(gsNewCode)
CheckNoError "the code is made of what was loaded"
Check "a rule loaded while it asks", rule.Count, 0
On Error GoTo 0
NewRule
plan = "ask while asking"
Check "a code asked for while it asks", rule.GetCode(gsNewCode), "P02"

NewRule
plan = "leave"
Set band = rule.Add("Last", bsFixed, , "x")
Check "the rule is gone", rule Is Nothing, True
Check "its band is not", band.Value, "x"
Check "but has no rule", band.Index, -1

' Lists outlive nothing but themselves.
Set rule = WScript.CreateObject("Kestrel.CodeClass")
Set fields = rule.UsrFields
fields.Add "Kept"
Set rule = Nothing
Check "a list outlives its rule", fields("Kept").Name, "Kept"
fields.Add "More"
Check "and can be changed", fields.Count, 2
EndOfScript
