// The program of this folder in JScript: makes a rule, tells it where to go on, issues codes by ticket, takes codes apart.
// Every language here prints the same lines. JScript hands arguments on by value only, so a handler of an event cannot answer
// what an event asks: the script gives the number to go on with before it asks for a code.
//
//   cscript //nologo client.js      or kscript client.js
var bsFixed = 0, bsUsrField = 2, bsIncreaseNumber = 3, gsNewCode = 1;
var rule = WScript.CreateObject("Kestrel.CodeClass", "rule_");
var issued = {}; // what a program keeps in its database: the code of each ticket
var year = rule.UsrFields.Add("Year");
rule.Add("Prefix", bsFixed, 0, "INV-");
rule.Add("Year", bsUsrField, 0, "", year, 4);
rule.Add("Dash", bsFixed, 0, "-");
var number = rule.Add("Number", bsIncreaseNumber, 0, "1", null, 5, "00000");
number.TrackBands.Add("Year");

issueFor("order 1", "2026");
issueFor("order 2", "2026");
issueFor("order 3", "2027");
issueFor("order 2", "2026"); // the same request again gets the same code
takeApart("INV-2026-00002");
takeApart("ABC-2026-00002");

var copy = WScript.CreateObject("Kestrel.CodeClass");
copy.Load(rule.Definition);
WScript.Echo("stored and loaded: " + copy.Count + " bands");
WScript.Quit(0);

function issueFor(ticket, ofYear) {
    if (!issued[ticket]) {
        year.Value = ofYear;
        number.Default = nextOf(ofYear);
        issued[ticket] = rule.GetCode(gsNewCode);
    }
    WScript.Echo(ticket + ": " + issued[ticket]);
}

function nextOf(ofYear) {
    var next = 1;
    for (var ticket in issued)
        if (issued[ticket].substr(4, 4) === ofYear) next = Math.max(next, parseInt(issued[ticket].substr(9), 10) + 1);
    return String(next);
}

function takeApart(code) {
    try {
        rule.ExpCode(code);
        WScript.Echo(code + ": year " + year.Value + ", number " + number.Value);
    } catch (error) {
        WScript.Echo(code + ": refused with " + (error.number & 0xFFFF) + ", " + error.description);
    }
}

// The event arrives, with its arguments by value. The answer stays empty, and the number begins where the script has said.
function rule_GetLastCode(filter, value) {
    WScript.Echo("asked for the last code like " + filter);
}
