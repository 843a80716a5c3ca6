// When something was stored, by whom, and the mark that tells one storing from every other one.
#pragma once

#include <string>

namespace ledger {

// The time in UTC as "2024-05-06T07:08:09Z".
[[nodiscard]] std::wstring NowText();

// The user and the machine, "user@machine".
[[nodiscard]] std::wstring ThisUser();

// The machine and the process, "machine:process".
[[nodiscard]] std::wstring ThisProgram();

// A ticket of one's own, a new one each time, on any machine; at most 40 characters.
[[nodiscard]] std::wstring NewTicket();

} // namespace ledger
