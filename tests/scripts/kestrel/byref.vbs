' A variable that a member could write to keeps its type and value unless the member changed it.
Dim rule, tree, code, direction, key
Set rule = WScript.CreateObject("Kestrel.CodeClass")
rule.Add "Number", bsIncreaseNumber, , "1", , 2
code = 12
rule.ExpCode code
Check "ExpCode leaves an Integer", TypeName(code), "Integer"
Check "with its value", code, 12
Check "the code was taken apart", rule("Number").Value, "12"

Set tree = WScript.CreateObject("Kestrel.cNodes")
tree.Add , , "12", "12"
tree.Add , , "13", "thirteen"
direction = csCodeToValue
key = tree.Conversion(direction, code)
Check "found", key, "N1"
Check "Conversion leaves the direction an Integer", TypeName(direction), "Integer"
Check "and a value that stays the same", TypeName(code), "Integer"
code = 13
key = tree.Conversion(direction, code)
Check "a value that changes", code, "thirteen"

code = 14
On Error Resume Next
key = tree.Conversion(direction, code)
CheckError "no relation", LibraryError(2034), "No related relation defined."
On Error Goto 0
Check "a failure leaves the variable", TypeName(code), "Integer"
EndOfScript
