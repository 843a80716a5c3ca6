// What is wrong with a rule, from JScript.
var rule = WScript.CreateObject("Kestrel.CodeClass");
rule.Add("Prefix", 0, 0, "INV");
check("nothing counts", rule.Check().Count, 1);
check("sentence", rule.Check()(1), "No band tells two records with the same fields apart: they get the same code.");
var serial = rule.Add("Serial", 3, 0, "1", undefined, 2, "00");
serial.TrackBands.Add("Prefix");
var findings = rule.Check();
check("one finding", findings.Count, 1);
check("few numbers", findings.Item(1), "[Serial] There are only 99 number(s), from 1 to 99.");
serial.Length = 4;
serial.Formate = "0000";
check("all is well", rule.Check().Count, 0);
endOfScript();
