' The first script: makes a rule, issues a code and takes another one apart.
Set rule = CreateObject("Kestrel.CodeClass")
Set field = rule.UsrFields.Add("Year", , "2026")
rule.Add "Prefix", 0, , "INV-"                          ' a fixed text
rule.Add "Year", 2, , , field, 4                        ' a field of the record, four characters
Set number = rule.Add("Number", 3, , "1", , 5, "00000") ' a number from 1 on, written with five digits
number.TrackBands.Add "Year"                            ' it begins anew with each year

WScript.Echo rule.GetCode(1)

rule.ExpCode "INV-202500042"
WScript.Echo "year " & field.Value & ", number " & number.Value
