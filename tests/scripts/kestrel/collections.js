// Lists, names and bands from JScript: default members as calls, enumerators, references assigned plainly.
var names = WScript.CreateObject("Kestrel.Names");
names.Add("A");
names.Add("B");
check("by position, default member", names(1), "A");
check("by key", names.Item("B"), "B");
check("enumerated", itemsOf(names).join("+"), "A+B");
checkError("an unknown key", function () { names("C"); }, -2146828283, "Invalid procedure call or argument");
names.ImportNames("x;y");
check("imported", itemsOf(names).join(), "x,y");

var each = new Enumerator(names);
each.moveNext();
check("an enumerator moves on", each.item(), "y");
each.moveFirst();
check("and goes back", each.item(), "x");

var rule = WScript.CreateObject("Kestrel.CodeClass");
var field = rule.UsrFields.Add("Country", "Land", "DE");
check("a text", rule.UsrFields("Country").Value, "DE");
rule.UsrFields("Country").Value = 7;
check("a number becomes a text", field.Value, "7");
rule.Add("Prefix", 0, 0, "P");
rule.Add("Land", 2, 0, "", field, 1);
var serial = rule.Add("Serial", 3, 0, "1", null, 2, "00");
check("null is an object left out", serial.Name, "Serial");
check("bands", rule.Count, 3);
var bandNames = [];
for (var bands = new Enumerator(rule); !bands.atEnd(); bands.moveNext()) bandNames.push(bands.item().Name);
check("enumerated bands", bandNames.join(), "Prefix,Land,Serial");
check("a band by its name", rule("serial").Index, 3);
serial.TrigerBand = rule("Prefix");
check("a reference is assigned without Set", serial.TrigerBand.Name, "Prefix");
serial.TrigerBand = null;
checkNothing("and taken back", serial.TrigerBand);
rule("Land").DataField = rule.UsrFields.Add("Region", "", "8");
check("a field", rule("Land").DataField.Name, "Region");
check("a flag is a boolean", rule.CodeUCased, true);
check("a code", rule.GetCode(), "P8");
checkError("an error of the library", function () { rule.UsrFields.Add(""); }, libraryError(2003),
           "Invalid parametre(s) or value.");
checkError("with what is appended", function () { rule.LayeredBands.Add("X"); }, libraryError(2022),
           "Failed to add item.Incorrect layer name.");
endOfScript();
