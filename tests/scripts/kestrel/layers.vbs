' Layer-style conversion: each layer is looked up below the one before it, through the rule's own tree.
Option Explicit
Dim rule, country, region, layers
Set rule = WScript.CreateObject("Kestrel.CodeClass")
Set country = rule.UsrFields.Add("Country", , "Germany")
Set region = rule.UsrFields.Add("Region", , "Bavaria")
rule.Add "Land", bsUsrField, smLayersSwap, , country, 2
rule.Add "Part", bsUsrField, smLayersSwap, , region, 3
Set layers = rule.LayeredBands
Check "both are layers", layers.Count, 2
Check "in order", layers(1).Name & layers(2).Name, "LandPart"
CheckSame "one tree for all", rule("Land").Relations, rule.Relations
Check "of any number of layers", rule.Relations.Style, 0

rule.Relations.Add , , "de", "Germany"
rule.Relations.Add , , "at", "Austria"
rule.Relations.Add "N1", tvwChild, "-by", "Bavaria"
rule.Relations.Add "N2", tvwChild, "-00", "Bavaria"
Check "codes stay as written", rule.GetCode(), "de-by"
country.Value = "austria"
Check "the same value in another layer", rule.GetCode(), "at-00"
rule.CodeUCased = False
Check "upper case is applied whatever the flag", rule.Relations(3).Text, "-BY"
Check "and stored", rule.CodeUCased, False
rule.ExpCode "DE-BY"
Check "back to values", country.Value & " " & region.Value, "Germany Bavaria"
On Error Resume Next
rule.ExpCode "AT-BY"
CheckError "a code of another branch", LibraryError(2034), "No related relation defined."
layers.Remove "Part"
CheckError "a layer in use", LibraryError(2015), "Failed to drop item.Layer is in use,no remove permmited."
On Error GoTo 0
EndOfScript
