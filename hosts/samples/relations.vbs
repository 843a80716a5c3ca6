' A layered relation tree: countries, the regions of each, and the towns of a region. Each layer has its own codes; the
' same code can mean something else under another parent. Values become codes and codes become values, layer by layer.
'
'   cscript //nologo relations.vbs      or      kscript relations.vbs
Option Explicit

Const tvwChild = 4
Const csCodeToValue = 0, csValueToCode = 1
Dim tree, place

Set tree = CreateObject("Kestrel.cNodes")
AddPlaces "", "DE:Germany AT:Austria CH:Switzerland"
AddPlaces "DE", "BY:Bavaria HE:Hesse SN:Saxony"
AddPlaces "AT", "01:Burgenland 09:Vienna"
AddPlaces "DE/BY", "M:Munich N:Nuremberg"
AddPlaces "DE/HE", "F:Frankfurt W:Wiesbaden"
AddPlaces "DE/SN", "L:Leipzig M:Meissen"
AddPlaces "AT/09", "M:Mariahilf"

WScript.Echo tree.Count & " places:"
ShowLayer tree(1)

WScript.Echo ""
WScript.Echo "Values to codes and back:"
For Each place In Array("Germany/Bavaria/Munich", "germany/saxony/MEISSEN", "Austria/Vienna/Mariahilf", "Switzerland")
    WScript.Echo place & " = " & CodesOf(place) & " = " & ValuesOf(CodesOf(place))
Next

WScript.Echo ""
WScript.Echo "What is refused:"
On Error Resume Next
tree.Add tree(1).Key, tvwChild, "BY", "Brandenburg"
WScript.Echo "A second region BY in Germany: " & Err.Description
Err.Clear
place = CodesOf("Austria/Bavaria")
WScript.Echo "Bavaria in Austria: " & Err.Description
Err.Clear
On Error GoTo 0

WScript.Quit 0

' Adds the pairs CODE:VALUE below the place whose codes are given, joined by "/"; none is the first layer.
Sub AddPlaces(parentCodes, pairs)
    Dim pair, parts
    For Each pair In Split(pairs, " ")
        parts = Split(pair, ":")
        If parentCodes = "" Then
            tree.Add , , parts(0), parts(1)
        Else
            tree.Add LastKeyOf(parentCodes), tvwChild, parts(0), parts(1)
        End If
    Next
End Sub

Function LastKeyOf(codes)
    Dim code, value
    For Each code In Split(codes, "/")
        value = code
        LastKeyOf = KeyBelow(LastKeyOf, csCodeToValue, value)
    Next
End Function

Function CodesOf(values)
    CodesOf = Converted(values, csValueToCode)
End Function

Function ValuesOf(codes)
    ValuesOf = Converted(codes, csCodeToValue)
End Function

' Converts the parts one after the other, each below the node that was found for the part before.
Function Converted(parts, direction)
    Dim part, other, key
    For Each part In Split(parts, "/")
        other = part
        key = KeyBelow(key, direction, other)
        If Converted <> "" Then Converted = Converted & "/"
        Converted = Converted & other
    Next
End Function

' The conversion returns the key of the node and leaves the other side of its pair in the variable.
Function KeyBelow(parentKey, direction, ByRef value)
    If IsEmpty(parentKey) Then
        KeyBelow = tree.Conversion(direction, value)
    Else
        KeyBelow = tree.Conversion(direction, value, parentKey)
    End If
End Function

Sub ShowLayer(first)
    Dim node
    Set node = first
    Do Until node Is Nothing
        WScript.Echo Space(2 * node.Layer + 2) & node.Text & " " & node.Tag
        If Not node.Child Is Nothing Then ShowLayer node.Child
        Set node = node.Nexts
    Loop
End Sub
