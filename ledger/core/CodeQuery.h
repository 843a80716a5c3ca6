// Codes of the ledger that fit a wish, one after the other in the order of their rules' names and of their texts. A
// piece at a time is read, each found through the key, so that a million codes need no more memory than a thousand, on
// every engine.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ledger/core/CodeMaker.h"
#include "ledger/core/Rules.h"
#include "ledger/db/Transaction.h"

namespace ledger {

// What is empty is no condition.
struct CodeWish {
    std::wstring rule;
    std::wstring pattern; // of the code: "*" stands for any characters, "?" for one
    std::wstring series;  // one that the code is numbered in
    std::wstring state;   // issued, adopted or void
    std::wstring since;   // when it was stored, in UTC: the beginning of an ISO 8601 time, the whole of it included
    std::wstring until;
    std::wstring ticket;
    FieldValues fields; // that the record had, all of them
};

// A code with what the ledger knows of it.
struct FoundCode {
    std::wstring rule; // its name
    CodeRow row;
    std::wstring voidReason; // of a void one
    std::wstring voidAt;
    std::wstring voidBy;
    FieldValues fields;
};

// Fails with HostError on a time that is none and a state that there is not.
void CheckWish(const CodeWish& wish);

// Calls the function with each code that fits, out of one consistent state of the database. Where the connection is
// lost on the way it goes on behind the last code that was visited, with what is stored by then.
void ForEachCode(Database& database, Patience patience, const CodeWish& wish,
                 const std::function<void(const FoundCode&)>& visit);

// Whether the text fits a pattern with "*" and "?".
[[nodiscard]] bool FitsPattern(const std::wstring& text, const std::wstring& pattern);

} // namespace ledger
