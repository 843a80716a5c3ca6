// A relation tree under the system's own script host.
var failed = 0;
function check(what, actual, expected) {
    if (actual === expected) return;
    WScript.Echo("FAILED: " + what + ": " + actual + " instead of " + expected);
    failed += 1;
}

var nodes = new ActiveXObject("Kestrel.cNodes");
nodes.Add(undefined, 0, "01", "North");
nodes.Add("N1", 4, "1", "East");
check("tag", nodes("N2").Tag, "East");
check("conversion", nodes.Conversion(1, "east", "N1"), "N2");
var number = 0;
try {
    nodes.Add(undefined, 0, "01", "Other");
} catch (error) {
    number = error.number;
}
check("number", number, -2147219475);
WScript.Echo("end of script: 3 checks, " + failed + " failed");
WScript.Quit(40 + failed);
