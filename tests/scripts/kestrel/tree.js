// A relation tree from JScript.
var nodes = WScript.CreateObject("Kestrel.cNodes");
var north = nodes.Add(undefined, 0, "01", "North");
check("undefined is an argument left out", north.Layer, 0);
var east = nodes.Add(north.Key, 4, "1", "East");
check("parent", east.Parent.Key, "N1");
checkNothing("no child", east.Child);
check("by key", nodes("N2").Tag, "East");
check("by position", nodes(1).Tag, "North");
check("a key is found by a value", nodes.Conversion(1, "EAST", "N1"), "N2");
checkError("same code", function () { nodes.Add(undefined, 0, "01", "Other"); }, libraryError(2029),
           "Same code existed in the layer.");
checkError("no relation", function () { nodes.Conversion(0, "77"); }, libraryError(2034),
           "No related relation defined.");
checkError("a position beyond the last", function () { nodes(3); }, -2146828279, "Subscript out of range");

var keys = [];
for (var node = nodes(1); node !== null; node = node.Child) keys.push(node.Key);
check("down the layers", keys.join(), "N1,N2");
nodes.Cls();
check("cleared", nodes.Count, 0);
endOfScript();
