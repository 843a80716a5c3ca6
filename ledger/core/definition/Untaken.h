// What a definition text says and its rule does not hold: values that loading refused and lines that it passed over.
//
// The text is compared with the definition that the loaded rule writes itself, line by line, so that whatever loading
// does not take shows. Only what says the same in other words counts as the same: 04 and 4, True and 1, another way of
// writing a date, an empty display name.
#pragma once

#include <string>
#include <vector>

namespace ledger {

struct Untaken {
    std::size_t line = 0; // of the text, from 1
    std::wstring what;    // "tracked bands of band Number"; empty: the line is none of a definition
    std::wstring read;
    std::wstring holds; // the rule now; of a line that is none: what became of it
};

// One line for people: line 29: tracked bands of band Number: read "Yeer", not taken; the rule holds "".
[[nodiscard]] std::wstring LineOf(const Untaken& untaken);

// `held` is the definition that the rule writes which was loaded from `text`.
[[nodiscard]] std::vector<Untaken> FindUntaken(const std::wstring& text, const std::wstring& held);

} // namespace ledger
