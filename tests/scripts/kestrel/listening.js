// Events reach JScript functions; their arguments come by value.
var heard = [];
function names_BeforeAdd(name, cancel, description) { heard.push("add " + name + " " + cancel + " " + description); }
function rule_BandsChanged() { heard.push("bands"); }
var names = WScript.CreateObject("Kestrel.Names", "names_");
names.Add("A");
var rule = WScript.CreateObject("Kestrel.CodeClass");
WScript.ConnectObject(rule, "rule_");
rule.Add("Prefix", 0, 0, "P");
WScript.DisconnectObject(rule);
rule.Cls();
check("heard", heard.join(), "add A false ,bands");
check("a function that nobody defined is no error", names.Count, 1);
endOfScript();
