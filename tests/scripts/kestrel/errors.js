// The table of errors in the reference, line by line: what is said to cause an error does, and what is said to help does.
// A test compares the numbers here with those of the table. 2035 is in guide.vbs: JScript cannot answer events.
var bsFixed = 0, bsUsrMacro = 1, bsUsrField = 2, bsIncreaseNumber = 3;
var smNoneSwap = 0, smLayersSwap = 2, imTrigered = 2, tvwChild = 4, csValueToCode = 1, gsNewCode = 1;

function newRule() {
    var made = WScript.CreateObject("Kestrel.CodeClass");
    made.Add("Prefix", bsFixed, 0, "P");
    return made;
}

function failure(cause) {
    try { cause(); } catch (error) { return error; }
    return { number: 0, description: "no error" };
}

// The cause fails with the error whose own number this is; the remedy does not fail.
function expect(number, cause, remedy) {
    check(number + " by " + cause, failure(cause).number & 0xFFFF, number);
    if (remedy) check(number + " is helped by " + remedy, failure(remedy).description, "no error");
}

// The text of another error goes on with the reason.
function expectReason(number, within, reason, cause, remedy) {
    var refused = failure(cause);
    check(number + " within another by " + cause, refused.number & 0xFFFF, within);
    check("with its text: " + refused.description, refused.description.indexOf(reason) > 0, true);
    check(number + " is helped by " + remedy, failure(remedy).description, "no error");
}

var rule = newRule(), band, item, tree, node;
expect(5, function () { rule.Band("None"); }, function () { rule.Band("Prefix"); });
expect(5, function () { WScript.CreateObject("Kestrel.Band").Style = 99; },
    function () { WScript.CreateObject("Kestrel.Band").Style = bsFixed; });
expect(9, function () { rule.Band(2); }, function () { rule.Band(rule.Count); });
expect(9, function () { rule.Band(0); }, function () { rule.Band(1); });
rule.UsrFields.Add("F");
expect(457, function () { rule.UsrFields.Add("F"); }, function () { rule.UsrFields.Add("G"); });
band = rule.Band("Prefix");
expect(2001, function () { band.Style = bsUsrField; },
    function () { rule.Add("Another", bsUsrField, 0, "", rule.UsrFields("F"), 2); });
item = WScript.CreateObject("Kestrel.List");
item.Name = "A";
expect(2001, function () { item.Name = "B"; }, function () { WScript.CreateObject("Kestrel.List").Name = "B"; });
expect(2003, function () { item.ForeignName = " "; }, function () { item.ForeignName = "Shown"; });
band = WScript.CreateObject("Kestrel.Band");
expect(2002, function () { band.Default = "x"; }, function () { band.Style = bsFixed; band.Default = "x"; });
expect(2003, function () { rule.SeparaOfYear = 13; }, function () { rule.SeparaOfYear = 12; });
expect(2003, function () { rule.Add("", bsFixed, 0, "x"); }, function () { rule.Add("Named", bsFixed, 0, "x"); });
expect(2004, function () { rule.Band("Prefix").Formate = "0"; }, function () { rule.Band("Another").Formate = "@"; });
expect(2004, function () { rule.Band("Prefix").Name = "Again"; });
expect(2006, function () { rule.UsedFields.Add("H"); }, function () { rule.UsrFields.Add("H"); });
expect(2008, function () { rule.Drag("Prefix", 1); }, function () { rule.Drag("Prefix", undefined, 2); });

// Bands that others need. The question about trackers is answered No.
rule = newRule();
var number = rule.Add("Number", bsIncreaseNumber, 0, "1", null, 2);
number.IncrMode = imTrigered;
number.TrigerBand = rule.Band("Prefix");
expect(2038, function () { number.TrigerBand = number; });
expect(2009, function () { rule.Remove("Prefix"); }, function () { number.TrigerBand = null; rule.Remove("Prefix"); });
rule = newRule();
rule.Add("Number", bsIncreaseNumber, 0, "1", null, 2).TrackBands.Add("Prefix");
expect(2011, function () { rule.Remove("Prefix"); },
    function () { rule.Band("Number").TrackBands.Remove("Prefix"); rule.Remove("Prefix"); });
rule = newRule();
expect(2018, function () { rule.Add("A", bsFixed, 0, "x", null, undefined, "", "None"); },
    function () { rule.Add("A", bsFixed, 0, "x", null, undefined, "", "Prefix"); });
expect(2019, function () { rule.Add("PREFIX", bsFixed, 0, "x"); }, function () { rule.Add("B", bsFixed, 0, "x"); });

// Lists that refuse, and why.
rule = newRule();
item = rule.UsrFields.Add("F");
rule.UsrFields.Add("G");
band = rule.Add("Field", bsUsrField, 0, "", item, 2);
expect(2015, function () { rule.UsrFields.Remove("F"); });
expectReason(2014, 2015, "[F]", function () { rule.UsrFields.Remove("F"); },
    function () { rule.Band("Field").DataField = rule.UsrFields("G"); rule.UsrFields.Remove("F"); });
item = rule.UsrMacros.Add("M");
rule.UsrMacros.Add("N");
band = rule.Add("Macro", bsUsrMacro, 0, "", item, 2);
expectReason(2016, 2015, "[M]", function () { rule.UsrMacros.Remove("M"); },
    function () { rule.Band("Macro").DataField = rule.UsrMacros("N"); rule.UsrMacros.Remove("M"); });
band.SwapMode = smLayersSwap;
expectReason(2024, 2015, "Layer is in use", function () { rule.LayeredBands.Remove("Macro"); },
    function () { band.SwapMode = smNoneSwap; });
expect(2022, function () { rule.LayeredBands.Add("None"); });
expectReason(2023, 2022, "Incorrect layer", function () { rule.LayeredBands.Add("None"); },
    function () { rule.Add("None", bsFixed, 0, "x"); rule.LayeredBands.Add("None"); });
number = rule.Add("Number", bsIncreaseNumber, 0, "1", null, 2);
expectReason(2031, 2022, "No sense", function () { number.TrackBands.Add("Number"); },
    function () { number.TrackBands.Add("Prefix"); });

// Trees.
tree = WScript.CreateObject("Kestrel.cNodes");
expect(2033, function () { tree.Conversion(csValueToCode, "Alpha"); },
    function () { tree.Add(undefined, 0, "A", "Alpha"); tree.Conversion(csValueToCode, "Alpha"); });
expect(2029, function () { tree.Add(undefined, 0, "A", "Other"); }, function () { tree.Add(undefined, 0, "B", "Beta"); });
expect(2030, function () { tree.Add(undefined, 0, "C", "Beta"); }, function () { tree.Add(undefined, 0, "C", "Gamma"); });
expect(2034, function () { tree.Conversion(csValueToCode, "Unknown"); },
    function () { tree.Add(undefined, 0, "U", "Unknown"); tree.Conversion(csValueToCode, "Unknown"); });
expect(91, function () { node = tree(2).Previous; }, function () { node = tree(2).PreviousSibling; });
node = tree.Add(tree(1).Key, tvwChild, "X", "Below");
expect(91, function () { var other = node.Previous; }, function () { var other = node.PreviousSibling; });
node = tree.Add(node.Key, tvwChild, "Y", "Deeper");
expect(438, function () { var other = node.Previous; }, function () { var other = node.PreviousSibling; });

// Making codes, taking them apart, and saving.
rule = newRule();
item = rule.UsrFields.Add("F", "", "long");
band = rule.Add("Field", bsUsrField, 0, "", item, 2);
expect(2036, function () { rule.GetCode(gsNewCode); }, function () { band.Length = 4; rule.GetCode(gsNewCode); });
expect(2040, function () { rule.ExpCode("P0"); }, function () { rule.ExpCode("P0001"); });
expect(2041, function () { rule.ExpCode("Q0001"); }, function () { rule.ExpCode("P0001"); });
endOfScript();
