// Numbers given where a member could write: JScript passes values, which stay as they are.
var rule = WScript.CreateObject("Kestrel.CodeClass");
rule.Add("Number", 3, 0, "1", null, 2);
var code = 12;
rule.ExpCode(code);
check("ExpCode leaves a number", typeof code, "number");
check("the code was taken apart", rule("Number").Value, "12");

var tree = WScript.CreateObject("Kestrel.cNodes");
tree.Add(undefined, 0, "12", "twelve");
var direction = 0;
check("found", tree.Conversion(direction, code), "N1");
check("Conversion leaves a number", typeof code, "number");
check("and the direction", typeof direction, "number");
endOfScript();
