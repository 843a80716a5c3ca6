// What the test scripts check with. Each failed check is one line; endOfScript prints the line without which a test that
// ended silently counts as failed. A script that failed quits; another one ends by itself, so that the host can see what
// is left.

var checksDone = 0;
var checksFailed = 0;

function judge(passed, what, actual, expected) {
    checksDone += 1;
    if (passed) return;
    checksFailed += 1;
    WScript.Echo("FAILED: " + what + ": " + actual + " instead of " + expected);
}

function check(what, actual, expected) {
    judge(actual === expected, what, typeof actual + " [" + actual + "]", typeof expected + " [" + expected + "]");
}

function checkNothing(what, actual) {
    judge(actual === null, what, "a value", "nothing");
}

// Runs the body, which has to fail; number is that of the automation error.
function checkError(what, body, number, description) {
    var error = null;
    try {
        body();
    } catch (caught) {
        error = caught;
    }
    judge(error !== null, what, "no error", "an error");
    if (error === null) return;
    check(what + ", number", error.number, number);
    check(what + ", description", error.description, description);
}

// The number under which scripts see an error of the library.
function libraryError(message) {
    return -2147221504 + message;
}

// The items that an enumeration hands out, as an array.
function itemsOf(collection) {
    var items = [];
    for (var each = new Enumerator(collection); !each.atEnd(); each.moveNext()) items.push(each.item());
    return items;
}

function endOfScript() {
    WScript.Echo("end of script: " + checksDone + " checks, " + checksFailed + " failed");
    if (checksFailed > 0) WScript.Quit(1);
}
